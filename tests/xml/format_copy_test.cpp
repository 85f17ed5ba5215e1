// Formats and fonts copied within a book, to another one of the same flavour, to the other flavour, and from an .xls
// book.
#include <memory>

#include "biff/book_impl.h"
#include "engine/book_ptr.h"
#include "tests/xml/flavours.h"
#include "xml/styles.h"
#include "xml/xml_font.h"
#include "xml/xml_format.h"

namespace rubrica {
namespace {

BookPtr newXlsBook() {
  return BookPtr(createBiffBook());
}

void dress(Format* format, Font* font, int numFormat) {
  font->setName(u"Courier");
  font->setSize(17);
  font->setBold(true);
  font->setColor(12);
  font->setUnderline(Underline::doubleLine);
  format->setFont(font);
  format->setNumFormat(numFormat);
  format->setAlignH(AlignH::center);
  format->setAlignV(AlignV::justify);
  format->setWrap(true);
  format->setRotation(90);
  format->setIndent(3);
  format->setBorderLeft(BorderStyle::thin);
  format->setBorderLeftColor(10);
  format->setBorderRight(BorderStyle::dashed);
  format->setBorderRightColor(11);
  format->setBorderDiagonal(BorderDiagonal::up);
  format->setBorderDiagonalStyle(BorderStyle::hair);
  format->setFillPattern(FillPattern::gray50);
  format->setPatternForegroundColor(13);
  format->setPatternBackgroundColor(14);
  format->setLocked(false);
  format->setHidden(true);
}

void expectDressed(Format* format) {
  Font* font = format->font();
  ASSERT_NE(font, nullptr);
  EXPECT_EQ(std::u16string(font->name()), u"Courier");
  EXPECT_EQ(font->size(), 17);
  EXPECT_TRUE(font->bold());
  EXPECT_FALSE(font->italic());
  EXPECT_EQ(font->color(), 12);
  EXPECT_EQ(font->underline(), Underline::doubleLine);
  EXPECT_EQ(format->alignH(), AlignH::center);
  EXPECT_EQ(format->alignV(), AlignV::justify);
  EXPECT_TRUE(format->wrap());
  EXPECT_EQ(format->rotation(), 90);
  EXPECT_EQ(format->indent(), 3);
  EXPECT_FALSE(format->shrinkToFit());
  EXPECT_EQ(format->borderLeft(), BorderStyle::thin);
  EXPECT_EQ(format->borderLeftColor(), 10);
  EXPECT_EQ(format->borderRight(), BorderStyle::dashed);
  EXPECT_EQ(format->borderRightColor(), 11);
  EXPECT_EQ(format->borderTop(), BorderStyle::none);
  EXPECT_EQ(format->borderDiagonal(), BorderDiagonal::up);
  EXPECT_EQ(format->borderDiagonalStyle(), BorderStyle::hair);
  EXPECT_EQ(format->fillPattern(), FillPattern::gray50);
  EXPECT_EQ(format->patternForegroundColor(), 13);
  EXPECT_EQ(format->patternBackgroundColor(), 14);
  EXPECT_FALSE(format->locked());
  EXPECT_TRUE(format->hidden());
}

template <class Tag>
class FormatCopiesOf : public ::testing::Test {
 protected:
  LastMessage last;
  Styles<Tag> book{last};
};
TYPED_TEST_SUITE(FormatCopiesOf, Flavours, FlavourNames);

TYPED_TEST(FormatCopiesOf, ACopyWithinTheBookSharesTheFontAndNothingElse) {
  auto& styles = this->book;
  auto* source = styles.addFormat(nullptr);
  dress(source, styles.addFont(nullptr), styles.addCustomNumFormat(u"0.00 x"));
  auto* copy = styles.addFormat(source);
  expectDressed(copy);
  EXPECT_EQ(copy->font(), source->font());
  EXPECT_EQ(copy->numFormat(), 166);
  EXPECT_EQ(copy->xf().get_borderId(), styles.get_borders().size_border() - 1);
  EXPECT_EQ(copy->xf().get_fillId(), styles.get_fills().size_fill() - 1);
  copy->setBorderLeft(BorderStyle::none);
  copy->setFillPattern(FillPattern::solid);
  expectDressed(source);
}

TYPED_TEST(FormatCopiesOf, ACopyOfAPlainFormatHasNoFill) {
  auto& styles = this->book;
  auto* copy = styles.addFormat(styles.format(0));
  EXPECT_EQ(copy->xf().get_fillId(), 0u);
  EXPECT_EQ(copy->xf().get_borderId(), 1u);
  EXPECT_EQ(styles.get_fills().size_fill(), 2u);
  EXPECT_EQ(styles.formatCount(), 2);
}

TYPED_TEST(FormatCopiesOf, ACopyFromAnotherBookBringsItsFontAndNumberFormat) {
  LastMessage otherLast;
  Styles<TypeParam> other(otherLast);
  for (int i = 0; i < 3; ++i) other.addCustomNumFormat(std::u16string(1, static_cast<char16_t>(u'a' + i)));
  auto* source = other.addFormat(nullptr);
  dress(source, other.addFont(nullptr), other.addCustomNumFormat(u"0.00 x"));
  auto* copy = this->book.addFormat(source);
  expectDressed(copy);
  EXPECT_EQ(std::u16string(copy->numFormatText()), u"0.00 x");
  EXPECT_EQ(copy->numFormat(), 166);
  EXPECT_EQ(this->book.fontCount(), 2);
  EXPECT_EQ(copy->font(), this->book.font(1));
}

TYPED_TEST(FormatCopiesOf, ACopyFromTheOtherFlavourKeepsEveryColorForm) {
  using Other = typename Flavour<TypeParam>::Other;
  LastMessage otherLast;
  Styles<Other> other(otherLast);
  auto* source = other.addFormat(nullptr);
  dress(source, other.addFont(nullptr), other.addCustomNumFormat(u"\"<left\" 0"));
  source->setBorderTop(BorderStyle::none);
  other.get_borders().get_border(1).get_bottom().get_color().set_theme(4);
  other.setRgbMode(true);
  source->setBorderTopColor(0x123456);
  other.setRgbMode(false);
  auto* copy = this->book.addFormat(source);
  expectDressed(copy);
  EXPECT_EQ(std::u16string(copy->numFormatText()), u"\"<left\" 0");
  ASSERT_NE(copy->border()->find_bottom(), nullptr);
  EXPECT_EQ(copy->border()->find_bottom()->find_color()->get_theme(), 4u);
  this->book.setRgbMode(true);
  EXPECT_EQ(copy->borderTopColor(), 0x123456);
}

TYPED_TEST(FormatCopiesOf, ACopyFromAnXlsBookKeepsWhatTheInterfaceTells) {
  const BookPtr xls = newXlsBook();
  auto* source = xls->addFormat();
  dress(source, xls->addFont(), xls->addCustomNumFormat(u"0.00 x"));
  for (const bool rgb : {false, true}) {
    this->book.setRgbMode(rgb);
    auto* copy = this->book.addFormat(source);
    EXPECT_EQ(this->book.rgbMode(), rgb);
    this->book.setRgbMode(false);
    expectDressed(copy);
    EXPECT_EQ(std::u16string(copy->numFormatText()), u"0.00 x");
    EXPECT_EQ(copy->numFormat(), 166);
  }
}

TYPED_TEST(FormatCopiesOf, AnXlsBookTakesACopyBack) {
  const BookPtr xls = newXlsBook();
  auto* source = this->book.addFormat(nullptr);
  dress(source, this->book.addFont(nullptr), this->book.addCustomNumFormat(u"0.00 x"));
  source->setBorderRightColor(10);  // there a copy's right border always has the colour of the left one
  auto* copy = xls->addFormat(source);
  EXPECT_EQ(copy->borderRightColor(), 10);
  copy->setBorderRightColor(11);
  expectDressed(copy);
  EXPECT_EQ(copy->numFormat(), 164);
  EXPECT_EQ(std::u16string(xls->customNumFormat(164)), u"0.00 x");
}

TYPED_TEST(FormatCopiesOf, FontsAreCopiedFromEveryKindOfBook) {
  using Other = typename Flavour<TypeParam>::Other;
  const BookPtr xls = newXlsBook();
  LastMessage otherLast;
  Styles<Other> other(otherLast);
  auto* font = other.addFont(nullptr);
  for (Font* source : {static_cast<Font*>(font), xls->addFont(), static_cast<Font*>(this->book.addFont(nullptr))}) {
    source->setName(u"Courier");
    source->setSize(17);
    source->setItalic(true);
    source->setScript(Script::subscript);
    source->setColor(12);
    auto* copy = this->book.addFont(source);
    EXPECT_EQ(std::u16string(copy->name()), u"Courier");
    EXPECT_EQ(copy->size(), 17);
    EXPECT_TRUE(copy->italic());
    EXPECT_FALSE(copy->bold());
    EXPECT_EQ(copy->script(), Script::subscript);
    EXPECT_EQ(copy->color(), 12);
    source->setSize(8);
    EXPECT_EQ(copy->size(), 17);
  }
}

TYPED_TEST(FormatCopiesOf, AFormatWithoutAFontIsCopiedWithTheFirst) {
  const std::string text = partText<TypeParam>("styleSheet", "<cellXfs><xf fontId=\"3\"/></cellXfs>");
  LastMessage otherLast;
  Styles<TypeParam> other(otherLast, text.data(), text.size());
  auto* copy = this->book.addFormat(other.format(0));
  EXPECT_EQ(copy->font(), this->book.font(0));
}

}  // namespace
}  // namespace rubrica
