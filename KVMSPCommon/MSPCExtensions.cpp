#include "KVMSPCommon/MSPCExtensions.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/FileSystem.h"
#include "Platform/Text/Texts.h"

using platform::require;

namespace {

void report(XQueryError* error, std::string_view domain, int code, std::string description = {}) {
  if (error != nullptr) *error = {domain, code, std::move(description)};
}

/// Whether building on the node is correct: on an empty one it does nothing, on a comment it is a mistake.
bool canBuildOn(xml::OutputNode node) { return !node || node.isElement(); }

}  // namespace

std::vector<xml::Node> objectsForXQuery(xml::Node node, const xml::Query& query, XQueryError* /*error*/) {
  return query.all(node);
}

xml::Node singleObjectForXQuery(xml::Node node, const xml::Query& query, XQueryError* error) {
  if (!node) return {};
  const xml::Match match = query.last(node);
  if (match.count == 0) report(error, kXQueryErrorDomain, 1);
  if (match.count > 1) report(error, kXQueryErrorDomain, 2);
  return match.last;
}

std::optional<std::string> stringValueForXQuery(xml::Node node, const xml::Query& query, XQueryError* error) {
  const xml::Node found = singleObjectForXQuery(node, query, error);
  if (!found) return std::nullopt;
  return found.stringValue();
}

std::int64_t intValueForXQuery(xml::Node node, const xml::Query& query, XQueryError* error) {
  const xml::Node found = singleObjectForXQuery(node, query, error);
  if (!found) return 0;
  const auto number = platform::scanInteger(found.stringView());
  if (!number) require(false, "Failed to get int value from XML node: {}", found.markup());
  return number->value;
}

double floatValueForXQuery(xml::Node node, const xml::Query& query, XQueryError* error) {
  const xml::Node found = singleObjectForXQuery(node, query, error);
  if (!found) return 0.0;
  const auto number = platform::scanDouble(found.stringView());
  if (!number) require(false, "Failed to get float value from XML node: {}", found.markup());
  return number->value;
}

bool boolValueForXQuery(xml::Node node, const xml::Query& query, XQueryError* error) {
  const xml::Node found = singleObjectForXQuery(node, query, error);
  return found && boolFromString(found.stringView(), error);
}

bool boolAttributeForName(xml::Node element, std::string_view name, XQueryError* error) {
  if (!element) return false;
  const xml::Attribute attribute = element.attribute(name);
  if (attribute) return boolFromString(attribute.value(), error);
  report(error, kXQueryErrorDomain, 3,
         fmt::format("Failed to find arrtibute '{}' in element '{}'.", name, element.name()));
  return false;
}

bool boolFromString(std::string_view text, XQueryError* error) {
  const std::string word = platform::lowercased(platform::trimmed(text));
  if (word == "true" || word == "yes") return true;
  if (word == "false" || word == "no") return false;
  const auto number = platform::scanInteger(word);
  if (number && number->length == word.size()) return number->value != 0;
  report(error, kGeneralErrorDomain, 2, fmt::format("Failed to get boolean value from string: \"{}\"", text));
  return false;
}

const xml::OutputAttribute* setAttributeWithName(xml::OutputNode element, std::string_view name,
                                                 std::optional<std::string_view> value) {
  require(canBuildOn(element),
          "Sent message setAttributeWithName:stringValue: "
          "to an object which is not NSXMLElementProxy.");
  return element.setAttribute(name, value);
}

xml::Element elementWithName(std::string_view name, const MSPEMapper& mapper, std::optional<std::string_view> value) {
  xml::Element element = mapper.newElement(name);
  if (value) element.node().setText(*value);
  return element;
}

xml::OutputNode addChildElementWithName(xml::OutputNode element, std::string_view name,
                                        std::optional<std::string_view> value) {
  const xml::OutputNode child = element.appendChild(name, value.value_or(""));
  require(child || !element,
          "Sent message addChildElementWithName:stringValue: to an object which is not NSXMLElementProxy.");
  return child;
}

void addChildElementWithName(xml::Section& section, std::string_view name, std::optional<std::string_view> value) {
  section.appendChild(name, value.value_or(""));
}

xml::OutputNode insertChildElementWithName(xml::OutputNode element, std::string_view name,
                                           std::optional<std::string_view> value, std::int32_t atIndex) {
  return element.insertChild(name, value.value_or(""), static_cast<std::size_t>(atIndex));
}

xml::OutputNode addComment(xml::OutputNode element, std::optional<std::string_view> text) {
  return element.appendComment(text.value_or(""));
}

xml::OutputNode insertComment(xml::OutputNode element, std::optional<std::string_view> text, std::int32_t atIndex) {
  return element.insertComment(text.value_or(""), static_cast<std::size_t>(atIndex));
}

std::string stringByReplacingOccurrencesOfNewline(std::string_view text) {
  constexpr std::size_t kReferences = 6;
  constexpr std::array<std::string_view, 10> kPatterns = {
      "&#x0D;", "&#x0d;", "&#x2028;", "&#x0A;", "&#x0a;", "&#x2029;", "\r", "\xE2\x80\xA8", "\n", "\xE2\x80\xA9"};
  // Fast path: nearly every text has no character that a line break or its reference could begin with.
  const auto canBegin = [](char c) { return c == '&' || c == '\r' || c == '\n' || c == '\xE2'; };
  if (std::none_of(text.begin(), text.end(), canBegin)) return std::string(text);

  const std::size_t first = text.starts_with("<![CDATA[") ? kReferences : 0;
  std::string_view pattern;
  for (std::size_t i = first; i < kPatterns.size(); ++i) {
    if (text.find(kPatterns[i]) != std::string_view::npos) pattern = kPatterns[i];
  }
  if (pattern.empty()) return std::string(text);
  std::string result;
  for (std::size_t at = 0;;) {
    const std::size_t found = text.find(pattern, at);
    result.append(text.substr(at, found - at));
    if (found == std::string_view::npos) return result;
    result += ' ';
    at = found + pattern.size();
  }
}
