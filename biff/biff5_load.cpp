#include "biff/biff5_load.h"

#include <algorithm>
#include <iterator>

#include "formula/ptg.h"

namespace rubrica {
namespace {

// EXTERNCOUNT, EXTERNSHEET, EXTERNNAME, NOTE's continuation text, PLS, IMDATA, OBJ, TXO, and the chart and pivot
// records whose texts are 8-bit.
constexpr std::uint16_t kBiff5Only[] = {22, 23, 35, 77, 93, 127, 161, 176, 182, 197, 198, 199, 205, 206, 220, 438};

constexpr std::uint8_t kRefError = 23;

}  // namespace

bool isBiff5Only(std::uint16_t recordId) {
  return std::find(std::begin(kBiff5Only), std::end(kBiff5Only), recordId) != std::end(kBiff5Only);
}

std::vector<std::uint8_t> biff8Tokens(std::span<const std::uint8_t> tokens, formula::Biff5Access& book) {
  if (tokens.empty()) return {};
  auto converted = formula::biff8FromBiff5(tokens, book);
  return converted ? std::move(*converted) : std::vector<std::uint8_t>{formula::ptg::Err, kRefError};
}

void takeContinues(Xls& xls, std::vector<RawRecord>& records) {
  for (std::uint16_t size = 0; xls.goNextIfContinue(size); size = 0) {
    records.push_back(RawRecord::of(id::kContinue, xls.view(size)));
  }
}

}  // namespace rubrica
