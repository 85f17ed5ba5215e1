// Parses a script in Omnis notation into its tree and resolves every word in it, so that a script with an unknown word
// ends before it has done anything. Knows the commands; expressions are expression_parser.h's.
#pragma once

#include <string_view>

#include "simhost/ast.h"

namespace rubrica::simhost {

class ObjectSource;

// `source` gives the component's classes and constants; without one a script has neither. Throws ScriptError with the
// line of the first mistake.
Program parseScript(std::string_view script, const ObjectSource* source);

}  // namespace rubrica::simhost
