#include "Page/Calendars.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "Conform/Hours.h"
#include "Page/Display.h"
#include "Page/Html.h"

namespace page {
namespace {

constexpr std::array<std::string_view, 7> kWeekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

bool saysNothing(const conform::FileCalendar& calendar) {
  return calendar.exceptions.empty() && calendar.workWeeks.empty() &&
         std::none_of(calendar.week.begin(), calendar.week.end(), [](const auto& hours) { return hours.has_value(); });
}

void addExceptions(std::string& to, const conform::FileCalendar& calendar) {
  if (calendar.exceptions.empty()) return;
  const std::size_t count = calendar.exceptions.size();
  add(to, "<details><summary>{} {}</summary><ul>", count, count == 1 ? "exception" : "exceptions");
  for (const conform::FileException& exception : calendar.exceptions) {
    add(to, "<li>{}", dateText(exception.firstDay * platform::kSecondsPerDay));
    if (exception.lastDay != exception.firstDay)
      add(to, " to {}", dateText(exception.lastDay * platform::kSecondsPerDay));
    if (!exception.name.empty()) add(to, " {}", escaped(exception.name));
    add(to, ": {}</li>", timesText(exception.hours));
  }
  to += "</ul></details>";
}

}  // namespace

void Calendars::write(const std::function<void(std::string_view)>& sink) {
  std::string text;
  for (std::size_t i = 0; i < plan_.calendars.size(); ++i) {
    text.clear();
    addCalendar(text, i);
    sink(text);
  }
}

void Calendars::addCalendar(std::string& to, std::size_t index) {
  const conform::FileCalendar& calendar = plan_.calendars[index];
  const auto base = calendars_.find(calendar.baseUid);
  const bool isProjects = calendar.uid == plan_.calendarUid;
  const bool isLike = base && saysNothing(calendar);
  add(to, R"(<section class="calendar{}"><h3>{}{}</h3>)", isLike ? " like" : "", escaped(calendar.name),
      isProjects ? " <small>(the project's)</small>" : "");
  if (isLike) {
    add(to, "<p>Like {}.</p></section>\n", escaped(plan_.calendars[*base].name));
    return;
  }
  if (base) add(to, "<p>Based on {}.</p>", escaped(plan_.calendars[*base].name));
  addWeek(to, index);
  addStrips(to, index);
  addExceptions(to, calendar);
  to += "</section>\n";
}

/// Days of equal hours that follow each other are told once: "Mon-Fri 08:00-16:00".
void Calendars::addWeek(std::string& to, std::size_t index) const {
  const auto week = calendars_.week(index);
  to += "<p>";
  for (std::size_t day = 0; day < week.size(); ++day) {
    const std::size_t first = day;
    while (day + 1 < week.size() && *week[day + 1] == *week[first]) ++day;
    add(to, "{}{}{}{} {}", first == 0 ? "" : "; ", kWeekdays[first], first == day ? "" : "-",
        first == day ? "" : kWeekdays[day], timesText(*week[first]));
  }
  to += "</p>";
}

void Calendars::addStrips(std::string& to, std::size_t index) {
  const auto pattern = patternOf(index);
  depths_[index] = pattern ? *depths_[*pattern] + 1 : 0;
  strips_.add(to, index, pattern, plan_.calendars[index].name);
}

std::optional<std::size_t> Calendars::patternOf(std::size_t index) const {
  constexpr std::size_t kDeepest = 3;
  for (const auto& candidate : {calendars_.find(plan_.calendars[index].baseUid), calendars_.find(plan_.calendarUid)}) {
    if (candidate && depths_[*candidate] && *depths_[*candidate] < kDeepest) return candidate;
  }
  return std::nullopt;
}

}  // namespace page
