#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Tests/Support.h"

/// What became of a scenario that was mapped in memory.
struct Mapped {
  std::string failure;                    ///< reason of the invariant that ended the mapping; "" when it went through
  std::shared_ptr<xml::Document> output;  ///< read back from what was written; none when there was a failure

  /// The failure when there is one, otherwise what stands at a path below `Project`. "A/B": the texts of all B. "A/B: C
  /// D/E": of each B a record with the texts of its C and of all its E, such as "1 Standard, 2 ''". "A/B/.": the last
  /// B's markup. "A/B/*": the names of the last B's children. "." stands for `Project` itself. A text that is missing
  /// is "none", an empty one "''". "C?yes:no" gives "yes" where C is 1 and "no" elsewhere, without gaps between. Of two
  /// tasks without a Name, "Tasks/Task: Name" gives "none, none", but "Tasks/Task/Name" only "none".
  [[nodiscard]] std::string value(const std::string& path) const;
};

/// Maps a scenario as in a new process, in the system time zone of the moment.
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
void expectValues(const std::vector<ValueRow>& rows);

/// Markup of an element.
std::string tag(const std::string& name, const std::string& inside);
/// A scenario with the objects, a top group r-1 that refers to r1, r2 and r3, and a top group t-1 that refers to t1, t2
/// and t3; references to what is not there are skipped.
std::string scenario(const std::string& objects, const std::string& attributes = "", const std::string& inTop = "");
/// A task of 24 hours, from a Monday 08:00 to the Wednesday 17:00 when no other dates are given.
std::string task(const std::string& id, const std::string& inside = "", const char* start = "2026-05-04T08:00:00Z",
                 const char* end = "2026-05-06T17:00:00Z");
std::string resource(const std::string& id, const std::string& type, const std::string& inside = "");
std::string group(const std::string& id, const std::string& inside, const std::vector<std::string>& members);
/// References to the "task" or "resource" members of a group, or to the pieces of a split task.
std::string children(const std::string& kind, const std::vector<std::string>& ids);
