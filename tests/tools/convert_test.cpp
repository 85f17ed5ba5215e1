#include "tests/tools/tool_runner.h"

namespace rubrica::test {
namespace {

class Convert : public ToolTest {
 protected:
  ToolResult rebuild(Book& book) {
    return runTool("rubrica-convert", {"--rebuild", save(book, "in.xls"), path("out.xls")});
  }
};

// One of everything that the interfaces carry.
void fillRich(Book& book) {
  Sheet& sheet = *book.getSheet(0);
  Sheet& other = *book.addSheet(u"Über");
  Format* styled = book.addFormat();
  Font* font = book.addFont();
  font->setName(u"Courier New");
  font->setSize(13);
  font->setItalic(true);
  font->setUnderline(Underline::doubleAccounting);
  font->setScript(Script::superscript);
  font->setColor(book.colorPack(12, 34, 56));
  styled->setFont(font);
  styled->setNumFormat(book.addCustomNumFormat(u"0.0 [$EUR]"));
  styled->setAlignH(AlignH::center);
  styled->setAlignV(AlignV::top);
  styled->setWrap(true);
  styled->setRotation(45);
  styled->setIndent(2);
  styled->setBorderLeft(BorderStyle::doubleLine);
  styled->setBorderLeftColor(book.colorPack(1, 2, 3));
  styled->setBorderRight(BorderStyle::hair);
  styled->setBorderRightColor(book.colorPack(200, 100, 50));
  styled->setBorderDiagonal(BorderDiagonal::both);
  styled->setBorderDiagonalStyle(BorderStyle::thin);
  styled->setFillPattern(FillPattern::diagStripe);
  styled->setPatternForegroundColor(book.colorPack(9, 9, 9));
  styled->setLocked(false);
  styled->setHidden(true);
  sheet.writeNum(0, 0, 0.1, styled);
  sheet.writeStr(0, 1, u"Grüße 😀");
  sheet.writeBool(0, 2, true);
  sheet.writeError(0, 3, ErrorType::notAvailable);
  sheet.writeBlank(0, 4, styled);
  sheet.writeFormulaNum(1, 0, u"SUM(A1:A1)*Rate", 0.1, styled);
  sheet.writeFormulaStr(1, 1, u"'Über'!A1&\"x\"", u"yx");
  sheet.writeFormulaBool(1, 2, u"TRUE", true);
  sheet.setCol(1, 2, 25, styled);
  sheet.setCol(3, 3, 10, nullptr, true);
  sheet.setRow(5, 30);
  sheet.setRow(6, 12.75, nullptr, true);
  sheet.setMerge(8, 9, 1, 3);
  sheet.addHyperlink(u"https://example.org/", 2, 3, 0, 0);
  sheet.setNamedRange(u"Local", 0, 1, 0, 1, 0, true);
  other.setNamedRange(u"Rate", 4, 4, 5, 5);
  other.writeStr(0, 0, u"y");
  sheet.setLandscape();
  sheet.setPaper(kPaperA4);
  sheet.setHeader(u"&LLeft&CMiddle", 0.3);
  sheet.setFooter(u"&P", 0.7);
  sheet.setMarginLeft(1.25);
  sheet.setHCenter();
  sheet.setPrintFit(1, 3);
  sheet.setPrintArea(0, 10, 0, 4);
  sheet.setPrintRepeatRows(0, 1);
  sheet.setPrintRepeatCols(0, 0);
  sheet.setHorzPageBreak(5);
  sheet.setVertPageBreak(2);
  sheet.setZoom(85);
  sheet.setDisplayGridlines(false);
  sheet.split(1, 2);
  other.setHidden(SheetState::veryHidden);
  other.setRightToLeft();
  book.setActiveSheet(0);
}

TEST_F(Convert, ARebuiltBookHasNoDifferenceToItsSource) {
  const tools::BookPtr book = newBook();
  fillRich(*book);
  const ToolResult result = rebuild(*book);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exitCode, 0);
  const ToolResult diff = runTool("rubrica-diff", {path("in.xls"), path("out.xls")});
  EXPECT_EQ(diff.out, "");
  EXPECT_EQ(diff.exitCode, 0);
}

TEST_F(Convert, CommentsAndPicturesGoOver) {
  const tools::BookPtr book = newBook();
  Sheet& sheet = *book->getSheet(0);
  sheet.writeComment(3, 2, u"who says so?", u"me", 120, 60);
  const std::string image = readText(std::string(RUBRICA_SOURCE_DIR) + "/docs/cookbook/pictures/table.png");
  const int picture = book->addPicture2(image.data(), image.size());
  ASSERT_GE(picture, 0) << book->errorMessage();
  sheet.setPicture2(5, 1, picture, 90, 40);
  sheet.setPicture2(9, 4, picture, 30, 30);
  EXPECT_EQ(rebuild(*book).out, "");
  const tools::BookPtr out = load(path("out.xls"));
  Sheet& copy = *out->getSheet(0);
  EXPECT_EQ(std::u16string(copy.readComment(3, 2)), u"who says so?");
  ASSERT_EQ(copy.pictureSize(), 2);
  int row = 0, col = 0;
  EXPECT_EQ(copy.getPicture(1, &row, &col, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0)
      << "both show the same picture";
  EXPECT_EQ(row, 9);
  EXPECT_EQ(col, 4);
  const void* data = nullptr;
  std::size_t size = 0;
  EXPECT_EQ(out->getPicture(0, &data, &size), PictureType::png);
  EXPECT_EQ(size, image.size());
}

TEST_F(Convert, MoreColorsThanThePaletteHoldsBecomeTheNearestOfIt) {
  const tools::BookPtr book = tools::createBook("xlsx");
  Sheet& sheet = *book->addSheet(u"Colors");
  book->setRgbMode();
  for (int i = 0; i < 80; ++i) {
    Format* format = book->addFormat();
    format->setFillPattern(FillPattern::solid);
    format->setPatternForegroundColor(book->colorPack(i * 3, 255 - i * 3, 100));
    sheet.writeNum(i, 0, i, format);
  }
  const ToolResult result = runTool("rubrica-convert", {save(*book, "in.xlsx"), path("out.xls")});
  EXPECT_NE(result.out.find(" colors are replaced by the nearest of the palette\n"), std::string::npos) << result.out;
  const tools::BookPtr out = load(path("out.xls"));
  int red = 0, green = 0, blue = 0;
  out->colorUnpack(out->getSheet(0)->cellFormat(79, 0)->patternForegroundColor(), &red, &green, &blue);
  EXPECT_GT(red, 128) << "237, 18, 100 is near to a red";
  EXPECT_LT(green, 128);
}

TEST_F(Convert, ANameOfTheBookStaysOnItsSheet) {
  const tools::BookPtr book = newBook();
  book->addSheet(u"Second")->setNamedRange(u"Rate", 2, 2, 1, 1);
  book->addSheet(u"Third")->setNamedRange(u"Base", 7, 8, 0, 0);
  book->getSheet(0)->writeFormula(0, 0, u"Rate+Base");
  book->getSheet(1)->insertRow(0, 0);
  EXPECT_EQ(rebuild(*book).exitCode, 0);
  // A row inserted on the sheet of a name moves the name: on any other it doesn't.
  const tools::BookPtr out = load(path("out.xls"));
  out->getSheet(1)->insertRow(0, 0);
  int row = 0;
  ASSERT_TRUE(out->getSheet(0)->getNamedRange(u"Rate", &row, nullptr, nullptr, nullptr));
  EXPECT_EQ(row, 4);
  ASSERT_TRUE(out->getSheet(0)->getNamedRange(u"Base", &row, nullptr, nullptr, nullptr));
  EXPECT_EQ(row, 7);
}

TEST_F(Convert, ManyFormatsThatLookAlikeBecomeOne) {
  const tools::BookPtr book = newBook();
  for (int row = 0; row < 50; ++row) {
    Format* format = book->addFormat();
    format->setWrap(true);
    book->getSheet(0)->writeNum(row, 0, row, format);
  }
  const int before = book->formatSize();
  EXPECT_EQ(rebuild(*book).exitCode, 0);
  const tools::BookPtr out = load(path("out.xls"));
  EXPECT_LT(out->formatSize(), before - 45);
  EXPECT_TRUE(out->getSheet(0)->cellFormat(49, 0)->wrap());
}

TEST_F(Convert, AFormulaOfAConstantErrorKeepsItsError) {
  const tools::BookPtr book = newBook();
  book->getSheet(0)->writeFormula(3, 1, u"#REF!");
  EXPECT_EQ(rebuild(*book).out, "");
  EXPECT_EQ(load(path("out.xls"))->getSheet(0)->readError(3, 1), ErrorType::ref);
}

// The interfaces write no error beside a formula, as a program that calculates does: the cached number is made one in
// the file's bytes.
TEST_F(Convert, AnErrorThatAFormulaGaveIsListedAsLost) {
  constexpr double kCached = 12345.678;
  const tools::BookPtr book = newBook();
  book->getSheet(0)->writeFormulaNum(3, 1, u"1/A1", kCached);
  std::string bytes = readText(save(*book, "in.xls"));
  const std::size_t place = bytes.find(std::string(reinterpret_cast<const char*>(&kCached), sizeof(kCached)));
  ASSERT_NE(place, std::string::npos);
  bytes.replace(place, sizeof(kCached), std::string("\x02\0\x07\0\0\0\xFF\xFF", 8));
  writeText(path("in.xls"), bytes);
  const ToolResult result = runTool("rubrica-convert", {"--rebuild", path("in.xls"), path("out.xls")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "Prices!B4: the error that the formula gave is lost until it is calculated again\n");
  EXPECT_EQ(runTool("rubrica-diff", {path("in.xls"), path("out.xls")}).out, "Prices!B4: value: #DIV/0! -> 0\n");
}

TEST_F(Convert, ProtectionGoesOverWithoutItsPasswordAndSaysSo) {
  const tools::BookPtr book = newBook();
  book->getSheet(0)->setProtect(true, u"secret");
  const ToolResult result = rebuild(*book);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out,
            "Prices: the sheet is protected without its password, which can't be read\n"
            "not carried over: 1 protection password\n");
  EXPECT_TRUE(load(path("out.xls"))->getSheet(0)->protect());
  EXPECT_EQ(runTool("rubrica-convert", {"--rebuild", "--quiet", path("in.xls"), path("out.xls")}).out, "");
}

TEST_F(Convert, WhatTheInterfacesDontKnowIsCounted) {
  const tools::BookPtr book = newBook();
  Sheet& sheet = *book->getSheet(0);
  sheet.writeNum(0, 0, 1);
  sheet.groupRows(0, 1, false);
  sheet.setTabColor(color::red);
  const ToolResult result = rebuild(*book);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out,
            "not carried over: 1 tab color\n"
            "not carried over: 2 rows and columns with outline levels\n");
}

TEST_F(Convert, TheSameFormIsLoadedAndSaved) {
  const tools::BookPtr book = newBook();
  book->getSheet(0)->setProtect(true, u"secret");
  const ToolResult result = runTool("rubrica-convert", {save(*book, "in.xls"), path("out.xls")});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(readText(path("in.xls")), readText(path("out.xls")));
}

TEST_F(Convert, AnXltBecomesATemplate) {
  const tools::BookPtr book = newBook();
  EXPECT_EQ(runTool("rubrica-convert", {save(*book, "in.xls"), path("out.XLT")}).exitCode, 0);
  EXPECT_TRUE(load(path("out.XLT"))->isTemplate());
}

TEST_F(Convert, TheFirstDayOfDatesGoesOver) {
  const tools::BookPtr book = newBook();
  book->setDate1904();
  EXPECT_EQ(rebuild(*book).exitCode, 0);
  EXPECT_TRUE(load(path("out.xls"))->isDate1904());
}

TEST_F(Convert, TheOtherFormIsWrittenOrRefusedWithAReason) {
  const tools::BookPtr book = newBook();
  fillRich(*book);
  const ToolResult result = runTool("rubrica-convert", {save(*book, "in.xls"), path("out.xlsx")});
  if (tools::createBook("xlsx") == nullptr) {
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "rubrica-convert: " + path("out.xlsx") + ": this version writes no .xlsx files\n");
    return;
  }
  EXPECT_LE(result.exitCode, 1) << result.err;
  const ToolResult diff =
      runTool("rubrica-diff", {"--only", "values,formulas,merges", path("in.xls"), path("out.xlsx")});
  EXPECT_EQ(diff.out, "");
}

TEST_F(Convert, WrongCallsAndFilesAreExitCode2AndLeaveNoFile) {
  const std::string in = save(*newBook(), "in.xls");
  const std::vector<std::vector<std::string>> calls = {{in},
                                                       {in, path("out.ods")},
                                                       {in, path("out")},
                                                       {"--to", "ods", in, path("out.xls")},
                                                       {path("nowhere.xls"), path("out.xls")},
                                                       {in, path("no/such/directory/out.xls")}};
  for (const auto& words : calls) {
    const ToolResult result = runTool("rubrica-convert", words);
    EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(words);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("rubrica-convert: ")) << result.err;
  }
  EXPECT_EQ(_directory.entryCount(), 1u);
}

}  // namespace
}  // namespace rubrica::test
