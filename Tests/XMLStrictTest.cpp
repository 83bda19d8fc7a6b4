#include <gtest/gtest.h>

#include "Platform/XML/XMLStrict.h"
#include "Platform/XML/XMLStrictEncoding.h"
#include "Tests/Support.h"

namespace {

using namespace std::string_literals;

std::string problemOf(std::string text) {
  return failureOf([&text] { xml::requireCopyable(text); });
}

}  // namespace

TEST(XMLStrict, RefusesWhatTheTreesParserWouldPassOn) {
  struct Row {
    int line;
    std::string text;
    std::string problem;
  };
  const auto nested = [](std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) text += "<a>";
    for (std::size_t i = 0; i < depth; ++i) text += "</a>";
    return text;
  };
  const std::string reference = "line 1: \"&\" is no reference that XML has";
  const std::string name = "line 1: a name is missing or begins with a wrong character";
  const std::string outside = "line 1: text stands outside the root";
  const Row rows[] = {
      {__LINE__,
       "<?xml version='1.0'?>\n<!-- <b> & --><?p <b> &?><a b='>' c=\"'\"><![CDATA[<b> &]]>&amp;&#x10FFFF;</a>\n", ""},
      {__LINE__, "<\xC3\x89l\xC3\xA9ment \xC2\xB7='1'/>", name},
      {__LINE__, "<\xC3\x89l\xC2\xB7ment/>", ""},
      {__LINE__, "<a\xC3\x97/>", "line 1: a tag does not end"},
      {__LINE__, "<1a/>", name},
      {__LINE__, "<a b/>", "line 1: an attribute has no value"},
      {__LINE__, "<a b=c/>", "line 1: an attribute's value has no quotes"},
      {__LINE__, "<a b='1'c='2'/>", "line 1: a tag does not end"},
      {__LINE__, "<a b='<'/>", "line 1: an attribute's value has a \"<\""},
      {__LINE__, "<a\nc='1' b='2'\nc='3'/>", "line 3: the attribute c stands twice in a tag"},
      {__LINE__, "<a>&nbsp;</a>", reference},
      {__LINE__, "<a b='&'/>", reference},
      {__LINE__, "<a>&#0;</a>", reference},
      {__LINE__, "<a>&#x1f;</a>", reference},
      {__LINE__, "<a>&#xD800;</a>", reference},
      {__LINE__, "<a>&#1114112;</a>", reference},
      {__LINE__, "<a>&#18446744073709551626;</a>", reference},
      {__LINE__, "<a>\n\x01</a>", "line 2: it has a character that XML does not have"},
      {__LINE__, "<a>\xEF\xBF\xBF</a>", "line 1: it has a character that XML does not have"},
      {__LINE__, "<!DOCTYPE a><a/>", "line 1: it has a document type (<!DOCTYPE)"},
      {__LINE__, "<a/><a/>", "line 1: it has a second root"},
      {__LINE__, "x<a/>", outside},
      {__LINE__, "<a/>x", outside},
      {__LINE__, "<![CDATA[]]><a/>", outside},
      {__LINE__, "</a>", "line 1: an end tag has no start"},
      {__LINE__, "<a>", "line 1: an element does not end"},
      {__LINE__, "<a", "line 1: a tag does not end"},
      {__LINE__, " ", "line 1: it has no element"},
      {__LINE__, "<a><!-- ", "line 1: a comment does not end"},
      {__LINE__, "<a><!-- a -- b --></a>", "line 1: a comment has two dashes"},
      {__LINE__, "<!----><a/><!-- --->", "line 1: a comment has two dashes"},
      {__LINE__, "<a><?xml version='1.0'?></a>", "line 1: an XML declaration stands within"},
      {__LINE__, nested(256), ""},
      {__LINE__, nested(257), "line 1: elements are nested over 256 deep"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.line);
    EXPECT_EQ(problemOf(row.text), row.problem);
  }
  std::string lines = "<a>1\r\n2\r3\n\r</a>";
  xml::requireCopyable(lines);
  EXPECT_EQ(lines, "<a>1\n2\n3\n\n</a>");
}

TEST(XMLStrict, ReadsUTF8AndUTF16Alone) {
  struct Row {
    int line;
    std::string bytes;
    std::string text;  ///< or the problem
  };
  const auto declared = [](const std::string& encoding) { return "<?xml version='1.0' encoding='" + encoding + "'?>"; };
  const auto wide = [](const std::string& text) {
    std::string bytes;
    for (const char c : text) bytes += c + "\0"s;
    return bytes;
  };
  const std::string half = "is not in UTF-16: it has half a character";
  const Row rows[] = {
      {__LINE__, "\xEF\xBB\xBF<a/>", "<a/>"},
      {__LINE__, declared("Utf-8"), declared("Utf-8")},
      {__LINE__, "\xFF\xFE" + wide(declared("UTF-16")), declared("UTF-16")},
      {__LINE__, wide("<"), "<"},
      {__LINE__, "\xFE\xFF\0<\xD8\x3D\xDE\x00\x20\xAC\0\xE9"s, "<\xF0\x9F\x98\x80\xE2\x82\xAC\xC3\xA9"},
      {__LINE__, "\0<\xDE\x00\0<"s, half},
      {__LINE__, "\0<\xD8\x3D\0<"s, half},
      {__LINE__, "\0<\xD8\x3D"s, "is not in UTF-16: half a character stands at its end"},
      {__LINE__, "\0<\0"s, "is not in UTF-16: it ends within a character"},
      {__LINE__, "<a>\xE9</a>", "is not in UTF-8"},
      {__LINE__, declared("ISO-8859-1"), "is in the encoding iso-8859-1, and only UTF-8 and UTF-16 are read"},
      {__LINE__, declared("UTF-16"), "is not in the encoding that it declares"},
      {__LINE__, wide(declared("UTF-8")), "is not in the encoding that it declares"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.line);
    std::string outcome;
    const std::string problem = failureOf([&] { outcome = xml::inUTF8(row.bytes); });
    EXPECT_EQ(problem.empty() ? outcome : problem, row.text);
  }
}
