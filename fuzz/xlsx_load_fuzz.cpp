// A whole .xlsx file: loaded, read through the interfaces, changed, saved, and what was saved loaded again. A book that
// loads must save, and what it saves must load. The input is an archive, or, so that a mutation isn't lost to a
// checksum, the archive's entries one after the other: each a line "@@ name" and its bytes up to the next such line.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/book_ptr.h"
#include "platform/output_stream.h"
#include "xml/part.h"
#include "xml/zip_writer.h"

namespace {

using namespace rubrica;

constexpr std::string_view kEntrySign = "@@ ";

std::string archiveOf(std::string_view entries) {
  std::vector<std::unique_ptr<BinaryFile>> parts;
  platform::MemoryOutput output;
  ZipWriter writer(output);
  while (entries.starts_with(kEntrySign)) {
    const std::size_t lineEnd = std::min(entries.find('\n'), entries.size() - 1);
    const std::string name(entries.substr(kEntrySign.size(), lineEnd - std::min(lineEnd, kEntrySign.size())));
    const std::size_t next = entries.find("\n@@ ", lineEnd);
    const std::size_t end = next == entries.npos ? entries.size() : next;
    const std::string_view content = entries.substr(std::min(lineEnd + 1, end), end - std::min(lineEnd + 1, end));
    parts.push_back(std::make_unique<BinaryFile>(content.data(), content.size()));
    writer.add("/" + name, *parts.back());
    entries = next == entries.npos ? std::string_view() : entries.substr(next + 1);
  }
  writer.finish();
  return {reinterpret_cast<const char*>(output.bytes().data()), output.bytes().size()};
}

void visitSheet(Sheet& sheet) {
  const int firstRow = std::max(sheet.firstRow(), 0), firstCol = std::max(sheet.firstCol(), 0);
  const int lastRow = std::min(sheet.lastRow(), firstRow + 32), lastCol = std::min(sheet.lastCol(), firstCol + 32);
  for (int row = firstRow; row < lastRow; ++row) {
    for (int col = firstCol; col < lastCol; ++col) {
      if (sheet.cellType(row, col) == CellType::empty) continue;
      sheet.readNum(row, col);
      sheet.readStr(row, col);
      sheet.readFormula(row, col);
      sheet.isDate(row, col);
      sheet.readComment(row, col);
      if (Format* format = sheet.cellFormat(row, col)) format->font();
    }
  }
  for (int i = 0; i < std::min(sheet.pictureSize(), 8); ++i) {
    int top = 0, left = 0, bottom = 0, right = 0, width = 0, height = 0, x = 0, y = 0;
    sheet.getPicture(i, &top, &left, &bottom, &right, &width, &height, &x, &y);
  }
}

void change(Book& book) {
  Sheet* sheet = book.getSheet(0);
  if (sheet == nullptr) return;
  sheet->writeStr(0, 0, u"changed");
  sheet->writeNum(1, 1, 0.1);
  sheet->insertRow(1, 1);
  sheet->removeCol(0, 0);
  book.addSheet(u"fuzzed copy", sheet);
  book.moveSheet(0, book.sheetCount());
  book.delSheet(0);
}

std::string saved(Book& book, const char* when) {
  const void* data = nullptr;
  std::size_t size = 0;
  if (!book.saveRaw(&data, &size)) {
    std::fprintf(stderr, "not saved %s: %s\n", when, book.errorMessage());
    std::abort();
  }
  return {static_cast<const char*>(data), size};
}

void mustLoad(const std::string& archive, const char* when) {
  const BookPtr again(createXmlBook());
  if (again->loadRaw(archive.data(), archive.size())) return;
  std::fprintf(stderr, "not loaded again %s: %s\n", when, again->errorMessage());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::string archive(input);
  try {
    if (input.starts_with(kEntrySign)) archive = archiveOf(input);
  } catch (const std::exception&) {
    return 0;  // names that no archive can hold
  }
  const BookPtr book(createXmlBook());
  if (!book->loadRaw(archive.data(), archive.size())) return 0;
  for (int i = 0; i < std::min(book->sheetCount(), 8); ++i) {
    if (Sheet* sheet = book->getSheet(i)) visitSheet(*sheet);
  }
  mustLoad(saved(*book, "unchanged"), "unchanged");
  change(*book);
  mustLoad(saved(*book, "changed"), "changed");
  return 0;
}
