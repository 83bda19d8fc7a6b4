#include "Platform/Text/Normalization.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>

#include "Platform/Text/Status.h"

namespace platform {
namespace {

/// The normalized text; the text itself when it is too long or the library lacks the data for the form.
std::string normalized(std::string_view text, const icu::Normalizer2* form, UErrorCode status) {
  // The library takes quadratic time to sort many accents behind one letter. No real name is longer than this.
  constexpr std::size_t kMostBytes = 1024;
  if (text.size() > kMostBytes || hasFailed(status)) return std::string(text);
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  form->normalizeUTF8(0, icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())), sink, nullptr, status);
  return hasFailed(status) ? std::string(text) : result;
}

}  // namespace

std::string composed(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* form = icu::Normalizer2::getNFCInstance(status);
  return normalized(text, form, status);
}

std::string decomposed(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* form = icu::Normalizer2::getNFDInstance(status);
  return normalized(text, form, status);
}

}  // namespace platform
