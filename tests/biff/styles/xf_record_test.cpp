#include "tests/biff/styles/style_fixture.h"

namespace rubrica::test {
namespace {

Bytes wholeXf() {
  return BytesBuilder().u16(6).u16(164).u16(0x0003).u32(0x12345678).u32(0x9ABCDEF0).u32(0x0FEDCBA9).u16(0xD321);
}

TEST(XfRecords, AreWrittenAsTheyWereRead) {
  StyleBook book;
  ASSERT_EQ(book.read(&StyleTables::readXf, wholeXf()), kNothingThrown);
  EXPECT_EQ(book.written(&StyleTables::writeXfs), (std::vector<Record>{{224, wholeXf()}}));
}

TEST(XfRecords, MayEndBehindAnyWordAndAreWrittenWhole) {
  const Bytes whole = wholeXf();
  const Bytes fresh = BytesBuilder().u16(0).u16(0).u16(0xFFF5).u32(0x20).u32(0x20400000).u32(0x2040).u16(0x20C0);
  for (const std::size_t size : {2u, 4u, 6u, 10u, 14u, 18u, 20u}) {
    StyleBook book;
    ASSERT_EQ(book.read(&StyleTables::readXf, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}),
              kNothingThrown);
    Bytes expected = fresh;
    std::copy_n(whole.begin(), size, expected.begin());
    EXPECT_EQ(book.written(&StyleTables::writeXfs)[0].bytes, expected) << size;
  }
}

TEST(XfRecords, OfAnyOtherSizeFail) {
  const Bytes whole = BytesBuilder().bytes(wholeXf()).u16(0);
  for (const std::size_t size : {0u, 1u, 3u, 5u, 7u, 9u, 11u, 13u, 15u, 17u, 19u, 21u, 22u}) {
    StyleBook book;
    EXPECT_EQ(book.read(&StyleTables::readXf, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}),
              "XF size is incorrect")
        << size;
    EXPECT_EQ(book.tables.formatCount(), 0);
  }
}

// A: right (3), wrap, top (0). B: 90 degrees. C: foreground 10, background 11, pattern 1, bottom style 2, the top bit.
// D: top 3, left 4, right 5, top colour 12, left colour 13, right colour 14.
constexpr std::uint32_t kC = 10u | 11u << 7 | 1u << 16 | 2u << 22 | 0x7Fu << 25;
constexpr std::uint32_t kD = 3u | 4u << 3 | 5u << 6 | 12u << 9 | 13u << 16 | 14u << 23;

Bytes biff5Xf() {
  return BytesBuilder().u16(1).u16(2).u16(0x0001).u8(0x0B).u8(2).u32(kC).u32(kD);
}

TEST(Biff5XfRecords, AreDealtOutThroughTheSetters) {
  StyleBook book;
  book.state.biffVersion = kBiff5Version;
  ASSERT_EQ(book.read(&StyleTables::readXf, biff5Xf()), kNothingThrown);
  const FormatImpl& format = *book.tables.format(0);
  EXPECT_EQ(format.xf().font, 1);
  EXPECT_EQ(format.numFormat(), 2);
  EXPECT_EQ(format.xf().protection, 1);
  EXPECT_EQ(format.alignH(), AlignH::right);
  EXPECT_TRUE(format.wrap());
  EXPECT_EQ(format.alignV(), AlignV::top);
  EXPECT_EQ(format.rotation(), 90);
  EXPECT_EQ(format.patternForegroundColor(), 10);
  EXPECT_EQ(format.patternBackgroundColor(), 11);
  EXPECT_EQ(format.fillPattern(), FillPattern::solid);
  EXPECT_EQ(format.borderBottom(), BorderStyle::medium);
  EXPECT_EQ(format.borderBottomColor(), 1);
  EXPECT_EQ(format.borderTop(), BorderStyle::dashed);
  EXPECT_EQ(format.borderLeft(), BorderStyle::dotted);
  EXPECT_EQ(format.borderRight(), BorderStyle::thick);
  EXPECT_EQ(format.borderTopColor(), 12);
  EXPECT_EQ(format.borderLeftColor(), 13);
  EXPECT_EQ(format.borderRightColor(), 14);
  EXPECT_EQ(format.xf().alignment & 0xFC000000, 0x70000000u);
  EXPECT_EQ(book.written(&StyleTables::writeXfs)[0].bytes.size(), 20u);
}

TEST(Biff5XfRecords, TurnTextByFourSteps) {
  for (const auto& [bits, rotation] : {std::pair{0u, 0}, {1u, 255}, {2u, 90}, {3u, 180}, {0xFCu, 0}}) {
    StyleBook book;
    book.state.biffVersion = kBiff5Version;
    ASSERT_EQ(book.read(&StyleTables::readXf, BytesBuilder().u16(0).u16(0).u16(1).u8(0x20).u8(bits)), kNothingThrown);
    EXPECT_EQ(book.tables.format(0)->rotation(), rotation);
  }
}

TEST(Biff5XfRecords, MayEndBehindAnyWord) {
  const Bytes whole = BytesBuilder().bytes(biff5Xf()).u8(0);
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    StyleBook book;
    book.state.biffVersion = kBiff5Version;
    const bool legal = size == 2 || size == 4 || (size >= 6 && size <= 8) || size == 12 || size == 16;
    EXPECT_EQ(book.read(&StyleTables::readXf, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}),
              legal ? kNothingThrown : "XF size is incorrect")
        << size;
    if (size == 6) {
      EXPECT_EQ(book.tables.format(0)->xf().alignment, 0x20u);
      EXPECT_EQ(book.tables.format(0)->xf().fill, 0x20C0);
    }
    if (size == 12) {
      EXPECT_EQ(book.tables.format(0)->borderTopColor(), 64);
    }
  }
}

}  // namespace
}  // namespace rubrica::test
