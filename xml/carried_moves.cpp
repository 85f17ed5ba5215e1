#include "xml/carried_moves.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <utility>
#include <vector>

#include "engine/address.h"
#include "lmx/text.h"
#include "xml/filter_moves.h"
#include "xml/sheet_range.h"
#include "xml/tag_scan.h"

namespace rubrica {
namespace {

// A stretch of the text and what stands there instead.
struct Replacement {
  std::size_t begin, end;
  std::string text;
};

// The stretches are in order and don't overlap.
std::string replaced(std::string_view text, const std::vector<Replacement>& replacements) {
  std::string out;
  std::size_t copied = 0;
  for (const Replacement& part : replacements) {
    out.append(text.substr(copied, part.begin - copied)).append(part.text);
    copied = part.end;
  }
  return out.append(text.substr(copied));
}

// Ranges that blanks separate; empty when none is left. A list of which none moves comes back as it was.
std::string movedList(std::string_view list, const LineMove& move) {
  std::string moved;
  bool isChanged = false;
  for (std::size_t i = 0; i < list.size();) {
    while (i < list.size() && lmx::is_space(list[i])) ++i;
    const std::size_t begin = i;
    while (i < list.size() && !lmx::is_space(list[i])) ++i;
    if (i == begin) continue;
    const std::string word(list.substr(begin, i - begin));
    const auto range = movedRange(word, move);
    isChanged = isChanged || range != word;
    if (range) moved.append(moved.empty() ? "" : " ").append(*range);
  }
  return isChanged ? moved : std::string(list);
}

class ExtensionMove {
 public:
  ExtensionMove(std::string_view text, const LineMove& move) : _text(text), _move(move) {}

  std::optional<std::string> run() {
    TagScan scan(_text);
    for (ScannedTag tag; scan.next(tag);) {
      if (tag.kind == ScannedTag::Kind::start) open(tag);
      if (tag.kind == ScannedTag::Kind::end && !_open.empty()) close(tag);
    }
    _out.append(_text.substr(_copied));
    if (_outermost.ranged > 0 && _outermost.left == 0) return std::nullopt;
    return std::move(_out);
  }

 private:
  // An open element: how many of its children have ranges, and of how many any are left.
  struct Element {
    std::size_t outBegin = 0, tagSize = 0, contentBegin = 0;
    bool isRangeList = false;
    std::size_t ranged = 0, left = 0;
  };

  void copyTo(std::size_t position) {
    _out.append(_text.substr(_copied, position - _copied));
    _copied = position;
  }

  void open(const ScannedTag& tag) {
    copyTo(tag.begin);
    _open.push_back({_out.size(), tag.end - tag.begin, tag.end, tag.local() == "sqref"});
    copyTo(tag.end);
  }

  void close(const ScannedTag& tag) {
    Element element = _open.back();
    _open.pop_back();
    if (element.isRangeList) {
      const std::string list = movedList(_text.substr(element.contentBegin, tag.begin - element.contentBegin), _move);
      _out.resize(element.outBegin + element.tagSize);
      _out.append(list);
      _copied = tag.begin;
      element.ranged = 1;
      element.left = list.empty() && tag.begin > element.contentBegin ? 0 : 1;
    }
    copyTo(tag.end);
    if (element.ranged == 0) return;
    Element& around = _open.empty() ? _outermost : _open.back();
    ++around.ranged;
    if (element.left == 0) {
      _out.resize(element.outBegin);
      return;
    }
    ++around.left;
    if (element.left < element.ranged) correctCount(element);
  }

  // The number of its children, where an element states it.
  void correctCount(const Element& element) {
    const std::string start = _out.substr(element.outBegin, element.tagSize);
    TagScan scan(start);
    ScannedTag tag;
    std::size_t size = 0;
    const char* value = scan.next(tag) ? tag.findAttribute("count", size) : nullptr;
    if (value == nullptr) return;
    _out.replace(element.outBegin + static_cast<std::size_t>(value - start.data()), size, std::to_string(element.left));
  }

