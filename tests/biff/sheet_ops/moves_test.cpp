#include "biff/drawing_anchors.h"
#include "tests/biff/sheet_ops/sheet_fixture.h"

namespace rubrica::test {
namespace {

using Range = std::vector<int>;

Range mergeAt(TestBook& book, int index) {
  Range r(4);
  EXPECT_TRUE(book.sheet->merge(index, &r[0], &r[1], &r[2], &r[3])) << book.message();
  return r;
}

Range linkRange(TestBook& book, int index) {
  Range r(4);
  EXPECT_NE(book.sheet->hyperlink(index, &r[0], &r[1], &r[2], &r[3]), nullptr) << book.message();
  return r;
}

TEST(InsertedRows, PushCellsDown) {
  TestBook book;
  book.sheet->writeNum(0, 0, 1);
  book.sheet->writeStr(1, 1, u"text");
  book.sheet->writeBool(2, 255, true);
  EXPECT_TRUE(book.sheet->insertRow(1, 2));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.sheet->readNum(0, 0), 1);
  EXPECT_EQ(book.sheet->cellType(1, 1), CellType::empty);
  EXPECT_EQ(book.str(3, 1), u"text");
  EXPECT_EQ(book.sheet->cellType(4, 255), CellType::boolean);
  EXPECT_EQ(book.sheet->lastRow(), 5);
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.str(3, 1), u"text");
  EXPECT_EQ(book.sheet->cellType(2, 255), CellType::empty);
}

TEST(InsertedRows, DropWhatLeavesTheSheet) {
  TestBook book;
  book.sheet->writeNum(65534, 0, 1);
  book.sheet->writeNum(65535, 0, 2);
  EXPECT_TRUE(book.sheet->insertRow(0, 0));
  EXPECT_EQ(book.sheet->readNum(65535, 0), 1);
  EXPECT_EQ(book.sheet->lastRow(), 65536);
  EXPECT_TRUE(book.sheet->insertRow(0, 65535));
  EXPECT_EQ(book.sheet->cellType(65535, 0), CellType::empty);
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.sheet->lastRow(), 0);
}

TEST(RemovedRows, PullCellsUp) {
  TestBook book;
  for (int row = 0; row < 5; ++row) book.sheet->writeNum(row, 0, row);
  EXPECT_TRUE(book.sheet->removeRow(1, 2));
  EXPECT_EQ(book.sheet->readNum(0, 0), 0);
  EXPECT_EQ(book.sheet->readNum(1, 0), 3);
  EXPECT_EQ(book.sheet->readNum(2, 0), 4);
  EXPECT_EQ(book.sheet->cellType(3, 0), CellType::empty);
  EXPECT_EQ(book.sheet->lastRow(), 3);
  EXPECT_TRUE(book.sheet->removeRow(0, 65535));
  EXPECT_EQ(book.sheet->cellType(0, 0), CellType::empty);
  EXPECT_EQ(book.sheet->lastRow(), 0);
}

TEST(InsertedColumns, PushCellsRight) {
  TestBook book;
  book.sheet->writeNum(0, 0, 1);
  book.sheet->writeStr(0, 1, u"text");
  book.sheet->writeNum(3, 254, 2);
  book.sheet->writeNum(3, 255, 3);
  EXPECT_TRUE(book.sheet->insertCol(1, 1));
  EXPECT_EQ(book.sheet->readNum(0, 0), 1);
  EXPECT_EQ(book.sheet->cellType(0, 1), CellType::empty);
  EXPECT_EQ(book.str(0, 2), u"text");
  EXPECT_EQ(book.sheet->readNum(3, 255), 2);
  EXPECT_EQ(book.sheet->cellType(3, 254), CellType::empty);
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.str(0, 2), u"text");
}

TEST(RemovedColumns, PullCellsLeft) {
  TestBook book;
  for (int col = 0; col < 5; ++col) book.sheet->writeNum(2, col, col);
  EXPECT_TRUE(book.sheet->removeCol(1, 2));
  EXPECT_EQ(book.sheet->readNum(2, 0), 0);
  EXPECT_EQ(book.sheet->readNum(2, 1), 3);
  EXPECT_EQ(book.sheet->readNum(2, 2), 4);
  EXPECT_EQ(book.sheet->cellType(2, 3), CellType::empty);
  EXPECT_EQ(book.sheet->lastCol(), 3);
}

