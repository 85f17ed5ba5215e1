// Inserting a row in the middle of a large .xlsx sheet, and appending to it, beside a load of the same sheet.

#include <benchmark/benchmark.h>

#include "bench/number_sheet.h"

namespace {

using namespace rubrica;

constexpr int kCols = 10;

BookPtr filled(int rows) {
  return bench::numberSheet(&createXmlBook, rows, kCols);
}

void insertRowInTheMiddle(benchmark::State& state) {
  const int rows = static_cast<int>(state.range(0));
  const BookPtr book = filled(rows);
  for (auto _ : state) book->getSheet(0)->insertRow(rows / 2, rows / 2);
}
BENCHMARK(insertRowInTheMiddle)->Arg(250000)->Arg(500000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void removeRowInTheMiddle(benchmark::State& state) {
  const int rows = static_cast<int>(state.range(0));
  const BookPtr book = filled(rows);
  for (auto _ : state) book->getSheet(0)->removeRow(rows / 2, rows / 2);
}
BENCHMARK(removeRowInTheMiddle)->Arg(1000000)->Unit(benchmark::kMillisecond);

void appendARow(benchmark::State& state) {
  int row = static_cast<int>(state.range(0));
  const BookPtr book = filled(row);
  Sheet* sheet = book->getSheet(0);
  for (auto _ : state) sheet->setRow(row++, 20);
}
BENCHMARK(appendARow)->Arg(1000)->Arg(100000)->Iterations(10000);

void loadTheSame(benchmark::State& state) {
  const BookPtr book = filled(static_cast<int>(state.range(0)));
  const void* data = nullptr;
  std::size_t size = 0;
  book->saveRaw(&data, &size);
  for (auto _ : state) {
    const BookPtr loaded(createXmlBook());
    benchmark::DoNotOptimize(loaded->loadRaw(data, size));
  }
}
BENCHMARK(loadTheSame)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace
