#include "KVMSPCommon/MSPCDateTimeConverter.h"
#include "Tests/Tables.h"

namespace {

using Converter = MSPCDateTimeConverter;

constexpr Operation fromMspdi = apply<&Converter::mppFromMspdiDateTime>;
constexpr Operation fromKvdx = apply<&Converter::mppFromKvdxDateTime>;
std::string toMspdi(std::string_view text) {
  return Converter::mspdiFromMppDateTime(utc(text)) + " " + Converter::mspdiFromMppDateOnly(utc(text));
}
template <bool kForceUTC>
std::string toKvdx(std::string_view text) {
  return Converter::kvdxFromMppDateTime(utc(text), kForceUTC) + " " +
         Converter::kvdxFromMppDateOnly(utc(text), kForceUTC);
}
template <bool kForceUTC>
std::string ensure(std::string_view text) {
  return Converter::ensureISOTimeZoneFormat(text, kForceUTC);
}

}  // namespace

TEST(MSPCDateTimeConverterTest, Conversions) {
  const PinnedZone zone("Europe/Berlin");
  expectOutcomes({
      {__LINE__, fromMspdi, "2011-05-06T08:00:00Z", "none"},
      {__LINE__, fromMspdi, "2011-05-06T24:59:59", "2011-05-06 22:59:59"},
      {__LINE__, fromMspdi, "2011-13-32T08:75:75", "2012-02-01 08:16:15"},
      {__LINE__, fromMspdi, "2011-05-06T25:00:00", "2011-05-06 23:00:00"},
      {__LINE__, fromKvdx, "2011-02-30T08:00:75Z", "2011-03-02 08:01:15"},
      {__LINE__, fromKvdx, "\t2011-05-06T08:00:00+02:00", "2011-05-06 06:00:00"},
      {__LINE__, fromKvdx, "2011-05-06T08:00:00+02:00:30", "2011-05-06 05:59:30"},
      {__LINE__, fromKvdx, "2011-05-06T08:00:00-0530", "2011-05-06 13:30:00"},
      {__LINE__, fromKvdx, "2011-05-06T08:00:00", "none"},
      {__LINE__, apply<&Converter::mspdiFromKvdxDateOnly>, "2011-05-06", "2011-05-06", "America/Bogota"},
      {__LINE__, toMspdi, "2010-12-30 23:30:00", "2010-12-31T00:30:00 2010-12-31"},
      {__LINE__, toKvdx<false>, "2011-05-06 22:30:00", "2011-05-07T00:30:00+02:00:00 2011-05-07"},
      {__LINE__, toKvdx<true>, "2011-05-06 22:30:00", "2011-05-06T22:30:00Z 2011-05-06"},
      {__LINE__, ensure<false>, "08:00:00-053015", "08:00:00-05:30:15"},
      {__LINE__, ensure<false>, "2011-05-06", "2011-05-06T00:00:00Z"},
      {__LINE__, ensure<true>, "", "raises No date string specified."},
  });
}

TEST(MSPCDateTimeConverterDeathTest, SeveralOffsetsEndTheProcess) {
  EXPECT_DEATH(fromKvdx("2011-05-06T08:00:00+02:00\n+02:00"), "\\[matches count\\] == 1");
  EXPECT_DEATH(ensure<true>("T08:00:00+0200\n+0200"), "\\[matches count\\] == 1");
}
