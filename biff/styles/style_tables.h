// The style tables of an .xls book: fonts, formats (XFs), cell styles, custom number formats and the palette, with
// their records. Owned by BookImplT; hands out fonts and formats that live until clear().
//
// Operations here throw xlerror; BookImplT puts the guard of a public operation around them. Where one leaves a text in
// the last message without failing (customNumFormat, addCustomNumFormat) it says so.
//
// The rule for fonts: the record at table position p has font index p below 4 and p + 1 from 4 on, as the file format
// has no font 4. font() and setFont() of a format translate; everything here counts positions.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "biff/book_state.h"
#include "biff/styles/font_impl.h"
#include "biff/styles/format_impl.h"
#include "biff/styles/num_formats.h"
#include "biff/styles/palette.h"
#include "biff/styles/style_record.h"

namespace rubrica {

class StyleTables {
 public:
  // The XF index of cells that were given no format.
  static constexpr std::uint16_t kDefaultCellXf = 15;

  explicit StyleTables(BookState& state) : _state(&state) {}
  StyleTables(const StyleTables&) = delete;
  StyleTables& operator=(const StyleTables&) = delete;

  // The five fonts, twenty-one formats and six styles of a new book.
  void createDefaults();
  // Empties all tables before a load: every font and format handed out is gone. Call it before the pool is cleared.
  void clear();

  // A new entry, plain or a copy of one of any book of either file form. A format's copy always adds a font too.
  FormatImpl* addFormat(IFormatT<char16_t>* init);
  FontImpl* addFont(IFontT<char16_t>* init);
  // Throw "index is out of range".
  FormatImpl* format(int index);
  FontImpl* font(int index);
  int formatCount() const { return static_cast<int>(_formats.size()); }
  int fontCount() const { return static_cast<int>(_fonts.size()); }
  // The XF index of a format of this book; nothing for any other pointer, which is not dereferenced.
  std::optional<std::uint16_t> indexOf(const IFormatT<char16_t>* format) const;
  std::optional<std::uint16_t> positionOf(const IFontT<char16_t>* font) const;

  // Name and size of the font at position 0; throw "fonts is empty".
  const char16_t* defaultFont(int* size);
  void setDefaultFont(const char16_t* name, int size);

  // The id of a custom number format. A text that is there already leaves the last message alone; a new one sets "ok",
  // or "maximum number of custom formats is exceeded" with the result 0.
  int addCustomNumFormat(std::u16string_view text);
  // Null, with the message "custom number format not found", where there is none.
  const char16_t* customNumFormat(int id);
  // May leave the message of customNumFormat.
  bool isDateNumFormat(int id);

  Palette& palette() { return _palette; }
  // Whether a save writes the Palette record.
  bool paletteChanged() const { return _paletteChanged; }
  int colorPack(int red, int green, int blue);
  void colorUnpack(int color, int* red, int* green, int* blue) const { _palette.unpack(color, red, green, blue); }

  void readFont(Xls& xls, std::uint16_t size);
  void readFormat(Xls& xls, std::uint16_t size);  // a Format record, which is a number format
  void readXf(Xls& xls, std::uint16_t size);
  void readStyle(Xls& xls, std::uint16_t size);  // takes the StyleExt behind it too
  void readPalette(Xls& xls, std::uint16_t size);

  // Each family in table order. The order of a file: fonts, formats, XFs, styles, palette.
  void writeFonts(Xls& xls) const;
  void writeFormats(Xls& xls) const;
  void writeXfs(Xls& xls) const;
  void writeStyles(Xls& xls) const;
  void writePalette(Xls& xls) const;  // nothing unless paletteChanged()

  BookState& state() { return *_state; }
  const std::vector<Style>& styles() const { return _styles; }

 private:
  FontImpl* append(std::unique_ptr<FontImpl> font);
  FormatImpl* append(std::unique_ptr<FormatImpl> format);

  BookState* _state;
  std::vector<std::unique_ptr<FontImpl>> _fonts;
  std::vector<std::unique_ptr<FormatImpl>> _formats;
  boost::unordered_flat_map<const IFontT<char16_t>*, std::uint32_t> _fontPositions;
  boost::unordered_flat_map<const IFormatT<char16_t>*, std::uint32_t> _formatPositions;
  std::vector<Style> _styles;
  NumFormats _numFormats;
  Palette _palette;
  bool _paletteChanged = false;
};

}  // namespace rubrica
