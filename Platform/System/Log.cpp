#include "Platform/System/Log.h"

#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <ctime>
#include <string>
#include <utility>

#include "Platform/Base/Budget.h"
#include "Platform/System/Console.h"
#include "Platform/Text/Texts.h"

namespace platform {
namespace {

/// Each byte of the log counts this many times in the budget: an export normally logs a tenth of the plan's size, and a
/// log cannot be taken back once it is written.
constexpr std::size_t kBudgetOfAByte = 10;

std::string &programName() {
  static std::string name = "MSPDIExport";
  return name;
}

/// Where the records go instead of standard error, and which of them.
struct Sink {
  std::function<void(std::string_view)> take;
  std::string beginning;
};

Sink &sink() {
  static Sink ofTheProcess;
  return ofTheProcess;
}

void passToSink(fmt::string_view format, fmt::format_args args) {
  if (!std::string_view(format.data(), format.size()).starts_with(sink().beginning)) return;
  const std::string record = fmt::vformat(format, args);
  Budget::spend(kBudgetOfAByte * record.size());
  sink().take(record);
}

/// On a terminal, a carriage return in a name would let it overwrite its line. Programs that read the log get it
/// unescaped.
bool isCarriageReturnEscaped() {
  static const bool isTerminal = ::isatty(STDERR_FILENO) == 1;
  return isTerminal;
}

constexpr std::uint32_t kFirstWideEscape = 0x100;  // U+0085 is "\x85"

/// Whether a terminal would obey the character, which may come from the names and texts of a bundle.
bool isControl(std::uint32_t character) {
  if (character == '\n' || character == '\t') return false;
  if (character == '\r') return isCarriageReturnEscaped();
  return character < ' ' || (character >= 0x7F && character < 0xA0);
}

char digit(int number) { return static_cast<char>('0' + number); }

/// " MSPDIExport[4711] "
const std::string &nameAndProcess() {
  static const std::string text = [] {
    std::string escaped;
    appendEscaped(escaped, fmt::format(" {}[{}] ", programName(), getpid()), isControl, kFirstWideEscape);
    return escaped;
  }();
  return text;
}

/// The prefix's date and time to the second. Kept from record to record, since thousands are written in one second.
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

void setLogSink(std::function<void(std::string_view record)> newSink, std::string_view beginning) {
  sink() = {std::move(newSink), std::string(beginning)};
}

void logRecord(fmt::string_view format, fmt::format_args args) {
  if (sink().take) return passToSink(format, args);
  timeval now{};
  gettimeofday(&now, nullptr);
  const auto milliseconds = static_cast<int>(now.tv_usec / 1000);
  const std::array<char, 4> fraction = {'.', digit(milliseconds / 100), digit(milliseconds / 10 % 10),
                                        digit(milliseconds % 10)};
  fmt::memory_buffer message;
  fmt::vformat_to(fmt::appender(message), format, args);
  const std::string &second = localSecond(now.tv_sec);
  std::string record;
  record.reserve(second.size() + fraction.size() + nameAndProcess().size() + message.size() + 1);
  record.append(second).append(fraction.data(), fraction.size()).append(nameAndProcess());
  appendEscaped(record, {message.data(), message.size()}, isControl, kFirstWideEscape);
  record.push_back('\n');
  Budget::spend(kBudgetOfAByte * record.size());

  writeToStandardError(record);
}

}  // namespace platform
