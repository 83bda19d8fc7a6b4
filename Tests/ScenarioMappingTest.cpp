#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/MappingSupport.h"

using std::string;
using testing::HasSubstr;

namespace {

string after(const string& attributes, const string& lead = "", const string& more = "") {
  return "<prerequisite-task " + attributes + "><lead-time " + more + ">" + lead + "</lead-time></prerequisite-task>";
}
string use(const string& id, const string& more = "") { return "<assignment idref='" + id + "' " + more + "/>"; }
string t1(const string& inside) { return scenario(task("t1", inside)); }
string r1(const string& inside) { return scenario(resource("r1", "Staff", inside)); }
/// A task among staff r1 and r11, equipment r2, material r3, groups r4 and r14, and another resource r5.
string among(const string& task) {
  return scenario(task + resource("r1", "Staff") + resource("r11", "Staff") + resource("r2", "Equipment") +
                  resource("r3", "Material") + group("r4", "", {}) + group("r14", "", {}) + resource("r5", "Role"));
}

const string kGroup = "<type>group</type>";
const string kNote = "<note><text><p><run><lit>a</lit></run></p></text></note>";
const string kUserData = "<user-data><key>a</key><string>1</string></user-data>";
const string kTask = "Tasks/Task/", kResource = "Resources/Resource/", kAssignment = "Assignments/Assignment/";

}  // namespace

TEST(ScenarioMapping, WritesTheProject) {
  const ScopedVariable now("SOURCE_DATE_EPOCH", "1777888800");  // 2026-05-04T10:00:00Z
  const string currency = "CurrencyDigits CurrencySymbol CurrencyCode CurrencySymbolPosition ";
  const string flags = "NewTasksAreManual CalendarUID WeekStartDay ProjectExternallyEdited";
  const string rest = flags + " Calendars Tasks Resources Assignments";
  const string most = "SaveVersion Title ScheduleFromStart StartDate FinishDate " + currency + "HonorConstraints ";
  const string toc = e("toc", e("project", e("title", "A\nB") + e("currency-format", "5")));
  const string dates = e("start-date", "2026-05-01T06:00:00+02:00") + e("end-date", "2026-06-01T08:00:00Z");
  const string full = scenario(dates + task("t1", after("") + kUserData), "fixed-end='perhaps'");
  const string values = "14 A\nB 1 2026-05-01T04:00:00 2026-06-01T08:00:00 0   0 1 0 1 0 0";
  expectValues({
      {__LINE__, scenario(""), "*", "SaveVersion ScheduleFromStart StartDate " + currency + rest},
      {__LINE__, scenario("", "fixed-end='1'"), "*", "SaveVersion ScheduleFromStart FinishDate " + currency + rest},
      {__LINE__, scenario("", "fixed-end='yes'"), "ScheduleFromStart FinishDate", "0 2026-05-04T10:00:00"},
      {__LINE__, full, "*", most + rest + " ExtendedAttributes", "UTC", {toc}},
      {__LINE__, full, most + flags, values, "UTC", {toc}},
  });
}

TEST(ScenarioMapping, WalksTheTrees) {
  const string tree = task("t1", kGroup + children("task", {"t11", "t9", "t12"})) + task("t12") + task("t111") +
                      task("t2", children("task", {"t12"})) + task("t11", kGroup + children("task", {"t111"}));
  expectValues({
      {__LINE__, scenario(tree), kTask + "UID ID OutlineLevel", "0,1,11,111,12,2 0,1,2,3,4,5 0,1,2,3,2,1"},
      {__LINE__, scenario(tree), kAssignment + "UID TaskUID", "1,2,3 111,12,2"},
      {__LINE__, scenario(task("t2") + task("t2", e("title", "Last"))), kTask + "UID Name", "0,2 Last"},
  });
}

