#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPCDateTimeConverter.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPECalendarMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEProjectMapper.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Time/Clock.h"
#include "Platform/Time/TimeZone.h"

namespace {

/// Ten times as many as the format has numbers for. There must be a limit, since each task and resource is looked up in
/// every baseline.
constexpr std::size_t kMaximumBaselines = 100;

struct Counters {
  std::int64_t task = 0;
  std::int64_t resource = 0;
  std::int64_t assignment = 1;
  std::int64_t calendar = 1;
};

Counters& counters() {
  static Counters ofTheProcess;
  return ofTheProcess;
}

/// "2010-05-17 10:15:30 +0200"
std::string dateDescription(platform::Instant instant) {
  const platform::TimeZone& zone = platform::TimeZone::system();
  const platform::CivilTime civil = zone.civilFromInstant(instant);
  const std::int64_t minutes = zone.secondsFromGMT(instant) / 60;
  return fmt::format("{:04d}-{:02d}-{:02d} {:02d}:{:02d}:{:02d} {}{:02d}{:02d}", civil.year, civil.month, civil.day,
                     civil.hour, civil.minute, civil.second, minutes < 0 ? '-' : '+', std::abs(minutes) / 60,
                     std::abs(minutes) % 60);
}

}  // namespace

MSPEMapper::MSPEMapper(std::shared_ptr<xml::Document> kvdxXmlDoc, std::shared_ptr<xml::Document> kvdxTOCXmlDoc,
                       const std::vector<std::shared_ptr<xml::Document>>& baselineXMLDocArray,
                       std::shared_ptr<xml::Document> mspdiTemplateXmlDoc, const MSPEInfo& info)
    : kvdxXmlDoc_(std::move(kvdxXmlDoc)),
      kvdxTOCXmlDoc_(std::move(kvdxTOCXmlDoc)),
      mspdiTemplateXmlDoc_(std::move(mspdiTemplateXmlDoc)),
      info_(info) {
  requireFewBaselines(baselineXMLDocArray.size());
  initialize();
  kvdxBaselines_.reserve(baselineXMLDocArray.size());
  for (const auto& document : baselineXMLDocArray) kvdxBaselines_.emplace_back(document);
  calendarMapper_ = std::make_unique<MSPECalendarMapper>(*this);
}

MSPEMapper::~MSPEMapper() = default;

void MSPEMapper::requireFewBaselines(std::size_t count) {
  platform::require(count <= kMaximumBaselines, "The plan is compared with {} scenarios. At most {} can be exported.",
                    count, kMaximumBaselines);
}

void MSPEMapper::initialize() {
  static const bool done = [] {
    MSPCDateTimeConverter::initialize();
    return true;
  }();
  static_cast<void>(done);
}

void MSPEMapper::map() {
  const xml::Node scenario = kvdxXmlDoc_ ? kvdxXmlDoc_->root() : xml::Node();
  if (scenario.name() != "scenario") return;

  projectMapper_ = std::make_unique<MSPEProjectMapper>(*this);
  auto project = projectMapper_->newProjectFromKVDXScenario(scenario);
  projectMapper_.reset();

  xml::Section& root = mspdiXmlDoc_.setRoot(std::move(project));
  root.appendComment(
      fmt::format("  {}: Korvella {} MSPDI Exporter.  ", dateDescription(platform::Clock::now()), "2.x"));
  finished_ = true;
}

std::int64_t MSPEMapper::nextTaskID() { return counters().task++; }
std::int64_t MSPEMapper::nextResourceID() { return counters().resource++; }
std::int64_t MSPEMapper::nextAssignmentUID() { return counters().assignment++; }
std::int64_t MSPEMapper::nextCalendarUID() { return counters().calendar++; }
void MSPEMapper::resetCountersForTesting() { counters() = Counters(); }
