#include "Conform/Doubts.h"
#include "Conform/Plan.h"
#include "Conform/Report.h"
#include "Tests/Tables.h"

namespace {

/// The warnings about a plan, without the label with which the first one must begin.
std::string warningsOf(std::string_view label, std::string_view children, std::string_view format,
                       std::string_view inContents = "", const conform::Baselines& baselines = {}) {
  const auto document = parsed("<scenario>" + fmt::format(fmt::runtime(format), children) + "</scenario>");
  const auto contents = parsed(fmt::format("<contents>{}</contents>", inContents));
  conform::Report report;
  conform::warnOfDoubts(conform::Plan(*document, *contents), baselines, report);
  const std::string all = fmt::format("{}", fmt::join(report.warnings(), "; "));
  if (!all.starts_with(label)) return all.empty() ? "" : "not labelled: " + all;
  return all.substr(label.size());
}
/// For a plan whose task t1 'A', or resource r1 'B', has these children.
std::string ofTask(std::string_view children) {
  return warningsOf("task t1 'A': ", children, "<top-task idref='t1'/><task id='t1'><title>A</title>{}</task>");
}
std::string ofResource(std::string_view children) {
  return warningsOf("resource r1 'B': ", children,
                    "<top-resource idref='r1'/><resource id='r1'><name>B</name><type>Group</type>{}</resource>");
}
std::string ofSchedule(std::string_view children) {
  return ofResource(fmt::format("<schedule>{}</schedule>", children));
}
/// For a compared plan whose task t1 has these children.
std::string ofBaseline(std::string_view children) {
  return warningsOf("the baseline of task t1 'A': ", "", "<top-task idref='t1'/><task id='t1'><title>A</title></task>",
                    "", {parsed(fmt::format("<scenario><task id='t1'>{}</task></scenario>", children))});
}
std::string ofPlan(std::string_view children) { return warningsOf("", children, "{}"); }
/// For a project with three scenarios, two of which have the id "twice", and a front window with these children.
std::string ofWindow(std::string_view children) {
  return warningsOf("the front window: ", "", "{}",
                    fmt::format("<project><scenario id='once'/><scenario id='twice'/><scenario id='twice'/></project>"
                                "<window>{}</window>",
                                children));
}

}  // namespace

