// What + - * / = < & and their fellows do with two values. Used by the evaluator.
#pragma once

#include "simhost/ast.h"

namespace rubrica::simhost {

// Null where an operand is null. Whole numbers stay whole as long as the result is; a date plus or minus a number
// moves by days, the difference of two dates is in days. Throws ScriptError for a division by zero.
Value applied(Operator op, const Value& a, const Value& b);

}  // namespace rubrica::simhost
