// BookPtr: a book that is released when its owner goes. For programs that hold books of their own; whoever shares a
// book with others gives release to the pointer it shares by.
//
//   const rubrica::BookPtr book(rubrica::createXmlBook());
#pragma once

#include <memory>

#include "engine/book.h"

namespace rubrica {

struct ReleaseBook {
  void operator()(Book* book) const { book->release(); }
};
using BookPtr = std::unique_ptr<Book, ReleaseBook>;

}  // namespace rubrica
