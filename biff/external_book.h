// Another workbook that formulas refer to, as its SupBook record tells it: where it lies and what its sheets are
// called. Decoded once when the record is read; the record itself is carried as it came.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rubrica {

struct ExternalBook {
  std::u16string directory;  // with the separator at its end; empty when the file lies beside this one
  std::u16string file;
  std::vector<std::u16string> sheets;

  // What stands before the "!" of a reference, without quotes: "C:\dir\[Book.xls]Sheet", "[Book.xls]First:Last".
  // Nothing for positions that aren't sheets of this book.
  std::optional<std::u16string> sheetText(int first, int last) const;
};

// The book that a SupBook payload names; nothing for a book's reference to itself, add-ins, and links that have no
// sheets. Sheet names that the payload cuts off are left out.
std::optional<ExternalBook> externalBook(std::span<const std::byte> payload);

// A virtual path in readable form. It begins with 1 when it is encoded; the codes 1 to 8 within it stand for drives,
// separators and the directories of the program.
std::u16string readablePath(std::u16string_view virtualPath);

}  // namespace rubrica
