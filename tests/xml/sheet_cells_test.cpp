// Values of cells: what is written, how it stands in the tree, and how it reads back.
#include <climits>
#include <cmath>
#include <limits>

#include "engine/xlerror.h"
#include "tests/xml/sheet_fixture.h"

namespace rubrica {
namespace {

template <class Tag>
using SheetCellsOf = SheetFixture<Tag>;
TYPED_TEST_SUITE(SheetCellsOf, Flavours, FlavourNames);

TYPED_TEST(SheetCellsOf, NumbersAreHeldWithSeventeenDigits) {
  auto& sheet = this->fresh;
  EXPECT_TRUE(sheet.writeNum(0, 0, 0.1, nullptr));
  EXPECT_TRUE(sheet.writeNum(0, 1, -3, nullptr));
  EXPECT_TRUE(sheet.writeNum(0, 2, 1e300, nullptr));
  EXPECT_TRUE(sheet.writeNum(0, 3, 1e-7, nullptr));
  EXPECT_TRUE(sheet.writeNum(0, 4, 123456789012345678.0, nullptr));
  EXPECT_TRUE(sheet.writeNum(0, 5, 1e15, nullptr));
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(this->rowsOf(sheet),
            "<row r=\"1\"><c r=\"A1\"><v>0.10000000000000001</v></c><c r=\"B1\"><v>-3</v></c>"
            "<c r=\"C1\"><v>1.0000000000000001e+300</v></c><c r=\"D1\"><v>9.9999999999999995e-08</v></c>"
            "<c r=\"E1\"><v>1.2345678901234568e+17</v></c><c r=\"F1\"><v>1000000000000000</v></c></row>");
}

TYPED_TEST(SheetCellsOf, EveryNumberReadsBackAsItWasWritten) {
  auto& sheet = this->fresh;
  using Limits = std::numeric_limits<double>;
  for (const double value : {0.0, 0.1, 1.0 / 3, -2.5, 1e15, 1e16, 123456789012345.0, 999999999999999.0, Limits::max(),
                             Limits::lowest(), Limits::min(), Limits::denorm_min(), 5e-324, 4503599627370497.5}) {
    ASSERT_TRUE(sheet.writeNum(3, 3, value, nullptr));
    EXPECT_EQ(sheet.readNum(3, 3, nullptr), value);
    EXPECT_EQ(sheet.cellType(3, 3), CellType::number);
  }
  ASSERT_TRUE(sheet.writeNum(3, 3, -0.0, nullptr));
  EXPECT_TRUE(std::signbit(sheet.readNum(3, 3, nullptr)));
}

TYPED_TEST(SheetCellsOf, NumbersAreReadInEveryForm) {
  const auto sheet = this->parse(
      "<row r=\"1\"><c r=\"A1\"><v>1.5</v></c><c r=\"B1\" t=\"n\"><v>-2E3</v></c><c r=\"C1\" t=\"str\"><v>7.25</v></c>"
      "<c r=\"D1\" t=\"str\"><v>7 apples</v></c><c r=\"E1\" t=\"str\"><v>inf</v></c><c r=\"F1\"><v>x</v></c>"
      "<c r=\"G1\" t=\"b\"><v>1</v></c><c r=\"H1\" t=\"e\"><v>#N/A</v></c><c r=\"I1\"/><c "
      "r=\"J1\"><v>1e999</v></c></row>");
  EXPECT_EQ(sheet->readNum(0, 0, nullptr), 1.5);
  EXPECT_EQ(sheet->readNum(0, 1, nullptr), -2000);
  EXPECT_EQ(sheet->readNum(0, 2, nullptr), 7.25);
  for (int col = 3; col <= 8; ++col) {
    EXPECT_EQ(sheet->readNum(0, col, nullptr), 0) << col;
    EXPECT_EQ(this->message(), "this cell doesn't contain a number") << col;
  }
  EXPECT_TRUE(std::isinf(sheet->readNum(0, 9, nullptr)));
  EXPECT_EQ(sheet->readNum(0, 10, nullptr), 0);
  EXPECT_EQ(this->message(), "cell is not found");
  EXPECT_EQ(sheet->readNum(1, 0, nullptr), 0);
  EXPECT_EQ(this->message(), "cell is not found");
}

TYPED_TEST(SheetCellsOf, DatesOfStrictWorkbooksAreNumbers) {
  if (std::is_same_v<TypeParam, excelNormal_tag>) GTEST_SKIP() << "the transitional form has no such cells";
  const auto sheet = this->parse(
      "<row r=\"1\"><c r=\"A1\" t=\"d\"><v>2020-01-02T12:00:00</v></c><c r=\"B1\" t=\"d\"><v>2020-01-02</v></c>"
      "<c r=\"C1\" t=\"d\"><v>2020-01-02T00:00:00.500Z</v></c><c r=\"D1\" t=\"d\"><v>soon</v></c></row>");
  EXPECT_EQ(sheet->readNum(0, 0, nullptr), 43832.5);
  EXPECT_EQ(sheet->readNum(0, 1, nullptr), 43832);
  EXPECT_NEAR(sheet->readNum(0, 2, nullptr), 43832 + 0.5 / 86400, 1e-9);
  EXPECT_EQ(sheet->readNum(0, 3, nullptr), 0);
  EXPECT_EQ(this->message(), "this cell doesn't contain a number");
  EXPECT_EQ(sheet->cellType(0, 0), CellType::number);
  EXPECT_TRUE(sheet->isDate(0, 0));
}

TYPED_TEST(SheetCellsOf, EqualStringsShareAnItem) {
  auto& sheet = this->fresh;
  EXPECT_EQ(this->book.sharedStrings(), nullptr);
  EXPECT_TRUE(sheet.writeStr(0, 0, u"tea", nullptr, 0));
  EXPECT_TRUE(sheet.writeStr(0, 1, u"salt", nullptr, 2));
  EXPECT_TRUE(sheet.writeStr(0, 2, u"tea", nullptr, 2));
  ASSERT_NE(this->book.sharedStrings(), nullptr);
  EXPECT_EQ(this->book.sharedStrings()->count(), 2u);
  EXPECT_EQ(this->rowsOf(sheet),
            "<row r=\"1\"><c r=\"A1\" t=\"s\"><v>0</v></c><c r=\"B1\" t=\"s\"><v>1</v></c>"
            "<c r=\"C1\" t=\"s\"><v>0</v></c></row>");
  EXPECT_TRUE(sheet.writeStr(0, 0, u"sugar", nullptr, 0));
  EXPECT_EQ(this->stringAt(sheet, 0, 2), u"tea") << "the other cell keeps its text";
  EXPECT_EQ(this->stringAt(sheet, 0, 0), u"sugar");
  EXPECT_EQ(sheet.sharedStringCells(), 3u);
}

TYPED_TEST(SheetCellsOf, TextsHaveAtMost32767Characters) {
  auto& sheet = this->fresh;
  const std::u16string longest(32767, u'a');
  for (const int kind : {0, 1, 2}) {
    EXPECT_TRUE(sheet.writeStr(0, kind, longest.c_str(), nullptr, kind));
    EXPECT_FALSE(sheet.writeStr(1, kind, (longest + u'a').c_str(), nullptr, kind));
    EXPECT_EQ(this->message(), "string is too long");
    EXPECT_EQ(sheet.cellType(1, kind), CellType::empty);
  }
  EXPECT_EQ(this->stringAt(sheet, 0, 0), longest);
  EXPECT_EQ(this->stringAt(sheet, 0, 1), longest);
}

TYPED_TEST(SheetCellsOf, AnInlineTextStandsInTheCell) {
  auto& sheet = this->fresh;
  EXPECT_TRUE(sheet.writeStr(0, 0, u"a<b", nullptr, 1));
  EXPECT_EQ(this->rowsOf(sheet), "<row r=\"1\"><c r=\"A1\"><v>a&lt;b</v></c></row>");
  EXPECT_EQ(this->stringAt(sheet, 0, 0), u"a<b");
  EXPECT_EQ(this->book.sharedStrings(), nullptr);
}

TYPED_TEST(SheetCellsOf, StringsAreReadInEveryForm) {
  this->book.needSharedStrings().add(u"shared");
  const auto sheet = this->parse(
      "<row r=\"1\"><c r=\"A1\" t=\"s\"><v>0</v></c><c r=\"B1\" t=\"s\"><v></v></c><c r=\"C1\" "
      "t=\"str\"><v>a_x000D_b</v></c>"
      "<c r=\"D1\" t=\"inlineStr\"><is><t>plain</t></is></c>"
      "<c r=\"E1\" t=\"inlineStr\"><is><r><t>one</t></r><r><t>two</t></r></is></c><c r=\"F1\"><v>12</v></c>"
      "<c r=\"G1\" t=\"inlineStr\"/><c r=\"H1\" t=\"str\"><f>A1</f></c>"
      "<c r=\"I1\" t=\"e\"><v>#REF!</v></c><c r=\"J1\" t=\"b\"><v>1</v></c><c r=\"K1\" s=\"0\"/></row>");
  const char16_t* kTexts[] = {u"shared", u"", u"a\rb", u"plain", u"one", u"12", u"", u""};
  for (int col = 0; col < 8; ++col) {
    EXPECT_EQ(this->stringAt(*sheet, 0, col), kTexts[col]) << col;
    EXPECT_EQ(this->message(), "ok");
  }
  for (int col = 8; col < 11; ++col) {
    EXPECT_EQ(sheet->readStr(0, col, nullptr), nullptr) << col;
    EXPECT_EQ(this->message(), "this cell doesn't contain a string");
  }
  EXPECT_EQ(sheet->readStr(0, 11, nullptr), nullptr);
  EXPECT_EQ(this->message(), "cell is not found");
}

TYPED_TEST(SheetCellsOf, PositionsThatTheStringTableDoesNotHaveAreMessages) {
  const auto sheet = this->parse(
      "<row r=\"1\"><c r=\"A1\" t=\"s\"><v>0</v></c><c r=\"B1\" t=\"s\"><v>99999999999999999999</v></c>"
      "<c r=\"C1\" t=\"s\"><v>-1</v></c><c r=\"D1\" t=\"s\"><v>x</v></c></row>");
  EXPECT_EQ(sheet->readStr(0, 0, nullptr), nullptr);
  EXPECT_EQ(this->message(), "sharedStrings not found");
  this->book.needSharedStrings();
  for (int col = 0; col < 4; ++col) {
    EXPECT_EQ(sheet->readStr(0, col, nullptr), nullptr);
    EXPECT_EQ(this->message(), "index is out of range or no value") << col;
  }
}

TYPED_TEST(SheetCellsOf, BooleansAndErrors) {
  auto& sheet = this->fresh;
  EXPECT_TRUE(sheet.writeBool(0, 0, true, nullptr, ErrorType::noError));
  EXPECT_TRUE(sheet.writeBool(0, 1, false, nullptr, ErrorType::noError));
  sheet.writeError(0, 2, ErrorType::divByZero, nullptr);
  EXPECT_TRUE(sheet.writeBool(0, 3, true, nullptr, ErrorType::ref));
  EXPECT_EQ(this->rowsOf(sheet),
            "<row r=\"1\"><c r=\"A1\" t=\"b\"><v>1</v></c><c r=\"B1\" t=\"b\"><v>0</v></c>"
            "<c r=\"C1\" t=\"e\"><v>#DIV/0!</v></c><c r=\"D1\" t=\"e\"><v>#REF!</v></c></row>");
  EXPECT_TRUE(sheet.readBool(0, 0, nullptr));
  EXPECT_FALSE(sheet.readBool(0, 1, nullptr));
  EXPECT_EQ(this->message(), "ok");
  EXPECT_FALSE(sheet.readBool(0, 2, nullptr));
  EXPECT_EQ(this->message(), "this cell doesn't contain a bool");
  EXPECT_EQ(sheet.readError(0, 3), ErrorType::ref);
  EXPECT_EQ(sheet.readError(0, 0), ErrorType::noError);
  EXPECT_EQ(sheet.cellType(0, 0), CellType::boolean);
  EXPECT_EQ(sheet.cellType(0, 2), CellType::error);
  EXPECT_FALSE(sheet.writeBool(0, 4, false, nullptr, ErrorType{99}));
  EXPECT_EQ(sheet.cellType(0, 4), CellType::empty);
}

TYPED_TEST(SheetCellsOf, EveryErrorHasItsWord) {
  auto& sheet = this->fresh;
  const std::pair<ErrorType, const char16_t*> kErrors[] = {
      {ErrorType::null, u"#NULL!"},      {ErrorType::divByZero, u"#DIV/0!"}, {ErrorType::value, u"#VALUE!"},
      {ErrorType::ref, u"#REF!"},        {ErrorType::name, u"#NAME?"},       {ErrorType::num, u"#NUM!"},
      {ErrorType::notAvailable, u"#N/A"}};
  for (const auto& [error, word] : kErrors) {
    sheet.writeError(0, 0, error, nullptr);
    EXPECT_EQ(sheet.readError(0, 0), error);
    const std::string written = this->rowsOf(sheet);
    EXPECT_EQ(wide(written), u"<row r=\"1\"><c r=\"A1\" t=\"e\"><v>" + std::u16string(word) + u"</v></c></row>");
  }
  const auto other = this->parse("<row r=\"1\"><c r=\"A1\" t=\"e\"><v>#SPILL!</v></c></row>");
  EXPECT_EQ(other->readError(0, 0), ErrorType::noError);
  EXPECT_EQ(other->cellType(0, 0), CellType::error);
}

TYPED_TEST(SheetCellsOf, BlanksHaveNothingButAStyle) {
  auto& sheet = this->fresh;
  auto* format = this->book.addFormat(nullptr);
  EXPECT_TRUE(sheet.writeBlank(0, 0, format));
  EXPECT_EQ(sheet.cellType(0, 0), CellType::blank);
  Format* given = nullptr;
  EXPECT_TRUE(sheet.readBlank(0, 0, &given));
  EXPECT_EQ(given, format);
  EXPECT_TRUE(sheet.writeBlank(0, 1, nullptr));
  EXPECT_EQ(sheet.cellType(0, 1), CellType::empty) << "neither content nor style";
  sheet.writeNum(0, 0, 1, nullptr);
  EXPECT_FALSE(sheet.readBlank(0, 0, &given));
  EXPECT_EQ(given, nullptr);
  EXPECT_EQ(this->message(), "cell is not blank");
  EXPECT_FALSE(sheet.readBlank(5, 5, &given));
  EXPECT_EQ(this->message(), "cell is not found");
  EXPECT_TRUE(sheet.writeBlank(0, 0, nullptr));
  EXPECT_EQ(sheet.cellType(0, 0), CellType::blank) << "the style stays";
}

TYPED_TEST(SheetCellsOf, WritingAnotherKindLeavesNothingOfTheOld) {
  const auto sheet = this->parse(
      "<row r=\"1\"><c r=\"A1\" s=\"0\" t=\"inlineStr\" cm=\"1\" vm=\"2\"><f>B1</f><v>old and long enough to stand "
      "apart</v><is><t>x</t></is></c></row>");
  sheet->writeNum(0, 0, 5, nullptr);
  EXPECT_EQ(this->rowsOf(*sheet), "<row r=\"1\"><c r=\"A1\" s=\"0\"><v>5</v></c></row>");
  sheet->writeBool(0, 0, true, nullptr, ErrorType::noError);
  sheet->writeNum(0, 0, 6, nullptr);
  EXPECT_EQ(this->rowsOf(*sheet), "<row r=\"1\"><c r=\"A1\" s=\"0\"><v>6</v></c></row>");
  sheet->writeBlank(0, 0, nullptr);
  EXPECT_EQ(this->rowsOf(*sheet), "<row r=\"1\"><c r=\"A1\" s=\"0\"/></row>");
}

TYPED_TEST(SheetCellsOf, TheEdgesOfTheSheet) {
  auto& sheet = this->fresh;
  EXPECT_TRUE(sheet.writeNum(1048575, 16383, 1, nullptr));
  EXPECT_EQ(sheet.readNum(1048575, 16383, nullptr), 1);
  EXPECT_FALSE(sheet.writeNum(1048576, 0, 1, nullptr));
  EXPECT_EQ(this->message(), "row must be in range 0-1048575");
  EXPECT_FALSE(sheet.writeNum(0, 16384, 1, nullptr));
  EXPECT_EQ(this->message(), "col must be in range 0-16383");
  for (const auto& [row, col] : {std::pair{-1, 0}, {0, -1}, {1048576, 0}, {0, 16384}, {INT_MAX, INT_MAX}}) {
    EXPECT_FALSE(sheet.writeStr(row, col, u"a", nullptr, 0));
    EXPECT_FALSE(sheet.writeBlank(row, col, nullptr));
    EXPECT_FALSE(sheet.writeFormula(row, col, u"1", nullptr));
    EXPECT_FALSE(sheet.writeBool(row, col, true, nullptr, ErrorType::noError));
    EXPECT_FALSE(sheet.copyCell(1048575, 16383, row, col));
    EXPECT_EQ(sheet.readStr(row, col, nullptr), nullptr);
    EXPECT_EQ(sheet.cellType(row, col), CellType::empty);
    EXPECT_NE(this->message().find("must be in range"), std::string::npos);
  }
  EXPECT_EQ(this->book.sharedStrings(), nullptr) << "nothing was entered for a cell that isn't there";
  EXPECT_EQ(sheet.firstRow(), 1048575);
  EXPECT_EQ(sheet.lastRow(), 1048576);
  EXPECT_EQ(sheet.firstCol(), 16383);
  EXPECT_EQ(sheet.lastCol(), 16384);
}

TYPED_TEST(SheetCellsOf, CellsInAnyOrderStandInOrder) {
  auto& sheet = this->fresh;
  const std::pair<int, int> kCells[] = {{5, 5}, {0, 0}, {5, 1}, {2, 7}, {5, 3}, {2, 2}, {9, 0}, {5, 2}, {0, 1}};
  for (const auto& [row, col] : kCells) ASSERT_TRUE(sheet.writeNum(row, col, row * 100 + col, nullptr));
  for (const auto& [row, col] : kCells) EXPECT_EQ(sheet.readNum(row, col, nullptr), row * 100 + col);
  EXPECT_EQ(sheet.cellType(5, 4), CellType::empty);
  EXPECT_EQ(sheet.cellType(3, 3), CellType::empty);
  EXPECT_EQ(this->rowsOf(sheet),
            "<row r=\"1\"><c r=\"A1\"><v>0</v></c><c r=\"B1\"><v>1</v></c></row>"
            "<row r=\"3\"><c r=\"C3\"><v>202</v></c><c r=\"H3\"><v>207</v></c></row>"
            "<row r=\"6\"><c r=\"B6\"><v>501</v></c><c r=\"C6\"><v>502</v></c><c r=\"D6\"><v>503</v></c>"
            "<c r=\"F6\"><v>505</v></c></row><row r=\"10\"><c r=\"A10\"><v>900</v></c></row>");
}

// Against a table of its own, in random order.
TYPED_TEST(SheetCellsOf, ManyCellsAreFoundAgain) {
  auto& sheet = this->fresh;
  constexpr int kSize = 60;
  std::vector<double> table(kSize * kSize, -1);
  std::uint32_t state = 12345;
  const auto random = [&state] { return static_cast<int>((state = state * 1664525u + 1013904223u) >> 8); };
  for (int i = 0; i < 3000; ++i) {
    const int row = random() % kSize, col = random() % kSize;
    ASSERT_TRUE(sheet.writeNum(row * 3, col * 5, i, nullptr));
    table[static_cast<std::size_t>(row * kSize + col)] = i;
  }
  for (int i = kSize * kSize - 1; i >= 0; --i) {
    const double expected = table[static_cast<std::size_t>(i)];
    const int row = i / kSize * 3, col = i % kSize * 5;
    ASSERT_EQ(sheet.cellType(row, col), expected < 0 ? CellType::empty : CellType::number);
    if (expected >= 0) {
      ASSERT_EQ(sheet.readNum(row, col, nullptr), expected);
    }
    ASSERT_EQ(sheet.cellType(row + 1, col), CellType::empty);
    ASSERT_EQ(sheet.cellType(row, col + 1), CellType::empty);
  }
}

TYPED_TEST(SheetCellsOf, FormatsAreGivenKeptAndRefused) {
  auto& sheet = this->fresh;
  auto* format = this->book.addFormat(nullptr);
  auto* other = this->book.addFormat(nullptr);
  sheet.writeNum(0, 0, 1, format);
  EXPECT_EQ(sheet.cellFormat(0, 0), format);
  sheet.writeStr(0, 0, u"a", nullptr, 0);
  EXPECT_EQ(sheet.cellFormat(0, 0), format) << "no format keeps the cell's own";
  sheet.setCellFormat(0, 0, other);
  EXPECT_EQ(sheet.cellFormat(0, 0), other);
  EXPECT_EQ(this->stringAt(sheet, 0, 0), u"a") << "the content stays";
  sheet.setCellFormat(4, 4, other);
  EXPECT_EQ(sheet.cellType(4, 4), CellType::blank);
  EXPECT_EQ(sheet.cellFormat(9, 9), this->book.format(0));
  XMLBookImplT<TypeParam> second;
  EXPECT_FALSE(sheet.writeNum(1, 1, 1, second.addFormat(nullptr)));
  EXPECT_EQ(this->message(), "specified format not found");
  EXPECT_EQ(sheet.cellType(1, 1), CellType::empty);
  sheet.setCellFormat(0, 0, nullptr);
  EXPECT_EQ(this->message(), "specified format not found");
  Format* given = nullptr;
  EXPECT_EQ(this->textOr(sheet.readStr(0, 0, &given)), u"a");
  EXPECT_EQ(given, other);
}

TYPED_TEST(SheetCellsOf, StylesThatTheBookDoesNotHaveAreMessages) {
  const auto sheet = this->parse("<row r=\"1\"><c r=\"A1\" s=\"7\"><v>1</v></c></row>");
  EXPECT_EQ(sheet->cellFormat(0, 0), nullptr);
  EXPECT_EQ(this->message(), "format not found");
  Format* given = nullptr;
  EXPECT_EQ(sheet->readNum(0, 0, &given), 0);
  EXPECT_EQ(sheet->readNum(0, 0, nullptr), 1);
  EXPECT_FALSE(sheet->isDate(0, 0));
}

TYPED_TEST(SheetCellsOf, NewCellsTakeTheStyleOfTheirColumn) {
  auto* format = this->book.addFormat(nullptr);
  const auto sheet = this->parseAll(
      "<cols><col min=\"2\" max=\"3\" style=\"1\"/><col min=\"16384\" max=\"20000\" style=\"1\"/>"
      "<col min=\"0\" max=\"1\" style=\"1\"/><col min=\"9\" max=\"5\" style=\"1\"/></cols>"
      "<sheetData><row r=\"1\"><c r=\"B1\"><v>1</v></c><c r=\"C1\" s=\"0\"><v>1</v></c></row></sheetData>");
  sheet->writeNum(5, 1, 1, nullptr);
  EXPECT_EQ(sheet->cellFormat(5, 1), format);
  EXPECT_EQ(sheet->cellFormat(6, 2), format) << "of a cell that isn't there";
  EXPECT_EQ(sheet->cellFormat(5, 3), this->book.format(0));
  EXPECT_EQ(sheet->cellFormat(5, 16383), format);
  EXPECT_EQ(sheet->cellFormat(5, 0), this->book.format(0));
  sheet->writeNum(0, 1, 2, nullptr);
  EXPECT_EQ(sheet->cellFormat(0, 1), format) << "a cell without a style of its own";
  sheet->writeNum(0, 2, 2, nullptr);
  EXPECT_EQ(sheet->cellFormat(0, 2), this->book.format(0)) << "a cell with one";
}

TYPED_TEST(SheetCellsOf, DatesAreNumbersInADateFormat) {
  auto& sheet = this->fresh;
  auto* date = this->book.addFormat(nullptr);
  date->setNumFormat(14);
  auto* custom = this->book.addFormat(nullptr);
  custom->setNumFormat(this->book.addCustomNumFormat(u"yyyy"));
  auto* text = this->book.addFormat(nullptr);
  text->setNumFormat(this->book.addCustomNumFormat(u"\"days\" 0"));
  sheet.writeNum(0, 0, 1, date);
  sheet.writeNum(0, 1, 1, custom);
  sheet.writeNum(0, 2, 1, text);
  sheet.writeNum(0, 3, 1, nullptr);
  sheet.writeStr(0, 4, u"a", date, 0);
  sheet.writeBlank(0, 5, date);
  sheet.writeFormulaNum(0, 6, u"1+1", 2, date);
  const bool kDates[] = {true, true, false, false, false, false, true, false};
  for (int col = 0; col < 8; ++col) {
    EXPECT_EQ(sheet.isDate(0, col), kDates[col]) << col;
    EXPECT_EQ(this->message(), "ok");
  }
}

TYPED_TEST(SheetCellsOf, TheUsedRangeGrowsWithTheCells) {
  auto& sheet = this->fresh;
  EXPECT_EQ(sheet.firstRow(), sheet.lastRow());
  EXPECT_EQ(sheet.firstCol(), sheet.lastCol());
  EXPECT_NE(this->saved(sheet).find("<dimension ref=\"A1\"/>"), std::string::npos);
  sheet.writeNum(4, 2, 1, nullptr);
  EXPECT_EQ(sheet.firstRow(), 4);
  EXPECT_EQ(sheet.lastRow(), 5);
  EXPECT_EQ(sheet.firstCol(), 2);
  EXPECT_EQ(sheet.lastCol(), 3);
  EXPECT_NE(this->saved(sheet).find("<dimension ref=\"C5\"/>"), std::string::npos);
  sheet.setCellFormat(1, 27, this->book.addFormat(nullptr));
  EXPECT_NE(this->saved(sheet).find("<dimension ref=\"C2:AB5\"/>"), std::string::npos);
}

TYPED_TEST(SheetCellsOf, CopiesHaveTheValueAndTheFormat) {
  auto& sheet = this->fresh;
  auto* format = this->book.addFormat(nullptr);
  sheet.writeNum(0, 0, 2.5, format);
  sheet.writeStr(0, 1, u"tea", nullptr, 0);
  sheet.writeFormulaNum(0, 2, u"A1*2", 5, nullptr);
  sheet.writeNum(3, 1, 1, format);
  EXPECT_TRUE(sheet.copyCell(0, 0, 7, 3));
  EXPECT_EQ(sheet.readNum(7, 3, nullptr), 2.5);
  EXPECT_EQ(sheet.cellFormat(7, 3), format);
  EXPECT_TRUE(sheet.copyCell(0, 1, 3, 1));
  EXPECT_EQ(this->stringAt(sheet, 3, 1), u"tea");
  EXPECT_EQ(sheet.cellFormat(3, 1), this->book.format(0));
  EXPECT_TRUE(sheet.copyCell(0, 2, 4, 4));
  EXPECT_EQ(this->formulaAt(sheet, 4, 4), u"A1*2") << "references don't move";
  EXPECT_EQ(sheet.readNum(4, 4, nullptr), 5);
  EXPECT_TRUE(sheet.copyCell(0, 0, 0, 0));
  EXPECT_EQ(sheet.readNum(0, 0, nullptr), 2.5);
  EXPECT_FALSE(sheet.copyCell(9, 9, 0, 0));
  EXPECT_EQ(this->message(), "empty cell");
  EXPECT_EQ(sheet.readNum(0, 0, nullptr), 2.5);
}

TYPED_TEST(SheetCellsOf, AddressesAreConverted) {
  auto& sheet = this->fresh;
  int row = 0, col = 0;
  bool rowRelative = false, colRelative = true;
  sheet.addrToRowCol(u"$C7", &row, &col, &rowRelative, &colRelative);
  EXPECT_EQ(row, 6);
  EXPECT_EQ(col, 2);
  EXPECT_TRUE(rowRelative);
  EXPECT_FALSE(colRelative);
  EXPECT_EQ(this->textOr(sheet.rowColToAddr(1048575, 16383, false, true)), u"XFD$1048576");
  EXPECT_EQ(sheet.rowColToAddr(1048576, 0, true, true), nullptr);
  EXPECT_EQ(this->message(), "row must be in range 0-1048575");
}

}  // namespace
}  // namespace rubrica
