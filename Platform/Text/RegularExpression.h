#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Where a group of a match stands, in bytes of the subject. A group that took no part has length 0, as has
/// one that matched nothing: callers here never need to tell the two apart.
struct MatchRange {
  std::size_t start = 0;
  std::size_t length = 0;

  [[nodiscard]] bool present() const { return length > 0; }
  [[nodiscard]] std::size_t end() const { return start + length; }
  [[nodiscard]] std::string_view in(std::string_view subject) const { return subject.substr(start, length); }
};

/// A POSIX extended regular expression: leftmost-longest, over bytes, not anchored.
class PosixRegularExpression {
 public:
  /// @throws InvariantFailure "Failed to compile reqular expression '...': ..." (spelled so on purpose) when
  /// the pattern does not compile, with the library's message.
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
