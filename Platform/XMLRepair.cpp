#include "Platform/XMLRepair.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <climits>
#include <memory>

namespace xml {
namespace {

/// Ends the parsing at an attribute with a default: the parser would add it to each element.
void refuseDefault(void* parser, const xmlChar*, const xmlChar*, int, int, const xmlChar* value,
                   xmlEnumeration* names) {
  xmlFreeEnumeration(names);
  if (value != nullptr) xmlStopParser(static_cast<xmlParserCtxt*>(parser));
}

}  // namespace

std::optional<std::string> repaired(std::string_view bytes) {
  if (bytes.empty() || bytes.size() > INT_MAX) return std::nullopt;
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
