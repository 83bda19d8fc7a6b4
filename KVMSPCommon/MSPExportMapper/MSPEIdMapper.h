#pragma once

#include <optional>
#include <string>

/// Turns source identifiers ("r5", "t7") into MSPDI's unique ones. The scenario's top resource and top task become 0.
class MSPEIdMapper {
 public:
  /// @throws InvariantFailure when the resource's id does not begin with "r", or the task's with "t".
  MSPEIdMapper(const std::optional<std::string>& topResourceId, const std::optional<std::string>& topTaskId);

  /// What follows the first character, unchanged ("r007" gives "007"), when that begins with a whole number of at least
  /// 1; "0" for the top resource; otherwise an empty text: the object has no MSPDI identifier.
  /// @throws InvariantFailure when a non-empty id does not begin with "r".
  [[nodiscard]] std::string resourceUIDFromKvdxResourceId(const std::string& kvdxResourceId) const;
  /// The same for tasks, with "t".
  [[nodiscard]] std::string taskUIDFromKvdxId(const std::string& kvdxId) const;

 private:
  std::string topResourceId_;
  std::string topTaskId_;
};
