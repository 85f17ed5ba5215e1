// Test support: books in memory, the records that they save, and books loaded from records.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/book_ptr.h"
#include "tests/biff/record_stream.h"

namespace rubrica::test {

inline BookPtr newBook() {
  return BookPtr(createBiffBook());
}

// A new book with one sheet.
struct OneSheet {
  BookPtr book = newBook();
  Sheet* sheet = book->addSheet(u"Sheet1");
};

inline Bytes savedBytes(Book& book) {
  const void* data = nullptr;
  std::size_t size = 0;
  EXPECT_TRUE(book.saveRaw(&data, &size)) << book.errorMessage();
  const auto* bytes = static_cast<const std::byte*>(data);
  return {bytes, bytes + size};
}

inline bool loadBytes(Book& book, const Bytes& bytes) {
  return book.loadRaw(bytes.data(), bytes.size());
}

inline BookPtr loaded(const Bytes& bytes) {
  BookPtr book = newBook();
  EXPECT_TRUE(loadBytes(*book, bytes)) << book->errorMessage();
  return book;
}

// What a save and a load make of a book.
inline BookPtr reloaded(Book& book) {
  return loaded(savedBytes(book));
}

// All records of the workbook stream of a file, globals and sheets.
inline std::vector<Record> recordsOf(const Bytes& file) {
  Xls xls;
  xls.read(file);
  std::vector<Record> records;
  while (!xls.isEnd()) {
    std::uint16_t recordId = 0, size = 0;
    if (xls.readInt16(recordId) != 2 || recordId == 0) break;
    xls.readInt16(size);
    const auto body = xls.view(size);
    records.push_back({recordId, {body.begin(), body.end()}});
  }
  return records;
}

inline std::vector<Record> savedRecords(Book& book) {
  return recordsOf(savedBytes(book));
}

inline Bytes bof(std::uint16_t type, std::uint16_t version = kBiff8Version) {
  return BytesBuilder().u16(version).u16(type).u16(0x209A).u16(0x07CD).u32(0).u32(0x306);
}

// The records of a small book around the records of one worksheet.
inline std::vector<Record> bookAround(const std::vector<Record>& sheetRecords, std::uint16_t version = kBiff8Version) {
  BookPtr plain = newBook();
  std::vector<Record> records = {{id::kBof, bof(5, version)}};
  for (const Record& record : savedRecords(*plain)) {
    if (record.recordId == id::kFont || record.recordId == id::kXf) records.push_back(record);
  }
  BytesBuilder bound;
  bound.u32(0).u8(0).u8(0).u8(6);
  if (version == kBiff8Version) bound.u8(0);
  records.push_back({id::kBoundSheet, bound.text("Sheet1")});
  records.push_back({id::kEof, {}});
  records.push_back({id::kBof, bof(16, version)});
  records.insert(records.end(), sheetRecords.begin(), sheetRecords.end());
  records.push_back({id::kEof, {}});
  return records;
}

inline Bytes fileAround(const std::vector<Record>& sheetRecords) {
  return fileOf(bookAround(sheetRecords));
}

inline std::vector<std::uint16_t> idsOf(const std::vector<Record>& records) {
  std::vector<std::uint16_t> ids;
  for (const Record& record : records) ids.push_back(record.recordId);
  return ids;
}

// The records of the n-th substream (0: the globals) without its BOF and EOF.
inline std::vector<Record> substream(const std::vector<Record>& records, int n) {
  std::vector<Record> found;
  int at = -1, depth = 0;
  for (const Record& record : records) {
    if (record.recordId == id::kBof && depth++ == 0) {
      ++at;
      continue;
    }
    if (record.recordId == id::kEof && --depth == 0) continue;
    if (at == n) found.push_back(record);
  }
  return found;
}

inline const Record* findRecord(const std::vector<Record>& records, std::uint16_t recordId) {
  for (const Record& record : records) {
    if (record.recordId == recordId) return &record;
  }
  return nullptr;
}

inline std::u16string textOf(const char16_t* text) {
  return text == nullptr ? u"(null)" : text;
}

}  // namespace rubrica::test
