#include "Conform/Doubts.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "Conform/Completion.h"
#include "Conform/Plan.h"
#include "Conform/Readings.h"
#include "Conform/Report.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEResourceTypes.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/Instant.h"

namespace conform {
namespace {

using platform::orEmpty;
using platform::shortened;

enum class Kind : std::uint8_t {
  kText,
  kDate,     ///< with "Z" or an offset
  kCopied,   ///< a number that is written as it is
  kNumber,   ///< read as far as it goes
  kWhole,    ///< the same for a whole number
  kSeconds,  ///< a number, written as a duration
  kWholeSeconds,
  kTruth
};

/// A child element of which only one counts. A field that the export begins to read belongs into the lists below:
/// otherwise nobody is warned when it is there twice.
struct Field {
  xml::Query query;
  Kind kind;
  std::string_view whenTwice = "the last one counts";

  [[nodiscard]] std::string_view name() const { return query.name(); }
};

constexpr std::string_view kNoneCounts = "none counts";

constexpr Field kWindowFields[] = {{"editing-scenario", Kind::kText}, {"comparison-scenario", Kind::kText}};

constexpr Field kScenarioFields[] = {
    {"start-date", Kind::kDate}, {"end-date", Kind::kDate}, {"top-resource", Kind::kText}, {"top-task", Kind::kText}};

constexpr Field kBaselineFields[] = {{"start-date", Kind::kDate},
                                     {"end-date", Kind::kDate},
                                     {"duration", Kind::kWholeSeconds},
                                     {"effort", Kind::kWholeSeconds},
                                     {"static-cost", Kind::kNumber, kNoneCounts}};

constexpr Field kTaskFields[] = {
    {"title", Kind::kText},
    {"type", Kind::kText},
    {"start-date", Kind::kDate},
    {"end-date", Kind::kDate},
    {"duration", Kind::kSeconds},
    {"effort", Kind::kWholeSeconds},
    {"effort-done", Kind::kWhole},
    {"priority", Kind::kWhole},
    {"completion-percentage", Kind::kNumber},
    {"recalculate", Kind::kText},
    {"schedule-type", Kind::kText},
    {"static-cost", Kind::kNumber, kNoneCounts},
    {"splittable", Kind::kTruth, kNoneCounts},
    {"leveled-start", Kind::kDate},
    {"locked-start-date", Kind::kDate},
    {"locked-end-date", Kind::kDate},
    {"start-constraint-date", Kind::kDate},
    {"end-constraint-date", Kind::kDate},
    {"note", Kind::kText},
    {"user-data", Kind::kText},
};

constexpr Field kResourceFields[] = {
    {"name", Kind::kText},
    {"type", Kind::kText},
    {"units-available", Kind::kNumber, kNoneCounts},
    {"efficiency", Kind::kNumber, kNoneCounts},
    {"cost-per-use", Kind::kNumber},
    {"cost-per-hour", Kind::kCopied},
    {"email-address", Kind::kText},
    {"schedule", Kind::kText},
    {"note", Kind::kText},
    {"user-data", Kind::kText},
};

constexpr Field kLinkFields[] = {{"lead-time", Kind::kNumber}};

constexpr xml::Query kLostOfPieces[] = {"prerequisite-task", "assignment", "static-cost", "note", "user-data"};
constexpr xml::Query kLostOfGroups[] = {"cost-per-use", "cost-per-hour", "email-address", "note", "user-data"};

/// The words that a text may be, and the meaning of any other.
struct Words {
  std::string_view name;
  std::span<const std::string_view> known;
  std::string_view otherwise;
};

constexpr std::string_view kTaskTypes[] = {"task", "milestone", "group", "hammock"};
constexpr std::string_view kScheduleTypes[] = {"asap", "alap"};
constexpr std::string_view kLinkKinds[] = {"FS", "SF", "SS", "FF"};

constexpr Words kTaskType{"type", kTaskTypes, "it is a task"};
constexpr Words kScheduleType{"schedule-type", kScheduleTypes, "it goes the way of the project"};
constexpr Words kResourceType{"type", kResourceTypes, "it is left out"};
constexpr Words kLinkKind{"kind", kLinkKinds, "it goes from finish to start"};

class Doubts {
  using Identities = std::unordered_set<const void*>;

