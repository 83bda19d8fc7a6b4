#include "Conform/PlanFile.h"

#include <pugixml.hpp>
#include <string_view>
#include <utility>

#include "Conform/Elements.h"
#include "Conform/ExportedFile.h"
#include "Conform/FileFields.h"
#include "Conform/FileTexts.h"
#include "Conform/WallClock.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/Instant.h"

using platform::kSecondsPerDay;
using platform::kSecondsPerHour;

namespace conform {
namespace {

/// The hours of a working day for which the file has none.
constexpr Span kMorning{8 * kSecondsPerHour, 12 * kSecondsPerHour};
constexpr Span kAfternoon{13 * kSecondsPerHour, 17 * kSecondsPerHour};

std::string copyOf(pugi::xml_node parent, const char* name) { return std::string(textOf(parent, name)); }
/// A text that is shown again for each task, resource or calendar that refers to it.
std::string labelOf(pugi::xml_node parent, const char* name) { return platform::shortened(textOf(parent, name)); }
bool isTrue(pugi::xml_node parent, const char* name) {
  const std::string_view text = textOf(parent, name);
  return text == "1" || text == "true";
}
std::int64_t numberOf(pugi::xml_node parent, const char* name, std::int64_t otherwise) {
  return conform::numberOf(textOf(parent, name)).value_or(otherwise);
}
/// A code; a number too large for any code counts as absent.
int codeOf(pugi::xml_node parent, const char* name, int otherwise) {
  constexpr std::int64_t kMost = 1000;
  const std::int64_t number = numberOf(parent, name, otherwise);
  return number < 0 || number > kMost ? otherwise : static_cast<int>(number);
}

WorkingHours readHours(pugi::xml_node day) {
  WorkingHours hours;
  if (!isTrue(day, "DayWorking")) return hours;
  const pugi::xml_node times = day.child("WorkingTimes");
  if (!times) return {kMorning, kAfternoon};
  for (const pugi::xml_node time : times.children("WorkingTime")) {
    const auto from = timeOfDaySeconds(textOf(time, "FromTime"));
    auto to = timeOfDaySeconds(textOf(time, "ToTime"));
    if (to == 0) to = kSecondsPerDay;
    if (from && to && *from < *to) hours.push_back({*from, *to});
  }
  return hours;
}

/// Sets the days of a `TimePeriod`; no days when it cannot be read.
template <typename Days>
bool readPeriod(pugi::xml_node element, Days& days) {
  const pugi::xml_node period = element.child("TimePeriod");
  const auto from = dateTimeSeconds(textOf(period, "FromDate"));
  const auto to = dateTimeSeconds(textOf(period, "ToDate"));
  if (!from || !to) return false;
  days.firstDay = dayOf(*from);
  days.lastDay = dayOf(*to);
  return days.firstDay <= days.lastDay;
}

void addException(pugi::xml_node element, FileCalendar& calendar) {
  FileException exception;
  if (!readPeriod(element, exception)) return;
  exception.name = copyOf(element, "Name");
  exception.hours = readHours(element);
  calendar.exceptions.push_back(std::move(exception));
}

WeekHours readWeek(pugi::xml_node weekDays) {
  WeekHours week;
  for (const pugi::xml_node day : weekDays.children("WeekDay")) {
    const int type = codeOf(day, "DayType", 0);
    if (type >= 1 && type <= 7) week[static_cast<std::size_t>(type - 1)] = readHours(day);
  }
  return week;
}

/// Exceptions are in `Exceptions`; in files from before that element existed, among the week days.
void readExceptions(pugi::xml_node element, FileCalendar& calendar) {
  if (const pugi::xml_node exceptions = element.child("Exceptions")) {
    for (const pugi::xml_node exception : exceptions.children("Exception")) addException(exception, calendar);
    return;
  }
  for (const pugi::xml_node day : element.child("WeekDays").children("WeekDay")) {
    if (textOf(day, "DayType") == "0") addException(day, calendar);
  }
}

FileCalendar readCalendar(pugi::xml_node element) {
  FileCalendar calendar;
  calendar.uid = copyOf(element, "UID");
  calendar.name = labelOf(element, "Name");
  calendar.baseUid = copyOf(element, "BaseCalendarUID");
  calendar.week = readWeek(element.child("WeekDays"));
  readExceptions(element, calendar);
  for (const pugi::xml_node workWeek : element.child("WorkWeeks").children("WorkWeek")) {
    FileWorkWeek read;
    if (!readPeriod(workWeek, read)) continue;
    read.week = readWeek(workWeek.child("WeekDays"));
    calendar.workWeeks.push_back(std::move(read));
  }
  return calendar;
}

std::vector<FileLink> readLinks(pugi::xml_node task) {
  std::vector<FileLink> links;
  for (const pugi::xml_node link : task.children("PredecessorLink")) {
    links.push_back({copyOf(link, "PredecessorUID"), codeOf(link, "Type", 1), numberOf(link, "LinkLag", 0),
                     codeOf(link, "LagFormat", 0)});
  }
  return links;
}

void readDates(pugi::xml_node element, FileTask& task) {
  task.start = dateTimeSeconds(textOf(element, "Start"));
  task.finish = dateTimeSeconds(textOf(element, "Finish"));
  task.duration = durationSeconds(textOf(element, "Duration"));
  task.work = durationSeconds(textOf(element, "Work"));
  for (const pugi::xml_node baseline : element.children("Baseline")) {
    task.baselines.push_back({dateTimeSeconds(textOf(baseline, "Start")), dateTimeSeconds(textOf(baseline, "Finish"))});
  }
}

FileTask readTask(pugi::xml_node element, FileFields& fields) {
  FileTask task;
  task.uid = copyOf(element, "UID");
  task.number = labelOf(element, "ID");
  task.name = copyOf(element, "Name");
  task.level = numberOf(element, "OutlineLevel", 0);
  task.isSummary = isTrue(element, "Summary");
  task.isMilestone = isTrue(element, "Milestone");
  task.percentComplete = numberOf(element, "PercentComplete", 0);
  task.notes = copyOf(element, "Notes");
  task.links = readLinks(element);
  task.fields = fields.fieldsOf(element);
  readDates(element, task);
  return task;
}

FileResource readResource(pugi::xml_node element, FileFields& fields) {
  FileResource resource;
  resource.uid = copyOf(element, "UID");
  resource.number = copyOf(element, "ID");
  resource.name = labelOf(element, "Name");
  resource.type = codeOf(element, "Type", 1);
  resource.group = copyOf(element, "Group");
  resource.unitsAvailable = copyOf(element, "MaxUnits");
  resource.unitName = labelOf(element, "MaterialLabel");
  resource.rate = copyOf(element, "StandardRate");
  resource.rateFormat = codeOf(element, "StandardRateFormat", 2);
  resource.costPerUse = copyOf(element, "CostPerUse");
  resource.calendarUid = copyOf(element, "CalendarUID");
  resource.notes = copyOf(element, "Notes");
  resource.fields = fields.fieldsOf(element);
  return resource;
}

/// Whether this is the nameless first resource of a file, which stands for nobody.
bool isPlaceholder(const FileResource& resource) { return resource.name.empty() && resource.unitsAvailable.empty(); }

void readHeader(pugi::xml_node project, PlanFile& plan) {
  plan.title = copyOf(project, project.child("Title") ? "Title" : "Name");
  plan.currencySymbol = labelOf(project, "CurrencySymbol");
  plan.currencyPosition = codeOf(project, "CurrencySymbolPosition", 0);
  plan.calendarUid = copyOf(project, "CalendarUID");
  plan.weekStartDay = codeOf(project, "WeekStartDay", 0) % 7;
  const std::int64_t minutes = numberOf(project, "MinutesPerDay", 0);
  constexpr std::int64_t kMinutesOfDay = 24 * 60;
  if (minutes > 0 && minutes <= kMinutesOfDay) plan.minutesPerDay = minutes;
}

}  // namespace

PlanFile readPlanFile(std::string text) {
  pugi::xml_document document;
  const pugi::xml_node project = parseExported(document, text, pugi::parse_default | pugi::parse_ws_pcdata_single);

  PlanFile plan;
  readHeader(project, plan);
  for (const pugi::xml_node element : project.child("Calendars").children("Calendar")) {
    plan.calendars.push_back(readCalendar(element));
  }
  FileFields fields(project.child("ExtendedAttributes"));
  for (const pugi::xml_node element : project.child("Tasks").children("Task")) {
    FileTask task = readTask(element, fields);
    if (!isTrue(element, "IsNull")) plan.tasks.push_back(std::move(task));
  }
  for (const pugi::xml_node element : project.child("Resources").children("Resource")) {
    FileResource resource = readResource(element, fields);
    if (!isPlaceholder(resource)) plan.resources.push_back(std::move(resource));
  }
  for (const pugi::xml_node element : project.child("Assignments").children("Assignment")) {
    plan.assignments.push_back({copyOf(element, "TaskUID"), copyOf(element, "ResourceUID"), copyOf(element, "Units")});
  }
  return plan;
}

}  // namespace conform
