// What loading a BIFF5 book takes beyond the forms of its records: such a book is held and saved as BIFF8.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "biff/records/record_io.h"
#include "formula/biff5_tokens.h"

namespace rubrica {

// Records that BIFF8 has too, but in another form, or that mean nothing without such ones: they can't be carried along.
bool isBiff5Only(std::uint16_t recordId);

// The tokens in BIFF8 form; the error constant #REF! where they have none.
std::vector<std::uint8_t> biff8Tokens(std::span<const std::uint8_t> tokens, formula::Biff5Access& book);

// Takes the CONTINUE records that come next, as records of their own, behind what they continue.
void takeContinues(Xls& xls, std::vector<RawRecord>& records);

}  // namespace rubrica
