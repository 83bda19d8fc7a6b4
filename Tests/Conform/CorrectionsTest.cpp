#include <gtest/gtest.h>

#include "Conform/Copy.h"
#include "Conform/Corrections.h"
#include "Tests/MappingSupport.h"

using conform::Options;
using std::string;

namespace {

string joined(const std::vector<string>& texts) {
  string all;
  for (const string& text : texts) all += (all.empty() ? "" : "; ") + text;
  return all;
}

/// What a path of the corrected file holds; "said" are the warnings.
string valueOf(conform::Copy& copy, const string& path) {
  conform::correct(copy);
  if (path == "said") return joined(copy.report.warnings());
  return Mapped{"", parsed(written(copy))}.value(path);
}

/// Of a scenario that is exported and corrected with the bundle at hand.
string sent(const ValueRow& row, const Options& options) {
  const Mapped exact = mapped(row.scenario, row.others);
  if (!exact.failure.empty()) return exact.failure;
  const auto scenario = parsed(row.scenario);
  const auto contents = parsed(row.others[0]);
  const conform::Plan plan(*scenario, *contents);
  conform::Copy copy(written(*exact.output), &plan, options);
  return valueOf(copy, row.path);
}

/// Of what stands in a `Project`, corrected without a bundle.
string copied(const ValueRow& row) {
  string value;
  const string failure = failureOf([&] {
    conform::Copy copy("<Project xmlns='http://schemas.microsoft.com/project'>" + row.scenario + "</Project>", nullptr,
                       {"Base", "", false});
    value = valueOf(copy, row.path);
  });
  return failure.empty() ? value : failure;
}

void expectSent(const std::vector<ValueRow>& rows, const Options& options = {"Base", "EUR", false}) {
  for (const ValueRow& row : rows) {
    SCOPED_TRACE(row.line);
    EXPECT_EQ(sent(row, options), row.expected);
  }
}
void expectCopied(const std::vector<ValueRow>& rows) {
  for (const ValueRow& row : rows) {
    SCOPED_TRACE(row.line);
    EXPECT_EQ(copied(row), row.expected);
  }
}

string link(const string& attributes) { return "<prerequisite-task " + attributes + "/>"; }
string use(const string& resource) { return "<assignment idref='" + resource + "'/>"; }
string keys(std::initializer_list<string> names) {
  string pairs;
  int value = 0;
  for (const string& name : names) pairs += e("key", name) + e("string", std::to_string(++value));
  return e("user-data", pairs);
}
string t1(const string& inside) { return scenario(task("t1", inside)); }
/// A plan whose top group has the tasks.
string tasks(const std::vector<string>& ids, const string& objects) {
  return "<scenario><top-resource idref='r-1'/><top-task idref='t-1'/>" + group("r-1", "", {}) + objects +
         task("t-1", "<type>group</type>" + children("task", ids)) + "</scenario>";
}
/// The same for resources, with a task t1.
string resources(const std::vector<string>& ids, const string& objects, const string& inTask) {
  return "<scenario><top-resource idref='r-1'/><top-task idref='t1'/>" + group("r-1", "", ids) + objects +
         task("t1", inTask) + "</scenario>";
}

const string kTask = "Tasks/Task/", kResource = "Resources/Resource/", kAssignment = "Assignments/Assignment/";
const string kLinks = kTask + "PredecessorLink/PredecessorUID";
const string kFields = "ExtendedAttributes/ExtendedAttribute/";
const string kValues = kTask + "ExtendedAttribute/";
const string kLink = "its link to ", kGone = " is left out, because there is no such task";

string xmlTask(const string& inside) { return e("Task", inside); }
string xmlTasks(const string& tasks) { return e("CurrencyCode", "EUR") + e("Tasks", tasks); }

}  // namespace

