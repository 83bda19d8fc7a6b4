#include "Conform/Hours.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "Platform/Time/Instant.h"

using platform::kSecondsPerDay;
using platform::kSecondsPerHour;
using platform::kSecondsPerMinute;

namespace conform {

Hours::Hours(std::int64_t from, std::int64_t to) {
  if (from < to) spans_.push_back({from, to});
}

Hours::Hours(std::vector<Span> spans) : spans_(std::move(spans)) {
  std::erase_if(spans_, [](const Span& span) { return span.from >= span.to; });
  if (spans_.size() < 2) return;
  std::sort(spans_.begin(), spans_.end(), [](const Span& a, const Span& b) { return a.from < b.from; });
  std::size_t last = 0;
  for (std::size_t next = 1; next < spans_.size(); ++next) {
    if (spans_[next].from <= spans_[last].to) {
      spans_[last].to = std::max(spans_[last].to, spans_[next].to);
    } else {
      spans_[++last] = spans_[next];
    }
  }
  spans_.resize(last + 1);
}

std::int64_t Hours::seconds() const {
  std::int64_t sum = 0;
  for (const Span& span : spans_) sum += span.to - span.from;
  return sum;
}

bool Hours::add(std::int64_t from, std::int64_t to) {
  const std::int64_t first = std::max<std::int64_t>(from, 0);
  const std::int64_t last = std::min(to, kSecondsPerDay);
  add(Hours(first, last));
  return first == from && last == to && from < to;
}

void Hours::add(const Hours& other) {
  if (other.empty()) return;
  std::vector<Span> both = std::move(spans_);
  both.insert(both.end(), other.spans_.begin(), other.spans_.end());
  *this = Hours(std::move(both));
}

void Hours::remove(const Hours& other) {
  std::vector<Span> left;
  auto next = other.spans_.begin();
  for (const Span& span : spans_) {
    while (next != other.spans_.end() && next->to <= span.from) ++next;
    std::int64_t from = span.from;
    for (auto gone = next; gone != other.spans_.end() && gone->from < span.to; ++gone) {
      if (from < gone->from) left.push_back({from, gone->from});
      from = gone->to;
    }
    if (from < span.to) left.push_back({from, span.to});
  }
  spans_ = std::move(left);
}

Hours Hours::within(std::int64_t from, std::int64_t to) const {
  Hours part = *this;
  part.remove(Hours(0, from));
  part.remove(Hours(to, kSecondsPerDay));
  return part;
}

Hours Hours::inAtMost(std::size_t count) const {
  if (spans_.size() <= count) return *this;
  std::vector<Span> gaps;
  for (std::size_t i = 1; i < spans_.size(); ++i) gaps.push_back({spans_[i - 1].to, spans_[i].from});
  std::stable_sort(gaps.begin(), gaps.end(),
                   [](const Span& a, const Span& b) { return a.to - a.from < b.to - b.from; });
  gaps.resize(spans_.size() - count);
  gaps.insert(gaps.end(), spans_.begin(), spans_.end());
  return Hours(std::move(gaps));
}

std::string timeOfDayText(std::int64_t second) {
  const std::int64_t inDay = second % kSecondsPerDay;
  return fmt::format(FMT_COMPILE("{:02}:{:02}:{:02}"), inDay / kSecondsPerHour,
                     inDay % kSecondsPerHour / kSecondsPerMinute, inDay % kSecondsPerMinute);
}

}  // namespace conform
