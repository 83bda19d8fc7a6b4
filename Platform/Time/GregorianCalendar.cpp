#include "Platform/Time/GregorianCalendar.h"

#include <algorithm>

#include "Platform/Base/Wide.h"
#include "Platform/Time/Instant.h"

namespace platform {
namespace {

constexpr std::int64_t kDaysPerEra = 146097;              // 400 years
constexpr std::int64_t kLimit = 400'000'000'000'000'000;  // twelve thousand million years in seconds

constexpr std::int64_t floorDiv(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

/// Days from 1970-01-01 to the first of the month; counts years from March so that leap days come last.
template <typename Integer>
Integer daysToMonth(Integer year, std::int64_t month) {
  if (month <= 2) year -= 1;
  const Integer era = (year >= 0 ? year : year - 399) / 400;
  const Integer yearOfEra = year - era * 400;
  const Integer dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5;
  return era * kDaysPerEra + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

/// The sum of everything, which the type must be able to hold.
template <typename Integer>
Integer secondsOf(const CivilTime &civil) {
  const Integer monthIndex = static_cast<Integer>(civil.month) - 1;
  const Integer yearsOver = monthIndex / 12 - (monthIndex % 12 < 0 ? 1 : 0);
  const auto month = static_cast<std::int64_t>(monthIndex - yearsOver * 12) + 1;
  const Integer days = daysToMonth<Integer>(static_cast<Integer>(civil.year) + yearsOver, month) + civil.day - 1;
  return days * kSecondsPerDay + static_cast<Integer>(civil.hour) * kSecondsPerHour +
         static_cast<Integer>(civil.minute) * kSecondsPerMinute + civil.second;
}

/// Whether components are as small as real ones are, give or take some powers of ten.
bool isUsual(const CivilTime &civil) {
  constexpr std::int64_t kBound = 1'000'000;
  for (const std::int64_t component : {civil.year, civil.month, civil.day, civil.hour, civil.minute, civil.second}) {
    if (component < -kBound || component > kBound) return false;
  }
  return true;
}

}  // namespace

std::int64_t GregorianCalendar::secondsFromCivil(const CivilTime &civil) {
  // In wide arithmetic no sum of 64-bit components can overflow, but it is slow.
  if (isUsual(civil)) return secondsOf<std::int64_t>(civil);
  return static_cast<std::int64_t>(std::clamp<Wide>(secondsOf<Wide>(civil), -kLimit, kLimit));
}

CivilTime GregorianCalendar::civilFromSeconds(std::int64_t seconds) {
  const std::int64_t clamped = std::clamp(seconds, -kLimit - kSecondsPerDay, kLimit + kSecondsPerDay);
  const std::int64_t days = floorDiv(clamped, kSecondsPerDay);
  const std::int64_t rest = clamped - days * kSecondsPerDay;
  const std::int64_t z = days + 719468;
  const std::int64_t era = floorDiv(z, kDaysPerEra);
  const std::int64_t dayOfEra = z - era * kDaysPerEra;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
  CivilTime civil;
  civil.day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
  civil.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  civil.year = yearOfEra + era * 400 + (civil.month <= 2 ? 1 : 0);
  civil.hour = rest / kSecondsPerHour;
  civil.minute = rest / 60 % 60;
  civil.second = rest % 60;
  return civil;
}

int GregorianCalendar::weekday(std::int64_t civilSeconds) {
  const std::int64_t days = floorDiv(civilSeconds, kSecondsPerDay);
  const std::int64_t sinceSunday = days + 4;  // 1970-01-01 was a Thursday
  return static_cast<int>(sinceSunday - floorDiv(sinceSunday, 7) * 7) + 1;
}

std::int64_t GregorianCalendar::secondOfDay(std::int64_t civilSeconds) {
  return civilSeconds - floorDiv(civilSeconds, kSecondsPerDay) * kSecondsPerDay;
}

}  // namespace platform
