// Test support for formulas, names and links: books with some sheets, and books put together record by record.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "engine/sheet.h"
#include "tests/biff/core/book_fixture.h"

namespace rubrica::test {

inline BookPtr bookWith(std::initializer_list<const char16_t*> sheets = {u"Sheet1"}) {
  BookPtr book = newBook();
  for (const char16_t* name : sheets) book->addSheet(name, nullptr);
  return book;
}

inline std::u16string formula(Book& book, int sheet, int row, int col) {
  return textOf(book.getSheet(sheet)->readFormula(row, col, nullptr));
}

inline std::vector<Bytes> bodiesOf(const Bytes& file, std::uint16_t recordId) {
  std::vector<Bytes> found;
  for (const Record& record : recordsOf(file)) {
    if (record.recordId == recordId) found.push_back(record.bytes);
  }
  return found;
}

// A file of one sheet, "Sheet1", with these records at the end of the globals and on the sheet.
inline Bytes bookFile(const std::vector<Record>& globals, const std::vector<Record>& cells,
                      std::uint16_t version = kBiff8Version) {
  std::vector<Record> records = bookAround(cells, version);
  // Styles come in the newer form; formulas do without.
  std::erase_if(records, [&](const Record& record) {
    return version != kBiff8Version && (record.recordId == id::kFont || record.recordId == id::kXf);
  });
  const auto end = std::find_if(records.begin(), records.end(), [](const Record& r) { return r.recordId == id::kEof; });
  records.insert(end, globals.begin(), globals.end());
  return fileOf(records);
}

// A Formula record with the value 0.
inline Record formulaRecord(unsigned row, unsigned col, const Bytes& tokens) {
  BytesBuilder body;
  body.u16(row).u16(col).u16(15).u32(0).u32(0).u16(0).u32(0).u16(static_cast<unsigned>(tokens.size()));
  return {id::kFormula, body.bytes(tokens)};
}

}  // namespace rubrica::test
