#include "tests/biff/styles/style_fixture.h"

namespace rubrica::test {
namespace {

TEST(FormatCopies, EverythingIsTakenFromAnotherBook) {
  NewBook source, target;
  FormatImpl* original = source.tables.addFormat(nullptr);
  FontImpl* font = source.tables.addFont(nullptr);
  font->setBold(true);
  font->setName(u"Verdana");
  original->setFont(font);
  original->setNumFormat(source.tables.addCustomNumFormat(u"0.0 \"kg\""));
  original->setAlignH(AlignH::right);
  original->setAlignV(AlignV::top);
  original->setWrap(true);
  original->setRotation(45);
  original->setIndent(3);
  original->setShrinkToFit(true);
  original->setBorderLeft(BorderStyle::thin);
  original->setBorderRight(BorderStyle::thick);
  original->setBorderTop(BorderStyle::hair);
  original->setBorderBottom(BorderStyle::dashed);
  original->setBorderColor(10);
  original->setBorderTopColor(11);
  original->setBorderBottomColor(12);
  original->setBorderDiagonal(BorderDiagonal::up);
  original->setBorderDiagonalStyle(BorderStyle::dotted);
  original->setBorderDiagonalColor(13);
  original->setFillPattern(FillPattern::solid);
  original->setPatternForegroundColor(14);
  original->setPatternBackgroundColor(15);
  original->setLocked(false);
  original->setHidden(true);

  FormatImpl* copy = target.tables.addFormat(original);
  EXPECT_EQ(target.message(), "ok");
  EXPECT_EQ(target.tables.indexOf(copy), 21);
  EXPECT_EQ(copy->font(), target.tables.font(5));
  EXPECT_EQ(copy->xf().font, 6);
  EXPECT_TRUE(copy->font()->bold());
  EXPECT_EQ(std::u16string(copy->font()->name()), u"Verdana");
  EXPECT_EQ(copy->numFormat(), 164);
  EXPECT_EQ(std::u16string(copy->numFormatText()), u"0.0 \"kg\"");
  EXPECT_EQ(copy->xf().alignment, original->xf().alignment);
  EXPECT_EQ(copy->xf().border1, original->xf().border1);
  EXPECT_EQ(copy->xf().border2, original->xf().border2);
  EXPECT_EQ(copy->xf().fill, original->xf().fill);
  EXPECT_EQ(copy->xf().protection, 2);
}

TEST(FormatCopies, TheRightBorderTakesTheLeftColour) {
  NewBook book;
  FormatImpl* original = book.tables.addFormat(nullptr);
  original->setBorderLeftColor(10);
  original->setBorderRightColor(20);
  FormatImpl* copy = book.tables.addFormat(original);
  EXPECT_EQ(copy->borderLeftColor(), 10);
  EXPECT_EQ(copy->borderRightColor(), 10);
  EXPECT_EQ(original->borderRightColor(), 20);
}

TEST(FormatCopies, ACustomTextIsAddedOnceAndAFontEachTime) {
  NewBook source, target;
  FormatImpl* original = source.tables.addFormat(nullptr);
  original->setNumFormat(source.tables.addCustomNumFormat(u"0.00 \"m\""));
  const FormatImpl* first = target.tables.addFormat(original);
  const FormatImpl* second = target.tables.addFormat(original);
  EXPECT_EQ(first->numFormat(), second->numFormat());
  EXPECT_EQ(target.tables.fontCount(), 7);
  EXPECT_EQ(target.written(&StyleTables::writeFormats).size(), 1u);
  target.tables.addFormat(target.tables.format(15));
  EXPECT_EQ(target.tables.fontCount(), 8);
}

TEST(FormatCopies, AFormatWithoutAFontIsCopiedWithADefaultOne) {
  NewBook book;
  ASSERT_EQ(book.read(&StyleTables::readXf, BytesBuilder().u16(4)), kNothingThrown);
  FormatImpl* copy = book.tables.addFormat(book.tables.format(21));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(copy->font(), book.tables.font(5));
}

// A source of another kind that leaves its colours open and states no name, as formats of other file forms do.
class OpenFont final : public IFontPrivate<char16_t> {
 public:
  int size() const override { return 12; }
  void setSize(int) override {}
  bool italic() const override { return true; }
  void setItalic(bool) override {}
  bool strikeOut() const override { return false; }
  void setStrikeOut(bool) override {}
  Color color() const override {
    modeWhenRead = mode;
    return color::notSet;
  }
  void setColor(Color) override {}
  bool bold() const override { return false; }
  void setBold(bool) override {}
  Script script() const override { return Script::normal; }
  void setScript(Script) override {}
  Underline underline() const override { return Underline::none; }
  void setUnderline(Underline) override {}
  const char16_t* name() override { return nullptr; }
  bool setName(const char16_t*) override { return false; }
  bool hasSize() const override { return true; }
  bool hasItalic() const override { return true; }
  bool hasStrikeOut() const override { return false; }
  bool hasColor() const override { return false; }
  bool hasBold() const override { return false; }
  bool hasScript() const override { return false; }
  bool hasUnderline() const override { return false; }
  bool hasName() const override { return false; }
  bool rgbMode() const override { return mode; }
  void setRgbMode(bool rgbMode) override { mode = rgbMode; }

  bool mode = true;
  mutable bool modeWhenRead = true;
};

TEST(FontCopies, OpenPropertiesKeepTheirDefaultsAndColoursPassAsIndexes) {
  NewBook book;
  book.state.rgbMode = true;
  OpenFont source;
  FontImpl* copy = book.tables.addFont(&source);
  EXPECT_EQ(copy->size(), 12);
  EXPECT_TRUE(copy->italic());
  EXPECT_EQ(copy->color(), color::automatic);
  EXPECT_EQ(std::u16string(copy->name()), u"Arial");
  EXPECT_FALSE(source.modeWhenRead);
  EXPECT_TRUE(source.mode);
  EXPECT_TRUE(book.state.rgbMode);
}

TEST(FormatCopies, TheColourModesComeBackAlsoWhenTheCopyFails) {
  NewBook source, target;
  FormatImpl* original = source.tables.addFormat(nullptr);
  ASSERT_EQ(source.read(&StyleTables::readFormat, BytesBuilder().u16(200).u16(5000).u8(0).fill(5000, 'x')),
            kNothingThrown);
  original->setNumFormat(200);
  source.state.rgbMode = target.state.rgbMode = true;
  EXPECT_EQ(errorOf([&] { target.tables.addFormat(original); }), "string is too long");
  EXPECT_TRUE(source.state.rgbMode);
  EXPECT_TRUE(target.state.rgbMode);
  EXPECT_EQ(target.tables.formatCount(), 21);
}

}  // namespace
}  // namespace rubrica::test
