// The compiler: formula text becomes the token bytes that cells and names store. Takes time in proportion to the text
// and doesn't recurse. A book has a Compiler, which keeps its room from one formula to the next; the functions are for
// single formulas.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formula/book_access.h"
#include "formula/postfix_builder.h"
#include "formula/token_writer.h"

namespace rubrica::formula {

// The tokens of `text`, which may begin with "=". References are read in A1 form, names of functions in upper case,
// arguments parted by "," or ";", decimals by ".". An empty formula has no tokens. `sheetIndex` and `scope` go to the
// book with every name that is looked up.
//
// Every call but OFFSET (reference class) and TODAY (volatile, fixed count) is a PtgFuncVar of value class with the low
// eight bits of its argument count. A wrong number of arguments compiles. A number with a second "." ends before it;
// one that is too large for a double becomes the largest double.
//
// Throws xlerror: the messages of postfixFromInfix, parseCell and functionItem, "ShortXLUnicodeString: string is too
// long" for a text of more than 255 characters, "incorrect token in formula" for anything unknown, a sheet's name
// included.
std::vector<std::uint8_t> compileFormula(std::u16string_view text, BookAccess& book, int sheetIndex, int scope);

// The second stage alone, from postfix text.
std::vector<std::uint8_t> tokensFromPostfix(std::u16string_view postfix, BookAccess& book, int sheetIndex, int scope);

class Compiler {
 public:
  // As the functions above; the bytes are good until the next call.
  std::span<const std::uint8_t> compile(std::u16string_view text, BookAccess& book, int sheetIndex, int scope);
  std::span<const std::uint8_t> compilePostfix(std::u16string_view postfix, BookAccess& book, int sheetIndex,
                                               int scope);

 private:
  std::u16string _prepared;
  PostfixBuilder _builder;
  TokenWriter _writer;
};

}  // namespace rubrica::formula
