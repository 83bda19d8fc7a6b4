#include "Conform/ProjectWeek.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Conform/PlanHours.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/Time/Instant.h"

using platform::kSecondsPerMinute;

namespace conform {
namespace {

constexpr std::size_t kTopResource = 0;

using Week = std::array<Hours, kDaysPerWeek>;

Week weekFromMonday(PlanHours& hours) {
  Week week;
  for (std::size_t i = 0; i < week.size(); ++i) {
    week[i] = hours.weekDay(kTopResource, i + 1 == week.size() ? kSunday : kMonday + static_cast<int>(i));
  }
  return week;
}

/// The first day of the most frequent length; null when no day has any hours.
const Hours* typicalDay(const Week& week) {
  std::map<std::int64_t, int> daysOfLength;
  for (const Hours& day : week) ++daysOfLength[day.seconds()];
  daysOfLength.erase(0);
  const Hours* typical = nullptr;
  for (const Hours& day : week) {
    if (day.empty()) continue;
    const auto rank = [&](const Hours& of) { return std::pair(daysOfLength[of.seconds()], of.seconds()); };
    if (typical == nullptr || rank(day) > rank(*typical)) typical = &day;
  }
  return typical;
}

/// At least one: readers divide by it.
std::string minutes(std::int64_t seconds) {
  return std::to_string(std::max<std::int64_t>((seconds + kSecondsPerMinute / 2) / kSecondsPerMinute, 1));
}

}  // namespace

void correctProjectWeek(Copy& copy) {
  if (copy.plan() == nullptr || copy.plan()->resources().empty()) return;
  PlanHours hours(*copy.plan());
  const Week week = weekFromMonday(hours);
  const Hours* typical = typicalDay(week);
  if (typical == nullptr) return;
  std::int64_t secondsPerWeek = 0;
  for (const Hours& day : week) secondsPerWeek += day.seconds();
  const auto set = [project = copy.project](const char* name, const std::string& text) {
    return setText(project, project.child(name), name, text);
  };
  bool changed = set("DefaultStartTime", timeOfDayText(typical->spans().front().from));
  changed |= set("DefaultFinishTime", timeOfDayText(typical->spans().back().to));
  changed |= set("MinutesPerDay", minutes(typical->seconds()));
  changed |= set("MinutesPerWeek", minutes(secondsPerWeek));
  if (changed) copy.report.count("weeks of the project");
}

}  // namespace conform
