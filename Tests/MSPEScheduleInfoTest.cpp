#include <fmt/format.h>
#include <gtest/gtest.h>

#include "KVMSPCommon/MSPExportMapper/MSPEScheduleInfo.h"
#include "Tests/Support.h"

static MSPEWorkingTime hours(double from, double to) { return {from * 3600, to * 3600}; }

/// Flags of hasData, hasWeekDaysData, hasOvertimeData, hasTimeOffData and isBaseCalendar; then "3-" for a day without a
/// list, "3:" for an empty list, "3:8-12,13-17," for one with two times.
static std::string textOf(const MSPEScheduleInfo& info) {
  std::string text = fmt::format("{:d}{:d}{:d}{:d}{:d}", info.hasData(), info.hasWeekDaysData(), info.hasOvertimeData(),
                                 info.hasTimeOffData(), info.isBaseCalendar());
  for (std::int32_t day = 0; day <= 7; ++day) {
    text += fmt::format(" {}{}", day, info.workingTimesForDayType(day) ? ":" : "-");
    for (const auto& time : info.workingTimesForDayType(day).value_or(MSPEScheduleInfo::WorkingTimes())) {
      text += fmt::format("{}-{},", time.fromTime() / 3600, time.toTime() / 3600);
    }
  }
  return text;
}

TEST(MSPEScheduleInfo, FillsTheDefaultWeek) {
  MSPEScheduleInfo info({}, "r-1", 2, "R");
  info.addWorkingTime(hours(9, 11), 3);
  info.resetWorkingTimesForDayType(7);
  info.overtimeExceptions().resize(1);
  info.timeOffExceptions().resize(1);
  info.ensureProjetDefaultWeekDays();
  EXPECT_EQ(textOf(info), "11110 0- 1: 2:8-12,13-17, 3:9-11, 4:8-12,13-17, 5:8-12,13-17, 6:8-12,13-17, 7:");
  info.addWorkingTime(hours(9, 11), 7);
  info.setProjetDefaults();
  EXPECT_EQ(textOf(info), "11001 0- 1: 2:8-12,13-17, 3:8-12,13-17, 4:8-12,13-17, 5:8-12,13-17, 6:8-12,13-17, 7:");
}

TEST(MSPEScheduleInfo, KnowsItsData) {
  MSPEScheduleInfo info({}, "r-1", 2, "R"), top({}, std::nullopt, 1, "Standard");
  info.overtimeExceptions().resize(1);
  EXPECT_EQ(textOf(info), "10100 0- 1- 2- 3- 4- 5- 6- 7-");
  top.timeOffExceptions().resize(1);
  EXPECT_EQ(textOf(top), "10011 0- 1- 2- 3- 4- 5- 6- 7-");
  info.overtimeExceptions().clear();
  for (std::int32_t day = 2; day <= 5; ++day) info.addWorkingTime(hours(6, 7), day);
  info.addWorkingTimes(MSPEScheduleInfo::WorkingTimes{hours(13, 17)}, 2);
  info.addWorkingTime(hours(1, 2), 2);
  info.removeWorkingTimesForDayType(4);
  info.addWorkingTimes(std::nullopt, 5);
  EXPECT_TRUE(info.resetWorkingTimesForDayType(3).empty());
  EXPECT_EQ(textOf(info), "11000 0- 1- 2:13-17,1-2, 3: 4- 5- 6- 7-");
}

TEST(MSPEScheduleInfo, RefusesOtherDayTypes) {
  MSPEScheduleInfo info;
  for (const std::int32_t day : {8, -1}) {
    const std::string reason = fmt::format("Incorrect value of argument dayType ({}).", day);
    EXPECT_EQ(failureOf([&] { info.removeWorkingTimesForDayType(day); }), reason);
    EXPECT_EQ(failureOf([&] { info.resetWorkingTimesForDayType(day); }), reason);
    EXPECT_EQ(failureOf([&] { info.addWorkingTime(hours(8, 9), day); }), reason);
    EXPECT_EQ(failureOf([&] { info.addWorkingTimes(std::nullopt, day); }), reason);
    EXPECT_EQ(failureOf([&] { return info.workingTimesForDayType(day); }), reason);
  }
  EXPECT_EQ(failureOf([&] { info.addWorkingTime(std::nullopt, 2); }), "No working time specified to add.");
}
