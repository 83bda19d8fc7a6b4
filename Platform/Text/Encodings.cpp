#include "Platform/Text/Encodings.h"

#include <unicode/ucnv.h>

#include <cstdint>
#include <limits>
#include <memory>

namespace platform {
namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

Converter openConverter(const std::string& encoding) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(encoding.c_str(), &status), &ucnv_close);
  if (U_FAILURE(status)) converter.reset();
  return converter;
}

/// Writes the text of the bytes into the space; its length, also when the space is too small for it.
std::int32_t convert(UConverter* converter, std::string_view bytes, std::string& space, UErrorCode& status) {
  status = U_ZERO_ERROR;
  return ucnv_toAlgorithmic(UCNV_UTF8, converter, space.data(), static_cast<std::int32_t>(space.size()), bytes.data(),
                            static_cast<std::int32_t>(bytes.size()), &status);
}

/// The text of the bytes; nothing when the converter stops at some of them.
std::optional<std::string> converted(UConverter* converter, std::string_view bytes) {
  // One byte gives three at most.
  if (bytes.size() > std::numeric_limits<std::int32_t>::max() / 3) return std::nullopt;
  std::string text;
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = convert(converter, bytes, text, status);
  if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status)) return std::nullopt;
  text.resize(static_cast<std::size_t>(length));
  convert(converter, bytes, text, status);
  return text;
}

}  // namespace

std::optional<std::string> encodingName(const std::string& alias) {
  // ICU takes its default for an empty name, and looks for a file when it does not know the name.
  constexpr const char* kAllowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-:";
  if (alias.empty() || alias.find_first_not_of(kAllowed) != std::string::npos) return std::nullopt;
  const Converter converter = openConverter(alias);
  if (!converter) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  return ucnv_getName(converter.get(), &status);
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
