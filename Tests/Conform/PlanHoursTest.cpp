#include "Conform/PlanHours.h"
#include "Conform/WallClock.h"
#include "Tests/MappingSupport.h"

// Unusual cases. Tests/Conform/days_judge.py checks the rule with random plans.

using conform::Hours;
using std::string;

namespace {

string shownHours(const Hours& hours) {
  string text;
  for (const conform::Span& span : hours.spans()) {
    text += fmt::format("{}{}-{}", text.empty() ? "" : " ", static_cast<double>(span.from) / 3600,
                        static_cast<double>(span.to) / 3600);
  }
  return text;
}
/// The hours of resource r1 on the row's date, such as "8-12 13-17".
string hoursOn(const ValueRow& row) {
  const auto document = parsed(row.scenario);
  const conform::Plan plan(*document, *document);
  return shownHours(conform::PlanHours(plan).on(1, conform::dayOf(conform::wallClock(row.path).value())));
}

/// A plan with a schedule, and its resource r1 with another.
string both(const string& ofPlan, const string& ofResource) {
  return scenario(resource("r1", "Staff", tag("schedule", ofResource)), "", tag("schedule", ofPlan));
}
string off(const string& start, const string& end, const string& attributes = "") {
  return "<calendar " + attributes + "><event start='" + start + "' end='" + end + "'/></calendar>";
}
string overtime(const string& start, const string& end) { return off(start, end, "overtime='yes'"); }
string weekday(const string& name, const string& spans = "") {
  return "<schedule-day day-of-week='" + name + "'>" + spans + "</schedule-day>";
}
string flattened(const string& attribute, const string& spans = "") {
  return "<flattened-schedule-day " + attribute + ">" + spans + "</flattened-schedule-day>";
}
string span(int from, int to) {
  return fmt::format("<time-span start-time='{}' end-time='{}'/>", from * 3600, to * 3600);
}

}  // namespace

TEST(PlanHours, OnADate) {
  const string tuesday = "2026-05-05", work = "8-12 13-17", always = off("2026-01-01T08:00:00", "9999-12-31T10:00:00");
  const string touching = weekday("tuesday", span(9, 9) + span(12, 11) + span(13, 15) + span(10, 13));
  const string early = flattened("date='2026-05-05'", span(1, 2)), late = flattened("date='2026-05-05'", span(3, 9));
  const string leap = off("2024-02-28T00:00:00", "2024-03-01T00:00:00");
  const string noLeap = off("2100-02-28T00:00:00", "2100-03-01T00:00:00");
  const string toMidnight = off("2024-09-06T00:00:00-04:00", "2024-09-08T00:00:00-04:00");
  const string toMidnightHere = off("2024-09-06T00:00:00", "2024-09-08T00:00:00");
  const string backwards = off("2026-05-06T08:00:00", "2026-05-04T12:00:00") + off("", "");
  const string dayOff = off("2026-05-05T10:00:00", "2026-05-06T18:00:00");
  expectValues(
      {
          {__LINE__, "the standard week", both("", ""), tuesday, work},
          {__LINE__, "no spans", both("", weekday("tuesday")), tuesday, ""},
          {__LINE__, "a day of the plan", both(weekday("tuesday", span(6, 7)), weekday("monday")), tuesday, "6-7"},
          {__LINE__, "spans that leave the day", both("", weekday("tuesday", span(-1, 2) + span(20, 30))), tuesday,
           "0-2 20-24"},
          {__LINE__, "spans that touch or are empty", both("", touching), tuesday, "10-15"},
          {__LINE__, "a span longer than a day", both("", weekday("tuesday", span(-5, 40))), tuesday, "0-24"},
          {__LINE__, "overtime is added, then time off is taken away",
           both("", dayOff + overtime("2026-05-05T16:00:00", "2026-05-05T20:00:00")), tuesday, "8-10 18-20"},
          {__LINE__, "but each level in turn", both(always, overtime("2026-05-05T09:00:00", "2026-05-05T09:30:00")),
           tuesday, "9-9.5 10-12 13-17"},
          {__LINE__, "the later of two dated days replaces all", both(always, early + late + always), tuesday, "3-9"},
          {__LINE__, "a dated day, in the zone", both(flattened("date='2026-05-05T22:30:00Z'"), ""), "2026-05-06", "",
           "Europe/Berlin"},
          {__LINE__, "events beside flattened weekdays", both("", flattened("day-of-week='friday'") + always), tuesday,
           "10-12 13-17"},
          {__LINE__, "a leap day", both(leap, ""), "2024-02-29", ""},
          {__LINE__, "an end at midnight, after a leap day", both(leap, ""), "2024-03-01", work},
          {__LINE__, "an end at midnight, without a leap day", both(noLeap, ""), "2100-03-01", work},
          {__LINE__, "events that cover no day", both(backwards, ""), tuesday, work},
          {__LINE__, "an offset of quarter hours", both(off("2026-05-04T18:15:00Z", "2026-05-05T18:15:00Z"), ""),
           tuesday, "", "Asia/Kathmandu"},
          {__LINE__, "a clock change of half an hour", both(off("2025-10-06T00:30:00Z", "2025-10-06T02:30:00Z"), ""),
           "2025-10-06", "8-11.5 13.5-17", "Australia/Lord_Howe"},
          {__LINE__, "a midnight that is skipped", both(toMidnight, ""), "2024-09-06", "", "America/Santiago"},
          {__LINE__, "the same without an offset", both(toMidnightHere, ""), "2024-09-06", "", "America/Santiago"},
          {__LINE__, "a start that is skipped", both(off("2026-03-29T02:30:00", "2026-03-30T10:00:00"), ""),
           "2026-03-30", "10-12 13-17", "Europe/Berlin"},
          {__LINE__, "beyond the last year", both(off("9999-12-30T00:00:00", "10005-01-01T00:00:00"), ""), "9999-12-31",
           ""},
          {__LINE__, "before the first year", both(off("0000-01-01T00:00:00", "0001-01-02T00:00:00"), ""), "0001-01-01",
           ""},
          {__LINE__, "the last day", both(always, ""), "9999-12-31", "10-12 13-17"},
      },
      hoursOn);
}

