#include <gtest/gtest.h>

#include "Tests/MappingSupport.h"

using std::string;

namespace {

string named(const string& name, const string& schedule = "") { return e("name", name) + e("schedule", schedule); }
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
/// The schedules of the project, of a group B in it and of a group C in that, which has a member.
string nested(const string& top, const string& outer, const string& inner) {
  return scenario(
      group("r1", named("B", outer), {"r11"}) + group("r11", named("C", inner), {"r12"}) + resource("r12", "Staff"), "",
      e("schedule", top));
}

}  // namespace

TEST(CalendarMapping, ArrangesCalendarsInTwoLevels) {
  const string path = "Calendars/Calendar/UID Name IsBaseCalendar BaseCalendarUID";
  const string twice = group("r1", named("A"), {"r11"}) + group("r2", named("B"), {"r11"}) + group("r11", "", {});
  expectValues({
      {__LINE__, scenario(resource("r2", "Staff") + group("r1", "", {"r9"})), path, "1,2,3 Standard,, 1,0,0 -1,1,1"},
      {__LINE__, nested("", "", ""), path, "1,5,6,4 Standard,B,C, 1,1,1,0 -1,-1,-1,6"},
      {__LINE__, scenario(twice), path, "1,2,5,6,5 Standard,A,,B, 1,0,0,1,0 -1,1,6,-1,6"},  // the last way counts
  });
}

TEST(CalendarMapping, ResolvesTheWeekOfBaseCalendars) {
  const string path = "Calendars/Calendar/WeekDays/WeekDay/DayWorking";
  const string week = "0,1,1,1,1,1,";  // the default one but for its Saturday
  const string saturday = day("saturday", kNine);
  const string three = nested(day("wednesday"), saturday, day("sunday", kNine));
  expectValues({
      {__LINE__, nested("", "", ""), path, week + "0," + week + "0," + week + "0"},
      {__LINE__, three, path, "0,1,1,0,1,1,0,0,1,1,0,1,1,1,1,1,1,0,1,1,1"},
      {__LINE__, nested(saturday, day("saturday"), saturday), path, week + "1," + week + "0," + week + "1"},
      {__LINE__, single(saturday + day("monday") + day("saturday")), path, week + "0,0,0"},
      {__LINE__, single(saturday + flatDay("day-of-week='friday'")), path, week + "0,0"},
  });
}

TEST(CalendarMapping, InheritsExceptionsWholeFromTheNearestLevel) {
  const string path = "Calendars/Calendar/Exceptions/Exception/Name";
  const string over = set("name='O' overtime='true'"), off = set("name='T'"), working = path + " DayWorking";
  const string twice = group("r1", named("A"), {"r11"}) + group("r2", named("B", over), {"r11"}) +
                       group("r11", "", {"r12"}) + resource("r12", "Role");
  expectValues({
      {__LINE__, nested(off + over + off, "", ""), path, "O,T,T,O,T,T,O,T,T"},
      {__LINE__, nested(over, off, over), path, "O,T,O"},
      {__LINE__, nested(over, "<calendar/>", ""), path, "O"},  // a set without events is one, too
      {__LINE__, scenario(twice), path, "O,O,O"},              // from the last group that has the group in it
      {__LINE__, single(set("name='1' overtime=' TRUE '") + set("name='2' overtime='2'")), working, "1,2 1,1"},
  });
}

