#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <vector>

#include "Platform/Base/IdHash.h"

/// Texts that are made to have one value in the C++ library of GCC, whose seed is known, are told apart.
TEST(IdHashTest, TellsCollidingTextsApart) {
  const std::vector<std::string_view> texts = {"t1------/qi:RN_l,$pLi!Mf",
                                               "t1------)O5sioLVF/|~}y=q",
                                               "t1------xydqbial8[?/.o^6",
                                               "",
                                               "a",
                                               "b",
                                               "a ",
                                               "aaaaaaa",
                                               "aaaaaaaa"};
  std::set<std::size_t> values;
  for (const std::string_view text : texts) values.insert(platform::IdHash()(text));
  EXPECT_EQ(values.size(), texts.size());
}
