#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Conform/PlanFile.h"

// How values are shown on the page. Texts that come from the plan may contain markup characters, so escaped() must be
// applied to them.

namespace page {

/// "2026-02-06 08:30"; empty for none.
[[nodiscard]] std::string dateTimeText(std::optional<conform::CivilSeconds> moment);
/// "2026-02-06".
[[nodiscard]] std::string dateText(conform::CivilSeconds moment);
/// "Feb". @param month 1 to 12.
[[nodiscard]] std::string_view monthName(std::int64_t month);
/// The number with at most two decimals: "0.5".
[[nodiscard]] std::string shortNumber(double number);
/// "15 d", counted in days of this many working minutes; empty for none.
[[nodiscard]] std::string daysText(std::optional<std::int64_t> seconds, std::int64_t minutesPerDay);
/// "120 h"; empty for none.
[[nodiscard]] std::string hoursText(std::optional<std::int64_t> seconds);
/// The link's type and its lag, if any: "FS", "SS +2 d", "FS -50 %", "FS +3 ed" for elapsed days.
[[nodiscard]] std::string linkText(const conform::FileLink& link, std::int64_t minutesPerDay);
/// "08:30-12:30, 13:30-17:30"; "off" without any.
[[nodiscard]] std::string timesText(const conform::WorkingHours& hours);
/// "$120.00 per hour"; empty without a rate.
[[nodiscard]] std::string rateText(const conform::FileResource& resource, const conform::PlanFile& plan);
/// "$12.50", from hundredths; empty when the text is none.
[[nodiscard]] std::string costText(const std::string& hundredths, const conform::PlanFile& plan);
/// "50 %", from a factor; empty when the text is none.
[[nodiscard]] std::string percentText(const std::string& factor);

}  // namespace page
