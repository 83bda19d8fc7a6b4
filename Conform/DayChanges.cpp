#include "Conform/DayChanges.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace conform {
namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

/// A list of changes that is walked in order of days.
class Walk {
 public:
  explicit Walk(const DayChanges& changes) : next_(changes.begin()), end_(changes.end()) {}

  /// Goes to the day, which must not be before that of an earlier call.
  void goTo(std::int64_t day) {
    while (next_ != end_ && next_->last < day) ++next_;
    day_ = day;
  }
  [[nodiscard]] const DayChange* change() const { return holds() ? &next_->change : nullptr; }
  /// The first day from this one on that has a change.
  [[nodiscard]] std::int64_t nextChanged() const { return next_ == end_ ? kNever : std::max(day_, next_->first); }
  /// The last of the days in a row that have the same change as this one; when this one has none, the last without a
  /// change.
  [[nodiscard]] std::int64_t lastAlike() const {
    if (next_ == end_) return kNever;
    return holds() ? next_->last : next_->first - 1;
  }

 private:
  [[nodiscard]] bool holds() const { return next_ != end_ && next_->first <= day_; }

  DayChanges::const_iterator next_;
  DayChanges::const_iterator end_;
  std::int64_t day_ = std::numeric_limits<std::int64_t>::min();
};

/// The first change followed by the second; either may be null for none.
DayChange both(const DayChange* first, const DayChange* second) {
  DayChange change = first != nullptr ? *first : DayChange();
  return second != nullptr ? change.followedBy(*second) : change;
}

}  // namespace

Hours DayChange::appliedTo(Hours hours) const {
  hours.remove(takes);
  hours.add(gives);
  return hours;
}

DayChange DayChange::followedBy(const DayChange& next) const {
  DayChange both = *this;
  both.takes.add(next.takes);
  both.gives.remove(next.takes);
  both.gives.add(next.gives);
  both.addSources(next.sources);
  return both;
}

void DayChange::addSources(const std::vector<std::size_t>& others) {
  std::vector<std::size_t> all;
  std::set_union(sources.begin(), sources.end(), others.begin(), others.end(), std::back_inserter(all));
  sources = std::move(all);
}

DayChanges composed(const DayChanges& above, const DayChanges& own) {
  DayChanges result;
  Walk first(above);
  Walk second(own);
  for (std::int64_t day = std::min(first.nextChanged(), second.nextChanged()); day != kNever;) {
    first.goTo(day);
    second.goTo(day);
    const std::int64_t last = std::min(first.lastAlike(), second.lastAlike());
    result.push_back({day, last, both(first.change(), second.change())});
    first.goTo(last + 1);
    second.goTo(last + 1);
    day = std::min(first.nextChanged(), second.nextChanged());
  }
  return result;
}

const DayChange* changeOn(const DayChanges& changes, std::int64_t day) {
  const auto found = std::partition_point(changes.begin(), changes.end(),
                                          [day](const ChangedDays& stretch) { return stretch.last < day; });
  return found != changes.end() && found->first <= day ? &found->change : nullptr;
}

}  // namespace conform
