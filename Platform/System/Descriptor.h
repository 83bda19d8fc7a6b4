#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace platform {

/// An open file of the system, closed with this object.
class Descriptor {
 public:
  Descriptor() = default;
  /// @param number what open() and its like gave; a negative one is none, and errno then says why.
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  [[nodiscard]] int get() const { return number_; }
  /// A link of the system that leads to the open file, even when that has no name: "/proc/self/fd/3". It is there only
  /// where /proc is.
  [[nodiscard]] std::string link() const;

 private:
  int number_ = -1;
};

/// Writes all bytes to an open file.
/// @return whether that succeeded; otherwise errno says why it did not.
[[nodiscard]] bool writeAll(int descriptor, std::string_view bytes);

}  // namespace platform
