// The shared pointer in which every host object holds the engine's book: its deleter calls release. The share also
// remembers which sheets were deleted from the book, since Worksheet and Cell objects hold sheets by raw pointers and
// may outlive them.
#pragma once

#include <boost/shared_ptr.hpp>

#include "engine/book.h"

namespace rubrica::host {

using BookPtr = boost::shared_ptr<Book>;

// Empty for a null book.
BookPtr shareBook(Book* book);

// Deletes or adds a sheet of a shared book and keeps the memory of deleted sheets.
bool deleteSheet(const BookPtr& book, int index);
Sheet* addSheet(const BookPtr& book, const char16_t* name, Sheet* initSheet);
bool isDeleted(const BookPtr& book, const Sheet* sheet);

}  // namespace rubrica::host
