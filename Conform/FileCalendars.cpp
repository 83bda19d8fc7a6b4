#include "Conform/FileCalendars.h"

#include <algorithm>
#include <numeric>

#include "Conform/WallClock.h"

namespace conform {
namespace {

constexpr std::size_t kDaysPerWeek = 7;

/// The days that have no hours yet. Each day is taken only once, however many stretches of time include it.
class FreeDays {
 public:
  /// @param step the distance between the days to look for: 1, or 7 for one weekday.
  FreeDays(std::size_t count, std::size_t step) : step_(step), next_(count + step) {
    std::iota(next_.begin(), next_.end(), std::size_t{0});
  }
  /// The first free day from this one on. The result may be up to one step after the last day, when there is none.
  [[nodiscard]] std::size_t from(std::size_t day) {
    while (next_[day] != day) day = next_[day] = next_[next_[day]];
    return day;
  }
  void take(std::size_t day) { next_[day] = day + step_; }

 private:
  std::size_t step_;
  std::vector<std::size_t> next_;
};

/// The number of bases of bases that are followed; a longer chain must be a circle.
constexpr std::size_t kLongestChain = 8;

/// The number of calendars whose days are kept; those of thousands of calendars would fill the memory.
constexpr std::size_t kMostKept = 64;

const WorkingHours& noHours() {
  static const WorkingHours kNone;
  return kNone;
}

}  // namespace

FileCalendars::FileCalendars(const std::vector<FileCalendar>& calendars, std::int64_t firstDay,
                             std::size_t numberOfDays)
    : calendars_(calendars), firstDay_(firstDay), numberOfDays_(numberOfDays) {
  for (std::size_t i = 0; i < calendars.size(); ++i) indices_.emplace(calendars[i].uid, i);
}

std::optional<std::size_t> FileCalendars::find(std::string_view uid) const {
  const auto found = indices_.find(uid);
  return found == indices_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::size_t> FileCalendars::chainOf(std::size_t index) const {
  std::vector<std::size_t> chain{index};
  while (chain.size() < kLongestChain) {
    const auto base = find(calendars_[chain.back()].baseUid);
    if (!base || std::find(chain.begin(), chain.end(), *base) != chain.end()) break;
    chain.push_back(*base);
  }
  return chain;
}

std::vector<FileCalendars::Day> FileCalendars::days(std::size_t index) const {
  const std::vector<std::size_t> chain = chainOf(index);
  Layer layer(numberOfDays_, nullptr);
  const auto layUnder = [&layer](const Layer& lower) {
    for (std::size_t day = 0; day < layer.size(); ++day) {
      if (layer[day] == nullptr) layer[day] = lower[day];
    }
  };
  for (const std::size_t member : chain) layUnder(layersOf(member).exceptions);
  for (const std::size_t member : chain) layUnder(layersOf(member).weeks);
  const auto hoursOfWeek = week(index);
  std::vector<Day> days(numberOfDays_);
  for (std::size_t day = 0; day < numberOfDays_; ++day) {
    days[day] = {layer[day] != nullptr ? layer[day] : &noHours(), hoursOfWeek[weekdayAt(day)]};
  }
  return days;
}

std::vector<const WorkingHours*> FileCalendars::week(std::size_t index) const {
  std::vector<const WorkingHours*> hours(kDaysPerWeek, nullptr);
  for (const std::size_t member : chainOf(index)) {
    const WeekHours& week = calendars_[member].week;
    for (std::size_t day = 0; day < kDaysPerWeek; ++day) {
      if (hours[day] == nullptr && week[day]) hours[day] = &*week[day];
    }
  }
  std::replace(hours.begin(), hours.end(), static_cast<const WorkingHours*>(nullptr), &noHours());
  return hours;
}

const FileCalendars::Layers& FileCalendars::layersOf(std::size_t index) const {
  if (layers_.size() >= kMostKept) layers_.clear();
  const auto [entry, isNew] = layers_.try_emplace(index);
  Layers& layers = entry->second;
  if (isNew) {
    layers.exceptions = exceptionsOf(calendars_[index]);
    layers.weeks = weeksOf(calendars_[index]);
  }
  return layers;
}

FileCalendars::Layer FileCalendars::exceptionsOf(const FileCalendar& calendar) const {
  Layer layer(numberOfDays_, nullptr);
  FreeDays free(numberOfDays_, 1);
  for (const FileException& exception : calendar.exceptions) {
    const Part part = partOf(exception.firstDay, exception.lastDay);
    for (std::size_t day = free.from(part.begin); day < part.end; day = free.from(day)) {
      layer[day] = &exception.hours;
      free.take(day);
    }
  }
  return layer;
}

FileCalendars::Layer FileCalendars::weeksOf(const FileCalendar& calendar) const {
  Layer layer(numberOfDays_, nullptr);
  FreeDays free(numberOfDays_, kDaysPerWeek);
  const auto lay = [&](const WeekHours& week, const Part& part) {
    for (std::size_t first = part.begin; first < std::min(part.begin + kDaysPerWeek, part.end); ++first) {
      const auto& hours = week[weekdayAt(first)];
      if (!hours) continue;
      for (std::size_t day = free.from(first); day < part.end; day = free.from(day)) {
        layer[day] = &*hours;
        free.take(day);
      }
    }
  };
  for (const FileWorkWeek& workWeek : calendar.workWeeks)
    lay(workWeek.week, partOf(workWeek.firstDay, workWeek.lastDay));
  lay(calendar.week, {0, numberOfDays_});
  return layer;
}

FileCalendars::Part FileCalendars::partOf(std::int64_t firstDay, std::int64_t lastDay) const {
  const auto count = static_cast<std::int64_t>(numberOfDays_);
  const auto at = [&](std::int64_t day) {
    return static_cast<std::size_t>(std::clamp<std::int64_t>(day - firstDay_, 0, count));
  };
  return {at(firstDay), at(lastDay + 1)};
}

std::size_t FileCalendars::weekdayAt(std::size_t day) const {
  return static_cast<std::size_t>(weekdayOf(firstDay_ + static_cast<std::int64_t>(day)) - 1);
}

}  // namespace conform
