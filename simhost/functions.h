// The functions that expressions call by name: con(), mid(), rnd(), dat() and the like. The parser looks them up, the
// evaluator calls them. Plain functions get values; those that need names, targets or lazy parameters are marked and
// carried out by the evaluator itself.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "simhost/value.h"

namespace rubrica::simhost {

// Functions that are more than a calculation on values.
enum class Special {
  No,
  Iif,
  Pick,
  MakeRow,
  MakeList,
  ListCell,
  ReadCsv,
  WriteCsv,
  ReadBinFile,
  WriteBinFile,
  ScriptFolder
};

struct Function {
  const char* name;
  std::size_t minArguments;
  std::size_t maxArguments;
  Value (*call)(std::span<const Value> arguments);
  Special special = Special::No;
};

// Any number of parameters, up to what keeps one call's memory in proportion.
inline constexpr std::size_t anyNumber = 1000;
// The longest text or binary that a script may build, in characters.
inline constexpr std::size_t maxTextLength = 10'000'000;

// Null when there is none of the name.
const Function* findFunction(std::string_view name);

// One table a subject, each in its own source.
std::span<const Function> textFunctions();
std::span<const Function> numberFunctions();
std::span<const Function> dateFunctions();
std::span<const Function> specialFunctions();

// The value of kTrue, kNull, kCr, kCharacter, kDay and the other constants of the language itself.
bool findConstant(std::string_view name, Value& value);

}  // namespace rubrica::simhost
