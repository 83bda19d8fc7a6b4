#include "Tests/MappingSupport.h"

using std::string;
using testing::HasSubstr;

namespace {

string after(const string& attributes, const string& lead = "", const string& more = "") {
  return "<prerequisite-task " + attributes + "><lead-time " + more + ">" + lead + "</lead-time></prerequisite-task>";
}
string use(const string& id, const string& more = "") { return "<assignment idref='" + id + "' " + more + "/>"; }
string t1(const string& inside) { return scenario(task("t1", inside)); }
/// A plan with the task and these resources: staff r1 and r11, equipment r2, material r3, groups r4 and r14, and r5 of
/// another type.
string among(const string& task) {
  return scenario(task + resource("r1", "Staff") + resource("r11", "Staff") + resource("r2", "Equipment") +
                  resource("r3", "Material") + group("r4", "", {}) + group("r14", "", {}) + resource("r5", "Role"));
}

const string kGroup = "<type>group</type>";
const string kNote = "<note><text><p><run><lit>a</lit></run></p></text></note>";
const string kUserData = "<user-data><key>a</key><string>1</string></user-data>";

}  // namespace

TEST(ScenarioMapping, WritesTheProject) {
  const ScopedVariable now("SOURCE_DATE_EPOCH", "1777888800");  // 2026-05-04T10:00:00Z
  const string currency = "CurrencyDigits CurrencySymbol CurrencyCode CurrencySymbolPosition ";
  const string flags = "NewTasksAreManual CalendarUID WeekStartDay ProjectExternallyEdited";
  const string rest = currency + flags + " Calendars Tasks Resources Assignments";
  const string head = "SaveVersion Title ScheduleFromStart StartDate FinishDate ";
  const string toc = tag("toc", tag("project", tag("title", "A\nB") + tag("currency-format", "5")));
  const string dates = tag("start-date", "2026-05-01T06:00:00+02:00") + tag("end-date", "2026-06-01T08:00:00Z");
  const string full = scenario(dates + task("t1", after("") + kUserData), "fixed-end='perhaps'");
  const string all = head + currency + "HonorConstraints " + rest.substr(currency.size()) + " ExtendedAttributes";
  const string headTexts = "14 A\nB 1 2026-05-01T04:00:00 2026-06-01T08:00:00";
  expectValues({
      {__LINE__, "planned from its start", scenario(""), "./*", "SaveVersion ScheduleFromStart StartDate " + rest},
      {__LINE__, "planned from its end", scenario("", "fixed-end='1'"), "./*",
       "SaveVersion ScheduleFromStart FinishDate " + rest},
      {__LINE__, "an end that is missing is the time of the export", scenario("", "fixed-end='yes'"),
       ".: ScheduleFromStart FinishDate", "0 2026-05-04T10:00:00"},
      {__LINE__, "the order of the elements", full, "./*", all, "UTC", {toc}},
      {__LINE__, "title, direction, dates", full, ".: " + head, headTexts, "UTC", {toc}},
      {__LINE__, "an amount without a symbol", full, ".: " + currency, "0 '' '' 0", "UTC", {toc}},
      {__LINE__, "values that are always the same", full, ".: HonorConstraints " + flags, "1 0 1 0 0", "UTC", {toc}},
  });
}

