#include "Conform/PlanHours.h"
#include "Conform/WallClock.h"
#include "Tests/MappingSupport.h"

// Unusual cases. Tests/Conform/days_judge.py checks the rule with random plans.

using conform::Hours;

namespace {

struct HoursRow {
  int line;
  std::string ofPlan;      ///< contents of the plan's schedule
  std::string ofResource;  ///< contents of the resource's schedule
  std::string date;
  std::string expected;  ///< "8-12 13-17"
  const char* zone = "UTC";
};

std::string shownHours(const Hours& hours) {
  std::string text;
  for (const conform::Span& span : hours.spans()) {
    text += fmt::format("{}{}-{}", text.empty() ? "" : " ", static_cast<double>(span.from) / 3600,
                        static_cast<double>(span.to) / 3600);
  }
  return text;
}

/// A plan and its resource r1, each with a schedule.
struct Bundle {
  Bundle(const std::string& ofPlan, const std::string& ofResource)
      : document(parsed(scenario(resource("r1", "Staff", tag("schedule", ofResource)), "", tag("schedule", ofPlan)))),
        plan(*document, *document) {}
  std::shared_ptr<xml::Document> document;
  conform::Plan plan;
};

std::string set(const std::string& events, const std::string& attributes = "") {
  return "<calendar " + attributes + ">" + events + "</calendar>";
}
std::string event(const std::string& start, const std::string& end) {
  return "<event start='" + start + "' end='" + end + "'/>";
}
std::string day(const std::string& attributes, const std::string& spans = "",
                const std::string& kind = "schedule-day") {
  return "<" + kind + " " + attributes + ">" + spans + "</" + kind + ">";
}
std::string span(int from, int to) {
  return fmt::format("<time-span start-time='{}' end-time='{}'/>", from * 3600, to * 3600);
}

}  // namespace

TEST(PlanHours, OnADate) {
  const std::string night = day("day-of-week='saturday'", span(-1, 2) + span(20, 30)), work = "8-12 13-17";
  const std::string always = set(event("2026-01-01T08:00:00", "9999-12-31T10:00:00"));
  const std::string flat = "flattened-schedule-day", onTuesday = "2026-05-05", overtime = "overtime='yes'";
  const std::vector<HoursRow> rows = {
      {__LINE__, "", "", onTuesday, work},
      {__LINE__, "", day("day-of-week='tuesday'"), onTuesday, ""},
      {__LINE__, day("day-of-week='tuesday'", span(6, 7)), day("day-of-week='monday'"), onTuesday, "6-7"},
      // Spans that reach beyond the day, that touch, or that are empty
      {__LINE__, "", night, "2026-05-09", "0-2 20-24"},
      {__LINE__, "", day("day-of-week='tuesday'", span(9, 9) + span(12, 11) + span(13, 15) + span(10, 13)), onTuesday,
       "10-15"},
      {__LINE__, "", day("day-of-week='tuesday'", span(-5, 40)), onTuesday, "0-24"},
      // In each level in turn, overtime is added first, then time off is taken away
      {__LINE__, "",
       set(event(onTuesday + "T10:00:00", "2026-05-06T18:00:00")) +
           set(event(onTuesday + "T16:00:00", onTuesday + "T20:00:00"), overtime),
       onTuesday, "8-10 18-20"},
      {__LINE__, always, set(event(onTuesday + "T09:00:00", onTuesday + "T09:30:00"), overtime), onTuesday,
       "9-9.5 10-12 13-17"},
      // A dated day replaces the hours of the levels above. The later of two counts, and events are ignored.
      {__LINE__, always,
       day("date='" + onTuesday + "'", span(1, 2), flat) + day("date='" + onTuesday + "'", span(3, 9), flat) + always,
       onTuesday, "3-9"},
      {__LINE__, day("date='" + onTuesday + "T22:30:00Z'", "", flat), "", "2026-05-06", "", "Europe/Berlin"},
      {__LINE__, "", day("day-of-week='friday'", "", flat) + always, onTuesday, "10-12 13-17"},
      // Events that end at midnight, the leap day, and events that cover no day
      {__LINE__, set(event("2024-02-28T00:00:00", "2024-03-01T00:00:00")), "", "2024-02-29", ""},
      {__LINE__, set(event("2024-02-28T00:00:00", "2024-03-01T00:00:00")), "", "2024-03-01", work},
      {__LINE__, set(event("2100-02-28T00:00:00", "2100-03-01T00:00:00")), "", "2100-03-01", work},
      {__LINE__, set(event("2026-05-06T08:00:00", "2026-05-04T12:00:00") + event("", "")), "", onTuesday, work},
      // Zones with an offset of quarter hours, a clock change of half an hour, and times that are skipped
      {__LINE__, set(event("2026-05-04T18:15:00Z", "2026-05-05T18:15:00Z")), "", onTuesday, "", "Asia/Kathmandu"},
      {__LINE__, set(event("2025-10-06T00:30:00Z", "2025-10-06T02:30:00Z")), "", "2025-10-06", "8-11.5 13.5-17",
       "Australia/Lord_Howe"},
      {__LINE__, set(event("2024-09-06T00:00:00-04:00", "2024-09-08T00:00:00-04:00")), "", "2024-09-06", "",
       "America/Santiago"},
      {__LINE__, set(event("2024-09-06T00:00:00", "2024-09-08T00:00:00")), "", "2024-09-06", "", "America/Santiago"},
      {__LINE__, set(event("2026-03-29T02:30:00", "2026-03-30T10:00:00")), "", "2026-03-30", "10-12 13-17",
       "Europe/Berlin"},
      // The first and the last year
      {__LINE__, set(event("9999-12-30T00:00:00", "10005-01-01T00:00:00")), "", "9999-12-31", ""},
      {__LINE__, set(event("0000-01-01T00:00:00", "0001-01-02T00:00:00")), "", "0001-01-01", ""},
      {__LINE__, always, "", "9999-12-31", "10-12 13-17"},
  };
  for (const HoursRow& row : rows) {
    SCOPED_TRACE(row.line);
    const PinnedZone zone(row.zone);
    const Bundle bundle(row.ofPlan, row.ofResource);
    conform::PlanHours hours(bundle.plan);
    EXPECT_EQ(shownHours(hours.on(1, conform::dayOf(conform::wallClock(row.date).value()))), row.expected);
  }
}

TEST(PlanHours, TellsWhatCouldNotBeSaid) {
  const Bundle bundle(set(event("2026-05-04T00:00:00", "12345-01-01T00:00:00"), "name='A,\nB'"),
                      day("day-of-week='monday'", span(9, 9) + span(23, 25) + span(8, 12)) +
                          set(event("2026-05-05T00:00:00", "2026-05-07T00:00:00"), "overtime='yes'") +
                          set(event("2026-05-06T08:00:00", "2026-05-06T09:00:00"), "name='A,\nB'"));
  conform::PlanHours hours(bundle.plan);
  EXPECT_TRUE(hours.isCutOff(0));
  EXPECT_FALSE(hours.isCutOff(1));
  EXPECT_EQ(hours.unsaid(0), 0U);
  EXPECT_EQ(hours.unsaid(1), 2U);
  const auto& changes = hours.changes(1);
  ASSERT_EQ(changes.size(), 4U);
  EXPECT_EQ(hours.namesOf(changes[2].change), "A, B, Overtime");
}

TEST(PlanHours, TakesFewerSpansByTheSmallestGaps) {
  const std::vector<std::tuple<int, std::vector<int>, std::size_t, std::string>> rows = {
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
