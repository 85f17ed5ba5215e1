// Compiles any text. A formula that compiles must be cut into whole tokens again, and when it prints and the print
// compiles, it prints as itself from then on. Calls of unknown functions are left out of that: they print the name and
// the arguments as they come, which reads as something else.
#include <cstdint>
#include <cstdlib>
#include <span>

#include "engine/xlerror.h"
#include "formula/compile.h"
#include "formula/function_table.h"
#include "formula/print.h"
#include "formula/ptg.h"
#include "formula/token_walk.h"
#include "tests/formula/fake_book.h"

namespace {

using namespace rubrica::formula;

std::u16string printedText(std::span<const std::uint8_t> tokens, const FakeBook& book) {
  try {
    return printFormula(tokens, book, false, 0, 0);
  } catch (const rubrica::xlerror&) {
    return {};
  }
}

// Walks over all tokens; true when one of them calls a function that isn't in the table.
bool callsUnknownFunction(std::span<const std::uint8_t> tokens) {
  TokenWalk walk(tokens);
  std::size_t size = 0;
  bool result = false;
  for (Token token; walk.next(token); size += token.bytes.size()) {
    if (baseToken(token.first()) != ptg::FuncVar) continue;
    result = result || (token.bytes[2] | token.bytes[3] << 8) == kUserDefinedFunction;
  }
  if (size != tokens.size()) std::abort();
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::u16string text;
  // One byte a character, but for 0xFF, which makes the next two one character of the whole plane.
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0xFF && i + 2 < size) {
      text += static_cast<char16_t>(data[i + 1] | data[i + 2] << 8);
      i += 2;
    } else {
      text += data[i];
    }
  }
  FakeBook book;
  try {
    const auto tokens = compileFormula(text, book, 0, 0);
    const bool isFixedPoint = !callsUnknownFunction(tokens);
    const std::u16string first = printedText(tokens, book);
    if (first.empty()) return 0;
    const std::u16string second = printedText(compileFormula(first, book, 0, 0), book);
    if (isFixedPoint && !second.empty() && second != first) std::abort();
  } catch (const rubrica::xlerror&) {
  }
  return 0;
}
