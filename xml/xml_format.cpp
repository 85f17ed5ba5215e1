#include "xml/xml_format.h"

#include <algorithm>

#include "engine/xlerror.h"
#include "xml/style_words.h"
#include "xml/xml_font.h"

namespace rubrica {
namespace {

constexpr int kMaxRotation = 180, kStackedLetters = 255;

bool isOpen(Color color) {
  return color == color::notSet || color == color::automatic;
}

// Ids and counts of the schema have no sign.
std::uint32_t unsignedOf(int value) {
  return static_cast<std::uint32_t>(std::max(value, 0));
}

}  // namespace

template <class Tag>
IFontT<char16_t>* XMLFormatImplT<Tag>::font() {
  return guarded(_styles->lastMessage(), static_cast<IFontT<char16_t>*>(nullptr), [&]() -> IFontT<char16_t>* {
    if (!_xf->isset_fontId() || _xf->get_fontId() >= static_cast<std::uint32_t>(_styles->fontCount())) {
      throw xlerror("incorrect font");
    }
    return _styles->font(static_cast<int>(_xf->get_fontId()));
  });
}

template <class Tag>
bool XMLFormatImplT<Tag>::setFont(IFontT<char16_t>* font) {
  return guarded(_styles->lastMessage(), false, [&] {
    const auto position = _styles->positionOf(font);
    if (!position) throw xlerror("specified font not found");
    _xf->set_fontId(*position);
    _xf->set_applyFont(true);
    return true;
  });
}

template <class Tag>
int XMLFormatImplT<Tag>::numFormat() const {
  return static_cast<int>(_xf->get_numFmtId());
}

template <class Tag>
void XMLFormatImplT<Tag>::setNumFormat(int numFormat) {
  _xf->set_numFmtId(unsignedOf(numFormat));
  _xf->set_applyNumberFormat(true);
}

template <class Tag>
AlignH XMLFormatImplT<Tag>::alignH() const {
  const auto* alignment = _xf->find_alignment();
  return alignment == nullptr ? AlignH::general : style_words::alignHOf(alignment->get_horizontal());
}

template <class Tag>
void XMLFormatImplT<Tag>::setAlignH(AlignH align) {
  attempt(_styles->lastMessage(), [&] {
    if (const auto word = style_words::wordOf(align); !word.empty()) {
      _xf->get_alignment().set_horizontal(std::string(word));
    }
    _xf->set_applyAlignment(true);
  });
}

template <class Tag>
AlignV XMLFormatImplT<Tag>::alignV() const {
  const auto* alignment = _xf->find_alignment();
  return alignment == nullptr ? AlignV::top : style_words::alignVOf(alignment->get_vertical());
}

template <class Tag>
void XMLFormatImplT<Tag>::setAlignV(AlignV align) {
  attempt(_styles->lastMessage(), [&] {
    if (const auto word = style_words::wordOf(align); !word.empty()) {
      _xf->get_alignment().set_vertical(std::string(word));
    }
    _xf->set_applyAlignment(true);
  });
}

template <class Tag>
bool XMLFormatImplT<Tag>::wrap() const {
  const auto* alignment = _xf->find_alignment();
  return alignment != nullptr && alignment->get_wrapText();
}

template <class Tag>
void XMLFormatImplT<Tag>::setWrap(bool wrap) {
  attempt(_styles->lastMessage(), [&] { _xf->get_alignment().set_wrapText(wrap); });
}

template <class Tag>
int XMLFormatImplT<Tag>::rotation() const {
  const auto* alignment = _xf->find_alignment();
  return alignment == nullptr ? 0 : static_cast<int>(alignment->get_textRotation());
}

template <class Tag>
bool XMLFormatImplT<Tag>::setRotation(int rotation) {
  return guarded(_styles->lastMessage(), false, [&] {
    if ((rotation < 0 || rotation > kMaxRotation) && rotation != kStackedLetters) {
      throw xlerror("rotation must be in range 0-180 or 255");
    }
    _xf->get_alignment().set_textRotation(static_cast<std::uint32_t>(rotation));
    return true;
  });
}

template <class Tag>
int XMLFormatImplT<Tag>::indent() const {
  const auto* alignment = _xf->find_alignment();
  return alignment == nullptr ? 0 : static_cast<int>(alignment->get_indent());
}

template <class Tag>
void XMLFormatImplT<Tag>::setIndent(int indent) {
  attempt(_styles->lastMessage(), [&] { _xf->get_alignment().set_indent(unsignedOf(indent)); });
}

template <class Tag>
bool XMLFormatImplT<Tag>::shrinkToFit() const {
  const auto* alignment = _xf->find_alignment();
  return alignment != nullptr && alignment->get_shrinkToFit();
}

template <class Tag>
void XMLFormatImplT<Tag>::setShrinkToFit(bool shrinkToFit) {
  attempt(_styles->lastMessage(), [&] { _xf->get_alignment().set_shrinkToFit(shrinkToFit); });
}

template <class Tag>
bool XMLFormatImplT<Tag>::locked() const {
  const auto* protection = _xf->find_protection();
  return protection == nullptr || !protection->isset_locked() || protection->get_locked();
}

template <class Tag>
void XMLFormatImplT<Tag>::setLocked(bool locked) {
  attempt(_styles->lastMessage(), [&] {
    _xf->get_protection().set_locked(locked);
    _xf->set_applyProtection(true);
  });
}

template <class Tag>
bool XMLFormatImplT<Tag>::hidden() const {
  const auto* protection = _xf->find_protection();
  return protection != nullptr && protection->get_hidden();
}

template <class Tag>
void XMLFormatImplT<Tag>::setHidden(bool hidden) {
  attempt(_styles->lastMessage(), [&] { _xf->get_protection().set_hidden(hidden); });
}

// ---- Borders

template <class Tag>
auto XMLFormatImplT<Tag>::border() const -> const Border* {
  if (_border != nullptr) return _border;
  return _xf->isset_borderId() ? _styles->borderAt(_xf->get_borderId()) : nullptr;
}

template <class Tag>
auto XMLFormatImplT<Tag>::ownBorder() -> Border& {
  if (_border != nullptr) return *_border;
  const Border* shared = border();
  std::uint32_t id = 0;
  Border& own = _styles->appendBorder(id);
  if (shared != nullptr) own = *shared;
  _border = &own;
  _xf->set_borderId(id);
  return own;
}

template <class Tag>
auto XMLFormatImplT<Tag>::side(Side side) const -> const BorderPr* {
  const Border* shown = border();
  if (shown == nullptr) return nullptr;
  switch (side) {
    case Side::left:
      return Classes::findLeft(*shown);
    case Side::right:
      return Classes::findRight(*shown);
    case Side::top:
      return shown->find_top();
    case Side::bottom:
      return shown->find_bottom();
    case Side::diagonal:
      break;
  }
  return shown->find_diagonal();
}

template <class Tag>
auto XMLFormatImplT<Tag>::needSide(Side side) -> BorderPr& {
  Border& own = ownBorder();
  switch (side) {
    case Side::left:
      return Classes::left(own);
    case Side::right:
      return Classes::right(own);
    case Side::top:
      return own.get_top();
    case Side::bottom:
      return own.get_bottom();
    case Side::diagonal:
      break;
  }
  return own.get_diagonal();
}

template <class Tag>
BorderStyle XMLFormatImplT<Tag>::sideStyle(Side which) const {
  const BorderPr* found = side(which);
  return found == nullptr ? BorderStyle::none : style_words::borderStyleOf(found->get_style());
}

template <class Tag>
void XMLFormatImplT<Tag>::setSideStyle(Side which, BorderStyle style) {
  attempt(_styles->lastMessage(), [&] {
    needSide(which).set_style(std::string(style_words::wordOf(style)));
    _xf->set_applyBorder(true);
  });
}

template <class Tag>
template <class Element>
Color XMLFormatImplT<Tag>::colorOf(const Element* element) const {
  if (element == nullptr) return color::notSet;
  return guarded(_styles->lastMessage(), Color{color::notSet}, [&] { return _styles->readColor(*element); });
}

template <class Tag>
Color XMLFormatImplT<Tag>::sideColor(Side which) const {
  const BorderPr* found = side(which);
  return colorOf(found == nullptr ? nullptr : found->find_color());
}

template <class Tag>
void XMLFormatImplT<Tag>::setSideColor(Side which, Color color) {
  attempt(_styles->lastMessage(), [&] {
    if (!isOpen(color)) _styles->writeColor(needSide(which).get_color(), color);
  });
}

template <class Tag>
void XMLFormatImplT<Tag>::setBorder(BorderStyle style) {
  setBorderLeft(style);
  setBorderRight(style);
  setBorderTop(style);
  setBorderBottom(style);
}

template <class Tag>
void XMLFormatImplT<Tag>::setBorderColor(Color color) {
  setBorderLeftColor(color);
  setBorderRightColor(color);
  setBorderTopColor(color);
  setBorderBottomColor(color);
}

template <class Tag>
BorderStyle XMLFormatImplT<Tag>::borderLeft() const {
  return sideStyle(Side::left);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderLeft(BorderStyle style) {
  setSideStyle(Side::left, style);
}
template <class Tag>
BorderStyle XMLFormatImplT<Tag>::borderRight() const {
  return sideStyle(Side::right);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderRight(BorderStyle style) {
  setSideStyle(Side::right, style);
}
template <class Tag>
BorderStyle XMLFormatImplT<Tag>::borderTop() const {
  return sideStyle(Side::top);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderTop(BorderStyle style) {
  setSideStyle(Side::top, style);
}
template <class Tag>
BorderStyle XMLFormatImplT<Tag>::borderBottom() const {
  return sideStyle(Side::bottom);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderBottom(BorderStyle style) {
  setSideStyle(Side::bottom, style);
}
template <class Tag>
Color XMLFormatImplT<Tag>::borderLeftColor() const {
  return sideColor(Side::left);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderLeftColor(Color color) {
  setSideColor(Side::left, color);
}
template <class Tag>
Color XMLFormatImplT<Tag>::borderRightColor() const {
  return sideColor(Side::right);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderRightColor(Color color) {
  setSideColor(Side::right, color);
}
template <class Tag>
Color XMLFormatImplT<Tag>::borderTopColor() const {
  return sideColor(Side::top);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderTopColor(Color color) {
  setSideColor(Side::top, color);
}
template <class Tag>
Color XMLFormatImplT<Tag>::borderBottomColor() const {
  return sideColor(Side::bottom);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderBottomColor(Color color) {
  setSideColor(Side::bottom, color);
}

template <class Tag>
BorderDiagonal XMLFormatImplT<Tag>::borderDiagonal() const {
  const Border* shown = border();
  if (shown == nullptr) return BorderDiagonal::none;
  const int down = shown->get_diagonalDown() ? static_cast<int>(BorderDiagonal::down) : 0;
  const int up = shown->get_diagonalUp() ? static_cast<int>(BorderDiagonal::up) : 0;
  return static_cast<BorderDiagonal>(down | up);
}

template <class Tag>
void XMLFormatImplT<Tag>::setBorderDiagonal(BorderDiagonal border) {
  attempt(_styles->lastMessage(), [&] {
    Border& own = ownBorder();
    own.set_diagonalDown(border == BorderDiagonal::down || border == BorderDiagonal::both);
    own.set_diagonalUp(border == BorderDiagonal::up || border == BorderDiagonal::both);
    _xf->set_applyBorder(true);
  });
}

template <class Tag>
BorderStyle XMLFormatImplT<Tag>::borderDiagonalStyle() const {
  return sideStyle(Side::diagonal);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderDiagonalStyle(BorderStyle style) {
  setSideStyle(Side::diagonal, style);
}
template <class Tag>
Color XMLFormatImplT<Tag>::borderDiagonalColor() const {
  return sideColor(Side::diagonal);
}
template <class Tag>
void XMLFormatImplT<Tag>::setBorderDiagonalColor(Color color) {
  setSideColor(Side::diagonal, color);
}

// ---- Fill

template <class Tag>
auto XMLFormatImplT<Tag>::fill() const -> const Fill* {
  return _xf->isset_fillId() ? _styles->fillAt(_xf->get_fillId()) : nullptr;
}

template <class Tag>
auto XMLFormatImplT<Tag>::ownFill() -> Fill& {
  if (_fill != nullptr) return *_fill;
  const Fill* shared = fill();
  Fill& own = _styles->appendFill(_fillId);
  if (shared != nullptr) own = *shared;
  _fill = &own;
  _xf->set_fillId(_fillId);
  return own;
}

template <class Tag>
auto XMLFormatImplT<Tag>::ownPattern() -> PatternFill& {
  Fill& own = ownFill();
  own.unset_gradientFill();
  return own.get_patternFill();
}

// The colours of a fill that was switched off by its pattern are still there.
template <class Tag>
auto XMLFormatImplT<Tag>::pattern() const -> const PatternFill* {
  const Fill* shown = _fill != nullptr ? _fill : fill();
  return shown == nullptr ? nullptr : shown->find_patternFill();
}

template <class Tag>
FillPattern XMLFormatImplT<Tag>::fillPattern() const {
  const Fill* shown = fill();
  const PatternFill* found = shown == nullptr ? nullptr : shown->find_patternFill();
  return found == nullptr ? FillPattern::none : style_words::fillPatternOf(found->get_patternType());
}

template <class Tag>
void XMLFormatImplT<Tag>::setFillPattern(FillPattern pattern) {
  if (pattern == FillPattern::none) {
    _xf->set_fillId(0);
    return;
  }
  attempt(_styles->lastMessage(), [&] {
    PatternFill& own = ownPattern();
    _xf->set_fillId(_fillId);
    if (const auto word = style_words::wordOf(pattern); !word.empty()) own.set_patternType(std::string(word));
    _xf->set_applyFill(true);
  });
}

template <class Tag>
Color XMLFormatImplT<Tag>::patternForegroundColor() const {
  const PatternFill* found = pattern();
  return colorOf(found == nullptr ? nullptr : found->find_fgColor());
}

template <class Tag>
void XMLFormatImplT<Tag>::setPatternForegroundColor(Color color) {
  attempt(_styles->lastMessage(), [&] {
    if (!isOpen(color)) _styles->writeColor(ownPattern().get_fgColor(), color);
  });
}

template <class Tag>
Color XMLFormatImplT<Tag>::patternBackgroundColor() const {
  const PatternFill* found = pattern();
  return colorOf(found == nullptr ? nullptr : found->find_bgColor());
}

template <class Tag>
void XMLFormatImplT<Tag>::setPatternBackgroundColor(Color color) {
  attempt(_styles->lastMessage(), [&] {
    if (!isOpen(color)) _styles->writeColor(ownPattern().get_bgColor(), color);
  });
}

template <class Tag>
const char16_t* XMLFormatImplT<Tag>::numFormatText() {
  if (numFormat() < numformat::firstCustom) return nullptr;
  return guarded(_styles->lastMessage(), static_cast<const char16_t*>(nullptr),
                 [&] { return _styles->customNumFormat(numFormat()); });
}

template class XMLFormatImplT<excelNormal_tag>;
template class XMLFormatImplT<excelStrict_tag>;

}  // namespace rubrica
