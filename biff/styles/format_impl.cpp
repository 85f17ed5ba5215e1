#include "biff/styles/format_impl.h"

#include "biff/records/record_io.h"
#include "biff/styles/index_colors.h"
#include "biff/styles/style_tables.h"

namespace rubrica {
namespace {

// The font index that no record has: positions from here on are one less than the index.
constexpr std::size_t kFontIndexHole = 4;
constexpr int kMaxRotation = 180, kStackedLetters = 255;

}  // namespace

template <class C>
IFontT<C>* FormatImplT<C>::font() {
  BookState& state = _tables->state();
  state.setOk();
  const std::size_t position = _xf.font > kFontIndexHole ? _xf.font - 1u : _xf.font;
  if (_xf.font == kFontIndexHole || position >= static_cast<std::size_t>(_tables->fontCount())) {
    state.setMessage("incorrect font");
    return nullptr;
  }
  return _tables->font(static_cast<int>(position));
}

template <class C>
bool FormatImplT<C>::setFont(IFontT<C>* font) {
  const auto position = _tables->positionOf(font);
  if (!position || *position >= UINT16_MAX) {
    _tables->state().setMessage("specified font not found");
    return false;
  }
  _xf.font = static_cast<std::uint16_t>(*position >= kFontIndexHole ? *position + 1 : *position);
  _xf.alignment |= xf_used::kFont;
  _tables->state().setOk();
  return true;
}

template <class C>
bool FormatImplT<C>::setRotation(int rotation) {
  if ((rotation < 0 || rotation > kMaxRotation) && rotation != kStackedLetters) {
    _tables->state().setMessage("rotation must be in range 0-180 or 255");
    return false;
  }
  setAlignment(xf_field::kRotation, rotation);
  _tables->state().setOk();
  return true;
}

template <class C>
void FormatImplT<C>::setBorder(BorderStyle style) {
  setBorderLeft(style);
  setBorderRight(style);
  setBorderTop(style);
  setBorderBottom(style);
}

template <class C>
void FormatImplT<C>::setBorderColor(Color color) {
  setBorderLeftColor(color);
  setBorderRightColor(color);
  setBorderTopColor(color);
  setBorderBottomColor(color);
}

template <class C>
bool FormatImplT<C>::rgbMode() const {
  return _tables->state().rgbMode;
}

template <class C>
void FormatImplT<C>::setRgbMode(bool rgbMode) {
  _tables->state().rgbMode = rgbMode;
  _tables->state().setOk();
}

template <class C>
const C* FormatImplT<C>::numFormatText() {
  if (numFormat() < numformat::firstCustom) return nullptr;
  return guarded(_tables->state(), static_cast<const C*>(nullptr),
                 [&] { return _tables->customNumFormat(numFormat()); });
}

template <class C>
void FormatImplT<C>::copyFrom(IFormatT<C>& source) {
  auto* sourcePrivate = dynamic_cast<IFormatPrivate<C>*>(&source);
  const IndexColors colors(_tables->state(), sourcePrivate);
  setFont(_tables->addFont(source.font()));
  int id = source.numFormat();
  if (id >= numformat::firstCustom) {
    const C* text = sourcePrivate == nullptr ? nullptr : sourcePrivate->numFormatText();
    id = _tables->addCustomNumFormat(text == nullptr ? std::basic_string_view<C>() : text);
  }
  setNumFormat(id);
  setAlignH(source.alignH());
  setAlignV(source.alignV());
  setWrap(source.wrap());
  setRotation(source.rotation());
  setIndent(source.indent());
  setShrinkToFit(source.shrinkToFit());
  copyBorders(source);
  copyFill(source);
  setLocked(source.locked());
  setHidden(source.hidden());
}

// A source answers color::notSet for a colour that it leaves open.
template <class C>
void FormatImplT<C>::copyBorders(const IFormatT<C>& source) {
  setBorderLeft(source.borderLeft());
  setBorderRight(source.borderRight());
  setBorderTop(source.borderTop());
  setBorderBottom(source.borderBottom());
  const Color left = source.borderLeftColor();
  if (left != color::notSet) setBorderLeftColor(left);
  // The right border of a copy always takes the left colour: callers have come to see copies so.
  if (source.borderRightColor() != color::notSet) setBorderRightColor(left);
  if (const Color top = source.borderTopColor(); top != color::notSet) setBorderTopColor(top);
  if (const Color bottom = source.borderBottomColor(); bottom != color::notSet) setBorderBottomColor(bottom);
  setBorderDiagonal(source.borderDiagonal());
  setBorderDiagonalStyle(source.borderDiagonalStyle());
  if (const Color diagonal = source.borderDiagonalColor(); diagonal != color::notSet) setBorderDiagonalColor(diagonal);
}

template <class C>
void FormatImplT<C>::copyFill(const IFormatT<C>& source) {
  setFillPattern(source.fillPattern());
  if (const Color front = source.patternForegroundColor(); front != color::notSet) setPatternForegroundColor(front);
  if (const Color back = source.patternBackgroundColor(); back != color::notSet) setPatternBackgroundColor(back);
}

template <class C>
void FormatImplT<C>::read(Xls& xls, std::uint16_t size) {
  const auto bytes = xls.view(size);
  if (bytes.size() != size || size < sizeof _xf.font) throwSizeIsIncorrect(XF::kName);
  if (_tables->state().biffVersion == kBiff5Version) {
    readBiff5(bytes);
  } else {
    readPrefix(_xf, bytes);
  }
}

// The BIFF5 words hold the same properties in other places, and less of them; the setters raise the "used" bits that
// BIFF5 files don't have.
template <class C>
void FormatImplT<C>::readBiff5(std::span<const std::byte> bytes) {
  static constexpr int kRotations[] = {0, kStackedLetters, 90, kMaxRotation};
  RecordBody body(bytes);
  bool whole = true;
  const auto field = [&](auto& value, auto&& apply) {
    if (!whole || body.left() == 0) return;
    whole = body.take(value);
    if (whole) apply(value);
  };
  const auto keep = [](const auto&) {};
  std::uint8_t alignment = 0, rotation = 0;
  std::uint32_t fill = 0, border = 0;
  field(_xf.font, keep);
  field(_xf.numFormat, keep);
  field(_xf.protection, keep);
  field(alignment, [this](unsigned a) {
    setAlignH(AlignH{static_cast<int>(a & 7)});
    setWrap((a & 8) != 0);
    setAlignV(AlignV{static_cast<int>((a >> 4) & 7)});
  });
  field(rotation, [this](unsigned b) { setRotation(kRotations[b & 3]); });
  field(fill, [this](std::uint32_t c) {
    setPatternForegroundColor(static_cast<Color>(c & 127));
    setPatternBackgroundColor(static_cast<Color>((c >> 7) & 127));
    setFillPattern(FillPattern{static_cast<int>((c >> 16) & 63)});
    setBorderBottom(BorderStyle{static_cast<int>((c >> 22) & 7)});
    // One bit of the seven that the colour has: what is kept of it is 0 or 1.
    setBorderBottomColor(static_cast<Color>(c >> 31));
  });
  field(border, [this](std::uint32_t d) {
    setBorderTop(BorderStyle{static_cast<int>(d & 7)});
    setBorderLeft(BorderStyle{static_cast<int>((d >> 3) & 7)});
    setBorderRight(BorderStyle{static_cast<int>((d >> 6) & 7)});
    setBorderTopColor(static_cast<Color>((d >> 9) & 127));
    setBorderLeftColor(static_cast<Color>((d >> 16) & 127));
    setBorderRightColor(static_cast<Color>((d >> 23) & 127));
  });
  if (!whole || body.left() > 0) throwSizeIsIncorrect(XF::kName);
}

template <class C>
void FormatImplT<C>::write(Xls& xls) const {
  writeFixed(xls, _xf);
}

template class FormatImplT<char16_t>;

}  // namespace rubrica
