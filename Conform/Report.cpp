#include "Conform/Report.h"

#include <utility>

namespace conform {

void Report::count(const std::string& what, std::size_t number) {
  if (number > 0) counts_[what] += number;
}

void Report::warn(std::string sentence) {
  if (said_.insert(sentence).second) warnings_.push_back(std::move(sentence));
}

}  // namespace conform