TEST(Corrections, LeaveNoReferenceWithoutATarget) {
  const string toGroup = resources({"r1"}, group("r1", e("name", "Team"), {}) + resource("r2", "Role"), use("r1"));
  const string toNobody = "task t1: its assignment to r1 'Team', which is no resource of the file, is to nobody";
  expectSent({
      {__LINE__, t1(link("idref='t9'") + link("idref='t-1'")), kLinks, "0"},
      {__LINE__, t1(link("idref='t9'")), "said", "task t1: " + kLink + "t9" + kGone},
      {__LINE__, t1(e("title", "A") + link("") + link("idref=''")), "said",
       "task t1 'A': " + kLink + "nothing" + kGone},
      // t0 and t-5 have no number in the file; only one of them is there.
      {__LINE__, tasks({"t1", "t0"}, task("t1", link("idref='t-5'") + link("idref='t0'")) + task("t0")), kLinks, "2"},
      {__LINE__, tasks({"t1", "t0"}, task("t0") + task("t1", link("idref='t-5'"))), "said",
       "task t1: " + kLink + "t-5" + kGone},
      {__LINE__, toGroup, kAssignment + "ResourceUID", "-65535"},
      {__LINE__, toGroup, "said", toNobody},
      // The top group has the number of the placeholder; a resource outside of the tree is not written.
      {__LINE__, resources({}, "", use("r-1")), kAssignment + "ResourceUID", "-65535"},
      {__LINE__, resources({}, resource("r5", "Staff"), use("r5")), kAssignment + "ResourceUID", "-65535"},
      {__LINE__, resources({"r0"}, resource("r0", "Staff"), use("r0")), kAssignment + "ResourceUID", "1"},
      {__LINE__, resources({"r0"}, resource("r0", "Staff") + group("r-9", "", {}), use("r-9")),
       kAssignment + "ResourceUID", "-65535"},
  });
  const auto twoTasks = [](const string& first, const string& second, const string& more) {
    return xmlTasks(xmlTask(e("UID", first)) + xmlTask(e("UID", second) + more)) +
           e("Assignments", e("Assignment", e("UID", "1") + e("TaskUID", "") + e("ResourceUID", "-65535")));
  };
  const string toNothing = "<PredecessorLink><PredecessorUID/></PredecessorLink>";
  expectCopied({
      {__LINE__, twoTasks("", "7", toNothing), kLinks, "1"},
      {__LINE__, twoTasks("", "7", toNothing), kAssignment + "TaskUID", "1"},
      {__LINE__, twoTasks("", "", toNothing), kLinks, "-"},
      {__LINE__, twoTasks("", "", toNothing), "said",
       "task without a UID: its link to nothing is left out, because there is no such task; assignment 1 is left out, "
       "because it "
       "names no task"},
  });
}

TEST(Corrections, GiveEachObjectANumberOfItsOwn) {
  const auto chain = [](const string& second) {
    return tasks({"t1", second, "t7"}, task("t1") + task(second, link("idref='t1'")) +
                                           task("t7", link("idref='" + second + "'") + use("r1")) +
                                           resource("r1", "Staff"));
  };
  const string top = "<scenario><top-resource idref='r5'/><top-task idref='t1'/>" + resource("r5", "Staff") +
                     task("t1", use("r5")) + "</scenario>";
  const string twice =
      resources({"r1", "r2"}, group("r1", "", {"r3"}) + group("r2", "", {"r3"}) + group("r3", "", {}), "");
  expectSent({
      {__LINE__, chain("t12x"), kTask + "UID", "0,1,2,7"},
      {__LINE__, chain("t12x"), kLinks, "1,2"},
      {__LINE__, chain("t12x"), kAssignment + "TaskUID", "1,2,7"},
      {__LINE__, chain("t007"), kTask + "UID", "0,1,2,7"},
      {__LINE__, chain("t007"), kLinks, "1,2"},
      {__LINE__, chain("t008"), kTask + "UID", "0,1,008,7"},
      {__LINE__, chain("t2097151"), kTask + "UID", "0,1,2097151,7"},
      {__LINE__, chain("t2097152"), kTask + "UID", "0,1,2,7"},
      {__LINE__, chain("t99999999999999999999"), kLinks, "1,2"},
      {__LINE__, chain("t+2"), kLinks, "1,2"},
      {__LINE__, chain("t 2"), kTask + "UID", "0,1,2,7"},
      {__LINE__, resources({"r1x", "r1"}, resource("r1x", "Staff") + resource("r1", "Staff"), use("r1") + use("r1x")),
       kResource + "UID", "0,2,1"},
      {__LINE__, resources({"r1x", "r1"}, resource("r1x", "Staff") + resource("r1", "Staff"), use("r1") + use("r1x")),
       kAssignment + "ResourceUID", "1,2"},
      // The top resource is one of the people: it keeps the number that the placeholder has.
      {__LINE__, top, kResource + "UID ID", "1,0 0,1"},
      {__LINE__, top, kAssignment + "ResourceUID", "0"},
      {__LINE__, twice, "Calendars/Calendar/UID", "1,2,5,6"},
  });
  const auto calendars = [](const string& second) {
    return e("Calendars", e("Calendar", e("UID", "2") + e("Name", "A")) + e("Calendar", e("UID", "2") + second));
  };
  expectCopied({
      {__LINE__, calendars(e("Name", "A")), "Calendars/Calendar/UID", "2"},
      {__LINE__, calendars(e("Name", "B")), "Calendars/Calendar/UID", "2,1"},
  });
}

