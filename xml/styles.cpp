#include "xml/styles.h"

#include <algorithm>
#include <set>

#include "engine/date_format.h"
#include "engine/standard_palette.h"
#include "engine/xlerror.h"
#include "xml/xml_font.h"
#include "xml/xml_format.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

// Custom ids begin at 164, but this form hands out none below 166.
constexpr std::uint32_t kFirstNumFormat = 166;

constexpr double kDefaultFontPoints = 11.0;
constexpr char kDefaultFontName[] = "Calibri";
constexpr char kNormalStyle[] = "Normal";

constexpr int kByteBits = 8;
constexpr std::uint8_t kOpaque = 0xFF;
constexpr std::size_t kRgb = 3, kArgb = 4;  // bytes of a colour

template <class Table>
auto* at(const Table& table, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= table.size()) throw xlerror("index is out of range");
  return table[static_cast<std::size_t>(index)].get();
}

template <class Positions, class Pointer>
std::optional<std::uint32_t> positionIn(const Positions& positions, Pointer pointer) {
  const auto found = positions.find(pointer);
  if (found == positions.end()) return std::nullopt;
  return found->second;
}

Color rgbOf(const std::vector<std::uint8_t>& bytes) {
  const std::size_t red = bytes.size() - kRgb;
  return bytes[red] << 2 * kByteBits | bytes[red + 1] << kByteBits | bytes[red + 2];
}

void checkRgb(const std::vector<std::uint8_t>& bytes) {
  if (bytes.size() != kRgb && bytes.size() != kArgb) throw xlerror("rgb color is invalid");
}

// The palette index of an opaque colour that the standard palette has.
Color indexOfRgb(const std::vector<std::uint8_t>& bytes) {
  if (bytes.size() == kArgb && bytes.front() != kOpaque) return color::notSet;
  const auto* found =
      std::find(kStandardPalette.begin(), kStandardPalette.end(), static_cast<std::uint32_t>(rgbOf(bytes)));
  if (found == kStandardPalette.end()) return color::notSet;
  return kFirstPaletteIndex + static_cast<Color>(found - kStandardPalette.begin());
}

// Indexes 0 to 7 are the same colours as 8 to 15.
Color rgbOfIndex(std::uint32_t index) {
  const std::uint32_t position = index < kFirstPaletteIndex ? index : index - kFirstPaletteIndex;
  return position < kStandardPalette.size() ? static_cast<Color>(kStandardPalette[position]) : color::notSet;
}

template <class Xf>
void clearIds(Xf& xf) {
  xf.set_numFmtId(0);
  xf.set_fontId(0);
  xf.set_fillId(0);
  xf.set_borderId(0);
}

}  // namespace

template <class Tag>
Styles<Tag>::Styles(LastMessage& last) : _last(&last) {
  createDefaults();
  adoptTree();
}

template <class Tag>
Styles<Tag>::Styles(LastMessage& last, const char* data, std::size_t size) : Base(data, size), _last(&last) {
  adoptTree();
}

template <class Tag>
Styles<Tag>::Styles(LastMessage& last, const std::string& path) : Base(path), _last(&last) {
  adoptTree();
}

template <class Tag>
Styles<Tag>::~Styles() = default;

template <class Tag>
void Styles<Tag>::createDefaults() {
  std::uint32_t ignored = 0;
  for (const char* pattern : {"none", "gray125"}) appendFill(ignored).get_patternFill().set_patternType(pattern);
  appendBorder(ignored);
  auto& font = appendFont();
  font.append_choice().get_sz().set_val(kDefaultFontPoints);
  font.append_choice().get_name().set_val(kDefaultFontName);
  auto& styleXfs = this->get_cellStyleXfs();
  clearIds(styleXfs.append_xf());
  styleXfs.set_count(1);
  auto& xf = appendXf();
  clearIds(xf);
  xf.set_xfId(0);
  auto& cellStyles = this->get_cellStyles();
  auto& normal = cellStyles.append_cellStyle();
  normal.set_name(kNormalStyle);
  normal.set_xfId(0);
  normal.set_builtinId(0);
  cellStyles.set_count(1);
}

