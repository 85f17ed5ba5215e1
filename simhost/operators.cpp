#include "simhost/operators.h"

#include <cmath>

#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

bool isDateSum(Operator op, const Value& a) {
  return a.kind() == Kind::Date && (op == Operator::Add || op == Operator::Subtract);
}

Value movedDate(Operator op, const Value& a, const Value& b) {
  const DateTime date = a.toDate();
  if (b.kind() == Kind::Date) {
    if (op == Operator::Add) throw ScriptError("Two dates can't be added");
    if (date.empty() || b.toDate().empty()) return Value::null();
    return Value::integer((hundredthsOf(date) - hundredthsOf(b.toDate())) / hundredthsPerDay);
  }
  if (!date.hasDate) return a;
  constexpr double farthestDays = 4e6;
  const double days = op == Operator::Add ? b.toNumber() : -b.toNumber();
  if (!(std::fabs(days) < farthestDays)) throw ScriptError("The date lies outside of the years 1 to 9999");
  const auto moved = dateFromHundredths(hundredthsOf(date) + static_cast<std::int64_t>(days) * hundredthsPerDay, date);
  if (!isValidDate(moved.year, moved.month, moved.day))
    throw ScriptError("The date lies outside of the years 1 to 9999");
  return Value::date(moved);
}

Value calculated(Operator op, const Value& a, const Value& b) {
  const double x = a.toNumber();
  const double y = b.toNumber();
  if (op == Operator::Divide && y == 0) throw ScriptError("Division by zero");
  const double result = op == Operator::Add        ? x + y
                        : op == Operator::Subtract ? x - y
                        : op == Operator::Multiply ? x * y
                                                   : x / y;
  // Below this a whole result can't overflow, whatever the doubles rounded away.
  constexpr double wholeLimit = 9.0e18;
  const auto whole = [](const Value& value) { return value.isWhole() || value.kind() == Kind::Boolean; };
  if (!whole(a) || !whole(b) || !(std::fabs(result) < wholeLimit)) return Value::number(result);
  const std::int64_t i = a.kind() == Kind::Boolean ? a.toBoolean() : a.toInteger();
  const std::int64_t j = b.kind() == Kind::Boolean ? b.toBoolean() : b.toInteger();
  if (op == Operator::Add) return Value::integer(i + j);
  if (op == Operator::Subtract) return Value::integer(i - j);
  if (op == Operator::Multiply) return Value::integer(i * j);
  return i % j == 0 ? Value::integer(i / j) : Value::number(result);
}

}  // namespace

Value applied(Operator op, const Value& a, const Value& b) {
  const int order = op >= Operator::Equal && op <= Operator::GreaterEqual ? compareValues(a, b) : 2;
  const bool comparable = order != 2;
  switch (op) {
    case Operator::Or:
      return Value::boolean(a.toBoolean() || b.toBoolean());
    case Operator::And:
      return Value::boolean(a.toBoolean() && b.toBoolean());
    case Operator::Equal:
      return Value::boolean(comparable && order == 0);
    case Operator::NotEqual:
      return Value::boolean(comparable && order != 0);
    case Operator::Less:
      return Value::boolean(comparable && order < 0);
    case Operator::LessEqual:
      return Value::boolean(comparable && order <= 0);
    case Operator::Greater:
      return Value::boolean(comparable && order > 0);
    case Operator::GreaterEqual:
      return Value::boolean(comparable && order >= 0);
    default:
      break;
  }
  if (a.isNull() || b.isNull()) return Value::null();
  if (isDateSum(op, a)) return movedDate(op, a, b);
  return calculated(op, a, b);
}

}  // namespace rubrica::simhost
