#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLQuery.h"
#include "Platform/XML/XMLTree.h"
#include "Tests/Tables.h"

namespace {

/// A document to query: an element is known by its "n".
constexpr const char* kPlan = R"(<scenario xmlns="http://korvella/1" id="s">
  <project n="p"><title n="1"/><title n="2"/></project>
  <task id="t1" n="a"><link idref="t2" n="l1"/><link n="l2"/></task>
  <task id="t2" n="b"><link n="l3"/><assignment idref="r1" n="x1"/></task>
  <task id="t2" n="c"><assignment idref="r1" n="x2"/><task id="t1" n="d"><assignment idref="r1" n="x3"/></task></task>
  <task id="it's" n="q"><assignment idref="it's" n="x4"/></task><task id='say "a=b"' n="r"/><task id="" n="e"/>
  <other><project n="o"><title n="3"/></project><title n="4"/></other>
</scenario>)";

/// The matches in order, below the root or the element named in front of a bar; the last must be the one found alone.
std::string matches(std::string_view query) {
  const auto document = parsed(kPlan);
  xml::Node context = document->root();
  if (const std::size_t bar = query.find('|'); bar != std::string_view::npos) {
    context = xml::Query(query.substr(0, bar)).last(context).last;
    query.remove_prefix(bar + 1);
  }
  std::string names;
  const auto all = xml::Query(query).all(context);
  for (const xml::Node node : all) names += fmt::format("{} ", node.attribute("n").value());
  const xml::Match match = xml::Query(query).last(context);
  EXPECT_EQ(match.count, std::min<std::size_t>(all.size(), 2));
  EXPECT_EQ(match.last, all.empty() ? xml::Node() : all.back());
  return names;
}

/// The text of a document, "repaired" in front of it when the first reading refuses it.
std::string read(std::string_view bytes) {
  if (const auto document = xml::Document::parse(std::string(bytes))) return document->root().stringValue();
  const auto document = xml::Document::parseRepaired(bytes);
  return document ? "repaired " + document->root().stringValue() : "none";
}
/// Of high bytes first.
std::string utf16(std::u16string_view text) {
  std::string bytes;
  for (const int unit : text) bytes += {static_cast<char>(unit >> 8), static_cast<char>(unit)};
  return bytes;
}
const std::u16string kWide = u"\uFEFF<?xml version='1.0' encoding='UTF-16'?><a>\u00F6 \u20AC</a>";

}  // namespace

TEST(XMLTreeTest, Queries) {
  expectOutcomes({
      {__LINE__, matches, "task", "a b c q r e "},
      {__LINE__, matches, "task/link", "l1 l2 l3 "},
      {__LINE__, matches, "task[@id='t2']", "b c "},
      {__LINE__, matches, "task[@id='it's']", "q "},
      {__LINE__, matches, "task[@id='say \"a=b\"']", "r "},
      {__LINE__, matches, "task[@id='']", "e "},
      {__LINE__, matches, "task[@id='t2']|task", "d "},
      {__LINE__, matches, "task[@id='t1']|link[@idref]", "l1 "},
      {__LINE__, matches, "task[@id='t2']|//project/title", "1 2 3 "},
      {__LINE__, matches, "//assignment[@idref='r1' and ../@id='t2']", "x1 x2 "},
      {__LINE__, matches, "//assignment[@idref='r2' and ../@id='t1']", ""},
      {__LINE__, matches, "//assignment[@idref='it's' and ../@id='it's']", "x4 "},
  });
}

TEST(XMLTreeTest, Reading) {
  expectOutcomes({
      {__LINE__, read, "<a> </a>", " "},
      {__LINE__, read, "<a><b>x</b> <b>\n\t</b></a>", "x\n\t"},
      {__LINE__, read, "<a>x<b>y<!-- z --></b>&lt;&#13;<![CDATA[<&]]></a>", "xy<\r<&"},
      {__LINE__, read, "\xEF\xBB\xBF<?xml version='1.0' encoding=\"utf-8\"?><a>\xC3\xB6</a>", "\xC3\xB6"},
      {__LINE__, read, utf16(kWide), "\xC3\xB6 \xE2\x82\xAC"},
      {__LINE__, read, "<a><b>x</c>y</a>", "repaired xy"},
      {__LINE__, read, "<!-- nothing -->", "none"},
  });
}
