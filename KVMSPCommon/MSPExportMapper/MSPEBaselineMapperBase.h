#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"

/// Base of the mappers that write the `Baseline` of one object; a mapper serves one baseline of the context.
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

/// Appends the `Baseline` that newBaseline(n) makes of each of the context's baselines, n being its number; none is
/// made when the baseline lacks the object.
template <typename NewBaseline>
void appendEachBaseline(xml::OutputNode to, const MSPEMapper& mapper, NewBaseline newBaseline) {
  const auto count = static_cast<std::int64_t>(mapper.kvdxBaselines().size());
  for (std::int64_t n = 0; n < count; ++n) {
    if (std::optional<xml::Element> baseline = newBaseline(n)) to.append(std::move(*baseline));
  }
}

/// Number, Start and Finish (from start-date and end-date), Duration, Work (from effort), FixedCost (static-cost in
/// hundredths), each but the first only when the baseline's task has the source of it.
class MSPETaskBaselineMapper final : public MSPEBaselineMapperBase {
 public:
  using MSPEBaselineMapperBase::MSPEBaselineMapperBase;
  /// @param kvdxTask the plan's task. @return none when the baseline has no task of its id.
  [[nodiscard]] std::optional<xml::Element> newBaselineFromKvdxTask(xml::Node kvdxTask) const;
};

/// Number only.
class MSPEResourceBaselineMapper final : public MSPEBaselineMapperBase {
 public:
  using MSPEBaselineMapperBase::MSPEBaselineMapperBase;
  /// @param kvdxResource the plan's resource. @return none when the baseline has no resource of its id.
  [[nodiscard]] std::optional<xml::Element> newBaselineFromKvdxResource(xml::Node kvdxResource) const;
};

/// Number only; in effect never written, see below.
class MSPEAssignmentBaselineMapper final : public MSPEBaselineMapperBase {
 public:
  using MSPEBaselineMapperBase::MSPEBaselineMapperBase;
  /// The resource's id is read from an attribute whose name begins with an at sign, which no document has: assignments
  /// have no baselines. Kept so, since files that had them would differ from all that were ever exported.
  /// @param kvdxAssignment the plan's assignment, whose parent is its task.
  [[nodiscard]] std::optional<xml::Element> newBaselineFromKvdxAssignment(xml::Node kvdxAssignment) const;
};
