// New formats: plain ones, and copies of formats of this book, of another one of either flavour, of an .xls book.
#include "engine/xlerror.h"
#include "xml/foreign_style.h"
#include "xml/xml_font.h"
#include "xml/xml_format.h"

namespace rubrica {

template <class Tag>
XMLFormatImplT<Tag>::XMLFormatImplT(Styles<Tag>* styles, IFormatT<char16_t>* initial) : _xf(nullptr), _styles(styles) {
  if (styles == nullptr) throw xlerror("XMLFormatImplT(): styles can't be 0");
  using Other = typename Flavour<Tag>::Other;
  std::uint32_t borderId = 0;
  _xf = &styles->appendXf();
  _border = &styles->appendBorder(borderId);
  _xf->set_fillId(0);
  _xf->set_borderId(borderId);
  _xf->set_numFmtId(0);
  _xf->set_fontId(0);
  _xf->set_xfId(0);
  if (initial == nullptr) return;
  if (auto* same = dynamic_cast<XMLFormatImplT*>(initial)) {
    copyContent(same->xf(), same->border(), same->fill());
    if (same->_styles != styles) takeForeign(*initial);
  } else if (auto* other = dynamic_cast<XMLFormatImplT<Other>*>(initial)) {
    copyFromFlavour(*other);
    takeForeign(*initial);
  } else {
    copyThroughInterface(*initial);
  }
}

// An xf keeps its border; a fill beyond the first, which every stylesheet has as "none", is copied to one of its own.
template <class Tag>
void XMLFormatImplT<Tag>::copyContent(const Xf& xf, const Border* border, const Fill* fill) {
  const std::uint32_t borderId = _xf->get_borderId();
  const bool hasFill = xf.isset_fillId() && xf.get_fillId() != 0 && fill != nullptr;
  if (border != nullptr) *_border = Border(*border);
  if (hasFill) {
    const Fill copied = *fill;
    _fill = &_styles->appendFill(_fillId);
    *_fill = copied;
  }
  *_xf = Xf(xf);
  _xf->set_borderId(borderId);
  _xf->set_fillId(hasFill ? _fillId : 0);
}

// What the source's ids mean is another book's: the font and the number format are entered into this one, and cell
// styles stay behind.
template <class Tag>
void XMLFormatImplT<Tag>::takeForeign(IFormatT<char16_t>& source) {
  _xf->set_xfId(0);
  IFontT<char16_t>* font = source.font();
  _xf->set_fontId(font == nullptr ? 0 : *_styles->positionOf(_styles->addFont(font)));
  auto* sourcePrivate = dynamic_cast<IFormatPrivate<char16_t>*>(&source);
  const int id = source.numFormat();
  const char16_t* text =
      id < numformat::firstCustom || sourcePrivate == nullptr ? nullptr : sourcePrivate->numFormatText();
  const int ownId = id < numformat::firstCustom ? id : text == nullptr ? 0 : _styles->addCustomNumFormat(text);
  _xf->set_numFmtId(static_cast<std::uint32_t>(ownId));
}

template <class Tag>
template <class OtherTag>
void XMLFormatImplT<Tag>::copyFromFlavour(const XMLFormatImplT<OtherTag>& source) {
  typename Flavour<OtherTag>::StyleSheetRoot carrier;
  carrier.get_cellXfs().append_xf() = source.xf();
  if (source.border() != nullptr) carrier.get_borders().append_border() = *source.border();
  if (source.fill() != nullptr) carrier.get_fills().append_fill() = *source.fill();
  auto translated = translateStyles<Tag>(carrier);
  copyContent(translated.get_cellXfs().get_xf(0),
              source.border() == nullptr ? nullptr : &translated.get_borders().get_border(0),
              source.fill() == nullptr ? nullptr : &translated.get_fills().get_fill(0));
}

template <class Tag>
void XMLFormatImplT<Tag>::copyThroughInterface(IFormatT<char16_t>& source) {
  const IndexColorMode colors(*_styles, dynamic_cast<IFormatPrivate<char16_t>*>(&source));
  takeForeign(source);
  _xf->set_applyFont(true);
  _xf->set_applyNumberFormat(true);
  setAlignH(source.alignH());
  setAlignV(source.alignV());
  if (source.wrap()) setWrap(true);
  if (source.rotation() != 0) setRotation(source.rotation());
  if (source.indent() != 0) setIndent(source.indent());
  if (source.shrinkToFit()) setShrinkToFit(true);
  setBorderLeft(source.borderLeft());
  setBorderRight(source.borderRight());
  setBorderTop(source.borderTop());
  setBorderBottom(source.borderBottom());
  setBorderLeftColor(source.borderLeftColor());
  setBorderRightColor(source.borderRightColor());
  setBorderTopColor(source.borderTopColor());
  setBorderBottomColor(source.borderBottomColor());
  if (source.borderDiagonal() != BorderDiagonal::none) {
    setBorderDiagonal(source.borderDiagonal());
    setBorderDiagonalStyle(source.borderDiagonalStyle());
    setBorderDiagonalColor(source.borderDiagonalColor());
  }
  if (source.fillPattern() != FillPattern::none) {
    setFillPattern(source.fillPattern());
    setPatternForegroundColor(source.patternForegroundColor());
    setPatternBackgroundColor(source.patternBackgroundColor());
  }
  if (!source.locked()) setLocked(false);
  if (source.hidden()) setHidden(true);
}

template class XMLFormatImplT<excelNormal_tag>;
template class XMLFormatImplT<excelStrict_tag>;

}  // namespace rubrica
