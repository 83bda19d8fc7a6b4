#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The position of a group of a match, in bytes of the subject. The length is 0 both for a group that did not take part
/// and for one that matched an empty text; callers never need to tell the two apart.
struct MatchRange {
  std::size_t start = 0;
  std::size_t length = 0;

  [[nodiscard]] bool present() const { return length > 0; }
  [[nodiscard]] std::size_t end() const { return start + length; }
  [[nodiscard]] std::string_view in(std::string_view subject) const { return subject.substr(start, length); }
};

/// A POSIX extended regular expression over bytes, not anchored; finds the leftmost match, and of several there the
/// longest.
class PosixRegularExpression {
 public:
  /// @throws InvariantFailure "Failed to compile reqular expression '...': ..." (spelled so on purpose) when the
  /// pattern does not compile, with the library's message.
  explicit PosixRegularExpression(const char* pattern);
  ~PosixRegularExpression();
  PosixRegularExpression(const PosixRegularExpression&) = delete;
  PosixRegularExpression& operator=(const PosixRegularExpression&) = delete;

  /// The ranges of the whole match (index 0) and of each group; empty when nothing matches.
  [[nodiscard]] std::vector<MatchRange> match(const std::string& subject) const;

 private:
  struct Compiled;
  std::unique_ptr<Compiled> compiled_;
};

/// A regular expression over Unicode text, with anchors that match at line ends.
class UnicodeRegularExpression {
 public:
  /// @throws InvariantFailure as for POSIX expressions.
  explicit UnicodeRegularExpression(std::string_view pattern);
  ~UnicodeRegularExpression();
  UnicodeRegularExpression(const UnicodeRegularExpression&) = delete;
  UnicodeRegularExpression& operator=(const UnicodeRegularExpression&) = delete;

  /// Every match in the subject (UTF-8), in order.
  [[nodiscard]] std::vector<MatchRange> matches(std::string_view subject) const;

 private:
  struct Compiled;
  std::unique_ptr<Compiled> compiled_;
};

}  // namespace platform
