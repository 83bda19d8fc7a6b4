#include <ctime>
#include <random>
#include <sstream>

#include "Platform/System/Exceptions.h"
#include "Platform/Time/GregorianCalendar.h"
#include "Platform/Time/TimeZone.h"
#include "Tests/Tables.h"

using platform::CivilTime;
using platform::GregorianCalendar;
using platform::TimeZone;

namespace {

std::string instant(std::string_view clock) {
  const auto seconds = static_cast<std::int64_t>(utc(clock).seconds);
  return shown(TimeZone::system().instantFromCivil(GregorianCalendar::civilFromSeconds(seconds)));
}
std::string dayStart(std::string_view text) { return shown(TimeZone::system().startOfDay(utc(text))); }
std::string dayEnd(std::string_view text) { return shown(TimeZone::system().endOfDay(utc(text))); }
/// At an instant: the clock's hour, the offset, the part of it that is summer time, the weekday; the zone's name.
std::string state(std::string_view text) {
  const TimeZone& zone = TimeZone::system();
  const platform::Instant instant = utc(text);
  return fmt::format("{} {} {} {} {}", zone.civilFromInstant(instant).hour, zone.secondsFromGMT(instant),
                     zone.daylightSavingOffset(instant), zone.weekday(instant), zone.name());
}

}  // namespace

TEST(TimeZoneTest, WallClocksAndInstants) {
  expectOutcomes({
      {__LINE__, instant, "2011-03-27 02:30:00", "2011-03-27 01:30:00", "Europe/Berlin"},        // skipped
      {__LINE__, instant, "2011-10-30 02:00:00", "2011-10-30 01:00:00", "Europe/Berlin"},        // repeated
      {__LINE__, instant, "2011-10-02 02:15:00", "2011-10-01 15:45:00", "Australia/Lord_Howe"},  // skips half an hour
      {__LINE__, instant, "2011-12-30 12:00:00", "2011-12-30 22:00:00", "Pacific/Apia"},         // this day is skipped
      {__LINE__, dayStart, "2024-09-08 12:00:00", "2024-09-08 04:00:00", "America/Santiago"},    // midnight is skipped
      {__LINE__, dayEnd, "2024-04-06 12:00:00", "2024-04-07 03:59:59", "America/Santiago"},      // 24:00 becomes 23:00
      {__LINE__, dayStart, "2011-11-13 12:00:00", "2011-11-13 05:00:00", "America/Havana"},      // 01:00 becomes 00:00
      {__LINE__, instant, "2011-04-10 12:00:00", "2011-04-10 11:00:00", "XXX0YYY,J100/0,J101/0"},  // summer for one day
      {__LINE__, instant, "2424-07-01 12:00:00", "2424-07-01 10:00:00", "Europe/Berlin"},
      {__LINE__, state, "2011-03-27 00:59:59", "1 3600 0 1 Europe/Berlin", ":Europe/Berlin"},
      {__LINE__, state, "9999-07-01 10:00:00", "12 7200 3600 5 Europe/Berlin", "Europe/Berlin"},
      {__LINE__, state, "2011-01-01 12:00:00", "12 0 -3600 7 Europe/Dublin", "Europe/Dublin"},
      {__LINE__, state, "1943-06-01 12:00:00", "14 7200 7200 3 Europe/London", "Europe/London"},    // double summer
      {__LINE__, state, "2016-07-01 12:00:00", "15 10800 0 6 Europe/Istanbul", "Europe/Istanbul"},  // summer time stays
      {__LINE__, state, "2023-07-01 12:00:00", "6 -21600 0 7 America/Mexico_City", "America/Mexico_City"},
      {__LINE__, state, "2011-03-27 01:00:00", "3 7200 3600 1 Europe/Berlin", "/usr/share/zoneinfo/Europe/Berlin"},
      {__LINE__, state, "2012-02-29 06:00:00", "6 0 0 4 UTC", "Nowhere/Land"},
      {__LINE__, state, "2012-02-29 06:00:00", "15 32400 0 4 JST-9", "JST-9"},
  });
}

