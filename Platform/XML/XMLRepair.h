#pragma once

#include <optional>
#include <string>

namespace xml {

/// A malformed document made readable: the elements, attributes and texts that a recovering parser sees in it, as
/// well-formed UTF-8. Names stay as written, prefixes included.
/// The first call replaces the functions by which libxml2 gets memory in this process: they call those before, and note
/// failures and sizes. What libxml2 holds meanwhile may not exceed what is left of the budget.
/// @param text the document as mendedText() gives it.
/// @return none when no element is found, or when a tag seems to have more than 1000 attributes: the parser compares
/// each pair of them, which would take too long.
/// @throws platform::InvariantFailure when the budget is not enough.
/// @throws std::bad_alloc when there is too little memory, rather than returning a part of the document.
[[nodiscard]] std::optional<std::string> repaired(const std::string& text);

}  // namespace xml