TEST(DoubtsTest, WhatIsReadOtherwiseThanItWasMeant) {
  const PinnedZone zone("Europe/Berlin");
  expectOutcomes({
      {__LINE__, ofTask, "<start-date>2026-02-06T08:30:00+01:00</start-date>", ""},
      {__LINE__, ofTask, "<start-date>soon</start-date>", "start-date 'soon' is no date, year 1 is written"},
      {__LINE__, ofTask, "<end-date>2026-02-06T08:30:00</end-date>",
       "end-date '2026-02-06T08:30:00' has no offset, UTC is taken"},
      {__LINE__, ofTask, "<end-date>2026-02-06T08:30:00.5+02:00</end-date>",
       "end-date '2026-02-06T08:30:00.5+02:00' is not read whole, 2026-02-06T09:30:00 is written"},
      {__LINE__, ofTask, "<end-date>2026-02-06T08:30</end-date>",
       "end-date '2026-02-06T08:30' is not read whole, 2026-02-06T01:00:00 is written"},
      {__LINE__, ofTask, "<effort>8 h</effort>", "effort '8 h' is read as far as it is a number: 8"},
      {__LINE__, ofTask, "<effort>2147483647</effort>", ""},
      {__LINE__, ofTask, "<effort>1e3</effort>", "effort '1e3' is read as far as it is a whole number: 1"},
      {__LINE__, ofTask, "<duration>3e9</duration>",
       "duration '3e9' is more than a duration can be, PT596523H14M7S is written"},
      {__LINE__, ofTask, "<effort>3600 </effort><priority>-2</priority>", ""},
      {__LINE__, ofTask, "<effort-done>-5</effort-done>", "effort-done '-5' is negative, it counts as 0"},
      {__LINE__, ofTask, "<completion-percentage>-1</completion-percentage>",
       "completion-percentage '-1' is negative, it counts as 0"},
      {__LINE__, ofTask,
       "<effort>2</effort><effort-done>1</effort-done><completion-percentage>-1</completion-percentage>", ""},
      {__LINE__, ofTask, "<title>A</title>", "there is more than one title, the last one counts"},
      {__LINE__, ofTask, "<static-cost>1</static-cost><static-cost>2</static-cost>",
       "there is more than one static-cost, none counts"},
      {__LINE__, ofTask, "<splittable>perhaps</splittable>",
       "splittable 'perhaps' is neither true nor false, it counts as true"},
      {__LINE__, ofTask, "<end-date>2026-02-30T08:30:00+01:00</end-date>",
       "end-date '2026-02-30T08:30:00+01:00' is in no calendar, 2026-03-02T08:30:00 is written"},
      {__LINE__, ofTask, "<type>phase</type>", "type 'phase' is unknown, it is a task"},
      {__LINE__, ofTask, "<prerequisite-task idref='t1' kind='ss'/>",
       "kind 'ss' is unknown, it goes from finish to start"},
      {__LINE__, ofTask, "<assignment idref='r1' units='all'/>", "units 'all' is no number, and is written as it is"},
      {__LINE__, ofResource, "<cost-per-hour>abc</cost-per-hour>",
       "cost-per-hour 'abc' is no number, and is written as it is; resource r1 'B': its cost-per-hour is left out, "
       "since the file has none of a group"},
      {__LINE__, ofResource, "<efficiency>0.8</efficiency>", "the format has no efficiency, 80 % is left out"},
      {__LINE__, ofResource, "<child-resource/>", "child-resource to '' leads to nothing, and is left out"},
      {__LINE__, ofSchedule, "<calendar><event start='2026-01-19T07:00:00' end='2026-01-19'/></calendar>",
       "end '2026-01-19' is not read whole, 2026-01-19T00:00:00 is written"},
      {__LINE__, ofSchedule,
       "<flattened-schedule-day date='2026-05-04'><time-span start-time='1' end-time='2'/>"
       "</flattened-schedule-day><schedule-day day-of-week='monday'/><schedule-day day-of-week='friday'/>"
       "<calendar overtime='yes'/>",
       ""},
      {__LINE__, ofSchedule, "<flattened-schedule-day date='soon'/>", "date 'soon' is no date, year 1 is written"},
      {__LINE__, ofSchedule, "<schedule-day><time-span start-time='08:00' end-time='1'/></schedule-day>",
       "start-time '08:00' is read as far as it is a number: 8"},
      {__LINE__, ofSchedule, "<schedule-day day-of-week='monday'/><schedule-day day-of-week='monday'/>",
       "there is more than one schedule-day of monday, the last one counts"},
      {__LINE__, ofSchedule, "<calendar overtime='Y'/>", "overtime 'Y' is neither true nor false, it counts as false"},
      {__LINE__, ofSchedule, "<calendar><event start='2026-02-30T07:00:00' end='2026-03-03T08:00:00'/></calendar>",
       "start '2026-02-30T07:00:00' is in no calendar, 2026-03-02T07:00:00 is written"},
      {__LINE__, ofBaseline, "<start-date>2026-02-06T08:30:00Z</start-date><effort>3600</effort>", ""},
      {__LINE__, ofBaseline, "<end-date>soon</end-date>", "end-date 'soon' is no date, year 1 is written"},
      {__LINE__, ofPlan, "<task id='t1'/>", "task t1 '': no group holds it, it is left out"},
      {__LINE__, ofPlan, "<top-task idref='t1'/><task id='t1'/><task id='t1'><title>A</title></task>",
       "task t1 '': another task has the same id, this one is left out"},
      {__LINE__, ofPlan,
       "<top-task idref='t'/><task id='t'><assignment idref='r' units='600000'/></task>"
       "<top-resource idref='r'/><resource id='r'><type>Material</type></resource>",
       "task t '': units '600000' is more than a duration can be, PT596523H14M7S is written"},
      {__LINE__, ofPlan, "<top-task idref='t'/><task id='t'><child-task idref='u'/></task><task id='u'/>",
       "task u '': no group holds it, it is left out"},
      {__LINE__, ofWindow, "<editing-scenario>once</editing-scenario><comparison-scenario/>", ""},
      {__LINE__, ofWindow, "<editing-scenario>twice</editing-scenario>",
       "several scenarios have the id of the edited one, the last one counts"},
      {__LINE__, ofWindow, "<comparison-scenario>none</comparison-scenario>",
       "comparison-scenario leads to nothing, there is no baseline"},
      {__LINE__, ofPlan, "<top-task idref='t'/><task id='t'><split/><child-task idref='u'/></task><task id='u'/>", ""},
      {__LINE__, ofPlan,
       "<top-task idref='t'/><task id='t'><split/><child-task idref='u'/></task><task id='u'><note/></task>",
       "piece u '': its note is left out, since the file has none of a piece of a split task"},
      {__LINE__, ofTask,
       "<prerequisite-task kind='FS'><lead-time is-percentage='TRUE'>1</lead-time></prerequisite-task>",
       "is-percentage 'TRUE' is neither \"true\" nor \"false\", the lag is taken for seconds"},
      {__LINE__, ofTask, "<note><text><p>Agreed.</p></text></note>",
       "its note is left out, since it has no text in p, run, lit"},
      {__LINE__, ofTask, "<note><text><p><run><lit>Agreed.</lit></run></p></text></note>", ""},
      {__LINE__, ofTask,
       "<prerequisite-task kind='FS'><lead-time>1</lead-time><lead-time>2</lead-time></prerequisite-task>",
       "there is more than one lead-time, the last one counts"},
  });
}
