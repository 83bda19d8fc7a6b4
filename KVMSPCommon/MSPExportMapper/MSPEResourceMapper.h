#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"

/// Writes one source resource as a `Resource` element and has the calendar mapper read its schedule. Made for one
/// resource, dropped after use.
class MSPEResourceMapper final : public MSPEObjectMapperBase {
 public:
  using MSPEObjectMapperBase::MSPEObjectMapperBase;

  /// The nameless placeholder that is first in the list of resources and takes the first resource number. (Assignments
  /// of tasks without resources refer to the fixed UID -65535 instead.)
  [[nodiscard]] static xml::Element newDummyResourceWithMapper(const MSPEMapper& mapper);

  /// The children are in the order of the calls in this function's body; the project mapper appends Group.
  /// @param parentResource empty for the top resource.
  /// @return none for groups and unknown types; their schedules are read nevertheless.
  /// @throws InvariantFailure for a resource without id or with the UID of another one.
  [[nodiscard]] std::optional<xml::Element> newResourceFromKVDXResource(xml::Node kvdxResource,
                                                                        xml::Node parentResource);

  /// The calendar element made for the resource; empty, as calendars are written later.
  [[nodiscard]] xml::OutputNode resourceCalendar() const { return resourceCalendar_; }
  /// UID of the resource's calendar; negative before the mapping.
  [[nodiscard]] std::int64_t resourceCalendarUID() const { return resourceCalendarUID_; }

 private:
  void appendIdentity(xml::OutputNode resource, const std::string& id) const;
  void appendUnits(xml::OutputNode resource, xml::Node kvdxResource, const std::optional<std::string>& name) const;
  void appendCosts(xml::OutputNode resource, xml::Node kvdxResource) const;
  /// @param resource empty for a resource that is not written.
  void appendBaselines(xml::OutputNode resource, xml::Node kvdxResource) const;

  xml::OutputNode resourceCalendar_;
  std::int64_t resourceCalendarUID_ = -1;
};