TEST(PlanHours, TellsWhatCouldNotBeSaid) {
  const auto document = parsed(both(off("2026-05-04T00:00:00", "12345-01-01T00:00:00", "name='A,\nB'"),
                                    weekday("monday", span(9, 9) + span(23, 25) + span(8, 12)) +
                                        overtime("2026-05-05T00:00:00", "2026-05-07T00:00:00") +
                                        off("2026-05-06T08:00:00", "2026-05-06T09:00:00", "name='A,\nB'")));
  const conform::Plan plan(*document, *document);
  conform::PlanHours hours(plan);
  EXPECT_TRUE(hours.isCutOff(0));
  EXPECT_FALSE(hours.isCutOff(1));
  EXPECT_EQ(hours.unsaid(0), 0U);
  EXPECT_EQ(hours.unsaid(1), 2U);
  const auto& changes = hours.changes(1);
  ASSERT_EQ(changes.size(), 4U);
  EXPECT_EQ(hours.namesOf(changes[2].change), "A, B, Overtime");
}

TEST(PlanHours, TakesFewerSpansByTheSmallestGaps) {
  const std::vector<std::tuple<int, std::vector<int>, std::size_t, string>> rows = {
      {__LINE__, {0, 1, 2, 3}, 2, "0-1 2-3"},
      {__LINE__, {0, 1, 3, 4, 5, 6, 7, 8}, 3, "0-1 3-6 7-8"},  // the earlier of two equal gaps
      {__LINE__, {0, 1, 2, 4, 7, 8, 12, 13}, 1, "0-13"},
      {__LINE__, {}, 5, ""},
  };
  for (const auto& [line, times, count, expected] : rows) {
    SCOPED_TRACE(line);
    Hours hours;
    for (std::size_t i = 0; i < times.size(); i += 2) hours.add(times[i] * 3600, times[i + 1] * 3600);
    EXPECT_EQ(shownHours(hours.inAtMost(count)), expected);
  }
}
