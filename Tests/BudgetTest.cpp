#include "Platform/Base/Budget.h"
#include "Platform/System/Log.h"
#include "Platform/XML/XMLOutput.h"
#include "Platform/XML/XMLRepair.h"
#include "Tests/Support.h"

using platform::Budget;

namespace {

constexpr std::size_t kMB = 1'000'000;

std::string failureOfSpending(std::size_t bytes) {
  return failureOf([bytes] { Budget::spend(bytes); });
}

}  // namespace

TEST(BudgetTest, EndsWhereTheDocumentsSay) {
  {
    const Budget budget;
    const std::size_t ofNothing = Budget::allowance(0);
    EXPECT_EQ(failureOfSpending(ofNothing), "");
    for (int i = 0; i < 2; ++i) EXPECT_TRUE(xml::Document::parse("<a>" + std::string(kMB, '&') + "</a>"));
    EXPECT_EQ(failureOfSpending(Budget::allowance(2 * kMB) - ofNothing - 4 * kMB), "");  // the documents take 3 MB
    const std::string failure = failureOfSpending(4 * kMB);
    EXPECT_TRUE(failure.starts_with("The export grew too large: 2001 KB of documents allow for 2068 MB. ")) << failure;
  }
  EXPECT_EQ(failureOfSpending(100'000 * kMB), "");  // no export is under way
  const Budget anew;
  EXPECT_EQ(failureOfSpending(Budget::allowance(0)), "");
  EXPECT_NE(failureOfSpending(1), "");
}

TEST(BudgetTest, IsEnoughForPlansAndLittleEnoughForMachines) {
  // 1400 tasks of 700 bytes, each two years long and with three materials, need 240 bytes for each day and material.
  EXPECT_GT(Budget::allowance(1400 * 700), 1400 * 730 * std::size_t{3 * 240});
  // Documents of 50 MB must not fill a machine with 4 GB. The tree of a document takes five times its size.
  EXPECT_LT(Budget::allowance(50 * kMB) + 5 * 50 * kMB, 3000 * kMB);
}

/// Trees that are freed while a malformed document is repaired must not count: 16 MB for each of two would be too much.
TEST(BudgetTest, IsGivenBackWhenTreesAreFreed) {
  const Budget budget;
  EXPECT_TRUE(xml::Document::read("<a>" + repeated("<b/>", 250'000) + "</c>").document);
  EXPECT_LT(Budget::spent(), 24 * kMB);
}

/// For a text with elements, the part of the document is parsed again with its blanks, which takes 24 MB here.
TEST(BudgetTest, LimitsTextsWithBlanks) {
  const auto failureOfReading = [](std::size_t left) {
    const Budget budget;
    const auto document = xml::Document::parse("<a>" + repeated("<b/> ", 200'000) + "</a>");
    Budget::spend(Budget::left() - left);
    const std::string failure = failureOf([&] { EXPECT_EQ(document->root().stringView().size(), 200'000); });
    EXPECT_TRUE(!failure.empty() || Budget::left() == left - 1'000'007);  // the source is kept
    return failure;
  };
  EXPECT_NE(failureOfReading(20 * kMB), "");
  EXPECT_EQ(failureOfReading(40 * kMB), "");
}

/// The parser that repairs documents takes 25 MB for this one, and charges nothing once it has ended.
TEST(BudgetTest, LimitsRepair) {
  const std::string malformed = repeated("<a>", 333'333);
  const auto failureOfRepair = [&malformed](std::size_t left) {
    const Budget budget;
    Budget::spend(Budget::left() - left);
    const std::string failure = failureOf([&] { EXPECT_TRUE(xml::repaired(malformed)); });
    EXPECT_TRUE(!failure.empty() || Budget::left() == left);
    return failure;
  };
  EXPECT_NE(failureOfRepair(20 * kMB), "");
  EXPECT_EQ(failureOfRepair(40 * kMB), "");
}

/// The trees of documents, elements, their texts and the log must be charged; a byte of the log counts as ten.
TEST(BudgetTest, IsSpentByWhatTakesMemoryOrTheDisk) {
  const std::string text(kMB, 'a');
  const auto failureOfMaking = [&text](int megabytes, auto make) {
    const Budget budget;
    return failureOf([&] {
      for (int i = 0; i < megabytes; ++i) make(text);
    });
  };
  // Further 400 KB allow for 4 MB more, but their tree takes 6 MB.
  const auto read = [](const std::string&) {
    Budget::raise(3 * kMB);
    Budget::spend(Budget::allowance(3 * kMB));
    static_cast<void>(xml::Document::parse("<a>" + repeated("<b/>", 100'000) + "</a>"));
  };
  EXPECT_NE(failureOfMaking(1, read), "");
  xml::OutputDocument document;
  const xml::Element element = document.newElement("a");
  const auto build = [&element](const std::string& piece) { element.node().appendChild("b", piece); };
  EXPECT_EQ(failureOfMaking(250, build), "");
  EXPECT_NE(failureOfMaking(260, build), "");
  xml::OutputDocument other;
  xml::Section section("a", 0);
  const auto append = [&other, &section](const std::string& piece) {
    xml::Element made = other.newElement("a");
    made.node().appendChild("b", piece);
    section.append(std::move(made));
  };
  EXPECT_EQ(failureOfMaking(120, append), "");
  EXPECT_NE(failureOfMaking(260, append), "");
  testing::internal::CaptureStderr();
  const auto log = [](const std::string& piece) { platform::log("{}", piece); };
  EXPECT_EQ(failureOfMaking(25, log), "");
  EXPECT_NE(failureOfMaking(26, log), "");
  testing::internal::GetCapturedStderr();
}
