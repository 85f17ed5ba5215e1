// FormatImplT: a format of an .xls book, which is one XF record. Made and owned by StyleTables, whose position for it
// is the XF index that cells, rows and columns hold: a change shows in all of them.
#pragma once

#include <cstdint>

#include "biff/styles/font_impl.h"
#include "biff/styles/xf_record.h"
#include "engine/format.h"

namespace rubrica {

class StyleTables;

template <class C>
class FormatImplT final : public IFormatPrivate<C> {
 public:
  explicit FormatImplT(StyleTables& tables) : _tables(&tables) {}
  FormatImplT(StyleTables& tables, const XF& xf) : _tables(&tables), _xf(xf) {}
  FormatImplT(const FormatImplT&) = delete;
  FormatImplT& operator=(const FormatImplT&) = delete;

  IFontT<C>* font() override;
  bool setFont(IFontT<C>* font) override;
  int numFormat() const override { return _xf.numFormat; }
  void setNumFormat(int numFormat) override {
    _xf.numFormat = static_cast<std::uint16_t>(numFormat);
    _xf.alignment |= xf_used::kNumFormat;
  }

  AlignH alignH() const override { return AlignH{xf_field::kAlignH.get(_xf)}; }
  void setAlignH(AlignH align) override { setAlignment(xf_field::kAlignH, static_cast<int>(align)); }
  AlignV alignV() const override { return AlignV{xf_field::kAlignV.get(_xf)}; }
  void setAlignV(AlignV align) override { setAlignment(xf_field::kAlignV, static_cast<int>(align)); }
  bool wrap() const override { return xf_field::kWrap.get(_xf) != 0; }
  void setWrap(bool wrap) override { setAlignment(xf_field::kWrap, wrap); }
  int rotation() const override { return xf_field::kRotation.get(_xf); }
  bool setRotation(int rotation) override;
  int indent() const override { return xf_field::kIndent.get(_xf); }
  void setIndent(int indent) override { setAlignment(xf_field::kIndent, indent); }
  bool shrinkToFit() const override { return xf_field::kShrinkToFit.get(_xf) != 0; }
  void setShrinkToFit(bool shrinkToFit) override { setAlignment(xf_field::kShrinkToFit, shrinkToFit); }

  void setBorder(BorderStyle style) override;
  void setBorderColor(Color color) override;
  BorderStyle borderLeft() const override { return BorderStyle{xf_field::kLeft.get(_xf)}; }
  void setBorderLeft(BorderStyle style) override { setBorderField(xf_field::kLeft, static_cast<int>(style)); }
  BorderStyle borderRight() const override { return BorderStyle{xf_field::kRight.get(_xf)}; }
  void setBorderRight(BorderStyle style) override { setBorderField(xf_field::kRight, static_cast<int>(style)); }
  BorderStyle borderTop() const override { return BorderStyle{xf_field::kTop.get(_xf)}; }
  void setBorderTop(BorderStyle style) override { setBorderField(xf_field::kTop, static_cast<int>(style)); }
  BorderStyle borderBottom() const override { return BorderStyle{xf_field::kBottom.get(_xf)}; }
  void setBorderBottom(BorderStyle style) override { setBorderField(xf_field::kBottom, static_cast<int>(style)); }
  Color borderLeftColor() const override { return xf_field::kLeftColor.get(_xf); }
  void setBorderLeftColor(Color color) override { setBorderField(xf_field::kLeftColor, color); }
  Color borderRightColor() const override { return xf_field::kRightColor.get(_xf); }
  void setBorderRightColor(Color color) override { setBorderField(xf_field::kRightColor, color); }
  Color borderTopColor() const override { return xf_field::kTopColor.get(_xf); }
  void setBorderTopColor(Color color) override { setBorderField(xf_field::kTopColor, color); }
  Color borderBottomColor() const override { return xf_field::kBottomColor.get(_xf); }
  void setBorderBottomColor(Color color) override { setBorderField(xf_field::kBottomColor, color); }
  BorderDiagonal borderDiagonal() const override { return BorderDiagonal{xf_field::kDiagonal.get(_xf)}; }
  void setBorderDiagonal(BorderDiagonal border) override {
    setBorderField(xf_field::kDiagonal, static_cast<int>(border));
  }
  BorderStyle borderDiagonalStyle() const override { return BorderStyle{xf_field::kDiagonalStyle.get(_xf)}; }
  void setBorderDiagonalStyle(BorderStyle style) override {
    setBorderField(xf_field::kDiagonalStyle, static_cast<int>(style));
  }
  Color borderDiagonalColor() const override { return xf_field::kDiagonalColor.get(_xf); }
  void setBorderDiagonalColor(Color color) override { setBorderField(xf_field::kDiagonalColor, color); }

  FillPattern fillPattern() const override { return FillPattern{xf_field::kPattern.get(_xf)}; }
  void setFillPattern(FillPattern pattern) override { setFillField(xf_field::kPattern, static_cast<int>(pattern)); }
  Color patternForegroundColor() const override { return xf_field::kForeground.get(_xf); }
  void setPatternForegroundColor(Color color) override { setFillField(xf_field::kForeground, color); }
  Color patternBackgroundColor() const override { return xf_field::kBackground.get(_xf); }
  void setPatternBackgroundColor(Color color) override { setFillField(xf_field::kBackground, color); }
  bool locked() const override { return xf_field::kLocked.get(_xf) != 0; }
  void setLocked(bool locked) override { setProtectionField(xf_field::kLocked, locked); }
  bool hidden() const override { return xf_field::kHidden.get(_xf) != 0; }
  void setHidden(bool hidden) override { setProtectionField(xf_field::kHidden, hidden); }

  bool rgbMode() const override;
  void setRgbMode(bool rgbMode) override;
  const C* numFormatText() override;

  const XF& xf() const { return _xf; }
  // Takes the properties of a format of any book of either file form, and a copy of its font; colours as indexes.
  void copyFrom(IFormatT<C>& source);
  // An XF may end behind any of its fields; the rest keeps the values of a new one.
  void read(Xls& xls, std::uint16_t size);
  void write(Xls& xls) const;

 private:
  void setAlignment(const XfField<std::uint32_t>& field, int value) {
    field.set(_xf, value);
    _xf.alignment |= xf_used::kAlignment;
  }
  void setBorderField(const XfField<std::uint32_t>& field, int value) {
    field.set(_xf, value);
    _xf.alignment |= xf_used::kBorder;
  }
  template <class Word>
  void setFillField(const XfField<Word>& field, int value) {
    field.set(_xf, value);
    _xf.alignment |= xf_used::kFill;
  }
  void setProtectionField(const XfField<std::uint16_t>& field, bool value) {
    field.set(_xf, value);
    _xf.alignment |= xf_used::kProtection;
  }
  void copyBorders(const IFormatT<C>& source);
  void copyFill(const IFormatT<C>& source);
  void readBiff5(std::span<const std::byte> bytes);

  StyleTables* _tables;
  XF _xf;
};

using FormatImpl = FormatImplT<char16_t>;
extern template class FormatImplT<char16_t>;

}  // namespace rubrica
