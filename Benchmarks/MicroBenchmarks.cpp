// Times parts of an export, to find where a regression is: conversions, queries, the sweep over calendar events, and
// the working-time advance.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPECalendarExceptions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEScheduleCalendar.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/Time/TimeZone.h"

namespace {

constexpr double kDay = platform::kSecondsPerDay;
const platform::Instant kMonday{1'777'881'600};  // 2026-05-04T08:00:00Z

void kvdxToMspdiDateTime(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(MSPIUtilities::kvdxToMspdiDateTime("2026-05-04T08:00:00+02:00"));
}
BENCHMARK(kvdxToMspdiDateTime);

void kvdxToMspdiDateTimeOfUnusualText(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(MSPIUtilities::kvdxToMspdiDateTime("2026-05-04T08:00:00.5Z"));
}
BENCHMARK(kvdxToMspdiDateTimeOfUnusualText);

void mppToMspdiDateTime(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(MSPIUtilities::mppToMspdiDateTime(kMonday));
}
BENCHMARK(mppToMspdiDateTime);

void mppToMspdiDuration(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(MSPIUtilities::mppToMspdiDuration(432000));
}
BENCHMARK(mppToMspdiDuration);

/// Reads the text of a child of an element that has as many children as a task.
void stringValueForXQueryOfChild(benchmark::State &state) {
  std::string text = "<task>";
  for (int i = 0; i < 20; ++i) text += fmt::format("<field-{0}>{0}</field-{0}>", i);
  const auto document = xml::Document::parse(text + "</task>");
  for (auto _ : state) benchmark::DoNotOptimize(stringValueForXQuery(document->root(), "field-10"));
}
BENCHMARK(stringValueForXQueryOfChild);

/// Finds an object by its id; the argument is the number of objects in the scenario.
void singleObjectForXQueryById(benchmark::State &state) {
  std::string text = "<scenario>";
  for (int i = 0; i < state.range(0); ++i) text += fmt::format("<task id='t{}'/>", i);
  const auto document = xml::Document::parse(text + "</scenario>");
  const std::string query = fmt::format("task[@id='t{}']", state.range(0) / 2);
  for (auto _ : state) benchmark::DoNotOptimize(singleObjectForXQuery(document->root(), query));
}
BENCHMARK(singleObjectForXQueryById)->Arg(100)->Arg(100'000);

/// Maps dated days, each with other hours than the one before. The time should be proportional to their number.
void mapEvents(benchmark::State &state) {
  std::vector<MSPEKvdxEventInfo> events;
  for (int i = 0; i < state.range(0); ++i) {
    const platform::Instant from = kMonday + i * 2 * kDay;
    events.emplace_back(from, from + (kDay - 1), 28800 + i % 60, 61200);
  }
  for (auto _ : state) {
    MSPECalendarExceptions set("Overtime", true, events);
    set.mapEvents();
    benchmark::DoNotOptimize(set.exceptionsCount());
  }
}
BENCHMARK(mapEvents)->Arg(100)->Arg(10'000);

void advanceByDuration(benchmark::State &state) {
  const auto &calendar = MSPEScheduleCalendar::standardCalendar();
  const auto hours = static_cast<double>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(calendar.date(kMonday, hours * 3600, true));
}
BENCHMARK(advanceByDuration)->Arg(4)->Arg(400);

}  // namespace
