// Inserting and removing rows and columns, heights of every row, and fitting a column, beside a load of the same sheet.
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/number_sheet.h"

namespace {

using namespace rubrica;

constexpr int kCols = 16;

BookPtr filled(int rows) {
  return bench::numberSheet(&createBiffBook, rows, kCols);
}

void insertAndRemoveRow(benchmark::State& state) {
  const BookPtr book = filled(static_cast<int>(state.range(0)));
  Sheet* sheet = book->getSheet(0);
  for (auto _ : state) {
    sheet->insertRow(0, 0);
    sheet->removeRow(0, 0);
  }
}
BENCHMARK(insertAndRemoveRow)->Arg(15000)->Arg(30000)->Arg(60000)->Unit(benchmark::kMillisecond);

void insertAndRemoveColumn(benchmark::State& state) {
  const BookPtr book = filled(static_cast<int>(state.range(0)));
  Sheet* sheet = book->getSheet(0);
  for (auto _ : state) {
    sheet->insertCol(0, 0);
    sheet->removeCol(0, 0);
  }
}
BENCHMARK(insertAndRemoveColumn)->Arg(15000)->Arg(30000)->Arg(60000)->Unit(benchmark::kMillisecond);

void loadTheSame(benchmark::State& state) {
  const BookPtr book = filled(static_cast<int>(state.range(0)));
  const void* data = nullptr;
  std::size_t size = 0;
  book->saveRaw(&data, &size);
  for (auto _ : state) {
    const BookPtr loaded(createBiffBook());
    benchmark::DoNotOptimize(loaded->loadRaw(data, size));
  }
}
BENCHMARK(loadTheSame)->Arg(60000)->Unit(benchmark::kMillisecond);

void setEveryRow(benchmark::State& state) {
  const auto rows = static_cast<int>(state.range(0));
  for (auto _ : state) {
    const BookPtr book(createBiffBook());
    Sheet* sheet = book->addSheet(u"Rows");
    for (int row = 0; row < rows; ++row) sheet->setRow(row, 20);
  }
}
BENCHMARK(setEveryRow)->Arg(16384)->Arg(32768)->Arg(65536)->Unit(benchmark::kMillisecond);

void fitColumn(benchmark::State& state) {
  const BookPtr book = filled(static_cast<int>(state.range(0)));
  Sheet* sheet = book->getSheet(0);
  for (auto _ : state) sheet->setCol(0, 0, -1);
}
BENCHMARK(fitColumn)->Arg(15000)->Arg(60000)->Unit(benchmark::kMillisecond);

}  // namespace
