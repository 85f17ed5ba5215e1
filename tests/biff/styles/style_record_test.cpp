#include "tests/biff/styles/style_fixture.h"

namespace rubrica::test {
namespace {

TEST(StyleRecords, ABuiltInStyleIsWrittenAsItWasRead) {
  StyleBook book;
  const Bytes body = BytesBuilder().u16(0x8010).u8(4).u8(0xFF);
  ASSERT_EQ(book.read(&StyleTables::readStyle, body), kNothingThrown);
  EXPECT_EQ(book.written(&StyleTables::writeStyles), (std::vector<Record>{{659, body}}));
}

TEST(StyleRecords, UserStylesKeepTheFormOfTheirName) {
  StyleBook book;
  const Bytes narrow = BytesBuilder().u16(0x0015).u16(4).u8(0).text("Good");
  const Bytes wide = BytesBuilder().u16(0x0016).u16(2).u8(1).wide(u"\u0431\u0432");
  const Bytes nameless = BytesBuilder().u16(0x0017);
  for (const Bytes& body : {narrow, wide, nameless}) {
    ASSERT_EQ(book.read(&StyleTables::readStyle, body), kNothingThrown);
  }
  EXPECT_EQ(book.tables.styles()[0].name.view(), u"Good");
  EXPECT_EQ(book.written(&StyleTables::writeStyles),
            (std::vector<Record>{{659, narrow}, {659, wide}, {659, nameless}}));
}

TEST(StyleRecords, OneOddByteIsDropped) {
  StyleBook book;
  ASSERT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x8010).u8(4).u8(0xFF).u8(9)), kNothingThrown);
  ASSERT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x0015).u16(2).u8(0).text("ab").u8(9)),
            kNothingThrown);
  const auto records = book.written(&StyleTables::writeStyles);
  EXPECT_EQ(records[0].bytes.size(), 4u);
  EXPECT_EQ(records[1].bytes.size(), 7u);
}

TEST(StyleRecords, BadSizesFail) {
  StyleBook book;
  const std::string wrong = "Style size is incorrect";
  EXPECT_EQ(book.read(&StyleTables::readStyle, {}), wrong);
  EXPECT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u8(1)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x8010)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x8010).u8(4)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x8010).u8(4).u8(0).u16(0)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x0015).u16(1).u8(0).text("abc")), wrong);
  EXPECT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x0015).u16(4).u8(0).text("ab")),
            "error in XLUnicodeString record #1");
  EXPECT_TRUE(book.tables.styles().empty());
}

TEST(StyleRecords, ANameThatGoesOnInAContinueFails) {
  StyleBook book;
  EXPECT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x0015).u16(4).u8(0).text("ab"),
                      {{id::kContinue, BytesBuilder().text("cd")}}),
            "Style size is incorrect");
}

TEST(StyleRecords, TheExtensionBehindAStyleIsCarriedWithIt) {
  StyleBook book;
  const Bytes first = BytesBuilder().u16(0x8010).u8(4).u8(0xFF), second = BytesBuilder().u16(0x8011).u8(7).u8(0xFF);
  const Bytes ext = BytesBuilder().u16(2194).text("anything at all").u8(0);
  ASSERT_EQ(book.read(&StyleTables::readStyle, first, {{id::kStyleExt, ext}}), kNothingThrown);
  ASSERT_EQ(book.read(&StyleTables::readStyle, second, {{id::kPalette, ext}}), kNothingThrown);
  EXPECT_EQ(book.written(&StyleTables::writeStyles),
            (std::vector<Record>{{659, first}, {id::kStyleExt, ext}, {659, second}}));
}

TEST(StyleRecords, AnExtensionWhoseOwnHeaderNamesAnotherRecordFails) {
  StyleBook book;
  const Bytes style = BytesBuilder().u16(0x8010).u8(4).u8(0xFF), ext = BytesBuilder().u16(2195).u8(0);
  EXPECT_EQ(book.read(&StyleTables::readStyle, style, {{id::kStyleExt, ext}}), "StyleExt: unexpected record");
}

TEST(StyleRecords, Biff5NamesCountInOneByteAndAreWrittenInTheBiff8Form) {
  StyleBook book;
  book.state.biffVersion = kBiff5Version;
  book.state.codePage = 1252;
  ASSERT_EQ(book.read(&StyleTables::readStyle, BytesBuilder().u16(0x0015).u8(3).text("na").u8(0xEF)), kNothingThrown);
  const Bytes expected = BytesBuilder().u16(0x0015).u16(3).u8(1).wide(u"na\u00EF");
  EXPECT_EQ(book.written(&StyleTables::writeStyles), (std::vector<Record>{{659, expected}}));
}

}  // namespace
}  // namespace rubrica::test