  std::string_view _text;
  const LineMove& _move;
  std::string _out;
  std::size_t _copied = 0;  // of the text
  std::vector<Element> _open;
  Element _outermost;
};

// ---- VML

struct Stretch {
  std::size_t begin = 0, end = 0;
  bool isEmpty() const { return end == 0; }
};

// A shape with the data that ties it to the sheet.
struct LegacyShape {
  Stretch element, row, column, anchor;
  bool isNote = false, isFixed = false;
};

// Left column, its offset, top row, its offset, then the same of the far corner.
using LegacyAnchor = std::array<int, 8>;
constexpr std::size_t kAnchorLeft = 0, kAnchorTop = 2, kAnchorRight = 4, kAnchorBottom = 6;

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && lmx::is_space(text.front())) text.remove_prefix(1);
  while (!text.empty() && lmx::is_space(text.back())) text.remove_suffix(1);
  return text;
}

std::optional<int> numberIn(std::string_view text) {
  text = trimmed(text);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value >= 0 && value < kXlsxGrid.rows ? std::optional(value) : std::nullopt;
}

std::optional<LegacyAnchor> anchorIn(std::string_view text) {
  LegacyAnchor anchor{};
  for (auto& part : anchor) {
    const std::size_t comma = std::min(text.find(','), text.size());
    const auto number = numberIn(text.substr(0, comma));
    if (!number) return std::nullopt;
    part = *number;
    text.remove_prefix(std::min(comma + 1, text.size()));
  }
  return anchor;
}

std::string textOf(const LegacyAnchor& anchor) {
  std::string text;
  for (const int number : anchor) text.append(text.empty() ? "" : ", ").append(std::to_string(number));
  return text;
}

std::vector<LegacyShape> shapesIn(std::string_view text) {
  std::vector<LegacyShape> shapes;
  LegacyShape shape;
  Stretch* value = nullptr;
  TagScan scan(text);
  for (ScannedTag tag; scan.next(tag);) {
    const std::string_view local = tag.local();
    const bool ends = tag.kind == ScannedTag::Kind::end;
    if (value != nullptr) {
      value->end = tag.begin;
      value = nullptr;
    }
    if (local == "shape") {
      if (ends && !shape.element.isEmpty()) {
        shape.element.end = tag.end;
        shapes.push_back(shape);
      }
      shape = LegacyShape();
      if (!ends) shape.element = {tag.begin, tag.end};
    }
    if (ends) continue;
    if (local == "ClientData") shape.isNote = tag.attribute("ObjectType") == "Note";
    // The format's flags mean the opposite of their names.
    if (local == "MoveWithCells") shape.isFixed = true;
    if (tag.kind == ScannedTag::Kind::empty) continue;
    value = local == "Row" ? &shape.row : local == "Column" ? &shape.column : local == "Anchor" ? &shape.anchor : value;
    if (value != nullptr) value->begin = tag.end;
  }
  return shapes;
}

// By how much a line moves; one that is removed gives way to the one behind.
int shiftOf(int line, const std::optional<int>& moved, const LineMove& move) {
  return moved ? *moved - line : move.inserts() ? move.limit() - 1 - line : move.first() - line;
}

class LegacyMove {
 public:
  LegacyMove(std::string_view text, const LineMove& move) : _text(text), _move(move) {}

  std::string run() {
    for (const LegacyShape& shape : shapesIn(_text)) shape.isNote ? moveNote(shape) : moveOther(shape);
    std::sort(_replacements.begin(), _replacements.end(),
              [](const Replacement& a, const Replacement& b) { return a.begin < b.begin; });
    return replaced(_text, _replacements);
  }

 private:
  std::string_view textOf(const Stretch& stretch) const {
    return _text.substr(stretch.begin, stretch.end - stretch.begin);
  }

