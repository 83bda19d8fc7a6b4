#include "KVMSPCommon/MSPExportMapper/MSPEIdMapper.h"
#include "Tests/Support.h"

TEST(MSPEIdMapper, PassesOnWhatFollowsTheFirstCharacter) {
  const std::vector<std::tuple<int, std::string, std::string>> rows = {
      {__LINE__, "5", "5"},   {__LINE__, "007", "007"}, {__LINE__, "12x", "12x"}, {__LINE__, " 4", " 4"},
      {__LINE__, "+7", "+7"}, {__LINE__, "", ""},       {__LINE__, "0", ""},      {__LINE__, "-3", ""},
      {__LINE__, "x1", ""},   {__LINE__, "5A", "0"},    {__LINE__, "5a", "5a"},   {__LINE__, "5A ", "5A "},
  };
  const MSPEIdMapper mapper("r5A", "t5A");
  for (const auto& [line, rest, uid] : rows) {
    SCOPED_TRACE(line);
    EXPECT_EQ(mapper.resourceUIDFromKvdxResourceId("r" + rest), uid);
    EXPECT_EQ(mapper.taskUIDFromKvdxId("t" + rest), uid);
  }
  EXPECT_EQ(mapper.resourceUIDFromKvdxResourceId("") + mapper.taskUIDFromKvdxId(""), "");
}
