#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>

namespace platform {

/// A small cache of recent conversion results. Use it only where a key's result cannot change while the process runs.
template <typename Key, typename Value, typename Hash = std::hash<Key>>
class Memo {
 public:
  /// The cached value of the key; when there is none, that of compute(), which is then cached.
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
