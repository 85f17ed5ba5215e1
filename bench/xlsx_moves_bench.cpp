// Inserting a row in the middle of a large .xlsx sheet, and appending to it, beside a load of the same sheet.
#include <memory>

#include <benchmark/benchmark.h>

#include "engine/book.h"

namespace {

using namespace rubrica;

constexpr int kCols = 10;

struct Release {
  void operator()(Book* book) const { book->release(); }
};
using BookPtr = std::unique_ptr<Book, Release>;

BookPtr filled(int rows) {
  BookPtr book(createXmlBook());
  Sheet* sheet = book->addSheet(u"Numbers");
  for (int row = 0; row < rows; ++row) {
    for (int col = 0; col < kCols; ++col) sheet->writeNum(row, col, (row * kCols + col) * 1.1 + 0.5);
  }
  return book;
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
