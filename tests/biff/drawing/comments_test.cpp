// Comments of an .xls sheet: text, author and box, alone and beside pictures, through a save and a load.
#include "tests/biff/drawing/drawing_fixture.h"

namespace rubrica::test {
namespace {

std::vector<Record> notesOf(Book& book) {
  std::vector<Record> notes;
  for (const Record& record : substream(savedRecords(book), 1)) {
    if (record.recordId == id::kNote) notes.push_back(record);
  }
  return notes;
}

Bytes noteBody(unsigned row, unsigned col, unsigned object, std::u16string_view author) {
  return BytesBuilder()
      .u16(row)
      .u16(col)
      .u16(0)
      .u16(object)
      .u16(static_cast<unsigned>(author.size()))
      .u8(1)
      .wide(author)
      .u8(0);
}

TEST(Comments, ACellWithoutOneGivesNullAndOk) {
  OneSheet book;
  EXPECT_EQ(book.sheet->readComment(1, 1), nullptr);
  EXPECT_STREQ(book.book->errorMessage(), "ok");
  EXPECT_TRUE(book.sheet->removeComment(1, 1));
  EXPECT_STREQ(book.book->errorMessage(), "ok");
}

TEST(Comments, AreReadBackBeforeAndAfterALoad) {
  OneSheet book;
  book.sheet->writeComment(3, 2, u"First \u0416", u"Ann");
  book.sheet->writeComment(0, 0, u"Second", u"Bob", 200, 100);
  EXPECT_STREQ(book.book->errorMessage(), "ok");
  const BookPtr again = reloaded(*book.book);
  for (Sheet* sheet : {book.sheet, again->getSheet(0)}) {
    EXPECT_EQ(textOf(sheet->readComment(3, 2)), u"First \u0416");
    EXPECT_EQ(textOf(sheet->readComment(0, 0)), u"Second");
    EXPECT_EQ(sheet->readComment(2, 3), nullptr);
  }
  const auto notes = notesOf(*again);
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_EQ(notes[0].bytes, noteBody(3, 2, 1, u"Ann"));
  EXPECT_EQ(notes[1].bytes, noteBody(0, 0, 2, u"Bob"));
}

TEST(Comments, WithoutAnAuthorAreTheEnginesOwn) {
  OneSheet book;
  book.sheet->writeComment(1, 1, u"x");
  EXPECT_EQ(notesOf(*book.book)[0].bytes, noteBody(1, 1, 1, u"rubrica"));
  book.sheet->writeComment(1, 1, u"x", u"");
  EXPECT_EQ(notesOf(*book.book)[0].bytes, noteBody(1, 1, 2, u""));
}

TEST(Comments, WithoutATextAreEmpty) {
  OneSheet book;
  book.sheet->writeComment(1, 1, nullptr, u"Ann");
  book.sheet->writeComment(2, 1, u"", u"Ann");
  const BookPtr again = reloaded(*book.book);
  EXPECT_EQ(textOf(again->getSheet(0)->readComment(1, 1)), u"");
  EXPECT_EQ(textOf(again->getSheet(0)->readComment(2, 1)), u"");
}

TEST(Comments, TheNoteOfACellThatHasOnePointsToTheNewText) {
  OneSheet book;
  book.sheet->writeComment(1, 1, u"old", u"Ann");
  book.sheet->writeComment(1, 1, u"new", u"Bob");
  EXPECT_EQ(textOf(book.sheet->readComment(1, 1)), u"new");
  const auto notes = notesOf(*book.book);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0].bytes, noteBody(1, 1, 2, u"Bob"));
  EXPECT_EQ(drawingOf(drawingRecords(substream(savedRecords(*book.book), 1))).shapeCount(), 3)
      << "the patriarch, the former box and the new one";
  EXPECT_EQ(textOf(reloaded(*book.book)->getSheet(0)->readComment(1, 1)), u"new");
}

TEST(Comments, ThatAreRemovedLeaveTheirBoxes) {
  OneSheet book;
  book.sheet->writeComment(1, 1, u"a");
  book.sheet->writeComment(2, 1, u"b");
  EXPECT_TRUE(book.sheet->removeComment(1, 1));
  EXPECT_EQ(book.sheet->readComment(1, 1), nullptr);
  EXPECT_EQ(notesOf(*book.book).size(), 1u);
  EXPECT_EQ(drawingOf(drawingRecords(substream(savedRecords(*book.book), 1))).shapeCount(), 3);
  book.sheet->writeComment(1, 1, u"c");
  EXPECT_EQ(textOf(reloaded(*book.book)->getSheet(0)->readComment(1, 1)), u"c");
}

