// Evaluates one expression without variables, as a component may ask its host to.
#pragma once

#include <string_view>

#include "simhost/value.h"

namespace rubrica::simhost {

// False when the text is no such expression.
bool evaluateText(std::string_view text, Value& value);

}  // namespace rubrica::simhost
