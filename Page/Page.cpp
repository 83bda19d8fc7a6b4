#include "Page/Page.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "Conform/FileCalendars.h"
#include "Page/Calendars.h"
#include "Page/Details.h"
#include "Page/Display.h"
#include "Page/Html.h"
#include "Page/LinkLines.h"
#include "Page/PageFiles.h"
#include "Page/Resources.h"
#include "Page/RowChart.h"
#include "Page/Rows.h"
#include "Page/TaskTable.h"
#include "Page/Timeline.h"

namespace page {
namespace {

using Sink = std::function<void(std::string_view)>;

/// Calendars are shown for at most five years; more would make the page large without helping anybody.
constexpr std::int64_t kMostCalendarDays = 1830;
/// Days off are only shaded in the chart when a day is at least this wide.
constexpr double kLeastShadedDay = 0.8;

/// The data of the page, computed before anything is written.
class Page {
 public:
  Page(const conform::PlanFile& plan, conform::CivilSeconds now)
      : plan_(plan),
        now_(now),
        timeline_(plan, now),
        rows_(plan, timeline_),
        links_(rows_),
        calendars_(plan.calendars, timeline_.firstDay(),
                   static_cast<std::size_t>(std::min(timeline_.numberOfDays(), kMostCalendarDays))) {}

  /// Writes the skeleton, replacing the names of the plan's parts: {{title}} by the plan's title.
  void write(const Sink& sink) const {
    std::string_view rest = kPageSkeleton;
    for (std::size_t open = rest.find("{{"); open != std::string_view::npos; open = rest.find("{{")) {
      const std::size_t close = rest.find("}}", open);
      sink(rest.substr(0, open));
      writePart(rest.substr(open + 2, close - open - 2), sink);
      rest.remove_prefix(close + 2);
    }
    sink(rest);
  }

 private:
  struct Part {
    std::string_view name;
    void (Page::*write)(const Sink& sink) const;
  };

  void writePart(std::string_view name, const Sink& sink) const {
    static constexpr std::array<Part, 9> kParts = {{{"title", &Page::writeTitle},
                                                    {"facts", &Page::writeFacts},
                                                    {"remarks", &Page::writeRemarks},
                                                    {"head", &Page::writeHead},
                                                    {"rows", &Page::writeRows},
                                                    {"background", &Page::writeBackground},
                                                    {"resources", &Page::writeResourceRows},
                                                    {"calendars", &Page::writeCalendars},
                                                    {"details", &Page::writeDetails}}};
    for (const Part& part : kParts) {
      if (part.name == name) (this->*part.write)(sink);
    }
  }

  void writeTitle(const Sink& sink) const { sink(plan_.title.empty() ? "Plan" : escaped(plan_.title)); }

  void writeFacts(const Sink& sink) const {
    const auto fact = [&sink](std::string_view name, const std::string& value) {
      if (!value.empty()) sink(fmt::format("<div><dt>{}</dt><dd>{}</dd></div>", name, value));
    };
    fact("Tasks", fmt::format("{}", plan_.tasks.size()));
    fact("Resources", fmt::format("{}", plan_.resources.size()));
    fact("Start", dateTimeText(earliest()));
    fact("Finish", dateTimeText(latest()));
    fact("Today", dateText(now_));
  }

  [[nodiscard]] std::optional<conform::CivilSeconds> earliest() const {
    std::optional<conform::CivilSeconds> date;
    for (const conform::FileTask& task : plan_.tasks) {
      if (task.start && (!date || *task.start < *date)) date = task.start;
    }
    return date;
  }
  [[nodiscard]] std::optional<conform::CivilSeconds> latest() const {
    std::optional<conform::CivilSeconds> date;
    for (const conform::FileTask& task : plan_.tasks) {
      if (task.finish && (!date || *task.finish > *date)) date = task.finish;
    }
    return date;
  }

  /// Writes remarks about what the chart shows only in part.
  void writeRemarks(const Sink& sink) const {
    const auto remark = [&sink](std::size_t count, std::string_view text) {
      if (count > 0) sink(fmt::format(R"(<p class="remark">{} {}</p>)", count, text));
    };
    remark(timeline_.datesOutside(), "dates are before 1900 or after 2199; the chart has them at its edges.");
    remark(links_.numberOfCut(), "long links are drawn at their ends alone; the table has them all.");
    if (rows_.numberOfHidden() > 0) {
      sink(fmt::format(R"(<p class="remark folded">{} rows are folded at first.</p>)", rows_.numberOfHidden()));
    }
  }

  void writeHead(const Sink& sink) const {
    std::string head;
    drawHead(head, timeline_);
    sink(head);
  }

  void writeRows(const Sink& sink) const { TaskTable(plan_, rows_, links_, timeline_).write(sink); }

  void writeBackground(const Sink& sink) const {
    std::string background;
    drawBackground(background, timeline_, offDays(), now_);
    sink(background);
  }

  /// The days off of the project's calendar; empty, so that nothing is shaded, when there is none.
  [[nodiscard]] std::vector<bool> offDays() const {
    std::vector<bool> off;
    const auto calendar = calendars_.find(plan_.calendarUid);
    if (!calendar || timeline_.dayWidth() < kLeastShadedDay) return off;
    for (const auto& day : calendars_.days(*calendar)) off.push_back(day.hours->empty());
    return off;
  }

  void writeResourceRows(const Sink& sink) const { writeResources(plan_, calendars_, sink); }

  void writeCalendars(const Sink& sink) const { Calendars(plan_, calendars_, timeline_.firstDay()).write(sink); }

  void writeDetails(const Sink& sink) const { page::writeDetails(plan_, rows_, sink); }

  const conform::PlanFile& plan_;
  conform::CivilSeconds now_;
  Timeline timeline_;
  Rows rows_;
  LinkLines links_;
  conform::FileCalendars calendars_;
};

}  // namespace

void writePage(const conform::PlanFile& plan, conform::CivilSeconds now, const Sink& sink) {
  Page(plan, now).write(sink);
}

}  // namespace page
