#include "source/ooxml/plain_cells.h"

#include <charconv>
#include <cstdint>
#include <cstring>

namespace rubrica::ooxml {

namespace {

// Classes of bytes in texts, as flags.
enum byte_class : unsigned char {
  kPlain = 1,    // stands for itself between tags, read and written
  kWritten = 2,  // the same, and is written as it is
};

constexpr std::array<unsigned char, 256> makeClasses() {
  std::array<unsigned char, 256> classes{};
  for (unsigned c = ' '; c < 0x7F; ++c) {
    const bool is_markup = c == '<' || c == '&';
    const bool is_escaped = is_markup || c == '>' || c == '"' || c == '\'';
    unsigned flags = kPlain | kWritten;
    if (is_escaped) flags = kPlain;
    if (is_markup) flags = 0;
    classes[c] = static_cast<unsigned char>(flags);
  }
  return classes;
}

constexpr std::array<unsigned char, 256> kClasses = makeClasses();

// What a cell without its texts may take at most; nearer to the end of a document than that no cell is plain.
constexpr std::size_t kMarkupRoom = 128;

// Of a sheet. What lies outside is for others to judge.
constexpr std::uint32_t kLastRow = 1048575;
constexpr std::uint32_t kLastColumn = 16383;

bool isWrittenAsItIs(std::string_view text) {
  unsigned flags = kWritten;
  for (const char c : text) flags &= kClasses[static_cast<unsigned char>(c)];
  return flags != 0;
}

constexpr std::size_t kShortText = 16;  // bytes, of what is looked at in two steps
constexpr std::uint64_t kEachByte = 0x0101010101010101U;
constexpr std::uint64_t kHighBits = kEachByte * 0x80U;

// From kShortText - size on: so many high bits, and none behind them.
constexpr std::array<char, 2 * kShortText> kHighBitsOfText = [] {
  std::array<char, 2 * kShortText> bits{};
  for (std::size_t i = 0; i < kShortText; ++i) bits[i] = '\x80';
  return bits;
}();

std::uint64_t wordAt(const char* at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof(word));
  return word;
}

// The high bit of each byte that is not from '+' to '9', where digits, signs and the point are.
std::uint64_t notOfNumbers(std::uint64_t bytes) {
  const std::uint64_t is_beyond = (bytes & ~kHighBits) + kEachByte * (0x7FU - '9');
  const std::uint64_t is_before = ~((bytes | kHighBits) - kEachByte * '+');
  return (bytes | is_beyond | is_before) & kHighBits;
}

// Whether the text is all of such characters. There are kShortText bytes to look at, whatever its size.
bool isOfNumbers(const char* text, std::size_t size) {
  const char* const wanted = kHighBitsOfText.data() + kShortText - size;
  const std::uint64_t first = notOfNumbers(wordAt(text)) & wordAt(wanted);
  const std::uint64_t second = notOfNumbers(wordAt(text + 8)) & wordAt(wanted + 8);
  return (first | second) == 0;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

template <std::size_t Size>
bool startsWith(const char* at, const char (&expected)[Size]) {
  return std::memcmp(at, expected, Size - 1) == 0;
}

// Walks through the text of one cell. Every take answers false, or null, for what isn't plain.
class plain_reader {
 public:
  // There is kMarkupRoom at `at`.
  plain_reader(const char* at, const char* end) : _at(at), _last(end - kMarkupRoom) {}

  const char* at() const { return _at; }

  // From behind "<c" to behind the start tag's end; `is_empty` tells "/>". At least one attribute is wanted.
  bool takeAttributes(packed_cell& cell, bool& is_empty, plain_cell::part& last) {
    unsigned seen = 0;
    while (*_at == ' ') {
      if (_at[2] != '=' || _at[3] != '"') return false;
      const char name = _at[1];
      _at += 4;
      const bool taken = name == 'r'   ? takeReference(cell)
                         : name == 's' ? takeStyle(cell)
                                       : name == 't' && takeType(cell);
      last = name == 'r' ? plain_cell::part::r : name == 's' ? plain_cell::part::s : plain_cell::part::t;
      const unsigned bit = 1U << static_cast<unsigned>(last);
      if (!taken || (seen & bit) != 0 || *_at++ != '"') return false;
      seen |= bit;
    }
    if (seen == 0) return false;
    is_empty = startsWith(_at, "/>");
    if (!is_empty && *_at != '>') return false;
    _at += is_empty ? 2 : 1;
    return true;
  }

  // The text up to the next tag, which has its room.
  bool takeText(std::string_view& text) {
    const char* begin = _at;
    const char* p = begin;
    while (p < _last && (kClasses[static_cast<unsigned char>(*p)] & kPlain) != 0) ++p;
    if (p >= _last || *p != '<') return false;
    text = {begin, static_cast<std::size_t>(p - begin)};
    _at = p;
    return true;
  }

  template <std::size_t Size>
  bool take(const char (&expected)[Size]) {
    if (!startsWith(_at, expected)) return false;
    _at += Size - 1;
    return true;
  }

 private:
  bool takeReference(packed_cell& cell) {
    std::uint32_t column = 0, row = 0;
    const char* letters = _at;
    for (; *_at >= 'A' && *_at <= 'Z'; ++_at) {
      if (_at - letters == kMostLetters) return false;
      column = column * 26 + static_cast<std::uint32_t>(*_at - 'A') + 1;
    }
    if (column == 0 || column - 1 > kLastColumn || *_at == '0' || !takeNumber(kMostRowDigits, row)) return false;
    if (row - 1 > kLastRow) return false;
    cell.set_position(row - 1, static_cast<std::uint16_t>(column - 1));
    return true;
  }

  bool takeStyle(packed_cell& cell) {
    std::uint32_t style = 0;
    if (!takeNumber(kMostStyleDigits, style)) return false;
    cell.set_s(style);
    return true;
  }

  bool takeType(packed_cell& cell) {
    switch (*_at) {
      case 'b':
        return takeType(cell, cell_type::boolean, 1);
      case 'n':
        return takeType(cell, cell_type::number, 1);
      case 'e':
        return takeType(cell, cell_type::error, 1);
      case 's':
        return startsWith(_at, "str") ? takeType(cell, cell_type::text, 3) : takeType(cell, cell_type::shared, 1);
      default:
        return false;
    }
  }
  bool takeType(packed_cell& cell, cell_type type, std::size_t size) {
    cell.set_type(type);
    _at += size;
    return true;
  }

  bool takeNumber(int most, std::uint32_t& number) {
    const char* begin = _at;
    for (; isDigit(*_at); ++_at) {
      if (_at - begin == most) return false;
      number = number * 10 + static_cast<std::uint32_t>(*_at - '0');
    }
    return _at != begin;
  }

  static constexpr int kMostLetters = 3;
  static constexpr int kMostRowDigits = 7;
  static constexpr int kMostStyleDigits = 9;

  const char* _at;
  const char* _last;
};

char* put(char* out, std::string_view text) {
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

char* putNumber(char* out, std::uint32_t number) {
  constexpr std::size_t kMostDigits = 10;
  return std::to_chars(out, out + kMostDigits, number).ptr;
}

char* putColumn(char* out, std::uint32_t column) {
  constexpr std::uint32_t kOne = 26, kTwo = kOne + 26 * 26;  // columns of one letter, of one or two
  if (column >= kTwo) {
    column -= kTwo;
    *out++ = static_cast<char>('A' + column / (26 * 26));
    column %= 26 * 26;
    *out++ = static_cast<char>('A' + column / 26);
  } else if (column >= kOne) {
    column -= kOne;
    *out++ = static_cast<char>('A' + column / 26);
  }
  *out++ = static_cast<char>('A' + column % 26);
  return out;
}

// What is behind the attributes of a plain cell; null when its value isn't written as it is.
char* putValue(char* out, const packed_cell& cell) {
  if (!cell.isset_v()) return put(out, "/>");
  out = put(out, "><v>");
  bool is_numeric = false;
  const char* const value = out;
  out = cell.put_v(out, is_numeric);
  const auto size = static_cast<std::size_t>(out - value);
  if (!is_numeric && !isOfNumbers(value, size) && !isWrittenAsItIs({value, size})) return nullptr;
  return put(out, "</v></c>");
}

// The same for a cell with a formula or a long value, and null for texts of more than `longest` bytes too.
char* putTexts(char* out, const packed_cell& cell, std::size_t longest) {
  packed_cell::value_buffer buffer;
  const std::string_view formula = cell.view_f().value_or("");
  const std::string_view value = cell.view_v(buffer);
  if (formula.size() + value.size() > longest || !isWrittenAsItIs(formula) || !isWrittenAsItIs(value)) return nullptr;
  *out++ = '>';
  if (cell.view_f()) out = put(put(put(out, "<f>"), formula), "</f>");
  if (cell.isset_v()) out = put(put(put(out, "<v>"), value), "</v>");
  return put(out, "</c>");
}

}  // namespace

plain_cell readPlainCell(std::string_view text, packed_cell& cell) {
  if (text.size() <= kMarkupRoom) return {};
  plain_reader reader(text.data(), text.data() + text.size());
  plain_cell found;
  bool is_empty = false;
  if (!reader.take("<c") || !reader.takeAttributes(cell, is_empty, found.last)) return {};
  if (!is_empty) {
    std::string_view formula;
    const bool has_formula = reader.take("<f>");
    if (has_formula) {
      if (!reader.takeText(formula) || !reader.take("</f>")) return {};
      found.last = plain_cell::part::f;
    }
    if (reader.take("<v>")) {
      std::string_view value;
      if (!reader.takeText(value) || !reader.take("</v>")) return {};
      cell.set_v(value);
      found.last = plain_cell::part::v;
    }
    if (has_formula) cell.set_f(formula);
    if (!reader.take("</c>")) return {};
  }
  found.size = static_cast<std::size_t>(reader.at() - text.data());
  return found;
}

void plain_cell_buffer::set_row(std::uint32_t row) {
  char* end = putNumber(_row_text.data(), row + 1);
  *end++ = '"';
  _row = row;
  _row_size = static_cast<std::size_t>(end - _row_text.data());
}

bool plain_cell_buffer::append(const packed_cell& cell) {
  if (!cell.is_text() || !cell.isset_r() || cell.column() > kLastColumn) return false;
  if (cell.row() != _row) set_row(cell.row());
  char* out = putColumn(put(_text.data() + _size, "<c r=\""), cell.column());
  std::memcpy(out, _row_text.data(), kRowRoom);
  out += _row_size;
  if (cell.isset_s()) {
    out = putNumber(put(out, " s=\""), cell.get_s());
    *out++ = '"';
  }
  if (cell.isset_t()) {
    out = put(put(out, " t=\""), cell.get_t());
    *out++ = '"';
  }
  out = cell.is_plain() ? putValue(out, cell) : putTexts(out, cell, kLongestTexts);
  if (out == nullptr) return false;
  _size = static_cast<std::size_t>(out - _text.data());
  return true;
}

}  // namespace rubrica::ooxml
