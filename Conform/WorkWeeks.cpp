#include "Conform/WorkWeeks.h"

#include <array>

#include "Conform/Copy.h"
#include "Conform/Elements.h"

namespace conform {
namespace {

constexpr std::int64_t kSunday = 1;
constexpr std::int64_t kSaturday = 7;

/// @return how many days were left out.
std::size_t leaveOutDoubled(pugi::xml_node weekDays) {
  std::array<bool, 8> isThere{};  // by the weekday's number, from 1
  std::size_t leftOut = 0;
  for (pugi::xml_node day = weekDays.child("WeekDay"); day;) {
    const pugi::xml_node next = day.next_sibling("WeekDay");
    const auto type = wholeNumber(textOf(day, "DayType"));
    if (type && *type >= kSunday && *type <= kSaturday) {
      bool& isKnown = isThere[static_cast<std::size_t>(*type)];
      if (isKnown && weekDays.remove_child(day)) ++leftOut;
      isKnown = true;
    }
    day = next;
  }
  return leftOut;
}

}  // namespace

void correctWorkWeeks(Copy& copy) {
  std::size_t leftOut = 0;
  for (const CalendarItem& calendar : copy.calendars) {
    for (const pugi::xml_node workWeek : calendar.element.child("WorkWeeks").children("WorkWeek")) {
      leftOut += leaveOutDoubled(workWeek.child("WeekDays"));
    }
  }
  copy.report.count("weekdays that a work week has twice", leftOut);
}

}  // namespace conform
