#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLOutput.h"
#include "Platform/XML/XMLQuery.h"
#include "Tests/Tables.h"

namespace {

/// Writes the text in elements, attributes and comments, and reads it back. The document must have only characters that
/// XML allows.
std::string readBack(std::string_view text) {
  xml::OutputDocument document;
  xml::Section& root = document.setRoot(std::make_unique<xml::Section>("r", 0));
  root.setAttribute("a", text);
  root.appendComment(text);
  root.appendChild("e", text);
  xml::Element element = document.newElement("e");
  element.node().setAttribute("a", text);
  element.node().setText(text);
  root.append(std::move(element));
  const std::string bytes = written(document);
  EXPECT_TRUE(platform::isUTF8(bytes)) << bytes;
  for (const char c : bytes) EXPECT_TRUE(static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\t') << bytes;
  const std::size_t start = bytes.find("<!--") + 4;
  const std::size_t end = bytes.find("--", start);  // "--" must only be the end of the comment
  EXPECT_EQ(bytes.substr(end, 8), "-->\n  <e") << bytes;
  const auto again = parsed(bytes);
  const auto elements = xml::Query("e").all(again->root());
  const std::string value = elements.at(0).stringValue();
  EXPECT_EQ(elements.at(1).stringValue(), value);
  EXPECT_EQ(elements.at(1).attribute("a").value(), value);
  EXPECT_EQ(again->root().attribute("a").value(), value);
  return value;
}

/// The text of a document whose largest section has elements of these sizes, and how much was written before the end.
std::pair<std::string, std::size_t> grown(const std::vector<std::size_t>& sizes, bool isWrittenAhead) {
  std::string text;
  const xml::Sink sink = [&text](std::string_view piece) { text += piece; };
  xml::OutputDocument document;
  auto made = std::make_unique<xml::Section>("r", 0);
  xml::Section& root = *made;
  root.setAttribute("a", "1");
  root.appendChild("head", "text");
  root.appendSection("before").appendChild("b");
  xml::Section& large = root.appendSection("large");
  xml::Section& after = root.appendSection("after");
  if (isWrittenAhead) document.writeAhead(root, large, sink);
  for (const std::size_t size : sizes) {
    xml::Element element = document.newElement("e");
    element.node().setAttribute("size", std::to_string(size));
    element.node().appendChild("t", std::string(size, 'x'));
    large.append(std::move(element));
    after.appendChild("u", std::to_string(size));
  }
  root.appendComment("end");
  document.setRoot(std::move(made));
  const std::size_t ahead = text.size();
  document.serialize(sink);
  return {text, ahead};
}

}  // namespace

TEST(XMLOutputTest, WhatIsWrittenAheadIsTheSame) {
  const std::size_t megabyte = 1'000'000;
  for (const auto& [sizes, least] : std::vector<std::pair<std::vector<std::size_t>, std::size_t>>{
           {{}, 0},
           {{10}, 0},
           {std::vector<std::size_t>(30, megabyte / 10), megabyte},
           {std::vector<std::size_t>(100'000, 30), 4 * megabyte},
           {{3 * megabyte, 1, 1, 3 * megabyte, megabyte, megabyte, 5 * megabyte}, 13 * megabyte},
       }) {
    const auto [text, ahead] = grown(sizes, true);
    EXPECT_TRUE(text == grown(sizes, false).first) << sizes.size();
    EXPECT_GE(ahead, least);
    EXPECT_EQ(ahead == 0, least == 0);
  }
}

TEST(XMLOutputTest, OnlyCharactersAreWritten) {
  expectOutcomes({
      {__LINE__, readBack, "a\rb\r\nc\td", "a\rb\r\nc\td"},
      {__LINE__, readBack, "<a b='\"'>&amp;]]>", "<a b='\"'>&amp;]]>"},
      {__LINE__, readBack, "seven..<", "seven..<"},
      {__LINE__, readBack, "eight.. >", "eight.. >"},
      {__LINE__, readBack, "a--b-", "a--b-"},
      {__LINE__, readBack, std::string_view("a\0\x01\x1F\x7F", 5), "a\x7F"},
      {__LINE__, readBack, "\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD", "\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD"},
      {__LINE__, readBack, "a\xC3(\x80\xFF\xC0\xAF", "a("},
      {__LINE__, readBack, "a\xE0\x80\xAF\xED\xA0\x80\xF4\x90\x80\x80", "a"},
      {__LINE__, readBack, "a\xEF\xBF\xBE\xEF\xBF\xBF\xE2\x82", "a"},
  });
}

TEST(XMLOutputTest, SectionsStandWhereTheyWereAppended) {
  xml::OutputDocument document;
  xml::Section& root = document.setRoot(std::make_unique<xml::Section>("r", 0));
  root.setAttribute("n", "\"1\"");
  xml::Section& first = root.appendSection("s");
  root.appendSection("empty");
  root.appendChild("a");
  root.appendChild("b", "\x01");  // its only character is dropped: written as <b></b>
  const auto element = [&document] {
    xml::Element made = document.newElement("e");
    made.node().appendChild("b").appendChild("c", "<");
    made.node().appendChild("d", "\x01");
    made.node().appendChild("d", "");
    return made;
  };
  root.append(element());
  first.append(element());
  first.append(element());
  EXPECT_EQ(root.section("s"), &first);
  EXPECT_EQ(root.section("e"), nullptr);
  root.appendComment("end");
  const std::string e = "<e>\n@  <b>\n@    <c>&lt;</c>\n@  </b>\n@  <d></d>\n@  <d />\n@</e>\n";
  const auto indented = [&e](const std::string& by) {
    std::string text = by + e;
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@')) text.replace(at, 1, by);
    return text;
  };
  EXPECT_EQ(written(document), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r n=\"&quot;1&quot;\">\n  <s>\n" +
                                   indented("    ") + indented("    ") + "  </s>\n  <empty />\n  <a />\n  <b></b>\n" +
                                   indented("  ") + "  <!--end-->\n</r>\n");
}

/// Elements that share memory must stay valid as long as one of them is owned, whatever the size of their texts.
TEST(XMLOutputTest, ElementsKeepTheirMemory) {
  for (const std::size_t size : {4U, 100'000U}) {
    xml::OutputDocument document;
    xml::Section& root = document.setRoot(std::make_unique<xml::Section>("r", 0));
    const auto element = [&](const char* name, char c) {
      xml::Element made = document.newElement(name);
      made.node().appendChild("t", std::string(size, c));
      return made;
    };
    xml::Element waiting = element("waiting", 'w');
    std::optional<xml::Element> late;  // outlives the scope that it was made in
    for (int round = 0; round < 3; ++round) {
      const auto scope = document.scope();
      if (!late) late = element("late", 'l');
      xml::Element outer = document.newElement("outer");
      {
        xml::Element inner = element("inner", 'i');
        xml::Element copy = inner.node().copy();
        outer.node().append(std::move(inner));
        copy.node().insertChild("first", "1", 0);
        copy = document.newElement("other");
      }
      const xml::Element other = element("other", 'o');
      root.append(std::move(outer));
    }
    root.append(std::move(waiting));
    root.append(std::move(*late));
    const std::string inner = "<outer><inner><t>" + std::string(size, 'i') + "</t></inner></outer>";
    EXPECT_EQ(parsed(written(document))->root().markup(), "<r>" + inner + inner + inner + "<waiting><t>" +
                                                              std::string(size, 'w') + "</t></waiting><late><t>" +
                                                              std::string(size, 'l') + "</t></late></r>");
  }
}
