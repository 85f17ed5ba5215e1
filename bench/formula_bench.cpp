// Compile and print over formulas of 10 to 30,000 characters: time a character should not grow with the length.
#include <string>

#include <benchmark/benchmark.h>

#include "formula/compile.h"
#include "formula/print.h"
#include "tests/formula/fake_book.h"

namespace {

using namespace rubrica::formula;

// Operators of all precedences over cells, calls, numbers and texts.
std::u16string longFormula(std::size_t length) {
  static constexpr std::u16string_view pieces[] = {u"A1*2",       u"+SUM(B1:C9)", u"-Sheet2!D4", u"&\"text\"",
                                                   u"<COUNT(A1)", u"^(1.5+E5)",   u"/Rate",      u"=IF(A1>0,1,2)"};
  std::u16string text(pieces[0]);
  for (std::size_t i = 1; text.size() < length; ++i) text += i % 8 == 0 ? u"+A1" : pieces[i % 8];
  return text;
}

// Calls inside calls, up to the innermost 1.
std::u16string nestedFormula(std::size_t length) {
  std::u16string text, end;
  while (text.size() + end.size() + 5 < length) {
    text += u"ABS(";
    end += u')';
  }
  return text + u"1" + end;
}

using MakeFormula = std::u16string (*)(std::size_t);

void compileFormulas(benchmark::State& state, MakeFormula make) {
  const std::u16string text = make(static_cast<std::size_t>(state.range(0)));
  FakeBook book;
  Compiler compiler;  // one for all formulas, as a book has
  for (auto _ : state) benchmark::DoNotOptimize(compiler.compile(text, book, 0, 0));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void printFormulas(benchmark::State& state, MakeFormula make) {
  FakeBook book;
  const std::u16string text = make(static_cast<std::size_t>(state.range(0)));
  const auto tokens = compileFormula(text, book, 0, 0);
  for (auto _ : state) benchmark::DoNotOptimize(printFormula(tokens, book, false, 0, 0));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void lengths(benchmark::internal::Benchmark* run) {
  for (const int length : {10, 100, 1000, 10'000, 30'000}) run->Arg(length);
}

BENCHMARK_CAPTURE(compileFormulas, long, longFormula)->Apply(lengths);
BENCHMARK_CAPTURE(compileFormulas, nested, nestedFormula)->Apply(lengths);
BENCHMARK_CAPTURE(printFormulas, long, longFormula)->Apply(lengths);
BENCHMARK_CAPTURE(printFormulas, nested, nestedFormula)->Apply(lengths);

}  // namespace
