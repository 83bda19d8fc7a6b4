#include "KVMSPCommon/MSPCExtensions.h"
#include "Tests/Tables.h"

namespace {

/// The value of "x" in the element <s ...>, given without its "<s"; then, after a bar, the error if there is one.
template <auto kFunction>
std::string x(std::string_view rest) {
  const auto document = parsed(fmt::format("<s{}</s>", rest));
  XQueryError error;
  const std::string value = shown(kFunction(document->root(), "x", &error));
  if (!error) return value;
  const bool isGeneral = error.domain.ends_with("KVMSPFilter.GeneralErrorDomain");
  EXPECT_TRUE(isGeneral || error.domain.ends_with("KVMSPFilter.XQueryErrorDomain"));
  return fmt::format("{}|{}{} {}", value, isGeneral ? "G" : "X", error.code, error.description);
}
constexpr Operation flat = apply<&stringByReplacingOccurrencesOfNewline>;

}  // namespace

TEST(MSPCExtensionsTest, ValuesAndErrors) {
  expectOutcomes({
      {__LINE__, x<&stringValueForXQuery>, ">", "none|X1 "},
      {__LINE__, x<&stringValueForXQuery>, "><x>One</x><y/><x>Two</x>", "Two|X2 "},
      {__LINE__, x<&intValueForXQuery>, ">", "0|X1 "},
      {__LINE__, x<&intValueForXQuery>, "><x> -12abc</x>", "-12"},
      {__LINE__, x<&intValueForXQuery>, "><x>abc</x>", "raises Failed to get int value from XML node: <x>abc</x>"},
      {__LINE__, x<&floatValueForXQuery>, "><x/>", "raises Failed to get float value from XML node: <x/>"},
      {__LINE__, x<&boolValueForXQuery>, ">", "false|X1 "},
      {__LINE__, x<&boolValueForXQuery>, "><x> YES\n</x>", "true"},
      {__LINE__, x<&boolValueForXQuery>, "><x>no</x><x>True</x>", "true|X2 "},
      {__LINE__, x<&boolValueForXQuery>, "><x>2</x>", "true"},
      {__LINE__, x<&boolValueForXQuery>, "><x>0</x>", "false"},
      {__LINE__, x<&boolValueForXQuery>, "><x>1.5 </x>", "false|G2 Failed to get boolean value from string: \"1.5 \""},
      {__LINE__, x<&boolAttributeForName>, " y='1'>", "false|X3 Failed to find arrtibute 'x' in element 's'."},
      {__LINE__, flat, "a\r\xE2\x80\xA8x", "a\r x"},
      {__LINE__, flat, "a&#x0A;b\rc", "a&#x0A;b c"},
      {__LINE__, flat, "a&#x0D;&#x0d;&#x2028;&#x0A;b&#x0a;", "a&#x0D;&#x0d;&#x2028;&#x0A;b "},
      {__LINE__, flat, "<![CDATA[a&#x0A;b\nc", "<![CDATA[a&#x0A;b c"},
      {__LINE__, flat, " <![CDATA[a&#x2029;b", " <![CDATA[a b"},
  });
}

TEST(MSPCExtensionsTest, Building) {
  xml::OutputDocument document;
  xml::Section& root = document.setRoot(std::make_unique<xml::Section>("s", 0));
  xml::Element made = document.newElement("r");
  const xml::OutputNode r = made;
  addChildElementWithName(r, "a");
  addChildElementWithName(r, "b", "<&>");
  insertChildElementWithName(r, "c", "1", 1);
  insertChildElementWithName(r, "d", std::nullopt, 0);
  const xml::OutputNode comment = addComment(r, std::nullopt);
  insertComment(r, "first", 0);
  setAttributeWithName(r, "n");
  setAttributeWithName(r, "m", "1");
  setAttributeWithName(r, "m");
  EXPECT_EQ(setAttributeWithName(r, "n", "\"2\"")->markup, "&quot;2&quot;");
  root.append(std::move(made));
  const std::string text = written(document);
  EXPECT_EQ(text.substr(text.find("  <r")),
            "  <r n=\"&quot;2&quot;\" m=\"1\">\n    <!--first-->\n    <d />\n    <a />\n    <c>1</c>\n"
            "    <b>&lt;&amp;&gt;</b>\n    <!---->\n  </r>\n</s>\n");
  const std::string behind = " to an object which is not NSXMLElementProxy.";
  EXPECT_EQ(failureOf([comment] { addChildElementWithName(comment, "x"); }),
            "Sent message addChildElementWithName:stringValue:" + behind);
  EXPECT_EQ(failureOf([comment] { setAttributeWithName(comment, "x"); }),
            "Sent message setAttributeWithName:stringValue:" + behind);
}
