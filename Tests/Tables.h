#pragma once

#include <chrono>
#include <cstdio>

#include "Platform/Time/Instant.h"
#include "Tests/Support.h"

// Tables of checks. A row has an operation, the text that the operation gets, and the text that it must return.

/// The instant of a UTC time such as "2011-05-06 08:00:00". Uses the standard library alone, because expected values
/// must not come from the code under test.
inline platform::Instant utc(std::string_view text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  std::sscanf(std::string(text).c_str(), "%d-%d-%d %d:%d:%d", &year, &month, &day, &hour, &minute, &second);
  const std::chrono::sys_seconds instant = std::chrono::sys_days{std::chrono::year(year) / month / day} +
                                           std::chrono::hours(hour) + std::chrono::minutes(minute) +
                                           std::chrono::seconds(second);
  return {static_cast<double>(instant.time_since_epoch().count())};
}
inline std::string shown(platform::Instant instant) {
  const auto seconds = static_cast<std::time_t>(instant.seconds);
  std::string text(64, '\0');
  text.resize(std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", std::gmtime(&seconds)));
  return text;
}
template <typename Value>
std::string shown(const Value& value) {
  return fmt::format("{}", value);
}
template <typename Value>
std::string shown(const std::optional<Value>& value) {
  return value ? shown(*value) : "none";
}

using Operation = std::string (*)(std::string_view);
/// Makes an operation of a function that takes one text.
template <auto kFunction>
std::string apply(std::string_view text) {
  return shown(kFunction(text));
}
struct Row {
  int line;
  Operation operation;
  std::string_view text;
  std::string_view expected;  ///< "none" for no value, "raises <reason>" for an exception
  std::string zone = {};      ///< the system time zone; "" leaves it unchanged
};

inline void expectOutcomes(std::initializer_list<Row> rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.line);
    std::optional<PinnedZone> zone;
    if (!row.zone.empty()) zone.emplace(row.zone);
    std::string outcome;
    try {
      outcome = row.operation(row.text);
    } catch (const platform::Exception& exception) {
      outcome = "raises " + exception.reason();
    }
    EXPECT_EQ(outcome, row.expected);
  }
}
