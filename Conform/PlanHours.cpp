#include "Conform/PlanHours.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "Conform/WallClock.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Time/Instant.h"

using platform::kSecondsPerHour;

namespace conform {
namespace {

/// Far more than any real plan has; this many take less than a gigabyte.
constexpr std::size_t kMaximumChanges = 50'000'000;

/// A limit is needed because an exception's name is repeated in each of its weeks.
constexpr std::size_t kLongestName = 1000;

/// A measure of the memory that the changes take: one for each stretch, span and source.
std::size_t sizeOf(const DayChanges& changes) {
  std::size_t size = 0;
  for (const auto& [first, last, change] : changes) {
    size += 1 + change.takes.spans().size() + change.gives.spans().size() + change.sources.size();
  }
  return size;
}

/// The text, cut to the longest length at the end of a character.
std::string shortened(std::string text) {
  std::size_t length = std::min(text.size(), kLongestName);
  while (length < text.size() && length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  text.resize(length);
  return text;
}

/// The week of a plan that does not define it.
std::array<Hours, 8> standardWeek() {
  const Hours workday(
      std::vector<Span>{{8 * kSecondsPerHour, 12 * kSecondsPerHour}, {13 * kSecondsPerHour, 17 * kSecondsPerHour}});
  std::array<Hours, 8> week;
  for (int day = kMonday; day <= kFriday; ++day) week[static_cast<std::size_t>(day)] = workday;
  return week;
}

}  // namespace

PlanHours::PlanHours(const Plan& plan) : plan_(plan), levels_(plan.resources().size()) {}

bool PlanHours::namesWeekDay(std::size_t resource, int weekday) {
  return level(resource).isNamed[static_cast<std::size_t>(weekday)];
}

const Hours& PlanHours::weekDay(std::size_t resource, int weekday) {
  return level(resource).week[static_cast<std::size_t>(weekday)];
}

const DayChanges& PlanHours::changes(std::size_t resource) { return *level(resource).changes; }

Hours PlanHours::on(std::size_t resource, std::int64_t day) {
  const Hours& hours = weekDay(resource, weekdayOf(day));
  const DayChange* change = changeOn(changes(resource), day);
  return change != nullptr ? change->appliedTo(hours) : hours;
}

std::size_t PlanHours::unsaid(std::size_t resource) { return level(resource).unsaid; }

bool PlanHours::isCutOff(std::size_t resource) { return level(resource).isCutOff; }

std::string PlanHours::namesOf(const DayChange& change) const {
  std::string names;
  std::set<std::string_view> said;
  for (const std::size_t source : change.sources) {
    if (names.size() > kLongestName) break;
    // A very long name would be copied for each exception. The byte behind the longest length tells where it is cut.
    const std::string_view name = std::string_view(sources_[source]).substr(0, kLongestName + 1);
    if (said.insert(name).second) names.append(names.empty() ? "" : ", ").append(name);
  }
  return shortened(std::move(names));
}

const PlanHours::Level& PlanHours::level(std::size_t resource) {
  auto& level = levels_.at(resource);
  if (!level) {
    const auto& parent = plan_.resources()[resource].parent;
    const Level* above = parent ? &this->level(*parent) : nullptr;
    level = std::make_unique<Level>();
    read(*level, resource, above);
  }
  return *level;
}

void PlanHours::read(Level& level, std::size_t resource, const Level* above) {
  Schedule schedule(plan_.resources()[resource].node, sources_);
  level.unsaid = schedule.unsaid();
  level.isCutOff = schedule.isCutOff();
  level.week = above != nullptr ? above->week : standardWeek();
  for (int day = kSunday; day <= kSaturday; ++day) {
    const auto& own = schedule.weekDay(day);
    if (!own) continue;
    level.isNamed[static_cast<std::size_t>(day)] = true;
    level.week[static_cast<std::size_t>(day)] = *own;
  }
  if (above != nullptr && schedule.changes().empty()) {
    level.changes = above->changes;
    return;
  }
  level.changes = std::make_shared<DayChanges>(above != nullptr ? composed(*above->changes, schedule.changes())
                                                                : schedule.changes());
  size_ += sizeOf(*level.changes);
  platform::require(size_ <= kMaximumChanges,
                    "The schedules change the hours of too many days. At most {} changes can "
                    "be exported.",
                    kMaximumChanges);
}

}  // namespace conform
