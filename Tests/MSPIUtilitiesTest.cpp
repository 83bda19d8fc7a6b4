#include <random>
#include <set>

#include "Fuzz/DateTimeTarget.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Tests/Tables.h"

namespace {

using Utilities = MSPIUtilities;
using Parser = MSPCUnitFlags (*)(MSPCDateComponents&, std::string_view);

constexpr MSPCUnitFlags kUTC = kMSPCDateTimeUnits | kMSPCTimeZoneUTC;
constexpr MSPCUnitFlags kOffset = kMSPCDateTimeUnits | kMSPCTimeZoneHour | kMSPCTimeZoneMinute;
constexpr Parser kScan = &Utilities::updateDateTimeComponentsFromISODateTime;

/// The names of the units that were read, such as "date time UTC ".
std::string namesOf(MSPCUnitFlags flags) {
  std::string names;
  for (const auto& [set, name] : std::initializer_list<std::pair<MSPCUnitFlags, const char*>>{
           {kMSPCUnitsError, "error "},
           {kMSPCDateUnits, "date "},
           {kMSPCTimeUnits, "time "},
           {kMSPCHour, "hour "},
           {kMSPCTimeZoneHour | kMSPCTimeZoneMinute, "offset "},
           {kMSPCTimeZoneHour, "offset's hour "},
           {kMSPCTimeZoneUTC, "UTC "}}) {
    if ((flags & set) != set) continue;
    names += name;
    flags &= ~set;
  }
  EXPECT_EQ(flags, 0);
  return names;
}
/// The names of the units that the parser reads in the text, or the reason why it raises an exception.
std::string readBy(Parser parser, MSPCDateComponents& record, std::string_view text) {
  try {
    return namesOf(parser(record, text));
  } catch (const platform::InvariantFailure& failure) {
    return "raises " + failure.reason();
  }
}
MSPCDateComponents usedRecord() { return *Utilities::componentsFromISODateTime("1999-12-31T23:59:59+05:30"); }
/// Reads the text into a new or a used record. Returns what was read and the record; undefined components print as -1.
template <Parser kParser, bool kUsed = false>
std::string fields(std::string_view text) {
  MSPCDateComponents record = kUsed ? usedRecord() : MSPCDateComponents();
  const std::string read = readBy(kParser, record, text);
  return read + shown(Utilities::stringFromComponents(record, kMSPCAllUnits));
}
constexpr Operation dateTime = fields<kScan>;
constexpr Operation over = fields<kScan, true>;
/// What was read and the record, then the seconds from both conversions.
std::string duration(std::string_view text) {
  return fmt::format("{} {} {}", fields<&Utilities::updateDateTimeComponentsFromISODuration>(text),
                     Utilities::mspdiDurationInSecs(text), Utilities::mspdiToMppDuration(text));
}
/// The seconds in the three forms in which durations are written.
std::string fromSeconds(std::string_view text) {
  const double seconds = std::stod(std::string(text));
  return fmt::format("{} {} {}", Utilities::mppToKvdxDuration(seconds), Utilities::mppToMspdiDuration(seconds),
                     Utilities::hourMinSecFromDuration(seconds));
}
template <MSPCUnitFlags kFlags>
std::string print(std::string_view text) {
  return shown(Utilities::stringFromComponents(*Utilities::componentsFromISODateTime(text), kFlags));
}
/// Whether the text is a date-time at all, one of kvdx, one of MSPDI.
std::string kinds(std::string_view text) {
  return fmt::format("{} {} {}", Utilities::isIsoiDateTime(text), Utilities::isKvdxDateTime(text),
                     Utilities::isMspdiDateTime(text));
}
template <MSPCUnitFlags kUnits>
std::string toMspdi(std::string_view text) {
  return shown(Utilities::kvdxToMspdiDateTime(text, kUnits));
}
std::string day(std::string_view t) {
  return shown(Utilities::kvdxToMspdiDateStartTime(t)) + " " + shown(Utilities::kvdxToMspdiDateEndTime(t));
}
std::string fromMpp(std::string_view text) {
  return shown(Utilities::mppToKvdxDateTime(utc(text))) + " " + shown(Utilities::mppToMspdiDateTime(utc(text)));
}
constexpr Operation toKvdx = apply<&Utilities::mspdiToKvdxDateTime>;
constexpr Operation mspdiToMpp = apply<&Utilities::mspdiToMppDateTime>;
constexpr Operation kvdxToMpp = apply<&Utilities::kvdxToMppDateTime>;

}  // namespace

