// Formulas as text: finding the references in one and writing them anew, without a parse of the rest. Text is UTF-8, as
// the tree holds it. Strings, sheet names in quotes, structured references, functions and names are left alone. Free
// functions without state.
#pragma once

#include <string>
#include <string_view>

namespace rubrica {

// Moves the relative references of an A1 formula, as a copy of it that many rows and columns away would have them. One
// that leaves the sheet becomes "#REF!".
std::string shiftReferences(std::string_view formula, int rows, int cols);

// The same formula with its references in the other style, for a cell at `row` and `col`, 0-based.
std::string r1c1FromA1(std::string_view formula, int row, int col);
std::string a1FromR1c1(std::string_view formula, int row, int col);

}  // namespace rubrica
