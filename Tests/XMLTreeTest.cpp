#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLQuery.h"
#include "Platform/XML/XMLTree.h"
#include "Tests/Tables.h"

namespace {

/// The document for the queries. The attribute "n" names each element.
constexpr const char* kPlan = R"(<scenario xmlns="http://korvella/1" id="s">
  <project n="p"><title n="1"/><title n="2"/></project>
  <task id="t1" n="a"><link idref="t2" n="l1"/><link n="l2"/></task>
  <task id="t2" n="b"><link n="l3"/><assignment idref="r1" n="x1"/></task>
  <task id="t2" n="c"><assignment idref="r1" n="x2"/><task id="t1" n="d"><assignment idref="r1" n="x3"/></task></task>
  <task id="it's" n="q"><assignment idref="it's" n="x4"/></task><task id='say "a=b"' n="r"/><task id="" n="e"/>
  <other><project n="o"><title n="3"/></project><title n="4"/></other>
</scenario>)";

/// The names of all matches, below the root or below the element that is selected in front of a bar. Query::last() must
/// find the last of them.
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

/// What "get" returns for the root, after "guessed" if something in the document was guessed; "none" and the reason if
/// there is no document.
template <typename Get>
std::string reading(std::string_view bytes, Get get) {
  const xml::Reading reading = xml::Document::read(std::string(bytes));
  if (!reading.document) return "none: " + reading.problem;
  return (reading.isGuessed ? "guessed " : "") + get(reading.document->root());
}
/// The text of the root, or of its child "x".
std::string read(std::string_view bytes) {
  return reading(bytes, [](xml::Node root) {
    const xml::Node child = xml::Query("x").last(root).last;
    return (child ? child : root).stringValue();
  });
}
/// The name of the root and the value of its attribute "n".
std::string readRoot(std::string_view bytes) {
  return reading(bytes, [](xml::Node root) { return fmt::format("{} {}", root.name(), root.attribute("n").value()); });
}

constexpr const char* kTwoEntities = "<!DOCTYPE a [<!ENTITY in '&#x41;'><!ENTITY co \"R&#38;amp;D &in;\">]>";
std::string typed(const std::string& declarations, const std::string& root) {
  return "<!DOCTYPE a SYSTEM 'a>b' [" + declarations + "]>\n" + root;
}
/// A document with this number of entities, each of which contains the one before.
std::string nested(int entities) {
  std::string declarations = "<!ENTITY e1 'x'>";
  for (int i = 2; i <= entities; ++i) declarations += fmt::format("<!ENTITY e{} '&e{};'>", i, i - 1);
  return typed(declarations, fmt::format("<a>&e{};</a>", entities));
}
/// A document of 1000 characters that refers this many times to an entity of 100 characters.
std::string grown(int times, char character = 'x') {
  const std::string root =
      typed("<!ENTITY e '" + std::string(100, character) + "'>", "<a>" + repeated("&e;", times) + "</a>");
  return root + std::string(1000 - root.size(), ' ');
}

/// The text as UTF-16, with the high byte first.
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

TEST(XMLTreeTest, TextsAreWhole) {
  const std::string many = numbered("<n{}/>", 300);
  expectOutcomes({
      {__LINE__, read, "<a> </a>", " "},
      {__LINE__, read, "<a>x<b>y<!-- z --></b>&lt;&#13;<![CDATA[<&]]></a>", "xy<\r<&"},
      {__LINE__, read, "<a><b>x</b> <b>\n\t</b></a>", "x \n\t"},
      {__LINE__, read, "<a><![CDATA[R&D]]> <![CDATA[Lab]]> Ltd</a>", "R&D Lab Ltd"},
      {__LINE__, read, "<a>12<!-- --> <!-- -->30</a>", "12 30"},
      {__LINE__, read, "<a> <!-- -->x</a>", " x"},
      {__LINE__, read, "<a> <?p q?> </a>", "  "},
      {__LINE__, read, "\xEF\xBB\xBF<a>\n<x>\xC3\xB6 <b>&amp;</b> <i>z</i> </x> \n<b/></a>", "\xC3\xB6 & z "},
      {__LINE__, read, "<a>&amp;\r\n<x><b>1</b> <b>2</b></x> <!-- > --></a>", "1 2"},
      {__LINE__, read, "<a><x><b>1</b> <b>2</b></x><![CDATA[x]]></a>", "1 2"},
      {__LINE__, read, "<a><x><b>1</b> <b>2</b></x> x</a>", "1 2"},
      {__LINE__, read, "<a>Call <b>Ann</b> <i>Lee</c> </a>", "guessed Call Ann Lee "},
      {__LINE__, read, "<a>before" + many + "<x>behind many names</x></a>", "behind many names"},
  });
}

