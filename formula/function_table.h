// The worksheet and macro functions that a formula can call: name, published BIFF function number, fixed argument count
// and which arguments are taken by reference. Constant data, in the rows of function_table.cpp; used by the compiler
// and the printer of every book without locks.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace rubrica::formula {

struct FunctionRow {
  std::u16string_view name;
  std::uint16_t number;
  // How many arguments the function always has: PtgFunc, unlike PtgFuncVar, doesn't say it. 0 for functions whose
  // number of arguments varies and for those without any.
  std::uint8_t fixedCount;
  // Bit k is set when argument k, counted from 0, is taken by reference. Arguments from 32 on reuse the bits.
  std::uint32_t referenceMask;
};

// The number of "USERDEFINED", the table's call of a function that it doesn't know.
inline constexpr std::uint16_t kUserDefinedFunction = 255;

// All rows in the order of their names.
std::span<const FunctionRow> functionRows();

// The row with exactly this name (names are upper case), or null.
const FunctionRow* findFunction(std::u16string_view name);

// The row with this number, or null.
const FunctionRow* findFunction(std::uint16_t number);

}  // namespace rubrica::formula
