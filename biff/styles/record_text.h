// The text that ends a Format or Style record, in the form of the book being read.
#pragma once

#include <cstdint>
#include <optional>

#include "biff/book_state.h"
#include "biff/unicode_string.h"

namespace rubrica {

// Reads `text` from the last `left` bytes of a record. Returns how many of them stay behind it; nothing when the text
// went on in a CONTINUE record, which these records never do. BIFF5 counts its characters in one byte; what is read
// is kept in the BIFF8 form.
std::optional<std::uint16_t> readRecordText(Xls& xls, BookState& state, std::uint16_t left, XLUnicodeString& text);

}  // namespace rubrica
