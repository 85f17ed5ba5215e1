// The shared string table at a million references: adding, writing, reading, and the lookup of formats by pointer.
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "biff/shared_strings/sst.h"
#include "biff/styles/style_tables.h"
#include "platform/output_stream.h"

namespace {

using namespace rubrica;

constexpr std::uint32_t kReferences = 1'000'000;

std::vector<std::u16string> texts(std::uint32_t count) {
  std::vector<std::u16string> all;
  for (std::uint32_t i = 0; i < count; ++i) {
    std::u16string text = u"text-";
    for (const char c : std::to_string(i)) text += static_cast<char16_t>(c);
    all.push_back(std::move(text));
  }
  return all;
}

void addStrings(benchmark::State& state) {
  const auto all = texts(static_cast<std::uint32_t>(state.range(0)));
  for (auto _ : state) {
    RecordPool pool;
    StrMap strings(pool);
    for (std::uint32_t i = 0; i < kReferences; ++i) benchmark::DoNotOptimize(strings.add(all[i % all.size()]));
  }
  state.SetItemsProcessed(state.iterations() * kReferences);
}
BENCHMARK(addStrings)->Arg(50'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

std::vector<std::byte> fileWith(const StrMap& strings) {
  platform::MemoryOutput output;
  Xls xls;
  xls.reset(true);
  xls.attach(output);
  xls.start();
  writeSst(xls, strings);
  xls.close();
  return output.release();
}

void writeStrings(benchmark::State& state) {
  RecordPool pool;
  StrMap strings(pool);
  for (const auto& text : texts(static_cast<std::uint32_t>(state.range(0)))) strings.add(text);
  for (auto _ : state) benchmark::DoNotOptimize(fileWith(strings));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(writeStrings)->Arg(50'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void readStrings(benchmark::State& state) {
  RecordPool pool;
  StrMap strings(pool);
  for (const auto& text : texts(static_cast<std::uint32_t>(state.range(0)))) strings.add(text);
  const auto file = fileWith(strings);
  for (auto _ : state) {
    RecordPool loadedPool;
    StrMap loaded(loadedPool);
    Xls xls;
    xls.read(file);
    std::uint16_t recordId = 0, size = 0;
    xls.readInt16(recordId);
    xls.readInt16(size);
    readSst(xls, size, loaded);
    benchmark::DoNotOptimize(loaded.cstUnique());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readStrings)->Arg(50'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void replaceStrings(benchmark::State& state) {
  RecordPool pool;
  StrMap strings(pool);
  const auto all = texts(100'000);
  for (const auto& text : all) strings.add(text);
  std::uint32_t i = 0;
  for (auto _ : state) {
    strings.set(i, all[i]);
    i = (i + 1) % 100'000;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(replaceStrings);

void copyFormats(benchmark::State& state) {
  for (auto _ : state) {
    BookState book;
    StyleTables tables(book);
    tables.createDefaults();
    FormatImpl* format = tables.addFormat(nullptr);
    for (std::int64_t i = 0; i < state.range(0); ++i) format = tables.addFormat(format);
    benchmark::DoNotOptimize(format);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(copyFormats)->Arg(4'000)->Arg(8'000)->Arg(16'000)->Unit(benchmark::kMillisecond);

void findFormats(benchmark::State& state) {
  constexpr int kFormats = 4'000;
  BookState book;
  StyleTables tables(book);
  std::vector<const Format*> formats;
  formats.reserve(kFormats);
  for (int i = 0; i < kFormats; ++i) formats.push_back(tables.addFormat(nullptr));
  for (auto _ : state) {
    for (const Format* format : formats) benchmark::DoNotOptimize(tables.indexOf(format));
  }
  state.SetItemsProcessed(state.iterations() * kFormats);
}
BENCHMARK(findFormats);

}  // namespace