  void moveNote(const LegacyShape& shape) {
    const auto row = numberIn(textOf(shape.row)), col = numberIn(textOf(shape.column));
    if (!row || !col) return;
    const auto newRow = _move.mapRow(*row), newCol = _move.mapCol(*col);
    if (!newRow || !newCol) {
      _replacements.push_back({shape.element.begin, shape.element.end, {}});
      return;
    }
    if (*newRow != *row) _replacements.push_back({shape.row.begin, shape.row.end, std::to_string(*newRow)});
    if (*newCol != *col) _replacements.push_back({shape.column.begin, shape.column.end, std::to_string(*newCol)});
    if (const auto anchor = anchorIn(textOf(shape.anchor))) shift(shape, *anchor, *newRow - *row, *newCol - *col);
  }

  void moveOther(const LegacyShape& shape) {
    const auto anchor = shape.isFixed ? std::nullopt : anchorIn(textOf(shape.anchor));
    if (!anchor) return;
    const int row = (*anchor)[kAnchorTop], col = (*anchor)[kAnchorLeft];
    shift(shape, *anchor, shiftOf(row, _move.mapRow(row), _move), shiftOf(col, _move.mapCol(col), _move));
  }

  // As far as the sheet goes.
  void shift(const LegacyShape& shape, LegacyAnchor anchor, int rows, int cols) {
    const auto move = [&](std::size_t first, std::size_t last, int by, int limit) {
      const int most = std::max(limit - 1 - anchor[last], 0);
      const int shifted = std::clamp(by, -std::min(anchor[first], anchor[last]), most);
      anchor[first] += shifted;
      anchor[last] += shifted;
      return shifted != 0;
    };
    const bool isMovedDown = move(kAnchorTop, kAnchorBottom, rows, kXlsxGrid.rows);
    const bool isMovedAside = move(kAnchorLeft, kAnchorRight, cols, kXlsxGrid.cols);
    if (!isMovedDown && !isMovedAside) return;
    _replacements.push_back({shape.anchor.begin, shape.anchor.end, rubrica::textOf(anchor)});
  }

  std::string_view _text;
  const LineMove& _move;
  std::vector<Replacement> _replacements;
};

}  // namespace

std::optional<std::string> movedExtension(std::string_view text, const LineMove& move) {
  return ExtensionMove(text, move).run();
}

std::string movedLegacyDrawing(std::string_view text, const LineMove& move) {
  return LegacyMove(text, move).run();
}

std::string movedThreadedComments(std::string_view text, const LineMove& move) {
  std::vector<Replacement> replacements;
  std::size_t goes = text.npos;  // where a comment begins whose cell is gone
  TagScan scan(text);
  for (ScannedTag tag; scan.next(tag);) {
    if (tag.local() != "threadedComment") continue;
    if (tag.kind == ScannedTag::Kind::end) {
      if (goes != text.npos) replacements.push_back({goes, tag.end, {}});
      goes = text.npos;
      continue;
    }
    std::size_t size = 0;
    const char* ref = tag.findAttribute("ref", size);
    const auto place = ref == nullptr ? std::nullopt : addressIn(std::string_view(ref, size));
    if (!place) continue;
    const auto row = move.mapRow(place->row), col = move.mapCol(place->col);
    if (row && col) {
      const auto at = static_cast<std::size_t>(ref - text.data());
      replacements.push_back({at, at + size, cellText(*row, *col)});
    } else if (tag.kind == ScannedTag::Kind::empty) {
      replacements.push_back({tag.begin, tag.end, {}});
    } else {
      goes = tag.begin;
    }
  }
  return replaced(text, replacements);
}

std::string movedPivotTable(std::string_view text, const LineMove& move) {
  std::vector<Replacement> replacements;
  TagScan scan(text);
  for (ScannedTag tag; replacements.empty() && scan.next(tag);) {
    std::size_t size = 0;
    const char* ref = tag.local() == "location" ? tag.findAttribute("ref", size) : nullptr;
    const auto moved = ref == nullptr ? std::nullopt : movedRange(std::string(ref, size), move);
    if (!moved) continue;
    const auto at = static_cast<std::size_t>(ref - text.data());
    replacements.push_back({at, at + size, *moved});
  }
  return replaced(text, replacements);
}

}  // namespace rubrica
