#include "xml/formula_text.h"

#include <charconv>
#include <cstddef>

#include "engine/address.h"
#include "lmx/text.h"

namespace rubrica {
namespace {

constexpr std::string_view kLostReference = "#REF!";
constexpr int kLetters = 26;

// One row or column of a reference: a 0-based position, or in R1C1 a distance where it is relative.
struct Part {
  int value = 0;
  bool relative = true;
};

enum class Kind { cell, rows, columns };

// A cell's row and column, or the first and last row or column of whole ones.
struct Reference {
  Kind kind = Kind::cell;
  Part first;
  Part second;
};

// What a name may consist of. "$" is none of it, but belongs to references and so ends no word.
bool isWordChar(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return lmx::is_letter(byte) || lmx::is_digit(byte) || byte > 127 || c == '_' || c == '.' || c == '\\' || c == '?' ||
         c == '$';
}

// Walks over text; every take leaves the position alone when there is nothing to take.
class Scanner {
 public:
  Scanner(std::string_view text, std::size_t at) : _text(text), _at(at) {}

  std::size_t at() const { return _at; }
  char peek() const { return _at < _text.size() ? _text[_at] : '\0'; }
  bool take(char c) {
    if (peek() != c || _at == _text.size()) return false;
    ++_at;
    return true;
  }
  bool takeLetter(char upper) { return take(upper) || take(static_cast<char>(upper - 'A' + 'a')); }
  // A number from 0 to `limit`.
  bool takeNumber(int limit, int& value) {
    const char* end = _text.data() + _text.size();
    if (!lmx::is_digit(peek())) return false;
    const auto [stop, error] = std::from_chars(_text.data() + _at, end, value);
    if (error != std::errc{} || value > limit) return false;
    _at = static_cast<std::size_t>(stop - _text.data());
    return true;
  }
  // Whether a reference may end here: what follows makes it no name, function or sheet.
  bool atEndOfReference() const { return !isWordChar(peek()) && peek() != '(' && peek() != '!' && peek() != '['; }

