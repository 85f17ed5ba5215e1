// A failure that ends a script: what was wrong and, once a statement has added it, the line. Thrown by the parser, the
// interpreter and the functions; caught at the entry of the program and where a call crosses the component.
#pragma once

#include <stdexcept>
#include <string>

namespace rubrica::simhost {

class ScriptError : public std::runtime_error {
 public:
  explicit ScriptError(const std::string& message, int line = 0) : std::runtime_error(message), _line(line) {}

  // 1-based; 0 as long as nobody knows it.
  int line() const { return _line; }
  void setLine(int line) {
    if (_line == 0) _line = line;
  }

 private:
  int _line;
};

}  // namespace rubrica::simhost
