#pragma once

#include <optional>
#include <string>

/// Turns source identifiers into MSPDI's UIDs: "r5" gives "5", "t7" gives "7", and the scenario's top resource and top
/// task "0".
class MSPEIdMapper {
 public:
  /// @throws InvariantFailure when the resource's id does not begin with "r", or the task's with "t".
  MSPEIdMapper(const std::optional<std::string>& topResourceId, const std::optional<std::string>& topTaskId);

  /// "0" for the top resource. Otherwise what follows the first character, unchanged, when it begins with a whole
  /// number of at least 1: "r007" gives "007". Otherwise an empty text ("r0", "rx"): the object has no UID.
  /// @throws InvariantFailure when a non-empty id does not begin with "r".
  [[nodiscard]] std::string resourceUIDFromKvdxResourceId(const std::string& kvdxResourceId) const;
  /// The same for tasks, with "t".
  [[nodiscard]] std::string taskUIDFromKvdxId(const std::string& kvdxId) const;

 private:
  std::string topResourceId_;
  std::string topTaskId_;
};