TEST(MovedLines, WrongRangesMoveNothing) {
  TestBook book;
  book.sheet->writeNum(0, 0, 1);
  using Operation = bool (Sheet::*)(int, int, bool);
  for (const Operation op : {&Sheet::insertRow, &Sheet::removeRow}) {
    EXPECT_REFUSED(book, (book.sheet->*op)(-1, 0, true), "rowFirst must be in range 0-65535");
    EXPECT_REFUSED(book, (book.sheet->*op)(65536, 65536, true), "rowFirst must be in range 0-65535");
    EXPECT_REFUSED(book, (book.sheet->*op)(0, 65536, true), "rowLast must be in range 0-65535");
    EXPECT_REFUSED(book, (book.sheet->*op)(1, 0, true), "rowLast must be greater than or equal to rowFirst");
  }
  for (const Operation op : {&Sheet::insertCol, &Sheet::removeCol}) {
    EXPECT_REFUSED(book, (book.sheet->*op)(-1, 0, true), "colFirst must be in range 0-255");
    EXPECT_REFUSED(book, (book.sheet->*op)(256, 256, true), "colFirst must be in range 0-255");
    EXPECT_REFUSED(book, (book.sheet->*op)(0, 256, true), "colLast must be in range 0-255");
    EXPECT_REFUSED(book, (book.sheet->*op)(1, 0, true), "colLast must be greater than or equal to colFirst");
  }
  EXPECT_EQ(book.sheet->readNum(0, 0), 1);
}

TEST(MovedColumns, LeaveTextWithinCellRecordsWhereItIs) {
  TestBook book;
  book.sheet->writeNum(0, 0, 1);
  const auto label = [](unsigned row, unsigned col) -> Record {
    return {id::kLabel, BytesBuilder().u16(row).u16(col).u16(15).u16(2).u8(0).text("hi")};
  };
  ASSERT_TRUE(book.reload({label(0, 5), label(1, 2)}));
  book.sheet->writeNum(0, 4, 7);
  EXPECT_TRUE(book.sheet->insertCol(1, 1));
  EXPECT_EQ(book.str(1, 2), u"hi");
  EXPECT_EQ(book.sheet->readNum(0, 5), 7) << "a moved cell takes the place of a text";
  EXPECT_TRUE(book.sheet->removeCol(1, 1));
  EXPECT_EQ(book.str(1, 2), u"hi");
  EXPECT_TRUE(book.sheet->insertRow(0, 0));
  EXPECT_EQ(book.str(2, 2), u"hi");
}

TEST(MovedRows, KeepTheirHeights) {
  TestBook book;
  book.sheet->setRow(3, 30);
  book.sheet->setRow(65535, 40, nullptr, true);
  EXPECT_TRUE(book.sheet->insertRow(3, 4));
  EXPECT_EQ(book.sheet->rowHeight(3), 12.75);
  EXPECT_EQ(book.sheet->rowHeight(5), 30);
  EXPECT_FALSE(book.sheet->rowHidden(65535));
  EXPECT_TRUE(book.sheet->removeRow(0, 0));
  EXPECT_EQ(book.sheet->rowHeight(4), 30);
  EXPECT_TRUE(book.sheet->removeRow(4, 4));
  EXPECT_EQ(book.sheet->rowHeight(4), 12.75);
  EXPECT_TRUE(book.saved(id::kRow).empty());
}

