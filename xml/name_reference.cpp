#include "xml/name_reference.h"

#include <algorithm>
#include <charconv>

#include "engine/address.h"
#include "engine/sheet_name.h"
#include "platform/text.h"

namespace rubrica {
namespace {

constexpr std::string_view kDeleted = "#REF!";

bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The position of the next list separator, or the length.
std::size_t partEnd(std::string_view text) {
  int depth = 0;
  char quote = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else if (c == '(' || c == '{' || c == '[') {
      ++depth;
    } else if (c == ')' || c == '}' || c == ']') {
      --depth;
    } else if (c == ',' && depth <= 0) {
      return i;
    }
  }
  return text.size();
}

// Takes "Sheet!" or "'My sheet'!" off the front; false where the text begins with neither and is no plain range.
bool takeSheet(std::string_view& text, std::string& sheet) {
  const std::size_t mark = text.rfind('!');
  if (mark == text.npos) return true;
  std::string_view name = text.substr(0, mark);
  text.remove_prefix(mark + 1);
  if (!name.empty() && name.front() == '\'') {
    if (name.size() < 2 || name.back() != '\'') return false;
    name = name.substr(1, name.size() - 2);
    for (std::size_t i = 0; i < name.size(); ++i) {
      if (name[i] == '\'' && (++i == name.size() || name[i] != '\'')) return false;
      sheet += name[i];
    }
  } else {
    sheet = name;
  }
  // Another book, or a span of sheets.
  return !sheet.empty() && sheet.find_first_of("[]:") == sheet.npos;
}

// A number of 1 to `most` as 0-based; the whole text.
std::optional<int> lineNumber(std::string_view text, int most) {
  int value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end.ec != std::errc() || end.ptr != text.data() + text.size() || value < 1 || value > most) return std::nullopt;
  return value - 1;
}

// One end of a whole row or column range: digits, or letters, with or without "$".
std::optional<int> rowOf(std::string_view text) {
  if (!text.empty() && text.front() == '$') text.remove_prefix(1);
  if (text.empty() || !isDigit(text.front())) return std::nullopt;
  return lineNumber(text, kMaxRow + 1);
}

std::optional<int> colOf(std::string_view text) {
  if (std::any_of(text.begin(), text.end(), isDigit)) return std::nullopt;
  const auto place = addressIn(std::string(text) + '1');
  return place ? std::optional(place->col) : std::nullopt;
}

std::optional<SheetRange> rangeOf(std::string_view text) {
  if (const auto range = parseRange(text)) return range;
  const std::size_t colon = text.find(':');
  if (colon == text.npos) return std::nullopt;
  const std::string_view first = text.substr(0, colon), last = text.substr(colon + 1);
  if (const auto row = rowOf(first), other = rowOf(last); row && other) {
    return SheetRange{std::min(*row, *other), std::max(*row, *other), 0, kMaxCol};
  }
  if (const auto col = colOf(first), other = colOf(last); col && other) {
    return SheetRange{0, kMaxRow, std::min(*col, *other), std::max(*col, *other)};
  }
  return std::nullopt;
}

NamePart partOf(std::string_view text) {
  NamePart part;
  part.text = text;
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  if (takeSheet(text, part.sheet)) part.range = rangeOf(text);
  return part;
}

std::string columnText(int col) {
  std::string letters = absoluteCellText(0, col);
  return letters.substr(0, letters.size() - 2);  // without "$1"
}

}  // namespace

bool NamePart::isWholeRows() const {
  return range && range->colFirst == 0 && range->colLast == kMaxCol;
}

bool NamePart::isWholeColumns() const {
  return range && range->rowFirst == 0 && range->rowLast == kMaxRow;
}

std::vector<NamePart> nameParts(std::string_view text) {
  std::vector<NamePart> parts;
  for (bool more = true; more;) {
    const std::size_t end = partEnd(text);
    parts.push_back(partOf(text.substr(0, end)));
    more = end < text.size();
    text.remove_prefix(more ? end + 1 : end);
  }
  return parts;
}

std::string joinedParts(const std::vector<NamePart>& parts) {
  std::string text;
  for (const NamePart& part : parts) {
    if (!text.empty()) text += ',';
    text += part.text;
  }
  return text;
}

