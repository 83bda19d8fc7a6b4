#include "KVMSPCommon/MSPExportMapper/MSPEBaselineMapperBase.h"
#include "Tests/Support.h"

TEST(MSPEBaselineMapperBase, HasTheNumberOfABaseline) {
  const MSPEInfo info;
  const auto document = parsed("<scenario/>");
  MSPEMapper mapper(nullptr, document, {document, document}, nullptr, info);
  const auto failureOfNumber = [&mapper](std::int64_t number) {
    return failureOf([&] { EXPECT_EQ(MSPETaskBaselineMapper(number, mapper).baselineNumber(), number); });
  };
  EXPECT_EQ(failureOfNumber(-1), "Incorrect argument baselineNumber=-1. Must be from 0 to 1.");
  EXPECT_EQ(failureOfNumber(0) + failureOfNumber(1), "");
  EXPECT_EQ(failureOfNumber(2), "Incorrect argument baselineNumber=2. Must be from 0 to 1.");
  const std::vector<std::shared_ptr<xml::Document>> many(101, document);
  EXPECT_EQ(failureOf([&] { MSPEMapper(nullptr, document, many, nullptr, info); }),
            "The plan is compared with 101 scenarios. At most 100 can be exported.");
}
