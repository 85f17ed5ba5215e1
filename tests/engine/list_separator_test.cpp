#include "engine/list_separator.h"

#include <gtest/gtest.h>

namespace rubrica {
namespace {

TEST(ListSeparators, CountriesWithADecimalCommaWriteSemicolons) {
  for (const char* name : {"de_DE.UTF-8", "German_Germany.1252", "fr_FR.utf8", "Portuguese_Brazil.1252", "af_ZA.UTF-8",
                           "Czech_Czech Republic.1250", "x_AW.y", "Dari_Afghanistan", "es_AN.UTF-8"}) {
    EXPECT_EQ(listSeparatorOf(name), ';') << name;
  }
}

TEST(ListSeparators, AllOthersWriteCommas) {
  for (const char* name :
       {"en_US.UTF-8", "English_United States.1252", "C", "C.UTF-8", "POSIX", "ja_JP.UTF-8", "de_DE"}) {
    EXPECT_EQ(listSeparatorOf(name), ',') << name;
  }
}

TEST(ListSeparators, NoNameWritesSemicolons) {
  EXPECT_EQ(listSeparatorOf(""), ';');
}

}  // namespace
}  // namespace rubrica
