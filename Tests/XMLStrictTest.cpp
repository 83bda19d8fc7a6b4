#include "Platform/XML/XMLStrict.h"
#include "Platform/XML/XMLStrictEncoding.h"
#include "Tests/Tables.h"

namespace {

using namespace std::string_literals;

std::string copyable(std::string_view bytes) {
  std::string text(bytes);
  xml::requireCopyable(text);
  return text;
}
std::string refusal(std::string_view bytes) {
  static_cast<void>(copyable(bytes));
  return "";
}
std::string inUTF8(std::string_view bytes) { return xml::inUTF8(std::string(bytes)); }

}  // namespace

TEST(XMLStrict, RefusesWhatTheTreesParserWouldPassOn) {
  const auto nested = [](int depth) { return repeated("<a>", depth) + repeated("</a>", depth); };
  const std::string reference = "raises line 1: \"&\" is no reference that XML has";
  const std::string name = "raises line 1: a name is missing or begins with a wrong character";
  const std::string outside = "raises line 1: text stands outside the root";
  expectOutcomes({
      {__LINE__, refusal,
       "<?xml version='1.0'?>\n<!-- <b> & --><?p <b> &?><a b='>' c=\"'\"><![CDATA[<b> &]]>&amp;&#x10FFFF;</a>\n", ""},
      {__LINE__, refusal, "<\xC3\x89l\xC3\xA9ment \xC2\xB7='1'/>", name},
      {__LINE__, refusal, "<\xC3\x89l\xC2\xB7ment/>", ""},
      {__LINE__, refusal, "<a\xC3\x97/>", "raises line 1: a tag does not end"},
      {__LINE__, refusal, "<1a/>", name},
      {__LINE__, refusal, "<a b/>", "raises line 1: an attribute has no value"},
      {__LINE__, refusal, "<a b=c/>", "raises line 1: an attribute's value has no quotes"},
      {__LINE__, refusal, "<a b='1'c='2'/>", "raises line 1: a tag does not end"},
      {__LINE__, refusal, "<a b='<'/>", "raises line 1: an attribute's value has a \"<\""},
      {__LINE__, refusal, "<a\nc='1' b='2'\nc='3'/>", "raises line 3: the attribute c stands twice in a tag"},
      {__LINE__, refusal, "<a>&nbsp;</a>", reference},
      {__LINE__, refusal, "<a b='&'/>", reference},
      {__LINE__, refusal, "<a>&#0;</a>", reference},
      {__LINE__, refusal, "<a>&#x1f;</a>", reference},
      {__LINE__, refusal, "<a>&#xD800;</a>", reference},
      {__LINE__, refusal, "<a>&#1114112;</a>", reference},
      {__LINE__, refusal, "<a>&#18446744073709551626;</a>", reference},
      {__LINE__, refusal, "<a>\n\x01</a>", "raises line 2: it has a character that XML does not have"},
      {__LINE__, refusal, "<a>\xEF\xBF\xBF</a>", "raises line 1: it has a character that XML does not have"},
      {__LINE__, refusal, "<!DOCTYPE a><a/>", "raises line 1: it has a document type (<!DOCTYPE)"},
      {__LINE__, refusal, "<?xml version='1.0'\n encoding=\"UTF-8\" standalone='no' ?><a/>", ""},
      {__LINE__, refusal, "<?xml version='1.0' encodg='UTF-8'?><a/>", "raises line 1: the declaration is malformed"},
      {__LINE__, refusal, "<a>]]></a>", "raises line 1: a text has \"]]>\""},
      {__LINE__, refusal, "<a/><a/>", "raises line 1: it has a second root"},
      {__LINE__, refusal, "x<a/>", outside},
      {__LINE__, refusal, "<a/>x", outside},
      {__LINE__, refusal, "<![CDATA[]]><a/>", outside},
      {__LINE__, refusal, "</a>", "raises line 1: an end tag has no start"},
      {__LINE__, refusal, "<a>", "raises line 1: an element does not end"},
      {__LINE__, refusal, "<a", "raises line 1: a tag does not end"},
      {__LINE__, refusal, " ", "raises line 1: it has no element"},
      {__LINE__, refusal, "<a><!-- ", "raises line 1: a comment does not end"},
      {__LINE__, refusal, "<a><!-- a -- b --></a>", "raises line 1: a comment has two dashes"},
      {__LINE__, refusal, "<!----><a/><!-- --->", "raises line 1: a comment has two dashes"},
      {__LINE__, refusal, "<a><?xml version='1.0'?></a>", "raises line 1: an XML declaration stands within"},
      {__LINE__, refusal, nested(256), ""},
      {__LINE__, refusal, nested(257), "raises line 1: elements are nested over 256 deep"},
      {__LINE__, copyable, "<a>1\r\n2\r3\n\r</a>", "<a>1\n2\n3\n\n</a>"},
  });
}

TEST(XMLStrict, ReadsUTF8AndUTF16Alone) {
  const auto declared = [](const std::string& encoding) { return "<?xml version='1.0' encoding='" + encoding + "'?>"; };
  const auto wide = [](const std::string& text) {
    std::string bytes;
    for (const char c : text) bytes += c + "\0"s;
    return bytes;
  };
  const std::string half = "raises is not in UTF-16: it has half a character";
  expectOutcomes({
      {__LINE__, inUTF8, "\xEF\xBB\xBF<a/>", "<a/>"},
      {__LINE__, inUTF8, declared("Utf-8"), declared("Utf-8")},
      {__LINE__, inUTF8, "\xFF\xFE" + wide(declared("UTF-16")), declared("UTF-16")},
      {__LINE__, inUTF8, wide("<"), "<"},
      {__LINE__, inUTF8, "\xFE\xFF\0<\xD8\x3D\xDE\x00\x20\xAC\0\xE9"s, "<\xF0\x9F\x98\x80\xE2\x82\xAC\xC3\xA9"},
      {__LINE__, inUTF8, "\0<\xDE\x00\0<"s, half},
      {__LINE__, inUTF8, "\0<\xD8\x3D\0<"s, half},
      {__LINE__, inUTF8, "\0<\xD8\x3D"s, "raises is not in UTF-16: half a character stands at its end"},
      {__LINE__, inUTF8, "\0<\0"s, "raises is not in UTF-16: it ends within a character"},
      {__LINE__, inUTF8, "<a>\xE9</a>", "raises is not in UTF-8"},
      {__LINE__, inUTF8, declared("KOI8-R"), "raises is in the encoding koi8-r, and only UTF-8 and UTF-16 are read"},
      {__LINE__, inUTF8, declared("UTF-16"), "raises is not in the encoding that it declares"},
      {__LINE__, inUTF8, wide(declared("UTF-8")), "raises is not in the encoding that it declares"},
  });
}