TEST(MSPIUtilitiesTest, DateTimeTextsReadAndPrinted) {
  expectOutcomes({
      {__LINE__, dateTime, "", "error -1--1--1T-1:-1:-1Z"},
      {__LINE__, dateTime, "2011-05-06T08:00:00Z", "date time UTC 2011-05-06T08:00:00Z"},
      {__LINE__, dateTime, "2011-05-06T08:00:00+02:00", "date time offset 2011-05-06T08:00:00+02:00"},
      {__LINE__, dateTime, "2011-05-06T08:00:00.500Z", "date time UTC 2011-05-06T08:00:00Z"},
      {__LINE__, dateTime, "2011-05-06T08:00:00.5+02:00", "date time 2011-05-06T08:00:00Z"},
      {__LINE__, dateTime, "-2012-02-29T24:00:75", "date time 2012-02-29T24:00:75Z"},
      {__LINE__, dateTime, "99999999999999999999-1-2", "date -1-01-02T-1:-1:-1Z"},  // the largest number: undefined
      {__LINE__, dateTime, "2011-05-06 08:00:00", "raises 2011-05-06T-1:-1:-1Z"},
      {__LINE__, over, "08:00:00", "time 1999-12-31T08:00:00+05:30"},
      {__LINE__, over, "2011-05-06T08:00:00.5+02:00", "date time 2011-05-06T08:00:00+05:30"},
      {__LINE__, over, "2011-05-06T08:00:00+02:", "date time offset's hour 2011-05-06T08:00:00+02:30"},
      {__LINE__, print<kMSPCYear | kMSPCSecond>, "2011-05-06T08:09:07Z", "2011--T::07"},
      {__LINE__, print<kOffset>, "2011-05-06T08:00:00+00:00", "2011-05-06T08:00:00+00:00"},
      {__LINE__, print<kUTC>, "2011-05-06T08:00:00-05:30", "2011-05-06T08:00:00+00:00"},
      {__LINE__, print<kMSPCDateUnits>, "4294967291-123-6", "-5-123-06"},  // the low 32 bits are printed
  });
}

TEST(MSPIUtilitiesTest, ScanAndExpressionsAgreeOnRandomTexts) {
  std::mt19937 random(20110506);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  for (int i = 0; i < 20000; ++i) {
    std::string text = fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", below(10000), below(100), below(100),
                                   below(100), below(100), below(100));
    if (below(8) == 0) text.resize(10);  // the date alone
    if (below(8) == 0) text += ".5";
    if (below(3) == 0) text += 'Z';
    if (below(3) == 0) text += fmt::format("{}{:02}:{:02}", below(2) ? '+' : '-', below(3) * below(34), below(3) * 30);
    for (std::size_t mutations = below(4); mutations > 0; --mutations) {  // insertions, removals, replacements
      constexpr std::string_view kCharacters = "0123456789-+:TZ.,/ x\xC3";
      text.replace(below(text.size() + 1), below(3), kCharacters.substr(below(kCharacters.size()), below(4) ? 1 : 0));
    }
    ASSERT_NO_THROW(checkScan(text)) << '"' << text << '"';
  }
}

TEST(MSPIUtilitiesTest, Durations) {
  expectOutcomes({
      {__LINE__, duration, "", "error -1--1--1T-1:-1:-1Z -1 0"},
      {__LINE__, duration, "P2D", "raises Failed to convert MSPDI duration: 'P2D'."},
      {__LINE__, duration, "PT8H", "hour -1--1--1T08:-1:-1Z 28800 0"},
      {__LINE__, duration, "PT9223372036854775806H", "hour -1--1--1T-2:-1:-1Z 9223372036854775807 0"},
      {__LINE__, apply<&Utilities::mspdiToKvdxDuration>, "PT1H30M0S", "5400"},
      {__LINE__, apply<&Utilities::mspdiToKvdxDuration>, "", "none"},
      {__LINE__, apply<&Utilities::kvdxToMspdiDuration>, " -90", "PT0H-1M-30S"},
      {__LINE__, apply<&Utilities::kvdxToMspdiDuration>, "9999999999.9", "PT2777777H46M39S"},
      {__LINE__, fromSeconds, "360000", "360000.00 PT100H0M0S 100:00:00"},
      {__LINE__, fromSeconds, "-90.9", "-90.90 PT0H-1M-30S 00:-1:-30"},
      {__LINE__, fromSeconds, "3e9", "3000000000.00 PT596523H14M7S 833333:20:00"},  // 2147483647 s in MSPDI
  });
  EXPECT_EQ(Utilities::kvdxToMspdiDuration(std::nullopt), std::nullopt);
}

