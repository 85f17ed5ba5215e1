#include "tests/biff/styles/style_fixture.h"

namespace rubrica::test {
namespace {

std::uint32_t unpacked(const StyleTables& tables, int color) {
  int red = 0, green = 0, blue = 0;
  tables.colorUnpack(color, &red, &green, &blue);
  return static_cast<std::uint32_t>(red << 16 | green << 8 | blue);
}

TEST(PaletteColors, TheDefaultsStandInTheirOrder) {
  NewBook book;
  EXPECT_EQ(unpacked(book.tables, 8), 0x000000u);
  EXPECT_EQ(unpacked(book.tables, 9), 0xFFFFFFu);
  EXPECT_EQ(unpacked(book.tables, 10), 0xFF0000u);
  EXPECT_EQ(unpacked(book.tables, 12), 0x0000FFu);
  EXPECT_EQ(unpacked(book.tables, 22), 0xC0C0C0u);
  EXPECT_EQ(unpacked(book.tables, 24), 0x9999FFu);
  EXPECT_EQ(unpacked(book.tables, 32), 0x000080u);
  EXPECT_EQ(unpacked(book.tables, 48), 0x3366FFu);
  EXPECT_EQ(unpacked(book.tables, 63), 0x333333u);
}

TEST(PaletteColors, AKnownColourGivesItsFirstIndex) {
  NewBook book;
  EXPECT_EQ(book.tables.colorPack(0, 0, 0), 8);
  EXPECT_EQ(book.tables.colorPack(255, 0, 0), 10);
  EXPECT_EQ(book.tables.colorPack(0, 0, 128), 18);
  EXPECT_EQ(book.tables.colorPack(255, 0, 255), 14);
}

TEST(PaletteColors, ANewColourOverwritesTheFirstEntryNotHandedOut) {
  NewBook book;
  EXPECT_EQ(book.tables.colorPack(1, 2, 3), 8);
  EXPECT_EQ(unpacked(book.tables, 8), 0x010203u);
  EXPECT_EQ(book.tables.colorPack(255, 255, 255), 9);
  EXPECT_EQ(book.tables.colorPack(4, 5, 6), 10);
  EXPECT_EQ(book.tables.colorPack(1, 2, 3), 8);
  EXPECT_EQ(unpacked(book.tables, 9), 0xFFFFFFu);
}

TEST(PaletteColors, ComponentsAreBytes) {
  NewBook book;
  EXPECT_EQ(book.tables.colorPack(256 + 255, 256, -256), 10);
}

TEST(PaletteColors, TheFiftySeventhDifferentColourFails) {
  NewBook book;
  for (int i = 0; i < 56; ++i) EXPECT_EQ(book.tables.colorPack(i, 1, 1), i + 8);
  EXPECT_EQ(errorOf([&] { book.tables.colorPack(200, 1, 1); }), "no free color index, limit is reached for xls format");
  EXPECT_TRUE(book.tables.paletteChanged());
  EXPECT_EQ(book.tables.colorPack(55, 1, 1), 63);
  EXPECT_EQ(unpacked(book.tables, 8), 0x000101u);
}

TEST(PaletteColors, IndexesWithoutAnEntryFailAndLeaveTheOutValues) {
  NewBook book;
  for (const int color : {-1, 0, 7, 64, 65, 0x7FFF}) {
    int red = 77, green = 78, blue = 79;
    EXPECT_EQ(errorOf([&] { book.tables.colorUnpack(color, &red, &green, &blue); }), "invalid vector<T> subscript");
    EXPECT_EQ(red, 77);
    EXPECT_EQ(green, 78);
    EXPECT_EQ(blue, 79);
  }
  EXPECT_FALSE(book.tables.paletteChanged());
}

TEST(PaletteColors, OutValuesMayBeLeftOut) {
  NewBook book;
  int green = 0;
  book.tables.colorUnpack(11, nullptr, &green, nullptr);
  EXPECT_EQ(green, 255);
}

TEST(PaletteRecords, AreWrittenOnlyForAChangedPalette) {
  NewBook book;
  EXPECT_TRUE(book.written(&StyleTables::writePalette).empty());
  book.tables.colorPack(1, 2, 3);
  const auto records = book.written(&StyleTables::writePalette);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].recordId, 146);
  ASSERT_EQ(records[0].bytes.size(), 2u + 4 * 56);
  const Bytes head = BytesBuilder().u16(56).u8(1).u8(2).u8(3).u8(0).u8(255).u8(255).u8(255).u8(0);
  EXPECT_TRUE(std::equal(head.begin(), head.end(), records[0].bytes.begin()));
}

