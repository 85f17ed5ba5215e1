// What a strict reader would not accept in a book of either file form, as far as the interfaces show it: bad and double
// names, overlapping merged ranges, no sheet to look at.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/book.h"

namespace rubrica::tools {

// `form` is the file form of the book.
std::vector<std::string> bookComplaints(Book& book, const std::string& form);

// Why a program would refuse the name; empty for a good one.
std::string sheetNameComplaint(std::u16string_view name);
std::string definedNameComplaint(std::u16string_view name, const std::string& form);

}  // namespace rubrica::tools
