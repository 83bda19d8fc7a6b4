#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/XML/XMLOutput.h"
#include "Platform/XML/XMLQuery.h"
#include "Platform/XML/XMLTree.h"

class MSPEMapper;

// Reading typed values from the XML tree, and building elements. These free functions extend the tree's own types, so
// the node is their first argument. For an empty node, they return the value for "not found" and do not set `error`.
//
//   <task><title>Roof</title><effort>7200</effort></task>
//
//   stringValueForXQuery(task, "title")            "Roof"
//   floatValueForXQuery(task, "effort", &error)    7200
//   boolValueForXQuery(task, "splittable", &error) false, error.code is 1: nothing matched

/// The domains of the errors below.
inline constexpr std::string_view kXQueryErrorDomain = "com.korvella.KVMSPFilter.XQueryErrorDomain";
inline constexpr std::string_view kGeneralErrorDomain = "com.korvella.KVMSPFilter.GeneralErrorDomain";

/// Why a query returned its value for "not found", or that its value is only one of several:
///
///   domain   code  raised when
///   XQuery   1     the query matched nothing
///   XQuery   2     it matched more than one node (the value of the last one is returned all the same)
///   XQuery   3     an attribute is missing
///   General  2     a text is not a truth value
struct XQueryError {
  std::string_view domain;
  int code = 0;  ///< 0 when nothing went wrong
  std::string description;

  explicit operator bool() const { return code != 0; }
};

/// Every match of a path query (Platform/XML/XMLQuery.h has the forms) in document order; empty when nothing matches.
/// @param error never set, since every query of these forms can be evaluated.
std::vector<xml::Node> objectsForXQuery(xml::Node node, const xml::Query& query, XQueryError* error = nullptr);
/// The last match in document order, or an empty node.
xml::Node singleObjectForXQuery(xml::Node node, const xml::Query& query, XQueryError* error = nullptr);
/// The last match's string value; none when nothing matches.
std::optional<std::string> stringValueForXQuery(xml::Node node, const xml::Query& query, XQueryError* error = nullptr);
/// The whole number that the last match's text begins with; 0 when nothing matches.
/// @throws InvariantFailure when the text begins with no number.
std::int64_t intValueForXQuery(xml::Node node, const xml::Query& query, XQueryError* error = nullptr);
/// The decimal number that the last match's text begins with; 0 when nothing matches.
/// @throws InvariantFailure when the text begins with no number.
double floatValueForXQuery(xml::Node node, const xml::Query& query, XQueryError* error = nullptr);
/// The last match's text as a truth value; false when nothing matches or the text is not a truth value.
bool boolValueForXQuery(xml::Node node, const xml::Query& query, XQueryError* error = nullptr);
/// The attribute's value as a truth value; false when there is no such attribute or its value is not a truth value.
bool boolAttributeForName(xml::Node element, std::string_view name, XQueryError* error = nullptr);

/// "true" and "yes" (in any case, blanks around them ignored) and whole numbers other than 0 are true; "false", "no"
/// and 0 are false; anything else is false too, and an error.
bool boolFromString(std::string_view text, XQueryError* error = nullptr);

/// Sets the attribute; appends it when the element has none of this name.
/// @return the attribute; null for an empty node.
/// @param value none leaves an existing value alone; a new attribute is then empty.
/// @throws InvariantFailure when the node is no element.
const xml::OutputAttribute* setAttributeWithName(xml::OutputNode element, std::string_view name,
                                                 std::optional<std::string_view> value = std::nullopt);

/// How MSPDI writes a truth value.
constexpr std::string_view mspdiFlag(bool value) { return value ? "1" : "0"; }

/// A new element that belongs to the context's output document and is not yet part of it.
xml::Element elementWithName(std::string_view name, const MSPEMapper& mapper,
                             std::optional<std::string_view> value = std::nullopt);

/// Appends a child element with the text, and returns it. When the text is missing, the element is empty; to leave it
/// out, do not call this.
/// @throws InvariantFailure when the node is no element.
xml::OutputNode addChildElementWithName(xml::OutputNode element, std::string_view name,
                                        std::optional<std::string_view> value = std::nullopt);
/// The same for a section of the document; the child cannot be built on.
void addChildElementWithName(xml::Section& section, std::string_view name,
                             std::optional<std::string_view> value = std::nullopt);
/// Like addChildElementWithName(), but inserts in front of the child at the index (0 is the first).
xml::OutputNode insertChildElementWithName(xml::OutputNode element, std::string_view name,
                                           std::optional<std::string_view> value, std::int32_t atIndex);
/// Appends a comment; without a text, an empty one.
xml::OutputNode addComment(xml::OutputNode element, std::optional<std::string_view> text);
xml::OutputNode insertComment(xml::OutputNode element, std::optional<std::string_view> text, std::int32_t atIndex);

/// The text with one kind of line break replaced by blanks: of the kinds below, the last in this order that occurs in
/// the text. The other kinds stay, since the exact file must not change: "a\r\nb" gives "a\r b". The kinds are "&#x0D;"
/// "&#x0d;" "&#x2028;" "&#x0A;" "&#x0a;" "&#x2029;" (these six not when the text begins with "<![CDATA["), U+000D,
/// U+2028, U+000A, U+2029.
std::string stringByReplacingOccurrencesOfNewline(std::string_view text);
