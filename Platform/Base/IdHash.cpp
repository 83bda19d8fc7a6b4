#include "Platform/Base/IdHash.h"

#include <cstring>

#include "Platform/Base/Wide.h"
#include "Platform/System/Random.h"

namespace platform {

namespace {

constexpr std::uint64_t kPrime = (std::uint64_t{1} << 61U) - 1;

}  // namespace

const std::uint64_t IdHash::spread_ = unforeseeableValue() | 1U;
const std::uint64_t IdHash::base_ = unforeseeableValue() % kPrime;

/// A polynomial modulo a prime, whose coefficients are the text's length and its bytes, seven at a time. Without
/// knowing the base, texts of equal hash can only be found by chance; the standard library's hash has a fixed, known
/// base.
std::size_t IdHash::ofText(std::string_view text) {
  constexpr std::size_t kStep = 7;
  std::uint64_t value = text.size();
  for (std::size_t at = 0; at < text.size(); at += kStep) {
    std::uint64_t bytes = 0;
    const std::string_view step = text.substr(at, kStep);
    std::memcpy(&bytes, step.data(), step.size());
    const Wide next = static_cast<Wide>(value) * base_ + bytes;
    value = static_cast<std::uint64_t>(next & kPrime) + static_cast<std::uint64_t>(next >> 61U);
    if (value >= kPrime) value -= kPrime;
  }
  return value;
}

}  // namespace platform