TEST(XMLTreeTest, SourcesThatChangeMeanwhile) {
  const auto reading = xml::Document::read("<a><x><b>1</b> <b>2</b></x></a>", [] { return std::string("<a/>"); });
  EXPECT_EQ(xml::Query("x").last(reading.document->root()).last.stringValue(), "12");
}

TEST(XMLTreeTest, Excerpts) {
  const auto excerpted = [](std::string_view bytes) -> std::string {
    const auto excerpt = parsed(bytes)->excerpt({{"t", "id", {"a", "b"}}, {"r", "id", {}}});
    return excerpt ? excerpt->root().markup() : "none";
  };
  expectOutcomes({
      {__LINE__, excerpted,
       "<s><x id='1'/><t id='1' n='2'><a>1</a><c/><a m='3'>2</a></t><t><a/></t><r id=''>x<a/></r></s>",
       "<r><t id=\"1\"><a>1</a><a m=\"3\">2</a></t><r id=\"\"/></r>"},
      {__LINE__, excerpted, "<s><t id='&lt;&quot;'><b> &amp;&#13;\n</b><b> </b><a/></t><t id='2'/><t id='2'/></s>",
       "<r><t id=\"&lt;&quot;\"><b> &amp;&#13;\n</b><b> </b><a/></t><t id=\"2\"/><t id=\"2\"/></r>"},
      {__LINE__, excerpted, "<s><t id='1'><c><a> <b/> </a></c></t></s>", "<r><t id=\"1\"/></r>"},
      {__LINE__, excerpted, "<s><t id='1'><a><b>1</b> <b>2</b></a></t></s>", "none"},
  });
}

TEST(XMLTreeTest, Encodings) {
  constexpr std::string_view kEBCDIC =
      "\x4C\x6F\xA7\x94\x93\x40\xA5\x85\x99\xA2\x89\x96\x95\x7E\x7D\xF1\x4B\xF0\x7D\x40\x85\x95\x83\x96\x84\x89\x95\x87"
      "\x7E\x7D\xC9\xC2\xD4\xF1\xF0\xF4\xF7\x7D\x6F\x6E\x4C\x81\x6E\xAD\xA7\xBD\x4C\x61\x81\x6E";
  expectOutcomes({
      {__LINE__, read, "\xEF\xBB\xBF<?xml version='1.0' encoding=\"utf-8\"?><a>\xC3\xB6</a>", "\xC3\xB6"},
      {__LINE__, read, "<?xml version='1.0' encoding='UTF8'?><a>\xC3\xB6</a>", "\xC3\xB6"},
      {__LINE__, read, "<?xml version='1.0' encoding='unicode-1-1-utf-8'?><a>\xC3\xB6</a>", "\xC3\xB6"},
      {__LINE__, read, "<?xml version='1.0' encoding='UTF-16'?><a>\xC3\xB6</a>", "\xC3\xB6"},
      {__LINE__, read, "<?xml version='1.0' encoding='x-none'?><a>\xC3\xB6</a>", "guessed \xC3\xB6"},
      {__LINE__, read, "<?xml version='1.0' encoding='x-none'?><a>\xF6</a>", "guessed \xC3\xB6"},
      {__LINE__, read, "<?xml version='1.0' encoding='IBM037'?><a>\xC3\xB6</a>", "guessed \xC3\xB6"},
      {__LINE__, read, "<?xml version='1.0' encoding='latin1'?><a>\xF6</a>", "\xC3\xB6"},
      {__LINE__, read, "<?xml version='1.0' encoding='shift_jis'?><a>\x83\x65</a>", "guessed \xE3\x83\x86"},
      {__LINE__, read, "<?xml version='1.0' encoding='euc-jp'?><a>\xE2\x82\xAC</a>", "guessed \xE2\x82\xAC"},
      {__LINE__, read, "<?xml version='1.0' encoding='ascii'?><a>\xC3\xB6</a>", "\xC3\xB6"},
      // Decoding this would take quadratic time.
      {__LINE__, read, "<?xml version='1.0' encoding='ibm-25546'?><a>\x0E!o\x0F</a>", "guessed !o"},
      {__LINE__, read, utf16(kWide), "\xC3\xB6 \xE2\x82\xAC"},
      {__LINE__, read, utf16(kWide.substr(1)), "\xC3\xB6 \xE2\x82\xAC"},
      {__LINE__, readRoot, {"<\0\0\0b\0\0\0/\0\0\0>\0\0\0", 16}, "b "},
      {__LINE__, read, utf16(u"\uFEFF<a>\xD800x</a>"), "guessed \xEF\xBF\xBDx"},
      {__LINE__, read, kEBCDIC, "guessed [x]"},
      {__LINE__, read, "<a>R&D for B&B \xE9\xC3\xA9\x80\x81\xC3</a>",
       "guessed R&D for B&B \xC3\xA9\xC3\xA9\xE2\x82\xAC\xEF\xBF\xBD\xC3\x83"},
      {__LINE__, read, {"<a>x\0y</a>", 10}, "guessed xy"},
  });
}

