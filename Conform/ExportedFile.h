#pragma once

#include <pugixml.hpp>
#include <string>

namespace conform {

// How a file that was exported is read, step by step. Each raises a platform::Exception with a reason for people.

/// The bytes of the file, 4 GiB at most. @throws "ConformException", with the path in the reason.
[[nodiscard]] std::string readExported(const std::string& path);

/// The bytes as the text of a document that the tree's parser can be trusted with: in UTF-8, and with no document type.
/// @throws "XMLException" when it is not well-formed in what that parser passes over; see xml::requireCopyable().
[[nodiscard]] std::string wellFormedText(std::string bytes);

/// Parses the text in place: it must outlive the document.
/// @return the root. @throws "ConformException" when tags do not fit, or this is no Microsoft Project XML file.
[[nodiscard]] pugi::xml_node parseExported(pugi::xml_document& document, std::string& text, unsigned options);

}  // namespace conform
