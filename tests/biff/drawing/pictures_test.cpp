// Pictures of an .xls book: into the book, onto its sheets, through a save and a load.
#include <fstream>

#include "biff/book_impl.h"
#include "tests/biff/drawing/drawing_fixture.h"
#include "tests/support/temporary_directory.h"

namespace rubrica::test {
namespace {

// Columns of 64 pixels (8.43 characters of 7 pixels and their padding), rows of 20.
struct PixelGrid : OneSheet {
  PixelGrid() {
    sheet->setCol(0, 255, 8.43);
    for (int row = 0; row < 12; ++row) sheet->setRow(row, 15);
  }
};

TEST(BookPictures, AreCountedAndGivenBack) {
  OneSheet book;
  EXPECT_EQ(book.book->pictureSize(), 0);
  EXPECT_EQ(addPicture(*book.book, png(100)), 0);
  EXPECT_EQ(addPicture(*book.book, png(200)), 1);
  EXPECT_STREQ(book.book->errorMessage(), "ok");
  EXPECT_EQ(book.book->pictureSize(), 2);
  EXPECT_EQ(pictureBytes(*book.book, 1), png(200));
  const BookPtr again = reloaded(*book.book);
  EXPECT_EQ(again->pictureSize(), 2);
  EXPECT_EQ(pictureBytes(*again, 0), png(100));
  EXPECT_EQ(pictureBytes(*again, 1), png(200));
  EXPECT_EQ(again->getPicture(0, nullptr, nullptr), PictureType::png);
}

TEST(BookPictures, AnIndexBeyondTheLastIsRefused) {
  OneSheet book;
  for (const int index : {-1, 0, 1}) {
    EXPECT_EQ(book.book->getPicture(index, nullptr, nullptr), PictureType::notFound);
    EXPECT_STREQ(book.book->errorMessage(), "index is out of range");
  }
  addPicture(*book.book, png());
  EXPECT_EQ(book.book->getPicture(1, nullptr, nullptr), PictureType::notFound);
  EXPECT_STREQ(book.book->errorMessage(), "index is out of range");
}

TEST(BookPictures, TheSameBytesTwiceAreTwoEntries) {
  OneSheet book;
  EXPECT_EQ(addPicture(*book.book, png()), 0);
  EXPECT_EQ(addPicture(*book.book, png()), 1);
  EXPECT_EQ(reloaded(*book.book)->pictureSize(), 2);
}

TEST(BookPictures, OfEverySizeComeBackOrAreRefused) {
  for (const std::size_t size : {0, 1, 17, 8223, 8224, 8225, 20'000'000}) {
    OneSheet book;
    const Bytes picture = png(size);
    if (size <= 4) {
      EXPECT_EQ(addPicture(*book.book, picture), -1);
      EXPECT_STREQ(book.book->errorMessage(), "unknown picture format") << size;
      continue;
    }
    ASSERT_EQ(addPicture(*book.book, picture), 0) << size;
    book.sheet->setPicture2(0, 0, 0, 10, 10);
    const BookPtr again = reloaded(*book.book);
    EXPECT_TRUE(pictureBytes(*again, 0) == picture) << size;
    EXPECT_EQ(again->getSheet(0)->pictureSize(), 1);
  }
}

TEST(BookPictures, FilesThatCantBeAddedAreRefusedWithTheReason) {
  TemporaryDirectory folder;
  OneSheet book;
  const auto refused = [&](const char16_t* path) {
    EXPECT_EQ(book.book->addPicture(path), -1);
    return std::string(book.book->errorMessage());
  };
  EXPECT_EQ(refused(nullptr), "file name can't be 0");
  EXPECT_EQ(refused(folder.file("none.png").u16string().c_str()), "can't open file");
  const auto write = [&](const char* name, const Bytes& bytes) {
    const auto path = folder.file(name);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path.u16string();
  };
  EXPECT_EQ(refused(write("empty.png", {}).c_str()), "picture is empty");
  EXPECT_EQ(refused(write("text.png", BytesBuilder().text("no picture")).c_str()), "unknown picture format");
  EXPECT_EQ(book.book->addPicture(write("picture.png", png(300)).c_str()), 0);
  EXPECT_EQ(pictureBytes(*book.book, 0), png(300));
  EXPECT_EQ(book.book->addPictureAsLink(u"picture.png"), -1);
  EXPECT_STREQ(book.book->errorMessage(), "function is not supported for xls files");
}

TEST(BookPictures, EveryKindIsToldByItsCode) {
  OneSheet book;
  const Bytes jpeg = BytesBuilder().u16(0xD8FF).u16(0xC0FF).u16(0x1100).u8(8).u16(0x0C00).u16(0x1000).fill(20, 1);
  const Bytes dib = BytesBuilder().u32(40).u32(16).u32(12).fill(40, 1);
  const Bytes bmp = BytesBuilder().text("BM").fill(12, 0).bytes(dib);
  const Bytes wmf =
      BytesBuilder().u32(0x9AC6CDD7).u16(0).u16(0).u16(0).u16(16).u16(12).u16(96).u32(0).u16(0).fill(60, 2);
  const Bytes emf = BytesBuilder().u32(1).u32(88).u32(0).u32(0).u32(15).u32(11).fill(64, 0);
  const std::vector<std::pair<Bytes, PictureType>> kinds = {{png(100, 16, 12), PictureType::png},
                                                            {jpeg, PictureType::jpeg},
                                                            {dib, PictureType::dib},
                                                            {bmp, PictureType::dib},
                                                            {wmf, PictureType::wmf},
                                                            {emf, PictureType::emf}};
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    EXPECT_EQ(addPicture(*book.book, kinds[i].first), static_cast<int>(i));
    book.sheet->setPicture(0, 0, static_cast<int>(i));
  }
  const BookPtr again = reloaded(*book.book);
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    const int index = static_cast<int>(i);
    EXPECT_EQ(again->getPicture(index, nullptr, nullptr), kinds[i].second) << index;
    const Placement placed = placement(*again->getSheet(0), index);
    EXPECT_EQ(placed.id, index);
    EXPECT_EQ(placed.width, 16) << index;
    EXPECT_EQ(placed.height, 12) << index;
  }
  EXPECT_EQ(pictureBytes(*again, 3), dib) << "a bitmap is kept without its file header";
  EXPECT_EQ(pictureBytes(*again, 5), emf);
}

