// The kinds of host values, by the codes that values, parameters and table rows carry across to the component.
#pragma once

#include <cstdint>

namespace rubrica::simhost {

enum class Kind : std::uint8_t {
  None = 20,
  Character = 21,
  Boolean = 22,
  Date = 23,
  Number = 25,
  Integer = 26,
  Binary = 28,
  List = 29,
  Constant = 35,
  Row = 36,
  Object = 37,
  ObjectReference = 38,
};

// Empty for a number that is no kind.
const char* kindName(Kind kind);

}  // namespace rubrica::simhost
