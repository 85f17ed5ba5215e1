// Runs a script from a text and gives what it printed: for the tests of the language.
#pragma once

#include <string>
#include <vector>

#include "simhost/instance.h"
#include "simhost/interpreter.h"
#include "simhost/parser.h"
#include "simhost/script_error.h"

namespace rubrica::simhost::test {

// The printed lines, each ended by '\n'; an error as "line N: message" in the end.
inline std::string run(const std::string& script, ObjectSource* source = nullptr,
                       const std::vector<std::string>& arguments = {}) {
  std::string printed;
  try {
    const Program program = parseScript(script, source);
    RunOptions options;
    options.print = [&printed](const std::string& line) { printed += line + "\n"; };
    options.arguments = arguments;
    Interpreter(program, source, std::move(options)).run();
  } catch (const ScriptError& error) {
    printed += "line " + std::to_string(error.line()) + ": " + error.what();
  }
  return printed;
}

inline std::string lines(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += part + "\n";
  return text;
}

// What `Print <expression>` prints.
inline std::string printed(const std::string& expression) {
  std::string text = run("Print " + expression);
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

}  // namespace rubrica::simhost::test
