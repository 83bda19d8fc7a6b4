#pragma once

#include <functional>

#include "Tests/Support.h"

/// The result of mapping a scenario in memory.
struct Mapped {
  std::string failure;                    ///< why the mapping failed; "" when it succeeded
  std::shared_ptr<xml::Document> output;  ///< the written document, parsed; none after a failure

  /// The failure if there is one, otherwise the value of a path below `Project`; "." stands for `Project` itself, and
  /// "Task" for "Tasks/Task", as do the other kinds of objects.
  ///
  ///   "A/B"         the texts of all B
  ///   "A/B: C D/E"  for each B, a record with the texts of its C and of all its E, such as "1 Standard, 2 ''"
  ///   "A/B/."       the markup of the last B
  ///   "A/B/*"       the names of the last B's children
  ///   "C?yes:no"    in place of C: "yes" for each C that is 1 and "no" for each other, without separators
  ///
  /// A missing text is "none", an empty one "''". For two tasks without a Name, "Task: Name" gives "none, none",
  /// but "Task/Name" only "none".
  [[nodiscard]] std::string value(const std::string& path) const;
};

/// Maps a scenario as in a new process, in the present system time zone.
/// @param others the table of contents, then the baselines.
Mapped mapped(const std::string& scenarioXml, const std::vector<std::string>& others = {"<toc/>"});

struct ValueRow {
  int line;
  std::string about;  ///< what must hold
  std::string scenario;
  std::string path;
  std::string expected;  ///< Mapped::value() of the path
  const char* zone = "UTC";
  std::vector<std::string> others = {"<toc/>"};
};
std::string mappedValue(const ValueRow& row);
/// Expects of each row the value that "get" returns for it, in the row's zone.
void expectValues(const std::vector<ValueRow>& rows,
                  const std::function<std::string(const ValueRow&)>& get = mappedValue);

/// Markup of an element.
std::string tag(const std::string& name, const std::string& inside);
/// A scenario with the objects, a top group r-1 that refers to r1, r2 and r3, and a top group t-1 that refers to t1, t2
/// and t3. The exporter skips those of them that are missing.
std::string scenario(const std::string& objects, const std::string& attributes = "", const std::string& inTop = "");
/// A task with a duration of 24 hours. Without other dates, it lasts from Monday 08:00 to Wednesday 17:00 in UTC.
std::string task(const std::string& id, const std::string& inside = "", const char* start = "2026-05-04T08:00:00Z",
                 const char* end = "2026-05-06T17:00:00Z");
std::string resource(const std::string& id, const std::string& type, const std::string& inside = "");
std::string group(const std::string& id, const std::string& inside, const std::vector<std::string>& members);
/// References to the "task" or "resource" members of a group, or to the pieces of a split task.
std::string children(const std::string& kind, const std::vector<std::string>& ids);
