#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform {

/// A hash for identifiers such as "t123" or "123", which plans number in order. Neighbours come to lie beside each
/// other in a table, in blocks: large plans are asked for in order, and each look elsewhere waits for memory. Where the
/// blocks lie differs from process to process, so that nobody can make a plan whose identifiers all lie in one place.
/// The same holds for every other text.
struct IdHash {
  using is_transparent = void;

  std::size_t operator()(std::string_view id) const {
    constexpr std::size_t kMaximumDigits = 18;
    constexpr std::uint64_t kBlock = 64;
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    std::string_view digits = id;
    if (!digits.empty() && !isDigit(digits.front())) digits.remove_prefix(1);
    if (digits.empty() || digits.size() > kMaximumDigits) return ofText(id);
    std::uint64_t number = 0;
    for (const char c : digits) {
      if (!isDigit(c)) return ofText(id);
      number = number * 10 + static_cast<std::uint64_t>(c - '0');
    }
    const std::uint64_t kind = std::uint64_t{256} * static_cast<unsigned char>(id.front()) + id.size();
    return (number / kBlock ^ kind << 48U) * spread_ / kBlock * kBlock + number % kBlock;
  }

 private:
  [[nodiscard]] static std::size_t ofText(std::string_view text);

  static const std::uint64_t spread_;
  static const std::uint64_t base_;
};

}  // namespace platform
