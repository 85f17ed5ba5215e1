// Test support: .xls books made through the interfaces, saved and loaded in memory, and books put together record by
// record.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "engine/book.h"
#include "engine/sheet.h"
#include "tests/biff/record_stream.h"

namespace rubrica::test {

using Sheet = ISheetT<char16_t>;

struct ReleaseBook {
  void operator()(Book* book) const { book->release(); }
};
using BookPtr = std::unique_ptr<Book, ReleaseBook>;

inline BookPtr newBook(std::initializer_list<const char16_t*> sheets = {u"Sheet1"}) {
  BookPtr book(createBiffBook());
  for (const char16_t* name : sheets) book->addSheet(name, nullptr);
  return book;
}

inline Bytes savedBytes(Book& book) {
  const void* data = nullptr;
  std::size_t size = 0;
  EXPECT_TRUE(book.saveRaw(&data, &size)) << book.errorMessage();
  const auto* bytes = static_cast<const std::byte*>(data);
  return {bytes, bytes + size};
}

inline BookPtr loaded(const Bytes& bytes) {
  BookPtr book(createBiffBook());
  EXPECT_TRUE(book->loadRaw(bytes.data(), bytes.size(), -1, -1, -1)) << book->errorMessage();
  return book;
}

inline BookPtr reloaded(Book& book) {
  return loaded(savedBytes(book));
}

inline std::u16string formula(Book& book, int sheet, int row, int col) {
  const char16_t* text = book.getSheet(sheet)->readFormula(row, col, nullptr);
  return text == nullptr ? u"(null)" : text;
}

// All records of the workbook stream, globals and sheets.
inline std::vector<Record> recordsOf(const Bytes& file) {
  Xls xls;
  xls.read(file);
  std::vector<Record> all;
  for (;;) {
    std::uint16_t recordId = 0, size = 0;
    xls.readInt16(recordId);
    xls.readInt16(size);
    if (xls.isEnd() || recordId == 0) return all;
    const auto body = xls.view(size);
    all.push_back({recordId, {body.begin(), body.end()}});
  }
}

inline std::vector<Bytes> bodiesOf(const Bytes& file, std::uint16_t recordId) {
  std::vector<Bytes> found;
  for (const Record& record : recordsOf(file)) {
    if (record.recordId == recordId) found.push_back(record.bytes);
  }
  return found;
}

inline Record bof(unsigned version, unsigned type) {
  return {id::kBof, BytesBuilder().u16(version).u16(type).u16(0x20C0).u16(0x07CD).u32(0).u32(6)};
}

// A file of one sheet, "Sheet1", with these records among the globals and on the sheet.
inline Bytes fileOf(const std::vector<Record>& globals, const std::vector<Record>& cells, unsigned version = 0x0600) {
  platform::MemoryOutput output;
  Xls xls;
  xls.reset(true);
  xls.attach(output);
  xls.start();
  const auto write = [&](const Record& record) {
    xls.writeRecord(record.recordId, record.bytes.data(), static_cast<std::uint16_t>(record.bytes.size()));
  };
  write(bof(version, 5));
  BytesBuilder bound;
  bound.u32(0).u16(0).u8(6);
  if (version == 0x0600) bound.u8(0);
  write({id::kBoundSheet, bound.text("Sheet1")});
  for (const Record& record : globals) write(record);
  write({id::kEof, {}});
  write(bof(version, 16));
  for (const Record& record : cells) write(record);
  write({id::kEof, {}});
  xls.close();
  const auto bytes = output.bytes();
  return {bytes.begin(), bytes.end()};
}

// A Formula record with the value 0.
inline Record formulaRecord(unsigned row, unsigned col, const Bytes& tokens) {
  return {id::kFormula, BytesBuilder()
                            .u16(row)
                            .u16(col)
                            .u16(15)
                            .u32(0)
                            .u32(0)
                            .u16(0)
                            .u32(0)
                            .u16(static_cast<unsigned>(tokens.size()))
                            .bytes(tokens)};
}

}  // namespace rubrica::test
