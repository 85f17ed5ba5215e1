#include "tests/biff/styles/style_fixture.h"

namespace rubrica::test {
namespace {

constexpr std::uint32_t kUsedBits = 0xFC000000;

std::uint32_t usedBits(const FormatImpl& format) {
  return format.xf().alignment & kUsedBits;
}

TEST(Formats, ANewFormatIsACellFormatThatStatesNothing) {
  NewBook book;
  FormatImpl* format = book.tables.addFormat(nullptr);
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.tables.formatCount(), 22);
  EXPECT_EQ(format->xf().protection, 1);
  EXPECT_EQ(format->xf().alignment, 0x20u);
  EXPECT_EQ(format->xf().fill, 0x20C0);
  EXPECT_EQ(format->numFormat(), 0);
  EXPECT_EQ(format->font(), book.tables.font(0));
  EXPECT_EQ(format->alignV(), AlignV::bottom);
  EXPECT_EQ(format->borderLeftColor(), 64);
  EXPECT_EQ(format->borderRightColor(), 64);
  EXPECT_EQ(format->borderTopColor(), 64);
  EXPECT_EQ(format->borderBottomColor(), 64);
  EXPECT_EQ(format->borderDiagonalColor(), 0);
  EXPECT_EQ(format->borderDiagonalStyle(), BorderStyle::none);
  EXPECT_EQ(format->patternForegroundColor(), 64);
  EXPECT_EQ(format->patternBackgroundColor(), 65);
  EXPECT_TRUE(format->locked());
  EXPECT_FALSE(format->hidden());
}

TEST(Formats, EverySetterChangesItsFieldAloneAndRaisesItsGroup) {
  NewBook book;
  struct Case {
    const char* name;
    std::function<void(FormatImpl&)> set;
    std::function<int(const FormatImpl&)> get;
    int value;
    std::uint32_t used;
  };
  const std::uint32_t alignment = 1u << 28, border = 1u << 29, fill = 1u << 30, protection = 1u << 31;
  const std::vector<Case> cases = {
      {"numFormat", [](auto& f) { f.setNumFormat(7); }, [](auto& f) { return f.numFormat(); }, 7, 1u << 26},
      {"alignH", [](auto& f) { f.setAlignH(AlignH::distributed); }, [](auto& f) { return int(f.alignH()); }, 7,
       alignment},
      {"alignV", [](auto& f) { f.setAlignV(AlignV::distributed); }, [](auto& f) { return int(f.alignV()); }, 4,
       alignment},
      {"wrap", [](auto& f) { f.setWrap(true); }, [](auto& f) { return int(f.wrap()); }, 1, alignment},
      {"rotation", [](auto& f) { f.setRotation(255); }, [](auto& f) { return f.rotation(); }, 255, alignment},
      {"indent", [](auto& f) { f.setIndent(15); }, [](auto& f) { return f.indent(); }, 15, alignment},
      {"shrink", [](auto& f) { f.setShrinkToFit(true); }, [](auto& f) { return int(f.shrinkToFit()); }, 1, alignment},
      {"left", [](auto& f) { f.setBorderLeft(BorderStyle::slantDashDot); }, [](auto& f) { return int(f.borderLeft()); },
       13, border},
      {"right", [](auto& f) { f.setBorderRight(BorderStyle::thick); }, [](auto& f) { return int(f.borderRight()); }, 5,
       border},
      {"top", [](auto& f) { f.setBorderTop(BorderStyle::hair); }, [](auto& f) { return int(f.borderTop()); }, 7,
       border},
      {"bottom", [](auto& f) { f.setBorderBottom(BorderStyle::thin); }, [](auto& f) { return int(f.borderBottom()); },
       1, border},
      {"leftColor", [](auto& f) { f.setBorderLeftColor(127); }, [](auto& f) { return f.borderLeftColor(); }, 127,
       border},
      {"rightColor", [](auto& f) { f.setBorderRightColor(10); }, [](auto& f) { return f.borderRightColor(); }, 10,
       border},
      {"topColor", [](auto& f) { f.setBorderTopColor(11); }, [](auto& f) { return f.borderTopColor(); }, 11, border},
      {"bottomColor", [](auto& f) { f.setBorderBottomColor(12); }, [](auto& f) { return f.borderBottomColor(); }, 12,
       border},
      {"diagonal", [](auto& f) { f.setBorderDiagonal(BorderDiagonal::both); },
       [](auto& f) { return int(f.borderDiagonal()); }, 3, border},
      {"diagonalStyle", [](auto& f) { f.setBorderDiagonalStyle(BorderStyle::doubleLine); },
       [](auto& f) { return int(f.borderDiagonalStyle()); }, 6, border},
      {"diagonalColor", [](auto& f) { f.setBorderDiagonalColor(13); }, [](auto& f) { return f.borderDiagonalColor(); },
       13, border},
      {"pattern", [](auto& f) { f.setFillPattern(FillPattern::gray6p25); },
       [](auto& f) { return int(f.fillPattern()); }, 18, fill},
      {"foreground", [](auto& f) { f.setPatternForegroundColor(14); },
       [](auto& f) { return f.patternForegroundColor(); }, 14, fill},
      {"background", [](auto& f) { f.setPatternBackgroundColor(15); },
       [](auto& f) { return f.patternBackgroundColor(); }, 15, fill},
      {"locked", [](auto& f) { f.setLocked(false); }, [](auto& f) { return int(f.locked()); }, 0, protection},
      {"hidden", [](auto& f) { f.setHidden(true); }, [](auto& f) { return int(f.hidden()); }, 1, protection},
  };
  FormatImpl* fresh = book.tables.addFormat(nullptr);
  for (const Case& changed : cases) {
    FormatImpl* format = book.tables.addFormat(nullptr);
    changed.set(*format);
    EXPECT_EQ(usedBits(*format), changed.used) << changed.name;
    for (const Case& other : cases) {
      EXPECT_EQ(other.get(*format), other.name == changed.name ? changed.value : other.get(*fresh))
          << other.name << " after setting " << changed.name;
    }
  }
}

TEST(Formats, AUsedBitStaysAfterThePropertyGoesBack) {
  NewBook book;
  FormatImpl* format = book.tables.addFormat(nullptr);
  format->setWrap(true);
  format->setWrap(false);
  EXPECT_FALSE(format->wrap());
  EXPECT_EQ(usedBits(*format), 1u << 28);
}

TEST(Formats, BordersAndTheirColoursAreSetTogether) {
  NewBook book;
  FormatImpl* format = book.tables.addFormat(nullptr);
  format->setBorder(BorderStyle::medium);
  format->setBorderColor(10);
  EXPECT_EQ(format->xf().border1, 0x2222u | 10u << 16 | 10u << 23);
  EXPECT_EQ(format->xf().border2, 10u | 10u << 7);
  EXPECT_EQ(usedBits(*format), 1u << 29);
}

TEST(Formats, OutOfRangeValuesSpillIntoTheNeighbour) {
  NewBook book;
  FormatImpl* format = book.tables.addFormat(nullptr);
  format->setIndent(16);
  EXPECT_EQ(format->indent(), 0);
  EXPECT_TRUE(format->shrinkToFit());
  format->setBorderLeft(BorderStyle{0x21});
  EXPECT_EQ(format->borderLeft(), BorderStyle::thin);
  EXPECT_EQ(format->borderRight(), BorderStyle::medium);
  format->setAlignH(AlignH{8});
  EXPECT_TRUE(format->wrap());
  format->setPatternForegroundColor(128);
  EXPECT_EQ(format->patternForegroundColor(), 0);
  EXPECT_EQ(format->patternBackgroundColor(), 65);
  format->setNumFormat(65536 + 5);
  EXPECT_EQ(format->numFormat(), 5);
}

TEST(Formats, RotationIsTheOneCheckedProperty) {
  NewBook book;
  FormatImpl* format = book.tables.addFormat(nullptr);
  for (const int good : {0, 90, 180, 255}) {
    EXPECT_TRUE(format->setRotation(good));
    EXPECT_EQ(format->rotation(), good);
    EXPECT_EQ(book.message(), "ok");
  }
  for (const int bad : {-1, 181, 254, 256}) {
    EXPECT_FALSE(format->setRotation(bad));
    EXPECT_EQ(format->rotation(), 255);
    EXPECT_EQ(book.message(), "rotation must be in range 0-180 or 255");
  }
}

TEST(Formats, FontIndexesSkipFour) {
  NewBook book;
  FormatImpl* format = book.tables.addFormat(nullptr);
  for (const auto& [position, index] : {std::pair{0, 0}, {3, 3}, {4, 5}}) {
    EXPECT_TRUE(format->setFont(book.tables.font(position)));
    EXPECT_EQ(book.message(), "ok");
    EXPECT_EQ(format->xf().font, index);
    EXPECT_EQ(format->font(), book.tables.font(position));
  }
  EXPECT_EQ(usedBits(*format), 1u << 27);
}

TEST(Formats, AFontOfAnotherBookIsRefused) {
  NewBook book, other;
  FormatImpl* format = book.tables.addFormat(nullptr);
  EXPECT_FALSE(format->setFont(other.tables.font(1)));
  EXPECT_EQ(book.message(), "specified font not found");
  EXPECT_FALSE(format->setFont(nullptr));
  EXPECT_EQ(book.message(), "specified font not found");
  EXPECT_EQ(format->xf().font, 0);
  EXPECT_EQ(usedBits(*format), 0u);
}

TEST(Formats, AFontIndexWithoutAFontAnswersNull) {
  NewBook book;
  for (const unsigned index : {4u, 6u, 0xFFFFu}) {
    EXPECT_EQ(book.read(&StyleTables::readXf, BytesBuilder().u16(index)), kNothingThrown);
    EXPECT_EQ(book.tables.format(book.tables.formatCount() - 1)->font(), nullptr);
    EXPECT_EQ(book.message(), "incorrect font");
  }
  EXPECT_NE(book.tables.format(0)->font(), nullptr);
  EXPECT_EQ(book.message(), "ok");
}

TEST(Formats, TheTextOfACustomNumberFormatIsTheBooks) {
  NewBook book;
  FormatImpl* format = book.tables.addFormat(nullptr);
  format->setNumFormat(163);
  EXPECT_EQ(format->numFormatText(), nullptr);
  EXPECT_EQ(book.message(), "ok");
  format->setNumFormat(164);
  EXPECT_EQ(format->numFormatText(), nullptr);
  EXPECT_EQ(book.message(), "custom number format not found");
  EXPECT_EQ(book.tables.addCustomNumFormat(u"0.000"), 164);
  EXPECT_EQ(std::u16string(format->numFormatText()), u"0.000");
  EXPECT_EQ(book.message(), "ok");
}

TEST(Formats, TheColourModeIsTheBooks) {
  NewBook book;
  FormatImpl* format = book.tables.format(15);
  EXPECT_FALSE(format->rgbMode());
  book.state.setMessage("earlier");
  format->setRgbMode(true);
  EXPECT_TRUE(book.state.rgbMode);
  EXPECT_TRUE(format->rgbMode());
  EXPECT_EQ(book.message(), "ok");
}

}  // namespace
}  // namespace rubrica::test
