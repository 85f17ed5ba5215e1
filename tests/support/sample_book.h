// A book of medium size with a little of everything, in either file form: what failing memory and failing files are
// tried on.
#pragma once

#include <ostream>
#include <string>

#include "engine/book_ptr.h"

namespace rubrica::test {

struct BookForm {
  const char* name;
  Book* (*create)() noexcept;
  const char16_t* extension;
  int rows, cols;  // of a sheet
};

// The name under which the test framework shows a form.
inline void PrintTo(const BookForm& form, std::ostream* out) {
  *out << form.name;
}

inline constexpr BookForm kBookForms[] = {{"xls", &createBiffBook, u".xls", 65536, 256},
                                          {"xlsx", &createXmlBook, u".xlsx", 1048576, 16384}};

// Fills the book as far as its operations succeed: each one that fails is passed over.
void fillSample(Book& book);

// The filled book's bytes as a save gives them.
std::string savedBytes(Book& book);

}  // namespace rubrica::test