TEST(CalendarMapping, WritesCalendars) {
  const string calendar = "Calendars/Calendar/", header = "UID Name IsBaseCalendar BaseCalendarUID";
  const string weekDay = calendar + "WeekDays/WeekDay/", exception = calendar + "Exceptions/Exception/";
  const string workWeek = calendar + "WorkWeeks/WorkWeek/";
  const string off = set("name='T'"), on = set("name='O' overtime='1'"), may4 = "date='2026-05-04'";
  const string days = day("sunday") + day("tuesday", kNine) + day("friday");
  const string flat = flatDay("date='2026-05-06'", kNine) + flatDay(may4) + flatDay(may4, kNine);
  const string from = "2026-05-04T00:00:00", to = "2026-05-06T23:59:59", both = from + "," + from + " " + to + ",";
  const string may4to6 = e("TimePeriod", e("FromDate", from) + e("ToDate", to));
  const auto of = [](const string& type) { return e("WeekDay", e("DayType", type) + e("DayWorking", "0")); };
  expectValues({
      {__LINE__, single("<calendar name='none'/>"), calendar + "*", header},
      {__LINE__, single(flat), calendar + "*", header + " WeekDays Exceptions WorkWeeks"},
      {__LINE__, single(off + on + days), weekDay + "DayType DayWorking",
       "1,2,3,4,5,6,7,1,3,6,0,0 0,1,1,1,1,1,0,0,1,0,1,0"},
      {__LINE__, single(flat), weekDay + "TimePeriod/FromDate ToDate", both + "2026-05-04T23:59:59"},
      {__LINE__, single(flat + on), exception + "Name Occurrences", "Overtime,Time Off 3,1"},
      {__LINE__, nested("", flat, ""), workWeek + "Name", "Exception days"},  // the format is not inherited
      {__LINE__, single(flat), workWeek + ".",
       e("WorkWeek", e("WeekDays", of("2") + of("3") + of("4")) + may4to6 + e("Name", "Exception days"))},
  });
}

TEST(CalendarMapping, CountsDaysOf86400SecondsAcrossClockChanges) {
  const auto overtime = [](const string& first, const string& last) {
    return single(flatDay("date='" + first + "'", kNine) + flatDay("date='" + last + "'", kNine));
  };
  const string count = "Calendars/Calendar/Exceptions/Exception/Occurrences";
  const string days = "Calendars/Calendar/WorkWeeks/WorkWeek/WeekDays/WeekDay/DayType";
  expectValues({
      {__LINE__, single(flatDay("date='2026-10-25'", kNine)), count, "2", "Europe/Berlin"},
      {__LINE__, single(flatDay("date='2026-10-25'", kNine)), days, "1,1", "Europe/Berlin"},
      {__LINE__, overtime("2026-10-24T00:00:00+02:00", "2026-10-26"), days, "7,1,1,2", "Europe/Berlin"},
      {__LINE__, single(flatDay("date='2026-05-04T00:00:00Z'", kNine)), days, "1", "America/New_York"},
  });
}

TEST(CalendarMapping, ReadsDatesThatAreNoneAsAllOthers) {
  const string period = "Calendars/Calendar/Exceptions/Exception/TimePeriod/FromDate ToDate";
  const auto event = [](const string& start, const string& end) {
    return single("<calendar><event start='" + start + "' end='" + end + "'/></calendar>");
  };
  expectValues({
      {__LINE__, event("abc", "2026-05-04T10:00:00Z"), period, "1-01-01T00:00:00 2026-05-04T23:59:59"},
      {__LINE__, event("2026--", "08:00:00"), period, "- -"},
      {__LINE__, single(flatDay("date='08:00:00'")), period, "1-01-01T00:00:00 1-01-01T23:59:59"},
      {__LINE__, single(flatDay("date='abc'", kNine)), period, "1-01-01T00:00:00 1-01-01T23:59:59"},
  });
}

TEST(CalendarMapping, EndsWithAMessage) {
  const string event = "Calendar element 'event' has no valid date in its attribute ";
  expectValues({
      {__LINE__, single(day("Monday")), "", "Unexpected day of week: Monday"},
      {__LINE__, single(e("calendar", "<event end='2026-05-05'/>")), "", event + "'start': (null)."},
      {__LINE__, single(flatDay("date=''")), "",
       "Calendar element 'flattened-schedule-day' has no valid date in its attribute 'date': ."},
      {__LINE__, single(flatDay("date='1700-01-01'", kNine) + flatDay("date='2026-05-04'", kNine)), "",
       "Overtime exception of calendar 'Overtime' is too long: 119193 days, at most 100000 can be exported."},
      {__LINE__, single(flatDay("date='286000000-01-01'") + flatDay("date='286000000-01-03'")), "",
       "The date 286000000-01-01 is too far away. Days can be counted for some 285 million years."},
  });
}