TEST(Comments, OutsideTheSheetAreRefused) {
  OneSheet book;
  book.sheet->writeComment(65536, 0, u"x");
  EXPECT_STREQ(book.book->errorMessage(), "row must be in range 0-65535");
  EXPECT_EQ(book.sheet->readComment(0, 256), nullptr);
  EXPECT_STREQ(book.book->errorMessage(), "col must be in range 0-255");
  EXPECT_FALSE(book.sheet->removeComment(-1, 0));
  EXPECT_STREQ(book.book->errorMessage(), "row must be in range 0-65535");
}

TEST(Comments, AuthorsAndTextsHaveTheirLimits) {
  OneSheet book;
  const std::u16string most(65535, u'a');
  book.sheet->writeComment(0, 0, most.c_str(), most.c_str());
  EXPECT_STREQ(book.book->errorMessage(), "ok");
  const BookPtr again = reloaded(*book.book);
  EXPECT_EQ(textOf(again->getSheet(0)->readComment(0, 0)), most);
  std::vector<Record> notes = drawingRecords(substream(savedRecords(*again), 1));
  while (notes.front().recordId != id::kNote) notes.erase(notes.begin());
  std::size_t size = 0;
  for (const Record& record : notes) size += record.bytes.size();
  EXPECT_EQ(size, 8 + 3 + 2 * most.size() + 1);
  const std::u16string more(65536, u'a');
  book.sheet->writeComment(1, 0, u"x", more.c_str());
  EXPECT_STREQ(book.book->errorMessage(), "string is too long");
  book.sheet->writeComment(1, 0, more.c_str(), u"x");
  EXPECT_STREQ(book.book->errorMessage(), "string is too long");
  EXPECT_EQ(book.sheet->readComment(1, 0), nullptr);
}

TEST(Comments, BesidePicturesHaveObjectIdsOfTheirOwn) {
  OneSheet book;
  addPicture(*book.book, png());
  book.sheet->setPicture(0, 0, 0);
  book.sheet->writeComment(1, 1, u"a");
  book.sheet->setPicture(2, 0, 0);
  book.sheet->writeComment(3, 1, u"b");
  expectNoClash(savedRecords(*book.book), 1, "a mixture");
  const BookPtr again = reloaded(*book.book);
  EXPECT_EQ(again->getSheet(0)->pictureSize(), 2);
  EXPECT_EQ(textOf(again->getSheet(0)->readComment(3, 1)), u"b");
}

TEST(Comments, OfAMergedCellMayReachToItsFarCorner) {
  OneSheet book;
  book.sheet->setMerge(1, 4, 1, 3);
  book.sheet->writeComment(1, 1, u"a", nullptr, -1, -1);
  book.sheet->writeComment(8, 1, u"b", nullptr, -1, -1);
  std::vector<officeart::CellAnchor> anchors;
  auto drawing = drawingOf(drawingRecords(substream(savedRecords(*book.book), 1)));
  drawing.moveAnchors([&](officeart::CellAnchor& anchor, bool isComment) {
    EXPECT_TRUE(isComment);
    anchors.push_back(anchor);
    return false;
  });
  ASSERT_EQ(anchors.size(), 2u);
  EXPECT_EQ(anchors[0], (officeart::CellAnchor{3, 1, 0, 1, 0, 3, 32767, 4, 32767}));
  EXPECT_EQ(anchors[1], (officeart::CellAnchor{3, 1, 0, 8, 0, 1, 32767, 8, 32767}));
}

TEST(Comments, MoveWithTheirCells) {
  OneSheet book;
  book.sheet->writeComment(3, 2, u"a");
  EXPECT_TRUE(book.sheet->insertRow(0, 1));
  EXPECT_EQ(book.sheet->readComment(3, 2), nullptr);
  EXPECT_EQ(textOf(book.sheet->readComment(5, 2)), u"a");
  EXPECT_TRUE(book.sheet->removeCol(2, 2));
  EXPECT_EQ(book.sheet->readComment(5, 2), nullptr);
  EXPECT_TRUE(notesOf(*book.book).empty());
}

