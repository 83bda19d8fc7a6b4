#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform {

/// A hash for identifiers such as "t123" or "123", which plans number in order. Identifiers with neighbouring numbers
/// get neighbouring hashes, in blocks of 64, since large plans are looked up in order and every jump costs a cache
/// miss. Where a block is placed depends on a random number of the process, so nobody can make a plan whose identifiers
/// all collide. Other texts are hashed with a random number as well.
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
