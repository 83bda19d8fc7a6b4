#include "Conform/WorkOverTime.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Conform/Completion.h"
#include "Conform/Copy.h"
#include "Conform/Durations.h"
#include "Conform/Elements.h"
#include "Conform/Markup.h"
#include "Conform/PlanHours.h"
#include "Conform/WallClock.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/Instant.h"
#include "Platform/XML/XMLText.h"

using platform::kSecondsPerDay;

namespace conform {
namespace {

constexpr const char* kElement = "TimephasedData";
constexpr std::size_t kTopResource = 0;
constexpr std::int64_t kRemaining = 1;
constexpr std::int64_t kActual = 2;

/// A stretch of time in clock readings, and how much is done in it: of a piece its effort in thousandths of seconds, of
/// a day's part its working seconds, of an entry its work in seconds.
struct Stretch {
  std::int64_t start = 0;
  std::int64_t finish = 0;
  std::int64_t amount = 0;
};
using Stretches = std::vector<Stretch>;

std::int64_t sumOf(const Stretches& stretches) {
  return std::accumulate(stretches.begin(), stretches.end(), std::int64_t{0},
                         [](std::int64_t sum, const Stretch& stretch) { return sum + stretch.amount; });
}

/// Divides the work among the stretches in proportion to their amounts; those become the shares.
void divide(std::int64_t work, Stretches& among) {
  const std::int64_t total = sumOf(among);
  std::int64_t amount = 0;
  std::int64_t divided = 0;
  for (Stretch& stretch : among) {
    amount += stretch.amount;
    stretch.amount = shareOf(work, amount, total) - divided;
    divided += stretch.amount;
  }
}

std::int64_t thousandthsOf(double effort) {
  constexpr double kMostSeconds = 1e11;  // three thousand years; keeps the sum of many pieces within 64 bits
  return platform::truncated<std::int64_t>(std::round(std::clamp(effort, 0.0, kMostSeconds) * 1000));
}

/// The pieces of a split task that have any length.
Stretches piecesOf(const Plan& plan, xml::Node task) {
  Stretches pieces;
  if (!singleObjectForXQuery(task, "split")) return pieces;
  for (const xml::Node reference : objectsForXQuery(task, "child-task")) {
    const xml::Node piece = plan.referred("task", reference);
    const auto start = wallClock(stringValueForXQuery(piece, "start-date").value_or(""));
    const auto end = wallClock(stringValueForXQuery(piece, "end-date").value_or(""));
    if (!start || !end || *start >= *end) continue;
    pieces.push_back({*start, *end, thousandthsOf(floatValueForXQuery(piece, "effort"))});
  }
  return pieces;
}

/// From the assignment's start to its finish; none without a length.
Stretches wholeOf(pugi::xml_node assignment) {
  const auto start = wallClockOfText(textOf(assignment, "Start"));
  const auto finish = wallClockOfText(textOf(assignment, "Finish"));
  if (!start || !finish || *start >= *finish) return {};
  return {{*start, *finish, 0}};
}

/// Whose hours count, and the most days that a piece is divided into.
struct Worker {
  PlanHours& hours;
  std::size_t resource;
  std::int64_t mostDays;
};

/// The working time of each day in the piece; none when there is none, or there are too many days.
Stretches workingDays(const Worker& worker, const Stretch& piece) {
  Stretches days;
  if (piece.finish - piece.start > worker.mostDays * kSecondsPerDay) return days;
  for (std::int64_t day = dayOf(piece.start); day <= dayOf(piece.finish - 1); ++day) {
    const std::int64_t midnight = day * kSecondsPerDay;
    const Hours part = worker.hours.on(worker.resource, day)
                           .within(std::max<std::int64_t>(piece.start - midnight, 0),
                                   std::min(piece.finish - midnight, kSecondsPerDay));
    if (part.empty()) continue;
    days.push_back({midnight + part.spans().front().from, midnight + part.spans().back().to, part.seconds()});
  }
  return days;
}

/// The work of the assignment in entries, in order of time.
Stretches spread(std::int64_t work, Stretches pieces, const Worker& worker) {
  const bool hasEfforts = sumOf(pieces) > 0;
  std::vector<Stretches> days;
  for (Stretch& piece : pieces) {
    days.push_back(workingDays(worker, piece));
    if (!hasEfforts) piece.amount = sumOf(days.back());
    if (days.back().empty()) days.back().push_back({piece.start, piece.finish, 1});
  }
  if (sumOf(pieces) == 0) {
    for (Stretch& piece : pieces) piece.amount = piece.finish - piece.start;
  }
  divide(work, pieces);
  Stretches entries;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    divide(pieces[i].amount, days[i]);
    entries.insert(entries.end(), days[i].begin(), days[i].end());
  }
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Stretch& a, const Stretch& b) { return a.start < b.start; });
  return entries;
}

