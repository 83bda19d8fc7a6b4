#include "Platform/System/Log.h"

#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <ctime>
#include <iterator>
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

std::function<void(std::string_view)> &sink() {
  static std::function<void(std::string_view)> ofTheProcess;
  return ofTheProcess;
}

/// " MSPDIExport[4711] "
const std::string &nameAndProcess() {
  static const std::string text = fmt::format(" {}[{}] ", programName(), getpid());
  return text;
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

void setLogSink(std::function<void(std::string_view record)> newSink) { sink() = std::move(newSink); }

void logRecord(fmt::string_view format, fmt::format_args args) {
  if (sink()) {
    const std::string record = fmt::vformat(format, args);
    Budget::spend(kBudgetOfAByte * record.size());
    sink()(record);
    return;
  }
  timeval now{};
  gettimeofday(&now, nullptr);
  const auto milliseconds = static_cast<int>(now.tv_usec / 1000);
  const std::array<char, 4> fraction = {'.', digit(milliseconds / 100), digit(milliseconds / 10 % 10),
                                        digit(milliseconds % 10)};
  std::string record = localSecond(now.tv_sec);
  record.append(fraction.data(), fraction.size());
  appendEscaped(record, nameAndProcess(), isControl, kFirstWideEscape);
  fmt::memory_buffer message;
  fmt::vformat_to(std::back_inserter(message), format, args);
  appendEscaped(record, {message.data(), message.size()}, isControl, kFirstWideEscape);
  record.push_back('\n');
  Budget::spend(kBudgetOfAByte * record.size());

  writeToStandardError(record);
}

}  // namespace platform
