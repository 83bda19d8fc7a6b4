#include "Platform/XML/XMLRepair.h"

#include <libxml/parser.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/XML/XMLText.h"

namespace xml {
namespace {

std::string_view view(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

/// Writes what the parser reports. A tree of the parser's own would look for namespaces through all elements that are
/// open, at each element.
class Writer {
 public:
  explicit Writer(xmlParserCtxt& parser) : parser_(parser) {}

  void start(const xmlChar* name, const xmlChar** attributes) {
    renewNames();
    endAbandoned();
    open_.push_back(view(name));
    text_.append("<").append(open_.back());
    for (; attributes != nullptr && attributes[0] != nullptr; attributes += 2) {
      text_.append(" ").append(view(attributes[0])).append("=\"");
      text_.append(escapedAttribute(view(attributes[1]))).append("\"");
    }
    text_ += '>';
  }

  void end() {
    renewNames();
    endAbandoned();
    endLast();
  }

  void add(std::string_view characters) {
    endAbandoned();
    text_ += escapedText(characters);
  }

  /// The table in which the parser keeps the names does not grow with them: it gets another one when there are many.
  void renewNames() {
    constexpr int kMany = 10'000;
    if (xmlDictSize(parser_.dict) < kMany) return;
    xmlDict* const another = xmlDictCreate();
    if (another == nullptr) return;
    namesBefore_.emplace_back(parser_.dict, &xmlDictFree);
    parser_.dict = another;
  }

  /// All that was written, with every element ended.
  std::string take() {
    while (!open_.empty()) endLast();
    return std::move(text_);
  }

 private:
  /// Ends the elements that the parser has given up without a word, because of a malformed start.
  void endAbandoned() {
    while (open_.size() > static_cast<std::size_t>(parser_.nameNr)) endLast();
  }

  void endLast() {
    if (open_.empty()) return;
    text_.append("</").append(open_.back()).append(">");
    open_.pop_back();
  }

  xmlParserCtxt& parser_;
  std::vector<std::unique_ptr<xmlDict, decltype(&xmlDictFree)>> namesBefore_;
  std::vector<std::string_view> open_;  ///< names of elements, in one of the tables
  std::string text_;
};

Writer& writerOf(void* parser) { return *static_cast<Writer*>(static_cast<xmlParserCtxt*>(parser)->_private); }

/// What to call, by the parser's older interface: it leaves namespaces alone, which the program has no use for and
/// which take the parser a time that grows with the square of their number.
xmlSAXHandler handler() {
  xmlSAXHandler calls{};
  calls.initialized = 1;
  calls.startElement = [](void* parser, const xmlChar* name, const xmlChar** attributes) {
    writerOf(parser).start(name, attributes);
  };
  calls.endElement = [](void* parser, const xmlChar* /*name*/) { writerOf(parser).end(); };
  calls.characters = [](void* parser, const xmlChar* text, int length) {
    writerOf(parser).add({reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
  };
  calls.ignorableWhitespace = calls.characters;
  calls.cdataBlock = calls.characters;
  calls.processingInstruction = [](void* parser, const xmlChar* /*name*/, const xmlChar* /*text*/) {
    writerOf(parser).renewNames();
  };
  // A document type that was not recognized as one, and is still there. The parser would take minutes for some.
  calls.internalSubset = [](void* parser, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                            const xmlChar* /*systemId*/) { xmlStopParser(static_cast<xmlParserCtxt*>(parser)); };
  return calls;
}

/// The most attributes that a tag can have for any parser: values that begin, between one "<" and the next.
std::size_t mostAttributes(std::string_view text) {
  std::size_t most = 0;
  std::size_t count = 0;
  char previous = '\0';
  for (const char c : text) {
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
    if (c == '<') count = 0;
    if (previous == '=' && (c == '"' || c == '\'')) most = std::max(most, ++count);
    previous = c;
  }
  return most;
}

}  // namespace

std::optional<std::string> repaired(const std::string& text) {
  constexpr std::size_t kMaximumAttributes = 1000;
  if (text.empty() || text.size() > INT_MAX || mostAttributes(text) > kMaximumAttributes) return std::nullopt;
  const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(
      xmlCreateDocParserCtxt(reinterpret_cast<const xmlChar*>(text.c_str())), &xmlFreeParserCtxt);
  if (!parser) return std::nullopt;
  // What is behind the parser's limits on depth and size would be lost, so they are off. They are there against
  // declarations that make much out of little, and no document type comes this far. NOENT: "&amp;" in an attribute is
  // reported as "&", not as another reference.
  xmlCtxtUseOptions(parser.get(), XML_PARSE_RECOVER | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                                      XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC | XML_PARSE_NOENT);
  *parser->sax = handler();
  Writer writer(*parser);
  parser->_private = &writer;
  xmlParseDocument(parser.get());
  std::string result = writer.take();
  if (result.empty() || parser->errNo == XML_ERR_USER_STOP) return std::nullopt;
  return result;
}

}  // namespace xml
