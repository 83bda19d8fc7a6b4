#pragma once

#include <pugixml.hpp>
#include <string>

namespace conform {

// The steps of reading an exported file. Each raises a platform::Exception with a reason for people.

/// The bytes of the file, at most 4 GiB.
/// @throws "ConformException", with the path in the reason.
[[nodiscard]] std::string readExported(const std::string& path);

/// The document's text in UTF-8, without document type, checked for the faults that the tree's parser overlooks.
/// @throws "XMLException" when it has one of these; see xml::requireCopyable().
[[nodiscard]] std::string wellFormedText(std::string bytes);

/// Parses the text in place: it must outlive the document.
/// @return the root.
/// @throws "ConformException" when tags do not match, or this is not a Microsoft Project XML file.
[[nodiscard]] pugi::xml_node parseExported(pugi::xml_document& document, std::string& text, unsigned options);

}  // namespace conform
