#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Conform/DayChanges.h"
#include "Conform/Hours.h"
#include "Conform/Plan.h"
#include "Conform/Schedule.h"

namespace conform {

/// The hours of a resource on a date, from the bundle. The rule:
///
/// 1. A date begins with the hours of its weekday: those of the nearest level that names the weekday. The levels are
///    the resource, its groups upwards, and the plan, which is the top resource. Where none names it, Monday to Friday
///    have 8 to 12 and 13 to 17, Saturday and Sunday no hours.
/// 2. Then follow the dated changes of each level, from the plan down to the resource. Within a level all overtime adds
///    its hours first, then all time off takes its hours away, time of day included. A dated flattened day replaces the
///    hours with its time-spans; without any there is no work.
/// 3. An event holds on each of its days from its start's time of day to its end's. From midnight to midnight it covers
///    whole days, the last one excluded.
///
/// Days are those of the zone that the file is written in. Dates with an offset are converted to it, others are clock
/// readings in it. The part of a time-span outside its day is ignored, and so are changes before the year 1 and after
/// 9999. Resources are numbered as in Plan::resources(). A schedule is read when it is first asked for.
class PlanHours {
 public:
  /// @param plan must outlive the object and have a top resource when anything is asked.
  explicit PlanHours(const Plan& plan);

  /// Whether the resource's own schedule names the weekday, 1 Sunday to 7 Saturday.
  [[nodiscard]] bool namesWeekDay(std::size_t resource, int weekday);
  /// The weekday's hours on dates without a change.
  /// @throws InvariantFailure here and below when there are too many changes to fit into memory.
  [[nodiscard]] const Hours& weekDay(std::size_t resource, int weekday);
  /// The dated changes of all levels together. When the resource has none of its own, this is its group's list.
  [[nodiscard]] const DayChanges& changes(std::size_t resource);
  /// @param day counted from 1970-01-01.
  [[nodiscard]] Hours on(std::size_t resource, std::int64_t day);

  /// How many working times of the resource's own schedule are not valid hours of a day.
  [[nodiscard]] std::size_t unsaid(std::size_t resource);
  /// Whether changes of the resource's own schedule before the year 1 or after 9999 were left out.
  [[nodiscard]] bool isCutOff(std::size_t resource);
  /// Names of the sets of events that a change comes from, joined by ", ", each once, from the plan to the resource;
  /// cut off at a thousand bytes.
  [[nodiscard]] std::string namesOf(const DayChange& change) const;

 private:
  struct Level {
    std::array<bool, 8> isNamed{};  ///< by weekday
    std::array<Hours, 8> week;
    std::shared_ptr<const DayChanges> changes;
    std::size_t unsaid = 0;
    bool isCutOff = false;
  };

  const Level& level(std::size_t resource);
  void read(Level& level, std::size_t resource, const Level* above);

  const Plan& plan_;
  std::vector<std::string> sources_;  ///< names of the sets of events; those of a group stand before its members'
  std::vector<std::unique_ptr<Level>> levels_;
  std::size_t size_ = 0;  ///< of all changes
};

}  // namespace conform