TEST(MovedColumns, TakeWidthAndHidingAlong) {
  TestBook book;
  Format* format = book.book->addFormat(nullptr);
  book.sheet->setCol(2, 2, 20, format);
  book.sheet->setCol(3, 3, 30, nullptr, true);
  EXPECT_TRUE(book.sheet->insertCol(2, 3));
  EXPECT_EQ(book.sheet->colWidth(2), 8.43);
  EXPECT_EQ(book.sheet->colWidth(3), 8.43);
  EXPECT_FALSE(book.sheet->colHidden(3));
  EXPECT_EQ(book.sheet->colWidth(4), 20);
  EXPECT_TRUE(book.sheet->colHidden(5));
  EXPECT_EQ(book.sheet->colWidth(6), 8);
  EXPECT_EQ(book.sheet->cellFormat(0, 2), format) << "formats stay with their columns";
  EXPECT_EQ(book.sheet->cellFormat(0, 4), book.book->format(15));
  EXPECT_TRUE(book.sheet->removeCol(2, 3));
  EXPECT_EQ(book.sheet->colWidth(2), 20);
  EXPECT_TRUE(book.sheet->colHidden(3));
  EXPECT_TRUE(book.sheet->setColHidden(3, false));
  EXPECT_EQ(book.sheet->colWidth(3), 30);
  EXPECT_EQ(book.sheet->colWidth(4), 8);
  EXPECT_EQ(book.sheet->colWidth(5), 8);
}

TEST(MovedColumns, TheLastColumnsComeBackWithTheDefaultWidth) {
  TestBook book;
  book.sheet->setCol(254, 255, 20);
  EXPECT_TRUE(book.sheet->removeCol(0, 0));
  EXPECT_EQ(book.sheet->colWidth(253), 20);
  EXPECT_EQ(book.sheet->colWidth(254), 20);
  EXPECT_EQ(book.sheet->colWidth(255), 8);
  EXPECT_TRUE(book.sheet->removeCol(0, 255));
  EXPECT_EQ(book.sheet->colWidth(253), 8);
}

TEST(MovedMerges, GoWithTheirCells) {
  TestBook book;
  book.sheet->setMerge(5, 6, 5, 6);
  EXPECT_TRUE(book.sheet->insertRow(5, 6));
  EXPECT_EQ(mergeAt(book, 0), (Range{7, 8, 5, 6}));
  EXPECT_TRUE(book.sheet->insertCol(0, 0));
  EXPECT_EQ(mergeAt(book, 0), (Range{7, 8, 6, 7}));
  EXPECT_TRUE(book.sheet->insertRow(9, 9));
  EXPECT_EQ(mergeAt(book, 0), (Range{7, 8, 6, 7}));
  EXPECT_TRUE(book.sheet->removeRow(0, 6));
  EXPECT_TRUE(book.sheet->removeCol(0, 5));
  EXPECT_EQ(mergeAt(book, 0), (Range{0, 1, 0, 1}));
}

TEST(MovedMerges, AnInsertionDividesThem) {
  TestBook book;
  book.sheet->setMerge(0, 3, 0, 3);
  EXPECT_TRUE(book.sheet->insertCol(2, 4));
  ASSERT_EQ(book.sheet->mergeSize(), 2);
  EXPECT_EQ(mergeAt(book, 0), (Range{0, 3, 0, 1}));
  EXPECT_EQ(mergeAt(book, 1), (Range{0, 3, 5, 6}));
  EXPECT_TRUE(book.sheet->insertRow(3, 3));
  ASSERT_EQ(book.sheet->mergeSize(), 4);
  EXPECT_EQ(mergeAt(book, 0), (Range{0, 2, 0, 1}));
  EXPECT_EQ(mergeAt(book, 1), (Range{0, 2, 5, 6}));
  EXPECT_EQ(mergeAt(book, 2), (Range{4, 4, 0, 1}));
  EXPECT_EQ(mergeAt(book, 3), (Range{4, 4, 5, 6}));
}

TEST(MovedMerges, AreCutAtTheEdgeOfTheSheet) {
  TestBook book;
  book.sheet->setMerge(0, 0, 0, 255);
  book.sheet->setMerge(1, 1, 250, 255);
  book.sheet->setMerge(2, 2, 254, 255);
  EXPECT_TRUE(book.sheet->insertCol(3, 4));
  ASSERT_EQ(book.sheet->mergeSize(), 3);
  EXPECT_EQ(mergeAt(book, 0), (Range{0, 0, 0, 2}));
  EXPECT_EQ(mergeAt(book, 1), (Range{1, 1, 252, 255}));
  EXPECT_EQ(mergeAt(book, 2), (Range{0, 0, 5, 255}));
  EXPECT_TRUE(book.sheet->insertCol(4, 255));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.sheet->mergeSize(), 1);
}