 private:
  std::string_view _text;
  std::size_t _at;
};

// ---- A1

bool takeA1Row(Scanner& scan, Part& row) {
  row.relative = !scan.take('$');
  if (!scan.takeNumber(kMaxRow + 1, row.value) || row.value == 0) return false;
  --row.value;
  return true;
}

bool takeA1Column(Scanner& scan, Part& col) {
  col.relative = !scan.take('$');
  int letters = 0;
  for (char c = scan.peek(); lmx::is_letter(c); c = scan.peek()) {
    letters = letters * kLetters + (c >= 'a' ? c - 'a' : c - 'A') + 1;
    if (letters > kMaxCol + 1) return false;
    scan.take(c);
  }
  col.value = letters - 1;
  return letters > 0;
}

// The length of the reference that begins at `at`, 0 where none does.
std::size_t parseA1(std::string_view text, std::size_t at, Reference& reference) {
  using TakePart = bool (*)(Scanner&, Part&);
  Scanner cell(text, at);
  if (takeA1Column(cell, reference.second) && takeA1Row(cell, reference.first) && cell.atEndOfReference()) {
    reference.kind = Kind::cell;
    return cell.at() - at;
  }
  for (const auto& [kind, take] : {std::pair<Kind, TakePart>{Kind::columns, takeA1Column}, {Kind::rows, takeA1Row}}) {
    Scanner whole(text, at);
    if (take(whole, reference.first) && whole.take(':') && take(whole, reference.second) && whole.atEndOfReference()) {
      reference.kind = kind;
      return whole.at() - at;
    }
  }
  return 0;
}

bool isInside(int value, int limit) {
  return value >= 0 && value <= limit;
}

void appendA1Column(std::string& out, const Part& col) {
  if (!col.relative) out.push_back('$');
  for (const char16_t letter : columnLetters(col.value)) out.push_back(static_cast<char>(letter));
}

void appendA1Row(std::string& out, const Part& row) {
  if (!row.relative) out.push_back('$');
  out += std::to_string(row.value + 1);
}

void appendA1(std::string& out, const Reference& reference) {
  const int firstLimit = reference.kind == Kind::columns ? kMaxCol : kMaxRow;
  const int secondLimit = reference.kind == Kind::rows ? kMaxRow : kMaxCol;
  if (!isInside(reference.first.value, firstLimit) || !isInside(reference.second.value, secondLimit)) {
    out += kLostReference;
    return;
  }
  switch (reference.kind) {
    case Kind::cell:
      appendA1Column(out, reference.second);
      appendA1Row(out, reference.first);
      break;
    case Kind::rows:
      appendA1Row(out, reference.first);
      out.push_back(':');
      appendA1Row(out, reference.second);
      break;
    case Kind::columns:
      appendA1Column(out, reference.first);
      out.push_back(':');
      appendA1Column(out, reference.second);
      break;
  }
}

// ---- R1C1

// "R", "R5" or "R[-5]" and the same with C; nothing behind the letter is the cell's own row.
bool takeR1c1Part(Scanner& scan, char letter, int limit, Part& part) {
  if (!scan.takeLetter(letter)) return false;
  part = {};
  if (scan.take('[')) {
    const bool minus = scan.take('-');
    if (!scan.takeNumber(limit, part.value) || !scan.take(']')) return false;
    if (minus) part.value = -part.value;
    return true;
  }
  if (!lmx::is_digit(scan.peek())) return true;
  part.relative = false;
  if (!scan.takeNumber(limit + 1, part.value) || part.value == 0) return false;
  --part.value;
  return true;
}

// Whole rows or columns, of which one alone is written once.
std::size_t parseWholeR1c1(std::string_view text, std::size_t at, char letter, int limit, Reference& reference) {
  Scanner scan(text, at);
  if (!takeR1c1Part(scan, letter, limit, reference.first)) return 0;
  reference.second = reference.first;
  Scanner range = scan;
  Part second;
  if (range.take(':') && takeR1c1Part(range, letter, limit, second) && range.atEndOfReference()) {
    reference.second = second;
    return range.at() - at;
  }
  return scan.atEndOfReference() ? scan.at() - at : 0;
}

std::size_t parseR1c1(std::string_view text, std::size_t at, Reference& reference) {
  Scanner cell(text, at);
  if (takeR1c1Part(cell, 'R', kMaxRow, reference.first) && takeR1c1Part(cell, 'C', kMaxCol, reference.second) &&
      cell.atEndOfReference()) {
    reference.kind = Kind::cell;
    return cell.at() - at;
  }
  reference.kind = Kind::rows;
  if (const std::size_t rows = parseWholeR1c1(text, at, 'R', kMaxRow, reference); rows > 0) return rows;
  reference.kind = Kind::columns;
  return parseWholeR1c1(text, at, 'C', kMaxCol, reference);
}

void appendR1c1Part(std::string& out, char letter, const Part& part) {
  out.push_back(letter);
  if (!part.relative) {
    out += std::to_string(part.value + 1);
  } else if (part.value != 0) {
    out.push_back('[');
    out += std::to_string(part.value);
    out.push_back(']');
  }
}

void appendR1c1(std::string& out, const Reference& reference) {
  const char firstLetter = reference.kind == Kind::columns ? 'C' : 'R';
  const char secondLetter = reference.kind == Kind::rows ? 'R' : 'C';
  appendR1c1Part(out, firstLetter, reference.first);
  const Part& first = reference.first;
  const Part& second = reference.second;
  if (reference.kind == Kind::cell) {
    appendR1c1Part(out, secondLetter, second);
  } else if (first.value != second.value || first.relative != second.relative) {
    out.push_back(':');
    appendR1c1Part(out, secondLetter, second);
  }
}

// ---- The walk over a formula

// Where the text in quotes that begins at `at` ends. A quote inside is doubled, which reads as two texts side by side.
std::size_t endOfQuoted(std::string_view text, std::size_t at) {
  const std::size_t close = text.find(text[at], at + 1);
  return close == text.npos ? text.size() : close + 1;
}

// A structured reference or the number of an external book. An apostrophe takes the meaning from what follows it.
std::size_t endOfBrackets(std::string_view text, std::size_t at) {
  int depth = 0;
  for (; at < text.size(); ++at) {
    if (text[at] == '\'') {
      ++at;
    } else if (text[at] == '[') {
      ++depth;
    } else if (text[at] == ']' && --depth == 0) {
      return at + 1;
    }
  }
  return text.size();
}

std::size_t endOfWord(std::string_view text, std::size_t at) {
  while (at < text.size() && isWordChar(text[at])) ++at;
  return at;
}

// Copies a formula with every reference that `parse` finds passed through `change` and written by `append`.
template <class Parse, class Change, class Append>
std::string rewrite(std::string_view text, Parse parse, Change change, Append append) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    Reference reference;
    std::size_t end = at + 1;
    if (text[at] == '"' || text[at] == '\'') {
      end = endOfQuoted(text, at);
    } else if (text[at] == '[') {
      // What follows directly is the sheet of an external book, or text that is no reference anyway.
      end = endOfWord(text, endOfBrackets(text, at));
    } else if (isWordChar(text[at])) {
      if (const std::size_t length = parse(text, at, reference); length > 0) {
        change(reference);
        append(out, reference);
        at += length;
        continue;
      }
      end = endOfWord(text, at);
    }
    out.append(text.substr(at, end - at));
    at = end;
  }
  return out;
}

// Adds to the relative parts of a reference.
void move(Reference& reference, int rows, int cols) {
  if (reference.first.relative) reference.first.value += reference.kind == Kind::columns ? cols : rows;
  if (reference.second.relative) reference.second.value += reference.kind == Kind::rows ? rows : cols;
}

}  // namespace

std::string shiftReferences(std::string_view formula, int rows, int cols) {
  return rewrite(
      formula, parseA1, [rows, cols](Reference& reference) { move(reference, rows, cols); }, appendA1);
}

std::string r1c1FromA1(std::string_view formula, int row, int col) {
  return rewrite(
      formula, parseA1, [row, col](Reference& reference) { move(reference, -row, -col); }, appendR1c1);
}

std::string a1FromR1c1(std::string_view formula, int row, int col) {
  return rewrite(
      formula, parseR1c1, [row, col](Reference& reference) { move(reference, row, col); }, appendA1);
}

}  // namespace rubrica