TEST(Comments, TwoThousandOfThem) {
  OneSheet book;
  const auto text = [](int i) { return u"comment " + std::u16string(static_cast<std::size_t>(i % 50), u'x'); };
  for (int i = 0; i < 2000; ++i) book.sheet->writeComment(i, i % 256, text(i).c_str(), u"Ann");
  const BookPtr again = reloaded(*book.book);
  for (int i = 0; i < 2000; ++i) ASSERT_EQ(textOf(again->getSheet(0)->readComment(i, i % 256)), text(i)) << i;
  expectNoClash(savedRecords(*again), 1, "two thousand");
  for (int i = 0; i < 2000; i += 2) EXPECT_TRUE(again->getSheet(0)->removeComment(i, i % 256));
  EXPECT_EQ(notesOf(*again).size(), 1000u);
}

TEST(CarriedNotes, KeepTheirBytes) {
  const Bytes narrow = BytesBuilder().u16(1).u16(2).u16(2).u16(7).u16(3).u8(0).text("Ann");
  const Bytes padded = BytesBuilder().u16(3).u16(2).u16(0).u16(8).u16(2).u8(0).text("Al").u8(9).u8(8).u8(7);
  const Bytes empty = BytesBuilder().u16(4).u16(2).u16(0).u16(8).u16(0).u8(0).u8(0);
  const BookPtr book = loaded(fileAround({{id::kNote, narrow}, {id::kNote, padded}, {id::kNote, empty}}));
  const auto notes = notesOf(*book);
  ASSERT_EQ(notes.size(), 3u);
  EXPECT_EQ(notes[0].bytes, narrow);
  EXPECT_EQ(notes[1].bytes, padded);
  EXPECT_EQ(notes[2].bytes, empty);
  EXPECT_EQ(book->getSheet(0)->readComment(1, 2), nullptr) << "no object has the note's text";
  EXPECT_STREQ(book->errorMessage(), "ok");
}

TEST(CarriedNotes, ThatAreCutShortAreRefused) {
  for (const Bytes& bytes : {Bytes(BytesBuilder().fill(10, 0)), Bytes(BytesBuilder().fill(8, 0).u16(2).u8(0).u8('A')),
                             Bytes(BytesBuilder().fill(8, 0).u16(0xFFFF).u8(1))}) {
    BookPtr book = newBook();
    EXPECT_FALSE(loadBytes(*book, fileAround({{id::kNote, bytes}})));
    EXPECT_STREQ(book->errorMessage(), "Note size is incorrect");
  }
}

TEST(Biff5Notes, HoldTheirTextAndBecomeCommentsOfTheSavedBook) {
  const std::vector<Record> notes = {{id::kNote, BytesBuilder().u16(2).u16(1).u16(5).text("Hello")},
                                     {id::kNote, BytesBuilder().u16(4).u16(1).u16(9).text("Lon")},
                                     {id::kNote, BytesBuilder().u16(0xFFFF).u16(0).u16(6).text("g text")},
                                     {id::kNote, BytesBuilder().u16(5).u16(1).u16(500).text("cut")}};
  auto records = bookAround(notes, kBiff5Version);
  for (Record& record : records) {
    if (record.recordId == id::kFont)
      record.bytes = BytesBuilder().u16(200).u16(0).u16(0x7FFF).u16(400).u16(0).u32(0).u8(5).text("Arial");
    if (record.recordId == id::kXf) record.bytes = BytesBuilder().u16(0).u16(0).u16(1).fill(10, 0);
  }
  const BookPtr book = loaded(fileOf(records));
  ASSERT_EQ(book->sheetCount(), 1);
  EXPECT_EQ(textOf(book->getSheet(0)->readComment(2, 1)), u"Hello");
  EXPECT_EQ(textOf(book->getSheet(0)->readComment(4, 1)), u"Long text");
  EXPECT_EQ(textOf(book->getSheet(0)->readComment(5, 1)), u"cut");
  const BookPtr again = reloaded(*book);
  EXPECT_EQ(again->biffVersion(), kBiff8Version);
  EXPECT_EQ(textOf(again->getSheet(0)->readComment(2, 1)), u"Hello");
  EXPECT_EQ(textOf(again->getSheet(0)->readComment(4, 1)), u"Long text");
  EXPECT_EQ(textOf(book->getSheet(0)->readComment(2, 1)), u"Hello") << "the book that was saved has it still";
  EXPECT_EQ(savedBytes(*book), savedBytes(*book));
}

}  // namespace
}  // namespace rubrica::test