// No new picture is of these kinds. An entry whose picture was deleted counts for positions, not among the pictures.
TEST(BookPictures, OfKindsThatAreReadOnlyAreGivenFromAFile) {
  using namespace officeart;
  const auto entry = [](const Bytes& blip) {
    return Bytes(art(2, 6, type::fbse, BytesBuilder().bytes(filled(36, 0)).bytes(blip)));
  };
  const Bytes pict =
      art(0, 0x542, type::blipPict, BytesBuilder().bytes(filled(16, 0)).bytes(filled(34, 0xFE)).text("PICT"));
  const Bytes tiff = art(0, 0x6E4, type::blipTiff, BytesBuilder().bytes(filled(17, 0)).text("II*"));
  const Bytes entries = BytesBuilder().bytes(entry({})).bytes(entry(pict)).bytes(entry(tiff));
  const Bytes group = art(0xF, 0, type::dggContainer, art(0xF, 3, type::bStoreContainer, entries));
  const BookPtr book = loaded(fileOf(bookWithGroup(group)));
  EXPECT_EQ(book->pictureSize(), 2);
  EXPECT_EQ(static_cast<int>(book->getPicture(0, nullptr, nullptr)), 6);
  EXPECT_EQ(static_cast<int>(book->getPicture(1, nullptr, nullptr)), 7);
  EXPECT_EQ(pictureBytes(*book, 0), Bytes(BytesBuilder().text("PICT")));
  EXPECT_EQ(pictureBytes(*book, 1), Bytes(BytesBuilder().text("II*")));
  EXPECT_EQ(addPicture(*book, png()), 3) << "the position in the store";
  book->getSheet(0)->setPicture(0, 0, 0);
  EXPECT_STREQ(book->errorMessage(), "pictureId is out of range");
  book->getSheet(0)->setPicture(0, 0, 3);
  EXPECT_EQ(placement(*reloaded(*book)->getSheet(0), 0).id, 3);
  EXPECT_EQ(pictureBytes(*reloaded(*book), 1), Bytes(BytesBuilder().text("II*")));
}

TEST(SheetPictures, ArePlacedByRowColumnAndPixels) {
  PixelGrid book;
  addPicture(*book.book, png());
  book.sheet->setPicture2(2, 1, 0, 64, 20, 0, 0);
  book.sheet->setPicture2(3, 2, 0, 100, 33, 10, 5, PicturePosition::onlyMove);
  book.sheet->setPicture(5, 0, 0, 2.0, 3, 4, PicturePosition::absolute);
  ASSERT_STREQ(book.book->errorMessage(), "ok");
  for (const bool afterLoad : {false, true}) {
    const BookPtr again = reloaded(*book.book);
    Sheet& sheet = afterLoad ? *again->getSheet(0) : *book.sheet;
    ASSERT_EQ(sheet.pictureSize(), 3);
    EXPECT_EQ(placement(sheet, 0), (Placement{0, 2, 1, 3, 2, 64, 20, 0, 0})) << "ends where the next cell begins";
    EXPECT_EQ(placement(sheet, 1), (Placement{0, 3, 2, 4, 3, 100, 33, 10, 5}));
    EXPECT_EQ(placement(sheet, 2), (Placement{0, 5, 0, 8, 1, 80, 60, 3, 4}));
  }
  const auto drawing = drawingOf(drawingRecords(substream(savedRecords(*book.book), 1)));
  EXPECT_EQ(drawing.picture(0).anchor.dxR, 0);
  EXPECT_EQ(drawing.picture(0).anchor.flags, 0);
  EXPECT_EQ(drawing.picture(1).anchor.flags, 2);
  EXPECT_EQ(drawing.picture(2).anchor.flags, 3);
}