TEST(Corrections, DefineEachCustomFieldOnce) {
  const string two =
      scenario(task("t1", keys({"a", "b"})) + task("t2", keys({"b", "c"})) + resource("r1", "Staff", keys({"b"})));
  string many, values;
  for (int i = 0; i < 33; ++i) many += e("key", "k" + std::to_string(i)), values += e("string", "v");
  const string tooMany = t1(e("user-data", many + values));
  const string doubled = "field \"a (2)\" of tasks holds further values of the key \"a\"";
  expectSent({
      {__LINE__, two, kFields + "Alias FieldName", "b,a,b,c Text1,Text1,Text2,Text3"},
      {__LINE__, two, kFields + "FieldID", "205520904,188743731,188743734,188743737"},
      {__LINE__, two, kValues + "FieldID Value", "188743731,188743734,188743734,188743737 1,2,1,2"},
      {__LINE__, two, kResource + "ExtendedAttribute/FieldID", "205520904"},
      {__LINE__, t1(keys({"a", "a", "b"})), kFields + "Alias", "a,a (2),b"},
      {__LINE__, t1(keys({"a", "a", "b"})), kValues + "FieldID Value", "188743731,188743734,188743737 1,2,3"},
      {__LINE__, t1(keys({"a", "a", "b"})), "said", doubled},
      {__LINE__, t1(keys({"a", "a", "a (2)", "a"})), kFields + "Alias", "a,a (3),a (2),a (4)"},
      // Two keys that the exporter writes alike.
      {__LINE__, t1(keys({"a b", "a\nb"})), kFields + "Alias", "a b,a b (2)"},
      {__LINE__, scenario(task("t1", keys({"a", "a"})) + task("t2", keys({"a (2)", "a"}))), kValues + "FieldID",
       "188743731,188743734,188743734,188743731"},
      {__LINE__, tooMany, "said", "task fields past Text30 left out: 3 fields with 3 values"},
  });
  const auto defined = [](const string& number, const string& name, const string& alias) {
    return e("ExtendedAttribute", e("FieldID", number) + e("FieldName", name) + e("Alias", alias));
  };
  const auto valued = [](const string& number) { return xmlTask(e("ExtendedAttribute", e("FieldID", number))); };
  const string alias = kFields + "FieldID Alias";
  expectCopied({
      // What is right stays, be it in gaps or of another kind.
      {__LINE__, e("ExtendedAttributes", defined("188743740", "Text4", "d")) + e("Tasks", valued("188743740")), alias,
       "188743740 d"},
      {__LINE__, e("ExtendedAttributes", defined("188743767", "Number1", "n")), alias, "188743767 n"},
      // A value that nothing defines keeps its number for itself.
      {__LINE__,
       e("ExtendedAttributes", defined("188743767", "Text13", "m")) +
           e("Tasks", valued("188743731") + valued("188743767")),
       kValues + "FieldID", "188743731,188743734"},
      {__LINE__,
       e("ExtendedAttributes", defined("188743731", "Text1", "a") + defined("188743731", "Text1", "b")) +
           e("Tasks", valued("188743731") + valued("188743731") + valued("188743731")),
       "said",
       "custom field 188743731 is defined 2 times but more tasks and resources have it: no telling which is which"},
  });
}

