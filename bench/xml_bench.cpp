// Reading and writing of sheet XML, against a memchr pass over the same text.
#include <charconv>
#include <cstring>

#include <benchmark/benchmark.h>

#include "lmx/c_xml_reader.h"
#include "lmx/c_xml_writer.h"

namespace {

using namespace rubrica::lmx;

constexpr int kRows = 20000;
constexpr int kColumns = 10;

// A worksheet of numbers as spreadsheet programs write it.
const std::string& sheet() {
  static const std::string text = [] {
    std::string out = R"(<?xml version="1.0" encoding="UTF-8"?><worksheet xmlns="urn:m"><sheetData>)";
    for (int r = 0; r < kRows; ++r) {
      out += "<row r=\"" + std::to_string(r + 1) + "\">";
      for (int c = 0; c < kColumns; ++c) {
        char number[32];
        const auto end = std::to_chars(number, number + sizeof number, (r * 10 + c) * 1.1 + 0.5);
        out += std::string("<c r=\"") + static_cast<char>('A' + c) + std::to_string(r + 1) + "\"><v>";
        out.append(number, end.ptr);
        out += "</v></c>";
      }
      out += "</row>";
    }
    return out + "</sheetData></worksheet>";
  }();
  return text;
}

// Strings as a shared string table holds them, with references and characters beyond ASCII.
const std::string& strings() {
  static const std::string text = [] {
    std::string out = R"(<?xml version="1.0" encoding="UTF-8"?><sst xmlns="urn:m">)";
    for (int i = 0; i < 100000; ++i) {
      out += "<si><t>text " + std::to_string(i) +
             (i % 10 == 0 ? " &amp; more"
                          : " \xC3\xBC"
                            "ber alles") +
             "</t></si>";
    }
    return out + "</sst>";
  }();
  return text;
}

void count_bytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(text.size()));
}

void memchrPass(benchmark::State& state) {
  const std::string& text = sheet();
  for (auto _ : state) {
    std::size_t count = 0;
    const char* end = text.data() + text.size();
    for (const char* p = text.data();
         (p = static_cast<const char*>(std::memchr(p, '<', static_cast<std::size_t>(end - p)))); ++p) {
      ++count;
    }
    benchmark::DoNotOptimize(count);
  }
  count_bytes(state, text);
}
BENCHMARK(memchrPass);

constexpr name_row kElements[] = {
    {1000, 9, 13, "worksheet"}, {1000, 9, 14, "sheetData"}, {1000, 3, 15, "row"}, {1000, 1, 16, "c"},
    {1000, 1, 17, "v"},         {1000, 2, 18, "si"},        {1000, 1, 19, "t"},   {}};
constexpr name_row kAttributes[] = {{1, 1, 13, "r"}, {1, 1, 14, "s"}, {1, 1, 15, "t"}, {}};
constexpr namespace_row kNamespaces[] = {{1000, "", "urn:m"}, {}};

std::size_t tokeniseAll(c_xml_reader& reader) {
  reader.add_namespace_mapping(kNamespaces);
  std::size_t sum = 0;
  for (;;) {
    const int event = reader.get_element_event();
    if (event == TOKEN_END_OF_INPUT || event == TOKEN_FAILURE) return sum;
    if (event != TOKEN_NAME) continue;
    const int element = reader.tokenise(kElements, true);
    std::string_view value;
    int attribute = reader.get_attribute_event();
    for (; attribute == TOKEN_NAME; attribute = reader.get_attribute_event()) {
      reader.tokenise(kAttributes, false);
      if (reader.get_attribute_value(value, white_space::collapse)) sum += value.size();
    }
    if ((element == 17 || element == 19) && attribute == TOKEN_START_TAG_END &&
        reader.get_simple_type_value(value, white_space::keep)) {
      sum += value.size();
    }
  }
}

void readEvents(benchmark::State& state, const std::string& text, bool fast) {
  for (auto _ : state) {
    c_xml_reader_memory reader(text.data(), text.size());
    if (!fast) reader.disable_fast_lane();
    benchmark::DoNotOptimize(tokeniseAll(reader));
  }
  count_bytes(state, text);
}

void readSheet(benchmark::State& state) {
  readEvents(state, sheet(), true);
}
void readSheetByLayers(benchmark::State& state) {
  readEvents(state, sheet(), false);
}
void readStrings(benchmark::State& state) {
  readEvents(state, strings(), true);
}
BENCHMARK(readSheet);
BENCHMARK(readSheetByLayers);
BENCHMARK(readStrings);

void writeSheet(benchmark::State& state) {
  std::string out;
  for (auto _ : state) {
    out.clear();
    c_xml_writer writer(out);
    c_xml_writer::frame root(writer);
    writer.start_element("sheetData");
    for (std::uint32_t r = 0; r < kRows; ++r) {
      c_xml_writer::frame row(writer);
      writer.start_element("row");
      writer.write_attribute("r", r + 1);
      for (std::uint32_t c = 0; c < kColumns; ++c) {
        c_xml_writer::frame cell(writer);
        writer.start_element("c");
        writer.write_attribute("s", c);
        {
          c_xml_writer::frame value(writer);
          writer.start_element("v");
          writer.write_element_body(r * 10 + c);
          writer.end_element("v");
        }
        writer.end_element("c");
      }
      writer.end_element("row");
    }
    writer.end_element("sheetData");
    benchmark::DoNotOptimize(out.data());
  }
  count_bytes(state, out);
}
BENCHMARK(writeSheet);

}  // namespace
