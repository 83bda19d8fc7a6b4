#include "Platform/XML/XMLRepair.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <climits>
#include <memory>

namespace xml {
namespace {

/// Ends the parsing at an attribute with a default: the parser would add it to each element.
void refuseDefault(void* parser, const xmlChar* /*element*/, const xmlChar* /*name*/, int /*type*/, int /*kind*/,
                   const xmlChar* value, xmlEnumeration* names) {
  xmlFreeEnumeration(names);
  if (value != nullptr) xmlStopParser(static_cast<xmlParserCtxt*>(parser));
}

/// The most attributes that one tag seems to have. NULs are skipped: they are every other byte in UTF-16.
std::size_t mostAttributes(std::string_view bytes) {
  std::size_t most = 0;
  std::size_t count = 0;
  char previous = '\0';
  for (const char c : bytes) {
    if (c == '\0') continue;
    if (c == '<') count = 0;
    if (previous == '=' && (c == '"' || c == '\'')) most = std::max(most, ++count);
    previous = c;
  }
  return most;
}

}  // namespace

std::optional<std::string> repaired(std::string_view bytes) {
  if (bytes.empty() || bytes.size() > INT_MAX) return std::nullopt;
  // The parser compares each attribute of a tag with each other.
  constexpr std::size_t kMaximumAttributes = 10'000;
  if (mostAttributes(bytes) > kMaximumAttributes) return std::nullopt;
  // What is behind the parser's limits on depth and size would be lost, so they are off. They are there against
  // declarations that make much out of little: entities, which are not taken in, and attributes' defaults.
  constexpr int kOptions =
      XML_PARSE_RECOVER | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE;
  const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(), &xmlFreeParserCtxt);
  if (!parser) return std::nullopt;
  parser->sax->entityDecl = nullptr;
  parser->sax->attributeDecl = &refuseDefault;
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
      xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, kOptions),
      &xmlFreeDoc);
  if (!document || xmlDocGetRootElement(document.get()) == nullptr) return std::nullopt;

  xmlChar* text = nullptr;
  int length = 0;
  xmlDocDumpMemoryEnc(document.get(), &text, &length, "UTF-8");
  if (text == nullptr) return std::nullopt;
  std::string result(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
  xmlFree(text);
  return result;
}

}  // namespace xml
