#include <string>

#include <gtest/gtest.h>

#include "lmx/descriptor.h"

namespace rubrica::lmx {
namespace {

const std::string kLetters = "abcdefghijklmnopqrstuvwxyz";

TEST(NameKeys, AreTheSameAtBuildTimeAndAtRunTime) {
  constexpr std::uint64_t kBuilt[] = {
      name_key(""),      name_key("a"),      name_key("ab"),      name_key("abc"),      name_key("abcd"),
      name_key("abcde"), name_key("abcdef"), name_key("abcdefg"), name_key("abcdefgh"), name_key("abcdefghi")};
  for (std::size_t size = 0; size < std::size(kBuilt); ++size) {
    const std::string name = kLetters.substr(0, size);
    EXPECT_EQ(name_key(name), kBuilt[size]) << name;
  }
  EXPECT_EQ(name_key("ab"), 0x6261U);
  EXPECT_EQ(name_key("\xC3\xBC"), 0xBCC3U);
}

TEST(NameKeys, NamesDifferByAnyOfTheirBytes) {
  for (std::size_t size = 1; size <= 20; ++size) {
    const std::string name = kLetters.substr(0, size);
    EXPECT_TRUE(same_name(name, std::string(name)));
    EXPECT_FALSE(same_name(name, kLetters.substr(0, size - 1))) << name;
    EXPECT_FALSE(same_name(name, kLetters.substr(0, size + 1))) << name;
    for (std::size_t i = 0; i < size; ++i) {
      std::string other = name;
      other[i] = '#';
      EXPECT_FALSE(same_name(name, other)) << name << " " << other;
    }
  }
  EXPECT_TRUE(same_name("", ""));
}

TEST(NameKeys, TheFirstColonIsFoundAnywhere) {
  for (std::size_t size = 0; size <= 20; ++size) {
    std::string name = kLetters.substr(0, size);
    EXPECT_EQ(find_colon(name), std::string::npos) << name;
    for (std::size_t i = 0; i < size; ++i) {
      std::string split = name;
      split[i] = ':';
      EXPECT_EQ(find_colon(split), i) << split;
      if (i + 1 < size) split[i + 1] = ':';
      EXPECT_EQ(find_colon(split), i) << split;
      // The neighbours of a colon among the characters, next to it.
      if (i > 0) split[i - 1] = ';';
      if (i + 1 < size) split[i + 1] = '9';
      EXPECT_EQ(find_colon(split), i) << split;
    }
  }
}

TEST(NameRows, MatchNamespaceAndWholeName) {
  constexpr name_row kRow{1000, 10, 13, "colourings"};
  const auto matches = [&](int id, std::string_view name) { return is_named(kRow, id, name_key(name), name); };
  EXPECT_TRUE(matches(1000, "colourings"));
  EXPECT_FALSE(matches(1001, "colourings"));
  EXPECT_FALSE(matches(1000, "colouring"));
  EXPECT_FALSE(matches(1000, "colouringt"));
  EXPECT_FALSE(matches(1000, "colourin"));
}

}  // namespace
}  // namespace rubrica::lmx
