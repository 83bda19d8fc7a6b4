#include "Platform/System/Log.h"

#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <iterator>
#include <string>
#include <utility>

#include "Platform/Base/Budget.h"
#include "Platform/System/Console.h"

namespace platform {
namespace {

/// A plan is logged in a tenth of its bytes, and a log cannot be taken back: each byte counts as so many.
constexpr std::size_t kBudgetOfAByte = 10;

std::string &programName() {
  static std::string name = "MSPDIExport";
  return name;
}

std::function<void(std::string_view)> &sink() {
  static std::function<void(std::string_view)> ofTheProcess;
  return ofTheProcess;
}

/// " MSPDIExport[4711] "
const std::string &nameAndProcess() {
  static const std::string text = fmt::format(" {}[{}] ", programName(), getpid());
  return text;
}

void append(fmt::memory_buffer &record, std::string_view text) {
  record.append(text.data(), text.data() + text.size());
}

constexpr char kLeadOfC1 = '\xC2';  // of U+0080 to U+00BF in UTF-8, the first half of which are control characters

/// A carriage return lets a name write over the line that it stands in. Programs that read the log get it as it is.
bool isCarriageReturnEscaped() {
  static const bool isTerminal = ::isatty(STDERR_FILENO) == 1;
  return isTerminal;
}

/// Whether a control character begins there, or may do so.
bool mayBeginControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  if (c == '\r') return isCarriageReturnEscaped();
  return (byte < ' ' && c != '\n' && c != '\t') || byte == 0x7F || c == kLeadOfC1;
}

/// Appends the character that the text begins with, escaped when it is a control character.
/// @return how many bytes that were.
std::size_t appendFirst(fmt::memory_buffer &record, std::string_view text) {
  const auto byte = [text](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0; };
  const bool isC1 = text.front() == kLeadOfC1 && byte(1) >= 0x80 && byte(1) < 0xA0;
  if (text.front() == kLeadOfC1 && !isC1) {
    record.push_back(kLeadOfC1);
  } else {
    fmt::format_to(std::back_inserter(record), "\\x{:02x}", byte(isC1 ? 1 : 0));
  }
  return isC1 ? 2 : 1;
}

/// A terminal would obey control characters in the names and texts of a bundle.
void appendEscaped(fmt::memory_buffer &record, std::string_view text) {
  while (!text.empty()) {
    const auto plain = static_cast<std::size_t>(std::find_if(text.begin(), text.end(), mayBeginControl) - text.begin());
    append(record, text.substr(0, plain));
    text.remove_prefix(plain);
    if (!text.empty()) text.remove_prefix(appendFirst(record, text));
  }
}

char digit(int number) { return static_cast<char>('0' + number); }

/// The prefix's date and time to the second. Kept from record to record: thousands share a second.
const std::string &localSecond(time_t now) {
  static time_t cachedFor = -1;
  static std::string text;
  if (now != cachedFor) {
    tm local{};
    localtime_r(&now, &local);
    text = fmt::format("{:04d}-{:02d}-{:02d} {:02d}:{:02d}:{:02d}", local.tm_year + 1900, local.tm_mon + 1,
                       local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    cachedFor = now;
  }
  return text;
}

}  // namespace

void setLogProgramName(std::string_view name) { programName() = name; }

void setLogSink(std::function<void(std::string_view record)> newSink) { sink() = std::move(newSink); }

void logRecord(fmt::string_view format, fmt::format_args args) {
  if (sink()) {
    sink()(fmt::vformat(format, args));
    return;
  }
  timeval now{};
  gettimeofday(&now, nullptr);
  const auto milliseconds = static_cast<int>(now.tv_usec / 1000);
  const std::array<char, 4> fraction = {'.', digit(milliseconds / 100), digit(milliseconds / 10 % 10),
                                        digit(milliseconds % 10)};
  fmt::memory_buffer record;
  append(record, localSecond(now.tv_sec));
  append(record, {fraction.data(), fraction.size()});
  appendEscaped(record, nameAndProcess());
  fmt::memory_buffer message;
  fmt::vformat_to(std::back_inserter(message), format, args);
  appendEscaped(record, {message.data(), message.size()});
  record.push_back('\n');
  Budget::spend(kBudgetOfAByte * record.size());

  writeToStandardError({record.data(), record.size()});
}

}  // namespace platform