// A plain word begins with a letter or "_", has letters, digits, "_" and "." only, and could not be taken for a cell.
std::string quotedSheetName(std::string_view name) {
  const bool isWord =
      !name.empty() && (isLetter(name.front()) || name.front() == '_') &&
      std::all_of(name.begin(), name.end(), [](char c) { return isLetter(c) || isDigit(c) || c == '_' || c == '.'; });
  const auto first = name.empty() ? ' ' : name.front();
  const bool mayBeRowColumn = (first == 'R' || first == 'r' || first == 'C' || first == 'c') &&
                              std::all_of(name.begin(), name.end(), [](char c) {
                                return isDigit(c) || c == 'R' || c == 'r' || c == 'C' || c == 'c';
                              });
  const bool mayBeAddress = addressIn(name).has_value() || mayBeRowColumn;
  if (isWord && !mayBeAddress) return std::string(name);
  std::string quoted = "'";
  for (const char c : name) {
    if (c == '\'') quoted += c;
    quoted += c;
  }
  return quoted + '\'';
}

std::string referenceText(std::string_view sheet, const SheetRange& range) {
  std::string text = sheet.empty() ? std::string() : quotedSheetName(sheet) + '!';
  const bool wholeRows = range.colFirst == 0 && range.colLast == kMaxCol;
  const bool wholeCols = range.rowFirst == 0 && range.rowLast == kMaxRow;
  if (wholeRows && !wholeCols) {
    return text + '$' + std::to_string(range.rowFirst + 1) + ":$" + std::to_string(range.rowLast + 1);
  }
  if (wholeCols && !wholeRows) return text + columnText(range.colFirst) + ':' + columnText(range.colLast);
  text += absoluteCellText(range.rowFirst, range.colFirst);
  if (range.rowFirst == range.rowLast && range.colFirst == range.colLast) return text;
  return text + ':' + absoluteCellText(range.rowLast, range.colLast);
}

NamePart namePart(std::string_view sheet, const SheetRange& range) {
  return {referenceText(sheet, range), std::string(sheet), range};
}

std::optional<std::string> movedReference(std::string_view text, std::string_view sheet, const LineMove& move) {
  std::vector<NamePart> parts = nameParts(text);
  if (std::any_of(parts.begin(), parts.end(), [](const NamePart& part) { return !part.range; })) {
    return std::string(text);
  }
  bool isLeft = false;
  for (NamePart& part : parts) {
    if (!sameName(part.sheet, sheet)) {
      isLeft = true;
      continue;
    }
    SheetRange range = *part.range;
    if (!move.apply(range)) {
      part.text = quotedSheetName(part.sheet) + '!' + std::string(kDeleted);
      continue;
    }
    isLeft = true;
    if (range != *part.range) part.text = referenceText(part.sheet, range);
  }
  return isLeft ? std::optional(joinedParts(parts)) : std::nullopt;
}

std::string renamedReference(std::string_view text, std::string_view from, std::string_view to) {
  std::vector<NamePart> parts = nameParts(text);
  if (std::any_of(parts.begin(), parts.end(), [](const NamePart& part) { return !part.range; })) {
    return std::string(text);
  }
  bool changed = false;
  for (NamePart& part : parts) {
    if (!sameName(part.sheet, from)) continue;
    part.text = quotedSheetName(to) + part.text.substr(part.text.rfind('!'));
    changed = true;
  }
  return changed ? joinedParts(parts) : std::string(text);
}

bool sameName(std::string_view a, std::string_view b) {
  // Up to the first letter beyond ASCII nothing has to be decoded, and most names end or differ before it.
  constexpr unsigned kFirstBeyondAscii = 0x80;
  const auto unit = [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); };
  for (std::size_t i = 0;; ++i) {
    if (i == a.size() || i == b.size()) return a.size() == b.size();
    if (unit(a[i]) >= kFirstBeyondAscii || unit(b[i]) >= kFirstBeyondAscii) break;
    if (nameCapital(unit(a[i])) != nameCapital(unit(b[i]))) return false;
  }
  return a == b || sameNameIgnoringCase(platform::utf16FromUtf8Lossy(a), platform::utf16FromUtf8Lossy(b));
}

}  // namespace rubrica