TEST(PaletteRecords, AreWrittenAsTheyWereReadReservedBytesIncluded) {
  StyleBook book;
  BytesBuilder body;
  body.u16(56);
  for (unsigned i = 0; i < 56; ++i) body.u8(i).u8(100).u8(200).u8(i + 1);
  ASSERT_EQ(book.read(&StyleTables::readPalette, body), kNothingThrown);
  EXPECT_TRUE(book.tables.paletteChanged());
  EXPECT_EQ(book.written(&StyleTables::writePalette), (std::vector<Record>{{146, body}}));
  // Nothing of it was handed out: the first unknown colour takes entry 0.
  EXPECT_EQ(book.tables.colorPack(20, 100, 200), 28);
  EXPECT_EQ(book.tables.colorPack(9, 9, 9), 8);
}

TEST(PaletteRecords, OfOtherCountsChangeTheSize) {
  StyleBook book;
  ASSERT_EQ(book.read(&StyleTables::readPalette, BytesBuilder().u16(2).u32(0x030201).u32(0x060504)), kNothingThrown);
  EXPECT_EQ(unpacked(book.tables, 9), 0x040506u);
  EXPECT_EQ(errorOf([&] { unpacked(book.tables, 10); }), "invalid vector<T> subscript");
  EXPECT_EQ(book.tables.colorPack(9, 9, 9), 8);
  EXPECT_EQ(book.tables.colorPack(9, 9, 8), 9);
  EXPECT_EQ(book.tables.colorPack(9, 9, 7), 10);
  EXPECT_EQ(unpacked(book.tables, 10), 0x090907u);

  BytesBuilder large;
  large.u16(60);
  for (std::uint32_t i = 0; i < 60; ++i) large.u32(i);
  ASSERT_EQ(book.read(&StyleTables::readPalette, large), kNothingThrown);
  EXPECT_EQ(book.tables.colorPack(59, 0, 0), 67);
}

TEST(PaletteRecords, WithNoEntriesLeaveTheColours) {
  NewBook book;
  ASSERT_EQ(book.read(&StyleTables::readPalette, BytesBuilder().u16(0)), kNothingThrown);
  EXPECT_EQ(unpacked(book.tables, 63), 0x333333u);
  EXPECT_TRUE(book.tables.paletteChanged());
  ASSERT_EQ(book.read(&StyleTables::readPalette, BytesBuilder().u16(0xFFFF)), kNothingThrown);
  const auto records = book.written(&StyleTables::writePalette);
  NewBook reloaded;
  EXPECT_EQ(reloaded.read(&StyleTables::readPalette, records[0].bytes), kNothingThrown);
}

TEST(PaletteRecords, OfAWrongSizeFail) {
  StyleBook book;
  const std::string wrong = "Palette size is incorrect";
  EXPECT_EQ(book.read(&StyleTables::readPalette, {}), wrong);
  EXPECT_EQ(book.read(&StyleTables::readPalette, BytesBuilder().u8(1)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readPalette, BytesBuilder().u16(2).u32(0)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readPalette, BytesBuilder().u16(1).u32(0).u8(0)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readPalette, BytesBuilder().u16(0).u8(0)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readPalette, BytesBuilder().u16(0x7FFF).u32(0)), wrong);
  EXPECT_FALSE(book.tables.paletteChanged());
}

TEST(PaletteColors, ANewLoadBringsTheDefaultsBackButNotWhatWasHandedOut) {
  NewBook book;
  book.tables.colorPack(1, 2, 3);
  book.tables.clear();
  EXPECT_FALSE(book.tables.paletteChanged());
  EXPECT_EQ(unpacked(book.tables, 8), 0u);
  EXPECT_EQ(book.tables.colorPack(1, 2, 3), 9);
}

}  // namespace
}  // namespace rubrica::test
