// Test support: a book of one sheet with made-up text metrics, and what a save writes for it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "biff/book_impl.h"
#include "tests/biff/record_stream.h"
#include "tests/engine/fake_metrics.h"

namespace rubrica::test {

struct TestBook {
  std::unique_ptr<BookImplT> book = std::make_unique<BookImplT>();
  Sheet* sheet = nullptr;

  explicit TestBook(int digit = 7) {
    book->setTextMetrics(std::make_unique<FakeMetrics>(digit));
    sheet = book->addSheet(u"One", nullptr);
  }
  std::string message() const { return book->errorMessage(); }

  // The whole workbook stream that a save writes.
  std::vector<Record> records() {
    const void* data = nullptr;
    std::size_t size = 0;
    EXPECT_TRUE(book->saveRaw(&data, &size)) << message();
    Xls xls;
    xls.read({static_cast<const std::byte*>(data), size});
    std::vector<Record> all;
    for (int ends = 0; ends < 1 + book->sheetCount();) {
      std::uint16_t recordId = 0, length = 0;
      xls.readInt16(recordId);
      xls.readInt16(length);
      if (xls.isEnd()) break;
      const auto body = xls.view(length);
      all.push_back({recordId, {body.begin(), body.end()}});
      if (recordId == id::kEof) ++ends;
    }
    return all;
  }
  // The bodies of the saved records of one id, in file order.
  std::vector<Bytes> saved(std::uint16_t recordId) {
    std::vector<Bytes> bodies;
    for (const Record& record : records()) {
      if (record.recordId == recordId) bodies.push_back(record.bytes);
    }
    return bodies;
  }
  // Loads what a save writes, with `more` put in front of the last sheet's end.
  bool reload(const std::vector<Record>& more = {}) {
    std::vector<Record> all = records();
    all.insert(all.end() - 1, more.begin(), more.end());
    const auto file = fileOf(all);
    const bool loaded = book->loadRaw(file.data(), file.size(), -1, -1, -1);
    sheet = loaded ? book->getSheet(0) : nullptr;
    return loaded;
  }
  std::u16string str(int row, int col) {
    const char16_t* text = sheet->readStr(row, col);
    return text == nullptr ? u"<none>" : text;
  }
};

// How a call that should fail failed.
#define EXPECT_REFUSED(book, call, text) \
  do {                                   \
    EXPECT_FALSE(call);                  \
    EXPECT_EQ((book).message(), text);   \
  } while (false)

}  // namespace rubrica::test