TEST(MSPIUtilitiesTest, DateTimeConversions) {
  const ScopedVariable now("SOURCE_DATE_EPOCH", "1768003200");  // January 2026
  const PinnedZone zone("Europe/Berlin");
  expectOutcomes({
      {__LINE__, kinds, "2011-05-06T08:00:00.5+02:00", "true false true"},
      {__LINE__, toKvdx, "", "none"},
      {__LINE__, toKvdx, "2011-05-06T08:00:00", "2011-05-06T08:00:00+02:00"},
      {__LINE__, toKvdx, "2011-05-06", "2011-05-06T-1:-1:-1+02:00"},  // undefined components are printed, too
      {__LINE__, apply<&Utilities::mspdiToKvdxTimeOnly>, "2011-05-06T08:30:00+05:00", "30600"},
      {__LINE__, apply<&Utilities::mspdiDateTimeToString>, "2011-05-06T08:00:00Z", "2011-05-06 06:00:00 +0000"},
      {__LINE__, mspdiToMpp, "2011-03-27T02:30:00", "2011-03-27 01:30:00"},  // skipped
      {__LINE__, mspdiToMpp, "08:00:00Z", "raises Not a valid MSPDI date-time: '08:00:00Z' (time zone?)."},
      {__LINE__, kvdxToMpp, "2011-05-06T08:00:00-05:30", "2011-05-06 12:30:00"},  // -05:30 is read as -4:30
      {__LINE__, kvdxToMpp, "2011-05-06T08:00:00", "2011-05-06 06:00:00"},        // no offset: local time here,
      {__LINE__, toMspdi<0>, "2011-05-06T08:00:00", "2011-05-06T10:00:00"},       // but UTC here
      {__LINE__, kvdxToMpp, "2011-05-06", "2011-05-06 05:00:00", "America/Bogota"},
      {__LINE__, toMspdi<0>, "999999999-12-31T24:00:00Z", "1000000000-01-01T00:00:00", "UTC"},
      // The offset is the one that the zone has at the text's clock reading, taken as local time.
      {__LINE__, toMspdi<0>, "2011-03-27T01:30:00Z", "2011-03-27T02:30:00"},
      {__LINE__, toMspdi<0>, "2011-10-30T01:30:00Z", "2011-10-30T03:30:00"},
      {__LINE__, day, "2011-05-06T22:00:00Z", "2011-05-07T00:00:00 2011-05-07T23:59:59"},
      {__LINE__, day, "", "none none"},
      {__LINE__, fromMpp, "2011-05-06 06:00:00", "2011-05-06T06:00:00Z 2011-05-06T06:00:00", "UTC"},
      {__LINE__, fromMpp, "2011-10-30 00:30:00", "2011-10-30T02:30:00+02:00 2011-10-30T01:30:00"},
      {__LINE__, fromMpp, "2011-01-10 11:30:00", "2011-01-10T08:00:00-03:-30 2011-01-10T07:30:00", "America/St_Johns"},
  });
  EXPECT_EQ(Utilities::compareMspdiDateTime("", "2011-05-06T08:00:00"), -1);
  EXPECT_EQ(Utilities::compareMspdiDateTime("2011-05-06T24:00:00", "2011-05-07"), 0);
  EXPECT_EQ(Utilities::compareMspdiDateTime("2011-10-01", "2011-9-1"), 1);  // compares instants, not texts
}

/// Some conversions replace two others with a text between them. They must give the same results as those, also near
/// clock changes and for years with three, four and five digits.
TEST(MSPIUtilitiesTest, ConversionsWithoutATextBetweenAgree) {
  std::mt19937 random(8);  // NOLINT: the same numbers each time
  std::set<std::string> years;
  for (const char* name : {"UTC", "Europe/Berlin", "America/St_Johns", "Australia/Lord_Howe", "Africa/Monrovia"}) {
    const PinnedZone zone(name);
    for (int i = 0; i < 3000; ++i) {
      const int year = std::array{999, 1000, 1910, 1972, 2011, 2026, 9999, 10000}[random() % 8];
      const std::string zoneText = std::array{"", "Z", "+05:30", "-11:00"}[random() % 4];
      const std::string kvdx = fmt::format("{:04d}-{:02d}-{:02d}T{:02d}:{:02d}:00{}", year, random() % 13,
                                           random() % 33, random() % 25, random() % 60, zoneText);
      const auto mspdi = Utilities::kvdxToMspdiDateTime(kvdx);
      const auto instant = Utilities::kvdxToMppDateTimeByWallClock(kvdx);
      EXPECT_EQ(shown(instant), shown(Utilities::mspdiToMppDateTime(*mspdi))) << kvdx << " in " << name;
      const auto longWay = Utilities::kvdxToMspdiDateTime(*Utilities::mppToKvdxDateTime(instant));
      EXPECT_EQ(Utilities::mppToMspdiDateTime(instant), longWay) << kvdx << " in " << name;
      years.insert(mspdi->substr(0, mspdi->find('-')));
    }
  }
  EXPECT_GE(years.size(), 8U);
}

TEST(MSPIUtilitiesTest, IdentifiersHaveThirtyOneBits) {
  std::set<std::string> seen;
  for (int i = 0; i < 200; ++i) {
    const std::string id = *seen.insert(BFXMLCreateID()).first;
    EXPECT_TRUE(id.size() == 11 && id[0] >= 'a' && id[0] <= 'p' && id[5] <= 'h' && id.ends_with("aaaaa")) << id;
  }
  EXPECT_GT(seen.size(), 190U);
}
