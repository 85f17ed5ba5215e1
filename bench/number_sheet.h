// A book with one sheet of numbers, for the benchmarks of operations that move rows and columns.
#pragma once

#include "engine/book_ptr.h"

namespace rubrica::bench {

// Of either form, by its factory.
inline BookPtr numberSheet(Book* (*create)() noexcept, int rows, int cols) {
  BookPtr book(create());
  Sheet* sheet = book->addSheet(u"Numbers");
  for (int row = 0; row < rows; ++row) {
    for (int col = 0; col < cols; ++col) sheet->writeNum(row, col, (row * cols + col) * 1.1 + 0.5);
  }
  return book;
}

}  // namespace rubrica::bench
