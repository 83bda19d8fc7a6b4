#include "Conform/PlanZone.h"
#include "Tests/Tables.h"

namespace {

/// For a plan with these start dates, separated by blanks: the number of dates, the number of those with another offset
/// than New York's, and the first zone that fits.
std::string zone(std::string_view dates) {
  std::string plan = "<scenario>";
  while (!dates.empty()) {
    const std::size_t end = std::min(dates.find(' '), dates.size());
    plan += fmt::format("<task><start-date>{}</start-date></task>", dates.substr(0, end));
    dates.remove_prefix(std::min(end + 1, dates.size()));
  }
  const auto document = parsed(plan + "</scenario>");
  conform::PlanZone found(document->root());
  if (found.firstFitting().empty()) found.leaveOutUTC();
  return fmt::format("{} {} {}", found.count(), found.countOfOthers(platform::TimeZone("America/New_York")),
                     found.firstFitting());
}

}  // namespace

TEST(PlanZoneTest, FirstZoneThatFitsAllDates) {
  expectOutcomes({
      {__LINE__, zone, "2026-02-06T08:30:00-05:00 2026-07-08T17:30:00-04:00", "2 0 America/New_York"},
      {__LINE__, zone, "2026-02-06T08:30:00-05:00 2026-07-08T17:30:00-05:00", "2 1 America/Bogota"},
      {__LINE__, zone, "2026-03-29T01:59:59+01:00 2026-03-29T03:00:00+02:00", "2 2 Europe/Berlin"},
      {__LINE__, zone, "2026-01-06T08:30:00Z 2026-07-08T08:30:00+01:00", "2 2 Europe/London"},
      {__LINE__, zone, "2026-01-06T08:30:00Z 2026-07-08T08:30:00Z", "2 2 UTC"},
      {__LINE__, zone, "2026-01-06T08:30:00+01:00 2026-07-08T08:30:00+02:00 2026-01-06T08:30:00Z", "2 2 Europe/Berlin"},
      {__LINE__, zone, "2026-01-06T08:30:00+01:00 2026-02-30T08:30:00+02:00 2026-07-08T24:00:00-04:00",
       "1 1 Europe/Berlin"},
      {__LINE__, zone, "2026-01-06T08:30:00-03:30 2026-07-08T08:30:00-02:30", "2 2 America/St_Johns"},
      {__LINE__, zone, "2026-01-06T08:30:00+13:45", "1 1 Pacific/Chatham"},  // found only in the system's zone data
      {__LINE__, zone, "2026-01-06T08:30:00+01:00 2026-01-06T08:30:00+05:30", "2 2 "},  // no zone fits two authors
      {__LINE__, zone, "2026-01-06T08:30:00 2026-01-06 soon 2026-01-06T08:30:00.5+01:00", "0 0 "},  // none counts
  });
}