TEST(MovedMerges, LoseWhatIsRemoved) {
  TestBook book;
  book.sheet->setMerge(0, 9, 0, 0);
  book.sheet->setMerge(3, 4, 2, 3);
  EXPECT_TRUE(book.sheet->removeRow(3, 5));
  ASSERT_EQ(book.sheet->mergeSize(), 1);
  EXPECT_EQ(mergeAt(book, 0), (Range{0, 6, 0, 0}));
}

TEST(MovedBreaks, GoWithTheirRowsAndColumns) {
  TestBook book;
  book.sheet->setHorzPageBreak(3);
  book.sheet->setHorzPageBreak(10);
  book.sheet->setHorzPageBreak(65535);
  book.sheet->setVertPageBreak(4);
  EXPECT_TRUE(book.sheet->insertRow(5, 6));
  EXPECT_EQ(book.sheet->getHorzPageBreakSize(), 2);
  EXPECT_EQ(book.sheet->getHorzPageBreak(0), 3);
  EXPECT_EQ(book.sheet->getHorzPageBreak(1), 12);
  EXPECT_EQ(book.sheet->getVertPageBreak(0), 4);
  EXPECT_TRUE(book.sheet->removeRow(3, 3));
  EXPECT_EQ(book.sheet->getHorzPageBreakSize(), 1);
  EXPECT_EQ(book.sheet->getHorzPageBreak(0), 11);
  EXPECT_TRUE(book.sheet->removeCol(0, 1));
  EXPECT_EQ(book.sheet->getVertPageBreak(0), 2);
  EXPECT_EQ(book.saved(id::kVertPageBreaks), std::vector<Bytes>{BytesBuilder().u16(1).u16(2).u16(0).u16(65535)});
}

TEST(MovedLinks, GoWithTheirCells) {
  TestBook book;
  book.sheet->addHyperlink(u"http://example.org", 2, 5, 1, 1);
  book.sheet->addHyperlink(u"http://example.org/2", 8, 8, 1, 1);
  EXPECT_TRUE(book.sheet->insertRow(4, 4));
  EXPECT_EQ(linkRange(book, 0), (Range{2, 6, 1, 1}));
  EXPECT_EQ(linkRange(book, 1), (Range{9, 9, 1, 1}));
  EXPECT_TRUE(book.sheet->removeRow(2, 6));
  ASSERT_EQ(book.sheet->hyperlinkSize(), 1);
  EXPECT_EQ(linkRange(book, 0), (Range{4, 4, 1, 1}));
  EXPECT_TRUE(book.sheet->insertCol(0, 254));
  EXPECT_EQ(book.sheet->hyperlinkSize(), 0);
}

TEST(MovedMarks, GoWithTheirCells) {
  TestBook book;
  book.sheet->addIgnoredError(4, 0, 5, 0, 4);
  EXPECT_TRUE(book.sheet->insertRow(0, 1));
  EXPECT_REFUSED(book, book.sheet->addIgnoredError(6, 0, 7, 0, 4), "ignored error already exists");
  EXPECT_TRUE(book.sheet->removeRow(6, 7));
  EXPECT_TRUE(book.saved(id::kFeat).empty());
  EXPECT_TRUE(book.sheet->addIgnoredError(6, 0, 7, 0, 4));
}

Record note(unsigned row, unsigned col) {
  return {id::kNote, BytesBuilder().u16(row).u16(col).u16(0).u16(1).u16(1).u8(0).text("A").u8(0)};
}

