// The substream of a sheet: what a new sheet writes, in which order, and what a load keeps.
#include <algorithm>

#include "tests/biff/core/book_fixture.h"

namespace rubrica {
namespace {

using test::bof;
using test::Bytes;
using test::BytesBuilder;
using test::fileAround;
using test::fileOf;
using test::findRecord;
using test::idsOf;
using test::loadBytes;
using test::loaded;
using test::newBook;
using test::OneSheet;
using test::Record;
using test::savedRecords;
using test::substream;
using test::textOf;

std::vector<Record> resaved(const std::vector<Record>& sheetRecords) {
  return substream(savedRecords(*loaded(fileAround(sheetRecords))), 1);
}

std::string sheetLoadMessage(const std::vector<Record>& sheetRecords) {
  auto book = newBook();
  return loadBytes(*book, fileAround(sheetRecords)) ? "ok" : book->errorMessage();
}

TEST(SheetStreams, ANewSheetWritesItsRecordsInTheOrderOfTheFormat) {
  OneSheet b;
  const auto ids = idsOf(substream(savedRecords(*b.book), 1));
  EXPECT_EQ(ids, (std::vector<std::uint16_t>{523, 13, 12, 15, 17, 16, 95, 42, 43, 130, 128, 549, 129, 131, 132, 161, 85,
                                             512, 574}));
}

TEST(SheetStreams, ANewSheetWritesTheStatedValues) {
  OneSheet b;
  const auto records = substream(savedRecords(*b.book), 1);
  EXPECT_EQ(findRecord(records, 523)->bytes, Bytes(BytesBuilder().u32(0).u32(0).u32(3).u32(0)));
  EXPECT_EQ(findRecord(records, 12)->bytes, Bytes(BytesBuilder().u16(100)));
  EXPECT_EQ(findRecord(records, 549)->bytes, Bytes(BytesBuilder().u16(0).u16(255)));
  EXPECT_EQ(findRecord(records, 129)->bytes, Bytes(BytesBuilder().u16(0x04C1)));
  EXPECT_EQ(findRecord(records, 85)->bytes, Bytes(BytesBuilder().u16(8)));
  EXPECT_EQ(findRecord(records, 512)->bytes, Bytes(BytesBuilder().fill(14, 0)));
  double delta = 0;
  std::memcpy(&delta, findRecord(records, 16)->bytes.data(), sizeof(delta));
  EXPECT_EQ(delta, 0.001);
}

TEST(SheetStreams, MultipleRecordsBecomeOneRecordACell) {
  const Record mulRk{id::kMulRk,
                     BytesBuilder().u16(4).u16(2).u16(15).u32(0x3FF00000).u16(16).u32((7u << 2) | 2).u16(3)};
  const Record mulBlank{id::kMulBlank, BytesBuilder().u16(5).u16(0).u16(15).u16(16).u16(17).u16(2)};
  const auto book = loaded(fileAround({mulRk, mulBlank}));
  EXPECT_EQ(book->getSheet(0)->readNum(4, 2), 1.0);
  EXPECT_EQ(book->getSheet(0)->readNum(4, 3), 7.0);
  EXPECT_EQ(book->getSheet(0)->cellFormat(5, 1), book->format(16));
  std::vector<Record> cells;
  for (const Record& record : substream(savedRecords(*book), 1)) {
    if (record.recordId == id::kRk || record.recordId == id::kBlank) cells.push_back(record);
  }
  EXPECT_EQ(cells, (std::vector<Record>{{id::kRk, BytesBuilder().u16(4).u16(2).u16(15).u32(0x3FF00000)},
                                        {id::kRk, BytesBuilder().u16(4).u16(3).u16(16).u32((7u << 2) | 2)},
                                        {id::kBlank, BytesBuilder().u16(5).u16(0).u16(15)},
                                        {id::kBlank, BytesBuilder().u16(5).u16(1).u16(16)},
                                        {id::kBlank, BytesBuilder().u16(5).u16(2).u16(17)}}));
}

TEST(SheetStreams, RecordsOfAWrongSizeFailWithTheirName) {
  const struct {
    std::uint16_t recordId;
    std::size_t size;
    const char* name;
  } wrong[] = {{12, 3, "CalcCount"},
               {13, 1, "CalcMode"},
               {15, 1, "CalcRefMode"},
               {16, 7, "CalcDelta"},
               {17, 3, "CalcIter"},
               {95, 1, "CalcSaveRecalc"},
               {42, 1, "PrintRowCol"},
               {43, 3, "PrintGrid"},
               {130, 3, "GridSet"},
               {128, 7, "Guts"},
               {549, 3, "DefaultRowHeight"},
               {129, 3, "WsBool"},
               {85, 3, "DefColWidth"},
               {94, 1, "Uncalced"},
               {520, 15, "Row"},
               {520, 17, "Row"},
               {253, 9, "LabelSst"},
               {253, 11, "LabelSst"},
               {513, 5, "Blank"},
               {513, 7, "Blank"},
               {515, 13, "Number"},
               {515, 15, "Number"},
               {515, 20, "Number"},
               {517, 7, "BoolErr"},
               {517, 9, "BoolErr"},
               {638, 9, "RK"},
               {638, 11, "RK"},
               {189, 5, "MulRk"},
               {190, 5, "MulBlank"},
               {215, 3, "DBCell"},
               {215, 5, "DBCell"},
               {512, 10, "Dimensions"},
               {512, 15, "Dimensions"},
               {6, 21, "Formula"},
               {125, 9, "ColInfo"},
               {160, 3, "Scl"},
               {574, 9, "Window2"},
               {65, 8, "Pane"},
               {18, 1, "Protect"},
               {19, 3, "Password"},
               {229, 1, "MergeCells"}};
  for (const auto& [recordId, size, name] : wrong) {
    EXPECT_EQ(sheetLoadMessage({{recordId, BytesBuilder().fill(size, 0)}}), std::string(name) + " size is incorrect");
  }
  EXPECT_EQ(sheetLoadMessage({{161, BytesBuilder().fill(33, 0)}}), "error in PageSetup");
}

TEST(SheetStreams, NumbersMayCarryExtraWords) {
  for (const std::size_t extra : {0u, 2u, 4u}) {
    const Record number{id::kNumber, BytesBuilder().u16(0).u16(0).u16(15).u32(0).u32(0x40000000).fill(extra, 9)};
    EXPECT_EQ(loaded(fileAround({number}))->getSheet(0)->readNum(0, 0), 2.0);
  }
}

TEST(SheetStreams, ACellPastTheLastColumnFailsTheLoad) {
  EXPECT_EQ(sheetLoadMessage({{id::kBlank, BytesBuilder().u16(0).u16(256).u16(15)}}),
            "SheetIndex: col can't be more than 255");
}

TEST(SheetStreams, UnknownRecordsSurviveBehindTheLinksAndPrinterSettingsGo) {
  const Record unknown{0x0999, BytesBuilder().text("kept")}, printer{77, BytesBuilder().text("printer")},
      more{id::kContinue, BytesBuilder().text("more")};
  const auto records = resaved({unknown, printer, more});
  EXPECT_EQ(*findRecord(records, 0x0999), unknown);
  EXPECT_EQ(findRecord(records, 77), nullptr);
  EXPECT_EQ(*findRecord(records, id::kContinue), more) << "what follows printer settings stays";
}

TEST(SheetStreams, RawMembersReturnToTheirPlaces) {
  std::vector<Record> raw;
  for (const int recordId : {80, 144, 157, 442, 450, 2164, 2187, 2204}) {
    raw.push_back(
        {static_cast<std::uint16_t>(recordId), BytesBuilder().u16(static_cast<unsigned>(recordId)).text("raw")});
  }
  const auto records = resaved(raw);
  for (const Record& record : raw) {
    ASSERT_NE(findRecord(records, record.recordId), nullptr) << record.recordId;
    EXPECT_EQ(*findRecord(records, record.recordId), record);
  }
  EXPECT_EQ(idsOf(records),
            (std::vector<std::uint16_t>{523, 13,  12,   15, 17,  16,   95,  42,  43,  130, 128, 549,  129, 131,
                                        132, 161, 2204, 85, 144, 2164, 157, 512, 450, 80,  574, 2187, 442}));
}

TEST(SheetStreams, IndexKeepsItsOldNumbers) {
  const Record index{523, BytesBuilder().u32(0).u32(1).u32(77).u32(5).u32(1234).u32(5678)};
  const auto book = loaded(fileAround({index}));
  book->getSheet(0)->writeNum(500, 5, 1);
  const auto records = substream(savedRecords(*book), 1);
  EXPECT_EQ(*findRecord(records, 523), index);
}

TEST(SheetStreams, DbCellsAreNotWritten) {
  EXPECT_EQ(findRecord(resaved({{215, BytesBuilder().u32(5).u16(1)}}), 215), nullptr);
}

TEST(SheetStreams, UncalcedSurvives) {
  const Record uncalced{94, BytesBuilder().u16(0)};
  const auto records = resaved({uncalced});
  EXPECT_EQ(records[0], uncalced);
}

TEST(SheetStreams, RowsWithoutARecordGetOne) {
  const Record row{520, BytesBuilder().u16(9).u16(0).u16(1).u16(300).u16(0).u16(0).u32(0x000F0140)};
  const auto book = loaded(fileAround({row}));
  book->getSheet(0)->writeNum(2, 3, 1);
  book->getSheet(0)->writeNum(2, 6, 1);
  const auto records = substream(savedRecords(*book), 1);
  std::vector<Record> rows;
  for (const Record& record : records) {
    if (record.recordId == id::kRow) rows.push_back(record);
  }
  EXPECT_EQ(rows,
            (std::vector<Record>{{520, BytesBuilder().u16(9).u16(0).u16(0).u16(300).u16(0).u16(0).u32(0x000F0140)},
                                 {520, BytesBuilder().u16(2).u16(3).u16(7).u16(255).u16(0).u16(0).u32(0x000F0100)}}));
  EXPECT_EQ(findRecord(records, 512)->bytes, Bytes(BytesBuilder().u32(2).u32(10).u16(3).u16(7).u16(0)))
      << "rows with a record of their own count as used";
}

TEST(SheetStreams, MergedRangesWidenTheUsedRange) {
  const Record merge{id::kMergeCells, BytesBuilder().u16(1).u16(3).u16(5).u16(2).u16(8)};
  const auto records = resaved({merge});
  EXPECT_EQ(*findRecord(records, id::kMergeCells), merge);
  EXPECT_EQ(findRecord(records, 512)->bytes, Bytes(BytesBuilder().u32(3).u32(6).u16(2).u16(9).u16(0)));
  EXPECT_EQ(sheetLoadMessage({{id::kMergeCells, BytesBuilder().u16(2).u16(3).u16(5).u16(2).u16(8)}}),
            "MergeCells size is incorrect");
}

TEST(SheetStreams, LabelsStayLabels) {
  const Record label{id::kLabel, BytesBuilder().u16(1).u16(2).u16(15).u16(3).u8(0).text("abc")};
  const auto book = loaded(fileAround({label}));
  EXPECT_EQ(textOf(book->getSheet(0)->readStr(1, 2)), u"abc");
  EXPECT_EQ(*findRecord(substream(savedRecords(*book), 1), id::kLabel), label);
}

TEST(SheetStreams, ColumnsAreWrittenInOrder) {
  const auto column = [](unsigned first) {
    return Record{id::kColInfo, BytesBuilder().u16(first).u16(first).u16(2560).u16(15).u16(2).u16(0)};
  };
  std::vector<Record> columns;
  for (const Record& record : resaved({column(9), column(2), column(5)})) {
    if (record.recordId == id::kColInfo) columns.push_back(record);
  }
  EXPECT_EQ(columns, (std::vector<Record>{column(2), column(5), column(9)}));
}

TEST(SheetStreams, AChartSheetSurvivesByteForByte) {
  auto records = test::bookAround({});
  records.pop_back();
  records.pop_back();
  const std::vector<Record> chart = {{id::kBof, bof(32)}, {0x1033, {}},
                                     {id::kBof, bof(32)}, {0x1002, BytesBuilder().text("inner")},
                                     {id::kEof, {}},      {0x1034, BytesBuilder().fill(40, 7)},
                                     {id::kEof, {}}};
  records.insert(records.end(), chart.begin(), chart.end());
  const auto book = loaded(fileOf(records));
  EXPECT_EQ(book->sheetType(0), SheetType::chart);
  const auto saved = savedRecords(*book);
  const std::vector<Record> tail(saved.end() - static_cast<std::ptrdiff_t>(chart.size()), saved.end());
  EXPECT_EQ(tail, chart);
}

TEST(SheetStreams, FromAnEmbeddedChartOnASheetIsAListOfRecords) {
  const Record number{id::kNumber, BytesBuilder().u16(0).u16(0).u16(15).u32(0).u32(0x40000000)};
  const Record before{0x0999, BytesBuilder().text("before the chart")};
  const std::vector<Record> chart = {{id::kBof, bof(32)}, {0x1033, {}}, {id::kEof, {}}};
  auto sheet = chart;
  sheet.insert(sheet.begin(), {number, before});
  sheet.push_back({id::kWindow2, BytesBuilder().fill(18, 0)});
  const auto book = loaded(fileAround(sheet));
  EXPECT_EQ(book->getSheet(0)->readNum(0, 0), 2.0) << "cells before the chart are read";
  EXPECT_EQ(book->sheetType(0), SheetType::chart);
  const auto saved = savedRecords(*book);
  const std::vector<Record> tail(saved.end() - 3, saved.end());
  EXPECT_EQ(tail, chart);
  EXPECT_EQ(saved[saved.size() - 4].recordId, id::kEof) << "the substream begins with the chart's BOF";
  EXPECT_EQ(findRecord(saved, id::kBoundSheet)->bytes[5], std::byte{2}) << "and is listed as a chart";
}

TEST(SheetStreams, ASheetBehindOneWithAnEmbeddedChartKeepsItsCells) {
  auto records = test::bookAround({{id::kBof, bof(32)}, {id::kEof, {}}, {id::kWindow2, BytesBuilder().fill(18, 0)}});
  const auto bound =
      std::find_if(records.begin(), records.end(), [](const Record& r) { return r.recordId == id::kBoundSheet; });
  records.insert(bound, *bound);
  const auto second = std::vector<Record>{
      {id::kBof, bof(16)}, {id::kNumber, BytesBuilder().u16(0).u16(0).u16(15).u32(0).u32(0x40000000)}, {id::kEof, {}}};
  records.insert(records.end(), second.begin(), second.end());
  const auto book = loaded(fileOf(records));
  ASSERT_EQ(book->getSheet(1)->readNum(0, 0), 2.0);
  EXPECT_EQ(test::reloaded(*book)->getSheet(1)->readNum(0, 0), 2.0);
}

TEST(SheetStreams, SheetsOfAnUnknownKindTellSo) {
  auto records = test::bookAround({});
  records[records.size() - 2].bytes = bof(64);
  const auto book = loaded(fileOf(records));
  EXPECT_EQ(book->sheetType(0), SheetType::unknown);
}

TEST(SheetStreams, PageSetupSurvives) {
  OneSheet b;
  EXPECT_EQ(b.sheet->marginTop(), 1.0);
  EXPECT_EQ(b.sheet->marginLeft(), 0.75);
  EXPECT_EQ(findRecord(substream(savedRecords(*b.book), 1), id::kTopMargin), nullptr);
  b.sheet->setMarginTop(1.0);
  EXPECT_NE(findRecord(substream(savedRecords(*b.book), 1), id::kTopMargin), nullptr);
  b.sheet->setHeader(u"&LLeft", 0.3);
  b.sheet->setLandscape();
  b.sheet->setPaper(kPaperA4);
  b.sheet->setZoom(150);
  b.sheet->setPrintFit(1, 2);
  b.sheet->setDisplayGridlines(false);
  const auto again = test::reloaded(*b.book);
  Sheet* sheet = again->getSheet(0);
  EXPECT_EQ(textOf(sheet->header()), u"&LLeft");
  EXPECT_EQ(sheet->headerMargin(), 0.3);
  EXPECT_TRUE(sheet->landscape());
  EXPECT_EQ(sheet->paper(), kPaperA4);
  EXPECT_EQ(sheet->zoom(), 150);
  int wide = 0, tall = 0;
  EXPECT_TRUE(sheet->getPrintFit(&wide, &tall));
  EXPECT_EQ(wide * 10 + tall, 12);
  EXPECT_FALSE(sheet->displayGridlines());
  sheet->setPrintZoom(50);
  EXPECT_FALSE(sheet->getPrintFit(nullptr, nullptr));
}

}  // namespace
}  // namespace rubrica