 public:
  Doubts(const Plan& plan, const Baselines& baselines, Report& report)
      : plan_(plan), baselines_(baselines), report_(report) {}

  void tell() {
    checkFrontWindow();
    lookAt("the plan", plan_.scenario(), "");
    checkFields(plan_.scenario(), kScenarioFields);
    for (const xml::Node task : plan_.tasks()) checkTask(task);
    for (const auto& baseline : baselines_) checkBaseline(baseline->root());
    for (const PlanResource& resource : plan_.resources()) checkResource(resource.node);
    checkLeftOut("task", "title", reachedTasks_);
    checkLeftOut("resource", "name", resourcesReached());
  }

 private:
  /// The object that the next warnings are about.
  void lookAt(std::string_view kind, xml::Node object, std::string_view nameChild) {
    kind_ = kind;
    object_ = object;
    nameChild_ = nameChild;
    about_.clear();
  }

  /// "task t12 'Motor driver board': ..."
  template <typename... Args>
  void warn(fmt::format_string<Args...> sentence, Args&&... args) {
    if (about_.empty()) about_ = about();
    report_.warn(about_ + ": " + fmt::format(sentence, std::forward<Args>(args)...));
  }

  [[nodiscard]] std::string about() const {
    if (nameChild_.empty()) return std::string(kind_);
    return fmt::format("{} {} '{}'", kind_, shortened(object_.attribute("id").value()),
                       shortened(singleObjectForXQuery(object_, nameChild_).stringView()));
  }

  void tell(const std::optional<std::string>& doubt) {
    if (doubt) warn("{}", *doubt);
  }

  void checkFrontWindow() {
    const xml::Node contents = plan_.tableOfContents();
    const auto windows = objectsForXQuery(contents, "window");
    if (windows.empty()) return;
    lookAt("the front window", windows.front(), "");
    checkFields(windows.front(), kWindowFields);
    const xml::Node project = singleObjectForXQuery(contents, "project");
    XQueryError error;
    const auto scenario = [&](const xml::Query& query) {
      error = {};
      const std::string id = stringValueForXQuery(windows.front(), query).value_or("");
      return id.empty() || singleObjectForXQuery(project, xml::Query::child("scenario", "id", id), &error);
    };
    if (scenario("editing-scenario") && error)
      warn("several scenarios have the id of the edited one, the last one counts");
    if (!scenario("comparison-scenario")) warn("comparison-scenario leads to nothing, there is no baseline");
  }

  void checkTask(xml::Node task) {
    lookAt("task", task, "title");
    checkFields(task, kTaskFields);
    checkWord(stringValueForXQuery(task, "type"), kTaskType);
    checkWord(stringValueForXQuery(task, "schedule-type"), kScheduleType);
    checkProgress(task);
    checkNote(task);
    for (const xml::Node link : objectsForXQuery(task, "prerequisite-task")) {
      checkWord(link.attributeText("kind"), kLinkKind);
      checkFields(link, kLinkFields);
      checkPercentage(singleObjectForXQuery(link, "lead-time").attribute("is-percentage").value());
    }
    checkChildren(task);
    for (const xml::Node assignment : objectsForXQuery(task, "assignment")) {
      if (const auto units = assignment.attributeText("units"))
        checkUnits(*units, plan_.referred("resource", assignment));
    }
  }

  /// The percentage counts only when the efforts say nothing.
  void checkProgress(xml::Node task) {
    const std::string_view done = singleObjectForXQuery(task, "effort-done").stringView();
    if (platform::integerValue(done) < 0) warn("effort-done '{}' is negative, it counts as 0", done);
    const std::string_view share = singleObjectForXQuery(task, "completion-percentage").stringView();
    if (platform::doubleValue(share) < 0 && Completion::ofTask(task).done == 0)
      warn("completion-percentage '{}' is negative, it counts as 0", share);
  }

