// Reads the type in a declaration: `Character 80`, `Number 2 dp`, `Long integer`, `Date time`, `Object Tabulix.Cell`.
#pragma once

#include "simhost/ast.h"
#include "simhost/expression_parser.h"

namespace rubrica::simhost {

class ObjectSource;

// Takes the words of a type, with or without brackets around them. Throws ScriptError for an unknown one.
TypeSpec parseType(ExpressionParser& words, const ObjectSource* source);

// A value as a variable of the type holds it.
Value convertedTo(const Value& value, const TypeSpec& type);
Value emptyOf(const TypeSpec& type);

}  // namespace rubrica::simhost
