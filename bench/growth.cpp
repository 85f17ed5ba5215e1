// One whole life of a book whose size grows in one dimension: made, filled, saved into memory, loaded and looked
// through. The growth table doubles each dimension step by step, and the instruction check counts small ones.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <sys/resource.h>

#include "engine/book_ptr.h"

namespace {

using namespace rubrica;

std::u16string numbered(const char16_t* before, int number) {
  std::u16string text = before;
  for (const char digit : std::to_string(number)) text.push_back(static_cast<char16_t>(digit));
  return text;
}

constexpr int kCols = 10;

bool fillRows(Book& book, int size) {
  Sheet* sheet = book.addSheet(u"Rows");
  for (int row = 0; row < size; ++row) {
    for (int col = 0; col < kCols; ++col) {
      if (!sheet->writeNum(row, col, row * 1.1 + col)) return false;
    }
  }
  return true;
}

bool fillSheets(Book& book, int size) {
  for (int i = 0; i < size; ++i) {
    Sheet* sheet = book.addSheet(numbered(u"Sheet", i).c_str());
    if (sheet == nullptr || !sheet->writeNum(i % 100, 0, i)) return false;
  }
  return true;
}

bool fillStrings(Book& book, int size) {
  Sheet* sheet = book.addSheet(u"Strings");
  for (int i = 0; i < size; ++i) {
    if (!sheet->writeStr(i / kCols, i % kCols, numbered(u"a text of its own, number ", i).c_str())) return false;
  }
  return true;
}

bool fillStyles(Book& book, int size) {
  Sheet* sheet = book.addSheet(u"Styles");
  for (int i = 0; i < size; ++i) {
    Format* format = book.addFormat();
    Font* font = book.addFont();
    if (format == nullptr || font == nullptr) return false;
    font->setSize(8 + i % 20);
    format->setFont(font);
    format->setBorder(BorderStyle::thin);
    if (!sheet->writeBlank(i / kCols, i % kCols, format)) return false;
  }
  return true;
}

bool fillMerges(Book& book, int size) {
  Sheet* sheet = book.addSheet(u"Merges");
  for (int i = 0; i < size; ++i) {
    const int row = i / kCols * 2, col = i % kCols * 2;
    if (!sheet->writeNum(row, col, i) || !sheet->setMerge(row, row + 1, col, col + 1)) return false;
  }
  return true;
}

bool fillNames(Book& book, int size) {
  Sheet* sheet = book.addSheet(u"Names");
  for (int i = 0; i < size; ++i) {
    if (!sheet->setNamedRange(numbered(u"name_", i).c_str(), i, i, 0, 1)) return false;
  }
  return true;
}

// A bitmap of one black pixel, made different from all others by bytes behind its end.
std::vector<unsigned char> pictureOf(int number) {
  std::vector<unsigned char> bytes = {'B', 'M', 62, 0, 0, 0, 0, 0,  0, 0, 58, 0, 0, 0, 40, 0, 0, 0, 1, 0, 0,
                                      0,   1,   0,  0, 0, 1, 0, 24, 0, 0, 0,  0, 0, 4, 0,  0, 0, 0, 0, 0, 0,
                                      0,   0,   0,  0, 0, 0, 0, 0,  0, 0, 0,  0, 0, 0, 0,  0, 0, 0, 0, 0};
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<unsigned char>(number >> shift));
  return bytes;
}

bool fillParts(Book& book, int size) {
  Sheet* sheet = book.addSheet(u"Pictures");
  for (int i = 0; i < size; ++i) {
    const auto bytes = pictureOf(i);
    const int picture = book.addPicture2(bytes.data(), bytes.size());
    if (picture < 0) return false;
    sheet->setPicture2(i, 0, picture, 10, 10);
  }
  return true;
}

// A thousand formulas of `size` terms.
bool fillFormulaLength(Book& book, int size) {
  Sheet* sheet = book.addSheet(u"Formulas");
  std::u16string formula = u"A1";
  for (int i = 1; i < size; ++i) formula += numbered(u"+A", i % 1000 + 1);
  for (int row = 0; row < 1000; ++row) {
    if (!sheet->writeFormulaNum(row, 1, formula.c_str(), 1)) return false;
  }
  return true;
}

struct Dimension {
  const char* name;
  bool (*fill)(Book& book, int size);
};
constexpr Dimension kDimensions[] = {
    {"rows", fillRows},     {"sheets", fillSheets}, {"strings", fillStrings}, {"styles", fillStyles},
    {"merges", fillMerges}, {"names", fillNames},   {"parts", fillParts},     {"formula-length", fillFormulaLength}};

long visit(Book& book) {
  long cells = 0;
  for (int i = 0; i < book.sheetCount(); ++i) {
    Sheet* sheet = book.getSheet(i);
    for (int row = sheet->firstRow(); row < sheet->lastRow(); ++row) {
      for (int col = sheet->firstCol(); col < sheet->lastCol(); ++col) {
        cells += sheet->cellType(row, col) != CellType::empty;
      }
    }
  }
  return cells;
}

int fail(const char* what, Book& book) {
  std::fprintf(stderr, "growth: %s: %s\n", what, book.errorMessage());
  return 1;
}

double processorSeconds(const rusage& usage) {
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

int wholeLife(Book* (*create)() noexcept, const Dimension& dimension, int size) {
  const auto start = std::chrono::steady_clock::now();
  rusage before{};
  getrusage(RUSAGE_SELF, &before);
  const BookPtr book(create());
  if (!dimension.fill(*book, size)) return fail("filling", *book);
  const void* data = nullptr;
  std::size_t bytes = 0;
  if (!book->saveRaw(&data, &bytes)) return fail("saving", *book);
  const BookPtr loaded(create());
  if (!loaded->loadRaw(data, bytes)) return fail("loading", *loaded);
  const long cells = visit(*loaded);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("seconds=%.6f processor=%.6f peakKB=%ld bytes=%zu cells=%ld\n", taken.count(),
              processorSeconds(usage) - processorSeconds(before), usage.ru_maxrss, bytes, cells);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4) {
    auto* create = std::strcmp(argv[1], "xls") == 0 ? &createBiffBook : &createXmlBook;
    for (const Dimension& dimension : kDimensions) {
      if (std::strcmp(dimension.name, argv[2]) == 0) return wholeLife(create, dimension, std::stoi(argv[3]));
    }
  }
  std::fputs("usage: growth xls|xlsx DIMENSION SIZE\nDIMENSION:", stderr);
  for (const Dimension& dimension : kDimensions) std::fprintf(stderr, " %s", dimension.name);
  std::fputs("\n", stderr);
  return 2;
}
