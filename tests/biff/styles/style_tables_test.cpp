#include "tests/biff/styles/style_fixture.h"

namespace rubrica::test {
namespace {

Bytes defaultXf(unsigned font, unsigned numFormat, unsigned protection, std::uint32_t alignment) {
  return BytesBuilder().u16(font).u16(numFormat).u16(protection).u32(alignment).u32(0x20400000).u32(0x2040).u16(0x20C0);
}

TEST(StyleTables, ANewBookHoldsTheDefaultFormats) {
  NewBook book;
  EXPECT_EQ(book.tables.fontCount(), 5);
  EXPECT_EQ(book.tables.formatCount(), 21);
  std::vector<Record> expected;
  for (const unsigned font : {0u, 1u, 1u, 2u, 2u, 0u, 0u, 0u, 0u, 0u, 0u, 0u, 0u, 0u, 0u}) {
    expected.push_back({224, defaultXf(font, 0, 0xFFF5, 0x20)});
  }
  expected.push_back({224, defaultXf(0, 0, 1, 0x20)});
  for (const unsigned numFormat : {44u, 42u, 9u, 43u}) {
    expected.push_back({224, defaultXf(1, numFormat, 0xFFF5, 0xF8000020)});
  }
  expected.push_back({224, defaultXf(1, 41, 0xFFF5, 0)});
  EXPECT_EQ(book.written(&StyleTables::writeXfs), expected);
  EXPECT_TRUE(book.written(&StyleTables::writeFormats).empty());
}

TEST(StyleTables, ANewBookHoldsSixBuiltInStyles) {
  NewBook book;
  std::vector<Record> expected;
  for (const auto& [xf, builtInId] :
       {std::pair{0x8010u, 4u}, {0x8011u, 7u}, {0x8000u, 0u}, {0x8012u, 5u}, {0x8013u, 3u}, {0x8014u, 6u}}) {
    expected.push_back({659, BytesBuilder().u16(xf).u8(builtInId).u8(0xFF)});
  }
  EXPECT_EQ(book.written(&StyleTables::writeStyles), expected);
}

TEST(StyleTables, PositionsOutsideATableFail) {
  NewBook book;
  EXPECT_NE(book.tables.format(20), nullptr);
  EXPECT_NE(book.tables.font(4), nullptr);
  EXPECT_EQ(errorOf([&] { book.tables.format(21); }), "index is out of range");
  EXPECT_EQ(errorOf([&] { book.tables.format(-1); }), "index is out of range");
  EXPECT_EQ(errorOf([&] { book.tables.font(5); }), "index is out of range");
  EXPECT_EQ(errorOf([&] { book.tables.font(-1); }), "index is out of range");
}

TEST(StyleTables, PointersAreFoundWithoutBeingFollowed) {
  NewBook book, other;
  EXPECT_EQ(book.tables.indexOf(book.tables.format(15)), 15);
  EXPECT_EQ(book.tables.positionOf(book.tables.font(4)), 4);
  EXPECT_EQ(book.tables.indexOf(other.tables.format(15)), std::nullopt);
  EXPECT_EQ(book.tables.indexOf(nullptr), std::nullopt);
  // A pointer that a caller kept over a load names nothing any more.
  const Format* stale = book.tables.format(15);
  book.tables.clear();
  EXPECT_EQ(book.tables.indexOf(stale), std::nullopt);
  EXPECT_EQ(book.tables.formatCount(), 0);
  EXPECT_EQ(book.tables.fontCount(), 0);
  EXPECT_TRUE(book.written(&StyleTables::writeStyles).empty());
}

TEST(StyleTables, FormatsEndWithTheIndexesThatCellsCanHold) {
  StyleBook book;
  while (book.tables.formatCount() < 65536) book.tables.addFormat(nullptr);
  EXPECT_EQ(book.tables.indexOf(book.tables.format(65535)), 65535);
  EXPECT_EQ(errorOf([&] { book.tables.addFormat(nullptr); }), "maximum number of formats is exceeded");
  ASSERT_EQ(book.read(&StyleTables::readXf, BytesBuilder().u16(0)), kNothingThrown);
  EXPECT_EQ(book.tables.indexOf(book.tables.format(65536)), std::nullopt);
}

TEST(StyleTables, TheDefaultFontIsTheFirst) {
  NewBook book;
  int size = 0;
  EXPECT_EQ(std::u16string(book.tables.defaultFont(&size)), u"Arial");
  EXPECT_EQ(size, 10);
  book.tables.setDefaultFont(u"Calibri", 11);
  EXPECT_EQ(std::u16string(book.tables.defaultFont(nullptr)), u"Calibri");
  EXPECT_EQ(book.tables.font(0)->size(), 11);
  EXPECT_EQ(errorOf([&] { book.tables.setDefaultFont(std::u16string(256, u'x').c_str(), 5); }),
            "ShortXLUnicodeString: string is too long");
  EXPECT_EQ(book.tables.font(0)->size(), 11);

  StyleBook empty;
  EXPECT_EQ(errorOf([&] { empty.tables.defaultFont(&size); }), "fonts is empty");
  EXPECT_EQ(errorOf([&] { empty.tables.setDefaultFont(u"Calibri", 11); }), "fonts is empty");
}

}  // namespace
}  // namespace rubrica::test
