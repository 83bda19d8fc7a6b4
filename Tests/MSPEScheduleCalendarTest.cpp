#include "KVMSPCommon/MSPExportMapper/MSPEScheduleCalendar.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Tests/Tables.h"

namespace {

using Calendar = MSPEScheduleCalendar;

/// Monday to Friday 8 to 12 and 13 to 17; Monday 8 to 12; no working time.
enum Week { kStandard, kMondays, kNone };

Calendar calendarOf(Week week) {
  if (week == kStandard) return Calendar::initWithStandardCalendar();
  Calendar calendar;
  if (week != kNone) calendar.addWorkingTimePeriod({8, 0, 0, 12, 0, 0}, 2);
  return calendar;
}
double numberIn(std::string_view text) { return std::stod(std::string(text.substr(text.find('|') + 1))); }
/// Advances from a date by working hours, given as "from|hours". Returns the results without and with edge times.
template <Week kWeek, bool kForward>
std::string advance(std::string_view text) {
  const auto from = text.starts_with('|') ? std::nullopt : std::optional(utc(text));
  const auto without = calendarOf(kWeek).date(from, numberIn(text) * 3600, kForward, false);
  const auto with = calendarOf(kWeek).date(from, numberIn(text) * 3600, kForward);
  return (without ? shown(*without).substr(5, 11) : "none") + " " + (with ? shown(*with).substr(5, 11) : "none");
}
/// The seconds of working time between two dates, given as "from|to".
std::string between(std::string_view text) {
  return shown(calendarOf(kStandard).workingTimeFromDate(utc(text), utc(text.substr(20))));
}
std::string sum(std::string_view day) { return shown(Calendar::standardCalendar().durationOfWeekday(day[0] - '0')); }
/// Reads a source schedule of one day, given as "day|spans". Returns the number of Monday's periods and their sum.
std::string monday(std::string_view text) {
  const auto document = parsed(fmt::format("<s><schedule-day day-of-week='{}'>{}</schedule-day></s>",
                                           text.substr(0, text.find('|')), text.substr(text.find('|') + 1)));
  const Calendar calendar = Calendar::initWithKvdxSchedule(document->root());
  return fmt::format("{} {}", calendar.timePeriodsInWeekday(2), calendar.durationOfWeekday(2));
}
std::string later(std::string_view text) { return shown(MSPIUtilities::isoDateTime(text, "7200", true, nullptr)); }

}  // namespace

TEST(MSPEScheduleCalendarTest, Advances) {
  const PinnedZone zone("UTC");
  expectOutcomes({
      {__LINE__, advance<kStandard, true>, "2011-05-02 08:00:00|4", "05-02 13:00 05-02 12:00"},
      {__LINE__, advance<kStandard, false>, "2011-05-07 10:00:00|0", "05-06 17:00 05-06 17:00"},
      {__LINE__, advance<kStandard, false>, "2011-05-03 09:00:00|1", "05-02 17:00 05-03 08:00"},
      // The search for the next period gives up after seven days in all. Then the last period is counted twice.
      {__LINE__, advance<kStandard, true>, "2011-05-02 08:00:00|48", "05-10 13:00 05-09 17:00"},
      {__LINE__, advance<kStandard, true>, "2011-05-02 08:00:00|200", "06-06 13:00 06-03 17:00"},
      {__LINE__, advance<kMondays, true>, "2011-05-02 08:00:00|8", "none 05-09 12:00"},
      {__LINE__, advance<kMondays, true>, "2011-05-02 08:00:00|9", "05-16 09:00 05-16 09:00"},
      {__LINE__, advance<kMondays, false>, "2011-05-02 12:00:00|8", "none 04-25 08:00"},
      {__LINE__, advance<kNone, true>, "2011-05-02 08:00:00|1", "none none"},
      {__LINE__, advance<kNone, true>, "|1", "raises Date to advance from not specified."},
      // Across both clock changes: the weekends have 47 and 49 hours.
      {__LINE__, advance<kStandard, true>, "2011-03-25 15:00:00|2", "03-28 07:00 03-28 07:00", "Europe/Berlin"},
      {__LINE__, advance<kStandard, true>, "2011-10-28 14:00:00|2", "10-31 08:00 10-31 08:00", "Europe/Berlin"},
      {__LINE__, between, "2011-05-06 16:00:00|2011-05-09 09:00:00", "7200"},
      {__LINE__, between, "2011-05-09 09:00:00|2011-05-06 16:00:00", "0"},
  });
}

TEST(MSPEScheduleCalendarTest, WeeksAndTexts) {
  expectOutcomes({
      {__LINE__, sum, "2", "28799"},
      {__LINE__, sum, "8", "raises Incorrect value of weekdey (8). Should be from 1 to 7."},
      {__LINE__, monday, "Monday|<time-span/>", "0 -1"},
      {__LINE__, monday, "monday|<time-span end-time='61.9'/><time-span end-time='x'/>", "1 60"},
      {__LINE__, later, "2011-05-06T16:00:00Z", "2011-05-09T09:00:00+02:00", "Europe/Berlin"},
  });
  EXPECT_EQ(MSPIUtilities::durationFromIsoDateTimeStart("2011-05-02T08:00:00", "2011-05-03", nullptr), 0.0);
}
