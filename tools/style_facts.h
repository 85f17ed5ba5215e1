// A format and its font as plain values that mean the same in every book and in both file forms: colours are RGB or
// automatic, number formats are texts. Formats of two books can be compared by them, and a format can be made from
// them.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "engine/book.h"

namespace rubrica::tools {

// 0xRRGGBB, or kAutomatic for whatever the program chooses.
using Rgb = int;
inline constexpr Rgb kAutomatic = -1;

struct FontFacts {
  std::u16string name;
  int size = 0;
  bool bold = false, italic = false, strikeOut = false;
  Underline underline = Underline::none;
  Script script = Script::normal;
  Rgb color = kAutomatic;
  auto operator<=>(const FontFacts&) const = default;
};

struct Side {
  BorderStyle style = BorderStyle::none;
  Rgb color = kAutomatic;  // of a side that has a line
  auto operator<=>(const Side&) const = default;
};

struct FormatFacts {
  FontFacts font;
  int numFormat = 0;             // a built-in id, 0 where there is a text
  std::u16string numFormatText;  // of a custom format that says no built-in one
  AlignH alignH = AlignH::general;
  AlignV alignV = AlignV::bottom;
  bool wrap = false, shrinkToFit = false;
  int rotation = 0, indent = 0;
  Side left, right, top, bottom, diagonal;
  BorderDiagonal diagonalWay = BorderDiagonal::none;
  FillPattern pattern = FillPattern::none;
  Rgb foreground = kAutomatic, background = kAutomatic;  // of a cell that has a pattern
  bool locked = true, hidden = false;
  auto operator<=>(const FormatFacts&) const = default;
};

// Each property by name with its value as text, in the order in which people ask for them.
std::vector<std::pair<const char*, std::string>> describe(const FormatFacts& facts);

// The text of a built-in number format; null for an id that has none.
const char16_t* builtInNumFormat(int id);

// Reads the formats of one book, each once.
class StyleReader {
 public:
  explicit StyleReader(Book& book) : _book(book) {}
  // The facts of a format of this book; those of a plain format for null. Valid as long as the reader.
  const FormatFacts& of(Format* format);
  Rgb rgb(Color color);

 private:
  FormatFacts read(Format& format);
  FontFacts read(Font& font);
  Side side(BorderStyle style, Color color);

  Book& _book;
  std::map<Format*, FormatFacts> _known;
  FormatFacts _plain;
};

// Makes formats in a book, one for each combination of facts, with as few fonts.
class StyleWriter {
 public:
  explicit StyleWriter(Book& book) : _book(book) {}
  // A format and font that the book has already, and what they say.
  void adopt(const FormatFacts& facts, Format* format);
  // Null when the book can't hold one more format, or custom number format; its message says why.
  Format* formatOf(const FormatFacts& facts);
  // Colours that the book had no room for: the nearest it has stand for them.
  int approximatedColors() const { return _approximated; }

 private:
  Font* fontOf(const FontFacts& facts);
  Color colorOf(Rgb rgb);
  Color nearestColor(Rgb rgb);
  void setBorders(Format& format, const FormatFacts& facts);

  Book& _book;
  std::map<FormatFacts, Format*> _formats;
  std::map<FontFacts, Font*> _fonts;
  boost::unordered_flat_map<Rgb, Color> _colors;
  int _approximated = 0;
};

}  // namespace rubrica::tools