TEST(Corrections, RankPriorities) {
  const auto ranked = [](const std::vector<int>& priorities, const string& more = "") {
    std::vector<string> ids;
    string objects;
    for (const int priority : priorities) {
      ids.push_back("t" + std::to_string(ids.size() + 1));
      objects += task(ids.back(), e("priority", std::to_string(priority)));
    }
    return tasks(ids, objects + more);
  };
  std::vector<int> many(600);
  for (int i = 0; i < 600; ++i) many[static_cast<std::size_t>(i)] = i + 1;
  expectSent({
      {__LINE__, ranked({0, 10, 20, 10}), kTask + "Priority", "500,500,666,833,666"},
      {__LINE__, ranked({-3, 9, -1}), kTask + "Priority", "500,167,750,334"},
      // Of tasks outside of the tree, too, but not of one that another one with its id hides.
      {__LINE__, ranked({5}, task("t9", e("priority", "7"))), kTask + "Priority", "500,666"},
      {__LINE__, ranked({9, 5}, task("t1", e("priority", "5"))), kTask + "Priority", "500,750,750"},
      {__LINE__, t1(e("priority", "-9223372036854775808")), kTask + "Priority", "500,250"},
  });
  const string priorities = sent({__LINE__, ranked(many), kTask + "Priority", ""}, {"Base", "EUR", false});
  EXPECT_TRUE(priorities.starts_with("500,501,501,502,")) << priorities;
  EXPECT_TRUE(priorities.ends_with(",998,999")) << priorities;
}

TEST(Corrections, DivideWhatIsDone) {
  const auto done = [](const string& effort, const string& effortDone, const string& completion) {
    return t1(e("effort", effort) + e("effort-done", effortDone) + e("completion-percentage", completion));
  };
  const string percent = "Tasks/Task/PercentComplete", work = kAssignment + "ActualWork RemainingWork";
  const string dates = kTask + "ActualStart ActualFinish";
  const string done100 = e("UID", "1") + e("PercentComplete", "100") + e("Start", "A") + e("Finish", "B");
  expectSent({
      {__LINE__, done("10000", "2900", "0"), percent, "29"},
      {__LINE__, done("0", "0", "0.29"), percent, "29"},
      {__LINE__, done("1000", "285", "0"), percent, "29"},
      {__LINE__, done("1000", "4", "0"), percent, "-"},
      {__LINE__, done("1000", "4", "0"), dates, "2026-05-04T08:00:00 -"},
      {__LINE__, done("1000", "996", "0"), percent, "100"},
      {__LINE__, done("1000", "996", "0"), dates, "2026-05-04T08:00:00 -"},
      {__LINE__, done("3600", "3600", "0"), dates, "2026-05-04T08:00:00 2026-05-06T17:00:00"},
      {__LINE__, done("3600", "3600", "0"), kAssignment + "ActualStart ActualFinish",
       "2026-05-04T08:00:00 2026-05-06T17:00:00"},
      {__LINE__, done("7", "0", "0.5"), work, "PT0H0M4S PT0H0M3S"},
      {__LINE__, done("7", "0", "0"), work, "PT0H0M0S PT0H0M7S"},
      {__LINE__, done("9000000000000000000", "3000000000000000000", "0"), kTask + "RemainingDuration",
       "PT24H0M0S,PT16H0M0S"},
  });
  expectCopied({
      {__LINE__, xmlTasks(xmlTask(done100)), dates, "A B"},
      {__LINE__, xmlTasks(xmlTask(done100 + e("RemainingDuration", "PT0H0M1S"))), dates, "- -"},
      {__LINE__, xmlTasks(xmlTask(done100 + e("ActualFinish", "C"))), dates, "A C"},
      {__LINE__, xmlTasks(xmlTask(done100)) + e("Assignments", e("Assignment", e("TaskUID", "1") + e("Start", "D"))),
       kAssignment + "ActualStart ActualFinish", "D B"},
  });
}

