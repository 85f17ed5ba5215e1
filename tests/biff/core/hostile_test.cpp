// Files of any bytes: a load ends in success or in a message, and what did load can be read and saved.

#include "tests/biff/core/book_fixture.h"
#include "tests/support/corpus.h"
#include "tests/support/temporary_directory.h"

namespace rubrica {
namespace {

using test::Bytes;
using test::BytesBuilder;
using test::newBook;
using test::Record;

// A small book that has something of every kind.
Bytes goodFile() {
  test::OneSheet b;
  Format* format = b.book->addFormat();
  format->setNumFormat(b.book->addCustomNumFormat(u"0.00 \"kg\""));
  b.book->colorPack(1, 2, 3);
  b.sheet->writeNum(0, 0, 0.1, format);
  b.sheet->writeNum(0, 1, 7);
  b.sheet->writeStr(1, 0, u"some text");
  b.sheet->writeBool(1, 1, true);
  b.sheet->writeError(1, 2, ErrorType::ref);
  b.sheet->writeBlank(2, 2, format);
  b.sheet->writeFormulaStr(3, 0, u"A2&\"!\"", u"some text!");
  b.sheet->setHeader(u"&CTitle");
  b.sheet->setMarginLeft(1);
  b.book->addSheet(u"Second")->writeFormulaNum(0, 0, u"Sheet1!A1*2", 0.2);
  return test::savedBytes(*b.book);
}

// Visits everything that the interfaces offer to read, and saves.
void useBook(Book& book) {
  for (int i = 0; i < book.sheetCount(); ++i) {
    Sheet* sheet = book.getSheet(i);
    ASSERT_NE(sheet, nullptr);
    const int lastRow = std::min(sheet->lastRow(), 50), lastCol = std::min(sheet->lastCol(), 256);
    for (int row = 0; row < lastRow; ++row) {
      for (int col = 0; col < lastCol; ++col) {
        switch (sheet->cellType(row, col)) {
          case CellType::number:
            sheet->readNum(row, col);
            break;
          case CellType::string:
            sheet->readStr(row, col);
            break;
          default:
            sheet->readError(row, col);
        }
        if (sheet->isFormula(row, col)) sheet->readFormula(row, col);
        if (Format* format = sheet->cellFormat(row, col)) format->font();
        sheet->isDate(row, col);
      }
    }
    sheet->header();
    sheet->name();
  }
  const void* data = nullptr;
  std::size_t size = 0;
  book.saveRaw(&data, &size);
}

// Loads the bytes; whether they load or not, the book must answer and be of further use.
void expectLoadOrMessage(const Bytes& bytes) {
  const auto book = newBook();
  const bool loaded = test::loadBytes(*book, bytes);
  ASSERT_NE(book->errorMessage(), nullptr);
  EXPECT_EQ(loaded, std::string(book->errorMessage()) == "ok");
  useBook(*book);
}

TEST(HostileFiles, EveryPrefixOfAGoodFile) {
  const Bytes good = goodFile();
  for (std::size_t length = 0; length < good.size(); ++length) {
    expectLoadOrMessage(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)));
    if (HasFatalFailure()) FAIL() << "cut at " << length;
  }
}

TEST(HostileFiles, EveryByteOfAGoodFileChanged) {
  const Bytes good = goodFile();
  for (const int value : {0x00, 0x7F, 0xFF}) {
    for (std::size_t at = 0; at < good.size(); ++at) {
      Bytes changed = good;
      changed[at] = static_cast<std::byte>(value);
      if (changed == good) continue;
      expectLoadOrMessage(changed);
      if (HasFatalFailure()) FAIL() << "byte " << at << " set to " << value;
    }
  }
}

TEST(HostileFiles, EveryRecordCutShortOrEmptied) {
  const auto records = test::recordsOf(goodFile());
  for (std::size_t i = 0; i < records.size(); ++i) {
    for (const std::size_t size : {std::size_t{0}, records[i].bytes.size() / 2, records[i].bytes.size() - 1}) {
      if (size >= records[i].bytes.size()) continue;
      auto changed = records;
      changed[i].bytes.resize(size);
      expectLoadOrMessage(test::fileOf(changed));
    }
  }
}

TEST(HostileFiles, EveryRecordRepeatedDroppedOrMoved) {
  const auto records = test::recordsOf(goodFile());
  for (std::size_t i = 0; i < records.size(); ++i) {
    auto repeated = records, dropped = records, moved = records;
    repeated.insert(repeated.begin() + static_cast<std::ptrdiff_t>(i), records[i]);
    dropped.erase(dropped.begin() + static_cast<std::ptrdiff_t>(i));
    std::swap(moved[i], moved[(i * 7 + 3) % moved.size()]);
    expectLoadOrMessage(test::fileOf(repeated));
    expectLoadOrMessage(test::fileOf(dropped));
    expectLoadOrMessage(test::fileOf(moved));
  }
}

TEST(HostileFiles, CountsThatNoBytesStandBehind) {
  const std::vector<Record> lies = {{id::kHorzPageBreaks, BytesBuilder().u16(0xFFFF)},
                                    {id::kFormula, BytesBuilder().fill(20, 0).u16(0xFFFF)},
                                    {id::kShrFmla, BytesBuilder().fill(8, 0xFF).u16(0xFFFF)},
                                    {id::kArray, BytesBuilder().fill(12, 0xFF).u16(0xFFFF)},
                                    {id::kLabel, BytesBuilder().fill(6, 0).u16(0xFFFF).u8(1)},
                                    {id::kHeader, BytesBuilder().u16(0xFFFF).u8(1)},
                                    {id::kColInfo, BytesBuilder().u16(0xFFFF).u16(0).u16(0).u16(0xFFFF).u16(0).u16(0)},
                                    {id::kRow, BytesBuilder().u16(0xFFFF).fill(14, 0xFF)},
                                    {id::kDimensions, BytesBuilder().fill(14, 0xFF)}};
  for (const Record& lie : lies) expectLoadOrMessage(test::fileAround({lie}));
  Record formula{id::kFormula, BytesBuilder().u16(0).u16(0).u16(15).fill(14, 0).u16(5).u8(1).u16(9).u16(9)};
  for (const Record& lie : lies) expectLoadOrMessage(test::fileAround({formula, lie}));
}

TEST(HostileFiles, FormulaChainsThatLeadNowhereOrToThemselves) {
  const auto exp = [](unsigned row, unsigned toRow) {
    return Record{id::kFormula, BytesBuilder().u16(row).u16(0).u16(15).fill(14, 0).u16(5).u8(1).u16(toRow).u16(0)};
  };
  const auto book = test::loaded(test::fileAround({exp(0, 0), exp(1, 2), exp(2, 1), exp(3, 60000)}));
  Sheet* sheet = book->getSheet(0);
  for (int row = 0; row < 4; ++row) sheet->readFormula(row, 0);
  EXPECT_EQ(test::reloaded(*book)->getSheet(0)->cellType(3, 0), CellType::number);
}

TEST(HostileFiles, TheMalformedFilesAtHand) {
  const auto paths = test::corpusFiles("malformed");
  if (paths.empty()) GTEST_SKIP() << test::kNoCorpus;
  for (const auto& path : paths) {
    const std::string content = test::readText(path);
    const auto* bytes = reinterpret_cast<const std::byte*>(content.data());
    expectLoadOrMessage({bytes, bytes + content.size()});
  }
}

}  // namespace
}  // namespace rubrica
