#include "biff/sheet_protection.h"
#include "tests/biff/sheet_ops/sheet_fixture.h"

namespace rubrica::test {
namespace {

Bytes bytesOfDouble(double value) {
  Bytes bytes(sizeof(value));
  std::memcpy(bytes.data(), &value, sizeof(value));
  return bytes;
}

unsigned setupFlags(TestBook& book) {
  const Bytes setup = book.saved(id::kSetup).front();
  return std::to_integer<unsigned>(setup[10]) | std::to_integer<unsigned>(setup[11]) << 8;
}

unsigned firstWord(TestBook& book, std::uint16_t recordId) {
  const Bytes bytes = book.saved(recordId).front();
  return std::to_integer<unsigned>(bytes[0]) | std::to_integer<unsigned>(bytes[1]) << 8;
}

TEST(Margins, ExistOnceTheyAreSet) {
  TestBook book;
  EXPECT_EQ(book.sheet->marginLeft(), 0.75);
  EXPECT_EQ(book.sheet->marginRight(), 0.75);
  EXPECT_EQ(book.sheet->marginTop(), 1.0);
  EXPECT_EQ(book.sheet->marginBottom(), 1.0);
  for (const std::uint16_t side : {id::kLeftMargin, id::kRightMargin, id::kTopMargin, id::kBottomMargin}) {
    EXPECT_TRUE(book.saved(side).empty());
  }
  book.sheet->setMarginTop(1.0);
  EXPECT_EQ(book.saved(id::kTopMargin), std::vector<Bytes>{bytesOfDouble(1.0)});
  EXPECT_TRUE(book.saved(id::kLeftMargin).empty());
  book.sheet->setMarginLeft(0.1);
  book.sheet->setMarginRight(-5);
  book.sheet->setMarginBottom(2.5);
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.sheet->marginLeft(), 0.1);
  EXPECT_EQ(book.sheet->marginRight(), -5);
  EXPECT_EQ(book.sheet->marginTop(), 1.0);
  EXPECT_EQ(book.sheet->marginBottom(), 2.5);
}

TEST(HeadersAndFooters, KeepTextAndMargin) {
  TestBook book;
  EXPECT_EQ(std::u16string(book.sheet->header()), u"");
  EXPECT_EQ(std::u16string(book.sheet->footer()), u"");
  EXPECT_EQ(book.sheet->headerMargin(), 0.5);
  EXPECT_TRUE(book.saved(id::kHeader).empty());
  EXPECT_TRUE(book.sheet->setHeader(u"&CTitle \u0416", 0.3));
  EXPECT_TRUE(book.sheet->setFooter(u"&P", 0.4));
  EXPECT_EQ(book.message(), "ok");
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(std::u16string(book.sheet->header()), u"&CTitle \u0416");
  EXPECT_EQ(std::u16string(book.sheet->footer()), u"&P");
  EXPECT_EQ(book.sheet->headerMargin(), 0.3);
  EXPECT_EQ(book.sheet->footerMargin(), 0.4);
  EXPECT_TRUE(book.sheet->setHeader(nullptr, 0.3));
  EXPECT_EQ(book.saved(id::kHeader), std::vector<Bytes>{Bytes()});
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(std::u16string(book.sheet->header()), u"");
}

TEST(HeadersAndFooters, PastOneRecordGoOnInTheNext) {
  TestBook book;
  std::u16string text;
  for (int i = 0; i < 10000; ++i) text += static_cast<char16_t>(u'\u0400' + i % 100);
  EXPECT_TRUE(book.sheet->setHeader(text.c_str(), 0.5));
  ASSERT_TRUE(book.reload()) << book.message();
  EXPECT_EQ(std::u16string(book.sheet->header()), text);
}

TEST(PageSetups, LandscapeIsTheInverseOfABit) {
  TestBook book;
  EXPECT_FALSE(book.sheet->landscape());
  EXPECT_EQ(setupFlags(book), 0x42u);
  book.sheet->setLandscape(true);
  EXPECT_TRUE(book.sheet->landscape());
  EXPECT_EQ(setupFlags(book), 0u);
  book.sheet->setLandscape(false);
  EXPECT_EQ(setupFlags(book), 2u);
  ASSERT_TRUE(book.reload());
  EXPECT_FALSE(book.sheet->landscape());
}

TEST(PageSetups, PaperMakesTheSetupCount) {
  TestBook book;
  EXPECT_EQ(book.sheet->paper(), 0);
  book.sheet->setPaper(9);
  EXPECT_EQ(book.sheet->paper(), 9);
  EXPECT_EQ(setupFlags(book), 2u);
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.sheet->paper(), 9);
}