TEST(Corrections, NameWhatHasNoName) {
  const auto titled = [](const string& title) { return e("toc", e("project", title)); };
  const auto calendar = [](const string& uid, const string& name) {
    return e("Calendar", e("UID", uid) + e("Name", name));
  };
  const string fifty = string(50, 'a');
  expectSent({
      {__LINE__, t1(""), "Name", "Plan", "UTC", {titled(e("title", "Plan"))}},
      {__LINE__, t1(""), "Name Title", "Base  ", "UTC", {titled(e("title", " "))}},
      {__LINE__, t1(e("title", "One")), kTask + "Name", "Base,One", "UTC", {titled("")}},
      {__LINE__, scenario(resource("r1", "Staff", e("name", "A, [B]"))), kResource + "Name", "A; (B)"},
      {__LINE__, scenario(resource("r1", "Staff", e("name", "A, [B]"))), "said",
       "resource r1: \"A, [B]\" is now \"A; (B)\""},
  });
  expectCopied({
      {__LINE__, e("Calendars", calendar("1", fifty + "bc") + calendar("2", fifty + "b") + calendar("3", " ")),
       "Calendars/Calendar/Name", string(47, 'a') + " (1)," + fifty + "b,Calendar 3"},
  });
}

TEST(Corrections, SetWhatReadersInsistOn) {
  const string material = e("cost-per-hour", "5");
  const auto levels = [](std::initializer_list<string> all) {
    string tasks;
    for (const string& level : all) tasks += xmlTask(e("OutlineLevel", level));
    return xmlTasks(tasks);
  };
  expectSent({
      {__LINE__, t1(""), kTask + "CalendarUID IgnoreResourceCalendar", "-1,-1 0,0"},
      {__LINE__,
       scenario(resource("r1", "Material", material) + resource("r2", "Material") + resource("r3", "Staff", material)),
       kResource + "StandardRateFormat", "8,2"},
      {__LINE__, t1(link("idref='t-1'")), kTask + "PredecessorLink/LinkLag", "0"},
      {__LINE__, t1(""), "CurrencyCode", "USD"},
      {__LINE__,
       t1(""),
       "CurrencyCode",
       "EUR",
       "UTC",
       {"<toc><project><currency-format>5</currency-format></project></toc>"}},
      {__LINE__,
       t1(""),
       "said",
       "the currency's symbol \"\" has several codes or none: EUR is written, as the command line says",
       "UTC",
       {"<toc><project><currency-format>5</currency-format></project></toc>"}},
  });
  expectSent({{__LINE__, t1(""), kTask + "Manual ManualStart ManualFinish ManualDuration",
               "0,1 2026-05-04T08:00:00 2026-05-06T17:00:00 PT24H0M0S"}},
             {"Base", "", true});
  expectCopied({
      {__LINE__, levels({"0", "2", "1", "3", "3", "2", "5", "4", "1"}), kTask + "OutlineNumber",
       "0,1.1,2,2.1.1,2.1.2,2.2,2.2.1.1.1,2.2.1.2,3"},
      {__LINE__, levels({"2001"}), kTask + "WBS", "task 1 has OutlineLevel 2001, which is above 2000"},
      {__LINE__, xmlTasks(xmlTask(e("CalendarUID", "3") + e("IgnoreResourceCalendar", "1"))),
       kTask + "CalendarUID IgnoreResourceCalendar", "3 1"},
  });
}

TEST(Corrections, TakeTheMachinesCurrency) {
  const ScopedVariable all("LC_ALL", "");
  const ScopedVariable money("LC_MONETARY", std::nullopt);
  const string empty = "<CurrencySymbol>Cr</CurrencySymbol><CurrencyCode/>";
  const auto expectCode = [&](const char* line, const char* variable, const char* locale, const string& code) {
    SCOPED_TRACE(line);
    const ScopedVariable language("LANG", "sv_SE.UTF-8");
    const ScopedVariable set(variable, locale);
    EXPECT_EQ(copied({__LINE__, empty, "CurrencyCode", ""}), code);
  };
  expectCode("a locale", "LANG", "de_DE.UTF-8@euro", "EUR");
  expectCode("a closer one", "LC_MONETARY", "en_GB", "GBP");
  expectCode("the closest one", "LC_ALL", "C.UTF-8", "USD");
  expectCode("without a country", "LANG", "de", "USD");
  expectCode("no locale", "LANG", "no such locale", "USD");
  const string pound = "<CurrencySymbol>£</CurrencySymbol><CurrencyCode/>";
  EXPECT_EQ(copied({__LINE__, pound, "CurrencyCode", ""}), "GBP");
}