TEST(MovedNotes, GoWithTheirCells) {
  TestBook book;
  ASSERT_TRUE(book.reload({note(3, 1), note(65535, 2), note(7, 3)}));
  EXPECT_TRUE(book.sheet->insertRow(2, 3));
  EXPECT_EQ(book.saved(id::kNote), (std::vector<Bytes>{note(5, 1).bytes, note(9, 3).bytes}));
  EXPECT_TRUE(book.sheet->removeRow(5, 5));
  EXPECT_EQ(book.saved(id::kNote), std::vector<Bytes>{note(8, 3).bytes});
  EXPECT_TRUE(book.sheet->insertCol(0, 1));
  EXPECT_EQ(book.saved(id::kNote), std::vector<Bytes>{note(8, 5).bytes});
}

using Anchor = officeart::CellAnchor;

Anchor drawing(unsigned flags, unsigned col1, unsigned dx1, unsigned row1, unsigned dy1, unsigned col2, unsigned dx2,
               unsigned row2, unsigned dy2) {
  const auto word = [](unsigned value) { return static_cast<std::uint16_t>(value); };
  return {word(flags), word(col1), word(dx1), word(row1), word(dy1), word(col2), word(dx2), word(row2), word(dy2)};
}

Anchor movedDrawing(Anchor anchor, const LineMove& move, bool isComment = false) {
  const Anchor before = anchor;
  const bool changed = moveAnchor(anchor, isComment, move);
  EXPECT_EQ(changed, anchor != before);
  return anchor;
}

TEST(MovedDrawings, GoWithTheirCells) {
  const LineMove inserted(kXlsGrid, LineMove::Axis::rows, LineMove::Kind::insert, 5, 6);
  EXPECT_EQ(movedDrawing(drawing(0, 1, 10, 5, 20, 3, 30, 8, 40), inserted), drawing(0, 1, 10, 7, 20, 3, 30, 10, 40));
  EXPECT_EQ(movedDrawing(drawing(0, 1, 10, 3, 20, 3, 30, 8, 40), inserted), drawing(0, 1, 10, 3, 20, 3, 30, 10, 40))
      << "one that sizes with its cells grows";
  EXPECT_EQ(movedDrawing(drawing(2, 1, 10, 3, 20, 3, 30, 8, 40), inserted), drawing(2, 1, 10, 3, 20, 3, 30, 8, 40))
      << "one that only moves keeps its extent";
  EXPECT_EQ(movedDrawing(drawing(3, 1, 10, 6, 20, 3, 30, 8, 40), inserted), drawing(3, 1, 10, 6, 20, 3, 30, 8, 40))
      << "one that is fixed to the page stays";
  const LineMove columns(kXlsGrid, LineMove::Axis::columns, LineMove::Kind::insert, 0, 9);
  EXPECT_EQ(movedDrawing(drawing(0, 1, 10, 5, 20, 250, 30, 8, 40), columns), drawing(0, 11, 10, 5, 20, 255, 30, 8, 40));
}

TEST(MovedDrawings, OnRemovedCellsGoToTheNext) {
  const LineMove removed(kXlsGrid, LineMove::Axis::rows, LineMove::Kind::remove, 5, 6);
  EXPECT_EQ(movedDrawing(drawing(0, 1, 10, 6, 20, 3, 30, 9, 40), removed), drawing(0, 1, 10, 5, 0, 3, 30, 7, 40));
  EXPECT_EQ(movedDrawing(drawing(2, 1, 10, 6, 20, 3, 30, 9, 40), removed), drawing(2, 1, 10, 5, 0, 3, 30, 8, 40));
}

TEST(MovedDrawings, ACommentsBoxGoesWithItsCellThoughItIsFixedToThePage) {
  const LineMove inserted(kXlsGrid, LineMove::Axis::rows, LineMove::Kind::insert, 5, 6);
  EXPECT_EQ(movedDrawing(drawing(3, 1, 10, 6, 20, 3, 30, 8, 40), inserted, true),
            drawing(3, 1, 10, 8, 20, 3, 30, 10, 40));
}

TEST(MovedFormulas, KeepTheirReferences) {
  TestBook book;
  book.sheet->writeFormulaNum(2, 0, u"A1+$B$2", 1);
  EXPECT_TRUE(book.sheet->insertRow(0, 0));
  EXPECT_EQ(std::u16string(book.sheet->readFormula(3, 0)), u"A1+$B$2");
  EXPECT_TRUE(book.sheet->insertCol(0, 0));
  EXPECT_EQ(std::u16string(book.sheet->readFormula(3, 1)), u"A1+$B$2");
}