  /// The children of a group are exported, and the pieces of a split task, as part of this.
  void checkChildren(xml::Node task) {
    reachedTasks_.insert(task.identity());
    const auto children = objectsForXQuery(task, "child-task");
    for (const xml::Node child : children) checkReference("child-task", "task", child);
    if (children.empty() || !singleObjectForXQuery(task, "split")) return;
    for (const xml::Node child : children) {
      const xml::Node piece = plan_.referred("task", child);
      reachedTasks_.insert(piece.identity());
      lookAt("piece", piece, "title");
      checkLost(piece, kLostOfPieces, "of a piece of a split task");
    }
  }

  /// Warns of children that the file has no place for.
  void checkLost(xml::Node object, std::span<const xml::Query> lost, std::string_view reason) {
    for (const xml::Query& query : lost) {
      if (!query.all(object).empty()) warn("its {} is left out, since the file has none {}", query.name(), reason);
    }
  }

  /// Only the texts of runs are read.
  void checkNote(xml::Node object) {
    const xml::Node note = singleObjectForXQuery(object, "note");
    if (!note || !objectsForXQuery(note, "text/p/run/lit").empty()) return;
    if (!platform::trimmed(note.stringValue()).empty())
      warn("its note is left out, since it has no text in p, run, lit");
  }

  /// @param compared the root of a compared plan.
  void checkBaseline(xml::Node compared) {
    for (const xml::Node task : plan_.tasks()) {
      const std::string_view id = task.attribute("id").value();
      lookAt("the baseline of task", task, "title");
      checkFields(singleObjectForXQuery(compared, xml::Query::child("task", "id", id)), kBaselineFields);
    }
  }

  void checkResource(xml::Node resource) {
    lookAt("resource", resource, "name");
    checkFields(resource, kResourceFields);
    checkWord(stringValueForXQuery(resource, "type"), kResourceType);
    for (const xml::Node child : objectsForXQuery(resource, "child-resource")) {
      checkReference("child-resource", "resource", child);
    }
    checkEfficiency(resource);
    checkNote(resource);
    if (singleObjectForXQuery(resource, "type").stringView() == kGroupResource) {
      checkLost(resource, kLostOfGroups, "of a group");
    }
    checkSchedule(singleObjectForXQuery(resource, "schedule"));
  }

  void checkSchedule(xml::Node schedule) {
    std::set<std::string_view> weekdays;
    for (const xml::Node day : objectsForXQuery(schedule, "schedule-day")) {
      const std::string_view name = day.attribute("day-of-week").value();
      if (!weekdays.insert(name).second) warn("there is more than one schedule-day of {}, the last one counts", name);
      checkTimeSpans(day);
    }
    for (const xml::Node day : objectsForXQuery(schedule, "flattened-schedule-day")) {
      if (const xml::Attribute date = day.attribute("date")) tell(doubtOfDay("date", date.value()));
      checkTimeSpans(day);
    }
    for (const xml::Node calendar : objectsForXQuery(schedule, "calendar")) {
      const std::string_view overtime = calendar.attribute("overtime").value();
      if (!overtime.empty()) tell(doubtOfTruth("overtime", overtime, false));
      for (const xml::Node event : objectsForXQuery(calendar, "event")) {
        for (const std::string_view name : {"start", "end"}) {
          tell(doubtOfLocalDate(name, event.attribute(name).value()));
        };
      }
    }
  }

  void checkTimeSpans(xml::Node day) {
    for (const xml::Node span : objectsForXQuery(day, "time-span")) {
      for (const std::string_view name : {"start-time", "end-time"}) {
        tell(doubtOfNumber(name, span.attribute(name).value()));
      };
    }
  }

  void checkFields(xml::Node object, std::span<const Field> fields) {
    for (const Field& field : fields) {
      XQueryError error;
      const xml::Node found = singleObjectForXQuery(object, field.query, &error);
      if (!found) continue;
      if (error) warn("there is more than one {}, {}", field.name(), field.whenTwice);
      // Notes and user data are not checked, and putting their text together takes time.
      if (field.kind != Kind::kText) checkText(field, found.stringView());
    }
  }