template <class Tag>
void Styles<Tag>::adoptTree() {
  if (auto* fonts = this->find_fonts()) {
    for (std::size_t i = 0; i < fonts->size_font(); ++i) {
      append(std::make_unique<XMLFontImplT<Tag>>(*this, fonts->get_font(i)));
    }
  }
  if (auto* formats = this->find_cellXfs()) {
    for (std::size_t i = 0; i < formats->size_xf(); ++i) {
      append(std::make_unique<XMLFormatImplT<Tag>>(*this, formats->get_xf(i)));
    }
  }
}

template <class Tag>
void Styles<Tag>::append(std::unique_ptr<XMLFormatImplT<Tag>> format) {
  _formatPositions.try_emplace(format.get(), static_cast<std::uint32_t>(_formats.size()));
  _formats.push_back(std::move(format));
}

template <class Tag>
void Styles<Tag>::append(std::unique_ptr<XMLFontImplT<Tag>> font) {
  _fontPositions.try_emplace(font.get(), static_cast<std::uint32_t>(_fonts.size()));
  _fonts.push_back(std::move(font));
}

template <class Tag>
XMLFormatImplT<Tag>* Styles<Tag>::addFormat(IFormatT<char16_t>* initial) {
  append(std::make_unique<XMLFormatImplT<Tag>>(this, initial));
  return _formats.back().get();
}

template <class Tag>
XMLFontImplT<Tag>* Styles<Tag>::addFont(IFontT<char16_t>* initial) {
  auto font = std::make_unique<XMLFontImplT<Tag>>(*this, appendFont());
  auto* added = font.get();
  append(std::move(font));
  if (initial != nullptr) added->copyFrom(*initial);
  return added;
}

template <class Tag>
XMLFormatImplT<Tag>* Styles<Tag>::format(int index) {
  return at(_formats, index);
}

template <class Tag>
XMLFontImplT<Tag>* Styles<Tag>::font(int index) {
  return at(_fonts, index);
}

template <class Tag>
std::optional<std::uint32_t> Styles<Tag>::indexOf(const IFormatT<char16_t>* format) const {
  return positionIn(_formatPositions, format);
}

template <class Tag>
std::optional<std::uint32_t> Styles<Tag>::positionOf(const IFontT<char16_t>* font) const {
  return positionIn(_fontPositions, font);
}

template <class Tag>
int Styles<Tag>::addCustomNumFormat(std::u16string_view text) {
  const std::string stored = toXstring(text);
  std::set<std::uint32_t> used;
  if (const auto* formats = this->find_numFmts()) {
    for (std::size_t i = 0; i < formats->size_numFmt(); ++i) {
      const auto& known = formats->get_numFmt(i);
      if (known.get_formatCode() == stored) return static_cast<int>(known.get_numFmtId());
      used.insert(known.get_numFmtId());
    }
  }
  std::uint32_t id = kFirstNumFormat;
  while (used.contains(id)) ++id;
  if (id > numformat::lastCustom) throw xlerror("maximum number of custom formats is exceeded");
  auto& formats = this->get_numFmts();
  auto& added = formats.append_numFmt();
  added.set_numFmtId(id);
  added.set_formatCode(stored);
  formats.set_count(static_cast<std::uint32_t>(formats.size_numFmt()));
  _isDate.clear();
  return static_cast<int>(id);
}

template <class Tag>
const char16_t* Styles<Tag>::findCustomNumFormat(int id) {
  const auto* formats = this->find_numFmts();
  if (formats == nullptr || id < 0) return nullptr;
  for (std::size_t i = 0; i < formats->size_numFmt(); ++i) {
    if (formats->get_numFmt(i).get_numFmtId() != static_cast<std::uint32_t>(id)) continue;
    fromXstring(formats->get_numFmt(i).get_formatCode(), _numFormatText);
    return _numFormatText.c_str();
  }
  return nullptr;
}

template <class Tag>
const char16_t* Styles<Tag>::customNumFormat(int id) {
  const char16_t* text = findCustomNumFormat(id);
  if (text == nullptr) throw xlerror("custom number format not found");
  return text;
}

