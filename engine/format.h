// IFormatT: one entry of a book's format table: number format, font, alignment, borders, fill and protection of cells.
// Formats are shared: a change shows in every cell, row and column that uses the format. Setters take the file's
// numbers and, but for setRotation, don't validate them.
//
// A format pointer belongs to its book and stays valid until the book is released or loaded anew. One thread per book.
//
//   auto* money = book->addFormat(nullptr);
//   money->setNumFormat(rubrica::numformat::numberSepD2);
//   sheet->writeNum(0, 0, 1234.5, money);
#pragma once

#include "engine/enums.h"
#include "engine/font.h"

namespace rubrica {

template <class C>
class IFormatT {
 public:
  // The font; null with the message "incorrect font" when the format names none that exists.
  virtual IFontT<C>* font() = 0;
  // `font` must be of the same book: otherwise false and "specified font not found".
  virtual bool setFont(IFontT<C>* font) = 0;
  // The number format id: built in, or from the book's addCustomNumFormat. Not checked.
  virtual int numFormat() const = 0;
  virtual void setNumFormat(int numFormat) = 0;
  virtual AlignH alignH() const = 0;
  virtual void setAlignH(AlignH align) = 0;
  virtual AlignV alignV() const = 0;
  virtual void setAlignV(AlignV align) = 0;
  virtual bool wrap() const = 0;
  virtual void setWrap(bool wrap = true) = 0;
  // Degrees 0 to 90 turn text up, 91 to 180 turn it down (value - 90), 255 stacks letters. Any other value: false and
  // "rotation must be in range 0-180 or 255".
  virtual int rotation() const = 0;
  virtual bool setRotation(int rotation) = 0;
  virtual int indent() const = 0;
  virtual void setIndent(int indent) = 0;
  virtual bool shrinkToFit() const = 0;
  virtual void setShrinkToFit(bool shrinkToFit = true) = 0;
  // All four sides at once.
  virtual void setBorder(BorderStyle style = BorderStyle::thin) = 0;
  virtual void setBorderColor(Color color) = 0;
  virtual BorderStyle borderLeft() const = 0;
  virtual void setBorderLeft(BorderStyle style = BorderStyle::thin) = 0;
  virtual BorderStyle borderRight() const = 0;
  virtual void setBorderRight(BorderStyle style = BorderStyle::thin) = 0;
  virtual BorderStyle borderTop() const = 0;
  virtual void setBorderTop(BorderStyle style = BorderStyle::thin) = 0;
  virtual BorderStyle borderBottom() const = 0;
  virtual void setBorderBottom(BorderStyle style = BorderStyle::thin) = 0;
  virtual Color borderLeftColor() const = 0;
  virtual void setBorderLeftColor(Color color) = 0;
  virtual Color borderRightColor() const = 0;
  virtual void setBorderRightColor(Color color) = 0;
  virtual Color borderTopColor() const = 0;
  virtual void setBorderTopColor(Color color) = 0;
  virtual Color borderBottomColor() const = 0;
  virtual void setBorderBottomColor(Color color) = 0;
  virtual BorderDiagonal borderDiagonal() const = 0;
  virtual void setBorderDiagonal(BorderDiagonal border) = 0;
  virtual BorderStyle borderDiagonalStyle() const = 0;
  virtual void setBorderDiagonalStyle(BorderStyle style) = 0;
  virtual Color borderDiagonalColor() const = 0;
  virtual void setBorderDiagonalColor(Color color) = 0;
  virtual FillPattern fillPattern() const = 0;
  virtual void setFillPattern(FillPattern pattern) = 0;
  virtual Color patternForegroundColor() const = 0;
  virtual void setPatternForegroundColor(Color color) = 0;
  virtual Color patternBackgroundColor() const = 0;
  virtual void setPatternBackgroundColor(Color color) = 0;
  virtual bool locked() const = 0;
  virtual void setLocked(bool locked = true) = 0;
  virtual bool hidden() const = 0;
  virtual void setHidden(bool hidden = true) = 0;
  virtual ~IFormatT() = default;
};

// What books ask of a format beside its public face, when they copy it: the colour mode of the owning book, and the
// text of its custom number format (null for a built-in one).
template <class C>
class IFormatPrivate : public IFormatT<C> {
 public:
  virtual bool rgbMode() const = 0;
  virtual void setRgbMode(bool rgbMode) = 0;
  virtual const C* numFormatText() = 0;
};

using Format = IFormatT<char16_t>;

}  // namespace rubrica
