// Opens a workbook of either file form for the tools, by its first bytes.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "engine/book.h"

namespace rubrica::tools {

struct BookRelease {
  void operator()(Book* book) const { book->release(); }
};
using BookPtr = std::unique_ptr<Book, BookRelease>;

// A new book of the form "xls" or "xlsx"; null for another form, or one that this build lacks.
BookPtr createBook(const std::string& form);

// "xls" or "xlsx" by the signature of the file; "xls" when it has neither, whose loader then says what is wrong.
std::string formOf(const std::string& path);

// The book in a file; null with the reason in `error`. Colours of an .xlsx book are read as RGB values.
struct OpenedBook {
  BookPtr book;
  std::string path, form, error;
};
OpenedBook openBook(const std::string& path);

// Command line arguments and the engine's file names.
std::u16string wideText(const std::string& utf8);
std::string narrowText(std::u16string_view text);

}  // namespace rubrica::tools
