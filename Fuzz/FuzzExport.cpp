#include <libxml/parser.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "Fuzz/ExportTarget.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximum);

namespace {

/// Valid and invalid texts for the fields of a plan.
constexpr std::array kValues = {"",
                                "0",
                                "1",
                                "-1",
                                "7",
                                "0.5",
                                "3600",
                                "28800",
                                "86400",
                                "86401",
                                "-86400",
                                "144000",
                                "2147483647",
                                "2147483648",
                                "9223372036854775807",
                                "-9223372036854775808",
                                "99999999999999999999",
                                "1e308",
                                "1e-9",
                                "nan",
                                "inf",
                                "0x10",
                                "yes",
                                "no",
                                "true",
                                "sunday",
                                "monday",
                                "2026-03-02T08:00:00Z",
                                "2026-03-29T02:30:00",
                                "2026-10-25T02:30:00+02:00",
                                "2026-03-02",
                                "0001-01-01T00:00:00Z",
                                "0000-00-00T00:00:00Z",
                                "9999-12-31T23:59:59Z",
                                "999999999-01-01T00:00:00Z",
                                "24:00:00",
                                "T",
                                "P",
                                "t1",
                                "t2",
                                "r1",
                                "r-1",
                                "t-1",
                                "FS",
                                "SF",
                                "SS",
                                "FF",
                                "milestone",
                                "group",
                                "Group",
                                "Staff",
                                "Equipment",
                                "Material",
                                "$1,234.56",
                                "1.234,56 \xE2\x82\xAC",
                                "&#0;",
                                "&#x1F;",
                                "&#xD800;",
                                "&amp;",
                                "]]>",
                                "\xC3\xA4",
                                "\xFF",
                                "Overtime",
                                "fixed",
                                "asap",
                                "alap"};

struct Range {
  std::size_t begin;
  std::size_t length;
};

/// The positions of texts between tags and of attribute values.
std::vector<Range> valuesOf(const std::string& text) {
  std::vector<Range> ranges;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '>' && text[at] != '"') continue;
    const std::size_t end = text.find(text[at] == '>' ? '<' : '"', at + 1);
    if (end == std::string::npos) break;
    if (text.find_first_not_of(" \n\r\t", at + 1) < end || text[at] == '"') ranges.push_back({at + 1, end - at - 1});
    if (text[at] == '"') at = end;
  }
  return ranges;
}

/// Roughly the element at the position: from its start tag to the next end tag of the same name.
Range elementAt(const std::string& text, std::size_t at) {
  const std::size_t begin = text.find('<', at);
  if (begin == std::string::npos) return {0, 0};
  const std::size_t nameEnd = text.find_first_of(" />", begin + 1);
  if (nameEnd == std::string::npos) return {0, 0};
  const std::size_t tagEnd = text.find('>', nameEnd);
  if (tagEnd == std::string::npos) return {0, 0};
  if (text[tagEnd - 1] == '/') return {begin, tagEnd + 1 - begin};
  const std::string ending = "</" + text.substr(begin + 1, nameEnd - begin - 1) + ">";
  const std::size_t end = text.find(ending, tagEnd);
  if (end == std::string::npos) return {begin, tagEnd + 1 - begin};
  return {begin, end + ending.size() - begin};
}

}  // namespace

/// Half of the mutations keep the document well-formed: they replace a value, or repeat, move or remove an element. The
/// others are the default mutations of libFuzzer.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maximum,
                                               unsigned seed) {
  std::minstd_rand random(seed);
  const auto below = [&random](std::size_t limit) { return limit == 0 ? 0 : random() % limit; };
  const std::size_t kind = below(8);
  if (kind >= 4 || size < 2) return LLVMFuzzerMutate(data, size, maximum);

  std::string text(reinterpret_cast<const char*>(data), size);
  if (kind <= 1) {
    const auto values = valuesOf(text);
    if (values.empty()) return LLVMFuzzerMutate(data, size, maximum);
    const Range to = values[below(values.size())];
    const Range from = values[below(values.size())];
    const std::string value = kind == 0 ? kValues[below(kValues.size())] : text.substr(from.begin, from.length);
    text.replace(to.begin, to.length, value);
  } else {
    const Range element = elementAt(text, below(size));
    const std::string copy = text.substr(element.begin, element.length);
    if (below(2) == 0) text.erase(element.begin, element.length);
    if (kind == 3) {
      const std::size_t place = text.find('<', below(text.size()));
      if (place != std::string::npos) text.insert(place, copy);
    }
  }
  if (text.empty() || text.size() > maximum) return LLVMFuzzerMutate(data, size, maximum);
  return text.copy(reinterpret_cast<char*>(data), maximum);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string output = fuzzExport({reinterpret_cast<const char*>(data), size});
  if (output.empty()) return 0;
  xmlDoc* document = xmlReadMemory(output.data(), static_cast<int>(output.size()), nullptr, nullptr,
                                   XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE);
  check(document != nullptr, "a strict parser takes the output");
  xmlFreeDoc(document);
  return 0;
}
