// Splits a script into lines and a line into tokens. Comments, blank lines and continuation lines are dealt with here,
// so that the parser sees statements only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simhost/value.h"

namespace rubrica::simhost {

struct SourceLine {
  int number;  // of its first line in the file, from 1
  std::string text;
};

// The lines that hold a statement, without comments and margins. A line that ends in `\` goes on in the next one.
// Comments are lines that begin with `#` or `;`, and what follows `##` or `;;` on a line outside of quotes.
std::vector<SourceLine> linesOf(std::string_view script);

struct Token {
  enum class Kind { Word, Number, String, Mark, End } kind = Kind::End;
  std::string text;  // of a word or mark
  Value value;       // of a number or string
};

// Ends with one End token. Throws ScriptError, with the line, for a character that begins nothing and for a quote that
// isn't closed.
std::vector<Token> tokensOf(std::string_view text, int line);

}  // namespace rubrica::simhost
