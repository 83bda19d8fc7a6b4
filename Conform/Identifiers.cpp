#include "Conform/Identifiers.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Conform/Facts.h"
#include "Conform/Failure.h"
#include "Conform/Markup.h"
#include "Platform/Base/IdHash.h"

namespace conform {
namespace {

/// The numbers that objects of one kind have.
class Numbers {
 public:
  /// Reserves the number in the text.
  /// @return false when the object cannot have it: it is taken, too large or not a number.
  bool take(std::string_view text) {
    const auto number = wholeNumber(text);
    if (!number || *number > kMaximumUID || taken_[static_cast<std::size_t>(*number)]) return false;
    taken_[static_cast<std::size_t>(*number)] = true;
    return true;
  }
  std::string takeFree() {
    while (next_ <= kMaximumUID && taken_[static_cast<std::size_t>(next_)]) ++next_;
    if (next_ > kMaximumUID) fail("it has more tasks or resources than there are numbers for them");
    return std::to_string(next_++);
  }

 private:
  std::vector<bool> taken_ = std::vector<bool>(static_cast<std::size_t>(kMaximumUID) + 1);
  std::int64_t next_ = 1;
};

/// The new identifier for each old one that changed.
using Renamed = std::unordered_map<std::string, std::string, platform::IdHash, std::equal_to<>>;

bool isCanonical(std::string_view uid) { return uid == "0" || !uid.starts_with('0'); }

/// The items that cannot keep their number. The first item with a number keeps it, but a plain "7" goes before a "007".
std::vector<const Item*> withoutNumber(const Copy& copy, const std::vector<Item>& items, Numbers& numbers) {
  std::vector<const Item*> later;
  for (const Item& item : items) {
    const std::string_view uid = textOf(item.element, "UID");
    if (!copy.isPlaceholder(item) && (!isCanonical(uid) || !numbers.take(uid))) later.push_back(&item);
  }
  if (!items.empty() && copy.isPlaceholder(items.front())) later.push_back(&items.front());
  std::erase_if(later, [&numbers](const Item* item) { return numbers.take(textOf(item->element, "UID")); });
  return later;
}

/// Gives each item a number that no other one has.
Renamed renumber(Copy& copy, const std::vector<Item>& items, const char* what) {
  Numbers numbers;
  const std::vector<const Item*> unnumbered = withoutNumber(copy, items, numbers);
  Renamed renamed;
  if (unnumbered.empty()) return renamed;

  // A reference means the first object with the identifier.
  std::unordered_map<std::string_view, const Item*, platform::IdHash> owners;
  for (const Item& item : items) {
    if (!copy.isPlaceholder(item)) owners.try_emplace(textOf(item.element, "UID"), &item);
  }
  std::vector<std::pair<const Item*, std::string>> given;
  for (const Item* item : unnumbered) {
    const std::string_view before = textOf(item->element, "UID");
    given.emplace_back(item, numbers.takeFree());
    const auto owner = owners.find(before);
    if (owner != owners.end() && owner->second == item) renamed.emplace(before, given.back().second);
  }
  for (const auto& [item, number] : given) setText(item->element, item->element.child("UID"), "UID", number);
  copy.report.count(what, given.size());
  return renamed;
}

void redirect(pugi::xml_node parent, const char* name, const Renamed& renamed) {
  const pugi::xml_node reference = parent.child(name);
  const auto now = renamed.find(textOf(reference));
  if (now != renamed.end()) setText(parent, reference, name, now->second);
}

void redirectLinks(const Copy& copy, const Renamed& renamed) {
  if (renamed.empty()) return;
  for (const Item& task : copy.tasks) {
    for (const pugi::xml_node link : task.element.children("PredecessorLink"))
      redirect(link, "PredecessorUID", renamed);
  }
}

void redirectAssignments(const Copy& copy, const char* name, const Renamed& renamed) {
  if (renamed.empty()) return;
  for (const AssignmentItem& assignment : copy.assignments) redirect(assignment.element, name, renamed);
}

/// When a group is reached in several ways, the exporter writes its calendar several times, always with the contents of
/// the last.
void correctCalendars(Copy& copy) {
  Numbers numbers;
  std::unordered_map<std::string, CalendarItem*, platform::IdHash> first;
  std::vector<CalendarItem*> doubled;
  for (CalendarItem& calendar : copy.calendars) {
    const std::string uid(textOf(calendar.element, "UID"));
    const auto [position, isNew] = first.try_emplace(uid, &calendar);
    if (isNew) {
      numbers.take(uid);
    } else {
      doubled.push_back(&calendar);
    }
  }
  for (CalendarItem* calendar : doubled) {
    CalendarItem& other = *first[std::string(textOf(calendar->element, "UID"))];
    if (isAlike(other.element, calendar->element)) {
      other.source = calendar->source;
      calendar->element.parent().remove_child(calendar->element);
      calendar->element = {};
    } else {
      setText(calendar->element.child("UID"), numbers.takeFree());
    }
  }
  std::erase_if(copy.calendars, [](const CalendarItem& calendar) { return !calendar.element; });
  copy.report.count("calendars with the number of another", doubled.size());
}

}  // namespace

void correctIdentifiers(Copy& copy) {
  const Renamed tasks = renumber(copy, copy.tasks, "tasks with another number");
  redirectLinks(copy, tasks);
  redirectAssignments(copy, "TaskUID", tasks);
  redirectAssignments(copy, "ResourceUID", renumber(copy, copy.resources, "resources with another number"));
  correctCalendars(copy);
}

}  // namespace conform
