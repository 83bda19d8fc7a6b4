#include "Conform/FileCalendars.h"
#include "Conform/FileTexts.h"
#include "Conform/PlanFile.h"
#include "Tests/Tables.h"

namespace {

using conform::FileCalendars;

/// The markup for the hours of a day, given as "off" or "08-12 13-17".
std::string days(std::string_view text) {
  const bool isOff = text == "off";
  std::string times;
  for (std::size_t at = 0; !isOff && at < text.size(); at += 6) {
    times += fmt::format("<WorkingTime><FromTime>{}:00:00</FromTime><ToTime>{}:00:00</ToTime></WorkingTime>",
                         text.substr(at, 2), text.substr(at + 3, 2));
  }
  return fmt::format("<DayWorking>{}</DayWorking><WorkingTimes>{}</WorkingTimes>", isOff ? 0 : 1, times);
}
std::string weekDay(int type, std::string_view hours) {
  return fmt::format("<WeekDay><DayType>{}</DayType>{}</WeekDay>", type, days(hours));
}
std::string period(std::string_view from, std::string_view to) {
  return fmt::format("<TimePeriod><FromDate>{}T00:00:00</FromDate><ToDate>{}T23:59:59</ToDate></TimePeriod>", from, to);
}
std::string exception(std::string_view from, std::string_view to, std::string_view hours) {
  return "<Exception>" + period(from, to) + days(hours) + "</Exception>";
}
std::string calendar(int uid, int base, const std::string& week, const std::string& more) {
  return fmt::format("<Calendar><UID>{}</UID><BaseCalendarUID>{}</BaseCalendarUID><WeekDays>{}</WeekDays>{}</Calendar>",
                     uid, base, week, more);
}

/// The hours of calendar 2 on ten days, beginning with Sunday, 2026-03-01.
std::string hours(std::string_view calendars) {
  const auto plan = conform::readPlanFile(fmt::format(
      "<Project xmlns='http://schemas.microsoft.com/project'><Calendars>{}</Calendars></Project>", calendars));
  const FileCalendars read(plan.calendars, *conform::dateTimeSeconds("2026-03-01") / 86400, 10);
  std::string text;
  for (const auto& day : read.days(read.find("2").value_or(0))) {
    std::string times;
    for (const auto& time : *day.hours) times += fmt::format("+{}-{}", time.from / 3600, time.to / 3600);
    text += (text.empty() ? "" : " ") + (times.empty() ? "off" : times.substr(1));
  }
  return text;
}

TEST(PlanFile, HoursOfADayAreThoseThatReadersFind) {
  const auto except = [](const std::string& list) { return "<Exceptions>" + list + "</Exceptions>"; };
  const std::string monday = weekDay(2, "08-16"), usual = "off 8-16 off off off off off off 8-16 off";
  const std::string base =
      calendar(1, -1, monday + weekDay(3, "09-17"), except(exception("2026-03-02", "2026-03-02", "off")));
  const std::string early = except(exception("2026-03-02", "2026-03-03", "06-07"));
  const std::string late = exception("2026-03-01", "2026-03-02", "22-00");
  const std::string off = exception("2026-02-01", "2026-03-03", "off");
  const std::string inWeek =
      monday + "<WeekDay><DayType>0</DayType>" + period("2026-03-02", "2026-03-02") + days("off") + "</WeekDay>";
  const std::string workWeek = "<WorkWeeks><WorkWeek>" + period("2026-03-03", "2026-03-09") + "<WeekDays>" +
                               weekDay(2, "off") + weekDay(4, "01-02") + "</WeekDays></WorkWeek></WorkWeeks>";
  expectOutcomes({
      {__LINE__, hours, calendar(2, -1, monday, ""), usual},
      {__LINE__, hours, base + calendar(2, 1, "", ""), "off off 9-17 off off off off off 8-16 9-17"},
      // An exception of the base counts before the calendar's own week, its own exception before one of the base.
      {__LINE__, hours, base + calendar(2, 1, weekDay(2, "10-12"), ""), "off off 9-17 off off off off off 10-12 9-17"},
      {__LINE__, hours, base + calendar(2, 1, "", early), "off 6-7 6-7 off off off off off 8-16 9-17"},
      // The first of two exceptions counts. An end at 00:00 is the end of the day.
      {__LINE__, hours, calendar(2, -1, monday, except(late + off)), "22-24 22-24 off off off off off off 8-16 off"},
      // Exceptions among the week days count only if there is no element Exceptions, which would repeat them.
      {__LINE__, hours, calendar(2, -1, inWeek, ""), "off off off off off off off off 8-16 off"},
      {__LINE__, hours, calendar(2, -1, inWeek, "<Exceptions/>"), usual},
      {__LINE__, hours, calendar(2, -1, monday, workWeek), "off 8-16 off 1-2 off off off off off off"},
      {__LINE__, hours, calendar(2, 2, monday, ""), usual},
  });
}

TEST(PlanFile, ShortensTextsThatThePageRepeats) {
  const std::string text(300, 'n');
  const auto tag = [&text](const std::string& name) { return "<" + name + ">" + text + "</" + name + ">"; };
  const auto plan = conform::readPlanFile("<Project xmlns='http://schemas.microsoft.com/project'>" +
                                          tag("CurrencySymbol") + "<Calendars><Calendar>" + tag("Name") +
                                          "</Calendar></Calendars><ExtendedAttributes><ExtendedAttribute>" +
                                          tag("Alias") + "</ExtendedAttribute></ExtendedAttributes><Tasks><Task>" +
                                          tag("ID") + "<ExtendedAttribute/></Task></Tasks><Resources><Resource>" +
                                          tag("Name") + tag("MaterialLabel") + "</Resource></Resources></Project>");
  for (const auto& shown : {plan.currencySymbol, plan.calendars[0].name, plan.tasks[0].number,
                            plan.tasks[0].fields[0].name, plan.resources[0].name, plan.resources[0].unitName}) {
    EXPECT_EQ(shown, std::string(200, 'n') + "...");
  }
}

constexpr Operation kDateTime = apply<conform::dateTimeSeconds>;
constexpr Operation kTime = apply<conform::timeOfDaySeconds>;
constexpr Operation kDuration = apply<conform::durationSeconds>;
constexpr Operation kNumber = apply<conform::numberOf>;

TEST(PlanFile, Texts) {
  expectOutcomes({
      {__LINE__, kDateTime, "1970-01-02T00:00:01", "86401"},
      {__LINE__, kDateTime, " 1970-01-02 ", "86400"},
      {__LINE__, kDateTime, "1969-12-31T24:00:00", "0"},
      {__LINE__, kDateTime, "1969-12-31T24:00:01", "none"},
      {__LINE__, kDateTime, "1970-13-01T00:00:00", "none"},
      {__LINE__, kDateTime, "1970-01-01 08:00", "none"},
      {__LINE__, kDateTime, "9999999999-01-01T00:00:00", "none"},
      {__LINE__, kDateTime, "99999999999999999999-01-01", "none"},
      {__LINE__, kDateTime, "1970-01", "none"},
      {__LINE__, kDateTime, "", "none"},
      {__LINE__, kTime, "08:30:05", "30605"},
      {__LINE__, kTime, "08:30", "30600"},
      {__LINE__, kTime, "24:00:00", "86400"},
      {__LINE__, kTime, "08:60:00", "none"},
      {__LINE__, kTime, "8", "none"},
      {__LINE__, kDuration, "PT120H30M5S", "433805"},
      {__LINE__, kDuration, "P1DT1.9H", "90000"},
      {__LINE__, kDuration, "-PT1H", "-3600"},
      {__LINE__, kDuration, "PT999999999999999H", "1000000000000000"},
      {__LINE__, kDuration, "P1M", "none"},
      {__LINE__, kDuration, "PT1", "none"},
      {__LINE__, kDuration, "1H", "none"},
      {__LINE__, kNumber, "50.9", "50"},
      {__LINE__, kNumber, "1e30", "9223372036854775807"},
      {__LINE__, kNumber, "5x", "none"},
      {__LINE__, kNumber, "", "none"},
  });
}

}  // namespace
