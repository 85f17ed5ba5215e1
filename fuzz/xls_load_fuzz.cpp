// A whole .xls file: loaded, read through the interfaces, changed, saved, and what was saved loaded again. A book that
// loads must save, and what it saves must load.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "engine/book_ptr.h"

namespace {

using namespace rubrica;

void visitSheet(Sheet& sheet) {
  const int lastRow = std::min(sheet.lastRow(), sheet.firstRow() + 64), lastCol = std::min(sheet.lastCol(), 256);
  for (int row = sheet.firstRow(); row < lastRow; ++row) {
    for (int col = sheet.firstCol(); col < lastCol; ++col) {
      if (sheet.cellType(row, col) == CellType::empty) continue;
      sheet.readNum(row, col);
      sheet.readStr(row, col);
      sheet.readFormula(row, col);
      sheet.isDate(row, col);
      if (Format* format = sheet.cellFormat(row, col)) format->font();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const BookPtr book(createBiffBook());
  if (!book->loadRaw(data, size)) return 0;
  for (int i = 0; i < book->sheetCount(); ++i) visitSheet(*book->getSheet(i));
  if (book->sheetCount() > 0) {
    Sheet* sheet = book->getSheet(0);
    sheet->writeStr(0, 0, u"changed");
    sheet->writeNum(1, 1, 0.1);
    sheet->clear(0, 3, 0, 3);
    book->addSheet(u"fuzzed copy", sheet);
  }
  const void* saved = nullptr;
  std::size_t savedSize = 0;
  if (!book->saveRaw(&saved, &savedSize)) std::abort();
  const BookPtr again(createBiffBook());
  if (!again->loadRaw(saved, savedSize)) std::abort();
  return 0;
}
