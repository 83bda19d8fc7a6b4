#include "Conform/Copy.h"
#include "Conform/Days.h"
#include "Conform/ProjectWeek.h"
#include "Conform/WorkOverTime.h"
#include "Tests/MappingSupport.h"

// Tests the warnings of the corrections of days, and that a corrected file is not changed again. The days that they
// write are checked by Tests/Conform/days_judge.py with many plans.

namespace {

const std::string kManyTimes = numbered("<time-span start-time='{0}0' end-time='{0}1'/>", 6);
/// Time off over centuries, in a week in which days without and with work alternate. This makes more exceptions than
/// are kept.
const std::string kSchedule = "<schedule-day day-of-week='monday'>" + kManyTimes +
                              "<time-span start-time='9' end-time='8'/></schedule-day>"
                              "<schedule-day day-of-week='tuesday'/><schedule-day day-of-week='thursday'/>"
                              "<calendar><event start='2026-05-04T00:00:00' end='2700-01-01T09:00:00'/>"
                              "<event start='9999-12-31T00:00:00' end='12026-01-01T00:00:00'/></calendar>";

void correctAll(conform::Copy& copy) {
  conform::correctDays(copy);
  conform::correctWorkOverTime(copy);
  conform::correctProjectWeek(copy);
}

}  // namespace

TEST(Days, SayWhatTheyLeaveOutAndAreStable) {
  const PinnedZone zone("UTC");
  const std::string plan = scenario(resource("r1", "Staff", tag("schedule", kSchedule)) + resource("r2", "Material") +
                                    task("t1", "<assignment idref='r2' units='2'/>"));
  const auto document = parsed(plan);
  const conform::Plan bundle(*document, *document);
  const std::string exact = written(*mapped(plan).output);

  conform::Copy copy(exact, &bundle, {});
  correctAll(copy);
  EXPECT_THAT(copy.report.warnings(),
              testing::ElementsAre("the calendars have too many exceptions: those before 2016-05-03 and after "
                                   "2036-05-06 are left out",
                                   "resource r1: time spans that are not within a day are cut or left out: 1",
                                   "resource r1: time off and overtime before the year 1 or after 9999 is left out",
                                   "resource r1: on days with more than five working times the smallest breaks became "
                                   "working time"));
  EXPECT_NE(written(copy), exact);

  conform::Copy again(written(copy), &bundle, {});
  conform::correctDays(again);
  EXPECT_EQ(written(again), written(copy));
  EXPECT_THAT(again.report.counts(), testing::IsEmpty());

  conform::Copy alone(written(copy), nullptr, {});
  correctAll(alone);
  EXPECT_EQ(written(alone), written(copy));
}