TEST(ScenarioMapping, WalksTheTrees) {
  const string tree = task("t1", kGroup + children("task", {"t11", "t9", "t12"})) + task("t12") + task("t111") +
                      task("t2", children("task", {"t12"})) + task("t11", kGroup + children("task", {"t111"}));
  const string doubled = scenario(task("t2") + task("t2", tag("title", "Last")));
  expectValues({
      {__LINE__, "children before the next sibling", scenario(tree), "Task: UID ID OutlineLevel",
       "0 0 0, 1 1 1, 11 2 2, 111 3 3, 12 4 2, 2 5 1"},
      {__LINE__, "groups are assigned to nobody", scenario(tree), "Assignment: UID TaskUID", "1 111, 2 12, 3 2"},
      {__LINE__, "the last task with an id counts", doubled, "Task: UID Name", "0 none, 2 Last"},
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
  EXPECT_THAT(mapped(scenario(task("t1", pieces) + task("t9", tag("title", string(1000, 'a'))))).failure,
              HasSubstr("Task id='t9' is reached in too many ways. At most 2"));
}

TEST(ScenarioMapping, WritesTasks) {
  const string full = tag("title", "A") + tag("static-cost", "1") + tag("completion-percentage", "1") + kNote +
                      tag("locked-end-date", "2026-05-06") + after("") + after("") + kUserData;
  const string order =
      "UID ID Name Type IsNull Priority Start Finish Duration Work EffortDriven FixedCost Estimated Milestone Summary "
      "PercentComplete PercentWorkComplete ConstraintType ConstraintDate LevelingCanSplit IgnoreResourceCalendar Notes "
      "PredecessorLink PredecessorLink ExtendedAttribute Active Manual Baseline Baseline OutlineLevel";
  const auto three = [](const string& name, const char* first, const char* second, const char* third) {
    return scenario(task("t1", tag(name, first)) + task("t2", tag(name, second)) + task("t3", tag(name, third)));
  };
  const auto done = [](const char* effort, const char* ofIt, const char* fraction) {
    return t1(tag("effort", effort) + tag("effort-done", ofIt) + tag("completion-percentage", fraction));
  };
  const string percent = "Task: PercentComplete PercentWorkComplete";
  const string kind = "Task: Type Milestone?milestone:task Summary?group:single EffortDriven";
  const string both = tag("static-cost", "1") + tag("splittable", "no");
  const string milestone = tag("type", "milestone") + tag("recalculate", "units");
  const string ofNoType = tag("recalculate", "something_else");
  const string earliestAndLocked = tag("start-constraint-date", "2026-05-05") + tag("locked-end-date", "2026-05-06");
  const string leveledMilestone = tag("leveled-start", "2026-05-06") + tag("type", "milestone");
  const string old = "<scenario>" + task("t1") + "</scenario>";
  const std::vector<string> twoBaselines = {"<toc/>", old, old}, inSecondOnly = {"<toc/>", "<scenario/>", old};
  expectValues({
      {__LINE__, "the order of the elements", t1(full), "Task/*", order, "UTC", twoBaselines},
      {__LINE__, "a new task has no first baseline", t1(""), "Task/Baseline/Number", "1", "UTC", inSecondOnly},
      {__LINE__, "only 'no' is no", three("splittable", "no", "perhaps", "yes"), "Task/LevelingCanSplit", "1, 0, 1, 1"},
      {__LINE__, "repeated elements", t1(both + both), "Task: LevelingCanSplit FixedCost", "1 none, 1 none"},
      {__LINE__, "efforts as whole seconds", done("3.9", "2.9", "0"), percent, "none none, 66 66"},
      {__LINE__, "never rounded up", done("0", "10", "0.999"), percent, "none none, 99 99"},
      {__LINE__, "priorities above 0", three("priority", "25", "40", "0"), "Task/Priority", "0, 625, 1000, 0"},
      {__LINE__, "priorities below 0", three("priority", "-10", "-20", "-1"), "Task/Priority", "1000, 500, 0, 950"},
      {__LINE__, "a milestone", t1(milestone), kind, "0 task group 0, 2 milestone single 0"},
      {__LINE__, "a task without a type", t1(ofNoType), kind, "0 task group 0, none task single 0"},
      {__LINE__, "a locked end counts before other constraints", t1(earliestAndLocked), "Task/ConstraintType", "3"},
      {__LINE__, "a leveled milestone", t1(leveledMilestone), "Task/ConstraintType", "4"},
  });
}

TEST(ScenarioMapping, WritesAssignments) {
  const auto with = [](const string& inside) { return among(task("t1", tag("effort", "86400") + inside)); };
  const string unitsAndWork = "Assignment: Units Work", limit = tag("units-available", "2");
  const string limitTwice = scenario(resource("r1", "Staff", limit + limit));
  const string order = "UID TaskUID ResourceUID Milestone PercentWorkComplete Units Work RemainingWork Start Finish";
  const string groups = use("r4") + use("r14", "units='3'"), others = use("r5", "units='3'") + use("r5");
  expectValues({
      {__LINE__, "a repeated limit", limitTwice, "Resource: Type MaxUnits", "1 none, 1 1.000000"},
      {__LINE__, "the order of the elements", with(tag("effort-done", "21600") + use("r1")), "Assignment/*", order},
      {__LINE__, "groups are assigned, too", with(kGroup + use("r-1")), "Assignment: TaskUID ResourceUID", "1 0"},
      {__LINE__, "groups share the work", with(groups), unitsAndWork, "1 PT6H0M0S, 3 PT18H0M0S"},
      {__LINE__, "no units, all work", with(use("r2", "units='0'")), unitsAndWork, "0 PT24H0M0S"},
      {__LINE__, "each of the other resources has all work", with(others), unitsAndWork, "3 PT24H0M0S, 1 PT24H0M0S"},
      {__LINE__, "times 7, then divided by 10: not times 0.7, which is inexact",
       with(use("r1", "units='7'") + use("r11", "units='3'")), unitsAndWork, "7 PT16H48M0S, 3 PT7H12M0S"},
  });
}

TEST(ScenarioMapping, CutsTimeIntoDaysWhereClocksChangeAtMidnight) {
  const auto material = [](const char* start, const char* end) {
    return among(task("t1", use("r3", "units='20'"), start, end));
  };
  const string days = "Assignment/TimephasedData: Start Finish";
  expectValues({
      {__LINE__, "a day that ends twice", material("2026-04-04T08:00:00-03:00", "2026-04-05T12:00:00-04:00"), days,
       "2026-04-04T08:00:00 2026-04-04T23:59:59, 2026-04-05T00:00:00 2026-04-05T12:00:00", "America/Santiago"},
      {__LINE__, "a day that begins twice, the first time written as 23:00",
       material("2026-10-31T08:00:00-04:00", "2026-11-01T12:00:00-05:00"), days,
       "2026-10-31T08:00:00 2026-10-31T23:59:59, 2026-10-31T23:00:00 2026-11-01T12:00:00", "America/Havana"},
  });
}

TEST(ScenarioMapping, EndsWithAMessage) {
  const string start = tag("start-date", "2026-05-04"), end = tag("end-date", "2026-05-05");
  const string duration = tag("duration", "1"), overdone = tag("effort", "5") + tag("effort-done", "10");
  const auto raw = [](const string& inside) { return scenario("<task id='t1'>" + inside + "</task>"); };
  const string days =
      "Timephased data from 1700-01-01T00:00:00 to 2026-05-06T17:00:00 has too many days. At most 100000 can be "
      "exported.";
  const string typeless = "</task><resource id='r9'/><task id='t2'>" + start + end + duration;
  const string circle = group("r1", "", {"r11"}) + group("r11", "", {"r-1"});
  const string nameless = task("t1", kGroup + children("task", {""})) + task("", use("r-1"));
  const string shared = group("r1", "", {"r2"}) + resource("r2", "Staff");
  const string splitOff = task("t1", "<split/>" + children("task", {"t9"}));
  const string farPiece = task("t9", "", "3000000000-05-04", "3000000000-05-06");
  expectValues({
      {__LINE__, "no start", raw(end + duration), "", "Task element 'start-date' not found."},
      {__LINE__, "two ends", raw(start + end + end + duration), "", "Task element 'end-date' not found."},
      {__LINE__, "no id", scenario(tag("task", start + end + duration)), "", "Task attribute 'id' not found."},
      {__LINE__, "more effort done than planned", t1(overdone), "",
       "Incorrect value of percentComplete (2.000000). Must be from 0.0 to 1.0."},
      {__LINE__, "a split group", t1(kGroup + "<split/>"), "", "Task group and split task are mutualy exclusive."},
      {__LINE__, "a task in itself", t1(kGroup + children("task", {"t1"})), "",
       "Duplicated Task UID='1' found (kvdx Task id='t1')."},
      {__LINE__, "a link to a resource", t1(after("idref='r1'")), "",
       "Invalid format of KVDX Task ID (must begin with 't'): r1"},
      {__LINE__, "no top task", scenario("<top-task idref='t9'/>"), "", "Task <0x0> has no 'id' attribute."},
      {__LINE__, "in two groups", scenario(shared), "", "Duplicated Resource UID='2' found (kvdx Resource id='r2')."},
      {__LINE__, "a circle", scenario(circle), "", "Resource id='r-1' contains itself, directly or through others."},
      {__LINE__, "assigned to nothing", t1("<assignment/>"), "", "No Resource ID is associated witgh the Assignment."},
      {__LINE__, "assigned to a missing resource", t1(use("r9")), "", "Failed to find assigned resourse (id='r9')."},
      {__LINE__, "assigned to a resource without a type", t1(use("r9") + typeless), "",
       "No type specified for assigned resourse (id='r9')."},
      {__LINE__, "a task with an empty id", scenario(nameless), "", "No Task ID is associated witgh the Assignment."},
      {__LINE__, "keys without values", t1(tag("user-data", "<key/>")), "", "Keys and Values mismatch number."},
      {__LINE__, "centuries of material", among(task("t1", use("r3"), "1700-01-01T00:00:00Z")), "", days},
      {__LINE__, "a piece in a far year", scenario(splitOff + farPiece), "",
       "The date 3000000000-05-04 is too far away. Days can be counted for some 285 million years."},
  });
}
