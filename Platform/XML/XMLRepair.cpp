#include "Platform/XML/XMLRepair.h"

#include <libxml/parser.h>
#include <malloc.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "Platform/Base/Budget.h"
#include "Platform/XML/XMLText.h"

namespace xml {
namespace {

/// The memory of the parser that runs in this thread. It can be 25 times the size of the document, so it may not take
/// more than the budget allows.
struct ParserMemory {
  std::size_t held = 0;
  std::size_t most = std::numeric_limits<std::size_t>::max();
  /// Whether there was not enough. The parser does not always tell: it ends early or loses names, and what it has read
  /// so far would be taken for the whole document.
  bool isLacking = false;
  bool exceedsBudget = false;
};
thread_local ParserMemory parserMemory;

/// The functions by which the library gets its memory; the program may have chosen others than malloc() and the like.
struct MemoryFunctions {
  xmlFreeFunc give = nullptr;
  xmlMallocFunc take = nullptr;
  xmlReallocFunc change = nullptr;
  xmlStrdupFunc copy = nullptr;

  MemoryFunctions() { xmlMemGet(&give, &take, &change, &copy); }
};

const MemoryFunctions& functionsBefore() {
  static const MemoryFunctions functions;
  return functions;
}

/// The bytes of a block of memory, as far as they can be known.
std::size_t sizeOf(void* memory) { return functionsBefore().take == &std::malloc ? malloc_usable_size(memory) : 0; }

bool mayTake(std::size_t bytes) {
  if (bytes > parserMemory.most - std::min(parserMemory.held, parserMemory.most)) parserMemory.exceedsBudget = true;
  return !parserMemory.exceedsBudget;
}

void* noting(void* memory) {
  if (memory == nullptr) parserMemory.isLacking = true;
  parserMemory.held += sizeOf(memory);
  return memory;
}

void forget(void* memory) { parserMemory.held -= std::min(parserMemory.held, sizeOf(memory)); }

void give(void* memory) {
  forget(memory);
  functionsBefore().give(memory);
}

void* take(std::size_t size) { return noting(mayTake(size) ? functionsBefore().take(size) : nullptr); }

void* change(void* before, std::size_t size) {
  const std::size_t sizeBefore = sizeOf(before);
  if (!mayTake(size - std::min(size, sizeBefore))) return noting(nullptr);
  forget(before);
  return noting(functionsBefore().change(before, size));
}

char* copy(const char* text) {
  return static_cast<char*>(noting(mayTake(std::strlen(text)) ? functionsBefore().copy(text) : nullptr));
}

/// While this object lives, the parser is held to the budget.
class LimitedMemory {
 public:
  LimitedMemory() {
    static_cast<void>(functionsBefore());  // must be known before they are replaced
    static const int isSet = xmlMemSetup(&give, &take, &change, &copy);
    static_cast<void>(isSet);
    parserMemory = {};
    parserMemory.most = platform::Budget::left();
  }
  ~LimitedMemory() { parserMemory = {}; }
  LimitedMemory(const LimitedMemory&) = delete;
  LimitedMemory& operator=(const LimitedMemory&) = delete;

  /// @throws platform::InvariantFailure when the budget was not enough.
  /// @throws std::bad_alloc when memory was not enough.
  static void require() {
    if (parserMemory.exceedsBudget) platform::Budget::spend(parserMemory.most + 1);
    if (parserMemory.isLacking) throw std::bad_alloc();
  }
};

std::string_view view(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

/// Writes the elements and texts that the parser reports. The parser's own tree is not used: at each element it would
/// search all open elements for namespaces, which takes quadratic time on deep documents.
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

  /// Gives the parser a new table of names when there are many, since its table does not grow and would get slow.
  void renewNames() {
    constexpr int kMany = 10'000;
    if (xmlDictSize(parser_.dict) < kMany) return;
    xmlDict* const another = xmlDictCreate();
    if (another == nullptr) return;
    namesBefore_.emplace_back(parser_.dict, &xmlDictFree);
    parser_.dict = another;
  }

  /// Everything written so far, with all open elements closed.
  std::string take() {
    while (!open_.empty()) endLast();
    return std::move(text_);
  }

 private:
  /// Closes elements that the parser dropped without reporting their end, because their start tags were malformed.
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
  std::vector<std::string_view> open_;  ///< names of open elements; they point into the tables of names
  std::string text_;
};

Writer& writerOf(void* parser) { return *static_cast<Writer*>(static_cast<xmlParserCtxt*>(parser)->_private); }

// NOLINTNEXTLINE(cert-dcl50-cpp,cppcoreguidelines-pro-type-vararg): the library passes the values for the message
void renewNamesAtError(void* parser, const char* /*message*/, ...) { writerOf(parser).renewNames(); }

/// The callbacks, in the parser's older interface. That one does not process namespaces, which the program does not
/// need and which take the parser quadratic time.
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
  // A malformed attribute, of which a tag may have any number, adds a name as well.
  calls.error = &renewNamesAtError;
  // Stop at a document type that mendedText() did not recognize and remove: some take the parser minutes.
  calls.internalSubset = [](void* parser, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                            const xmlChar* /*systemId*/) { xmlStopParser(static_cast<xmlParserCtxt*>(parser)); };
  return calls;
}

/// Comments, CDATA sections and processing instructions.
bool startsMarkupWithoutAttributes(std::string_view text) { return text.starts_with("<!") || text.starts_with("<?"); }

/// An upper bound for the number of attributes of any tag: the values that begin with `="` between its "<" and ">". The
/// parser ends a tag there or earlier, however malformed it is, and no value may contain "<".
std::size_t mostAttributes(std::string_view text) {
  std::size_t most = 0;
  std::size_t count = 0;
  bool isInTag = false;
  char quote = '\0';  // of the value that is open
  char previous = '\0';
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '<') {
      count = 0;
      isInTag = !startsMarkupWithoutAttributes(text.substr(at));
      quote = '\0';
    } else if (!isInTag || c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      continue;
    } else if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '>') {
      isInTag = false;
    } else if (previous == '=' && (c == '"' || c == '\'')) {
      quote = c;
      most = std::max(most, ++count);
    }
    previous = c;
  }
  return most;
}

}  // namespace

std::optional<std::string> repaired(const std::string& text) {
  constexpr std::size_t kMaximumAttributes = 1000;
  if (text.empty() || text.size() > INT_MAX || mostAttributes(text) > kMaximumAttributes) return std::nullopt;
  const LimitedMemory memory;
  const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(
      xmlCreateDocParserCtxt(reinterpret_cast<const xmlChar*>(text.c_str())), &xmlFreeParserCtxt);
  LimitedMemory::require();
  if (!parser) return std::nullopt;
  // HUGE turns the parser's limits on depth and size off: content beyond them would be lost. They guard against
  // entities that expand without end, and no document type comes this far. NOENT makes it report "&amp;" in an
  // attribute as "&" rather than as another reference.
  xmlCtxtUseOptions(parser.get(), XML_PARSE_RECOVER | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                                      XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC | XML_PARSE_NOENT);
  *parser->sax = handler();
  Writer writer(*parser);
  parser->_private = &writer;
  xmlParseDocument(parser.get());
  LimitedMemory::require();
  std::string result = writer.take();
  if (result.empty() || parser->errNo == XML_ERR_USER_STOP) return std::nullopt;
  return result;
}

}  // namespace xml
