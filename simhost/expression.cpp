#include "simhost/expression.h"

#include "simhost/evaluator.h"
#include "simhost/expression_parser.h"
#include "simhost/instance.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

bool evaluateText(std::string_view text, Value& value) {
  try {
    std::vector<NameUse> names;
    ExpressionParser parser(text, 0, 0, names);
    const ExprPtr expression = parser.expression();
    parser.expectEnd();
    Variables variables(nullptr, [](const std::string&, Instance&) {});
    value = Evaluator(nullptr, variables, {}).evaluate(*expression);
    return true;
  } catch (const ScriptError&) {
    return false;
  }
}

}  // namespace rubrica::simhost
