#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace conform {

// How the exporter reads texts of a plan. Each returns a sentence about a text that is read in another way than it was
// probably meant, and none when it is read as it stands:
//
//   doubtOfNumber("effort", "8 h")     "effort '8 h' is read as far as it is a number: 8"
//   doubtOfNumber("effort", "28800")   none

/// A date with "Z" or an offset.
[[nodiscard]] std::optional<std::string> doubtOfDate(std::string_view name, std::string_view text);
/// A date of an event, which may be without a zone.
[[nodiscard]] std::optional<std::string> doubtOfLocalDate(std::string_view name, std::string_view text);
/// The date of a day, which may be without a time.
[[nodiscard]] std::optional<std::string> doubtOfDay(std::string_view name, std::string_view text);
[[nodiscard]] std::optional<std::string> doubtOfNumber(std::string_view name, std::string_view text);
/// A number that is read without its decimals.
[[nodiscard]] std::optional<std::string> doubtOfWholeNumber(std::string_view name, std::string_view text);
/// A number that is written as it is. An empty one is left out.
[[nodiscard]] std::optional<std::string> doubtOfCopiedNumber(std::string_view name, std::string_view text);
/// @param seconds of the duration that is written for the text.
[[nodiscard]] std::optional<std::string> doubtOfSize(std::string_view name, std::string_view text, double seconds);
/// @param otherwise what the text counts as when it is neither true nor false.
[[nodiscard]] std::optional<std::string> doubtOfTruth(std::string_view name, std::string_view text, bool otherwise);

}  // namespace conform
