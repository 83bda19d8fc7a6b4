#include "Conform/CalendarDays.h"

#include <algorithm>

#include "Conform/WallClock.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"

namespace conform {
namespace {

constexpr std::size_t kMostSpans = 5;

bool isMerged(const Hours& hours) { return hours.spans().size() > kMostSpans; }

/// Appends days of equal hours. When they directly follow the last exception and have its hours, that exception is
/// extended.
void append(std::vector<DayException>& list, DateRange days, const Hours& hours, const DayChange& change) {
  const Hours written = CalendarDays::written(hours);
  if (!list.empty() && list.back().days.last + 1 == days.first && list.back().hours == written) {
    list.back().days.last = days.last;
    list.back().change.addSources(change.sources);
    list.back().isMerged |= isMerged(hours);
  } else {
    list.push_back({days, change, written, isMerged(hours)});
  }
}

}  // namespace

CalendarDays::CalendarDays(PlanHours& hours, std::size_t resource, std::optional<std::size_t> base)
    : hours_(hours), resource_(resource), base_(base) {}

bool CalendarDays::namesWeekDay(int weekday) const { return !base_ || hours_.namesWeekDay(resource_, weekday); }

const Hours& CalendarDays::weekDay(int weekday) const { return hours_.weekDay(resource_, weekday); }

Hours CalendarDays::written(const Hours& hours) { return isMerged(hours) ? hours.inAtMost(kMostSpans) : hours; }

std::vector<DayException> CalendarDays::exceptions(DateRange range, std::size_t most) const {
  std::vector<DayException> list;
  for (const ChangedDays& stretch : hours_.changes(resource_)) {
    const DateRange days{std::max(stretch.first, range.first), std::min(stretch.last, range.last)};
    if (days.first > days.last) continue;
    const Week differing = differingHours(days, stretch.change);
    const auto none = std::count(differing.begin() + 1, differing.end(), std::nullopt);
    if (none == kDaysPerWeek) continue;
    if (std::count(differing.begin() + 1, differing.end(), differing[1]) == kDaysPerWeek) {
      append(list, days, *differing[1], stretch.change);
      continue;
    }
    for (std::int64_t day = days.first; day <= days.last && list.size() <= most; ++day) {
      if (const auto& hours = differing[static_cast<std::size_t>(weekdayOf(day))]) {
        append(list, {day, day}, *hours, stretch.change);
      }
    }
    if (list.size() > most) break;
  }
  if (list.size() > most) list.resize(most);
  return list;
}

/// For each weekday among these days, which all have the same change: the hours that the calendar must state; none when
/// it need not.
CalendarDays::Week CalendarDays::differingHours(DateRange days, const DayChange& change) const {
  const DayChange* baseChange = base_ ? changeOn(hours_.changes(*base_), days.first) : nullptr;
  Week differing;
  const std::int64_t last = std::min(days.last, days.first + kDaysPerWeek - 1);
  for (std::int64_t day = days.first; day <= last; ++day) {
    const int weekday = weekdayOf(day);
    const Hours hours = change.appliedTo(weekDay(weekday));
    if (written(hours) != givenHours(weekday, baseChange)) differing[static_cast<std::size_t>(weekday)] = hours;
  }
  return differing;
}

/// The hours that a reader would find for a date without an exception in the calendar.
Hours CalendarDays::givenHours(int weekday, const DayChange* baseChange) const {
  if (baseChange != nullptr) {
    const Hours& baseWeekDay = hours_.weekDay(*base_, weekday);
    Hours baseHours = written(baseChange->appliedTo(baseWeekDay));
    if (baseHours != written(baseWeekDay)) return baseHours;
  }
  return written(weekDay(weekday));
}

}  // namespace conform
