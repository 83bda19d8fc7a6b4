#include "Conform/Names.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <unordered_map>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Conform/Labels.h"
#include "Platform/Base/IdHash.h"
#include "Platform/Text/Texts.h"

namespace conform {
namespace {

constexpr std::size_t kMaximumLength = 51;

/// The first characters of a UTF-8 text.
std::string_view beginningOf(std::string_view text, std::size_t characters) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isContinuation = (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    if (!isContinuation && characters-- == 0) return text.substr(0, at);
  }
  return text;
}

std::string renamed(std::string_view label, std::string_view before, std::string_view now) {
  return fmt::format("{}: \"{}\" is now \"{}\"", label, platform::shortened(before), platform::shortened(now));
}

char replaced(char c) {
  switch (c) {
    case ',':
      return ';';
    case '[':
      return '(';
    case ']':
      return ')';
    default:
      return c;
  }
}

void correctResourceNames(Copy& copy) {
  std::size_t changed = 0;
  for (const Item& resource : copy.resources) {
    const pugi::xml_node name = resource.element.child("Name");
    const std::string before(textOf(name));
    std::string now = before;
    std::transform(now.begin(), now.end(), now.begin(), replaced);
    if (!setText(name, now)) continue;
    copy.report.warn(renamed(shortLabelOf(resource), before, now));
    ++changed;
  }
  copy.report.count("names of resources", changed);
}

class CalendarNames {
 public:
  explicit CalendarNames(Copy& copy) : copy_(copy) {
    for (const CalendarItem& calendar : copy.calendars) {
      ++beginnings_[std::string(beginningOf(textOf(calendar.element, "Name"), kMaximumLength))];
    }
  }

  void correct() {
    std::size_t changed = 0;
    for (const CalendarItem& calendar : copy_.calendars) changed += static_cast<std::size_t>(correct(calendar));
    copy_.report.count("names of calendars", changed);
  }

 private:
  bool correct(const CalendarItem& calendar) {
    const pugi::xml_node name = calendar.element.child("Name");
    const std::string before(textOf(name));
    const std::string uid(textOf(calendar.element, "UID"));
    const std::string_view beginning = beginningOf(before, kMaximumLength);
    if (isBlank(beginning)) {
      const std::string now = "Calendar " + uid;
      copy_.report.warn(fmt::format("{} without a name is now \"{}\"", shortLabelOf(calendar), now));
      return setText(calendar.element, name, "Name", now);
    }
    if (beginning.size() == before.size()) return false;
    const std::string now = shortened(before, beginnings_[std::string(beginning)] > 1 ? " (" + uid + ")" : "");
    copy_.report.warn(renamed(shortLabelOf(calendar), before, now));
    return setText(name, now);
  }

  static std::string shortened(std::string_view name, const std::string& end) {
    return std::string(beginningOf(name, kMaximumLength - std::min(kMaximumLength, end.size()))) + end;
  }

  Copy& copy_;
  std::unordered_map<std::string, int, platform::IdHash>
      beginnings_;  ///< the number of calendars whose names begin like this
};

}  // namespace

void correctNames(Copy& copy) {
  correctResourceNames(copy);
  CalendarNames(copy).correct();
}

}  // namespace conform
