#include "xml/styles.h"

#include <functional>
#include <memory>

#include "engine/xlerror.h"
#include "tests/xml/flavours.h"
#include "xml/xml_font.h"
#include "xml/xml_format.h"

namespace rubrica {
namespace {

template <class Tag>
class StylesOf : public ::testing::Test {
 protected:
  std::unique_ptr<Styles<Tag>> parse(std::string_view content) {
    const std::string text = partText<Tag>("styleSheet", content);
    return std::make_unique<Styles<Tag>>(last, text.data(), text.size());
  }
  static std::string saved(Styles<Tag>& styles) {
    std::string text;
    styles.save(text);
    return text;
  }
  static std::string failure(const std::function<void()>& action) {
    try {
      action();
    } catch (const xlerror& error) {
      return error.what();
    }
    return "ok";
  }

  LastMessage last;
  Styles<Tag> fresh{last};
};
TYPED_TEST_SUITE(StylesOf, Flavours, FlavourNames);

// A stylesheet as other programs write it: two formats that share their border and fill.
constexpr char kSharedParts[] =
    "<numFmts count=\"1\"><numFmt numFmtId=\"166\" formatCode=\"yyyy\\-mm\"/></numFmts>"
    "<fonts count=\"1\"><font><name val=\"Arial\"/><sz val=\"10.5\"/><b/><u/></font></fonts>"
    "<fills count=\"3\"><fill><patternFill patternType=\"none\"/></fill>"
    "<fill><patternFill patternType=\"gray125\"/></fill>"
    "<fill><patternFill patternType=\"solid\"><fgColor rgb=\"FF00FF00\"/><bgColor indexed=\"64\"/></patternFill></fill>"
    "</fills>"
    "<borders count=\"2\"><border/><border><top style=\"thin\"><color indexed=\"10\"/></top></border></borders>"
    "<cellXfs count=\"3\"><xf/>"
    "<xf numFmtId=\"166\" fontId=\"0\" fillId=\"2\" borderId=\"1\"><alignment horizontal=\"right\"/></xf>"
    "<xf numFmtId=\"14\" fontId=\"7\" fillId=\"2\" borderId=\"1\"/></cellXfs>";

TYPED_TEST(StylesOf, ANewStylesheetHasWhatEveryBookNeeds) {
  const std::string text = this->saved(this->fresh);
  for (const char* part :
       {"<fonts count=\"1\"><font><sz val=\"11\"/><name val=\"Calibri\"/></font></fonts>",
        "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill><fill><patternFill "
        "patternType=\"gray125\"/></fill></fills>",
        "<borders count=\"1\"><border/></borders>",
        "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs>",
        "<cellXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/></cellXfs>",
        "<cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles>"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  }
  EXPECT_EQ(this->fresh.formatCount(), 1);
  EXPECT_EQ(this->fresh.fontCount(), 1);
  EXPECT_FALSE(this->fresh.rgbMode());
}

TYPED_TEST(StylesOf, EveryFormatAndFontOfAFileIsHandedOut) {
  const auto styles = this->parse(kSharedParts);
  ASSERT_EQ(styles->formatCount(), 3);
  auto* format = styles->format(1);
  EXPECT_EQ(format->numFormat(), 166);
  EXPECT_EQ(format->alignH(), AlignH::right);
  EXPECT_EQ(format->borderTop(), BorderStyle::thin);
  EXPECT_EQ(format->borderTopColor(), 10);
  EXPECT_EQ(format->borderLeftColor(), color::notSet);
  EXPECT_EQ(format->fillPattern(), FillPattern::solid);
  EXPECT_EQ(format->patternForegroundColor(), 11);
  EXPECT_EQ(format->patternBackgroundColor(), 64);
  EXPECT_EQ(format->font(), styles->font(0));
  EXPECT_EQ(styles->format(2)->font(), nullptr) << "the file has no font 7";
  EXPECT_STREQ(this->last.message(), "incorrect font");
  EXPECT_EQ(styles->format(0)->font(), nullptr);
  for (const int index : {-1, 3}) {
    EXPECT_EQ(this->failure([&] { styles->format(index); }), "index is out of range");
  }
  EXPECT_EQ(this->failure([&] { styles->font(1); }), "index is out of range");
}

TYPED_TEST(StylesOf, FontsReadTheirChildrenInAnyOrder) {
  const auto styles = this->parse(
      "<fonts><font><b val=\"0\"/><name val=\"A_x0042_\"/><vertAlign val=\"subscript\"/><u val=\"doubleAccounting\"/>"
      "<i/><strike val=\"1\"/><sz val=\"9.75\"/><color indexed=\"12\"/></font><font/></fonts>");
  auto* font = styles->font(0);
  EXPECT_FALSE(font->bold());
  EXPECT_TRUE(font->hasBold());
  EXPECT_TRUE(font->italic());
  EXPECT_TRUE(font->strikeOut());
  EXPECT_EQ(font->size(), 9);
  EXPECT_EQ(font->script(), Script::subscript);
  EXPECT_EQ(font->underline(), Underline::doubleAccounting);
  EXPECT_EQ(font->color(), 12);
  EXPECT_EQ(std::u16string(font->name()), u"AB");
  auto* bare = styles->font(1);
  EXPECT_EQ(bare->name(), nullptr);
  EXPECT_EQ(bare->color(), color::automatic);
  EXPECT_EQ(bare->size(), 11);
  EXPECT_EQ(bare->underline(), Underline::none);
  EXPECT_EQ(bare->script(), Script::normal);
  EXPECT_FALSE(bare->bold() || bare->italic() || bare->strikeOut());
  EXPECT_FALSE(bare->hasSize() || bare->hasName() || bare->hasColor() || bare->hasUnderline() || bare->hasScript() ||
               bare->hasItalic() || bare->hasStrikeOut() || bare->hasBold());
}

TYPED_TEST(StylesOf, FontsKeepOneChildOfAKind) {
  auto* font = this->fresh.addFont(nullptr);
  for (int round = 0; round < 2; ++round) {
    font->setSize(14 + round);
    font->setBold(true);
    font->setItalic(true);
    font->setStrikeOut(false);
    font->setColor(10 + round);
    font->setScript(Script::superscript);
    font->setUnderline(Underline::singleAccounting);
    EXPECT_TRUE(font->setName(u"Caf\u00E9"));
  }
  EXPECT_NE(this->saved(this->fresh)
                .find("<font><sz val=\"15\"/><b val=\"true\"/><i val=\"true\"/><strike val=\"false\"/>"
                      "<color indexed=\"11\"/><vertAlign val=\"superscript\"/><u val=\"singleAccounting\"/>"
                      "<name val=\"Caf\xC3\xA9\"/></font></fonts>"),
            std::string::npos)
      << this->saved(this->fresh);
  EXPECT_EQ(std::u16string(font->name()), u"Caf\u00E9");
  EXPECT_EQ(font->size(), 15);
}

TYPED_TEST(StylesOf, TheAutomaticColorTakesAFontsColorAwayUnlessColorsAreRgb) {
  auto* font = this->fresh.addFont(nullptr);
  font->setColor(color::automatic);
  EXPECT_FALSE(font->hasColor());
  font->setColor(10);
  font->setColor(color::notSet);
  EXPECT_EQ(font->color(), 10);
  font->setColor(color::automatic);
  EXPECT_FALSE(font->hasColor());
  EXPECT_EQ(font->color(), color::automatic);
  this->fresh.setRgbMode(true);
  font->setColor(color::automatic);
  EXPECT_TRUE(font->hasColor());
  EXPECT_EQ(font->color(), 0x7FFF) << "a colour like any other";
}

TYPED_TEST(StylesOf, FormatsPointAtFontsOfTheirOwnBook) {
  auto* format = this->fresh.addFormat(nullptr);
  auto* font = this->fresh.addFont(nullptr);
  EXPECT_TRUE(format->setFont(font));
  EXPECT_EQ(format->font(), font);
  EXPECT_EQ(this->fresh.positionOf(font), 1u);
  Styles<TypeParam> other(this->last);
  EXPECT_FALSE(format->setFont(other.font(0)));
  EXPECT_STREQ(this->last.message(), "specified font not found");
  EXPECT_FALSE(format->setFont(nullptr));
  EXPECT_EQ(format->font(), font);
  EXPECT_TRUE(format->xf().get_applyFont());
}

TYPED_TEST(StylesOf, SomeSettersMarkTheirGroupAsAppliedAndSomeDoNot) {
  auto* format = this->fresh.addFormat(nullptr);
  format->setWrap(true);
  EXPECT_TRUE(format->setRotation(45));
  format->setIndent(2);
  format->setShrinkToFit(true);
  format->setHidden(true);
  format->setBorderLeftColor(10);
  format->setPatternForegroundColor(11);
  const auto& xf = format->xf();
  EXPECT_FALSE(xf.isset_applyAlignment() || xf.isset_applyProtection() || xf.isset_applyBorder() ||
               xf.isset_applyFill());
  EXPECT_TRUE(format->wrap());
  EXPECT_EQ(format->rotation(), 45);
  EXPECT_EQ(format->indent(), 2);
  EXPECT_TRUE(format->shrinkToFit());
  EXPECT_TRUE(format->hidden());
  EXPECT_TRUE(format->locked()) << "what a cell is unless told otherwise";
  format->setAlignH(AlignH::center);
  format->setLocked(false);
  format->setBorderLeft(BorderStyle::thin);
  format->setFillPattern(FillPattern::solid);
  format->setNumFormat(4);
  EXPECT_TRUE(xf.get_applyAlignment() && xf.get_applyProtection() && xf.get_applyBorder() && xf.get_applyFill() &&
              xf.get_applyNumberFormat());
  EXPECT_FALSE(format->locked());
}

TYPED_TEST(StylesOf, EveryWordReadsBackAndOthersAreLeftOut) {
  auto* format = this->fresh.addFormat(nullptr);
  for (int i = 0; i <= 7; ++i) {
    format->setAlignH(AlignH{i});
    EXPECT_EQ(format->alignH(), AlignH{i});
  }
  for (int i = 0; i <= 4; ++i) {
    format->setAlignV(AlignV{i});
    EXPECT_EQ(format->alignV(), AlignV{i});
  }
  format->setAlignH(AlignH{8});
  format->setAlignV(AlignV{-1});
  EXPECT_EQ(format->alignH(), AlignH::distributed);
  EXPECT_EQ(format->alignV(), AlignV::distributed);
  for (int i = 0; i <= 13; ++i) {
    format->setBorderRight(BorderStyle{i});
    EXPECT_EQ(format->borderRight(), BorderStyle{i});
  }
  format->setBorderRight(BorderStyle{14});
  EXPECT_EQ(format->borderRight(), BorderStyle::none);
  for (int i = 0; i <= 18; ++i) {
    format->setFillPattern(FillPattern{i});
    EXPECT_EQ(format->fillPattern(), FillPattern{i});
  }
  format->setFillPattern(FillPattern{19});
  EXPECT_EQ(format->fillPattern(), FillPattern::gray6p25);
}

TYPED_TEST(StylesOf, AnAlignmentOutsideTheTableStillCountsAsApplied) {
  auto* format = this->fresh.addFormat(nullptr);
  format->setAlignH(AlignH{99});
  EXPECT_FALSE(format->xf().isset_alignment());
  EXPECT_TRUE(format->xf().get_applyAlignment());
}

TYPED_TEST(StylesOf, RotationIsChecked) {
  auto* format = this->fresh.addFormat(nullptr);
  for (const int value : {0, 180, 255}) EXPECT_TRUE(format->setRotation(value));
  for (const int value : {-1, 181, 254, 256}) {
    EXPECT_FALSE(format->setRotation(value));
    EXPECT_STREQ(this->last.message(), "rotation must be in range 0-180 or 255");
  }
  EXPECT_EQ(format->rotation(), 255);
}

TYPED_TEST(StylesOf, EveryAddedFormatHasABorderOfItsOwn) {
  this->fresh.addFormat(nullptr)->setBorderLeft(BorderStyle::thin);
  this->fresh.addFormat(nullptr)->setBorderLeft(BorderStyle::thin);
  EXPECT_EQ(this->fresh.get_borders().size_border(), 3u);
  EXPECT_EQ(this->fresh.get_borders().get_count(), 3u);
  EXPECT_EQ(this->fresh.format(1)->xf().get_borderId(), 1u);
  EXPECT_EQ(this->fresh.format(2)->xf().get_borderId(), 2u);
  const std::string text = this->saved(this->fresh);
  const std::string left = std::is_same_v<TypeParam, excelStrict_tag> ? "start" : "left";
  EXPECT_NE(text.find("<border><" + left + " style=\"thin\"/></border>"), std::string::npos) << text;
}

TYPED_TEST(StylesOf, AFormatOfAFileChangesACopyOfTheBorderItShares) {
  const auto styles = this->parse(kSharedParts);
  auto* format = styles->format(1);
  format->setBorderTopColor(color::notSet);
  format->setBorderTopColor(color::automatic);
  EXPECT_EQ(styles->get_borders().size_border(), 2u) << "open colours change nothing";
  format->setBorderBottom(BorderStyle::doubleLine);
  EXPECT_EQ(styles->get_borders().size_border(), 3u);
  EXPECT_EQ(format->xf().get_borderId(), 2u);
  EXPECT_EQ(format->borderTop(), BorderStyle::thin) << "the rest of the border stays";
  EXPECT_EQ(styles->format(2)->borderBottom(), BorderStyle::none);
  format->setBorderBottomColor(12);
  EXPECT_EQ(styles->get_borders().size_border(), 3u);
  EXPECT_EQ(format->borderBottomColor(), 12);
}

TYPED_TEST(StylesOf, AllSidesAndTheDiagonal) {
  auto* format = this->fresh.addFormat(nullptr);
  format->setBorder(BorderStyle::medium);
  format->setBorderColor(14);
  for (const auto style : {format->borderLeft(), format->borderRight(), format->borderTop(), format->borderBottom()}) {
    EXPECT_EQ(style, BorderStyle::medium);
  }
  for (const auto color :
       {format->borderLeftColor(), format->borderRightColor(), format->borderTopColor(), format->borderBottomColor()}) {
    EXPECT_EQ(color, 14);
  }
  EXPECT_EQ(format->borderDiagonal(), BorderDiagonal::none);
  for (int i = 3; i >= 0; --i) {
    format->setBorderDiagonal(BorderDiagonal{i});
    EXPECT_EQ(format->borderDiagonal(), BorderDiagonal{i});
  }
  format->setBorderDiagonalStyle(BorderStyle::hair);
  format->setBorderDiagonalColor(15);
  EXPECT_EQ(format->borderDiagonalStyle(), BorderStyle::hair);
  EXPECT_EQ(format->borderDiagonalColor(), 15);
}

TYPED_TEST(StylesOf, TakingTheFillAwayPointsBackAtTheFirst) {
  auto* format = this->fresh.addFormat(nullptr);
  format->setFillPattern(FillPattern::solid);
  format->setPatternForegroundColor(10);
  EXPECT_EQ(format->xf().get_fillId(), 2u);
  format->setFillPattern(FillPattern::none);
  EXPECT_EQ(format->xf().get_fillId(), 0u);
  EXPECT_EQ(format->fillPattern(), FillPattern::none);
  format->setFillPattern(FillPattern::gray25);
  EXPECT_EQ(format->xf().get_fillId(), 2u) << "its own fill again";
  EXPECT_EQ(this->fresh.get_fills().size_fill(), 3u);
  EXPECT_EQ(format->patternForegroundColor(), 10);
}

TYPED_TEST(StylesOf, AFormatOfAFileChangesACopyOfTheFillItShares) {
  const auto styles = this->parse(kSharedParts);
  auto* format = styles->format(1);
  format->setPatternForegroundColor(color::automatic);
  EXPECT_EQ(styles->get_fills().size_fill(), 3u);
  format->setPatternForegroundColor(10);
  EXPECT_EQ(format->fillPattern(), FillPattern::solid);
  EXPECT_EQ(format->patternForegroundColor(), 10);
  EXPECT_EQ(styles->format(2)->patternForegroundColor(), 11);
}

TYPED_TEST(StylesOf, AGradientMakesRoomForAPattern) {
  const auto styles = this->parse(
      "<fills><fill><gradientFill degree=\"90\"><stop position=\"0\"><color "
      "indexed=\"8\"/></stop></gradientFill></fill>"
      "</fills><cellXfs><xf fillId=\"0\"/></cellXfs>");
  auto* format = styles->format(0);
  EXPECT_EQ(format->fillPattern(), FillPattern::none);
  EXPECT_EQ(format->patternForegroundColor(), color::notSet);
  format->setFillPattern(FillPattern::solid);
  const std::string text = this->saved(*styles);
  EXPECT_NE(text.find("</gradientFill></fill><fill><patternFill patternType=\"solid\"/></fill>"), std::string::npos)
      << text;
}

TYPED_TEST(StylesOf, RgbColorsReadAsPaletteIndexesOfTheirExactColor) {
  auto& styles = this->fresh;
  typename StyleClasses<TypeParam>::Color element;
  const auto reads = [&](std::vector<std::uint8_t> bytes) {
    element.set_rgb({std::move(bytes)});
    return styles.readColor(element);
  };
  EXPECT_EQ(reads({0xFF, 0x00, 0xFF, 0x00}), 11);
  EXPECT_EQ(reads({0x00, 0xFF, 0x00}), 11);
  EXPECT_EQ(reads({0, 0, 0}), 8);
  EXPECT_EQ(reads({255, 255, 255}), 9);
  EXPECT_EQ(reads({255, 0, 0}), 10);
  EXPECT_EQ(reads({0, 0, 255}), 12);
  EXPECT_EQ(reads({255, 255, 0}), 13);
  EXPECT_EQ(reads({255, 0, 255}), 14);
  EXPECT_EQ(reads({0, 255, 255}), 15);
  EXPECT_EQ(reads({0x80, 0, 0}), 16);
  EXPECT_EQ(reads({0x33, 0x33, 0x33}), 63);
  EXPECT_EQ(reads({254, 0, 0}), color::notSet);
  EXPECT_EQ(reads({0xFE, 0x00, 0xFF, 0x00}), color::notSet) << "not opaque";
  styles.setRgbMode(true);
  EXPECT_EQ(reads({0x80, 0x12, 0x34, 0x56}), 0x123456);
  EXPECT_EQ(reads({0x12, 0x34, 0x56}), 0x123456);
  for (const bool rgb : {false, true}) {
    styles.setRgbMode(rgb);
    for (const std::size_t size : {0, 2, 5}) {
      EXPECT_EQ(this->failure([&] { reads(std::vector<std::uint8_t>(size)); }), "rgb color is invalid");
    }
  }
}

TYPED_TEST(StylesOf, IndexedColorsReadAsRgbByTheStandardPalette) {
  auto& styles = this->fresh;
  styles.setRgbMode(true);
  typename StyleClasses<TypeParam>::Color element;
  const auto reads = [&](std::uint32_t index) {
    element.set_indexed(index);
    return styles.readColor(element);
  };
  constexpr Color kFirstEight[] = {0, 0xFFFFFF, 0xFF0000, 0xFF00, 0xFF, 0xFFFF00, 0xFF00FF, 0xFFFF};
  for (std::uint32_t i = 0; i < 8; ++i) {
    EXPECT_EQ(reads(i), kFirstEight[i]);
    EXPECT_EQ(reads(i + 8), kFirstEight[i]);
  }
  EXPECT_EQ(reads(16), 0x800000);
  EXPECT_EQ(reads(63), 0x333333);
  EXPECT_EQ(reads(64), color::notSet);
  EXPECT_EQ(reads(4294967295u), color::notSet);
  styles.setRgbMode(false);
  EXPECT_EQ(reads(64), 64);
  element.unset_indexed();
  element.set_theme(1);
  EXPECT_EQ(styles.readColor(element), color::notSet);
}

TYPED_TEST(StylesOf, APaletteOfTheFileStandsBeforeTheStandardOne) {
  const auto styles =
      this->parse("<colors><indexedColors><rgbColor rgb=\"00010203\"/><rgbColor/></indexedColors></colors>");
  typename StyleClasses<TypeParam>::Color element;
  styles->setRgbMode(true);
  element.set_indexed(0);
  EXPECT_EQ(styles->readColor(element), 0x010203);
  element.set_indexed(1);
  EXPECT_EQ(styles->readColor(element), color::notSet);
  element.set_indexed(2);
  EXPECT_EQ(styles->readColor(element), 0xFF0000);
}

TYPED_TEST(StylesOf, ColorsAreWrittenByTheMode) {
  auto* format = this->fresh.addFormat(nullptr);
  format->setBorderTopColor(10);
  EXPECT_NE(this->saved(this->fresh).find("<color indexed=\"10\"/>"), std::string::npos);
  this->fresh.setRgbMode(true);
  EXPECT_EQ(format->borderTopColor(), 0xFF0000) << "written colours stay";
  format->setBorderTopColor(0x123456);
  EXPECT_NE(this->saved(this->fresh).find("<color rgb=\"FF123456\"/>"), std::string::npos) << this->saved(this->fresh);
  EXPECT_EQ(format->borderTopColor(), 0x123456);
}

TYPED_TEST(StylesOf, AnInvalidColorIsAMessage) {
  auto* format = this->fresh.addFormat(nullptr);
  format->setBorderTopColor(10);
  this->fresh.get_borders().get_border(1).get_top().get_color().set_rgb({{1, 2}});
  EXPECT_EQ(format->borderTopColor(), color::notSet);
  EXPECT_STREQ(this->last.message(), "rgb color is invalid");
  this->last.setOk();
  auto* font = this->fresh.font(0);
  font->setColor(9);
  this->fresh.get_fonts().get_font(0).get_choice(2).get_color().set_rgb({{1, 2}});
  EXPECT_EQ(font->color(), color::notSet);
  EXPECT_STREQ(this->last.message(), "rgb color is invalid");
}

TYPED_TEST(StylesOf, CustomNumberFormatsBeginAt166AndEqualTextsShareOne) {
  auto& styles = this->fresh;
  EXPECT_EQ(styles.addCustomNumFormat(u"0.000"), 166);
  EXPECT_EQ(styles.addCustomNumFormat(u"0.0000 \"\u20AC\""), 167);
  EXPECT_EQ(styles.addCustomNumFormat(u"0.000"), 166);
  EXPECT_EQ(std::u16string(styles.customNumFormat(167)), u"0.0000 \"\u20AC\"");
  EXPECT_EQ(this->failure([&] { styles.customNumFormat(168); }), "custom number format not found");
  EXPECT_EQ(this->failure([&] { styles.customNumFormat(-1); }), "custom number format not found");
  EXPECT_EQ(styles.get_numFmts().get_count(), 2u);
}

TYPED_TEST(StylesOf, IdsOfAFileAreFoundAndPassedOver) {
  const auto styles = this->parse(kSharedParts);
  EXPECT_EQ(styles->addCustomNumFormat(u"yyyy\\-mm"), 166);
  EXPECT_EQ(styles->addCustomNumFormat(u"0.0"), 167);
}

TYPED_TEST(StylesOf, TheTwoHundredTwentyEighthFormatFails) {
  auto& styles = this->fresh;
  const auto text = [](int i) { return wide("0\"" + std::to_string(i) + "\""); };
  for (int i = 0; i < 227; ++i) ASSERT_EQ(styles.addCustomNumFormat(text(i)), 166 + i);
  EXPECT_EQ(this->failure([&] { styles.addCustomNumFormat(u"0.0"); }), "maximum number of custom formats is exceeded");
  EXPECT_EQ(styles.addCustomNumFormat(text(226)), 392);
  EXPECT_EQ(styles.get_numFmts().size_numFmt(), 227u);
}

TYPED_TEST(StylesOf, DatesAreToldByIdAndByText) {
  auto& styles = this->fresh;
  EXPECT_TRUE(styles.isDateNumFormat(14));
  EXPECT_FALSE(styles.isDateNumFormat(2));
  EXPECT_FALSE(styles.isDateNumFormat(23));
  EXPECT_FALSE(styles.isDateNumFormat(166));
  EXPECT_EQ(styles.addCustomNumFormat(u"d.m.yy"), 166);
  EXPECT_TRUE(styles.isDateNumFormat(166)) << "the answer isn't kept beyond a change";
  EXPECT_FALSE(styles.isDateNumFormat(styles.addCustomNumFormat(u"[Red]0.00")));
}

TYPED_TEST(StylesOf, TheFirstFontIsTheDefault) {
  int size = 0;
  EXPECT_EQ(std::u16string(this->fresh.defaultFont(&size)), u"Calibri");
  EXPECT_EQ(size, 11);
  this->fresh.setDefaultFont(u"Arial", 9);
  EXPECT_EQ(std::u16string(this->fresh.defaultFont(nullptr)), u"Arial");
  const auto none = this->parse("");
  EXPECT_EQ(this->failure([&] { none->defaultFont(nullptr); }), "fonts is empty");
  EXPECT_EQ(this->failure([&] { none->setDefaultFont(u"a", 1); }), "fonts is empty");
}

TYPED_TEST(StylesOf, AStylesheetWithoutAnythingGrowsWhatIsAdded) {
  const auto styles = this->parse("");
  EXPECT_EQ(styles->formatCount(), 0);
  auto* format = styles->addFormat(nullptr);
  format->setFillPattern(FillPattern::solid);
  format->setFont(styles->addFont(nullptr));
  EXPECT_EQ(format->fillPattern(), FillPattern::solid);
  EXPECT_EQ(styles->indexOf(format), 0u);
  const std::string text = this->saved(*styles);
  EXPECT_EQ(this->failure([&] { Styles<TypeParam>(this->last, text.data(), text.size()); }), "ok") << text;
}

TYPED_TEST(StylesOf, IdsPastTheEndShowNothing) {
  const auto styles = this->parse("<cellXfs><xf borderId=\"9\" fillId=\"4294967295\"/></cellXfs>");
  auto* format = styles->format(0);
  EXPECT_EQ(format->borderTop(), BorderStyle::none);
  EXPECT_EQ(format->borderDiagonal(), BorderDiagonal::none);
  EXPECT_EQ(format->fillPattern(), FillPattern::none);
  EXPECT_EQ(format->patternForegroundColor(), color::notSet);
  auto* copy = styles->addFormat(format);
  EXPECT_EQ(copy->fillPattern(), FillPattern::none);
}

TYPED_TEST(StylesOf, AFormatNeedsAStylesheet) {
  EXPECT_EQ(this->failure([] { XMLFormatImplT<TypeParam>(nullptr, nullptr); }), "XMLFormatImplT(): styles can't be 0");
}

TYPED_TEST(StylesOf, AnUntouchedStylesheetIsSavedAsItWas) {
  const auto styles = this->parse(kSharedParts);
  const std::string text = this->saved(*styles);
  const Styles<TypeParam> again(this->last, text.data(), text.size());
  EXPECT_TRUE(lmx::equal(*styles, again));
  EXPECT_EQ(again.formatCount(), 3);
}

}  // namespace
}  // namespace rubrica
