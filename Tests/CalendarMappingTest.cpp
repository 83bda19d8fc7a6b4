#include "Tests/MappingSupport.h"

using std::string;

namespace {

string named(const string& name, const string& schedule = "") { return tag("name", name) + tag("schedule", schedule); }
string day(const string& weekday, const string& inside = "") {
  return "<schedule-day day-of-week='" + weekday + "'>" + inside + "</schedule-day>";
}
string flatDay(const string& attribute, const string& inside = "") {
  return "<flattened-schedule-day " + attribute + ">" + inside + "</flattened-schedule-day>";
}
/// A classic set of exceptions with one event on 4 May.
string set(const string& attributes) {
  return "<calendar " + attributes + "><event start='2026-05-04T09:00:00' end='2026-05-04T10:00:00'/></calendar>";
}
const string kNine = "<time-span start-time='32400' end-time='36000'/>";

/// The schedule of a single resource.
string single(const string& schedule) { return scenario(resource("r1", "Staff", named("R", schedule))); }
/// A scenario with three schedules: the project's, that of a group B, and that of a group C in B. C has a member.
string nested(const string& top, const string& outer, const string& inner) {
  return scenario(
      group("r1", named("B", outer), {"r11"}) + group("r11", named("C", inner), {"r12"}) + resource("r12", "Staff"), "",
      tag("schedule", top));
}

}  // namespace

TEST(CalendarMapping, ArrangesCalendarsInTwoLevels) {
  const string path = "Calendar: UID Name IsBaseCalendar?base:on BaseCalendarUID";
  const string alone = scenario(resource("r2", "Staff") + group("r1", "", {"r9"}));
  const string inTwoGroups = group("r1", named("A"), {"r11"}) + group("r2", named("B"), {"r11"}) + group("r11", "", {});
  expectValues({
      {__LINE__, "calendars are based on the project's", alone, path, "1 Standard base -1, 2 '' on 1, 3 '' on 1"},
      {__LINE__, "groups with members are bases", nested("", "", ""), path,
       "1 Standard base -1, 5 B base -1, 6 C base -1, 4 '' on 6"},
      {__LINE__, "a group in two groups is based on the last one", scenario(inTwoGroups), path,
       "1 Standard base -1, 2 A on 1, 5 '' on 6, 6 B base -1, 5 '' on 6"},
  });
}

TEST(CalendarMapping, ResolvesTheWeekOfBaseCalendars) {
  const string path = "Calendar: UID WeekDays/WeekDay/DayWorking?x:-";  // the days begin with Sunday
  const string saturday = day("saturday", kNine), noSaturday = day("saturday");
  const string each = nested(day("wednesday"), saturday, day("sunday", kNine));
  expectValues({
      {__LINE__, "the standard week", nested("", "", ""), path, "1 -xxxxx-, 5 -xxxxx-, 6 -xxxxx-, 4 none"},
      {__LINE__, "each level changes one day", each, path, "1 -xx-xx-, 5 -xx-xxx, 6 xxx-xxx, 4 none"},
      {__LINE__, "the nearest level counts", nested(saturday, noSaturday, saturday), path,
       "1 -xxxxxx, 5 -xxxxx-, 6 -xxxxxx, 4 none"},
      {__LINE__, "the last for a day counts", single(saturday + day("monday") + noSaturday), path, "1 -xxxxx-, 2 --"},
      {__LINE__, "with flattened days, other days are ignored", single(saturday + flatDay("day-of-week='friday'")),
       path, "1 -xxxxx-, 2 -"},
  });
}

TEST(CalendarMapping, InheritsExceptionsWholeFromTheNearestLevel) {
  const string path = "Calendar: UID Exceptions/Exception/Name";
  const string named1and2 = set("name='1' overtime=' TRUE '") + set("name='2' overtime='2'");
  const string over = set("name='O' overtime='true'"), off = set("name='T'");
  const string inTwoGroups = group("r1", named("A"), {"r11"}) + group("r2", named("B", over), {"r11"}) +
                             group("r11", "", {"r12"}) + resource("r12", "Role");
  expectValues({
      {__LINE__, "from the top", nested(off + over + off, "", ""), path, "1 O, T, T, 5 O, T, T, 6 O, T, T, 4 none"},
      {__LINE__, "each level has its own", nested(over, off, over), path, "1 O, 5 T, 6 O, 4 none"},
      {__LINE__, "an empty set hides others", nested(over, "<calendar/>", ""), path, "1 O, 5 none, 6 none, 4 none"},
      {__LINE__, "a group in two groups inherits from the last one", scenario(inTwoGroups), path,
       "1 none, 2 none, 8 O, 7 none, 9 O, 8 O, 7 none"},
      {__LINE__, "overtime is a word or a number", single(named1and2), "Calendar/Exceptions/Exception: Name DayWorking",
       "1 1, 2 1"},
  });
}