template <class Tag>
bool Styles<Tag>::isDateNumFormat(int id) {
  const auto [known, isNew] = _isDate.try_emplace(id, false);
  if (isNew) {
    const DateRule rule = dateRuleOf(id);
    known->second = rule == DateRule::byText ? isDateFormatText(findCustomNumFormat(id)) : rule == DateRule::date;
  }
  return known->second;
}

template <class Tag>
const char16_t* Styles<Tag>::defaultFont(int* size) {
  if (_fonts.empty()) throw xlerror("fonts is empty");
  if (size != nullptr) *size = _fonts.front()->size();
  return _fonts.front()->name();
}

template <class Tag>
void Styles<Tag>::setDefaultFont(const char16_t* name, int size) {
  if (_fonts.empty()) throw xlerror("fonts is empty");
  _fonts.front()->assignName(name);
  _fonts.front()->setSize(size);
}

template <class Tag>
Color Styles<Tag>::readColor(const typename Classes::Color& element) const {
  if (element.isset_rgb()) {
    const auto& bytes = element.get_rgb().bytes;
    checkRgb(bytes);
    return _rgbMode ? rgbOf(bytes) : indexOfRgb(bytes);
  }
  if (!element.isset_indexed()) return color::notSet;
  const std::uint32_t index = element.get_indexed();
  if (!_rgbMode) return static_cast<Color>(index);
  const auto* colors = this->find_colors();
  const auto* palette = colors == nullptr ? nullptr : colors->find_indexedColors();
  if (palette == nullptr || index >= palette->size_rgbColor()) return rgbOfIndex(index);
  const auto& entry = palette->get_rgbColor(index);
  if (!entry.isset_rgb()) return color::notSet;
  checkRgb(entry.get_rgb().bytes);
  return rgbOf(entry.get_rgb().bytes);
}

template <class Tag>
void Styles<Tag>::writeColor(typename Classes::Color& element, Color color) const {
  element = {};
  if (!_rgbMode) {
    element.set_indexed(static_cast<std::uint32_t>(color));
    return;
  }
  const auto byteAt = [color](int shift) { return static_cast<std::uint8_t>(color >> shift); };
  element.set_rgb({{kOpaque, byteAt(2 * kByteBits), byteAt(kByteBits), byteAt(0)}});
}

template <class Tag>
auto Styles<Tag>::borderAt(std::uint32_t index) const -> const typename Classes::Border* {
  const auto* borders = this->find_borders();
  return borders == nullptr || index >= borders->size_border() ? nullptr : &borders->get_border(index);
}

template <class Tag>
auto Styles<Tag>::fillAt(std::uint32_t index) const -> const typename Classes::Fill* {
  const auto* fills = this->find_fills();
  return fills == nullptr || index >= fills->size_fill() ? nullptr : &fills->get_fill(index);
}

template <class Tag>
auto Styles<Tag>::appendBorder(std::uint32_t& index) -> typename Classes::Border& {
  auto& borders = this->get_borders();
  index = static_cast<std::uint32_t>(borders.size_border());
  auto& border = borders.append_border();
  borders.set_count(index + 1);
  return border;
}

template <class Tag>
auto Styles<Tag>::appendFill(std::uint32_t& index) -> typename Classes::Fill& {
  auto& fills = this->get_fills();
  index = static_cast<std::uint32_t>(fills.size_fill());
  auto& fill = fills.append_fill();
  fills.set_count(index + 1);
  return fill;
}

template <class Tag>
auto Styles<Tag>::appendXf() -> typename Classes::Xf& {
  auto& formats = this->get_cellXfs();
  auto& xf = formats.append_xf();
  formats.set_count(static_cast<std::uint32_t>(formats.size_xf()));
  return xf;
}

template <class Tag>
auto Styles<Tag>::appendFont() -> typename Classes::Font& {
  auto& fonts = this->get_fonts();
  auto& font = fonts.append_font();
  fonts.set_count(static_cast<std::uint32_t>(fonts.size_font()));
  return font;
}

template class Styles<excelNormal_tag>;
template class Styles<excelStrict_tag>;

}  // namespace rubrica
