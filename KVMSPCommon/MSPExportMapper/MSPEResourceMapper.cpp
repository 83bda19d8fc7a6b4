#include "KVMSPCommon/MSPExportMapper/MSPEResourceMapper.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEBaselineMapperBase.h"
#include "KVMSPCommon/MSPExportMapper/MSPECalendarMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPENoteMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEProjectMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEResourceTypes.h"
#include "KVMSPCommon/MSPExportMapper/MSPEUserDataMapper.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/Log.h"
#include "Platform/Text/Texts.h"

using platform::log;
using platform::orEmpty;
using platform::require;

namespace {

constexpr std::string_view kWorkType = "1";
constexpr std::string_view kPerHour = "2";

}  // namespace

xml::Element MSPEResourceMapper::newDummyResourceWithMapper(const MSPEMapper& mapper) {
  xml::Element resource = elementWithName("Resource", mapper);
  const std::string number = std::to_string(MSPEMapper::nextResourceID());
  addChildElementWithName(resource, "UID", number);
  addChildElementWithName(resource, "ID", number);
  addChildElementWithName(resource, "Type", kWorkType);
  addChildElementWithName(resource, "IsNull", "0");
  return resource;
}

std::optional<xml::Element> MSPEResourceMapper::newResourceFromKVDXResource(xml::Node kvdxResource,
                                                                            xml::Node parentResource) {
  const auto id = kvdxResource.attributeText("id");
  require(id.has_value(), "Resource <{}> has no 'id' attribute.", fmt::ptr(kvdxResource.identity()));
  const auto name = stringValueForXQuery(kvdxResource, "name");
  if (parentResource) {
    log("  Mapping Resource id='{}' name='{}'", *id, orEmpty(name));
  } else {
    log("  Mapping Top Resource id='{}'", *id);
  }
  resourceCalendarUID_ = mapper().calendarMapper().mapCalendarForResource(kvdxResource, parentResource);
  resourceCalendar_ = mapper().calendarMapper().calendar();

  const auto type = mspdiResourceType(stringValueForXQuery(kvdxResource, "type").value_or(""));
  if (!type) {
    appendBaselines({}, kvdxResource);
    return std::nullopt;
  }
  xml::Element element = elementWithName("Resource", mapper());
  const xml::OutputNode resource = element;
  appendIdentity(resource, *id);  // UID, ID
  if (name) addChildElementWithName(resource, "Name", stringByReplacingOccurrencesOfNewline(*name));
  addChildElementWithName(resource, "Type", *type);
  appendUnits(resource, kvdxResource, name);  // MaxUnits
  addChildElementWithName(resource, "IsNull", "0");
  MSPENoteMapper(mapper()).appendNotes(resource, kvdxResource);                          // Notes
  MSPEUserDataMapper(mapper(), false).appendExtendedAttributes(resource, kvdxResource);  // ExtendedAttribute
  appendCosts(resource, kvdxResource);  // CostPerUse, StandardRate, StandardRateFormat, EmailAddress
  if (resourceCalendarUID_ >= 0) addChildElementWithName(resource, "CalendarUID", std::to_string(resourceCalendarUID_));
  appendBaselines(resource, kvdxResource);  // Baseline
  return element;
}

void MSPEResourceMapper::appendIdentity(xml::OutputNode resource, const std::string& id) const {
  const std::string uid = mapper().idMapper()->resourceUIDFromKvdxResourceId(id);
  addChildElementWithName(resource, "UID", uid);
  const std::string number = std::to_string(MSPEMapper::nextResourceID());
  addChildElementWithName(resource, "ID", number);
  const bool isNew = mapper().projectMapper()->recordResource(uid, number);
  require(isNew, "Duplicated Resource UID='{}' found (kvdx Resource id='{}').", uid, id);
}

void MSPEResourceMapper::appendUnits(xml::OutputNode resource, xml::Node kvdxResource,
                                     const std::optional<std::string>& name) const {
  XQueryError error;
  const double units = floatValueForXQuery(kvdxResource, "units-available", &error);
  addChildElementWithName(resource, "MaxUnits", platform::fixedPoint(error ? 1.0 : units, 6));

  error = {};
  const double efficiency = floatValueForXQuery(kvdxResource, "efficiency", &error);
  if (!error && efficiency != 1.0) {
    log("WARINING: MS Project doesn't support the Korvella 'efficiency' attribute for resources. "
        "Efficiency={:.2f}% in resource '{}' is ignored.",
        efficiency * 100, platform::orNull(name));
  }
}

void MSPEResourceMapper::appendCosts(xml::OutputNode resource, xml::Node kvdxResource) const {
  if (const auto cost = stringValueForXQuery(kvdxResource, "cost-per-use")) {
    addChildElementWithName(resource, "CostPerUse", platform::fixedPoint(platform::doubleValue(*cost) * 100, 2));
  }
  if (const auto rate = stringValueForXQuery(kvdxResource, "cost-per-hour")) {
    addChildElementWithName(resource, "StandardRate", *rate);
    addChildElementWithName(resource, "StandardRateFormat", kPerHour);
  }
  if (const auto address = stringValueForXQuery(kvdxResource, "email-address")) {
    addChildElementWithName(resource, "EmailAddress", *address);
  }
}

void MSPEResourceMapper::appendBaselines(xml::OutputNode resource, xml::Node kvdxResource) const {
  const std::size_t count = mapper().kvdxBaselines().size();
  if (count == 0) return;
  log("  Mapping {} baselines for Resource ...", count);
  if (!resource) return;
  appendEachBaseline(resource, mapper(), [&](std::int64_t n) {
    return MSPEResourceBaselineMapper(n, mapper()).newBaselineFromKvdxResource(kvdxResource);
  });
}
