#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"

/// Makes the `TimephasedData` elements of split tasks and of material assignments;
/// appendToAssignment() completes them.
class MSPETimephasedDataMapper final : public MSPEObjectMapperBase {
 public:
  using MSPEObjectMapperBase::MSPEObjectMapperBase;

  /// The days of the pieces (the tasks that the `child-task` children refer to), each with its piece's whole effort as
  /// `Value`, and of the gaps between them, without one. Pieces that are not found are skipped.
  /// @return none when the task has no `split`.
  [[nodiscard]] std::optional<std::vector<xml::Element>> newTimephasedDataFromKvdxSplitTask(xml::Node kvdxTask);

  /// The days from start to finish (kvdx form), the consumption (seconds) in equal shares on the working ones and an
  /// empty `Value` on weekends.
  /// @return none when the resource is no material, or there are no days.
  [[nodiscard]] std::optional<std::vector<xml::Element>> newTimephasedDataFromAssignment(xml::Node kvdxAssignment,
                                                                                         xml::Node resource,
                                                                                         std::string_view start,
                                                                                         std::string_view finish,
                                                                                         double consumption) const;

  /// Appends the elements to the assignment, each with the assignment's UID in front of its children.
  static void appendToAssignment(xml::OutputNode assignment, std::int64_t assignmentUID,
                                 std::vector<xml::Element> data);

  /// The number of `child-task` elements of the split task mapped last.
  [[nodiscard]] std::int64_t splitCount() const { return splitCount_; }

 private:
  std::int64_t splitCount_ = 0;
};
