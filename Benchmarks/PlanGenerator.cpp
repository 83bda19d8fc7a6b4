#include "Benchmarks/PlanGenerator.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Platform/Time/GregorianCalendar.h"

namespace {

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<{} xmlns=\"http://www.korvella.example/namespace/Korvella/v2\"{}>\n";
constexpr std::size_t kTasksPerGroup = 12;
constexpr std::size_t kGroupsPerPhase = 10;
constexpr std::size_t kPeoplePerTeam = 8;
constexpr std::size_t kDatedDays = 50;
constexpr std::size_t kTasksPerPerson = 200;
constexpr std::int64_t kFirstDay = 1'767'571'200;  // Monday, 5 January 2026
constexpr std::int64_t kDay = 86400;

using Out = std::back_insert_iterator<std::string>;

std::string dayText(std::int64_t seconds) {
  const auto civil = platform::GregorianCalendar::civilFromSeconds(seconds);
  return fmt::format("{:04d}-{:02d}-{:02d}", civil.year, civil.month, civil.day);
}

/// The date of the n-th working day.
std::string workingDay(std::size_t n) {
  return dayText(kFirstDay + static_cast<std::int64_t>(n / 5 * 7 + n % 5) * kDay);
}

void save(const std::string &path, const std::string &text) { std::ofstream(path, std::ios::binary) << text; }

void appendResources(Out out, std::size_t people) {
  const std::size_t teams = (people + kPeoplePerTeam - 1) / kPeoplePerTeam;
  fmt::format_to(out, "  <resource id=\"r-1\">\n    <type>Group</type>\n");
  for (std::size_t team = 0; team < teams; ++team) {
    fmt::format_to(out, "    <child-resource idref=\"r{}\"/>\n", people + 1 + team);
  }
  fmt::format_to(out, "  </resource>\n");
  for (std::size_t team = 0; team < teams; ++team) {
    fmt::format_to(out,
                   "  <resource id=\"r{}\">\n    <name>Team {}</name>\n    "
                   "<type>Group</type>\n",
                   people + 1 + team, team + 1);
    for (std::size_t i = team * kPeoplePerTeam; i < std::min(people, (team + 1) * kPeoplePerTeam); ++i) {
      fmt::format_to(out, "    <child-resource idref=\"r{}\"/>\n", i + 1);
    }
    fmt::format_to(out, "  </resource>\n");
  }
  for (std::size_t i = 0; i < people; ++i) {
    fmt::format_to(out,
                   "  <resource id=\"r{0}\">\n    <name>Person {0}</name>\n    "
                   "<type>Staff</type>\n"
                   "    <email-address>person{0}@office.example</email-address>\n"
                   "    <units-available>1</units-available>\n    "
                   "<cost-per-hour>85.5</cost-per-hour>\n    <schedule>\n",
                   i + 1);
    for (std::size_t day = 0; day < kDatedDays; ++day) {
      const std::string date = workingDay(i + day * 7);
      if (day % 3 == 0) {
        fmt::format_to(out, "      <flattened-schedule-day date=\"{}\"/>\n", date);
      } else {
        fmt::format_to(out,
                       "      <flattened-schedule-day date=\"{}\">\n        "
                       "<time-span start-time=\"28800\" "
                       "end-time=\"{}\"/>\n      </flattened-schedule-day>\n",
                       date, 57600 + day * 60);
      }
    }
    fmt::format_to(out, "    </schedule>\n  </resource>\n");
  }
}

void appendGroup(Out out, const std::string &id, std::string_view title, std::size_t firstChild, std::size_t children,
                 std::size_t step) {
  fmt::format_to(out,
                 "  <task id=\"{}\">\n    <title>{}</title>\n    <type>group</type>\n"
                 "    <start-date>{}T08:00:00Z</start-date>\n    "
                 "<end-date>{}T17:00:00Z</end-date>\n"
                 "    <duration>288000</duration>\n    <effort>576000</effort>\n    "
                 "<priority>0</priority>\n",
                 id, title, workingDay(firstChild / 40), workingDay(firstChild / 40 + 10));
  for (std::size_t i = 0; i < children; ++i) {
    fmt::format_to(out, "    <child-task idref=\"t{}\"/>\n", firstChild + i * step);
  }
  fmt::format_to(out, "  </task>\n");
}

void appendTask(Out out, std::size_t n, std::size_t previous, std::size_t people, bool isBaseline) {
  const std::size_t day = n / 40 + (isBaseline ? 0 : n % 3);
  fmt::format_to(out,
                 "  <task id=\"t{0}\">\n    <title>Work package {0} of the plan</title>\n "
                 "   <type>{1}</type>\n"
                 "    <start-date>{2}T08:00:00+01:00</start-date>\n    "
                 "<end-date>{3}T17:00:00+01:00</end-date>\n"
                 "    <leveled-start>{2}T08:00:00+01:00</leveled-start>\n    "
                 "<duration>{4}</duration>\n"
                 "    <effort>{4}</effort>\n    <effort-done>{5}</effort-done>\n    "
                 "<static-cost>{6}.5</static-cost>\n"
                 "    <priority>{7}</priority>\n    <splittable>true</splittable>\n    "
                 "<recalculate>duration</recalculate>\n",
                 n, n % 50 == 0 ? "milestone" : "task", workingDay(day), workingDay(day + 3), 28800 * (1 + n % 4),
                 n % 4 == 0 ? 14400 : 0, n % 900, n % 100);
  if (previous != 0) {
    fmt::format_to(out,
                   "    <prerequisite-task idref=\"t{}\" kind=\"FS\">\n      "
                   "<lead-time>{}</lead-time>\n"
                   "    </prerequisite-task>\n",
                   previous, n % 7 * 3600);
  }
  fmt::format_to(out, "    <assignment idref=\"r{}\" units=\"1\"/>\n", n % people + 1);
  if (n % 3 == 0) fmt::format_to(out, "    <assignment idref=\"r{}\" units=\"0.5\"/>\n", (n + 7) % people + 1);
  if (n % 4 == 0) {
    fmt::format_to(out,
                   "    <note>\n      <text>\n        <p>\n          <run>\n   "
                   "         <lit>Agreed on {} with the "
                   "customer &amp; the supplier.</lit>\n          </run>\n     "
                   "   </p>\n      </text>\n    </note>\n",
                   workingDay(day));
  }
  if (n % 5 == 0) {
    fmt::format_to(out,
                   "    <user-data>\n      <key>Cost Center</key>\n      "
                   "<string>CC-{}</string>\n    </user-data>\n",
                   n % 40);
  }
  fmt::format_to(out, "  </task>\n");
}

/// A scenario of phases that contain groups of tasks. Ids are numbered in document order, each group before its tasks.
std::string scenario(std::size_t tasks, bool isBaseline) {
  constexpr std::size_t kGroupSize = kTasksPerGroup + 1;
  constexpr std::size_t kPhaseSize = kGroupsPerPhase * kGroupSize + 1;
  const std::size_t phases = std::max<std::size_t>(1, (tasks + kPhaseSize / 2) / kPhaseSize);
  const std::size_t people = std::max<std::size_t>(8, tasks / kTasksPerPerson);
  std::string text = fmt::format(fmt::runtime(kHead), "scenario", "");
  const Out out(text);
  fmt::format_to(out,
                 "  <start-date>2026-01-05T08:00:00+01:00</start-date>\n  "
                 "<top-resource idref=\"r-1\"/>\n");
  appendResources(out, people);
  fmt::format_to(out, "  <top-task idref=\"t-1\"/>\n");
  appendGroup(out, "t-1", "Plan", 1, phases, kPhaseSize);
  std::size_t previous = 0;
  for (std::size_t phase = 0; phase < phases; ++phase) {
    const std::size_t phaseId = 1 + phase * kPhaseSize;
    appendGroup(out, fmt::format("t{}", phaseId), "Phase", phaseId + 1, kGroupsPerPhase, kGroupSize);
    for (std::size_t group = 0; group < kGroupsPerPhase; ++group) {
      const std::size_t groupId = phaseId + 1 + group * kGroupSize;
      appendGroup(out, fmt::format("t{}", groupId), "Group of work packages", groupId + 1, kTasksPerGroup, 1);
      for (std::size_t i = 1; i <= kTasksPerGroup; ++i) {
        appendTask(out, groupId + i, previous, people, isBaseline);
        previous = groupId + i;
      }
    }
  }
  return text + "</scenario>\n";
}

}  // namespace

