#include "KVMSPCommon/MSPExportMapper/MSPECalendarExceptions.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Tests/Tables.h"

using platform::Instant;
using Event = MSPEKvdxEventInfo;

namespace {

constexpr double kDay = platform::kSecondsPerDay;

/// An event from the first to the last day, with or without working hours.
Event days(int first, int last, std::optional<MSPEWorkingTime> hours = std::nullopt) {
  const Instant from{first * kDay};
  const Instant to{(last + 1) * kDay - 1};
  return hours ? Event(from, to, hours->fromTime() * 3600, hours->toTime() * 3600) : Event(from, to);
}

/// The exceptions; "1~2[8-12,13-17,] " is one from day 1 to day 2 with two working times.
std::string mappedEvents(const std::vector<Event>& events) {
  MSPECalendarExceptions set("", true, events);
  set.mapEvents();
  std::string text;
  for (const MSPEExceptionInfo& exception : set.mppExceptionInfos()) {
    text += fmt::format("{}~{}[", exception.fromDate().seconds / kDay, (exception.toDate()->seconds + 1) / kDay - 1);
    for (const auto& time : exception.workingTimes()) {
      text += fmt::format("{}-{},", time.fromTime() / 3600, time.toTime() / 3600);
    }
    text += "] ";
  }
  return text;
}

}  // namespace

TEST(MSPECalendarExceptions, SweepsOverTheEvents) {
  const MSPEWorkingTime morning(8, 12), nine(9, 10);
  const std::vector<std::tuple<int, std::vector<Event>, std::string>> rows = {
      {__LINE__, {}, ""},
      {__LINE__, {days(3, 5, nine)}, "3~5[9-10,] "},
      {__LINE__, {days(1, 5, nine), days(3, 4, nine)}, "1~2[9-10,] 3~4[9-10,9-10,] 5~5[9-10,] "},
      {__LINE__, {days(10, 10), days(1, 1)}, "1~10[] "},
      {__LINE__, {days(1, 1, nine), days(4, 4, nine), days(6, 6, morning)}, "1~4[9-10,] 6~6[8-12,] "},
      {__LINE__, {days(1, 2, nine), days(1, 2, morning)}, "1~2[8-12,9-10,] "},
      {__LINE__, {days(1, 3, MSPEWorkingTime(8, 9)), days(1, 2, morning)}, "1~2[8-12,8-9,] 3~3[8-9,] "},
      {__LINE__, {days(1, 2), days(2, 3, nine)}, "1~1[] 2~3[9-10,] "},
      {__LINE__, {days(5, 3, nine), days(9, 9, morning)}, "9~9[8-12,] "},
      {__LINE__, {days(1, 4, nine), days(2, 2), days(2, 6, morning)}, "1~1[9-10,] 2~4[8-12,9-10,] 5~6[8-12,] "},
  };
  for (const auto& [line, events, expected] : rows) {
    SCOPED_TRACE(line);
    EXPECT_EQ(mappedEvents(events), expected);
  }
}

TEST(MSPECalendarExceptions, ReadsEvents) {
  const std::string raises = "raises Calendar event start and end ";
  const std::string late = "raises Incoorrect calendar event start (17:00:00) and end (09:00:00) time.";
  const std::string berlin = "Europe/Berlin";
  // Reads an event of 2026 from "start end"; returns its first and last day, and its seconds of the day.
  const auto event = [](std::string_view text) {
    const std::size_t blank = text.find(' ');
    const auto document =
        parsed(fmt::format("<event start='2026-{}' end='2026-{}'/>", text.substr(0, blank), text.substr(blank + 1)));
    const Event read = Event::initWithKvdxEvent(document->root());
    const auto day = [](Instant date) { return MSPIUtilities::mppToMspdiDateTime(date).value().substr(5); };
    return fmt::format("{} {} {}-{}", day(read.fromDate()), day(read.toDate()), read.start(), read.end());
  };
  expectOutcomes({
      {__LINE__, event, "05-04T00:00:00Z 05-06T00:00:00Z", "05-04T00:00:00 05-05T23:59:59 0-86399", "UTC"},
      {__LINE__, event, "05-08T08:00:00Z 05-06T12:00:00Z", "05-08T00:00:00 05-06T23:59:59 28800-43200", "UTC"},
      {__LINE__, event, "05-04T22:30:00Z 05-05T10:00:00Z", "05-05T00:00:00 05-05T23:59:59 1800-43200", berlin},
      // The day before is taken as 86400 seconds earlier, even if the clocks change.
      {__LINE__, event, "03-28 03-29", "03-28T00:00:00 03-28T22:59:59 0-86399", berlin},
      {__LINE__, event, "10-25 10-26", "10-25T00:00:00 10-25T23:59:59 0-86399", berlin},
      {__LINE__, event, "10-25 10-25", "10-25T00:00:00 10-25T00:59:59 0-86399", berlin},
      {__LINE__, event, "03-29 03-29", raises + "days are too close.", berlin},
      {__LINE__, event, "05-04T08:00:00Z 05-06T08:00:00Z", raises + "times may be equal only at midnight (00:00:00).",
       "UTC"},
      {__LINE__, event, "05-04T17:00:00Z 05-05T09:00:00Z", late, "UTC"},
  });
}
