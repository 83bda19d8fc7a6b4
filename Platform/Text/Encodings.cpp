#include "Platform/Text/Encodings.h"

#include <unicode/ucnv.h>

#include <cstdint>
#include <limits>
#include <memory>

#include "Platform/Text/Status.h"

namespace platform {
namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

Converter openConverter(const std::string& encoding) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(encoding.c_str(), &status), &ucnv_close);
  if (hasFailed(status)) converter.reset();
  return converter;
}

/// Decodes the bytes into the space; returns the text's length, also when the space is too small.
std::int32_t convert(UConverter* converter, std::string_view bytes, std::string& space, UErrorCode& status) {
  status = U_ZERO_ERROR;
  return ucnv_toAlgorithmic(UCNV_UTF8, converter, space.data(), static_cast<std::int32_t>(space.size()), bytes.data(),
                            static_cast<std::int32_t>(bytes.size()), &status);
}

/// The decoded bytes; none when the converter stops with an error.
std::optional<std::string> converted(UConverter* converter, std::string_view bytes) {
  // A byte becomes at most four, and the converter counts with 32 bits.
  if (bytes.size() > std::numeric_limits<std::int32_t>::max() / 4) return std::nullopt;
  std::string text;
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = convert(converter, bytes, text, status);
  if (status != U_BUFFER_OVERFLOW_ERROR && hasFailed(status)) return std::nullopt;
  text.resize(static_cast<std::size_t>(length));
  convert(converter, bytes, text, status);
  return text;
}

}  // namespace

std::optional<std::string> encodingName(const std::string& alias) {
  // ICU would use its default for an empty name, and look for a file of an unknown name.
  constexpr const char* kAllowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-:";
  if (alias.empty() || alias.find_first_not_of(kAllowed) != std::string::npos) return std::nullopt;
  const Converter converter = openConverter(alias);
  if (!converter) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const std::string name = ucnv_getName(converter.get(), &status);
  // At each malformed byte, these converters of ICU search all bytes that follow, which takes quadratic time. No
  // document has such an encoding: it is an old variant of Korean mail, or the clipboard's of X11.
  const bool isSlow = name == "ISO_2022,locale=ko,version=1" || name == "x11-compound-text";
  return isSlow ? std::nullopt : std::optional(name);
}

std::optional<DecodedText> decoded(std::string_view bytes, const std::string& encoding) {
  const Converter converter = openConverter(encoding);
  if (!converter) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  if (auto text = converted(converter.get(), bytes)) return DecodedText{std::move(*text), true};
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &status);
  auto text = converted(converter.get(), bytes);
  if (!text) return std::nullopt;
  return DecodedText{std::move(*text), false};
}

}  // namespace platform
