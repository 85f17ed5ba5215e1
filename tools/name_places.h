// On which sheet the range of a book's name stands. The interfaces answer rows and columns but not the sheet; they do
// move the ranges along when rows are inserted, and that tells it.
#pragma once

#include <map>
#include <string>

#include "tools/book_opener.h"

namespace rubrica::tools {

// The position of the sheet for each name of the whole book that has a range, as far as it can be told: a range over
// all rows doesn't move. `first` is the book's first sheet. Loads the file once more where there is anything to find.
std::map<std::u16string, int> sheetsOfBookNames(const OpenedBook& opened, Sheet& first);

}  // namespace rubrica::tools
