#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"

/// Base of the mappers that write an object's `Baseline` element. Each mapper is for one of the context's baselines.
class MSPEBaselineMapperBase : public MSPEObjectMapperBase {
 public:
  /// @param baselineNumber position in the context's list of baselines.
  /// @throws InvariantFailure when the context has no baseline of that number.
  MSPEBaselineMapperBase(std::int64_t baselineNumber, MSPEMapper& mapper);

  [[nodiscard]] std::int64_t baselineNumber() const { return baselineNumber_; }

 protected:
  ~MSPEBaselineMapperBase() = default;
  [[nodiscard]] const MSPEBaseline& baseline() const;
  /// A `Baseline` with its `Number`.
  [[nodiscard]] xml::Element newNumberedBaseline() const;

 private:
  std::int64_t baselineNumber_;
  const std::vector<MSPEBaseline>& kvdxBaselines_;
};

/// Calls newBaseline(n) with the number of each of the context's baselines, and appends the `Baseline` elements that it
/// returns; it returns none when that baseline lacks the object.
template <typename NewBaseline>
void appendEachBaseline(xml::OutputNode to, const MSPEMapper& mapper, NewBaseline newBaseline) {
  const auto count = static_cast<std::int64_t>(mapper.kvdxBaselines().size());
  for (std::int64_t n = 0; n < count; ++n) {
    if (std::optional<xml::Element> baseline = newBaseline(n)) to.append(std::move(*baseline));
  }
}

/// Writes Number, Start and Finish (from start-date and end-date), Duration, Work (from effort), FixedCost (static-cost
/// in hundredths). Each except Number only when the baseline's task has its source.
class MSPETaskBaselineMapper final : public MSPEBaselineMapperBase {
 public:
  using MSPEBaselineMapperBase::MSPEBaselineMapperBase;
  /// @param kvdxTask the plan's task. @return none when the baseline has no task of its id.
  [[nodiscard]] std::optional<xml::Element> newBaselineFromKvdxTask(xml::Node kvdxTask) const;
};

/// Writes Number only.
class MSPEResourceBaselineMapper final : public MSPEBaselineMapperBase {
 public:
  using MSPEBaselineMapperBase::MSPEBaselineMapperBase;
  /// @param kvdxResource the plan's resource. @return none when the baseline has no resource of its id.
  [[nodiscard]] std::optional<xml::Element> newBaselineFromKvdxResource(xml::Node kvdxResource) const;
};

/// Writes Number only; in effect it never writes anything, see below.
class MSPEAssignmentBaselineMapper final : public MSPEBaselineMapperBase {
 public:
  using MSPEBaselineMapperBase::MSPEBaselineMapperBase;
  /// Returns none for every real document: it reads the resource's id from an attribute named "@idref", which no XML
  /// document can have, so assignments get no baselines. It stays like this because the exact file must not change.
  /// @param kvdxAssignment the plan's assignment, whose parent is its task.
  [[nodiscard]] std::optional<xml::Element> newBaselineFromKvdxAssignment(xml::Node kvdxAssignment) const;
};
