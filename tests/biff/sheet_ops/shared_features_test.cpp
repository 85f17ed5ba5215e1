#include "biff/shared_features.h"

#include "biff/sheet_ext.h"
#include "tests/biff/sheet_ops/sheet_fixture.h"

namespace rubrica::test {
namespace {

BytesBuilder frt(unsigned rt) {
  return BytesBuilder().u16(rt).u16(0).u32(0).u32(0);
}

Bytes header(unsigned isf) {
  return frt(2151).u16(isf).u8(1).u32(0);
}

Bytes feat(unsigned errorSet, const std::vector<std::array<unsigned, 4>>& ranges) {
  BytesBuilder bytes = frt(2152).u16(3).u8(0).u32(0).u16(static_cast<unsigned>(ranges.size())).u32(4).u16(0);
  for (const auto& r : ranges) bytes.u16(r[0]).u16(r[1]).u16(r[2]).u16(r[3]);
  return bytes.u32(errorSet);
}

TEST(IgnoredErrors, AreAddedOnce) {
  TestBook book;
  EXPECT_TRUE(book.sheet->addIgnoredError(1, 2, 3, 4, 4));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_REFUSED(book, book.sheet->addIgnoredError(1, 2, 3, 4, 4), "ignored error already exists");
  EXPECT_REFUSED(book, book.sheet->addIgnoredError(2, 3, 2, 3, 4), "ignored error already exists");
  EXPECT_EQ(book.saved(id::kFeatHdr), std::vector<Bytes>{header(3)});
  EXPECT_EQ(book.saved(id::kFeat), std::vector<Bytes>{feat(4, {{1, 3, 2, 4}})});
}

TEST(IgnoredErrors, OfOneSetShareAFeature) {
  TestBook book;
  EXPECT_TRUE(book.sheet->addIgnoredError(0, 0, 0, 0, 4));
  EXPECT_TRUE(book.sheet->addIgnoredError(0, 0, 0, 0, 8));
  EXPECT_TRUE(book.sheet->addIgnoredError(5, 5, 6, 6, 4));
  EXPECT_EQ(book.saved(id::kFeatHdr).size(), 1u);
  const std::vector<Bytes> expected = {feat(4, {{0, 0, 0, 0}, {5, 6, 5, 6}}), feat(8, {{0, 0, 0, 0}})};
  EXPECT_EQ(book.saved(id::kFeat), expected);
  ASSERT_TRUE(book.reload()) << book.message();
  EXPECT_EQ(book.saved(id::kFeat), expected);
  EXPECT_REFUSED(book, book.sheet->addIgnoredError(6, 6, 6, 6, 4), "ignored error already exists");
  EXPECT_TRUE(book.sheet->addIgnoredError(6, 6, 7, 6, 4));
}

TEST(IgnoredErrors, OutsideTheSheetAreRefused) {
  TestBook book;
  EXPECT_REFUSED(book, book.sheet->addIgnoredError(-1, 0, 0, 0, 4), "row must be in range 0-65535");
  EXPECT_REFUSED(book, book.sheet->addIgnoredError(0, 0, 0, 256, 4), "col must be in range 0-255");
  EXPECT_TRUE(book.saved(id::kFeatHdr).empty());
}

TEST(IgnoredErrors, AFullFeatureIsFollowedByAnother) {
  TestBook book;
  for (int i = 0; i < 2100; ++i) ASSERT_TRUE(book.sheet->addIgnoredError(i * 2, 0, i * 2, 0, 4)) << i;
  const auto feats = book.saved(id::kFeat);
  EXPECT_EQ(feats.size(), 3u);
  for (const Bytes& bytes : feats) EXPECT_LE(bytes.size(), 8224u);
  ASSERT_TRUE(book.reload()) << book.message();
  EXPECT_REFUSED(book, book.sheet->addIgnoredError(0, 0, 0, 0, 4), "ignored error already exists");
}

TEST(SharedFeatures, OfAFileSurviveByteForByteAndInOrder) {
  const std::vector<Record> features = {
      {id::kFeatHdr, frt(2151).u16(2).u8(1).u32(0xFFFFFFFF).u32(0x4400)},
      {id::kFeat, frt(2152).u16(2).u8(7).u32(8).u16(1).u32(0).u16(9).u16(1).u16(1).u16(1).u16(1).fill(33, 0x5A)},
      {id::kContinueFrt, frt(2066).fill(20, 1)},
      {id::kContinueFrt, bytesOf({0x12, 8, 0, 0})},
      {id::kFeat, feat(4, {{1, 2, 3, 4}})},
      {id::kFeatHdr, frt(2151).u16(4).u8(0).u32(3).fill(70, 3)},
      {id::kFeat, frt(2152).u16(4).u8(0).u32(0).u16(0).u32(0).u16(0)},
      {id::kFeatHdr11, frt(2161).u16(5).u8(1).u32(2).u32(3).u32(4).u16(5)}};
  TestBook book;
  ASSERT_TRUE(book.reload(features)) << book.message();
  std::vector<Record> kept;
  for (const Record& record : book.records()) {
    for (const std::uint16_t recordId : {id::kFeatHdr, id::kFeat, id::kContinueFrt, id::kFeatHdr11}) {
      if (record.recordId == recordId) kept.push_back(record);
    }
  }
  EXPECT_EQ(kept, features);
}

TEST(SharedFeatures, AFeatureWithoutAHeaderStaysAsItCame) {
  TestBook book;
  const Record stray = {id::kFeat, bytesOf({1, 2, 3})};
  ASSERT_TRUE(book.reload({stray})) << book.message();
  EXPECT_EQ(book.saved(id::kFeat), std::vector<Bytes>{stray.bytes});
}

TEST(SharedFeatures, WrongSizesAreRefused) {
  struct Case {
    std::vector<Record> records;
    const char* message;
  };
  const Record good = {id::kFeatHdr, header(3)};
  for (const Case& c :
       {Case{{{id::kFeatHdr, BytesBuilder().fill(18, 0)}}, "FeatHdr size is incorrect"},
        Case{{good, {id::kFeat, BytesBuilder().fill(26, 0)}}, "Feat size is incorrect"},
        Case{{good, {id::kFeat, frt(2152).u16(3).u8(0).u32(0).u16(2).u32(0).u16(0).fill(15, 0)}},
             "Feat size is incorrect"},
        Case{{good, {id::kFeat, feat(1, {})}, {id::kContinueFrt, bytesOf({1, 2, 3})}}, "ContinueFrt size is incorrect"},
        Case{{{id::kFeatHdr11, BytesBuilder().fill(28, 0)}}, "FeatHdr11 size is incorrect"}}) {
    TestBook book;
    EXPECT_FALSE(book.reload(c.records));
    EXPECT_EQ(book.message(), c.message);
  }
}

TEST(SharedFeatures, AnotherRecordInTheirPlaceIsRefused) {
  RecordStream stream({{id::kFeatHdr, header(3)}});
  EXPECT_EQ(errorOf([&] { Feat::read(stream.reader()); }), "Feat: unexpected record");
}

Bytes sheetExt(unsigned index) {
  return frt(2146).u32(20).u32(index);
}

TEST(TabColors, OfThePaletteAreAnIndex) {
  TestBook book;
  EXPECT_TRUE(book.saved(id::kSheetExt).empty());
  book.sheet->setTabColor(10);
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.saved(id::kSheetExt), std::vector<Bytes>{sheetExt(10)});
  book.sheet->setTabColor(12);
  EXPECT_EQ(book.saved(id::kSheetExt), std::vector<Bytes>{sheetExt(12)});
}

TEST(TabColors, OfRgbCarryTheNearestOfThePalette) {
  TestBook book;
  book.sheet->setTabRgbColor(250, 3, 1);
  const Bytes expected = frt(2146).u32(40).u32(10).u32(10).u32(2).u32(0xFF0103FA).u32(0).u32(0);
  EXPECT_EQ(book.saved(id::kSheetExt), std::vector<Bytes>{expected});
  EXPECT_TRUE(book.saved(id::kPalette).empty()) << "the palette stays as it was";
  ASSERT_TRUE(book.reload());
  book.sheet->setTabColor(11);
  const Bytes indexed = frt(2146).u32(40).u32(11).u32(11).u32(1).u32(11).u32(0).u32(0);
  EXPECT_EQ(book.saved(id::kSheetExt), std::vector<Bytes>{indexed});
}

TEST(TabColors, KeepWhatElseTheRecordSays) {
  TestBook book;
  const Bytes loaded = frt(2146).u32(40).u32(0x7F).u32(0xFF).u32(0).u32(0).u32(0).u32(0);
  ASSERT_TRUE(book.reload({{id::kSheetExt, loaded}}));
  EXPECT_EQ(book.saved(id::kSheetExt), std::vector<Bytes>{loaded});
  book.sheet->setTabColor(10);
  EXPECT_EQ(book.saved(id::kSheetExt),
            std::vector<Bytes>{frt(2146).u32(40).u32(10).u32(0x80 | 10).u32(1).u32(10).u32(0).u32(0)});
}

TEST(TabColors, ABrokenRecordIsReplaced) {
  TestBook book;
  ASSERT_TRUE(book.reload({{id::kSheetExt, bytesOf({1, 2, 3})}}));
  book.sheet->setTabColor(10);
  EXPECT_EQ(book.saved(id::kSheetExt), std::vector<Bytes>{sheetExt(10)});
}

}  // namespace
}  // namespace rubrica::test
