// Gives every bare word of a parsed script its meaning: a variable of the method or the script, a constant, one of the
// roots of notation. Run by the parser when all declarations are known.
#pragma once

#include <vector>

#include "simhost/ast.h"
#include "simhost/expression_parser.h"

namespace rubrica::simhost {

class ObjectSource;

// Throws ScriptError for the first word, by line, that means nothing.
void resolveWords(Program& program, const std::vector<NameUse>& names, const ObjectSource* source);

}  // namespace rubrica::simhost
