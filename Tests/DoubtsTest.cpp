#include "Conform/Doubts.h"
#include "Conform/Plan.h"
#include "Conform/Report.h"
#include "Tests/Tables.h"

namespace {

std::string warningsOf(const std::string& plan) {
  const auto document = parsed(plan);
  const auto contents = parsed("<contents/>");
  conform::Report report;
  conform::warnOfDoubts(conform::Plan(*document, *contents), report);
  std::string all;
  for (const std::string& warning : report.warnings()) all += (all.empty() ? "" : "; ") + warning;
  return all;
}

/// The warnings for a plan whose task t1 'A' has these children.
std::string ofTask(std::string_view children) {
  return warningsOf(
      fmt::format("<scenario><top-task idref='t1'/><task id='t1'><title>A</title>{}</task></scenario>", children));
}
/// The warnings for a plan whose resource r1 'B' has these children.
std::string ofResource(std::string_view children) {
  return warningsOf(fmt::format(
      "<scenario><top-resource idref='r1'/><resource id='r1'><name>B</name><type>Group</type>{}</resource></scenario>",
      children));
}
std::string ofPlan(std::string_view children) { return warningsOf(fmt::format("<scenario>{}</scenario>", children)); }

}  // namespace

TEST(DoubtsTest, WhatIsReadOtherwiseThanItWasMeant) {
  const PinnedZone zone("Europe/Berlin");
  expectOutcomes({
      {__LINE__, ofTask, "<start-date>2026-02-06T08:30:00+01:00</start-date>", ""},
      {__LINE__, ofTask, "<start-date>soon</start-date>",
       "task t1 'A': start-date 'soon' is no date, year 1 is written"},
      {__LINE__, ofTask, "<end-date>2026-02-06T08:30:00</end-date>",
       "task t1 'A': end-date '2026-02-06T08:30:00' has no offset, UTC is taken"},
      {__LINE__, ofTask, "<end-date>2026-02-06T08:30:00.5+02:00</end-date>",
       "task t1 'A': end-date '2026-02-06T08:30:00.5+02:00' is not read whole, 2026-02-06T09:30:00 is written"},
      {__LINE__, ofTask, "<end-date>2026-02-06T08:30</end-date>",
       "task t1 'A': end-date '2026-02-06T08:30' is not read whole, 2026-02-06T01:00:00 is written"},
      {__LINE__, ofTask, "<effort>8 h</effort>", "task t1 'A': effort '8 h' is read as far as it is a number: 8"},
      {__LINE__, ofTask, "<effort>3600 </effort><priority>-2</priority>", ""},
      {__LINE__, ofTask, "<title>A</title>", "task t1 'A': there is more than one title, the last one counts"},
      {__LINE__, ofTask, "<static-cost>1</static-cost><static-cost>2</static-cost>",
       "task t1 'A': there is more than one static-cost, none counts"},
      {__LINE__, ofTask, "<splittable>perhaps</splittable>",
       "task t1 'A': splittable 'perhaps' is neither true nor false, it counts as true"},
      {__LINE__, ofTask, "<end-date>2026-02-30T08:30:00+01:00</end-date>",
       "task t1 'A': end-date '2026-02-30T08:30:00+01:00' is in no calendar, 2026-03-02T08:30:00 is written"},
      {__LINE__, ofTask, "<type>phase</type>", "task t1 'A': type 'phase' is unknown, it is a task"},
      {__LINE__, ofTask, "<prerequisite-task idref='t1' kind='ss'/>",
       "task t1 'A': kind 'ss' is unknown, it goes from finish to start"},
      {__LINE__, ofTask, "<assignment idref='r1' units='all'/>",
       "task t1 'A': units 'all' is no number, and is written as it is"},
      {__LINE__, ofResource, "<cost-per-hour>abc</cost-per-hour>",
       "resource r1 'B': cost-per-hour 'abc' is no number, and is written as it is"},
      {__LINE__, ofResource, "<efficiency>0.8</efficiency>",
       "resource r1 'B': the format has no efficiency, 80 % is left out"},
      {__LINE__, ofResource, "<child-resource/>",
       "resource r1 'B': child-resource to '' leads to nothing, and is left out"},
      {__LINE__, ofResource,
       "<schedule><calendar><event start='2026-01-19T07:00:00' end='2026-01-19'/></calendar></schedule>",
       "resource r1 'B': end '2026-01-19' is not read whole, 2026-01-19T00:00:00 is written"},
      {__LINE__, ofPlan, "<task id='t1'/>", "task t1 '': no group holds it, it is left out"},
      {__LINE__, ofPlan, "<top-task idref='t1'/><task id='t1'/><task id='t1'><title>A</title></task>",
       "task t1 '': another task has the same id, this one is left out"},
      {__LINE__, ofPlan, "<top-task idref='t1'/><task id='t1'><split/><child-task idref='t2'/></task><task id='t2'/>",
       ""},
  });
}