TEST(SheetPictures, OffsetsBeyondTheCellAreCutWithAWarning) {
  PixelGrid book;
  addPicture(*book.book, png());
  book.sheet->setPicture2(0, 0, 0, 10, 10, 0, 30);
  EXPECT_STREQ(book.book->errorMessage(), "warning: offset_y exceed cell's height");
  EXPECT_EQ(placement(*book.sheet, 0).y, 20);
  book.sheet->setPicture2(0, 0, 0, 10, 10, 65, 20);
  EXPECT_STREQ(book.book->errorMessage(), "warning: offset_x exceed cell's width");
  book.sheet->setPicture2(0, 0, 0, 10, 10, 2000, 2000);
  EXPECT_STREQ(book.book->errorMessage(), "warning: offset_x and offset_y exceed cell's size");
  book.sheet->setPicture2(0, 0, 0, 10, 10, 64, 20);
  EXPECT_STREQ(book.book->errorMessage(), "ok");
  EXPECT_EQ(book.sheet->pictureSize(), 4) << "a warning leaves the picture placed";
}

TEST(SheetPictures, AreAsLargeAsAskedOverResizedAndHiddenCells) {
  PixelGrid book;
  addPicture(*book.book, png());
  book.sheet->setCol(1, 1, 20);
  book.sheet->setColHidden(2, true);
  book.sheet->setRow(1, 60);
  book.sheet->setRowHidden(2, true);
  book.sheet->setPicture2(0, 0, 0, 300, 200);
  const Placement placed = placement(*book.sheet, 0);
  EXPECT_EQ(placed.width, 300);
  EXPECT_EQ(placed.height, 200);
  EXPECT_EQ(placed.colRight, 4);   // 64 + 145 + 0 + 64 of 300
  EXPECT_EQ(placed.rowBottom, 8);  // 20 + 80 + 0 + five of 20
}

TEST(SheetPictures, ASizeOfMinusOneReachesToTheEndOfTheCell) {
  PixelGrid book;
  addPicture(*book.book, png());
  book.sheet->setPicture2(1, 1, 0, -1, -1);
  const auto anchor = drawingOf(drawingRecords(substream(savedRecords(*book.book), 1))).picture(0).anchor;
  EXPECT_EQ(anchor, (officeart::CellAnchor{0, 1, 0, 1, 0, 1, 32767, 1, 32767}));
}

TEST(SheetPictures, OutsideTheSheetOrTheListAreRefused) {
  PixelGrid book;
  book.sheet->setPicture(0, 0, 0);
  EXPECT_STREQ(book.book->errorMessage(), "pictureId is out of range");
  addPicture(*book.book, png());
  for (const int id : {-1, 1}) {
    book.sheet->setPicture(0, 0, id);
    EXPECT_STREQ(book.book->errorMessage(), "pictureId is out of range");
    book.sheet->setPicture2(0, 0, id, 5, 5);
    EXPECT_STREQ(book.book->errorMessage(), "pictureId is out of range");
  }
  book.sheet->setPicture(65536, 0, 0);
  EXPECT_STREQ(book.book->errorMessage(), "row must be in range 0-65535");
  book.sheet->setPicture2(0, 256, 0, 5, 5);
  EXPECT_STREQ(book.book->errorMessage(), "col must be in range 0-255");
  EXPECT_EQ(book.sheet->pictureSize(), 0);
  EXPECT_EQ(placement(*book.sheet, 0).id, -1);
  EXPECT_STREQ(book.book->errorMessage(), "picture not found");
}

