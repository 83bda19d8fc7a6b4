#include "KVMSPCommon/MSPImportMapper/MSPIUsualDateTime.h"

#include <fmt/format.h>

#include <iterator>

namespace {

bool isWithin(std::int64_t number, std::int64_t lowest, std::int64_t highest) {
  return number >= lowest && number <= highest;
}

/// Two decimal digits at the position; -1 when there are none.
int twoDigits(std::string_view text, std::size_t at) {
  const int tens = text[at] - '0';
  const int units = text[at + 1] - '0';
  return tens >= 0 && tens <= 9 && units >= 0 && units <= 9 ? tens * 10 + units : -1;
}

void putTwoDigits(char* at, std::int64_t number) {
  at[0] = static_cast<char>('0' + number / 10);
  at[1] = static_cast<char>('0' + number % 10);
}

}  // namespace

std::optional<MSPCUnitFlags> scanUsualDateTime(MSPCDateComponents& record, std::string_view text) {
  constexpr std::size_t kDateLength = 10;
  constexpr std::size_t kLocalLength = 19;
  constexpr std::size_t kUTCLength = 20;
  constexpr std::size_t kOffsetLength = 25;
  const std::size_t length = text.size();
  if (length != kDateLength && length != kLocalLength && length != kUTCLength && length != kOffsetLength) {
    return std::nullopt;
  }
  const int century = twoDigits(text, 0);
  const int yearOfCentury = twoDigits(text, 2);
  const int month = twoDigits(text, 5);
  const int day = twoDigits(text, 8);
  if (text[4] != '-' || text[7] != '-' || (century | yearOfCentury | month | day) < 0) return std::nullopt;

  MSPCUnitFlags flags = kMSPCDateUnits;
  if (length != kDateLength) {
    const int hour = twoDigits(text, 11);
    const int minute = twoDigits(text, 14);
    const int second = twoDigits(text, 17);
    if (text[10] != 'T' || text[13] != ':' || text[16] != ':' || (hour | minute | second) < 0) return std::nullopt;
    flags = kMSPCDateTimeUnits;
    if (length == kUTCLength) {
      if (text[19] != 'Z') return std::nullopt;
      record.setUTC();
      flags |= kMSPCTimeZoneUTC;
    } else if (length == kOffsetLength) {
      const int zoneHour = twoDigits(text, 20);
      const int zoneMinute = twoDigits(text, 23);
      if ((text[19] != '+' && text[19] != '-') || text[22] != ':' || (zoneHour | zoneMinute) < 0) return std::nullopt;
      const bool isNegative = text[19] == '-';
      record.setTimeZoneHour(isNegative ? -zoneHour : zoneHour);
      record.setTimeZoneMinute(MSPCDateComponents::offsetMinutes(isNegative, zoneMinute));
      record.fixUTC();
      flags |= kMSPCTimeZoneHour | kMSPCTimeZoneMinute;
    } else {
      record.fixUTC();
    }
    record.hour = hour;
    record.minute = minute;
    record.second = second;
  }
  record.year = century * 100 + yearOfCentury;
  record.month = month;
  record.day = day;
  return flags;
}

std::string usualDateTime(const platform::CivilTime& civil) {
  if (!isWithin(civil.year, 1000, 9999) || !isWithin(civil.month, 0, 99) || !isWithin(civil.day, 0, 99) ||
      !isWithin(civil.hour, 0, 99) || !isWithin(civil.minute, 0, 99) || !isWithin(civil.second, 0, 99)) {
    return "";
  }
  std::string text = "0000-00-00T00:00:00";
  putTwoDigits(text.data(), civil.year / 100);
  putTwoDigits(&text[2], civil.year % 100);
  putTwoDigits(&text[5], civil.month);
  putTwoDigits(&text[8], civil.day);
  putTwoDigits(&text[11], civil.hour);
  putTwoDigits(&text[14], civil.minute);
  putTwoDigits(&text[17], civil.second);
  return text;
}

void appendTwoDigits(std::string& text, std::int64_t number) {
  if (isWithin(number, 0, 99)) {
    text.append(2, '0');
    putTwoDigits(&text[text.size() - 2], number);
  } else {
    fmt::format_to(std::back_inserter(text), "{:02d}", static_cast<std::int32_t>(number));
  }
}