Record sharedMember(unsigned row, unsigned col) {
  return {id::kFormula, BytesBuilder().u16(row).u16(col).u16(15).fill(8, 0).u16(8).u32(0).u16(5).u8(1).u16(1).u16(1)};
}

// B2:B4 share "the cell to the left": an offset of no rows and -1 columns.
TEST(MovedFormulas, ThatShareADefinitionOfOffsetsKeepTheirReferencesToo) {
  TestBook book;
  const Record definition = {id::kShrFmla,
                             BytesBuilder().u16(1).u16(3).u8(1).u8(1).u8(0).u8(3).u16(5).u8(0x2C).u16(0).u16(0xC0FF)};
  ASSERT_TRUE(book.reload({sharedMember(1, 1), definition, sharedMember(2, 1), sharedMember(3, 1)})) << book.message();
  ASSERT_EQ(std::u16string(book.sheet->readFormula(3, 1)), u"A4");
  EXPECT_TRUE(book.sheet->insertRow(2, 2));
  EXPECT_EQ(std::u16string(book.sheet->readFormula(1, 1)), u"A2");
  EXPECT_EQ(std::u16string(book.sheet->readFormula(3, 1)), u"A3");
  EXPECT_EQ(std::u16string(book.sheet->readFormula(4, 1)), u"A4");
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(std::u16string(book.sheet->readFormula(1, 1)), u"A2");
  EXPECT_EQ(std::u16string(book.sheet->readFormula(4, 1)), u"A4");
}

TEST(MovedFormulas, AnArrayFormulaTakesItsRangeAlong) {
  TestBook book;
  const Record definition = {id::kArray,
                             BytesBuilder().u16(1).u16(2).u8(1).u8(1).u16(0).u32(0).u16(5).u8(0x44).u16(0).u16(0xC000)};
  ASSERT_TRUE(book.reload({sharedMember(1, 1), definition, sharedMember(2, 1)})) << book.message();
  EXPECT_TRUE(book.sheet->removeRow(1, 1));
  EXPECT_EQ(std::u16string(book.sheet->readFormula(1, 1)), u"A1");
  auto arrays = book.saved(id::kArray);
  ASSERT_EQ(arrays.size(), 1u);
  EXPECT_EQ(Bytes(arrays[0].begin(), arrays[0].begin() + 6), Bytes(BytesBuilder().u16(1).u16(1).u8(1).u8(1)));
  EXPECT_TRUE(book.sheet->insertRow(0, 9));
  arrays = book.saved(id::kArray);
  ASSERT_EQ(arrays.size(), 1u);
  EXPECT_EQ(Bytes(arrays[0].begin(), arrays[0].begin() + 6), Bytes(BytesBuilder().u16(11).u16(11).u8(1).u8(1)));
}

struct NamedBook : TestBook {
  std::uint16_t self = book->links().selfReference(0, 0);

  void name(const std::vector<std::uint8_t>& formula) {
    Lbl label;
    label.name.assign(u"Name", book->state().pool);
    label.formula = formula;
    book->names().names().push_back(label);
  }
  static std::vector<std::uint8_t> tokens(const BytesBuilder& builder) {
    std::vector<std::uint8_t> bytes;
    for (const std::byte b : Bytes(builder)) bytes.push_back(std::to_integer<std::uint8_t>(b));
    return bytes;
  }
  std::vector<std::uint8_t> area(unsigned r1, unsigned r2, unsigned token = 0x3B) const {
    return tokens(BytesBuilder().u8(token).u16(self).u16(r1).u16(r2).u16(1).u16(2));
  }
  std::vector<std::uint8_t> cell(unsigned row) const {
    return tokens(BytesBuilder().u8(0x3A).u16(self).u16(row).u16(1));
  }
  // The expression of the only name; empty when it is gone.
  std::vector<std::uint8_t> after() {
    const auto& names = book->names().names();
    return names.empty() ? std::vector<std::uint8_t>() : names.front().formula;
  }
};

