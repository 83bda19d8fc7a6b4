#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "Platform/Base/IdHash.h"

/// The last three texts have equal hashes in GCC's C++ library, whose seed is known. Here all hashes must differ.
TEST(IdHashTest, TellsCollidingTextsApart) {
  std::vector<std::string_view> texts = {"", "a", "b", "a ", "aaaaaaa", "aaaaaaaa"};
  for (const char* text : {"t1------/qi:RN_l,$pLi!Mf", "t1------)O5sioLVF/|~}y=q", "t1------xydqbial8[?/.o^6"})
    texts.emplace_back(text);
  std::set<std::size_t> values;
  for (const std::string_view text : texts) values.insert(platform::IdHash()(text));
  EXPECT_EQ(values.size(), texts.size());
}
