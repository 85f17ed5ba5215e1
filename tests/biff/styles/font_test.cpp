#include "tests/biff/styles/style_fixture.h"

namespace rubrica::test {
namespace {

TEST(Fonts, ANewFontIsTenPointArial) {
  NewBook book;
  FontImpl* font = book.tables.addFont(nullptr);
  EXPECT_EQ(font->size(), 10);
  EXPECT_FALSE(font->italic());
  EXPECT_FALSE(font->strikeOut());
  EXPECT_EQ(font->color(), color::automatic);
  EXPECT_FALSE(font->bold());
  EXPECT_EQ(font->script(), Script::normal);
  EXPECT_EQ(font->underline(), Underline::none);
  EXPECT_EQ(std::u16string(font->name()), u"Arial");
  EXPECT_EQ(book.tables.fontCount(), 6);
}

TEST(Fonts, SizesAreCutTo16BitsBeforeTheyAreLimited) {
  NewBook book;
  FontImpl* font = book.tables.addFont(nullptr);
  font->setSize(500);
  EXPECT_EQ(font->size(), 409);
  font->setSize(409);
  EXPECT_EQ(font->size(), 409);
  font->setSize(410);
  EXPECT_EQ(font->size(), 409);
  font->setSize(3277);
  EXPECT_EQ(font->size(), 0);
  font->setSize(0);
  EXPECT_EQ(font->size(), 0);
}

TEST(Fonts, EveryPropertyIsKept) {
  NewBook book;
  FontImpl* font = book.tables.addFont(nullptr);
  font->setItalic(true);
  font->setStrikeOut(true);
  font->setColor(color::red);
  font->setBold(true);
  font->setScript(Script::subscript);
  font->setUnderline(Underline::doubleAccounting);
  EXPECT_TRUE(font->setName(u"Times New Roman"));
  EXPECT_TRUE(font->italic());
  EXPECT_TRUE(font->strikeOut());
  EXPECT_EQ(font->color(), color::red);
  EXPECT_TRUE(font->bold());
  EXPECT_EQ(font->script(), Script::subscript);
  EXPECT_EQ(font->underline(), Underline::doubleAccounting);
  EXPECT_EQ(std::u16string(font->name()), u"Times New Roman");
  font->setItalic(false);
  font->setStrikeOut(false);
  font->setBold(false);
  EXPECT_FALSE(font->italic());
  EXPECT_FALSE(font->strikeOut());
  EXPECT_FALSE(font->bold());
}

TEST(Fonts, ANameOf255CharactersIsTheLongest) {
  NewBook book;
  FontImpl* font = book.tables.addFont(nullptr);
  EXPECT_TRUE(font->setName(std::u16string(255, u'n').c_str()));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_FALSE(font->setName(std::u16string(256, u'm').c_str()));
  EXPECT_EQ(book.message(), "ShortXLUnicodeString: string is too long");
  EXPECT_EQ(std::u16string(font->name()), std::u16string(255, u'n'));
  EXPECT_EQ(book.message(), "ok");
}

TEST(Fonts, AFontWithoutANameAnswersNullAndLeavesTheMessage) {
  NewBook book;
  FontImpl* font = book.tables.addFont(nullptr);
  EXPECT_TRUE(font->setName(nullptr));
  book.state.setMessage("earlier");
  EXPECT_EQ(font->name(), nullptr);
  EXPECT_EQ(book.message(), "earlier");
  EXPECT_TRUE(font->setName(u""));
  EXPECT_EQ(std::u16string(font->name()), u"");
}

TEST(Fonts, ABiffFontStatesEverything) {
  NewBook book;
  FontImpl* font = book.tables.addFont(nullptr);
  EXPECT_TRUE(font->hasSize() && font->hasItalic() && font->hasStrikeOut() && font->hasColor() && font->hasBold() &&
              font->hasScript() && font->hasUnderline() && font->hasName());
  font->setRgbMode(true);
  EXPECT_TRUE(book.state.rgbMode);
  EXPECT_TRUE(font->rgbMode());
}

TEST(Fonts, ACopyRoundsTheHeightDownToPoints) {
  StyleBook book;
  const Bytes body =
      BytesBuilder().u16(210).u16(0x000A).u16(12).u16(700).u16(1).u8(2).u8(3).u8(4).u8(5).u8(4).u8(0).text("Mono");
  EXPECT_EQ(book.read(&StyleTables::readFont, body), kNothingThrown);
  FontImpl* copy = book.tables.addFont(book.tables.font(0));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(copy->size(), 10);
  EXPECT_TRUE(copy->italic() && copy->strikeOut() && copy->bold());
  EXPECT_EQ(copy->color(), 12);
  EXPECT_EQ(copy->script(), Script::superscript);
  EXPECT_EQ(copy->underline(), Underline::doubleLine);
  EXPECT_EQ(std::u16string(copy->name()), u"Mono");
  const auto records = book.written(&StyleTables::writeFonts);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1].bytes[0], std::byte{200});
}

