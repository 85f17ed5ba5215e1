#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "simhost/functions.h"
#include "simhost/jst.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

using Args = std::span<const Value>;

// Whole results are integers as long as an integer holds them, since rows, columns and counts come from them.
Value wholeNumber(double value) {
  constexpr double exactLimit = 9007199254740992.0;
  if (std::fabs(value) <= exactLimit) return Value::integer(static_cast<std::int64_t>(value));
  return Value::number(value);
}

Value finite(double value, const char* function) {
  if (!std::isfinite(value)) throw ScriptError(std::string(function) + "() has no result for this value");
  return Value::number(value);
}

Value integerPart(Args a) {
  return a[0].isWhole() ? a[0] : wholeNumber(std::trunc(a[0].toNumber()));
}

Value rnd(Args a) {
  constexpr std::int64_t mostPlaces = 15;
  const int places = static_cast<int>(std::clamp<std::int64_t>(a.size() > 1 ? a[1].toInteger() : 0, 0, mostPlaces));
  const std::string text = textWithPlaces(a[0].toNumber(), places);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return places == 0 ? wholeNumber(value) : Value::number(value);
}

Value absolute(Args a) {
  const double value = std::fabs(a[0].toNumber());
  return a[0].isWhole() ? wholeNumber(value) : Value::number(value);
}

Value mod(Args a) {
  if (a[1].toNumber() == 0) throw ScriptError("mod() by zero");
  if (!a[0].isWhole() || !a[1].isWhole()) return Value::number(std::fmod(a[0].toNumber(), a[1].toNumber()));
  const std::int64_t divisor = a[1].toInteger();
  return Value::integer(divisor == -1 ? 0 : a[0].toInteger() % divisor);
}

Value sqr(Args a) {
  return finite(std::sqrt(a[0].toNumber()), "sqr");
}
Value pwr(Args a) {
  const double value = std::pow(a[0].toNumber(), a[1].toNumber());
  if (a[0].isWhole() && a[1].isWhole() && value == std::trunc(value)) return wholeNumber(value);
  return finite(value, "pwr");
}
Value exponential(Args a) {
  return finite(std::exp(a[0].toNumber()), "exp");
}
Value ln(Args a) {
  return finite(std::log(a[0].toNumber()), "ln");
}
Value log10(Args a) {
  return finite(std::log10(a[0].toNumber()), "log");
}
Value sine(Args a) {
  return finite(std::sin(a[0].toNumber()), "sin");
}
Value cosine(Args a) {
  return finite(std::cos(a[0].toNumber()), "cos");
}
Value tangent(Args a) {
  return finite(std::tan(a[0].toNumber()), "tan");
}

Value extreme(Args a, int wanted) {
  const Value* best = &a[0];
  for (const Value& value : a) {
    if (compareValues(value, *best) == wanted) best = &value;
  }
  return *best;
}
Value smallest(Args a) {
  return extreme(a, -1);
}
Value largest(Args a) {
  return extreme(a, 1);
}

Value isNull(Args a) {
  return Value::boolean(a[0].isNull());
}
Value isClear(Args a) {
  return Value::boolean(a[0].isClear());
}
Value negation(Args a) {
  return Value::boolean(!a[0].toBoolean());
}
Value bitAnd(Args a) {
  return Value::integer(a[0].toInteger() & a[1].toInteger());
}
Value bitOr(Args a) {
  return Value::integer(a[0].toInteger() | a[1].toInteger());
}

// sys(1) is the version of the host; nothing else of sys() exists here.
Value sys(Args a) {
  if (a[0].toInteger() != 1) throw ScriptError("sys() knows 1, the version of the host, only");
  return Value::utf8("1.0.0");
}

constexpr std::array table = {
    Function{"int", 1, 1, integerPart},
    Function{"rnd", 1, 2, rnd},
    Function{"abs", 1, 1, absolute},
    Function{"mod", 2, 2, mod},
    Function{"sqr", 1, 1, sqr},
    Function{"pwr", 2, 2, pwr},
    Function{"exp", 1, 1, exponential},
    Function{"ln", 1, 1, ln},
    Function{"log", 1, 1, log10},
    Function{"sin", 1, 1, sine},
    Function{"cos", 1, 1, cosine},
    Function{"tan", 1, 1, tangent},
    Function{"min", 1, anyNumber, smallest},
    Function{"max", 1, anyNumber, largest},
    Function{"isnull", 1, 1, isNull},
    Function{"isclear", 1, 1, isClear},
    Function{"not", 1, 1, negation},
    Function{"bitand", 2, 2, bitAnd},
    Function{"bitor", 2, 2, bitOr},
    Function{"sys", 1, 1, sys},
};

}  // namespace

std::span<const Function> numberFunctions() {
  return table;
}

}  // namespace rubrica::simhost