TEST(CalendarMapping, WritesCalendars) {
  const string calendar = "Calendar/", header = "UID Name IsBaseCalendar BaseCalendarUID";
  const string weekDay = calendar + "WeekDays/WeekDay";
  const string exceptions = calendar + "Exceptions/Exception: Name Occurrences";
  const string workWeek = calendar + "WorkWeeks/WorkWeek/";
  const string off = set("name='T'"), on = set("name='O' overtime='1'"), may4 = "date='2026-05-04'";
  const string days = day("sunday") + day("tuesday", kNine) + day("friday");
  const string flat = flatDay("date='2026-05-06'", kNine) + flatDay(may4) + flatDay(may4, kNine);
  const string from = "2026-05-04T00:00:00", to = "2026-05-06T23:59:59";
  const string may4to6 = tag("TimePeriod", tag("FromDate", from) + tag("ToDate", to));
  const auto dayOff = [](const string& type) { return tag("WeekDay", tag("DayType", type) + tag("DayWorking", "0")); };
  const string threeDays = tag("WeekDays", dayOff("2") + dayOff("3") + dayOff("4"));
  expectValues({
      {__LINE__, "a schedule without days and events", single("<calendar name='none'/>"), calendar + "*", header},
      {__LINE__, "the order of the elements", single(flat), calendar + "*", header + " WeekDays Exceptions WorkWeeks"},
      {__LINE__, "own days, then overtime, then time off", single(off + on + days),
       weekDay + ": DayType DayWorking?x:-", "1 -, 2 x, 3 x, 4 x, 5 x, 6 x, 7 -, 1 -, 3 x, 6 -, 0 x, 0 -"},
      {__LINE__, "a period lasts from the first day to the last", single(flat),
       weekDay + "/TimePeriod: FromDate ToDate", from + " " + to + ", " + from + " 2026-05-04T23:59:59"},
      {__LINE__, "dated days replace events", single(flat + on), exceptions, "Overtime 3, Time Off 1"},
      {__LINE__, "the format is not inherited", nested("", flat, ""), workWeek + "Name", "Exception days"},
      {__LINE__, "a work week of the days off", single(flat), workWeek + ".",
       tag("WorkWeek", threeDays + may4to6 + tag("Name", "Exception days"))},
  });
}

TEST(CalendarMapping, CountsDaysOf86400SecondsAcrossClockChanges) {
  const auto overtime = [](const string& first, const string& last) {
    return single(flatDay("date='" + first + "'", kNine) + flatDay("date='" + last + "'", kNine));
  };
  const string long25 = single(flatDay("date='2026-10-25'", kNine)), across = "2026-10-24T00:00:00+02:00";
  const string count = "Calendar/Exceptions/Exception/Occurrences";
  const string days = "Calendar/WorkWeeks/WorkWeek/WeekDays/WeekDay/DayType";
  expectValues({
      {__LINE__, "25 hours are two days", long25, count, "2", "Europe/Berlin"},
      {__LINE__, "one Sunday comes twice", long25, days, "1, 1", "Europe/Berlin"},
      {__LINE__, "also among other days", overtime(across, "2026-10-26"), days, "7, 1, 1, 2", "Europe/Berlin"},
      {__LINE__, "midnight in UTC is the evening before in New York",
       single(flatDay("date='2026-05-04T00:00:00Z'", kNine)), days, "1", "America/New_York"},
  });
}

TEST(CalendarMapping, ReadsDatesThatAreNoneAsAllOthers) {
  const string dates = "Calendar/Exceptions/Exception/TimePeriod: FromDate ToDate";
  const string year1 = "1-01-01T00:00:00 1-01-01T23:59:59";
  const auto event = [](const string& start, const string& end) {
    return single("<calendar><event start='" + start + "' end='" + end + "'/></calendar>");
  };
  expectValues({
      {__LINE__, "a word: year 1", event("abc", "2026-05-04T10:00:00Z"), dates, "1-01-01T00:00:00 2026-05-04T23:59:59"},
      {__LINE__, "an end before the start is no exception", event("2026--", "08:00:00"), dates, "none"},
      {__LINE__, "a time alone", single(flatDay("date='08:00:00'")), dates, year1},
      {__LINE__, "a word for overtime", single(flatDay("date='abc'", kNine)), dates, year1},
  });
}

TEST(CalendarMapping, EndsWithAMessage) {
  const string event = "Calendar element 'event' has no valid date in its attribute ";
  const string longAgo = flatDay("date='1700-01-01'", kNine) + flatDay("date='2026-05-04'", kNine);
  const string farAway = flatDay("date='286000000-01-01'") + flatDay("date='286000000-01-03'");
  expectValues({
      {__LINE__, "weekdays must be in lower case", single(day("Monday")), "", "Unexpected day of week: Monday"},
      {__LINE__, "no start", single(tag("calendar", "<event end='2026-05-05'/>")), "", event + "'start': (null)."},
      {__LINE__, "an empty date", single(flatDay("date=''")), "",
       "Calendar element 'flattened-schedule-day' has no valid date in its attribute 'date': ."},
      {__LINE__, "centuries of overtime", single(longAgo), "",
       "Overtime exception of calendar 'Overtime' is too long: 119193 days, at most 100000 can be exported."},
      {__LINE__, "beyond counting", single(farAway), "",
       "The date 286000000-01-01 is too far away. Days can be counted for some 285 million years."},
  });
}