TEST(Fonts, TheRecordHasTheNameInTwoByteForm) {
  NewBook book;
  const auto records = book.written(&StyleTables::writeFonts);
  ASSERT_EQ(records.size(), 5u);
  const Bytes body = BytesBuilder().u16(200).u16(0).u16(0x7FFF).u16(400).u16(0).u32(0).u8(5).u8(1).wide(u"Arial");
  for (const Record& record : records) EXPECT_EQ(record, (Record{49, body}));
}

TEST(Fonts, ARecordIsWrittenAsItWasRead) {
  StyleBook book;
  const Bytes narrow =
      BytesBuilder().u16(210).u16(0xFFF5).u16(12).u16(123).u16(7).u8(9).u8(3).u8(204).u8(77).u8(4).u8(0).text("Mono");
  const Bytes nameless = BytesBuilder().u16(210).u16(0).u16(12).u16(400).u16(0).u32(0);
  EXPECT_EQ(book.read(&StyleTables::readFont, narrow), kNothingThrown);
  EXPECT_EQ(book.read(&StyleTables::readFont, nameless), kNothingThrown);
  EXPECT_EQ(book.tables.font(1)->name(), nullptr);
  EXPECT_EQ(book.written(&StyleTables::writeFonts), (std::vector<Record>{{49, narrow}, {49, nameless}}));
}

TEST(Fonts, BytesBehindTheNameAreDropped) {
  StyleBook book;
  BytesBuilder body;
  body.u16(200).u16(0).u16(12).u16(400).u16(0).u32(0).u8(2).u8(0).text("ab");
  const Bytes clean = body;
  EXPECT_EQ(book.read(&StyleTables::readFont, body.u8(1).u8(2).u8(3)), kNothingThrown);
  EXPECT_EQ(book.written(&StyleTables::writeFonts), (std::vector<Record>{{49, clean}}));
}

TEST(Fonts, BadSizesFail) {
  StyleBook book;
  const Bytes fixed = BytesBuilder().u16(200).u16(0).u16(12).u16(400).u16(0).u32(0);
  EXPECT_EQ(book.read(&StyleTables::readFont, {}), "Font size is incorrect");
  EXPECT_EQ(book.read(&StyleTables::readFont, Bytes(13)), "Font size is incorrect");
  EXPECT_EQ(book.read(&StyleTables::readFont, BytesBuilder().bytes(fixed).u8(0).u8(0)), kNothingThrown);
  EXPECT_EQ(book.read(&StyleTables::readFont, BytesBuilder().bytes(fixed).u8(3).u8(0).text("ab")),
            "error in Font record");
  EXPECT_EQ(book.read(&StyleTables::readFont, BytesBuilder().bytes(fixed).u8(2).u8(1).text("abc")),
            "error in Font record");
  EXPECT_EQ(book.read(&StyleTables::readFont, BytesBuilder().bytes(fixed).u8(3)), "error in Font record");
  EXPECT_EQ(book.tables.fontCount(), 1);
}

TEST(Fonts, ARecordThatTheStreamCutsOffFails) {
  StyleBook book;
  RecordStream stream({{49, Bytes(20)}});
  std::uint16_t size = 0;
  Xls& xls = stream.firstRecord(size);
  EXPECT_EQ(errorOf([&] { book.tables.readFont(xls, 60000); }), "error in Font record");
}

TEST(Fonts, Biff5NamesAreDecodedAndWrittenInTheBiff8Form) {
  StyleBook book;
  book.state.biffVersion = kBiff5Version;
  book.state.codePage = 1251;
  BytesBuilder body;
  body.u16(200).u16(0).u16(0x7FFF).u16(400).u16(0).u32(0);
  const Bytes fixed = body;
  EXPECT_EQ(book.read(&StyleTables::readFont, body.u8(3).u8(0xC0).u8(0x62).u8(0xFF)), kNothingThrown);
  EXPECT_EQ(std::u16string(book.tables.font(0)->name()), u"\u0410b\u044F");
  EXPECT_EQ(book.read(&StyleTables::readFont, BytesBuilder().bytes(fixed).u8(0)), kNothingThrown);
  EXPECT_EQ(std::u16string(book.tables.font(1)->name()), u"");
  const Bytes expected = BytesBuilder().bytes(fixed).u8(3).u8(1).wide(u"\u0410b\u044F");
  EXPECT_EQ(book.written(&StyleTables::writeFonts)[0], (Record{49, expected}));
}

}  // namespace
}  // namespace rubrica::test
