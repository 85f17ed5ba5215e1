#include "biff/styles/style_tables.h"

#include "engine/date_format.h"
#include "engine/xlerror.h"

namespace rubrica {
namespace {

constexpr int kDefaultFonts = 5;

// Formats of a new book, in order: `count` alike.
struct DefaultXf {
  int count;
  std::uint16_t font;
  std::uint16_t numFormat;
  std::uint16_t protection;
  std::uint32_t alignment;
};
// Every group of properties but the number format is the parent's.
constexpr std::uint32_t kNumFormatStyle = 0xF8000000 | XF::kBottomAligned;
constexpr DefaultXf kDefaultXfs[] = {
    {1, 0, 0, XF::kStyleProtection, XF::kBottomAligned}, {2, 1, 0, XF::kStyleProtection, XF::kBottomAligned},
    {2, 2, 0, XF::kStyleProtection, XF::kBottomAligned}, {10, 0, 0, XF::kStyleProtection, XF::kBottomAligned},
    {1, 0, 0, XF::kCellProtection, XF::kBottomAligned},  {1, 1, 44, XF::kStyleProtection, kNumFormatStyle},
    {1, 1, 42, XF::kStyleProtection, kNumFormatStyle},   {1, 1, 9, XF::kStyleProtection, kNumFormatStyle},
    {1, 1, 43, XF::kStyleProtection, kNumFormatStyle},   {1, 1, 41, XF::kStyleProtection, 0},
};

// XF index and built-in id: Currency, Currency [0], Normal, Percent, Comma, Comma [0].
struct DefaultStyle {
  std::uint16_t xf;
  std::uint8_t builtInId;
};
constexpr DefaultStyle kDefaultStyles[] = {{16, 4}, {17, 7}, {0, 0}, {18, 5}, {19, 3}, {20, 6}};

template <class Table>
auto* at(const Table& table, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= table.size()) throw xlerror("index is out of range");
  return table[static_cast<std::size_t>(index)].get();
}

template <class Positions, class Pointer>
std::optional<std::uint16_t> positionIn(const Positions& positions, Pointer pointer) {
  const auto found = positions.find(pointer);
  if (found == positions.end() || found->second > UINT16_MAX) return std::nullopt;
  return static_cast<std::uint16_t>(found->second);
}

}  // namespace

void StyleTables::createDefaults() {
  for (int i = 0; i < kDefaultFonts; ++i) append(std::make_unique<FontImpl>(*_state));
  for (const DefaultXf& row : kDefaultXfs) {
    XF xf;
    xf.font = row.font;
    xf.numFormat = row.numFormat;
    xf.protection = row.protection;
    xf.alignment = row.alignment;
    for (int i = 0; i < row.count; ++i) append(std::make_unique<FormatImpl>(*this, xf));
  }
  for (const DefaultStyle& row : kDefaultStyles) {
    Style& style = _styles.emplace_back();
    style.xf = row.xf | Style::kBuiltIn;
    style.builtInId = row.builtInId;
  }
}

void StyleTables::clear() {
  _formats.clear();
  _formatPositions.clear();
  _fonts.clear();
  _fontPositions.clear();
  _styles.clear();
  _numFormats.clear();
  _palette.resetColors();
  _paletteChanged = false;
}

FontImpl* StyleTables::append(std::unique_ptr<FontImpl> font) {
  FontImpl* added = font.get();
  _fonts.push_back(std::move(font));
  _fontPositions.try_emplace(added, static_cast<std::uint32_t>(_fonts.size() - 1));
  return added;
}

FormatImpl* StyleTables::append(std::unique_ptr<FormatImpl> format) {
  FormatImpl* added = format.get();
  _formats.push_back(std::move(format));
  _formatPositions.try_emplace(added, static_cast<std::uint32_t>(_formats.size() - 1));
  return added;
}