TEST(TimeZoneTest, AgreesWithTheCLibrary) {
  // All forms of TZ, and zones with unusual changes: recent, frequent, by odd amounts, across the date line, reversed.
  std::istringstream names(
      ":Europe/Berlin /usr/share/zoneinfo/Asia/Kolkata :/etc/localtime UTC EST5EDT EST5EDT,M3.2.0,M11.1.0 "
      "CET-1CEST CET-1CEST,M3.5.0,M10.5.0/3 <+0330>-3:30 <-02>2<-01>,M3.5.0/-1,M10.5.0/0 "
      "NZST-12NZDT,M9.5.0,M4.1.0/3 XXX1YYY,J100/0,J101/0 LMT0:53:28 America/Mexico_City America/Ciudad_Juarez "
      "America/Coyhaique America/Nuuk America/Asuncion America/St_Johns America/Caracas Africa/Cairo "
      "Africa/Casablanca Africa/Monrovia Asia/Almaty Asia/Gaza Asia/Kathmandu Asia/Pyongyang Antarctica/Vostok "
      "Antarctica/Troll Australia/Lord_Howe Europe/Dublin Europe/Istanbul Europe/London Europe/Moscow "
      "Pacific/Apia Pacific/Chatham Pacific/Kwajalein");
  std::mt19937_64 random(19700101);
  for (std::string name; !names.fail(); names >> name) {  // the first name is empty
    const PinnedZone pinned(name);
    tzset();
    const TimeZone& zone = TimeZone::system();
    for (int i = 0; i < 40; ++i) {
      constexpr std::int64_t kFirst = -2'208'988'800;  // 1900
      const std::time_t time = kFirst + static_cast<std::int64_t>(random() % 6'311'433'600);
      tm clock{};
      localtime_r(&time, &clock);
      const platform::Instant instant{static_cast<double>(time)};
      ASSERT_EQ(zone.secondsFromGMT(instant), clock.tm_gmtoff) << name << " at " << time;
      ASSERT_EQ(zone.isDaylightSavingTime(instant), clock.tm_isdst > 0) << name << " at " << time;
    }
  }
}

TEST(TimeZoneTest, CalendarAgreesWithTheStandardLibrary) {
  std::mt19937 random(20000229);
  for (int i = 0; i < 20000; ++i) {
    const std::chrono::sys_days day{std::chrono::days(static_cast<int>(random() % 20'000'000) - 10'000'000)};
    const std::chrono::year_month_day date(day);
    const std::int64_t seconds =
        std::chrono::sys_seconds(day).time_since_epoch().count() + static_cast<std::int64_t>(random() % 86400);
    const CivilTime civil = GregorianCalendar::civilFromSeconds(seconds);
    ASSERT_EQ(civil.year, int{date.year()});
    ASSERT_EQ(civil.month * 100 + civil.day, unsigned{date.month()} * 100 + unsigned{date.day()}) << seconds;
    ASSERT_EQ(GregorianCalendar::secondsFromCivil(civil), seconds);
    ASSERT_EQ(GregorianCalendar::weekday(seconds), static_cast<int>(std::chrono::weekday(day).c_encoding()) + 1);
  }
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  EXPECT_GT(GregorianCalendar::secondsFromCivil({kMost, kMost, kMost, kMost, kMost, kMost}), 1e17);
  EXPECT_LT(GregorianCalendar::secondsFromCivil({-kMost, -kMost, -kMost, -kMost, -kMost, -kMost}), -1e17);
}

TEST(TimeZone, FilesThatAreCut) {
  const ScratchFolder scratch;
  for (const std::string name : {"America/New_York", "CET"}) {
    const std::string file = contentsOf("/usr/share/zoneinfo/" + name);
    ASSERT_GT(file.size(), 1000U);
    writeFile(scratch / name, file.substr(0, file.size() / 2));
    ASSERT_EQ(setenv("TZDIR", scratch.path().c_str(), 1), 0);
    const TimeZone zone(name);
    EXPECT_TRUE(zone.isKnown());
    EXPECT_THROW(static_cast<void>(zone.secondsFromGMT({0})), platform::Exception) << name;
    EXPECT_THROW(static_cast<void>(zone.secondsFromGMTOnce({0})), platform::Exception) << name;
    unsetenv("TZDIR");
  }
}
