// A list of 60,000 lines and 20 columns goes into a sheet and comes back, through the component's exported function as
// a host calls it, beside the engine doing the same with the same values. The ratio is what to look at; what the
// substitute host itself needs for keeping and handing out its values is measured apart.
#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "engine/book_ptr.h"
#include "simhost/component_host.h"
#include "simhost/list.h"

namespace {

using namespace rubrica;
using simhost::Kind;
using simhost::Value;

constexpr int kRows = 60'000, kColumns = 20;

// What a column holds, over and over: numbers alone, or all that lists hold.
enum Workload { numbers = 0, mixed = 1 };
constexpr std::array<Kind, kColumns> kMixedKinds = {
    Kind::Integer,   Kind::Number, Kind::Character, Kind::Character, Kind::Boolean,   Kind::Date,   Kind::Number,
    Kind::Character, Kind::Number, Kind::Integer,   Kind::Integer,   Kind::Number,    Kind::Number, Kind::Character,
    Kind::Boolean,   Kind::Date,   Kind::Number,    Kind::Character, Kind::Character, Kind::Number};

Kind kindOf(Workload workload, int column) {
  return workload == numbers ? Kind::Number : kMixedKinds[static_cast<std::size_t>(column)];
}
double numberAt(int row, int column) {
  return (row * 10 + column) * 1.1 + 0.5;
}
int integerAt(int row, int column) {
  return row * 10 + column;
}
bool booleanAt(int row, int column) {
  return (row + column) % 3 == 0;
}
int dayAt(int row) {
  return row % 28 + 1;
}
int monthAt(int row) {
  return row / 28 % 12 + 1;
}
constexpr int kYear = 2026;
constexpr std::size_t kMostCharacters = 256;
// A thousand short texts in even columns, a text of its own for each cell in the others.
std::string textAt(int row, int column) {
  return column % 2 == 0 ? "item " + std::to_string(row % 1000)
                         : "a longer text of its own " + std::to_string(row * 100 + column);
}

Value valueAt(Workload workload, int row, int column) {
  switch (kindOf(workload, column)) {
    case Kind::Integer:
      return Value::integer(integerAt(row, column));
    case Kind::Boolean:
      return Value::boolean(booleanAt(row, column));
    case Kind::Character:
      return Value::utf8(textAt(row, column));
    case Kind::Date: {
      simhost::DateTime date;
      date.year = kYear;
      date.month = monthAt(row);
      date.day = dayAt(row);
      date.hasDate = true;
      date.subtype = simhost::shortDate;
      return Value::date(date);
    }
    default:
      return Value::number(numberAt(row, column));
  }
}

simhost::List makeList(Workload workload) {
  simhost::List list;
  for (int column = 0; column < kColumns; ++column) {
    const Kind kind = kindOf(workload, column);
    list.addColumn(
        {U"c" + simhost::textFromUtf8(std::to_string(column)), kind, kind == Kind::Date ? simhost::shortDate : 0, 0});
  }
  for (int row = 0; row < kRows; ++row) {
    list.addLine();
    for (int column = 0; column < kColumns; ++column) {
      list.set(static_cast<std::size_t>(row) + 1, static_cast<std::size_t>(column) + 1, valueAt(workload, row, column));
    }
  }
  return list;
}

// One host, one list a workload and a Workbook that holds it, for all runs.
simhost::ComponentHost& theHost() {
  static simhost::ComponentHost host(HOST_BENCH_COMPONENT);
  return host;
}

Value theList(Workload workload) {
  static const std::array<Value, 2> lists = {Value::list(makeList(numbers)), Value::list(makeList(mixed))};
  return lists[workload];
}

void call(simhost::Instance& object, const char* method, std::vector<Value> values, Value* result = nullptr) {
  simhost::Arguments arguments{std::move(values), {}};
  arguments.changed.assign(arguments.values.size(), false);
  Value answer = object.call(method, arguments);
  if (result != nullptr) *result = std::move(answer);
}

void countCells(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * kRows * kColumns);
}
Workload workloadOf(const benchmark::State& state) {
  return static_cast<Workload>(state.range(0));
}