FormatImpl* StyleTables::addFormat(IFormatT<char16_t>* init) {
  // Cells hold the XF index in 16 bits.
  if (_formats.size() > UINT16_MAX) throw xlerror("maximum number of formats is exceeded");
  XF xf;
  xf.protection = XF::kCellProtection;
  auto format = std::make_unique<FormatImpl>(*this, xf);
  if (init != nullptr) format->copyFrom(*init);
  FormatImpl* added = append(std::move(format));
  _state->setOk();
  return added;
}

FontImpl* StyleTables::addFont(IFontT<char16_t>* init) {
  auto font = std::make_unique<FontImpl>(*_state);
  if (init != nullptr) font->copyFrom(*init);
  FontImpl* added = append(std::move(font));
  _state->setOk();
  return added;
}

FormatImpl* StyleTables::format(int index) {
  return at(_formats, index);
}

FontImpl* StyleTables::font(int index) {
  return at(_fonts, index);
}

std::optional<std::uint16_t> StyleTables::indexOf(const IFormatT<char16_t>* format) const {
  return positionIn(_formatPositions, format);
}

std::optional<std::uint16_t> StyleTables::positionOf(const IFontT<char16_t>* font) const {
  return positionIn(_fontPositions, font);
}

const char16_t* StyleTables::defaultFont(int* size) {
  if (_fonts.empty()) throw xlerror("fonts is empty");
  if (size != nullptr) *size = _fonts.front()->size();
  return _fonts.front()->name();
}

void StyleTables::setDefaultFont(const char16_t* name, int size) {
  if (_fonts.empty()) throw xlerror("fonts is empty");
  _fonts.front()->assignName(name);
  _fonts.front()->setSize(size);
}

int StyleTables::addCustomNumFormat(std::u16string_view text) {
  const auto [id, isNew] = _numFormats.add(text, _state->pool);
  if (isNew && id == 0) {
    _state->setMessage("maximum number of custom formats is exceeded");
  } else if (isNew) {
    _state->setOk();
  }
  return id;
}

const char16_t* StyleTables::customNumFormat(int id) {
  if (!_numFormats.contains(id)) {
    _state->setMessage("custom number format not found");
    return nullptr;
  }
  return _state->convert(_numFormats.text(id));
}

bool StyleTables::isDateNumFormat(int id) {
  const DateRule rule = dateRuleOf(id);
  return rule == DateRule::byText ? isDateFormatText(customNumFormat(id)) : rule == DateRule::date;
}

int StyleTables::colorPack(int red, int green, int blue) {
  _paletteChanged = true;
  return _palette.pack(red, green, blue);
}

void StyleTables::readFont(Xls& xls, std::uint16_t size) {
  auto font = std::make_unique<FontImpl>(*_state);
  font->read(xls, size);
  append(std::move(font));
}

void StyleTables::readFormat(Xls& xls, std::uint16_t size) {
  _numFormats.read(xls, size, *_state);
}

void StyleTables::readXf(Xls& xls, std::uint16_t size) {
  auto format = std::make_unique<FormatImpl>(*this);
  format->read(xls, size);
  append(std::move(format));
}

void StyleTables::readStyle(Xls& xls, std::uint16_t size) {
  Style style;
  style.read(xls, size, *_state);
  _styles.push_back(std::move(style));
}

void StyleTables::readPalette(Xls& xls, std::uint16_t size) {
  _palette.read(xls, size);
  _paletteChanged = true;
}

void StyleTables::writeFonts(Xls& xls) const {
  for (const auto& font : _fonts) font->write(xls);
}

void StyleTables::writeFormats(Xls& xls) const {
  _numFormats.write(xls);
}

void StyleTables::writeXfs(Xls& xls) const {
  for (const auto& format : _formats) format->write(xls);
}

void StyleTables::writeStyles(Xls& xls) const {
  for (const Style& style : _styles) style.write(xls);
}

void StyleTables::writePalette(Xls& xls) const {
  if (_paletteChanged) _palette.write(xls);
}

}  // namespace rubrica