void appendEntry(std::string& text, std::string_view uid, std::int64_t type, const Stretch& entry, std::int64_t work) {
  if (work == 0) return;
  fmt::format_to(std::back_inserter(text),
                 "<{0}><Type>{1}</Type><UID>{2}</UID><Start>{3}</Start><Finish>{4}</Finish><Unit>2</Unit>"
                 "<Value>{5}</Value></{0}>",
                 kElement, type, uid, wallClockText(entry.start), wallClockText(entry.finish), durationText(work));
}

/// The entries as markup; of the first in time, as much as is done is actual work.
std::string markupOf(const Stretches& entries, std::int64_t done, std::string_view uid) {
  std::string text;
  for (const Stretch& entry : entries) {
    const std::int64_t actual = std::min(entry.amount, done);
    appendEntry(text, uid, kActual, entry, actual);
    appendEntry(text, uid, kRemaining, entry, entry.amount - actual);
    done -= actual;
  }
  return text;
}

/// Numbers of the plan's resources.
class ResourceNumbers {
 public:
  explicit ResourceNumbers(const Plan& plan) {
    for (std::size_t i = 0; i < plan.resources().size(); ++i) numbers_.emplace(plan.resources()[i].node.identity(), i);
  }
  /// The top resource's for an assignment to nobody.
  [[nodiscard]] std::size_t of(xml::Node resource) const {
    const auto found = numbers_.find(resource.identity());
    return found == numbers_.end() ? kTopResource : found->second;
  }

 private:
  std::unordered_map<const void*, std::size_t> numbers_;
};

void correct(const AssignmentItem& item, const Plan& plan, PlanHours& hours, std::size_t resource) {
  pugi::xml_node assignment = item.element;
  const xml::Node task = plan.tasks()[item.source->task];
  Stretches pieces = piecesOf(plan, task);
  if (pieces.empty()) pieces = wholeOf(assignment);
  // The exact file has an entry for each day of what the exporter could divide. Dates that are centuries off and that
  // it did not look at would make millions.
  std::int64_t entries = 0;
  while (assignment.remove_child(kElement)) ++entries;
  const std::int64_t work = secondsOf(textOf(assignment, "Work")).value_or(0);
  appendMarkup(assignment,
               markupOf(spread(work, std::move(pieces), {hours, resource, entries + 1}),
                        Completion::ofTask(task).doneOf(work), xml::escapedText(textOf(assignment, "UID"))));
}

}  // namespace

void correctWorkOverTime(Copy& copy) {
  if (copy.plan() == nullptr || copy.plan()->resources().empty()) return;
  const Plan& plan = *copy.plan();
  PlanHours hours(plan);
  const ResourceNumbers numbers(plan);
  for (const AssignmentItem& item : copy.assignments) {
    if (!item.element.child(kElement)) continue;
    correct(item, plan, hours, numbers.of(item.source->resource));
    copy.report.count("assignments with work outside of working hours");
  }
}

}  // namespace conform
