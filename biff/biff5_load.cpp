#include "biff/biff5_load.h"

#include <algorithm>
#include <iterator>

#include "formula/ptg.h"

namespace rubrica {
namespace {

// EXTERNCOUNT, EXTERNSHEET, EXTERNNAME, NOTE (whose text stands in the record), PLS, OBJ, IMDATA, COUNTRY (which BIFF8
// has in the globals alone), and the records of pivot tables and of text boxes, whose texts are 8-bit.
constexpr std::uint16_t kBiff5Only[] = {22, 23, 28, 35, 77, 93, 127, 140, 176, 182, 197, 198, 199, 205, 206, 220, 438};

constexpr std::uint8_t kRefError = 23;
constexpr std::size_t kMostTokens = kMaxRecordSize - 22;  // of a Formula record

}  // namespace

bool isBiff5Only(std::uint16_t recordId) {
  return std::find(std::begin(kBiff5Only), std::end(kBiff5Only), recordId) != std::end(kBiff5Only);
}

std::vector<std::uint8_t> biff8Tokens(std::span<const std::uint8_t> tokens, formula::Biff5Access& book) {
  if (tokens.empty()) return {};
  auto converted = formula::biff8FromBiff5(tokens, book);
  // The wider form of a formula that filled its record no longer fits into one.
  const bool usable = converted && converted->size() <= kMostTokens;
  return usable ? std::move(*converted) : std::vector<std::uint8_t>{formula::ptg::Err, kRefError};
}

void takeContinues(Xls& xls, std::vector<RawRecord>& records) {
  for (std::uint16_t size = 0; xls.goNextIfContinue(size); size = 0) {
    records.push_back(RawRecord::of(id::kContinue, xls.view(size)));
  }
}

}  // namespace rubrica
