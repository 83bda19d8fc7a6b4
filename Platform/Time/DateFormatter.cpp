#include "Platform/Time/DateFormatter.h"

#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

namespace platform {
namespace {

icu::UnicodeString wide(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

}  // namespace

struct DateFormatter::Format {
  UErrorCode status = U_ZERO_ERROR;
  icu::SimpleDateFormat icu;

  Format(std::string_view pattern, const std::string& zoneName) : icu(wide(pattern), icu::Locale::getRoot(), status) {
    icu.adoptTimeZone(icu::TimeZone::createTimeZone(wide(zoneName)));
    // Strict about the text, lenient about what it says: 30 February rolls over as it does everywhere here.
    icu.setLenient(false);
    icu.setCalendarLenient(true);
  }
};

DateFormatter::DateFormatter(std::string_view pattern, const std::string& zoneName)
    : format_(std::make_unique<Format>(pattern, zoneName)) {}

DateFormatter::~DateFormatter() = default;

std::string DateFormatter::format(Instant instant) const {
  icu::UnicodeString text;
  format_->icu.format(instant.seconds * 1000.0, text);
  std::string result;
  text.toUTF8String(result);
  return result;
}

std::optional<Instant> DateFormatter::parseWhole(std::string_view text) const {
  const icu::UnicodeString source = wide(text);
  icu::ParsePosition position(0);
  const UDate milliseconds = format_->icu.parse(source, position);
  if (position.getErrorIndex() >= 0 || position.getIndex() != source.length() || source.isEmpty()) return std::nullopt;
  return Instant{milliseconds / 1000.0};
}

}  // namespace platform