void writeGeneratedBundle(const std::string &folder, std::size_t tasks) {
  std::filesystem::create_directories(folder);
  save(folder + "/__TOC.xml", fmt::format(fmt::runtime(kHead), "table-of-contents", "") +
                                  "  <project>\n    <title>Generated plan</title>\n    "
                                  "<currency-format>$1,234.56</currency-format>\n"
                                  "    <scenario id=\"s1\" filename=\"Current.xml\" "
                                  "name=\"Current\"/>\n"
                                  "    <scenario id=\"s2\" filename=\"Approved.xml\" "
                                  "name=\"Approved\"/>\n  </project>\n  <window>\n"
                                  "    <editing-scenario>s1</editing-scenario>\n    "
                                  "<comparison-scenario>s2</comparison-scenario>\n  "
                                  "</window>\n"
                                  "</table-of-contents>\n");
  save(folder + "/Current.xml", scenario(tasks, false));
  save(folder + "/Approved.xml", scenario(tasks, true));
}

void writeSmallestBundle(const std::string &folder) {
  std::filesystem::create_directories(folder);
  save(folder + "/__TOC.xml",
       "<toc><project><scenario id=\"s1\" "
       "filename=\"Current.xml\"/></project><window><editing-scenario>s1"
       "</editing-scenario></window></toc>\n");
  save(folder + "/Current.xml",
       "<scenario><top-resource idref=\"r-1\"/><resource id=\"r-1\"/><top-task "
       "idref=\"t-1\"/><task id=\"t-1\">"
       "<start-date>2026-01-05T08:00:00Z</"
       "start-date><end-date>2026-01-05T17:00:00Z</end-date>"
       "<duration>28800</duration></task></scenario>\n");
}
