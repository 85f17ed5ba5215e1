#include "biff/folded_index.h"

#include <gtest/gtest.h>

#include "engine/book.h"

namespace rubrica {
namespace {

TEST(FoldedIndex, FindsNamesWhateverTheirCaseInLatinGreekAndCyrillic) {
  FoldedIndex index;
  for (const auto* name : {u"Prices", u"\u00C4pfel", u"\u0396\u03C9\u03AE", u"\u0426\u0435\u043D\u0430"})
    index.add(name);
  EXPECT_EQ(index.find(u"PRICES"), 0U);
  EXPECT_EQ(index.find(u"\u00E4PFEL"), 1U);
  EXPECT_EQ(index.find(u"\u03B6\u03A9\u03AE"), 2U);
  EXPECT_EQ(index.find(u"\u0446\u0415\u041D\u0430"), 3U);
  EXPECT_EQ(index.find(u"Price"), std::nullopt);
}

TEST(FoldedIndex, OfEqualNamesTheFirstIsFoundAndScopesAreApart) {
  FoldedIndex index;
  index.add(u"x", 0);
  index.add(u"X", 0);
  index.add(u"x", 2);
  EXPECT_EQ(index.find(u"x", 0), 0U);
  EXPECT_EQ(index.find(u"x", 2), 2U);
  EXPECT_EQ(index.find(u"x", 1), std::nullopt);
  EXPECT_EQ(index.size(), 3U);
}

TEST(FoldedIndex, SheetsAreFoundByTheirPresentNamesAndPlaces) {
  Book* book = createBiffBook();
  for (const auto* name : {u"a", u"b", u"c"}) ASSERT_NE(book->addSheet(name), nullptr);
  EXPECT_EQ(book->addSheet(u"B"), nullptr);
  book->getSheet(1)->setName(u"d");
  EXPECT_NE(book->addSheet(u"B"), nullptr) << book->errorMessage();
  EXPECT_EQ(book->addSheet(u"D"), nullptr);
  ASSERT_TRUE(book->delSheet(1));
  EXPECT_NE(book->insertSheet(0, u"D"), nullptr);
  ASSERT_TRUE(book->moveSheet(0, 4));
  EXPECT_TRUE(book->getSheet(0)->writeFormula(0, 0, u"d!A1+c!A1")) << book->errorMessage();
  const std::u16string formula = book->getSheet(0)->readFormula(0, 0);
  EXPECT_EQ(formula, u"D!A1+'c'!A1");
  book->release();
}

}  // namespace
}  // namespace rubrica
