#include "Conform/FileFields.h"

#include <algorithm>

#include "Platform/Text/Texts.h"

namespace conform {

FileFields::FileFields(pugi::xml_node definitions) {
  for (const pugi::xml_node definition : definitions.children("ExtendedAttribute")) {
    std::string name = definition.child("Alias").text().get();
    if (name.empty()) name = definition.child("FieldName").text().get();
    definitions_[definition.child("FieldID").text().get()].names.push_back(platform::shortened(name));
  }
}

std::vector<FileField> FileFields::fieldsOf(pugi::xml_node object) {
  std::vector<FileField> fields;
  for (const pugi::xml_node field : object.children("ExtendedAttribute")) {
    fields.push_back({nextName(field.child("FieldID").text().get()), field.child("Value").text().get()});
  }
  return fields;
}

std::string FileFields::nextName(std::string_view fieldId) {
  std::string id(fieldId);
  const auto found = definitions_.find(id);
  if (found == definitions_.end()) return id;
  Definitions& definitions = found->second;
  const std::size_t last = definitions.names.size() - 1;
  const std::string& name = definitions.names[std::min(definitions.used++, last)];
  return name.empty() ? id : name;
}

}  // namespace conform
