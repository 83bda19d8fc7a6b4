#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Conform/Hours.h"

namespace conform {

/// Seconds from 1970-01-01T00:00:00 on the clock of the plan, which names no zone.
using CivilSeconds = std::int64_t;

/// The working times of a day in the file's order; none on a day off.
using WorkingHours = std::vector<Span>;
/// A calendar's hours of Sunday to Saturday; none for a day that it does not define.
using WeekHours = std::array<std::optional<WorkingHours>, 7>;

/// An exception: the hours of all days from the first to the last. Days are counted from 1970-01-01.
struct FileException {
  std::int64_t firstDay = 0;
  std::int64_t lastDay = 0;
  std::string name;
  WorkingHours hours;
};
/// A work week: the hours of each weekday, on the days from the first to the last.
struct FileWorkWeek {
  std::int64_t firstDay = 0;
  std::int64_t lastDay = 0;
  WeekHours week;
};
struct FileCalendar {
  std::string uid;
  std::string name;
  std::string baseUid;  ///< empty or "-1" for a calendar without a base
  WeekHours week;
  std::vector<FileException> exceptions;
  std::vector<FileWorkWeek> workWeeks;
};

struct FileLink {
  std::string predecessorUid;
  int type = 1;          ///< 0 finish to finish, 1 finish to start, 2 start to finish, 3 start to start
  std::int64_t lag = 0;  ///< tenths of a minute; percent when the format says so
  int lagFormat = 0;     ///< 0 when the file has none
};
struct FileBaseline {
  std::optional<CivilSeconds> start;
  std::optional<CivilSeconds> finish;
};
/// A custom field of a task or resource.
struct FileField {
  std::string name;  ///< the definition's alias, else its name, else the field's number
  std::string value;
};

struct FileTask {
  std::string uid;
  std::string number;  ///< the `ID`
  std::string name;
  std::int64_t level = 0;  ///< the `OutlineLevel`
  bool isSummary = false;
  bool isMilestone = false;
  std::optional<CivilSeconds> start;
  std::optional<CivilSeconds> finish;
  std::optional<std::int64_t> duration;  ///< seconds of working time
  std::optional<std::int64_t> work;      ///< seconds of working time
  std::int64_t percentComplete = 0;      ///< as in the file, even if out of range
  std::vector<FileLink> links;
  std::vector<FileBaseline> baselines;
  std::string notes;
  std::vector<FileField> fields;
};

struct FileResource {
  std::string uid;
  std::string number;  ///< the `ID`
  std::string name;
  int type = 1;  ///< 0 material, 1 work, 2 cost
  std::string group;
  std::string unitsAvailable;  ///< a factor, as it is written
  std::string unitName;        ///< of a material: "m3"
  std::string rate;            ///< an amount, as it is written
  int rateFormat = 2;          ///< 1 minute, 2 hour, 3 day, 4 week, 5 month, 7 year, 8 unit of a material
  std::string costPerUse;      ///< in hundredths, as it is written
  std::string calendarUid;
  std::string notes;
  std::vector<FileField> fields;
};

struct FileAssignment {
  std::string taskUid;
  std::string resourceUid;
  std::string units;  ///< a factor, as it is written
};

/// The contents of a Microsoft Project XML file. Texts are as in the file; absent ones are empty. Texts that the page
/// repeats wherever it refers to an object (names of resources, calendars and fields, numbers of tasks, units, the
/// currency symbol) are shortened, so that the page's size stays proportional to the file's.
struct PlanFile {
  std::string title;  ///< the project's title, else its name
  std::string currencySymbol;
  int currencyPosition = 0;  ///< 0 before, 1 behind, 2 before with a blank between, 3 behind with a blank between
  std::string calendarUid;   ///< the project's calendar
  int weekStartDay = 0;      ///< 0 Sunday to 6 Saturday
  std::int64_t minutesPerDay = 480;
  std::vector<FileCalendar> calendars;
  std::vector<FileTask> tasks;  ///< without those marked as empty rows
  std::vector<FileResource> resources;
  std::vector<FileAssignment> assignments;
};

/// Reads an exported file, whether exact or corrected: with both orders of children, and with one definition of a
/// custom field in all or one for each object. Dates and numbers that cannot be read count as absent.
/// @param text as wellFormedText() gives it.
/// @throws platform::Exception "ConformException" with a reason for people when it is not Microsoft Project XML.
[[nodiscard]] PlanFile readPlanFile(std::string text);

}  // namespace conform
