#include "Conform/Hours.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <algorithm>

namespace conform {

Hours::Hours(std::int64_t from, std::int64_t to) {
  if (from < to) spans_.push_back({from, to});
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
  const auto middle = static_cast<std::ptrdiff_t>(spans_.size());
  spans_.insert(spans_.end(), other.spans_.begin(), other.spans_.end());
  std::inplace_merge(spans_.begin(), spans_.begin() + middle, spans_.end(),
                     [](const Span& a, const Span& b) { return a.from < b.from; });
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

void Hours::remove(const Hours& other) {
  for (const Span& gone : other.spans_) {
    std::vector<Span> left;
    for (const Span& span : spans_) {
      if (span.from < gone.from) left.push_back({span.from, std::min(span.to, gone.from)});
      if (gone.to < span.to) left.push_back({std::max(span.from, gone.to), span.to});
    }
    spans_ = std::move(left);
  }
}

Hours Hours::within(std::int64_t from, std::int64_t to) const {
  Hours part = *this;
  part.remove(Hours(0, from));
  part.remove(Hours(to, kSecondsPerDay));
  return part;
}

Hours Hours::inAtMost(std::size_t count) const {
  Hours merged = *this;
  auto& spans = merged.spans_;
  while (spans.size() > count) {
    std::size_t smallest = 1;
    for (std::size_t i = 2; i < spans.size(); ++i) {
      if (spans[i].from - spans[i - 1].to < spans[smallest].from - spans[smallest - 1].to) smallest = i;
    }
    spans[smallest - 1].to = spans[smallest].to;
    spans.erase(spans.begin() + static_cast<std::ptrdiff_t>(smallest));
  }
  return merged;
}

std::string timeOfDayText(std::int64_t second) {
  const std::int64_t inDay = second % kSecondsPerDay;
  return fmt::format(FMT_COMPILE("{:02}:{:02}:{:02}"), inDay / 3600, inDay / 60 % 60, inDay % 60);
}

}  // namespace conform
