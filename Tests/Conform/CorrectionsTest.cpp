#include <array>
#include <numeric>

#include "Conform/Copy.h"
#include "Conform/Corrections.h"
#include "Tests/MappingSupport.h"

using conform::Options;
using std::string;

namespace {

/// Corrects the copy and returns Mapped::value() of the path; for the path "said", the warnings.
string valueOf(conform::Copy& copy, const string& path) {
  conform::correct(copy);
  if (path == "said") return fmt::format("{}", fmt::join(copy.report.warnings(), "; "));
  return Mapped{"", parsed(written(copy))}.value(path);
}

/// valueOf() for a scenario that is exported, and corrected with its bundle.
string correctedWithBundle(const ValueRow& row, const Options& options) {
  const Mapped exact = mapped(row.scenario, row.others);
  if (!exact.failure.empty()) return exact.failure;
  const auto scenario = parsed(row.scenario);
  const auto contents = parsed(row.others[0]);
  const conform::Plan plan(*scenario, *contents);
  conform::Copy copy(written(*exact.output), &plan, options);
  return valueOf(copy, row.path);
}

/// valueOf() for the contents of a `Project`, corrected without a bundle; a failure gives its reason.
string correctedWithoutBundle(const ValueRow& row) {
  string value;
  const string failure = failureOf([&] {
    conform::Copy copy("<Project xmlns='http://schemas.microsoft.com/project'>" + row.scenario + "</Project>", nullptr,
                       {"Base", "", false});
    value = valueOf(copy, row.path);
  });
  return failure.empty() ? value : failure;
}

void expectWithBundle(const std::vector<ValueRow>& rows, const Options& options = {"Base", "", false}) {
  expectValues(rows, [&options](const ValueRow& row) { return correctedWithBundle(row, options); });
}
void expectWithoutBundle(const std::vector<ValueRow>& rows) { expectValues(rows, correctedWithoutBundle); }

string link(const string& attributes) { return "<prerequisite-task " + attributes + "/>"; }
string use(const string& resource) { return "<assignment idref='" + resource + "'/>"; }
string keys(std::initializer_list<string> names) {
  string pairs;
  int value = 0;
  for (const string& name : names) pairs += tag("key", name) + tag("string", std::to_string(++value));
  return tag("user-data", pairs);
}
string t1(const string& inside) { return scenario(task("t1", inside)); }
/// A plan whose top group has the tasks with these ids as members.
string tasks(const std::vector<string>& ids, const string& objects) {
  return "<scenario><top-resource idref='r-1'/><top-task idref='t-1'/>" + group("r-1", "", {}) + objects +
         task("t-1", "<type>group</type>" + children("task", ids)) + "</scenario>";
}
/// A plan whose top group has the resources with these ids as members, and with a task t1.
string resources(const std::vector<string>& ids, const string& objects, const string& inTask) {
  return "<scenario><top-resource idref='r-1'/><top-task idref='t1'/>" + group("r-1", "", ids) + objects +
         task("t1", inTask) + "</scenario>";
}

const string kLinks = "Task/PredecessorLink/PredecessorUID";
const string kUidAndLinks = "Task: UID PredecessorLink/PredecessorUID";
const string kLink = "its link to ", kGone = " is left out, because the file has no such task";

string xmlTask(const string& inside) { return tag("Task", inside); }
string xmlTasks(const string& tasks) { return tag("CurrencyCode", "EUR") + tag("Tasks", tasks); }

}  // namespace