TEST(DefinedNames, OfRangesFollowInsertedRows) {
  struct Case {
    unsigned r1, r2, newR1, newR2;
  };
  for (const Case& c : {Case{0, 4, 0, 4}, Case{0, 5, 0, 7}, Case{5, 9, 7, 11}, Case{65534, 65535, 65535, 65535},
                        Case{0, 65535, 0, 65535}, Case{1, 65535, 1, 65535}}) {
    NamedBook book;
    book.name(book.area(c.r1, c.r2));
    EXPECT_TRUE(book.sheet->insertRow(5, 6));
    EXPECT_EQ(book.after(), book.area(c.newR1, c.newR2)) << c.r1 << "-" << c.r2;
  }
}

TEST(DefinedNames, OfRangesFollowRemovedRows) {
  struct Case {
    unsigned r1, r2, newR1, newR2;
  };
  for (const Case& c : {Case{0, 4, 0, 4}, Case{0, 5, 0, 2}, Case{5, 9, 2, 6}, Case{8, 9, 5, 6},
                        Case{0, 65535, 0, 65535}, Case{1, 65535, 1, 65532}}) {
    NamedBook book;
    book.name(book.area(c.r1, c.r2));
    EXPECT_TRUE(book.sheet->removeRow(5, 7));
    EXPECT_EQ(book.after(), book.area(c.newR1, c.newR2)) << c.r1 << "-" << c.r2;
  }
  NamedBook book;
  book.name(book.area(1, 9));
  EXPECT_TRUE(book.sheet->removeRow(0, 4));
  EXPECT_EQ(book.after(), book.area(0, 4)) << "an end above the sheet stops at its edge";
}

TEST(DefinedNames, OfCellsFollowRowsAndLeaveWithThem) {
  NamedBook book;
  book.name(book.cell(5));
  EXPECT_TRUE(book.sheet->insertRow(5, 5));
  EXPECT_EQ(book.after(), book.cell(6));
  EXPECT_TRUE(book.sheet->removeRow(0, 1));
  EXPECT_EQ(book.after(), book.cell(4));
  EXPECT_TRUE(book.sheet->insertRow(0, 65530));
  EXPECT_EQ(book.after(), book.cell(65535));
  EXPECT_TRUE(book.sheet->insertRow(0, 0));
  EXPECT_TRUE(book.book->names().names().empty());
  book.name(book.cell(2));
  EXPECT_TRUE(book.sheet->removeRow(0, 2));
  EXPECT_TRUE(book.book->names().names().empty());
}

TEST(DefinedNames, StayWhereTheyAreNotAskedToFollow) {
  NamedBook book;
  book.name(book.area(5, 9));
  EXPECT_TRUE(book.sheet->insertRow(0, 0, false));
  EXPECT_TRUE(book.sheet->insertCol(0, 0, true));
  EXPECT_TRUE(book.sheet->removeCol(0, 1, true));
  EXPECT_EQ(book.after(), book.area(5, 9));
}

TEST(DefinedNames, OfOtherSheetsAndOtherExpressionsStay) {
  NamedBook book;
  Sheet* other = book.book->addSheet(u"Two", nullptr);
  book.name(book.area(5, 9));
  EXPECT_TRUE(other->insertRow(0, 0));
  EXPECT_EQ(book.after(), book.area(5, 9));
  for (const auto& formula :
       {book.area(5, 9, 0x5B), std::vector<std::uint8_t>(), std::vector<std::uint8_t>{0x3A, 0},
        NamedBook::tokens(BytesBuilder().u8(0x3B).u16(book.self).u16(5).u16(9).u16(0).u16(0).u8(0x16)),
        NamedBook::tokens(BytesBuilder().u8(0x3B).u16(77).u16(5).u16(9).u16(0).u16(0))}) {
    book.book->names().clear();
    book.name(formula);
    EXPECT_TRUE(book.sheet->insertRow(0, 0));
    EXPECT_EQ(book.after(), formula);
  }
}

}  // namespace
}  // namespace rubrica::test