TEST(ScenarioMapping, EndsOnTreesThatDoNot) {
  const auto chain = [](const string& kind, int levels, bool doubled = false) {
    string objects;
    for (int level = 2; level <= levels; ++level) {
      const string id = kind.substr(0, 1) + (level == 2 ? "1" : std::to_string(1000 + level));
      const string next = children(kind, {kind.substr(0, 1) + std::to_string(1001 + level)});
      objects += kind == "task" ? task(id, kGroup + next) : resource(id, "Group", doubled ? next + next : next);
    }
    return mapped(scenario(objects)).failure;
  };
  const string deep = " is nested too deep. At most 1000 levels can be exported.";
  EXPECT_EQ(chain("resource", 1000) + chain("task", 1000), "");
  EXPECT_EQ(chain("resource", 1001), "Resource id='r2001'" + deep);
  EXPECT_EQ(chain("task", 1001), "Task id='t2001'" + deep);
  EXPECT_THAT(chain("resource", 40, true), HasSubstr("' is reached in too many ways. At most 1"));
  const string pieces = "<split/>" + children("task", std::vector<string>(1000, "t9"));
  EXPECT_THAT(mapped(scenario(task("t1", pieces) + task("t9", e("title", string(1000, 'a'))))).failure,
              HasSubstr("Task id='t9' is reached in too many ways. At most 2"));
}

TEST(ScenarioMapping, WritesTasks) {
  const string full = e("title", "A") + e("static-cost", "1") + e("completion-percentage", "1") + kNote +
                      e("locked-end-date", "2026-05-06") + after("") + after("") + kUserData;
  const string order =
      "UID ID Name Type IsNull Priority Start Finish Duration Work EffortDriven FixedCost Estimated Milestone Summary "
      "PercentComplete PercentWorkComplete ConstraintType ConstraintDate LevelingCanSplit IgnoreResourceCalendar Notes "
      "PredecessorLink PredecessorLink ExtendedAttribute Active Manual ";
  const auto three = [](const string& name, const char* first, const char* second, const char* third) {
    return scenario(task("t1", e(name, first)) + task("t2", e(name, second)) + task("t3", e(name, third)));
  };
  const auto done = [](const char* effort, const char* ofIt, const char* fraction) {
    return t1(e("effort", effort) + e("effort-done", ofIt) + e("completion-percentage", fraction));
  };
  const string complete = kTask + "PercentComplete PercentWorkComplete";
  const string type = kTask + "Type EffortDriven Milestone Summary";
  const string twice = e("static-cost", "1") + e("splittable", "no");
  const string one = e("type", "milestone") + e("recalculate", "units"), other = e("recalculate", "something_else");
  const string both = e("start-constraint-date", "2026-05-05") + e("locked-end-date", "2026-05-06");
  const string old = "<scenario>" + task("t1") + "</scenario>", ends = "Baseline Baseline OutlineLevel";
  const std::vector<string> two = {"<toc/>", old, old}, second = {"<toc/>", "<scenario/>", old};
  expectValues({
      {__LINE__, t1(full), kTask + "*", order + ends, "UTC", two},
      {__LINE__, t1(""), kTask + "Baseline/Number", "1", "UTC", second},
      {__LINE__, three("splittable", "no", "perhaps", "yes"), kTask + "LevelingCanSplit", "1,0,1,1"},
      {__LINE__, t1(twice + twice), kTask + "LevelingCanSplit FixedCost", "1,1 -"},
      {__LINE__, done("3.9", "2.9", "0"), complete, "66 66"},
      {__LINE__, done("0", "10", "0.999"), complete, "99 99"},
      {__LINE__, three("priority", "25", "40", "0"), kTask + "Priority", "0,625,1000,0"},
      {__LINE__, three("priority", "-10", "-20", "-1"), kTask + "Priority", "1000,500,0,950"},
      {__LINE__, t1(one), type, "0,2 0,0 0,1 1,0"},
      {__LINE__, t1(other), type, "0 0,0 0,0 1,0"},
      {__LINE__, t1(both), kTask + "ConstraintType", "3"},
      {__LINE__, t1(e("leveled-start", "2026-05-06") + e("type", "milestone")), kTask + "ConstraintType", "4"},
  });
}

TEST(ScenarioMapping, WritesAssignments) {
  const auto with = [](const string& inside) { return among(task("t1", e("effort", "86400") + inside)); };
  const string path = kAssignment + "Units Work", limit = e("units-available", "2");
  const string order = "UID TaskUID ResourceUID Milestone PercentWorkComplete Units Work RemainingWork Start Finish";
  expectValues({
      {__LINE__, r1(limit + limit), kResource + "Type MaxUnits", "1,1 1.000000"},
      {__LINE__, with(e("effort-done", "21600") + use("r1")), kAssignment + "*", order},
      {__LINE__, with(kGroup + use("r-1")), kAssignment + "TaskUID ResourceUID", "1 0"},
      {__LINE__, with(use("r4") + use("r14", "units='3'")), path, "1,3 PT6H0M0S,PT18H0M0S"},
      {__LINE__, with(use("r2", "units='0'")), path, "0 PT24H0M0S"},
      {__LINE__, with(use("r5", "units='3'") + use("r5")), path, "3,1 PT24H0M0S,PT24H0M0S"},
      // Not times 0.7.
      {__LINE__, with(use("r1", "units='7'") + use("r11", "units='3'")), path, "7,3 PT16H48M0S,PT7H12M0S"},
  });
}