TEST(Corrections, LeaveNoReferenceWithoutATarget) {
  const string toGroup = resources({"r1"}, group("r1", tag("name", "Team"), {}) + resource("r2", "Role"), use("r1"));
  const string toNobody = "task t1: its assignment to r1 'Team', which is no resource of the file, is to nobody";
  // The exact file writes both t0 and t-5 without a number, but there is no task t-5.
  const string toUnnumbered = tasks({"t1", "t0"}, task("t1", link("idref='t-5'") + link("idref='t0'")) + task("t0"));
  const string toAbsent = tasks({"t1", "t0"}, task("t0") + task("t1", link("idref='t-5'")));
  const string toPerson = resources({"r0"}, resource("r0", "Staff"), use("r0"));
  const string toOtherGroup = resources({"r0"}, resource("r0", "Staff") + group("r-9", "", {}), use("r-9"));
  const string resourceUid = "Assignment/ResourceUID", nobody = "-65535";
  expectWithBundle({
      {__LINE__, "the link to an existing task is kept", t1(link("idref='t9'") + link("idref='t-1'")), kLinks, "0"},
      {__LINE__, "one warning for two equal links of a task", t1(tag("title", "A") + link("") + link("idref=''")),
       "said", "task t1 'A': " + kLink + "nothing" + kGone},
      {__LINE__, "a link to a task without a number is kept", toUnnumbered, kLinks, "2"},
      {__LINE__, "a missing task without a number is reported", toAbsent, "said", "task t1: " + kLink + "t-5" + kGone},
      {__LINE__, "a group becomes nobody", toGroup, resourceUid, nobody},
      {__LINE__, "the warning has the group's name", toGroup, "said", toNobody},
      {__LINE__, "the top group has the placeholder's number", resources({}, "", use("r-1")), resourceUid, nobody},
      {__LINE__, "a resource in no group", resources({}, resource("r5", "Staff"), use("r5")), resourceUid, nobody},
      {__LINE__, "a person without a number stays assigned", toPerson, resourceUid, "1"},
      {__LINE__, "a group without a number is not mistaken for that person", toOtherGroup, resourceUid, nobody},
  });
  const auto twoTasks = [](const string& first, const string& second, const string& more) {
    return xmlTasks(xmlTask(tag("UID", first)) + xmlTask(tag("UID", second) + more)) +
           tag("Assignments", tag("Assignment", tag("UID", "1") + tag("TaskUID", "") + tag("ResourceUID", "-65535")));
  };
  const string toNothing = "<PredecessorLink><PredecessorUID/></PredecessorLink>";
  expectWithoutBundle({
      {__LINE__, "a link leads to the only task without a number", twoTasks("", "7", toNothing), kLinks, "1"},
      {__LINE__, "so does an assignment", twoTasks("", "7", toNothing), "Assignment/TaskUID", "1"},
      {__LINE__, "a link is left out if two tasks have no number", twoTasks("", "", toNothing), kLinks, "none"},
      {__LINE__, "the warnings about both", twoTasks("", "", toNothing), "said",
       "task without a UID: its link to nothing is left out, because the file has no such task; assignment 1 is left "
       "out, "
       "because it names no task"},
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
  const string inTwoGroups =
      resources({"r1", "r2"}, group("r1", "", {"r3"}) + group("r2", "", {"r3"}) + group("r3", "", {}), "");
  const string alike =
      resources({"r1x", "r1"}, resource("r1x", "Staff") + resource("r1", "Staff"), use("r1") + use("r1x"));
  const string second = "0 none, 1 none, 2 1, 7 2";
  expectWithBundle({
      {__LINE__, "an id that is not a number gets a free one", chain("t12x"), kUidAndLinks, second},
      {__LINE__, "assignments follow", chain("t12x"), "Assignment/TaskUID", "1, 2, 7"},
      {__LINE__, "zeros before a number that another task has", chain("t007"), kUidAndLinks, second},
      {__LINE__, "zeros before a free number stay", chain("t008"), kUidAndLinks, "0 none, 1 none, 008 1, 7 008"},
      {__LINE__, "the largest number stays", chain("t2097151"), kUidAndLinks, "0 none, 1 none, 2097151 1, 7 2097151"},
      {__LINE__, "a number above the largest", chain("t2097152"), kUidAndLinks, second},
      {__LINE__, "beyond 64 bits", chain("t99999999999999999999"), kUidAndLinks, second},
      {__LINE__, "a sign", chain("t+2"), kUidAndLinks, second},
      {__LINE__, "a blank", chain("t 2"), kUidAndLinks, second},
      {__LINE__, "r1 keeps the number 1, r1x gets another", alike, "Resource/UID", "0, 2, 1"},
      {__LINE__, "each assignment follows its resource", alike, "Assignment/ResourceUID", "1, 2"},
      // A person is the top resource, and has the number 0 of the placeholder.
      {__LINE__, "the placeholder gets another number", top, "Resource: UID ID", "1 0, 0 1"},
      {__LINE__, "the person stays assigned", top, "Assignment/ResourceUID", "0"},
      {__LINE__, "one calendar for a group in two groups", inTwoGroups, "Calendar/UID", "1, 2, 5, 6"},
  });
  const auto calendars = [](const string& more) {
    return tag("Calendars",
               tag("Calendar", tag("UID", "2") + tag("Name", "A")) + tag("Calendar", tag("UID", "2") + more));
  };
  expectWithoutBundle({
      {__LINE__, "one of two equal calendars is left out", calendars(tag("Name", "A")), "Calendar/UID", "2"},
      {__LINE__, "different calendars get different numbers", calendars(tag("Name", "B")), "Calendar/UID", "2, 1"},
  });
}

TEST(Corrections, DefineEachCustomFieldOnce) {
  const string ofBoth =
      scenario(task("t1", keys({"a", "b"})) + task("t2", keys({"b", "c"})) + resource("r1", "Staff", keys({"b"})));
  const string many = tag("user-data", numbered("<key>k{}</key>", 33) + repeated("<string>v</string>", 33));
  const string longKey(300, 'k');
  const string aTwice = t1(keys({"a", "a", "b"})), aFourTimes = t1(keys({"a", "a", "a (2)", "a"}));
  const string inOneOfTwo = scenario(task("t1", keys({"a", "a"})) + task("t2", keys({"a (2)", "a"})));
  const string ids = "Task/ExtendedAttribute/FieldID", values = "Task/ExtendedAttribute: FieldID Value";
  const string idAndAlias = "ExtendedAttribute: FieldID Alias", aliases = "ExtendedAttribute/Alias";
  const string f1 = "188743731", f2 = "188743734", f3 = "188743737";
  const string furtherValues = "field \"a (2)\" of tasks holds further values of the key \"a\"";
  expectWithBundle({
      {__LINE__, "tasks and resources have fields of their own", ofBoth, "ExtendedAttribute: Alias FieldName FieldID",
       "b Text1 205520904, a Text1 " + f1 + ", b Text2 " + f2 + ", c Text3 " + f3},
      {__LINE__, "values of tasks", ofBoth, values, f1 + " 1, " + f2 + " 2, " + f2 + " 1, " + f3 + " 2"},
      {__LINE__, "values of resources", ofBoth, "Resource/ExtendedAttribute/FieldID", "205520904"},
      {__LINE__, "a second value for a key gets a field", aTwice, aliases, "a, a (2), b"},
      {__LINE__, "its value stays in its place", aTwice, values, f1 + " 1, " + f2 + " 2, " + f3 + " 3"},
      {__LINE__, "a warning names that field", aTwice, "said", furtherValues},
      {__LINE__, "new names avoid those of other keys", aFourTimes, aliases, "a, a (3), a (2), a (4)"},
      {__LINE__, "a long key is shortened in it", t1(keys({longKey, longKey})), aliases,
       longKey + ", " + longKey.substr(0, 200) + "... (2)"},
      {__LINE__, "keys that get equal names", t1(keys({"a b", "a\nb"})), aliases, "a b, a b (2)"},
      {__LINE__, "another task has a key with the new name", inOneOfTwo, ids, f1 + ", " + f2 + ", " + f2 + ", " + f1},
      {__LINE__, "too many fields", t1(many), "said", "task fields past Text30 left out: 3 fields with 3 values"},
  });
  const auto defined = [](const string& number, const string& name, const string& alias) {
    return tag("ExtendedAttribute", tag("FieldID", number) + tag("FieldName", name) + tag("Alias", alias));
  };
  const auto all = [](const string& fields) { return tag("ExtendedAttributes", fields); };
  const auto valued = [](const string& number) { return xmlTask(tag("ExtendedAttribute", tag("FieldID", number))); };
  const string mixed = all(defined("188743767", "Text13", "m")) + tag("Tasks", valued(f1) + valued("188743767"));
  const string inTwo =
      all(defined(f1, "Text1", "a") + defined(f1, "Text1", "b")) + tag("Tasks", valued(f1) + valued(f1) + valued(f1));
  expectWithoutBundle({
      {__LINE__, "fields need not begin with Text1",
       all(defined("188743740", "Text4", "d")) + tag("Tasks", valued("188743740")), idAndAlias, "188743740 d"},
      {__LINE__, "fields that are no texts stay", all(defined("188743767", "Number1", "n")), idAndAlias, "188743767 n"},
      {__LINE__, "an undefined field keeps its number", mixed, ids, f1 + ", " + f2},
      {__LINE__, "more values than definitions to divide them among", inTwo, "said",
       "custom field 188743731 is defined 2 times but more tasks and resources have it: no telling which is which"},
  });
}

TEST(Corrections, RankPriorities) {
  const auto ranked = [](const std::vector<int>& priorities, const string& more = "") {
    std::vector<string> ids;
    string objects;
    for (const int priority : priorities) {
      ids.push_back("t" + std::to_string(ids.size() + 1));
      objects += task(ids.back(), tag("priority", std::to_string(priority)));
    }
    return tasks(ids, objects + more);
  };
  std::vector<int> many(600);
  std::iota(many.begin(), many.end(), 1);
  const string priority = "Task/Priority";
  expectWithBundle({
      {__LINE__, "above 0", ranked({0, 10, 20, 10}), priority, "500, 500, 666, 833, 666"},
      {__LINE__, "on both sides", ranked({-3, 9, -1}), priority, "500, 167, 750, 334"},
      {__LINE__, "tasks outside the tree count", ranked({5}, task("t9", tag("priority", "7"))), priority, "500, 666"},
      {__LINE__, "replaced ones do not", ranked({9, 5}, task("t1", tag("priority", "5"))), priority, "500, 750, 750"},
      {__LINE__, "the lowest 64-bit number", t1(tag("priority", "-9223372036854775808")), priority, "500, 250"},
  });
  const string priorities = correctedWithBundle({__LINE__, "of many", ranked(many), priority, ""}, {"Base", "", false});
  EXPECT_TRUE(priorities.starts_with("500, 501, 501, 502, ")) << priorities;
  EXPECT_TRUE(priorities.ends_with(", 998, 999")) << priorities;
}

TEST(Corrections, DivideWhatIsDone) {
  const auto done = [](const string& effort, const string& effortDone, const string& completion) {
    return t1(tag("effort", effort) + tag("effort-done", effortDone) + tag("completion-percentage", completion));
  };
  const string percent = "Task/PercentComplete", work = "Assignment: ActualWork RemainingWork";
  const string allOfIt = "Task: PercentComplete ActualStart ActualFinish";
  const string dates = "Task: ActualStart ActualFinish", datesOfUse = "Assignment: ActualStart ActualFinish";
  const string done100 = tag("UID", "1") + tag("PercentComplete", "100") + tag("Start", "A") + tag("Finish", "B");
  const string start = "2026-05-04T08:00:00", finish = "2026-05-06T17:00:00", group = "none none none, ";
  expectWithBundle({
      {__LINE__, "by effort", done("10000", "2900", "0"), percent, "29"},
      {__LINE__, "by percentage", done("0", "0", "0.29"), percent, "29"},
      {__LINE__, "rounded", done("1000", "285", "0"), percent, "29"},
      {__LINE__, "rounds to 0, but has begun", done("1000", "4", "0"), allOfIt, group + "none " + start + " none"},
      {__LINE__, "rounds to 100, is not finished", done("1000", "996", "0"), allOfIt, group + "100 " + start + " none"},
      {__LINE__, "done", done("3600", "3600", "0"), allOfIt, group + "100 " + start + " " + finish},
      {__LINE__, "halves of seconds", done("7", "0", "0.5"), work, "PT0H0M4S PT0H0M3S"},
      {__LINE__, "not begun", done("7", "0", "0"), work, "PT0H0M0S PT0H0M7S"},
      {__LINE__, "beyond 64 bits", done("9000000000000000000", "3000000000000000000", "0"), "Task/RemainingDuration",
       "PT24H0M0S, PT16H0M0S"},
  });
  const string used = tag("Assignments", tag("Assignment", tag("TaskUID", "1") + tag("Start", "D")));
  const string remaining = tag("RemainingDuration", "PT0H0M1S");
  expectWithoutBundle({
      {__LINE__, "done", xmlTasks(xmlTask(done100)), dates, "A B"},
      {__LINE__, "not done while a second remains", xmlTasks(xmlTask(done100 + remaining)), dates, "none none"},
      {__LINE__, "an actual finish stays", xmlTasks(xmlTask(done100 + tag("ActualFinish", "C"))), dates, "A C"},
      {__LINE__, "its assignment", xmlTasks(xmlTask(done100)) + used, datesOfUse, "D B"},
  });
}

TEST(Corrections, NameWhatHasNoName) {
  const auto titled = [](const string& title) { return tag("toc", tag("project", title)); };
  const auto calendar = [](const string& uid, const string& name) {
    return tag("Calendar", tag("UID", uid) + tag("Name", name));
  };
  const string fifty = string(50, 'a'), oneTask = t1(tag("title", "One"));
  const string long12 = calendar("1", fifty + "bc") + calendar("2", fifty + "b");
  expectWithBundle({
      {__LINE__, "a title", t1(""), "Name", "Plan", "UTC", {titled(tag("title", "Plan"))}},
      {__LINE__, "a blank title", t1(""), ".: Name Title", "Base  ", "UTC", {titled(tag("title", " "))}},
      {__LINE__, "the task of the project has its name", oneTask, "Task/Name", "Base, One", "UTC", {titled("")}},
  });
  expectWithoutBundle({
      {__LINE__, "names that are too long or blank", tag("Calendars", long12 + calendar("3", " ")), "Calendar/Name",
       string(47, 'a') + " (1), " + fifty + "b, Calendar 3"},
  });
}

TEST(Corrections, SetWhatReadersInsistOn) {
  const auto levels = [](std::initializer_list<string> all) {
    string tasks;
    for (const string& level : all) tasks += xmlTask(tag("OutlineLevel", level));
    return xmlTasks(tasks);
  };
  const string malformed =
      xmlTasks(xmlTask(tag("UID", "1") + tag("Duration", "PT-24H0M0S") + tag("Start", "1-01-01T00:00:00") +
                       tag("Baseline", tag("Work", "PT0H0M-1S"))));
  const string ownCalendar = xmlTasks(xmlTask(tag("CalendarUID", "3") + tag("IgnoreResourceCalendar", "1")));
  expectWithBundle({
      {__LINE__, "the code of the symbol", t1(""), "CurrencyCode", "USD"},
      {__LINE__, "percentages of lags are rounded",
       t1("<prerequisite-task idref='t-1'><lead-time is-percentage='true'>0.29</lead-time></prerequisite-task>"),
       "Task/PredecessorLink/LinkLag", "29"},
  });
  expectWithBundle({{__LINE__, "with --keep-dates", t1(""), "Task: Manual ManualStart ManualFinish ManualDuration",
                     "0 none none none, 1 2026-05-04T08:00:00 2026-05-06T17:00:00 PT24H0M0S"}},
                   {"Base", "", true});
  expectWithoutBundle({
      {__LINE__, "outline numbers from levels", levels({"0", "2", "1", "3", "3", "2", "5", "4", "1"}),
       "Task/OutlineNumber", "0, 1.1, 2, 2.1.1, 2.1.2, 2.2, 2.2.1.1.1, 2.2.1.2, 3"},
      {__LINE__, "too deep", levels({"2001"}), "Task/WBS", "task 1 has OutlineLevel 2001, which is above 2000"},
      {__LINE__, "values that are none in XML", malformed, "Task: Duration Baseline/Work Start",
       "PT0H0M0S PT0H0M0S 0001-01-01T00:00:00"},
      {__LINE__, "a warning about the durations", malformed, "said",
       "task 1: PT0H0M0S is written for its negative durations"},
      {__LINE__, "a calendar of the task stays", ownCalendar, "Task: CalendarUID IgnoreResourceCalendar", "3 1"},
  });
}

TEST(Corrections, ChooseAmongCurrenciesOfOneSymbol) {
  const ScopedVariable machine("LC_ALL", "nb_NO.UTF-8");
  const auto several = [](const string& symbol, const string& choice) {
    return "the currency's symbol \"" + symbol + "\" has several codes or none: " + choice;
  };
  for (const auto& [about, sample, commandLine, code, said] : std::vector<std::array<string, 5>>{
           {"the one that it usually stands for", "$5", "", "USD", ""},
           {"another one, on the command line", "$5", "CAD", "CAD",
            several("$", "CAD is written, as the command line says")},
           {"one of another symbol", "$5", "EUR", "USD",
            "the currency's symbol \"$\" does not stand for EUR, which the command line says: USD is written"},
           {"yen have no decimals", "¥5", "", "JPY", several("¥", "JPY is written, which it usually stands for")},
           {"yuan have", "¥5.00", "", "CNY", ""},
           {"that of the machine", "5 kr", "", "NOK",
            several("kr", "NOK is written, which the machine's locale nb_NO.UTF-8 has")},
           {"not that of the machine", "Rs. 5", "", "LKR",
            several("Rs.", "LKR is written, because nothing tells the currency")},
           {"a symbol that is a code", "EUR 5", "", "EUR", ""},
           {"a symbol that is known abroad", "A$5", "", "AUD", ""},
           {"no symbol", "5", "EUR", "EUR", several("", "EUR is written, as the command line says")},
       }) {
    const std::vector<string> contents = {tag("toc", tag("project", tag("currency-format", sample)))};
    EXPECT_EQ(correctedWithBundle({__LINE__, about, t1(""), "CurrencyCode", "", "UTC", contents},
                                  {"Base", commandLine, false}),
              code)
        << about;
    EXPECT_EQ(correctedWithBundle({__LINE__, about, t1(""), "said", "", "UTC", contents}, {"Base", commandLine, false}),
              said)
        << about;
  }
}

TEST(Corrections, TakeTheMachinesCurrency) {
  for (const auto& [about, all, money, language, symbol, code] : std::vector<std::array<const char*, 6>>{
           {"the locale's country", "", "", "de_DE.UTF-8@euro", "Cr", "EUR"},
           {"LC_MONETARY counts before LANG", "", "en_GB", "sv_SE.UTF-8", "Cr", "GBP"},
           {"a locale without a country", "", "", "de", "Cr", "USD"},
           {"an unknown locale", "", "", "no such locale", "Cr", "USD"},
           {"LC_ALL counts before both", "C.UTF-8", "en_GB", "sv_SE.UTF-8", "Cr", "USD"},
           {"it chooses among the codes of a symbol", "", "en_GB", "sv_SE.UTF-8", "£", "GBP"},
       }) {
    const ScopedVariable first("LC_ALL", all), second("LC_MONETARY", money), third("LANG", language);
    const string project = tag("CurrencySymbol", symbol) + tag("CurrencyCode", "");
    EXPECT_EQ(correctedWithoutBundle({__LINE__, about, project, "CurrencyCode", ""}), code) << about;
  }
}
