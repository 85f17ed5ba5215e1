// Formula cells of an .xls sheet beside number cells: writing 100,000 of each through the interface and saving them,
// and writing alone. The ratio of the two is what to look at; absolute times drift with the machine.
#include <string>

#include <benchmark/benchmark.h>

#include "engine/book_ptr.h"
#include "engine/sheet.h"

namespace {

using namespace rubrica;
constexpr int kRows = 6250, kCols = 16;

template <class WriteCell>
void fill(benchmark::State& state, WriteCell&& writeCell) {
  const bool save = state.range(0) != 0;
  for (auto _ : state) {
    const BookPtr book(createBiffBook());
    ISheetT<char16_t>& sheet = *book->addSheet(u"Sheet1", nullptr);
    for (int row = 0; row < kRows; ++row) {
      for (int col = 0; col < kCols; ++col) writeCell(sheet, row, col);
    }
    const void* data = nullptr;
    std::size_t size = 0;
    if (save) book->saveRaw(&data, &size);
    benchmark::DoNotOptimize(data);
  }
  state.SetItemsProcessed(state.iterations() * kRows * kCols);
}

void writeNumbers(benchmark::State& state) {
  fill(state, [](auto& sheet, int row, int col) { sheet.writeNum(row, col, (row * 10 + col) * 1.1 + 0.5, nullptr); });
}

void writeFormulas(benchmark::State& state) {
  const std::u16string formulas[] = {u"A1+B2*2", u"SUM(A1:B10)", u"IF(A1>0,A1,-A1)", u"ROUND(C3/7,2)&\" km\""};
  fill(state, [&](auto& sheet, int row, int col) {
    sheet.writeFormulaNum(row, col, formulas[(row + col) % 4].c_str(), row, nullptr);
  });
}

BENCHMARK(writeNumbers)->ArgName("save")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(writeFormulas)->ArgName("save")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