TEST(ScenarioMapping, CutsTimeIntoDaysWhereClocksChangeAtMidnight) {
  const auto material = [](const char* start, const char* end) {
    return among(task("t1", use("r3", "units='20'"), start, end));
  };
  const string days = kAssignment + "TimephasedData/Start Finish";
  // A day may end twice, or begin twice (the first is told as 23:00).
  expectValues({
      {__LINE__, material("2026-04-04T08:00:00-03:00", "2026-04-05T12:00:00-04:00"), days,
       "2026-04-04T08:00:00,2026-04-05T00:00:00 2026-04-04T23:59:59,2026-04-05T12:00:00", "America/Santiago"},
      {__LINE__, material("2026-10-31T08:00:00-04:00", "2026-11-01T12:00:00-05:00"), days,
       "2026-10-31T08:00:00,2026-10-31T23:00:00 2026-10-31T23:59:59,2026-11-01T12:00:00", "America/Havana"},
  });
}

TEST(ScenarioMapping, EndsWithAMessage) {
  const string start = e("start-date", "2026-05-04"), end = e("end-date", "2026-05-05"), duration = e("duration", "1");
  const auto raw = [](const string& inside) { return scenario("<task id='t1'>" + inside + "</task>"); };
  const string days = "Timephased data from 1700-01-01T00:00:00 to 2026-05-06T17:00:00 has too many days. ";
  const string typeless = "</task><resource id='r9'/><task id='t2'>" + start + end + duration;
  const string cycle = group("r1", "", {"r11"}) + group("r11", "", {"r-1"});
  const string nameless = task("t1", kGroup + children("task", {""})) + task("", use("r-1"));
  const string twice = group("r1", "", {"r2"}) + resource("r2", "Staff");
  const string far = task("t1", "<split/>" + children("task", {"t9"}));
  expectValues({
      {__LINE__, raw(end + duration), "", "Task element 'start-date' not found."},
      {__LINE__, raw(start + end + end + duration), "", "Task element 'end-date' not found."},
      {__LINE__, scenario(e("task", start + end + duration)), "", "Task attribute 'id' not found."},
      {__LINE__, t1(e("effort", "5") + e("effort-done", "10")), "",
       "Incorrect value of percentComplete (2.000000). Must be from 0.0 to 1.0."},
      {__LINE__, t1(kGroup + "<split/>"), "", "Task group and split task are mutualy exclusive."},
      {__LINE__, t1(kGroup + children("task", {"t1"})), "", "Duplicated Task UID='1' found (kvdx Task id='t1')."},
      {__LINE__, t1(after("idref='r1'")), "", "Invalid format of KVDX Task ID (must begin with 't'): r1"},
      {__LINE__, scenario("<top-task idref='t9'/>"), "", "Task <0x0> has no 'id' attribute."},
      {__LINE__, scenario(twice), "", "Duplicated Resource UID='2' found (kvdx Resource id='r2')."},
      {__LINE__, scenario(cycle), "", "Resource id='r-1' contains itself, directly or through others."},
      {__LINE__, t1("<assignment/>"), "", "No Resource ID is associated witgh the Assignment."},
      {__LINE__, t1(use("r9")), "", "Failed to find assigned resourse (id='r9')."},
      {__LINE__, t1(use("r9") + typeless), "", "No type specified for assigned resourse (id='r9')."},
      {__LINE__, scenario(nameless), "", "No Task ID is associated witgh the Assignment."},
      {__LINE__, t1(e("user-data", "<key/>")), "", "Keys and Values mismatch number."},
      {__LINE__, among(task("t1", use("r3"), "1700-01-01T00:00:00Z")), "", days + "At most 100000 can be exported."},
      {__LINE__, scenario(far + task("t9", "", "3000000000-05-04", "3000000000-05-06")), "",
       "The date 3000000000-05-04 is too far away. Days can be counted for some 285 million years."},
  });
}
