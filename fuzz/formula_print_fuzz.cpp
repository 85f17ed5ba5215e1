// Prints any bytes as a formula, and converts them as a formula of an older workbook. What comes out of the conversion
// must be printable as far as the bytes that were understood.
#include <cstdint>
#include <cstdlib>
#include <span>

#include "engine/xlerror.h"
#include "formula/biff5_tokens.h"
#include "formula/print.h"
#include "tests/formula/fake_book.h"

namespace {

using namespace rubrica::formula;

class Biff5Book : public Biff5Access {
 public:
  std::optional<std::uint16_t> externSheetIndex(std::int16_t externIndex, std::uint16_t firstSheet,
                                                std::uint16_t) override {
    if (externIndex >= 0 || firstSheet > 2) return std::nullopt;
    return firstSheet;
  }
  std::optional<ExternName> externName(std::int16_t, std::uint16_t nameIndex) override {
    if (nameIndex == 0) return std::nullopt;
    return ExternName{0, nameIndex};
  }
  std::u16string text(std::string_view bytes) override { return {bytes.begin(), bytes.end()}; }
};

void print(std::span<const std::uint8_t> tokens, bool relative) {
  FakeBook book;
  book.externSheets = {{0, 0}, {2, 3}, {0, 1000}};
  try {
    if (printFormula(tokens, book, relative, 70, 7).empty()) std::abort();
  } catch (const rubrica::xlerror&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::uint8_t> tokens(data, size);
  print(tokens, false);
  print(tokens, true);
  Biff5Book book;
  if (const auto converted = biff8FromBiff5(tokens, book)) print(*converted, false);
  return 0;
}
