#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Conform/PlanFile.h"
#include "Platform/Base/IdHash.h"

namespace conform {

/// The names of a file's custom fields. A corrected file defines each field once. In an exact file, each object has its
/// own definitions: the n-th definition of a number is for the n-th object with a value of this number.
class FileFields {
 public:
  /// @param definitions the project's `ExtendedAttributes`, which may be an empty view.
  explicit FileFields(pugi::xml_node definitions);

  /// The object's fields with their names. Must be called once for every object, in the order of the file.
  [[nodiscard]] std::vector<FileField> fieldsOf(pugi::xml_node object);

 private:
  struct Definitions {
    std::vector<std::string> names;
    std::size_t used = 0;
  };

  [[nodiscard]] std::string nextName(std::string_view fieldId);

  std::unordered_map<std::string, Definitions, platform::IdHash> definitions_;
};

}  // namespace conform
