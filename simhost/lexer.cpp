#include "simhost/lexer.h"

#include <charconv>

#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool isNamePart(char c) {
  return isNameStart(c) || isDigit(c);
}
bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

std::string_view trimmedLine(std::string_view line) {
  while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
  while (!line.empty() && isBlank(line.back())) line.remove_suffix(1);
  return line;
}

// What stands before an inline comment.
std::string_view withoutComment(std::string_view line) {
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else if ((c == '#' || c == ';') && i + 1 < line.size() && line[i + 1] == c && (i == 0 || isBlank(line[i - 1]))) {
      return trimmedLine(line.substr(0, i));
    }
  }
  return line;
}

class LineLexer {
 public:
  LineLexer(std::string_view text, int line) : _text(text), _line(line) {}

  std::vector<Token> run() {
    std::vector<Token> tokens;
    while (true) {
      while (_at < _text.size() && isBlank(_text[_at])) ++_at;
      if (_at >= _text.size()) break;
      const bool afterDot = !tokens.empty() && tokens.back().kind == Token::Kind::Mark && tokens.back().text == ".";
      tokens.push_back(next(afterDot));
    }
    tokens.emplace_back();
    return tokens;
  }

 private:
  char peek(std::size_t ahead = 0) const { return _at + ahead < _text.size() ? _text[_at + ahead] : '\0'; }

  Token next(bool afterDot) {
    const char c = peek();
    if (isNameStart(c)) return word();
    if (isDigit(c) || (c == '.' && isDigit(peek(1)) && !endsOperand())) return number(afterDot);
    if (c == '\'' || c == '"') return quoted(c);
    return mark();
  }

  // Whether the character before is the end of a name, number or bracket, so that a dot begins a step.
  bool endsOperand() const {
    if (_at == 0) return false;
    const char before = _text[_at - 1];
    return isNamePart(before) || before == ')' || before == ']';
  }

  Token word() {
    const std::size_t start = _at;
    while (_at < _text.size() && isNamePart(_text[_at])) ++_at;
    return {Token::Kind::Word, std::string(_text.substr(start, _at - start)), {}};
  }

  Token number(bool wholeOnly) {
    const std::size_t start = _at;
    bool whole = true;
    while (isDigit(peek())) ++_at;
    if (!wholeOnly && peek() == '.' && isDigit(peek(1))) {
      whole = false;
      ++_at;
      while (isDigit(peek())) ++_at;
    }
    if (!wholeOnly && (peek() == 'e' || peek() == 'E')) {
      const std::size_t sign = peek(1) == '+' || peek(1) == '-' ? 2 : 1;
      if (isDigit(peek(sign))) {
        whole = false;
        _at += sign;
        while (isDigit(peek())) ++_at;
      }
    }
    const std::string_view digits = _text.substr(start, _at - start);
    if (_at < _text.size() && isNameStart(_text[_at])) {
      throw ScriptError("'" + std::string(digits) + _text[_at] + "...' is neither a number nor a name", _line);
    }
    return {Token::Kind::Number, std::string(digits), numberValue(digits, whole)};
  }

  Value numberValue(std::string_view digits, bool whole) const {
    const char* last = digits.data() + digits.size();
    if (whole) {
      std::int64_t value = 0;
      if (std::from_chars(digits.data(), last, value).ec == std::errc()) return Value::integer(value);
    }
    double value = 0;
    if (std::from_chars(digits.data(), last, value).ec != std::errc()) {
      throw ScriptError("The number " + std::string(digits.substr(0, 40)) + " is too large", _line);
    }
    return Value::number(value);
  }

  Token quoted(char quote) {
    std::string content;
    ++_at;
    while (true) {
      if (_at >= _text.size())
        throw ScriptError("A text that begins with " + std::string(1, quote) + " has no end", _line);
      const char c = _text[_at++];
      if (c == quote) {
        if (peek() != quote) break;
        ++_at;
      }
      content.push_back(c);
    }
    return {Token::Kind::String, {}, Value::utf8(content)};
  }

  Token mark() {
    for (const std::string_view two : {"<>", "<=", ">="}) {
      if (_text.substr(_at, 2) == two) {
        _at += 2;
        return {Token::Kind::Mark, std::string(two), {}};
      }
    }
    const char c = _text[_at++];
    if (std::string_view("+-*/(),.[]=<>&|").find(c) == std::string_view::npos) {
      throw ScriptError("Unknown character '" + std::string(1, c) + "'", _line);
    }
    return {Token::Kind::Mark, std::string(1, c), {}};
  }

  std::string_view _text;
  int _line;
  std::size_t _at = 0;
};

}  // namespace

std::vector<SourceLine> linesOf(std::string_view script) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (script.starts_with(byteOrderMark)) script.remove_prefix(byteOrderMark.size());
  std::vector<SourceLine> lines;
  bool continued = false;
  for (int number = 1; !script.empty(); ++number) {
    const std::size_t end = script.find('\n');
    std::string_view line = trimmedLine(script.substr(0, end));
    script.remove_prefix(end == std::string_view::npos ? script.size() : end + 1);
    if (line.empty() || line.front() == '#' || line.front() == ';') continue;
    line = withoutComment(line);
    const bool goesOn = !line.empty() && line.back() == '\\';
    if (goesOn) line = trimmedLine(line.substr(0, line.size() - 1));
    if (continued) {
      lines.back().text += ' ';
      lines.back().text += line;
    } else {
      lines.push_back({number, std::string(line)});
    }
    continued = goesOn;
  }
  return lines;
}

std::vector<Token> tokensOf(std::string_view text, int line) {
  return LineLexer(text, line).run();
}

}  // namespace rubrica::simhost