void componentWrites(benchmark::State& state) {
  const Value list = theList(workloadOf(state));
  for (auto _ : state) {
    const auto book = theHost().create("Workbook");
    call(*book, "$populateWithList", {list});
    state.PauseTiming();
    if (book->property("$sheetCount").toInteger() != 1) state.SkipWithError("nothing was written");
    state.ResumeTiming();
  }
  countCells(state);
}

void componentReads(benchmark::State& state) {
  const auto book = theHost().create("Workbook");
  call(*book, "$populateWithList", {theList(workloadOf(state))});
  for (auto _ : state) {
    Value list;
    call(*book, "$extractList", {}, &list);
    state.PauseTiming();
    if (!list.isList() || list.listRef().lineCount() != kRows) state.SkipWithError("not all lines came back");
    list = Value();
    state.ResumeTiming();
  }
  countCells(state);
}

// ---- The engine alone

std::vector<std::u16string> theTexts() {
  std::vector<std::u16string> texts;
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      const std::string text = kindOf(mixed, column) == Kind::Character ? textAt(row, column) : std::string();
      texts.emplace_back(text.begin(), text.end());
    }
  }
  return texts;
}

void writeCell(Book& book, Sheet& sheet, Workload workload, int row, int column, Format* dateFormat,
               const std::vector<std::u16string>& texts) {
  switch (kindOf(workload, column)) {
    case Kind::Integer:
      sheet.writeNum(row, column, integerAt(row, column));
      break;
    case Kind::Boolean:
      sheet.writeBool(row, column, booleanAt(row, column));
      break;
    case Kind::Character:
      sheet.writeStr(row, column,
                     texts[static_cast<std::size_t>(row) * kColumns + static_cast<std::size_t>(column)].c_str());
      break;
    case Kind::Date:
      sheet.writeNum(row, column, book.datePack(kYear, monthAt(row), dayAt(row)), dateFormat);
      break;
    default:
      sheet.writeNum(row, column, numberAt(row, column));
  }
}

BookPtr writtenBook(Workload workload, const std::vector<std::u16string>& texts, bool byColumns) {
  BookPtr book(createBiffBook());
  Sheet& sheet = *book->addSheet(u"Sheet1");
  Format* dateFormat = book->addFormat();
  dateFormat->setNumFormat(numformat::date);
  if (byColumns) {
    for (int column = 0; column < kColumns; ++column) {
      for (int row = 0; row < kRows; ++row) writeCell(*book, sheet, workload, row, column, dateFormat, texts);
    }
  } else {
    for (int row = 0; row < kRows; ++row) {
      for (int column = 0; column < kColumns; ++column) {
        writeCell(*book, sheet, workload, row, column, dateFormat, texts);
      }
    }
  }
  return book;
}

void engineWrites(benchmark::State& state) {
  const std::vector<std::u16string> texts = theTexts();
  for (auto _ : state) benchmark::DoNotOptimize(writtenBook(workloadOf(state), texts, state.range(1) != 0));
  countCells(state);
}

// What a program has to ask for to know a cell as the list knows it. A date may hold a time, or be one alone, which
// only all of its parts tell.
double readCell(Book& book, Sheet& sheet, int row, int column) {
  switch (sheet.cellType(row, column)) {
    case CellType::number: {
      const double value = sheet.readNum(row, column);
      if (!sheet.isDate(row, column)) return value;
      int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
      book.dateUnpack(value, &year, &month, &day, &hour, &minute, &second, &millisecond);
      return day;
    }
    case CellType::string:
      return static_cast<double>(std::char_traits<char16_t>::length(sheet.readStr(row, column)));
    case CellType::boolean:
      return sheet.readBool(row, column) ? 1 : 0;
    default:
      return 0;
  }
}

