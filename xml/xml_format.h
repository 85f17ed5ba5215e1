// XMLFormatImplT: a format of an OOXML book, a view of one `xf` of cellXfs with the border and the fill that it points
// at. Made and owned by Styles, whose index for it is what cells, rows and columns hold: a change shows in all of them.
//
// Borders and fills of a file are shared between formats, so a format that changes one gets a copy of its own first.
#pragma once

#include <cstdint>

#include "engine/format.h"
#include "xml/styles.h"

namespace rubrica {

template <class Tag>
class XMLFormatImplT final : public IFormatPrivate<char16_t> {
 public:
  using Classes = StyleClasses<Tag>;
  using Xf = typename Classes::Xf;
  using Border = typename Classes::Border;
  using BorderPr = typename Classes::BorderPr;
  using Fill = typename Classes::Fill;
  using PatternFill = typename Classes::PatternFill;

  // The view of an xf that the stylesheet has.
  XMLFormatImplT(Styles<Tag>& styles, Xf& xf) : _xf(&xf), _styles(&styles) {}
  // A new xf with a border of its own, plain or a copy. Throws xlerror "XMLFormatImplT(): styles can't be 0".
  XMLFormatImplT(Styles<Tag>* styles, IFormatT<char16_t>* initial);
  XMLFormatImplT(const XMLFormatImplT&) = delete;
  XMLFormatImplT& operator=(const XMLFormatImplT&) = delete;

  IFontT<char16_t>* font() override;
  bool setFont(IFontT<char16_t>* font) override;
  int numFormat() const override;
  void setNumFormat(int numFormat) override;

  AlignH alignH() const override;
  void setAlignH(AlignH align) override;
  AlignV alignV() const override;
  void setAlignV(AlignV align) override;
  bool wrap() const override;
  void setWrap(bool wrap) override;
  int rotation() const override;
  bool setRotation(int rotation) override;
  int indent() const override;
  void setIndent(int indent) override;
  bool shrinkToFit() const override;
  void setShrinkToFit(bool shrinkToFit) override;

  void setBorder(BorderStyle style) override;
  void setBorderColor(Color color) override;
  BorderStyle borderLeft() const override;
  void setBorderLeft(BorderStyle style) override;
  BorderStyle borderRight() const override;
  void setBorderRight(BorderStyle style) override;
  BorderStyle borderTop() const override;
  void setBorderTop(BorderStyle style) override;
  BorderStyle borderBottom() const override;
  void setBorderBottom(BorderStyle style) override;
  Color borderLeftColor() const override;
  void setBorderLeftColor(Color color) override;
  Color borderRightColor() const override;
  void setBorderRightColor(Color color) override;
  Color borderTopColor() const override;
  void setBorderTopColor(Color color) override;
  Color borderBottomColor() const override;
  void setBorderBottomColor(Color color) override;
  BorderDiagonal borderDiagonal() const override;
  void setBorderDiagonal(BorderDiagonal border) override;
  BorderStyle borderDiagonalStyle() const override;
  void setBorderDiagonalStyle(BorderStyle style) override;
  Color borderDiagonalColor() const override;
  void setBorderDiagonalColor(Color color) override;

  FillPattern fillPattern() const override;
  void setFillPattern(FillPattern pattern) override;
  Color patternForegroundColor() const override;
  void setPatternForegroundColor(Color color) override;
  Color patternBackgroundColor() const override;
  void setPatternBackgroundColor(Color color) override;
  // A cell is locked unless its format says otherwise.
  bool locked() const override;
  void setLocked(bool locked) override;
  bool hidden() const override;
  void setHidden(bool hidden) override;

  bool rgbMode() const override { return _styles->rgbMode(); }
  void setRgbMode(bool rgbMode) override { _styles->setRgbMode(rgbMode); }
  const char16_t* numFormatText() override;

  const Xf& xf() const { return *_xf; }
  const Styles<Tag>& styles() const { return *_styles; }
  // What the format shows: its own border and fill, or those that it shares; null for none.
  const Border* border() const;
  const Fill* fill() const;

 private:
  enum class Side { left, right, top, bottom, diagonal };

  void copyContent(const Xf& xf, const Border* border, const Fill* fill);
  void takeForeign(IFormatT<char16_t>& source);
  template <class OtherTag>
  void copyFromFlavour(const XMLFormatImplT<OtherTag>& source);
  void copyThroughInterface(IFormatT<char16_t>& source);

  Border& ownBorder();
  Fill& ownFill();
  PatternFill& ownPattern();
  const PatternFill* pattern() const;
  const BorderPr* side(Side side) const;
  BorderPr& needSide(Side side);
  BorderStyle sideStyle(Side side) const;
  void setSideStyle(Side side, BorderStyle style);
  Color sideColor(Side side) const;
  void setSideColor(Side side, Color color);
  template <class Element>
  Color colorOf(const Element* element) const;

  Xf* _xf;
  Styles<Tag>* _styles;
  Border* _border = nullptr;  // its own, no other format's
  Fill* _fill = nullptr;
  std::uint32_t _fillId = 0;  // of _fill
};

extern template class XMLFormatImplT<excelNormal_tag>;
extern template class XMLFormatImplT<excelStrict_tag>;

}  // namespace rubrica
