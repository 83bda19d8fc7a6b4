#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>

namespace platform {

/// Remembers what a conversion made of the keys of late. For conversions that give the same for the same key as long as
/// the process runs, and are asked for the same keys over and over.
template <typename Key, typename Value, typename Hash = std::hash<Key>>
class Memo {
 public:
  /// What is remembered for the key, or what compute() gives.
  template <typename View, typename Compute>
  const Value& get(const View& key, Compute compute) {
    std::optional<Entry>& entry = entries_[Hash()(key) % kSlots];
    if (!entry || entry->key != key) entry = Entry{Key(key), compute()};
    return entry->value;
  }
  void forget() { entries_.fill(std::nullopt); }

 private:
  static constexpr std::size_t kSlots = 512;
  struct Entry {
    Key key;
    Value value;
  };
  std::array<std::optional<Entry>, kSlots> entries_;
};

}  // namespace platform
