#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace xml {

/// The replacement text of each entity that a document declares, by name. An external entity's is empty: nothing is
/// fetched.
using Entities = std::map<std::string, std::string, std::less<>>;

/// What stands in front of a document's root element: byte order mark, declaration, document type, comments, processing
/// instructions.
struct Prolog {
  std::size_t length = 0;  ///< in bytes of the text
  bool hasDocumentType = false;
  bool isMalformed = false;  ///< the document type has no end, so that the root element seems to be inside it
  Entities entities;         ///< the first declaration of each name counts; parameter entities are left out
};

/// The prolog of a document's text, which is UTF-8.
[[nodiscard]] Prolog prologOf(std::string_view text);

}  // namespace xml
