#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "Platform/Base/IdHash.h"

/// Writes an object's user data as extended attributes: a value in the object for each pair, and a definition in the
/// project's `ExtendedAttributes` for each key. Each object defines its own keys, starting at Text1, even if another
/// object already defined the same keys: a mapper is for one object and does not know the others.
class MSPEUserDataMapper final : public MSPEObjectMapperBase {
 public:
  /// @param isTask whether the object is a task; other objects have other field numbers.
  MSPEUserDataMapper(MSPEMapper& mapper, bool isTask) : MSPEObjectMapperBase(mapper), isTask_(isTask) {}

  /// The values (FieldID, Value) in source order, `key` and `string` children paired by position. None without keys.
  /// @throws InvariantFailure when there are not as many of one as of the other.
  [[nodiscard]] std::optional<std::vector<xml::Element>> newExtendedAttributesFromUserData(xml::Node userData);
  /// Appends the values made of the object's `user-data`, if any.
  void appendExtendedAttributes(xml::OutputNode to, xml::Node kvdxObject);
  /// The field identifier that this mapper gave the key; none for a new key.
  [[nodiscard]] std::optional<std::string> getExtendedAttributeIdByName(const std::string& key) const;
  /// Defines an attribute for the key (FieldID, FieldName, Alias, Guid) and returns its field identifier: for the n-th
  /// key, counted from 0, 188743731 + 3n for tasks and 205520904 + n for others, even where the format has no such
  /// field.
  /// @throws InvariantFailure when the context has no project.
  std::string addExtendedAttribute(const std::string& key);

 private:
  bool isTask_;
  std::unordered_map<std::string, std::string, platform::IdHash> extendedAttributeIds_;
};