TEST(SheetPictures, OfAnyScaleEndWithinTheSheet) {
  OneSheet book;
  addPicture(*book.book, png());
  for (const double scale : {0.0, -3.0, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
    book.sheet->setPicture(65535, 255, 0, scale, -5, -5);
    EXPECT_STREQ(book.book->errorMessage(), "ok");
  }
  EXPECT_EQ(reloaded(*book.book)->getSheet(0)->pictureSize(), 4);
}

TEST(SheetPictures, AreRemovedWithTheirObjectsWhileTheBookKeepsTheBytes) {
  PixelGrid book;
  addPicture(*book.book, png());
  for (int i = 0; i < 3; ++i) book.sheet->setPicture(i, i, 0);
  auto& sheet = dynamic_cast<SheetImplT&>(*book.sheet);
  EXPECT_TRUE(sheet.removePictureByIndex(1));
  EXPECT_FALSE(sheet.removePictureByIndex(2));
  EXPECT_STREQ(book.book->errorMessage(), "picture not found");
  const BookPtr again = reloaded(*book.book);
  EXPECT_EQ(again->pictureSize(), 1);
  ASSERT_EQ(again->getSheet(0)->pictureSize(), 2);
  EXPECT_EQ(placement(*again->getSheet(0), 1).rowTop, 2);
  EXPECT_EQ(drawingRecords(substream(savedRecords(*book.book), 1)).size(), 4u);
}

TEST(SheetPictures, OnSeveralSheetsHaveIdsOfTheirOwn) {
  OneSheet book;
  addPicture(*book.book, png());
  std::vector<Sheet*> sheets = {book.sheet, book.book->addSheet(u"Two"), book.book->addSheet(u"Three")};
  for (int i = 0; i < 30; ++i) {
    sheets[static_cast<std::size_t>(i) % 3]->setPicture(i, 0, 0);
    sheets[static_cast<std::size_t>(i) % 3]->writeComment(i, 1, u"c");
  }
  expectNoClash(savedRecords(*book.book), 3, "three sheets");
  const auto first = drawingOf(drawingRecords(substream(savedRecords(*book.book), 1)));
  std::vector<std::uint32_t> ids;
  first.forEachShapeId([&](std::uint32_t id) { ids.push_back(id); });
  EXPECT_EQ((std::vector<std::uint32_t>{ids.begin(), ids.begin() + 3}), (std::vector<std::uint32_t>{1024, 1025, 1026}));
}

TEST(SheetPictures, OfACopiedSheetAreShapesOfTheirOwn) {
  OneSheet book;
  addPicture(*book.book, png());
  book.sheet->setPicture(1, 1, 0);
  book.sheet->writeComment(2, 2, u"Copied", u"Ann");
  Sheet* copy = book.book->addSheet(u"Copy", book.sheet);
  ASSERT_NE(copy, nullptr) << book.book->errorMessage();
  EXPECT_EQ(copy->pictureSize(), 1);
  EXPECT_EQ(textOf(copy->readComment(2, 2)), u"Copied");
  copy->setPicture(5, 5, 0);
  EXPECT_EQ(book.sheet->pictureSize(), 1);
  expectNoClash(savedRecords(*book.book), 2, "a copy");
  EXPECT_TRUE(book.book->delSheet(0));
  const BookPtr again = reloaded(*book.book);
  EXPECT_EQ(again->getSheet(0)->pictureSize(), 2);
  EXPECT_EQ(textOf(again->getSheet(0)->readComment(2, 2)), u"Copied");
}

TEST(SheetPictures, MoveWithTheirCells) {
  PixelGrid book;
  addPicture(*book.book, png());
  book.sheet->setPicture(3, 1, 0);
  book.sheet->setPicture(3, 1, 0, 1.0, 0, 0, PicturePosition::absolute);
  EXPECT_TRUE(book.sheet->insertRow(0, 4));
  EXPECT_EQ(placement(*book.sheet, 0).rowTop, 8);
  EXPECT_EQ(placement(*book.sheet, 1).rowTop, 3);
}

TEST(SheetPictures, AThousandOfThem) {
  OneSheet book;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(addPicture(*book.book, png(100 + static_cast<std::size_t>(i))), i);
    book.sheet->setPicture(i, i % 200, i);
  }
  const BookPtr again = reloaded(*book.book);
  EXPECT_EQ(again->pictureSize(), 1000);
  ASSERT_EQ(again->getSheet(0)->pictureSize(), 1000);
  EXPECT_EQ(pictureBytes(*again, 999), png(1099));
  EXPECT_EQ(placement(*again->getSheet(0), 999).id, 999);
  EXPECT_EQ(placement(*again->getSheet(0), 999).colLeft, 199);
  expectNoClash(savedRecords(*again), 1, "a thousand");
}

TEST(SheetPictures, AreStillThereWhenTheBookIsSavedTwice) {
  OneSheet book;
  addPicture(*book.book, png());
  book.sheet->setPicture(0, 0, 0);
  EXPECT_EQ(savedBytes(*book.book), savedBytes(*book.book));
  const BookPtr again = reloaded(*book.book);
  EXPECT_EQ(groupRecords(substream(savedRecords(*again), 0)), groupRecords(substream(savedRecords(*book.book), 0)));
}

}  // namespace
}  // namespace rubrica::test
