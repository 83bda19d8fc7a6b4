#include "Page/Display.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <string_view>

#include "Platform/Text/Texts.h"
#include "Platform/Time/GregorianCalendar.h"
#include "Platform/Time/Instant.h"

using platform::kSecondsPerHour;
using platform::kSecondsPerMinute;

namespace page {
namespace {

constexpr std::array<std::string_view, 4> kLinkTypes = {"FF", "FS", "SF", "SS"};

bool isPercentage(int lagFormat) { return lagFormat == 19 || lagFormat == 20 || lagFormat == 51 || lagFormat == 52; }
/// Whether a lag runs by the clock and not by working time. Such formats are even: 4 minutes, 6 hours, and so on.
bool isElapsed(int lagFormat) {
  const int estimated = 32;
  const int format = lagFormat > estimated ? lagFormat - estimated : lagFormat;
  return format >= 4 && format <= 12 && format % 2 == 0;
}

std::string lagText(const conform::FileLink& link, std::int64_t minutesPerDay) {
  const auto lag = static_cast<double>(link.lag);
  const std::string_view sign = link.lag > 0 ? "+" : "";
  if (isPercentage(link.lagFormat)) return fmt::format("{}{} %", sign, shortNumber(lag));
  const double minutes = lag / 10;
  if (isElapsed(link.lagFormat)) return fmt::format("{}{} ed", sign, shortNumber(minutes / (24 * 60)));
  const double days = minutes / static_cast<double>(minutesPerDay);
  if (std::abs(days) >= 0.5) return fmt::format("{}{} d", sign, shortNumber(days));
  if (std::abs(minutes) >= 60) return fmt::format("{}{} h", sign, shortNumber(minutes / 60));
  return fmt::format("{}{} min", sign, shortNumber(minutes));
}

std::string timeText(std::int64_t seconds) {
  return fmt::format("{:02}:{:02}", seconds / kSecondsPerHour, seconds % kSecondsPerHour / kSecondsPerMinute);
}

std::optional<double> decimal(const std::string& text) {
  const auto number = platform::scanDouble(text);
  return number && std::isfinite(number->value) ? std::optional(number->value) : std::nullopt;
}

std::string moneyText(double amount, const conform::PlanFile& plan) {
  std::string number = platform::fixedPoint(amount, 2);
  const std::string_view blank = plan.currencyPosition >= 2 ? " " : "";
  if (plan.currencySymbol.empty()) return number;
  if (plan.currencyPosition % 2 == 0) return fmt::format("{}{}{}", plan.currencySymbol, blank, number);
  return fmt::format("{}{}{}", number, blank, plan.currencySymbol);
}

std::string unitOfRate(const conform::FileResource& resource) {
  if (resource.type == 0) return resource.unitName.empty() ? "unit" : resource.unitName;
  constexpr std::array<std::string_view, 9> kUnits = {"", "minute", "hour", "day", "week", "month", "", "year", "unit"};
  const auto format = static_cast<std::size_t>(resource.rateFormat);
  return std::string(format < kUnits.size() ? kUnits[format] : "");
}

}  // namespace

std::string dateTimeText(std::optional<conform::CivilSeconds> moment) {
  if (!moment) return "";
  const auto civil = platform::GregorianCalendar::civilFromSeconds(*moment);
  return fmt::format("{} {:02}:{:02}", dateText(*moment), civil.hour, civil.minute);
}

std::string dateText(conform::CivilSeconds moment) {
  const auto civil = platform::GregorianCalendar::civilFromSeconds(moment);
  return fmt::format("{:04}-{:02}-{:02}", civil.year, civil.month, civil.day);
}

std::string_view monthName(std::int64_t month) {
  constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  return kMonths[static_cast<std::size_t>(month - 1)];
}

std::string shortNumber(double number) {
  std::string text = platform::fixedPoint(number, 2);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string daysText(std::optional<std::int64_t> seconds, std::int64_t minutesPerDay) {
  if (!seconds) return "";
  return shortNumber(static_cast<double>(*seconds) / 60 / static_cast<double>(minutesPerDay)) + " d";
}

std::string hoursText(std::optional<std::int64_t> seconds) {
  return seconds ? shortNumber(static_cast<double>(*seconds) / kSecondsPerHour) + " h" : "";
}

std::string linkText(const conform::FileLink& link, std::int64_t minutesPerDay) {
  const auto type = static_cast<std::size_t>(link.type);
  std::string text(type < kLinkTypes.size() ? kLinkTypes[type] : kLinkTypes[1]);
  if (link.lag != 0) text += " " + lagText(link, minutesPerDay);
  return text;
}

std::string timesText(const conform::WorkingHours& hours) {
  std::string text;
  for (const conform::Span& time : hours) {
    if (!text.empty()) text += ", ";
    text += timeText(time.from) + "-" + timeText(time.to);
  }
  return text.empty() ? "off" : text;
}

std::string rateText(const conform::FileResource& resource, const conform::PlanFile& plan) {
  const auto amount = decimal(resource.rate);
  if (!amount) return "";
  const std::string unit = unitOfRate(resource);
  return moneyText(*amount, plan) + (unit.empty() ? "" : " per " + unit);
}

std::string costText(const std::string& hundredths, const conform::PlanFile& plan) {
  const auto amount = decimal(hundredths);
  return amount ? moneyText(*amount / 100, plan) : "";
}

std::string percentText(const std::string& factor) {
  const auto number = decimal(factor);
  return number ? shortNumber(*number * 100) + " %" : "";
}

}  // namespace page