TEST(PageSetups, ScaleAndFitAreOneSwitch) {
  TestBook book;
  EXPECT_EQ(book.sheet->printZoom(), 100);
  int wide = 0, tall = 0;
  EXPECT_FALSE(book.sheet->getPrintFit(&wide, &tall));
  book.sheet->setPrintFit(2, 3);
  EXPECT_TRUE(book.sheet->getPrintFit(&wide, &tall));
  EXPECT_EQ(wide, 2);
  EXPECT_EQ(tall, 3);
  EXPECT_TRUE(book.sheet->getPrintFit(nullptr, nullptr));
  EXPECT_EQ(setupFlags(book), 0x42u) << "fitting says nothing about the orientation";
  ASSERT_TRUE(book.reload());
  EXPECT_TRUE(book.sheet->getPrintFit(&wide, nullptr));
  EXPECT_EQ(wide, 2);
  book.sheet->setPrintZoom(50);
  EXPECT_FALSE(book.sheet->getPrintFit(&wide, &tall));
  EXPECT_EQ(book.sheet->printZoom(), 50);
  EXPECT_EQ(setupFlags(book), 2u);
}

TEST(PageSetups, CentresAndPrintedPartsAreBooleans) {
  TestBook book;
  EXPECT_FALSE(book.sheet->hCenter());
  EXPECT_FALSE(book.sheet->vCenter());
  EXPECT_FALSE(book.sheet->printGridlines());
  EXPECT_FALSE(book.sheet->printRowCol());
  book.sheet->setHCenter(true);
  book.sheet->setVCenter(true);
  book.sheet->setPrintGridlines(true);
  book.sheet->setPrintRowCol(true);
  ASSERT_TRUE(book.reload());
  EXPECT_TRUE(book.sheet->hCenter());
  EXPECT_TRUE(book.sheet->vCenter());
  EXPECT_TRUE(book.sheet->printGridlines());
  EXPECT_TRUE(book.sheet->printRowCol());
  EXPECT_EQ(firstWord(book, id::kPrintGrid), 1u);
  ASSERT_TRUE(book.reload({{id::kPrintRowCol, BytesBuilder().u16(7)}, {id::kPrintGrid, BytesBuilder().u16(6)}}));
  EXPECT_TRUE(book.sheet->printRowCol()) << "any value above 0";
  EXPECT_FALSE(book.sheet->printGridlines()) << "bit 0 alone";
  book.sheet->setPrintGridlines(true);
  EXPECT_EQ(firstWord(book, id::kPrintGrid), 7u);
}

TEST(Views, ZoomIsAFractionOfAHundred) {
  TestBook book;
  EXPECT_EQ(book.sheet->zoom(), 100);
  EXPECT_TRUE(book.saved(id::kScl).empty());
  book.sheet->setZoom(150);
  EXPECT_EQ(book.saved(id::kScl), std::vector<Bytes>{BytesBuilder().u16(150).u16(100)});
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.sheet->zoom(), 150);
  book.sheet->setZoom(100);
  EXPECT_TRUE(book.saved(id::kScl).empty());
  ASSERT_TRUE(book.reload({{id::kScl, BytesBuilder().u16(3).u16(4)}}));
  EXPECT_EQ(book.sheet->zoom(), 3);
  EXPECT_EQ(book.saved(id::kScl), std::vector<Bytes>{BytesBuilder().u16(3).u16(4)});
}

TEST(Views, FlagsAreBitsOfTheWindow) {
  TestBook book;
  EXPECT_TRUE(book.sheet->displayGridlines());
  EXPECT_FALSE(book.sheet->rightToLeft());
  const unsigned before = firstWord(book, id::kWindow2);
  book.sheet->setDisplayGridlines(false);
  EXPECT_EQ(firstWord(book, id::kWindow2), before & ~2u);
  book.sheet->setRightToLeft(true);
  EXPECT_EQ(firstWord(book, id::kWindow2), (before & ~2u) | 0x40u);
  ASSERT_TRUE(book.reload());
  EXPECT_FALSE(book.sheet->displayGridlines());
  EXPECT_TRUE(book.sheet->rightToLeft());
}

TEST(Views, TheTopLeftCellIsWithinTheSheet) {
  TestBook book;
  int row = -1, col = -1;
  book.sheet->getTopLeftView(&row, &col);
  EXPECT_EQ(row, 0);
  EXPECT_EQ(col, 0);
  book.sheet->setTopLeftView(65535, 255);
  EXPECT_EQ(book.message(), "ok");
  book.sheet->setTopLeftView(65536, 0);
  EXPECT_EQ(book.message(), "row must be in range 0-65535");
  book.sheet->setTopLeftView(0, 256);
  EXPECT_EQ(book.message(), "col must be in range 0-255");
  ASSERT_TRUE(book.reload());
  book.sheet->getTopLeftView(&row, &col);
  EXPECT_EQ(row, 65535);
  EXPECT_EQ(col, 255);
  book.sheet->getTopLeftView(nullptr, nullptr);
}