  void checkText(const Field& field, std::string_view text) {
    const std::string_view name = field.name();
    switch (field.kind) {
      case Kind::kText:
        return;
      case Kind::kDate:
        return tell(doubtOfDate(name, text));
      case Kind::kTruth:
        return tell(doubtOfTruth(name, text, true));
      case Kind::kCopied:
        return tell(doubtOfCopiedNumber(name, text));
      case Kind::kNumber:
        return tell(doubtOfNumber(name, text));
      case Kind::kWhole:
        return tell(doubtOfWholeNumber(name, text));
      case Kind::kSeconds:
        tell(doubtOfNumber(name, text));
        return tell(doubtOfSize(name, text, platform::doubleValue(text)));
      case Kind::kWholeSeconds:
        tell(doubtOfWholeNumber(name, text));
        return tell(doubtOfSize(name, text, static_cast<double>(platform::integerValue(text))));
    }
  }

  void checkPercentage(std::string_view text) {
    if (text.empty() || text == "true" || text == "false") return;
    warn("is-percentage '{}' is neither \"true\" nor \"false\", the lag is taken for seconds", text);
  }

  /// A material is written as a duration, too: an hour for each unit.
  void checkUnits(std::string_view units, xml::Node resource) {
    tell(doubtOfCopiedNumber("units", units));
    const auto [isMaterial, isNew] = isMaterial_.try_emplace(resource.identity());
    if (isNew) isMaterial->second = singleObjectForXQuery(resource, "type").stringView() == kMaterialResource;
    if (isMaterial->second) tell(doubtOfSize("units", units, platform::doubleValue(units) * platform::kSecondsPerHour));
  }

  void checkWord(const std::optional<std::string>& text, const Words& words) {
    if (!text || std::find(words.known.begin(), words.known.end(), *text) != words.known.end()) return;
    warn("{} '{}' is unknown, {}", words.name, *text, words.otherwise);
  }

  void checkReference(std::string_view name, std::string_view kind, xml::Node reference) {
    const auto id = reference.attributeText("idref");
    if (id && singleObjectForXQuery(plan_.scenario(), xml::Query::child(kind, "id", *id))) return;
    warn("{} to '{}' leads to nothing, and is left out", name, orEmpty(id));
  }

  void checkEfficiency(xml::Node resource) {
    XQueryError error;
    const double efficiency = floatValueForXQuery(resource, "efficiency", &error);
    if (!error && efficiency != 1.0) warn("the format has no efficiency, {} % is left out", efficiency * 100);
  }

  [[nodiscard]] Identities resourcesReached() const {
    Identities reached;
    for (const PlanResource& resource : plan_.resources()) reached.insert(resource.node.identity());
    return reached;
  }

  void checkLeftOut(std::string_view kind, std::string_view name, const Identities& reached) {
    for (const xml::Node object : objectsForXQuery(plan_.scenario(), xml::Query(kind))) {
      if (reached.contains(object.identity())) continue;
      const auto id = object.attributeText("id");
      const bool isReplaced =
          id && singleObjectForXQuery(plan_.scenario(), xml::Query::child(kind, "id", *id)) != object;
      lookAt(kind, object, name);
      if (isReplaced) {
        warn("another {} has the same id, this one is left out", kind);
      } else {
        warn("no group holds it, it is left out");
      }
    }
  }

  const Plan& plan_;
  const Baselines& baselines_;
  Report& report_;
  Identities reachedTasks_;  ///< tasks that are exported, by themselves or as a piece
  std::string_view kind_;
  xml::Node object_;
  std::string_view nameChild_;
  std::unordered_map<const void*, bool> isMaterial_;  ///< by resource; a long type may be asked for many assignments
  std::string about_;  ///< made for the first warning; an object with a long name may have many
};

}  // namespace

void warnOfDoubts(const Plan& plan, const Baselines& baselines, Report& report) {
  Doubts(plan, baselines, report).tell();
}

}  // namespace conform
