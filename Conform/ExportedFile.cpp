#include "Conform/ExportedFile.h"

#include <fmt/format.h>

#include <cstdint>
#include <new>
#include <string_view>
#include <utility>

#include "Conform/Facts.h"
#include "Conform/Failure.h"
#include "Platform/System/FileReading.h"
#include "Platform/XML/XMLStrict.h"
#include "Platform/XML/XMLStrictEncoding.h"

namespace conform {

std::string readExported(const std::string& path) {
  std::string problem;
  constexpr std::uint64_t kLargest = std::uint64_t{4} << 30;
  auto bytes = platform::readFile(path, kLargest, &problem);
  if (!bytes) fail(fmt::format("cannot read {}: {}", path, problem));
  return std::move(*bytes);
}

std::string wellFormedText(std::string bytes) {
  std::string text = xml::inUTF8(std::move(bytes));
  xml::requireCopyable(text);
  return text;
}

pugi::xml_node parseExported(pugi::xml_document& document, std::string& text, unsigned options) {
  // Without this, pugixml silently drops nodes when memory runs out; operator new throws. It must be set before
  // anything is allocated, since memory from one pair of functions must not be freed by the other.
  pugi::set_memory_management_functions(&::operator new, &::operator delete);
  const auto result = document.load_buffer_inplace(text.data(), text.size(), options, pugi::encoding_utf8);
  if (!result) fail(result.description());
  const pugi::xml_node root = document.document_element();
  const std::string_view name = root.name();
  if (name.ends_with(":Project")) fail("the names of its elements have a prefix, and only names without one are read");
  if (name != "Project" || root.attribute("xmlns").value() != kNamespace) {
    fail("this is no Microsoft Project XML file");
  }
  return root;
}

}  // namespace conform
