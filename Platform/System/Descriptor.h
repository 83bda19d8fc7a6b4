#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

/// An open file of the system, closed with this object.
class Descriptor {
 public:
  Descriptor() = default;
  /// @param number the result of open() or the like; negative when that failed, with the reason in errno.
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  /// The same, but never under the number of a standard stream that is closed: messages of this program would be
  /// written into the file.
  [[nodiscard]] static Descriptor besideStandardStreams(int number);

  /// Opens the file for reading. Does not wait for the writer of a pipe; may wait for a program that has a lease on a
  /// regular file, as file servers have for their clients. Without waiting, such a file could not be read.
  [[nodiscard]] static Descriptor forReading(const std::string& path);
  /// The same for the file that this descriptor, opened with O_PATH, stands for. Works only where /proc is mounted.
  [[nodiscard]] Descriptor reopenedForReading() const;

  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  [[nodiscard]] int get() const { return number_; }
  /// How many bytes of a regular file are not in holes, counted up to `enough`. Unlike the number of its blocks, this
  /// is right at once after the file was written. A file system that knows no holes has none.
  [[nodiscard]] std::uint64_t dataSize(std::uint64_t enough) const;
  /// A path that leads to the open file even when that has no name: "/proc/self/fd/3". Works only where /proc is
  /// mounted.
  [[nodiscard]] std::string link() const;

 private:
  int number_ = -1;
};

/// Writes all bytes to an open file.
/// @return whether that succeeded; otherwise errno says why it did not.
[[nodiscard]] bool writeAll(int descriptor, std::string_view bytes);

}  // namespace platform
