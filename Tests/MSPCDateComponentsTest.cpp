#include <functional>

#include "KVMSPCommon/MSPCDateComponents.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Tests/Tables.h"

namespace {

/// Reads the text into a record, converts the record and prints all its units.
template <auto kConversion, auto... kArguments>
std::string converted(std::string_view text) {
  MSPCDateComponents record = MSPIUtilities::componentsFromISODateTime(text).value();
  EXPECT_EQ(std::invoke(kConversion, record, kArguments...), kMSPCAllUnits);
  return MSPIUtilities::stringFromComponents(record, kMSPCAllUnits).value();
}
constexpr Operation toUTC = converted<&MSPCDateComponents::convertToUTC>;
constexpr Operation toSystem = converted<&MSPCDateComponents::convertToSystemTimezone>;
template <std::int64_t kSeconds>
constexpr Operation toOffset = converted<&MSPCDateComponents::convertToTimeZoneForSecondsFromGMT, kSeconds>;
constexpr Operation label = converted<[](MSPCDateComponents& r) { return r.forceSystemTimezoneforDate(std::nullopt); }>;

}  // namespace

TEST(MSPCDateComponentsTest, ClockFieldsInAnotherZone) {
  expectOutcomes({
      {__LINE__, toUTC, "2011-05-06T08:00:00-05:30", "2011-05-06T12:30:00Z"},  // hours and minutes are added
      {__LINE__, toUTC, "2011-05-06T24:00:00Z", "2011-05-06T24:00:00Z"},       // in UTC already: unchanged
      {__LINE__, toOffset<0>, "2011-14-00T00:00:00Z", "2012-01-31T00:00:00Z"},
      {__LINE__, toOffset<-12600>, "2011-05-06T08:00:00+02:00", "2011-05-06T02:30:00-03:-30"},
      {__LINE__, toOffset<59>, "2011-05-06T08:00:00Z", "2011-05-06T08:00:59Z"},  // less than a minute: written as UTC
      {__LINE__, toOffset<3600>, "2011-05-06", "2011-05-06T01:00:00+01:00"},
      {__LINE__, toOffset<3600>, "08:00:00", "1-01-01T09:00:00+01:00"},
      {__LINE__, toOffset<0>, "1-01-01T00:00:00+01:00", "1-12-31T23:00:00Z"},  // 1 BC
      {__LINE__, toSystem, "2011-05-06T08:00:00-07:00", "2011-05-06T17:00:00+02:00", "Europe/Berlin"},
      {__LINE__, toSystem, "2011-03-27T01:30:00Z", "2011-03-27T02:30:00+01:00", "Europe/Berlin"},
  });
}

TEST(MSPCDateComponentsTest, LabelledWithTheSystemZone) {
  const ScopedVariable winter("SOURCE_DATE_EPOCH", "1768003200");  // January 2026
  expectOutcomes({
      {__LINE__, label, "2011-05-06T08:00:00+05:00", "2011-05-06T08:00:00+02:00", "Europe/Berlin"},
      {__LINE__, label, "2011-01-10T08:00:00", "2011-01-10T08:00:00-03:-30", "America/St_Johns"},
      {__LINE__, label, "1960-01-01T00:00:00", "1960-01-01T00:00:00+00:-44", "Africa/Monrovia"},  // not UTC
      // The hour of summer time is added to the zone's present offset, which is +3 since 2016; it was +2 in 2010.
      {__LINE__, label, "2010-07-01T12:00:00", "2010-07-01T12:00:00+04:00", "Europe/Istanbul"},
  });
  const ScopedVariable summer("SOURCE_DATE_EPOCH", "1279152000");  // July 2010
  expectOutcomes({
      {__LINE__, label, "2010-07-01T12:00:00", "2010-07-01T12:00:00+03:00", "Europe/Istanbul"},
      {__LINE__, label, "2011-01-10T08:00:00", "2011-01-10T08:00:00+01:00", "Europe/Berlin"},
  });
}