TEST(Protection, WithoutAPasswordWritesNone) {
  TestBook book;
  EXPECT_FALSE(book.sheet->protect());
  for (const std::uint16_t recordId : {id::kScenProtect, id::kObjProtect, id::kFeatHdr}) {
    EXPECT_TRUE(book.saved(recordId).empty());
  }
  book.sheet->setProtect(true, nullptr, -1);
  EXPECT_TRUE(book.sheet->protect());
  const std::vector<Bytes> one = {BytesBuilder().u16(1)};
  EXPECT_EQ(book.saved(id::kScenProtect), one);
  EXPECT_EQ(book.saved(id::kObjProtect), one);
  EXPECT_EQ(book.saved(id::kPassword).size(), 1u) << "the book's own";
  EXPECT_TRUE(book.saved(id::kFeatHdr).empty());
  ASSERT_TRUE(book.reload());
  EXPECT_TRUE(book.sheet->protect());
  book.sheet->setProtect(false);
  EXPECT_FALSE(book.sheet->protect());
  EXPECT_EQ(book.saved(id::kObjProtect), one);
}

TEST(Protection, WithAPasswordWritesItsVerifier) {
  TestBook book;
  book.sheet->setProtect(true, u"a", -1);
  const auto passwords = book.saved(id::kPassword);
  ASSERT_EQ(passwords.size(), 2u);
  EXPECT_EQ(passwords[1], Bytes(BytesBuilder().u16(0xCE88)));
  book.sheet->setProtect(true, u"", -1);
  EXPECT_EQ(book.saved(id::kPassword)[1], Bytes(BytesBuilder().u16(0xCE4B)));
  book.sheet->setProtect(true);
  EXPECT_EQ(book.saved(id::kPassword).size(), 1u);
}

TEST(Protection, EnhancedOptionsAreAFeature) {
  struct Case {
    int options;
    unsigned objects, scenarios;
  };
  for (const Case& c : {Case{0, 1, 1}, Case{1, 0, 1}, Case{2, 1, 0}, Case{0x7FFF, 0, 0}, Case{0x4400, 1, 1}}) {
    TestBook book;
    book.sheet->setProtect(true, nullptr, c.options);
    EXPECT_EQ(book.saved(id::kObjProtect), std::vector<Bytes>{BytesBuilder().u16(c.objects)});
    EXPECT_EQ(book.saved(id::kScenProtect), std::vector<Bytes>{BytesBuilder().u16(c.scenarios)});
    const Bytes feature =
        BytesBuilder().u16(2151).fill(10, 0).u16(2).u8(1).u32(0xFFFFFFFF).u32(static_cast<std::uint32_t>(c.options));
    EXPECT_EQ(book.saved(id::kFeatHdr), std::vector<Bytes>{feature});
    ASSERT_TRUE(book.reload());
    EXPECT_EQ(book.saved(id::kFeatHdr), std::vector<Bytes>{feature});
  }
}

TEST(PageRecords, OfAWrongSizeAreRefused) {
  struct Case {
    std::uint16_t recordId;
    std::size_t size;
    const char* message;
  };
  for (const Case& c : {Case{id::kScl, 3, "Scl size is incorrect"},
                        Case{id::kGuts, 7, "Guts size is incorrect"},
                        Case{id::kPrintGrid, 1, "PrintGrid size is incorrect"},
                        Case{id::kPrintRowCol, 3, "PrintRowCol size is incorrect"},
                        Case{id::kGridSet, 1, "GridSet size is incorrect"},
                        Case{id::kSetup, 33, "error in PageSetup"},
                        Case{id::kSetup, 35, "error in PageSetup"},
                        Case{id::kLeftMargin, 7, "LeftMargin size is incorrect"},
                        Case{id::kRightMargin, 9, "RightMargin size is incorrect"},
                        Case{id::kTopMargin, 4, "TopMargin size is incorrect"},
                        Case{id::kBottomMargin, 0, "BottomMargin size is incorrect"},
                        Case{id::kHCenter, 1, "HCenter size is incorrect"},
                        Case{id::kVCenter, 1, "VCenter size is incorrect"},
                        Case{id::kWsBool, 1, "WsBool size is incorrect"},
                        Case{id::kProtect, 1, "Protect size is incorrect"},
                        Case{id::kPassword, 3, "Password size is incorrect"},
                        Case{id::kObjProtect, 1, "ObjProtect size is incorrect"},
                        Case{id::kScenProtect, 1, "ScenProtect size is incorrect"},
                        Case{id::kDefColWidth, 1, "DefColWidth size is incorrect"},
                        Case{id::kDefaultRowHeight, 3, "DefaultRowHeight size is incorrect"}}) {
    TestBook book;
    EXPECT_FALSE(book.reload({{c.recordId, BytesBuilder().fill(c.size, 0)}})) << c.message;
    EXPECT_EQ(book.message(), c.message);
  }
}

}  // namespace
}  // namespace rubrica::test