TEST(XMLTreeTest, References) {
  const std::string beyond = "<a>&#4294967361;&#x100000041;&#x110000;&#xD800;A";
  const std::string two = kTwoEntities;
  expectOutcomes({
      {__LINE__, read, beyond + "</a>", "A"},
      {__LINE__, read, beyond + "<b></a>", "guessed A"},
      {__LINE__, readRoot, "<a n='&#4294967361;&#65;'/>", "a A"},
      {__LINE__, read, "<a>&#0;x</a>", "guessed x"},
      {__LINE__, read, "<a>&#0;x<b></a>", "guessed x"},
      {__LINE__, read, "<a><![CDATA[&#0;]]></a>", "&#0;"},
      {__LINE__, read, two + "<a>&co; &lt;&none;</a>", "R&D A <&none;"},
      {__LINE__, read, two + "<a>&co; &lt;&none;<b></a>", "guessed R&D A <&none;"},
      {__LINE__, read, two + "<a><!--&co;--><![CDATA[&co;]]></a>", "&co;"},
      {__LINE__, readRoot, two + "<a n='&co;'/>", "a R&D A"},
      {__LINE__, readRoot, typed("<!ENTITY q '&#34;&#60;&#39;'>", "<a n='>&q;' m='>'/>"), "a >\"<'"},
      {__LINE__, read, typed("<!ENTITY m '<b>1</b> <b n=\"&#38;m;\">2</b>'>", "<a>&m;</a>      "),
       "none: its entities are nested more than 20 deep"},
      {__LINE__, read, typed("<!ENTITY m '<b>1</b> <b>2</b>'>", "<a>&m;</a>"), "1 2"},
      {__LINE__, read, typed("<!ENTITY e '1'><!ENTITY e '2'><!ENTITY amp '3'>", "<a>&e;&amp;</a>"), "1&"},
      {__LINE__, read, typed("<!ENTITY e SYSTEM 'f'><!ENTITY f PUBLIC \"f\" 'f' NDATA g>", "<a>&e;&f;</a>"), ""},
      {__LINE__, read, typed("<!-- <!ENTITY e '1'> --><!ENTITY % p '<!ENTITY e \"2\">'> %p;", "<a>&e;</a>"), "&e;"},
      {__LINE__, read, "<!DOCTYPE a [<!ENTITY e '1'> <a>&e;</a>", "guessed 1"},
      {__LINE__, read, nested(20), "x"},
      {__LINE__, read, nested(21), "none: its entities are nested more than 20 deep"},
      {__LINE__, read, grown(101), "none: its entities expand to more than ten times its size"},
      {__LINE__, read, grown(100), std::string(10000, 'x')},
      // Each ">" counts as "&gt;", which has four characters.
      {__LINE__, read, grown(26, '>'), "none: its entities expand to more than ten times its size"},
  });
}

TEST(XMLTreeTest, Repairs) {
  const std::string parameters = numbered(" a{}='>'", 1001);
  expectOutcomes({
      {__LINE__, read, "<a><![CDATA[" + parameters + "]]><b></a>", "guessed " + parameters},
      {__LINE__, read, "<a>" + parameters + "<b></a>", "guessed " + parameters},
      {__LINE__, read, "<a" + parameters + "><b></a>", "none: line 1: Start-end tags mismatch"},
      {__LINE__, read, "<a><b>x</c>y</a>", "guessed xy"},
      {__LINE__, read, "<a>x</a> <!-- y --> <a>z</a>", "guessed x"},
      {__LINE__, read, {"<a>x</a>\0<a>y</a>", 17}, "guessed x"},
      {__LINE__, read, {"<a>x</a>\0\n\0", 11}, "x"},
      {__LINE__, read, "<!-- x --><a>x</a> <!-- y -->", "x"},
      {__LINE__, read, "<a>1 < 2 & ]]> <!x> <b>3</a>", "guessed 1 < 2 & ]]> <!x> 3"},
      {__LINE__, read, "<?xml version='1.0'><a>x</a>", "guessed x"},
      {__LINE__, read, "<a><x p=q r='s'>1</x><b <c/>2</a>", "guessed 1"},
      {__LINE__, readRoot, "<p:a xmlns:p='u' n='&amp;\"&lt;&#9;'><p:b></p:a>", "guessed p:a &\"<\t"},
      {__LINE__, read, "", "none: it is empty"},
      {__LINE__, read, "<!-- nothing -->", "none: No document element found"},
      {__LINE__, read, "<!-- -->\n\n<!-- ", "none: line 3: Error parsing comment"},
  });
}
