// Books whose drawings lie: every load ends with the message of the record that is wrong, or in a book that can be
// saved and loaded again.
#include "tests/biff/drawing/drawing_fixture.h"

namespace rubrica::test {
namespace {

using namespace officeart;

std::string messageOf(const std::vector<Record>& records) {
  const BookPtr book = newBook();
  return loadBytes(*book, fileOf(records)) ? "loaded" : book->errorMessage();
}
std::string messageOfGroup(const Bytes& group) {
  return messageOf(bookWithGroup(group));
}
std::string messageOfStore(const Bytes& entry) {
  return messageOfGroup(art(0xF, 0, type::dggContainer, art(0xF, 1, type::bStoreContainer, entry)));
}
std::string messageOfShape(const Bytes& part) {
  const Bytes shape = art(0xF, 0, type::spContainer, part);
  const Bytes drawing = art(0xF, 0, type::dgContainer, art(0xF, 0, type::spgrContainer, shape));
  return messageOf(bookAround({{id::kMsoDrawing, drawing}}));
}

TEST(HostileDrawings, AGroupThatIsNoneIsRefused) {
  EXPECT_EQ(messageOfGroup(art(0xF, 0, type::dggContainer, {})), "loaded");
  EXPECT_EQ(messageOfGroup({}), "error in record MsoDrawingGroup");
  EXPECT_EQ(messageOfGroup(filled(7, 0)), "error in record MsoDrawingGroup");
  EXPECT_EQ(messageOfGroup(filled(100, 0)), "error in record MsoDrawingGroup");
  EXPECT_EQ(messageOfGroup(art(0xF, 0, type::dggContainer, {}, 0x7FFFFFFF)), "error in record OfficeArtDggContainer");
  EXPECT_EQ(messageOfGroup(art(0xF, 0, type::dggContainer, art(0, 0, type::fdggBlock, filled(16, 0xFF)))),
            "error in record OfficeArtFDGGBlock");
}

TEST(HostileDrawings, PicturesWithoutBytesAreRefused) {
  const Bytes head = filled(36, 0);
  const auto withBlip = [&](const Bytes& blip) {
    return messageOfStore(art(2, 6, type::fbse, BytesBuilder().bytes(head).bytes(blip)));
  };
  EXPECT_EQ(withBlip({}), "loaded") << "an entry whose picture was deleted";
  EXPECT_EQ(withBlip(art(0, 0x6E0, type::blipPng, {})), "OfficeArtBlip: data is corrupted");
  EXPECT_EQ(withBlip(art(0, 0x6E0, type::blipPng, filled(17, 0))), "OfficeArtBlip: buffer is empty");
  EXPECT_EQ(withBlip(art(0, 0x6E1, type::blipPng, filled(33, 0))), "OfficeArtBlip: buffer is empty");
  EXPECT_EQ(withBlip(art(0, 0x216, type::blipWmf, filled(49, 0))), "OfficeArtBlip: data is corrupted");
  EXPECT_EQ(withBlip(art(0, 0x46A, type::blipJpeg, filled(30, 0))), "error in record OfficeArtBlipJPEG (2)");
  EXPECT_EQ(withBlip(art(0, 0x6E0, type::blipPng, filled(30, 0), 0x7FFFFFFF)), "error in record OfficeArtBlip");
  EXPECT_EQ(messageOfStore(art(2, 6, type::fbse, filled(20, 0))), "error in record OfficeArtFBSE");
  EXPECT_EQ(messageOfStore(art(2, 6, type::fbse, {}, 1)), "OfficeArtBStoreContainer: file is corrupt");
}

TEST(HostileDrawings, ShapesThatLieAreRefused) {
  EXPECT_EQ(messageOfShape(art(2, 75, type::fsp, filled(8, 0))), "loaded");
  EXPECT_EQ(messageOfShape(art(2, 75, type::fsp, filled(9, 0))), "error in record OfficeArtFSP");
  EXPECT_EQ(messageOfShape(art(3, 1, type::fopt, filled(4, 0))), "error in record OfficeArtRGFOPTE (1)");
  EXPECT_EQ(messageOfShape(art(3, 1, type::fopt, BytesBuilder().u16(0x8105).u32(0xFFFFFFFF))),
            "error in record OfficeArtRGFOPTE (2)");
  EXPECT_EQ(messageOfShape(art(0, 0, type::clientAnchorSheet, filled(16, 0))),
            "error in record OfficeArtClientAnchorSheet");
  EXPECT_EQ(messageOfShape(art(0, 0, type::clientData, {}, 1)), "error in record OfficeArtSpContainer");
  EXPECT_EQ(messageOf(bookAround({{id::kMsoDrawing, filled(30, 0)}})), "MsoDrawing size is incorrect");
  EXPECT_EQ(messageOf(bookAround({{id::kObj, filled(21, 0)}})), "error in record Obj");
  EXPECT_EQ(messageOf(bookAround({{id::kTextObject, filled(17, 0)}})), "error in record TextObject");
}

// Each header says that all the rest of the drawing is inside it, over several CONTINUE records.
TEST(HostileDrawings, GroupsInGroupsWithoutEndAreRefused) {
  Bytes stream;
  for (unsigned left = 80'000; left >= kHeaderSize; left -= kHeaderSize) {
    const unsigned recType = stream.empty() ? type::dgContainer : type::spgrContainer;
    const Bytes header = art(0xF, 0, recType, {}, static_cast<long>(left - kHeaderSize));
    stream.insert(stream.end(), header.begin(), header.end());
  }
  std::vector<Record> records;
  for (std::size_t at = 0; at < stream.size(); at += kMostRecordBytes) {
    const std::size_t end = std::min(at + kMostRecordBytes, stream.size());
    records.push_back(
        {at == 0 ? id::kMsoDrawing : id::kContinue,
         {stream.begin() + static_cast<std::ptrdiff_t>(at), stream.begin() + static_cast<std::ptrdiff_t>(end)}});
  }
  EXPECT_EQ(messageOf(bookAround(records)), "error in record OfficeArtSpgrContainer");
}

bool isOfDrawings(const Record& record) {
  return isDrawingRecord(record.recordId) || record.recordId == id::kMsoDrawingGroup ||
         record.recordId == id::kContinue;
}

// A damaged book that is loaded all the same can be changed, saved and loaded again.
void expectMessageOrBook(const std::vector<Record>& records, const std::string& where) {
  const BookPtr book = newBook();
  if (!loadBytes(*book, fileOf(records))) {
    EXPECT_STRNE(book->errorMessage(), "ok") << where;
    EXPECT_NE(std::string(book->errorMessage()), "") << where;
    return;
  }
  for (int i = 0; i < book->pictureSize(); ++i) book->getPicture(i, nullptr, nullptr);
  Sheet* sheet = book->getSheet(0);
  if (sheet == nullptr) return;
  for (int i = 0; i < sheet->pictureSize(); ++i) placement(*sheet, i);
  sheet->readComment(2, 2);
  const int id = addPicture(*book, png(60));
  sheet->setPicture(1, 1, id);
  sheet->writeComment(2, 2, u"again");
  const BookPtr again = newBook();
  EXPECT_TRUE(loadBytes(*again, savedBytes(*book))) << where << ": " << again->errorMessage();
  EXPECT_EQ(textOf(again->getSheet(0)->readComment(2, 2)), u"again") << where;
}

TEST(HostileDrawings, OneWrongByteAnywhereEndsInAMessageOrABook) {
  OneSheet made;
  addPicture(*made.book, png(60));
  addPicture(*made.book, BytesBuilder().u32(1).u32(88).u32(0).u32(0).u32(15).u32(11).fill(64, 0));
  made.sheet->setPicture(1, 1, 0);
  made.sheet->writeComment(2, 2, u"Text", u"Ann");
  made.sheet->setPicture(3, 1, 1);
  const auto records = savedRecords(*made.book);
  int damaged = 0;
  for (std::size_t r = 0; r < records.size(); ++r) {
    if (!isOfDrawings(records[r])) continue;
    for (std::size_t at = 0; at < records[r].bytes.size(); ++at) {
      for (const unsigned flip : {0x01u, 0x80u, 0xFFu}) {
        auto bad = records;
        bad[r].bytes[at] ^= static_cast<std::byte>(flip);
        expectMessageOrBook(bad, "record " + std::to_string(r) + " byte " + std::to_string(at));
        ++damaged;
      }
      auto cut = records;
      cut[r].bytes.resize(at);
      expectMessageOrBook(cut, "record " + std::to_string(r) + " cut to " + std::to_string(at));
    }
  }
  EXPECT_GT(damaged, 2500);
}

}  // namespace
}  // namespace rubrica::test