void engineReads(benchmark::State& state) {
  const BookPtr book = writtenBook(workloadOf(state), theTexts(), true);
  Sheet& sheet = *book->getSheet(0);
  for (auto _ : state) {
    double sum = 0;
    if (state.range(1) != 0) {
      for (int column = 0; column < kColumns; ++column) {
        for (int row = 0; row < kRows; ++row) sum += readCell(*book, sheet, row, column);
      }
    } else {
      for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) sum += readCell(*book, sheet, row, column);
      }
    }
    benchmark::DoNotOptimize(sum);
  }
  if (sheet.lastRow() != kRows || sheet.lastCol() != kColumns) state.SkipWithError("a cell is missing");
  countCells(state);
}

// ---- The substitute host alone

// Asks for each value as the component does, by column, and does nothing with it.
void hostHandsOut(benchmark::State& state) {
  const Value list = theList(workloadOf(state));
  host::CallBlock block{};
  theHost().fill(block);
  const host::ValueTable& values = *block.valueTable;
  const host::ListHandle handle = block.listTable->fromField(simhost::handleOf(&list));
  for (auto _ : state) {
    double sum = 0;
    char32_t text[kMostCharacters];
    for (std::int16_t column = 1; column <= kColumns; ++column) {
      for (std::int32_t row = 1; row <= kRows; ++row) {
        const host::FieldHandle field = block.listTable->cell(handle, row, column);
        std::int32_t subtype = 0;
        switch (values.type(field, &subtype)) {
          case host::kind::character:
            sum += static_cast<double>(values.readText(field, text, std::size(text)));
            break;
          case host::kind::date: {
            host::DateParts parts;
            values.readDate(field, &parts);
            sum += parts.day;
            break;
          }
          case host::kind::boolean:
            sum += values.readBoolean(field, nullptr);
            break;
          case host::kind::integer:
            sum += values.readInteger(field);
            break;
          default:
            sum += values.readNumber(field);
        }
      }
    }
    benchmark::DoNotOptimize(sum);
  }
  countCells(state);
}

// Makes a list of the same shape through the services and writes each value into it, line by line.
void hostTakesIn(benchmark::State& state) {
  const simhost::List source = theList(workloadOf(state)).listRef();
  const Workload workload = workloadOf(state);
  host::CallBlock block{};
  theHost().fill(block);
  const host::ValueTable& values = *block.valueTable;
  const host::ListTable& lists = *block.listTable;
  char32_t text[kMostCharacters];
  for (auto _ : state) {
    const host::ListHandle list = lists.create(block.context);
    for (int column = 0; column < kColumns; ++column) {
      const Kind kind = kindOf(workload, column);
      lists.addColumn(list, static_cast<std::int32_t>(kind), kind == Kind::Date ? simhost::shortDate : 0, 0, U"c", 1);
    }
    for (std::int32_t row = 1; row <= kRows; ++row) {
      lists.addRow(list);
      for (std::int16_t column = 1; column <= kColumns; ++column) {
        const host::FieldHandle field = lists.bindCell(list, row, column);
        const Value& value = source.at(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
        switch (kindOf(workload, column - 1)) {
          case Kind::Character:
            value.copyText(text, value.textLength());
            values.writeText(field, text, value.textLength());
            break;
          case Kind::Date: {
            const host::DateParts parts{kYear,
                                        static_cast<std::uint8_t>(monthAt(row)),
                                        static_cast<std::uint8_t>(dayAt(row)),
                                        0,
                                        0,
                                        0,
                                        0,
                                        1,
                                        0,
                                        0,
                                        0};
            values.writeDate(field, &parts, simhost::shortDate);
            break;
          }
          case Kind::Boolean:
            values.writeBoolean(field, host::kHostTrue);
            break;
          case Kind::Integer:
            values.writeInteger(field, row);
            break;
          default:
            values.writeNumber(field, 0.5, host::kFloatingPlaces);
        }
      }
    }
    state.PauseTiming();
    lists.destroy(list);
    state.ResumeTiming();
  }
  countCells(state);
}

BENCHMARK(componentWrites)->ArgName("mixed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(engineWrites)->ArgNames({"mixed", "byColumns"})->ArgsProduct({{0, 1}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(hostHandsOut)->ArgName("mixed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(componentReads)->ArgName("mixed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(engineReads)->ArgNames({"mixed", "byColumns"})->ArgsProduct({{0, 1}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(hostTakesIn)->ArgName("mixed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
