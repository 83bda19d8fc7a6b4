#include "Platform/XML/XMLStrictEncoding.h"

#include <fmt/format.h>

#include <cstdint>

#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLEncoding.h"

namespace xml {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

[[noreturn]] void fail(std::string reason) { throw platform::Exception("XMLException", std::move(reason)); }

enum class Form { kUTF8, kUTF16LittleEndian, kUTF16BigEndian };

/// Without a mark, UTF-16 has a zero byte beside the "<" that every document begins with.
Form formOf(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with(std::string_view("<\0", 2))) return Form::kUTF16LittleEndian;
  if (bytes.starts_with("\xFE\xFF") || bytes.starts_with(std::string_view("\0<", 2))) return Form::kUTF16BigEndian;
  return Form::kUTF8;
}

void appendUTF8(std::string& to, std::uint32_t character) {
  const auto append = [&to](std::uint32_t byte) { to += static_cast<char>(byte); };
  const auto appendRest = [&](std::uint32_t shift) { append(0x80U | ((character >> shift) & 0x3FU)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0U | character >> 6U);
    appendRest(0);
  } else if (character < 0x10000) {
    append(0xE0U | character >> 12U);
    appendRest(6);
    appendRest(0);
  } else {
    append(0xF0U | character >> 18U);
    appendRest(12);
    appendRest(6);
    appendRest(0);
  }
}

/// Reads UTF-16 character by character; a pair of surrogates is one character.
class UTF16Reader {
 public:
  UTF16Reader(std::string_view bytes, bool isBigEndian) : bytes_(bytes), isBigEndian_(isBigEndian) {}

  [[nodiscard]] std::string asUTF8() {
    if (bytes_.size() % 2 != 0) fail("is not in UTF-16: it ends within a character");
    std::string text;
    text.reserve(bytes_.size());
    while (at_ < bytes_.size()) appendUTF8(text, nextCharacter());
    return text;
  }

 private:
  std::uint32_t nextUnit() {
    if (at_ >= bytes_.size()) fail("is not in UTF-16: half a character stands at its end");
    const auto first = static_cast<unsigned char>(bytes_[at_]);
    const auto second = static_cast<unsigned char>(bytes_[at_ + 1]);
    at_ += 2;
    return isBigEndian_ ? first * 256U + second : second * 256U + first;
  }

  std::uint32_t nextCharacter() {
    const std::uint32_t unit = nextUnit();
    if (unit < 0xD800 || unit > 0xDFFF) return unit;
    const std::uint32_t low = unit < 0xDC00 ? nextUnit() : 0;
    if (low < 0xDC00 || low > 0xDFFF) fail("is not in UTF-16: it has half a character");
    return 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
  }

  std::string_view bytes_;
  bool isBigEndian_;
  std::size_t at_ = 0;
};

}  // namespace

std::string inUTF8(std::string bytes) {
  const Form form = formOf(bytes);
  const bool isUTF8 = form == Form::kUTF8;
  if (!isUTF8) bytes = UTF16Reader(bytes, form == Form::kUTF16BigEndian).asUTF8();
  if (bytes.starts_with(kMark)) bytes.erase(0, kMark.size());
  const std::string declared = declaredEncoding(bytes);
  if (!declared.empty() && declared != "utf-8" && !declared.starts_with("utf-16")) {
    fail(fmt::format("is in the encoding {}, and only UTF-8 and UTF-16 are read", declared));
  }
  if (!declared.empty() && (declared == "utf-8") != isUTF8) fail("is not in the encoding that it declares");
  if (!platform::isUTF8(bytes)) fail("is not in UTF-8");
  return bytes;
}

}  // namespace xml
