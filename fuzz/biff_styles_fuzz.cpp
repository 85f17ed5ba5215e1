// Reads any bytes as the font, format, style, palette and string records of a workbook stream. What was read is written
// and must then be readable, and written again must give the same bytes. The first byte chooses BIFF5 or BIFF8.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "biff/records/record_ids.h"
#include "biff/shared_strings/sst.h"
#include "biff/styles/style_tables.h"
#include "engine/xlerror.h"
#include "platform/output_stream.h"

namespace {

using namespace rubrica;

struct Book {
  BookState state;
  StyleTables tables{state};
  StrMap strings{state.pool};
  ExtSst extSst;
};

void readRecord(Book& book, Xls& xls, std::uint16_t recordId, std::uint16_t size) {
  switch (recordId) {
    case id::kFont:
      return book.tables.readFont(xls, size);
    case id::kFormat:
      return book.tables.readFormat(xls, size);
    case id::kXf:
      return book.tables.readXf(xls, size);
    case id::kStyle:
      return book.tables.readStyle(xls, size);
    case id::kPalette:
      return book.tables.readPalette(xls, size);
    case id::kSst:
      return readSst(xls, size, book.strings);
    case id::kExtSst:
      return book.extSst.read(xls, size);
    default:
      xls.skip(size);
  }
}

void readAll(Book& book, Xls& xls, const std::vector<std::byte>& file) {
  xls.read(file);
  while (!xls.isEnd()) {
    std::uint16_t recordId = 0, size = 0;
    xls.readInt16(recordId);
    xls.readInt16(size);
    if (recordId == id::kEof) return;
    readRecord(book, xls, recordId, size);
  }
}

template <class Write>
std::vector<std::byte> fileOf(Write write) {
  platform::MemoryOutput output;
  Xls xls;
  xls.reset(true);
  xls.attach(output);
  xls.start();
  write(xls);
  xls.writeHeader(id::kEof, 0);
  xls.close();
  return output.release();
}

std::vector<std::byte> saved(const Book& book) {
  return fileOf([&](Xls& xls) {
    book.tables.writeFonts(xls);
    book.tables.writeFormats(xls);
    book.tables.writeXfs(xls);
    book.tables.writeStyles(xls);
    book.tables.writePalette(xls);
    writeSst(xls, book.strings);
    book.extSst.write(xls);
  });
}

// What a caller would do with a loaded book.
void use(Book& book) {
  for (int i = 0; i < book.tables.formatCount(); ++i) {
    FormatImpl* format = book.tables.format(i);
    format->font();
    format->numFormatText();
    book.tables.isDateNumFormat(format->numFormat());
  }
  for (int i = 0; i < book.tables.fontCount(); ++i) book.tables.font(i)->name();
  if (book.tables.formatCount() > 0) book.tables.addFormat(book.tables.format(0));
  const auto index = book.strings.add(u"added");
  book.strings.set(index / 2, u"changed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto file = fileOf([&](Xls& xls) { xls.write(data + 1, size - 1); });
  Book book;
  if (data[0] % 2 != 0) book.state.biffVersion = kBiff5Version;
  try {
    Xls xls;
    readAll(book, xls, file);
  } catch (const xlerror&) {
    // A load that fails leaves a partly filled book, which is still used and saved.
  }
  try {
    use(book);
  } catch (const xlerror&) {
    // Ids or lengths that a new entry can't have.
  }
  const auto first = saved(book);
  Book again;
  Xls xls;
  readAll(again, xls, first);
  if (saved(again) != first) std::abort();
  return 0;
}
