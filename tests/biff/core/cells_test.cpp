// Cells of an .xls sheet through the interface, in memory and over a save and a load.
#include <cmath>
#include <limits>

#include "tests/biff/core/book_fixture.h"

namespace rubrica {
namespace {

using test::BytesBuilder;
using test::fileAround;
using test::findRecord;
using test::loadBytes;
using test::loaded;
using test::newBook;
using test::OneSheet;
using test::Record;
using test::reloaded;
using test::savedRecords;
using test::substream;
using test::textOf;

std::vector<Record> sheetRecords(Book& book) {
  return substream(savedRecords(book), 1);
}

TEST(SheetCells, NumbersWithZeroLowBitsAreStoredAsRk) {
  OneSheet b;
  ASSERT_TRUE(b.sheet->writeNum(0, 0, 1.0));
  ASSERT_TRUE(b.sheet->writeNum(0, 1, 0.1));
  ASSERT_TRUE(b.sheet->writeNum(0, 2, 1e300));
  ASSERT_TRUE(b.sheet->writeNum(0, 3, -1048576.0));
  const auto records = sheetRecords(*b.book);
  std::vector<std::uint16_t> kinds;
  for (const Record& record : records) {
    if (record.recordId == id::kRk || record.recordId == id::kNumber) kinds.push_back(record.recordId);
  }
  EXPECT_EQ(kinds, (std::vector<std::uint16_t>{id::kRk, id::kNumber, id::kNumber, id::kRk}));
  EXPECT_EQ(findRecord(records, id::kRk)->bytes, test::Bytes(BytesBuilder().u16(0).u16(0).u16(15).u32(0x3FF00000)));
}

TEST(SheetCells, NumbersReadBackExactly) {
  OneSheet b;
  const double values[] = {0.0,
                           -0.0,
                           1.0,
                           0.1,
                           -2.5,
                           1e300,
                           5e-324,
                           123456789.0,
                           3000000000.0,
                           1e-10,
                           1.0 / 3,
                           65536.0,
                           4503599627370497.0,
                           -1e-300,
                           std::numeric_limits<double>::max()};
  int col = 0;
  for (const double value : values) ASSERT_TRUE(b.sheet->writeNum(3, col++, value));
  const auto again = reloaded(*b.book);
  for (int i = 0; i < col; ++i) {
    const double read = again->getSheet(0)->readNum(3, i);
    EXPECT_EQ(read, values[i]);
    EXPECT_EQ(std::signbit(read), std::signbit(values[i]));
    EXPECT_EQ(again->getSheet(0)->cellType(3, i), CellType::number);
  }
}

TEST(SheetCells, IntegerAndHundredthFormsOfRkAreRead) {
  const auto rk = [](int col, std::uint32_t value) {
    return Record{id::kRk, BytesBuilder().u16(0).u16(static_cast<unsigned>(col)).u16(15).u32(value)};
  };
  const auto book = loaded(fileAround({rk(0, (100u << 2) | 2), rk(1, (12345u << 2) | 3),
                                       rk(2, (static_cast<std::uint32_t>(-7) << 2) | 2), rk(3, 0x3FF00000 | 1)}));
  Sheet* sheet = book->getSheet(0);
  EXPECT_EQ(sheet->readNum(0, 0), 100.0);
  EXPECT_EQ(sheet->readNum(0, 1), 123.45);
  EXPECT_EQ(sheet->readNum(0, 2), -7.0);
  EXPECT_EQ(sheet->readNum(0, 3), 0.01);
}

TEST(SheetCells, EveryKindTellsItsType) {
  OneSheet b;
  b.sheet->writeNum(0, 0, 2.5);
  b.sheet->writeStr(0, 1, u"text");
  b.sheet->writeBool(0, 2, true);
  b.sheet->writeBlank(0, 3, nullptr);
  b.sheet->writeError(0, 4, ErrorType::divByZero);
  for (Book* book : {b.book.get()}) {
    Sheet* sheet = book->getSheet(0);
    EXPECT_EQ(sheet->cellType(0, 0), CellType::number);
    EXPECT_EQ(sheet->cellType(0, 1), CellType::string);
    EXPECT_EQ(sheet->cellType(0, 2), CellType::boolean);
    EXPECT_EQ(sheet->cellType(0, 3), CellType::blank);
    EXPECT_EQ(sheet->cellType(0, 4), CellType::error);
    EXPECT_EQ(sheet->cellType(0, 5), CellType::empty);
    EXPECT_EQ(sheet->cellType(9, 0), CellType::empty);
  }
  const auto again = reloaded(*b.book);
  Sheet* sheet = again->getSheet(0);
  EXPECT_EQ(textOf(sheet->readStr(0, 1)), u"text");
  EXPECT_TRUE(sheet->readBool(0, 2));
  Format* format = nullptr;
  EXPECT_TRUE(sheet->readBlank(0, 3, &format));
  EXPECT_NE(format, nullptr);
  EXPECT_EQ(sheet->readError(0, 4), ErrorType::divByZero);
  EXPECT_EQ(sheet->readError(0, 0), ErrorType::noError);
}

TEST(SheetCells, ReadersRefuseCellsOfOtherKinds) {
  OneSheet b;
  b.sheet->writeStr(0, 0, u"text");
  b.sheet->writeNum(0, 1, 1);
  EXPECT_EQ(b.sheet->readNum(0, 0), 0.0);
  EXPECT_STREQ(b.book->errorMessage(), "this cell doesn't contain a number");
  EXPECT_EQ(b.sheet->readStr(0, 1), nullptr);
  EXPECT_STREQ(b.book->errorMessage(), "this cell doesn't contain a string");
  EXPECT_FALSE(b.sheet->readBool(0, 1));
  EXPECT_STREQ(b.book->errorMessage(), "this cell doesn't contain a bool");
  Format* format = nullptr;
  EXPECT_FALSE(b.sheet->readBlank(0, 1, &format));
  EXPECT_STREQ(b.book->errorMessage(), "this cell doesn't contain a blank");
  EXPECT_EQ(b.sheet->readFormula(0, 1), nullptr);
  EXPECT_STREQ(b.book->errorMessage(), "cell doesn't contain a formula");
  EXPECT_EQ(b.sheet->readStr(50, 50), nullptr);
  EXPECT_STREQ(b.book->errorMessage(), "this cell doesn't contain a string");
}

TEST(SheetCells, ReadBlankWantsItsFormat) {
  OneSheet b;
  b.sheet->writeBlank(0, 0, nullptr);
  EXPECT_FALSE(b.sheet->readBlank(0, 0, nullptr));
  EXPECT_STREQ(b.book->errorMessage(), "format mustn't be NULL");
}

TEST(SheetCells, PlacesOutsideTheSheetFailEverywhere) {
  OneSheet b;
  const struct {
    int row, col;
    const char* message;
  } places[] = {{65536, 0, "row must be in range 0-65535"},
                {-1, 0, "row must be in range 0-65535"},
                {0, 256, "col must be in range 0-255"},
                {0, -1, "col must be in range 0-255"},
                {std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), "row must be in range 0-65535"}};
  for (const auto& [row, col, message] : places) {
    EXPECT_FALSE(b.sheet->writeNum(row, col, 1));
    EXPECT_STREQ(b.book->errorMessage(), message);
    EXPECT_FALSE(b.sheet->writeStr(row, col, u"x"));
    EXPECT_STREQ(b.book->errorMessage(), message);
    EXPECT_FALSE(b.sheet->writeBool(row, col, true));
    EXPECT_FALSE(b.sheet->writeBlank(row, col, nullptr));
    EXPECT_FALSE(b.sheet->writeFormula(row, col, u"1+2"));
    EXPECT_EQ(b.sheet->cellType(row, col), CellType::empty);
    EXPECT_STREQ(b.book->errorMessage(), message);
    EXPECT_EQ(b.sheet->cellFormat(row, col), nullptr);
    EXPECT_STREQ(b.book->errorMessage(), message);
    EXPECT_EQ(b.sheet->readError(row, col), ErrorType::noError);
    EXPECT_FALSE(b.sheet->isDate(row, col));
    EXPECT_FALSE(b.sheet->isFormula(row, col));
  }
  EXPECT_TRUE(b.sheet->writeNum(65535, 255, 1));
  EXPECT_EQ(b.sheet->lastRow(), 65536);
  EXPECT_EQ(b.sheet->lastCol(), 256);
}

TEST(SheetCells, TextIsAtMost32767Characters) {
  OneSheet b;
  const std::u16string longest(32767, u'x');
  EXPECT_TRUE(b.sheet->writeStr(0, 0, longest.c_str()));
  EXPECT_FALSE(b.sheet->writeStr(0, 1, (longest + u"x").c_str()));
  EXPECT_STREQ(b.book->errorMessage(), "string is too long");
  EXPECT_EQ(b.sheet->cellType(0, 1), CellType::empty);
  EXPECT_EQ(textOf(reloaded(*b.book)->getSheet(0)->readStr(0, 0)), longest);
}

TEST(SheetCells, NoTextIsEmptyText) {
  OneSheet b;
  EXPECT_TRUE(b.sheet->writeStr(0, 0, nullptr));
  EXPECT_EQ(textOf(b.sheet->readStr(0, 0)), u"");
  EXPECT_EQ(b.sheet->cellType(0, 0), CellType::string);
  EXPECT_EQ(textOf(reloaded(*b.book)->getSheet(0)->readStr(0, 0)), u"");
}

TEST(SheetCells, EqualTextsShareOneEntry) {
  OneSheet b;
  b.sheet->writeStr(0, 0, u"same");
  b.sheet->writeStr(5, 5, u"same");
  const Record* sst = findRecord(savedRecords(*b.book), id::kSst);
  ASSERT_NE(sst, nullptr);
  const auto records = savedRecords(*b.book);
  const auto bytes = findRecord(records, id::kSst)->bytes;
  EXPECT_EQ(test::Bytes(bytes.begin(), bytes.begin() + 8), test::Bytes(BytesBuilder().u32(2).u32(1)));
}

TEST(SheetCells, OverwritingASharedStringLeavesTheOtherCellAlone) {
  OneSheet b;
  b.sheet->writeStr(0, 0, u"same");
  b.sheet->writeStr(1, 0, u"same");
  ASSERT_TRUE(b.sheet->writeStr(0, 0, u"changed"));
  EXPECT_EQ(textOf(b.sheet->readStr(0, 0)), u"changed");
  EXPECT_EQ(textOf(b.sheet->readStr(1, 0)), u"same");
}

TEST(SheetCells, OverwritingAStringThatAnotherSheetSharesLeavesThatSheetAlone) {
  OneSheet b;
  Sheet* other = b.book->addSheet(u"Other");
  b.sheet->writeStr(0, 0, u"same");
  other->writeStr(9, 9, u"same");
  b.sheet->writeStr(0, 0, u"changed");
  EXPECT_EQ(textOf(other->readStr(9, 9)), u"same");
  EXPECT_EQ(textOf(b.sheet->readStr(0, 0)), u"changed");
}

TEST(SheetCells, OverwritingAStringOfItsOwnReplacesTheEntry) {
  OneSheet b;
  b.sheet->writeStr(0, 0, u"first");
  for (int i = 0; i < 5; ++i)
    b.sheet->writeStr(0, 0, (u"text " + std::u16string(1, static_cast<char16_t>(u'a' + i))).c_str());
  const auto records = savedRecords(*b.book);
  const auto& bytes = findRecord(records, id::kSst)->bytes;
  EXPECT_EQ(test::Bytes(bytes.begin() + 4, bytes.begin() + 8), test::Bytes(BytesBuilder().u32(1)));
  EXPECT_EQ(textOf(b.sheet->readStr(0, 0)), u"text e");
}

TEST(SheetCells, OverwritingManyStringsKeepsEveryOther) {
  OneSheet b;
  for (int row = 0; row < 300; ++row) b.sheet->writeStr(row, 0, row % 2 == 0 ? u"even" : u"odd");
  for (int row = 0; row < 300; row += 3) ASSERT_TRUE(b.sheet->writeStr(row, 0, u"third"));
  for (int row = 0; row < 300; ++row) {
    EXPECT_EQ(textOf(b.sheet->readStr(row, 0)), row % 3 == 0 ? u"third" : row % 2 == 0 ? u"even" : u"odd") << row;
  }
}

TEST(SheetCells, AnyKindOverwritesAnyOther) {
  OneSheet b;
  const auto write = [&](int kind, int row) {
    switch (kind) {
      case 0:
        return b.sheet->writeNum(row, 0, 1.0);
      case 1:
        return b.sheet->writeNum(row, 0, 0.1);
      case 2:
        return b.sheet->writeStr(row, 0, u"text");
      case 3:
        return b.sheet->writeBool(row, 0, true);
      case 4:
        return b.sheet->writeBlank(row, 0, nullptr);
      case 5:
        return b.sheet->writeFormulaNum(row, 0, u"1+2", 3.0);
      default:
        return b.sheet->writeBool(row, 0, false, nullptr, ErrorType::name);
    }
  };
  const CellType types[] = {CellType::number, CellType::number, CellType::string, CellType::boolean,
                            CellType::blank,  CellType::number, CellType::error};
  int row = 0;
  for (int first = 0; first < 7; ++first) {
    for (int second = 0; second < 7; ++second, ++row) {
      ASSERT_TRUE(write(first, row) && write(second, row));
      EXPECT_EQ(b.sheet->cellType(row, 0), types[second]) << first << " then " << second;
      EXPECT_EQ(b.sheet->isFormula(row, 0), second == 5);
    }
  }
}

TEST(SheetCells, WritingANumberOverAFormulaForgetsTheFormula) {
  OneSheet b;
  ASSERT_TRUE(b.sheet->writeFormulaNum(0, 0, u"1+2", 3));
  ASSERT_TRUE(b.sheet->writeNum(0, 0, 4));
  EXPECT_FALSE(b.sheet->isFormula(0, 0));
  EXPECT_EQ(b.sheet->readNum(0, 0), 4.0);
  EXPECT_EQ(b.sheet->readFormula(0, 0), nullptr);
}

TEST(SheetCells, BooleansAreTrueOnlyForOne) {
  const auto cell = [](int col, unsigned value, unsigned isError) {
    return Record{id::kBoolErr, BytesBuilder().u16(0).u16(static_cast<unsigned>(col)).u16(15).u8(value).u8(isError)};
  };
  const auto book = loaded(fileAround({cell(0, 1, 0), cell(1, 2, 0), cell(2, 42, 1)}));
  EXPECT_TRUE(book->getSheet(0)->readBool(0, 0));
  EXPECT_FALSE(book->getSheet(0)->readBool(0, 1));
  EXPECT_EQ(book->getSheet(0)->readError(0, 2), ErrorType::notAvailable);
}

TEST(SheetCells, AFormatGoesWithTheCell) {
  OneSheet b;
  Format* bold = b.book->addFormat();
  bold->setNumFormat(numformat::percent);
  ASSERT_TRUE(b.sheet->writeNum(0, 0, 0.5, bold));
  Format* read = nullptr;
  b.sheet->readNum(0, 0, &read);
  EXPECT_EQ(read, bold);
  ASSERT_TRUE(b.sheet->writeNum(0, 0, 0.7));
  EXPECT_EQ(b.sheet->cellFormat(0, 0), bold) << "a write without a format keeps the one that is there";
  ASSERT_TRUE(b.sheet->writeStr(0, 0, u"text"));
  EXPECT_EQ(b.sheet->cellFormat(0, 0), bold);
  EXPECT_EQ(reloaded(*b.book)->getSheet(0)->cellFormat(0, 0)->numFormat(), numformat::percent);
}

TEST(SheetCells, FormatsOfOtherBooksAreRefused) {
  OneSheet b, other;
  Format* foreign = other.book->addFormat();
  EXPECT_FALSE(b.sheet->writeNum(0, 0, 1, foreign));
  EXPECT_STREQ(b.book->errorMessage(), "specified format not found");
  b.sheet->setCellFormat(0, 0, foreign);
  EXPECT_STREQ(b.book->errorMessage(), "specified format is not found");
  b.sheet->setCellFormat(0, 0, nullptr);
  EXPECT_STREQ(b.book->errorMessage(), "specified format is not found");
  EXPECT_EQ(b.sheet->cellType(0, 0), CellType::empty);
}

TEST(SheetCells, SettingAFormatMakesAnAbsentCellABlank) {
  OneSheet b;
  Format* format = b.book->addFormat();
  b.sheet->setCellFormat(2, 3, format);
  EXPECT_STREQ(b.book->errorMessage(), "ok");
  EXPECT_EQ(b.sheet->cellType(2, 3), CellType::blank);
  b.sheet->writeNum(4, 4, 5);
  b.sheet->setCellFormat(4, 4, format);
  EXPECT_EQ(b.sheet->readNum(4, 4), 5.0);
  EXPECT_EQ(b.sheet->cellFormat(4, 4), format);
}

TEST(SheetCells, AbsentCellsHaveTheDefaultFormat) {
  OneSheet b;
  EXPECT_EQ(b.sheet->cellFormat(10, 10), b.book->format(15));
}

TEST(SheetCells, NewCellsTakeTheFormatOfTheirColumn) {
  const Record column{id::kColInfo, BytesBuilder().u16(2).u16(3).u16(2560).u16(18).u16(0).u16(0)};
  const auto book = loaded(fileAround({column}));
  Sheet* sheet = book->getSheet(0);
  EXPECT_EQ(sheet->cellFormat(0, 2), book->format(18));
  ASSERT_TRUE(sheet->writeNum(0, 3, 1));
  ASSERT_TRUE(sheet->writeStr(0, 4, u"x"));
  EXPECT_EQ(sheet->cellFormat(0, 3), book->format(18));
  EXPECT_EQ(sheet->cellFormat(0, 4), book->format(15));
}

TEST(SheetCells, ACellWhoseFormatIsPastTheTableHasNone) {
  const auto book = loaded(fileAround({{id::kBlank, BytesBuilder().u16(0).u16(0).u16(999)}}));
  EXPECT_EQ(book->getSheet(0)->cellFormat(0, 0), nullptr);
  EXPECT_STREQ(book->errorMessage(), "format not found");
}

TEST(SheetCells, AStringPastTheTableFailsItsRead) {
  const auto book = loaded(fileAround({{id::kLabelSst, BytesBuilder().u16(0).u16(0).u16(15).u32(5)}}));
  EXPECT_EQ(book->getSheet(0)->cellType(0, 0), CellType::string);
  EXPECT_EQ(book->getSheet(0)->readStr(0, 0), nullptr);
  EXPECT_STREQ(book->errorMessage(), "StrMap: sst is out of range (2)");
  EXPECT_FALSE(book->getSheet(0)->writeStr(0, 0, u"new"));
  EXPECT_STREQ(book->errorMessage(), "StrMap: sst is out of range (1)");
}

TEST(SheetCells, DatesAreNumbersUnderADateFormat) {
  OneSheet b;
  Format* date = b.book->addFormat();
  date->setNumFormat(numformat::date);
  Format* custom = b.book->addFormat();
  custom->setNumFormat(b.book->addCustomNumFormat(u"yyyy\\-mm"));
  Format* missing = b.book->addFormat();
  missing->setNumFormat(23);
  b.sheet->writeNum(0, 0, 46346, date);
  b.sheet->writeNum(0, 1, 46346, custom);
  b.sheet->writeNum(0, 2, 46346);
  b.sheet->writeStr(0, 3, u"text", date);
  b.sheet->writeNum(0, 4, 1, missing);
  EXPECT_TRUE(b.sheet->isDate(0, 0));
  EXPECT_TRUE(b.sheet->isDate(0, 1));
  EXPECT_FALSE(b.sheet->isDate(0, 2));
  EXPECT_FALSE(b.sheet->isDate(0, 3));
  EXPECT_FALSE(b.sheet->isDate(0, 4));
  EXPECT_STREQ(b.book->errorMessage(), "custom number format not found");
  EXPECT_FALSE(b.sheet->isDate(9, 9));
}

TEST(SheetCells, AFormulaWithAnEmptyTextKeepsItsStringRecord) {
  OneSheet b;
  ASSERT_TRUE(b.sheet->writeFormulaStr(0, 0, u"\"\"", nullptr));
  const auto records = sheetRecords(*b.book);
  ASSERT_NE(findRecord(records, id::kString), nullptr);
  const auto again = reloaded(*b.book);
  EXPECT_EQ(textOf(again->getSheet(0)->readStr(0, 0)), u"");
  EXPECT_NE(findRecord(sheetRecords(*again), id::kString), nullptr) << "an empty String record is no missing one";
}

TEST(SheetCells, CopiesCarryValueAndFormat) {
  OneSheet b;
  Format* format = b.book->addFormat();
  b.sheet->writeNum(0, 0, 2.5, format);
  b.sheet->writeStr(0, 1, u"text", format);
  b.sheet->writeBool(0, 2, true, format);
  b.sheet->writeBlank(0, 3, format);
  b.sheet->writeError(0, 4, ErrorType::num, format);
  b.sheet->writeFormulaStr(0, 5, u"A1&B1", u"2.5text", format);
  for (int col = 0; col < 6; ++col) ASSERT_TRUE(b.sheet->copyCell(0, col, 7, col)) << b.book->errorMessage();
  EXPECT_EQ(b.sheet->readNum(7, 0), 2.5);
  EXPECT_EQ(textOf(b.sheet->readStr(7, 1)), u"text");
  EXPECT_TRUE(b.sheet->readBool(7, 2));
  EXPECT_EQ(b.sheet->cellType(7, 3), CellType::blank);
  EXPECT_EQ(b.sheet->readError(7, 4), ErrorType::num);
  EXPECT_EQ(textOf(b.sheet->readFormula(7, 5)), u"A1&B1");
  EXPECT_EQ(textOf(b.sheet->readStr(7, 5)), u"2.5text");
  for (int col = 0; col < 6; ++col) EXPECT_EQ(b.sheet->cellFormat(7, col), format);
  EXPECT_FALSE(b.sheet->copyCell(50, 50, 0, 0));
  EXPECT_STREQ(b.book->errorMessage(), "empty cell");
}

TEST(SheetCells, ClearingForgetsTheCellsOfARange) {
  OneSheet b;
  for (int row = 0; row < 10; ++row) {
    for (int col = 0; col < 10; ++col) b.sheet->writeNum(row, col, row + col);
  }
  b.sheet->clear(2, 4, 3, 255);
  EXPECT_EQ(b.sheet->cellType(2, 3), CellType::empty);
  EXPECT_EQ(b.sheet->cellType(4, 9), CellType::empty);
  EXPECT_EQ(b.sheet->cellType(2, 2), CellType::number);
  EXPECT_EQ(b.sheet->cellType(5, 3), CellType::number);
  b.sheet->clear(0, 65536, 0, 0);
  EXPECT_STREQ(b.book->errorMessage(), "row must be in range 0-65535");
}

TEST(SheetCells, TheUsedRangeGrowsWithWritesAndNeverShrinks) {
  OneSheet b;
  EXPECT_EQ(b.sheet->firstRow(), 0);
  EXPECT_EQ(b.sheet->lastRow(), 0);
  b.sheet->writeNum(5, 7, 1);
  EXPECT_EQ(b.sheet->firstRow(), 5);
  EXPECT_EQ(b.sheet->lastRow(), 6);
  EXPECT_EQ(b.sheet->firstCol(), 7);
  EXPECT_EQ(b.sheet->lastCol(), 8);
  b.sheet->writeNum(2, 9, 1);
  EXPECT_EQ(b.sheet->firstRow(), 2);
  EXPECT_EQ(b.sheet->lastCol(), 10);
  b.sheet->clear(0, 65535, 0, 255);
  EXPECT_EQ(b.sheet->lastRow(), 6);
  EXPECT_EQ(reloaded(*b.book)->getSheet(0)->lastCol(), 0) << "a save takes the used range anew";
}

TEST(SheetCells, AddressesGoBothWays) {
  OneSheet b;
  EXPECT_EQ(textOf(b.sheet->rowColToAddr(6, 1, false, true)), u"B$7");
  EXPECT_EQ(b.sheet->rowColToAddr(65536, 0), nullptr);
  EXPECT_STREQ(b.book->errorMessage(), "row must be in range 0-65535");
  int row = -1, col = -1;
  bool rowRelative = true, colRelative = true;
  b.sheet->addrToRowCol(u"$C10", &row, &col, &rowRelative, &colRelative);
  EXPECT_EQ(row, 9);
  EXPECT_EQ(col, 2);
  EXPECT_TRUE(rowRelative);
  EXPECT_FALSE(colRelative);
  b.sheet->addrToRowCol(u"nonsense!", &row, &col);
  EXPECT_STREQ(b.book->errorMessage(), "invalid cell address");
  EXPECT_EQ(row, 9);
}

TEST(SheetCells, WhatXlsSheetsLackIsRefused) {
  OneSheet b;
  EXPECT_FALSE(b.sheet->addDataValidation(ValidationType::whole, ValidationOperator::between, 0, 0, 0, 0, u"1", u"2"));
  EXPECT_STREQ(b.book->errorMessage(), "function is not supported for xls files");
  EXPECT_FALSE(b.sheet->addDataValidationDouble(ValidationType::whole, ValidationOperator::between, 0, 0, 0, 0, 1, 2));
  EXPECT_STREQ(b.book->errorMessage(), "function is not supported for xls files");
  EXPECT_FALSE(b.sheet->removeDataValidations());
  EXPECT_STREQ(b.book->errorMessage(), "function is not supported for xls files");
  EXPECT_EQ(b.book->addPictureAsLink(u"x.png"), -1);
  EXPECT_STREQ(b.book->errorMessage(), "function is not supported for xls files");
  EXPECT_EQ(b.sheet->autoFilter(), nullptr);
}

}  // namespace
}  // namespace rubrica
