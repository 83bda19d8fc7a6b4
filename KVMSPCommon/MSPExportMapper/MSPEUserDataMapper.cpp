#include "KVMSPCommon/MSPExportMapper/MSPEUserDataMapper.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/System/Exceptions.h"

using platform::require;

namespace {

constexpr std::size_t kFirstTaskField = 188743731;
constexpr std::size_t kTaskFieldStep = 3;
constexpr std::size_t kFirstOtherField = 205520904;

}  // namespace

std::optional<std::vector<xml::Element>> MSPEUserDataMapper::newExtendedAttributesFromUserData(xml::Node userData) {
  const auto keys = objectsForXQuery(userData, "key");
  const auto values = objectsForXQuery(userData, "string");
  require(keys.size() == values.size(), "Keys and Values mismatch number.");
  if (keys.empty()) return std::nullopt;

  std::vector<xml::Element> attributes;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::string key = keys[i].stringValue();
    auto fieldId = getExtendedAttributeIdByName(key);
    if (!fieldId) fieldId = addExtendedAttribute(key);
    const xml::Element& attribute = attributes.emplace_back(elementWithName("ExtendedAttribute", mapper()));
    addChildElementWithName(attribute, "FieldID", *fieldId);
    addChildElementWithName(attribute, "Value", stringByReplacingOccurrencesOfNewline(values[i].stringValue()));
  }
  return attributes;
}

void MSPEUserDataMapper::appendExtendedAttributes(xml::OutputNode to, xml::Node kvdxObject) {
  const xml::Node userData = singleObjectForXQuery(kvdxObject, "user-data");
  if (!userData) return;
  auto attributes = newExtendedAttributesFromUserData(userData);
  if (!attributes) return;
  for (xml::Element& attribute : *attributes) to.append(std::move(attribute));
}

std::optional<std::string> MSPEUserDataMapper::getExtendedAttributeIdByName(const std::string& key) const {
  const auto found = extendedAttributeIds_.find(key);
  if (found == extendedAttributeIds_.end()) return std::nullopt;
  return found->second;
}

std::string MSPEUserDataMapper::addExtendedAttribute(const std::string& key) {
  xml::Section* project = mapper().mspdiProject();
  require(project != nullptr, "Failed to get Project XML document from the Mapper.");
  xml::Section* definitions = project->section("ExtendedAttributes");
  if (definitions == nullptr) definitions = &project->appendSection("ExtendedAttributes");

  const std::size_t n = extendedAttributeIds_.size();
  std::string fieldId = std::to_string(isTask_ ? kFirstTaskField + kTaskFieldStep * n : kFirstOtherField + n);
  extendedAttributeIds_.emplace(key, fieldId);

  xml::Element definition = elementWithName("ExtendedAttribute", mapper());
  addChildElementWithName(definition, "FieldID", fieldId);
  addChildElementWithName(definition, "FieldName", fmt::format("Text{}", n + 1));
  addChildElementWithName(definition, "Alias", stringByReplacingOccurrencesOfNewline(key));
  addChildElementWithName(definition, "Guid", "00000000-0000-0000-0000-000000000000");
  definitions->append(std::move(definition));
  return fieldId;
}
