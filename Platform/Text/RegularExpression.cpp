#include "Platform/Text/RegularExpression.h"

#include <regex.h>
#include <unicode/regex.h>
#include <unicode/utext.h>

#include <array>
#include <cerrno>
#include <new>

#include "Platform/System/Exceptions.h"
#include "Platform/Text/Status.h"

namespace platform {
namespace {

constexpr fmt::string_view kCompileFailure = "Failed to compile reqular expression '{}': {}";  // spelled so on purpose

[[noreturn]] void failToCompile(std::string_view pattern, std::string_view message) {
  throw InvariantFailure(fmt::format(fmt::runtime(kCompileFailure), pattern, message));
}

}  // namespace

struct PosixRegularExpression::Compiled {
  regex_t regex{};

  explicit Compiled(const char* pattern) {
    if (const int error = regcomp(&regex, pattern, REG_EXTENDED); error != 0) {
      std::array<char, 256> message{};
      regerror(error, &regex, message.data(), message.size());
      failToCompile(pattern, message.data());
    }
  }
  ~Compiled() { regfree(&regex); }
  Compiled(const Compiled&) = delete;
  Compiled& operator=(const Compiled&) = delete;
};

PosixRegularExpression::PosixRegularExpression(const char* pattern) : compiled_(std::make_unique<Compiled>(pattern)) {}

PosixRegularExpression::~PosixRegularExpression() = default;

std::vector<MatchRange> PosixRegularExpression::match(const std::string& subject) const {
  std::vector<regmatch_t> slots(compiled_->regex.re_nsub + 1);
  errno = 0;
  if (regexec(&compiled_->regex, subject.c_str(), slots.size(), slots.data(), 0) != 0) {
    // The C library returns "no match" for a lack of memory, too.
    if (errno == ENOMEM) throw std::bad_alloc();
    return {};
  }
  std::vector<MatchRange> ranges;
  ranges.reserve(slots.size());
  for (const regmatch_t& slot : slots) {
    if (slot.rm_so < 0) {
      ranges.push_back({});
    } else {
      ranges.push_back({static_cast<std::size_t>(slot.rm_so), static_cast<std::size_t>(slot.rm_eo - slot.rm_so)});
    }
  }
  return ranges;
}

struct UnicodeRegularExpression::Compiled {
  std::unique_ptr<icu::RegexPattern> pattern;
};

UnicodeRegularExpression::UnicodeRegularExpression(std::string_view pattern) : compiled_(std::make_unique<Compiled>()) {
  UErrorCode status = U_ZERO_ERROR;
  UParseError where{};
  const auto text =
      icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), static_cast<std::int32_t>(pattern.size())));
  compiled_->pattern.reset(icu::RegexPattern::compile(text, UREGEX_MULTILINE, where, status));
  if (hasFailed(status)) failToCompile(pattern, u_errorName(status));
}

UnicodeRegularExpression::~UnicodeRegularExpression() = default;

std::vector<MatchRange> UnicodeRegularExpression::matches(std::string_view subject) const {
  std::vector<MatchRange> ranges;
  UErrorCode status = U_ZERO_ERROR;
  // A UText over the UTF-8 bytes, so that positions are reported in bytes.
  const std::unique_ptr<UText, decltype(&utext_close)> text(
      utext_openUTF8(nullptr, subject.data(), static_cast<std::int64_t>(subject.size()), &status), &utext_close);
  if (hasFailed(status)) return ranges;
  const std::unique_ptr<icu::RegexMatcher> matcher(compiled_->pattern->matcher(status));
  if (hasFailed(status)) return ranges;
  matcher->reset(text.get());
  while (matcher->find(status) && !hasFailed(status)) {
    const auto start = static_cast<std::size_t>(matcher->start64(status));
    const auto end = static_cast<std::size_t>(matcher->end64(status));
    ranges.push_back({start, end - start});
  }
  static_cast<void>(hasFailed(status));  // throws if memory ran out
  return ranges;
}

}  // namespace platform
