// Test support: pictures made of a header and filling, and the ids that the shapes and objects of a saved book have.
#pragma once

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "officeart/drawing.h"
#include "officeart/drawing_group.h"
#include "tests/biff/core/book_fixture.h"

namespace rubrica::test {

// A PNG's first bytes, with a size of 40 by 30 pixels where there is room for one.
inline Bytes png(std::size_t size = 100, unsigned width = 40, unsigned height = 30) {
  Bytes bytes = BytesBuilder().u8(0x89).text("PNG\r\n\x1A\n").u32(0x0D000000).text("IHDR");
  for (const unsigned extent : {width, height}) {
    for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<std::byte>(extent >> shift));
  }
  bytes.resize(size, std::byte{0x5A});
  return bytes;
}

inline int addPicture(Book& book, const Bytes& picture) {
  return book.addPicture2(picture.data(), picture.size());
}

inline Bytes pictureBytes(Book& book, int index) {
  const void* data = nullptr;
  std::size_t size = 0;
  EXPECT_NE(book.getPicture(index, &data, &size), PictureType::notFound) << book.errorMessage();
  const auto* bytes = static_cast<const std::byte*>(data);
  return {bytes, bytes + size};
}

// Where a sheet says that its picture is.
struct Placement {
  int id = -1, rowTop = 0, colLeft = 0, rowBottom = 0, colRight = 0, width = 0, height = 0, x = 0, y = 0;
  bool operator==(const Placement&) const = default;
};
inline Placement placement(Sheet& sheet, int index) {
  Placement p;
  p.id = sheet.getPicture(index, &p.rowTop, &p.colLeft, &p.rowBottom, &p.colRight, &p.width, &p.height, &p.x, &p.y);
  return p;
}

inline bool isDrawingRecord(std::uint16_t recordId) {
  return recordId == id::kMsoDrawing || recordId == id::kObj || recordId == id::kTextObject || recordId == id::kNote;
}

// The records of drawings and notes of a substream, with the CONTINUE records behind them.
inline std::vector<Record> drawingRecords(const std::vector<Record>& substreamRecords) {
  std::vector<Record> found;
  bool within = false;
  for (const Record& record : substreamRecords) {
    within = isDrawingRecord(record.recordId) || (within && record.recordId == id::kContinue);
    if (within) found.push_back(record);
  }
  return found;
}

inline std::vector<Record> groupRecords(const std::vector<Record>& globals) {
  std::vector<Record> found;
  bool within = false;
  for (const Record& record : globals) {
    within = record.recordId == id::kMsoDrawingGroup || (within && record.recordId == id::kContinue);
    if (within) found.push_back(record);
  }
  return found;
}

// An OfficeArt record. `length` in place of the body's own where it lies.
inline Bytes art(unsigned recVer, unsigned recInstance, unsigned recType, const Bytes& body, long length = -1) {
  return BytesBuilder()
      .u16(recVer | recInstance << 4)
      .u16(recType)
      .u32(length < 0 ? static_cast<unsigned>(body.size()) : static_cast<unsigned>(length))
      .bytes(body);
}
inline Bytes filled(std::size_t size, unsigned value) {
  return Bytes(size, static_cast<std::byte>(value));
}

// A small book whose globals hold a drawing group of these bytes.
inline std::vector<Record> bookWithGroup(const Bytes& group) {
  auto records = bookAround({});
  const auto end = std::find_if(records.begin(), records.end(), [](const Record& r) { return r.recordId == id::kEof; });
  records.insert(end, {id::kMsoDrawingGroup, group});
  return records;
}

inline officeart::Drawing drawingOf(const std::vector<Record>& records) {
  std::vector<officeart::SheetRecord> views;
  for (const Record& record : records) {
    if (record.recordId != id::kNote) views.push_back({record.recordId, record.bytes});
  }
  officeart::Drawing drawing;
  drawing.read(views);
  return drawing;
}

// Every shape of the book's sheets has an id of its own, and every object one of its sheet's; throws nothing, fails the
// test otherwise.
inline void expectNoClash(const std::vector<Record>& stream, int sheets, const std::string& where) {
  std::set<std::uint32_t> shapes;
  std::set<std::uint16_t> drawings;
  for (int i = 1; i <= sheets; ++i) {
    const auto records = drawingRecords(substream(stream, i));
    if (records.empty()) continue;
    const officeart::Drawing drawing = drawingOf(records);
    drawing.forEachShapeId(
        [&](std::uint32_t id) { EXPECT_TRUE(shapes.insert(id).second) << where << " shape " << id; });
    if (drawing.hasShapes()) {
      EXPECT_TRUE(drawings.insert(drawing.id()).second) << where << " drawing " << drawing.id();
    }
    std::set<std::uint16_t> objects;
    for (const Record& record : records) {
      if (record.recordId != id::kObj) continue;
      std::uint16_t objectId = 0;
      std::memcpy(&objectId, record.bytes.data() + 6, sizeof(objectId));
      EXPECT_TRUE(objects.insert(objectId).second) << where << " object " << objectId;
    }
  }
}

}  // namespace rubrica::test
