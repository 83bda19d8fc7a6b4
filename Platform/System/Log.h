#pragma once

#include <fmt/format.h>

#include <functional>
#include <string_view>

namespace platform {

/// Names the program in the prefix of every record; called once by the driver with the last component of
/// its own path.
void setLogProgramName(std::string_view name);

/// Writes one record to standard error with a single write, so that the records of programs running in parallel do not
/// mix inside a line. The record is preceded by local date-time with milliseconds, program name and process id
/// ("2026-05-06 08:00:00.123 MSPDIExport[4711] "); a record of several lines has the prefix in front of its first.
/// Control characters except line feed and tab are escaped: "\x1b", "\x85" for U+0085; a carriage return only on a
/// terminal, as "\x0d". A closed or full standard error is ignored.
void logRecord(fmt::string_view format, fmt::format_args args);

/// Passes the records to the sink, without prefix and final line break, instead of writing them to standard error. For
/// programs that show the log in another way. An empty sink restores standard error.
/// @param beginning the sink gets only the records whose format begins with this. The others are not formatted, since
/// that takes time and there are thousands of them.
void setLogSink(std::function<void(std::string_view record)> sink, std::string_view beginning = "");

/// Formats a record as fmt does and writes it.
template <typename... Args>
void log(fmt::format_string<Args...> format, Args&&... args) {
  logRecord(format, fmt::make_format_args(args...));
}

}  // namespace platform
