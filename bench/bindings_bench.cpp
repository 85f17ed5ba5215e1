// A worksheet of number cells read into rows and cells and written again, against a bare search for '<' in its text,
// and the other parts through the driver. Bytes a second are those of the XML text.
#include <cstring>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/part_texts.h"
#include "source/ooxml/comments.h"
#include "source/ooxml/drawing.h"
#include "source/ooxml/sharedStringTable.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/styles.h"
#include "source/ooxml/table.h"
#include "source/ooxml/workbook.h"

namespace {

using namespace rubrica;

constexpr int kColumns = 10;

std::string worksheetText(std::int64_t cells) {
  sheet::c_worksheet root;
  auto& data = root.get_sheetData();
  for (std::uint32_t r = 0; r < static_cast<std::uint32_t>(cells / kColumns); ++r) {
    auto& row = data.append_row();
    row.set_r(r + 1);
    for (std::uint16_t c = 0; c < kColumns; ++c) {
      auto& cell = row.append_c();
      cell.set_position(r, c);
      cell.set_v(std::to_string((r * kColumns + c) * 1.1 + 0.5));
    }
  }
  std::string text;
  root.marshal(text);
  return text;
}

void setBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// The plain pass over the same text that the others are measured by.
template <std::string (*Text)(std::int64_t)>
void searchMarkup(benchmark::State& state) {
  const std::string text = Text(state.range(0));
  for (auto _ : state) {
    std::size_t count = 0;
    const char* end = text.data() + text.size();
    for (const char* at = text.data(); at < end; ++at, ++count) {
      at = static_cast<const char*>(std::memchr(at, '<', static_cast<std::size_t>(end - at)));
      if (!at) break;
    }
    benchmark::DoNotOptimize(count);
  }
  setBytes(state, text);
}

void unmarshalWorksheet(benchmark::State& state) {
  const std::string text = worksheetText(state.range(0));
  for (auto _ : state) {
    sheet::c_worksheet root;
    if (root.unmarshal(text.data(), text.size()) != lmx::ELMX_OK) state.SkipWithError("not read");
    benchmark::DoNotOptimize(root);
  }
  setBytes(state, text);
}

void marshalWorksheet(benchmark::State& state) {
  const std::string text = worksheetText(state.range(0));
  sheet::c_worksheet root;
  root.unmarshal(text.data(), text.size());
  for (auto _ : state) {
    std::string written;
    if (root.marshal(written) != lmx::ELMX_OK) state.SkipWithError("not written");
    benchmark::DoNotOptimize(written);
  }
  setBytes(state, text);
}

template <class Root, std::string (*Text)(std::int64_t)>
void unmarshalPart(benchmark::State& state) {
  const std::string text = Text(state.range(0));
  for (auto _ : state) {
    Root root;
    if (root.unmarshal(text.data(), text.size()) != lmx::ELMX_OK) state.SkipWithError("not read");
    benchmark::DoNotOptimize(root);
  }
  setBytes(state, text);
}

BENCHMARK(searchMarkup<worksheetText>)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(unmarshalWorksheet)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(marshalWorksheet)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
// One part and the search in it, side by side.
#define BENCHMARK_PART(Root, Text, count)                                   \
  BENCHMARK(searchMarkup<Text>)->Arg(count)->Unit(benchmark::kMillisecond); \
  BENCHMARK(unmarshalPart<Root, Text>)->Arg(count)->Unit(benchmark::kMillisecond)

BENCHMARK_PART(styles::c_styleSheet, bench::stylesText, 20'000);
BENCHMARK_PART(sharedStringTable::c_sst, bench::sharedStringsText, 50'000);
BENCHMARK_PART(workbook::c_workbook, bench::workbookText, 10'000);
BENCHMARK_PART(comments::c_comments, bench::commentsText, 10'000);
BENCHMARK_PART(table::c_table, bench::tableText, 16'384);
BENCHMARK_PART(drawing::c_wsDr, bench::drawingText, 5'000);

}  // namespace
