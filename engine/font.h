// IFontT: one font of a book's font table. Fonts are shared: a change shows in every format that uses the font.
//
// A font pointer belongs to its book and stays valid until the book is released or loaded anew. One thread per book.
//
//   auto* bold = book->addFont(nullptr);
//   bold->setBold(true);
//   format->setFont(bold);
#pragma once

#include "engine/enums.h"

namespace rubrica {

template <class C>
class IFontT {
 public:
  // Size in points. setSize stores twentieths of a point in 16 bits, at most 8191 of them (409 points).
  virtual int size() const = 0;
  virtual void setSize(int points) = 0;
  virtual bool italic() const = 0;
  virtual void setItalic(bool italic = true) = 0;
  virtual bool strikeOut() const = 0;
  virtual void setStrikeOut(bool strikeOut = true) = 0;
  virtual Color color() const = 0;
  virtual void setColor(Color color) = 0;
  virtual bool bold() const = 0;
  virtual void setBold(bool bold = true) = 0;
  virtual Script script() const = 0;
  virtual void setScript(Script script) = 0;
  virtual Underline underline() const = 0;
  virtual void setUnderline(Underline underline) = 0;
  // The family name; valid until the next call of name() on this font. Null when the font has none.
  virtual const C* name() = 0;
  virtual bool setName(const C* name) = 0;
  virtual ~IFontT() = default;
};

// What books ask of a font beside its public face: which properties it states (a BIFF font states all of them), and
// the colour mode of the owning book, so that a copy can switch the book that owns a source font.
template <class C>
class IFontPrivate : public IFontT<C> {
 public:
  virtual bool hasSize() const = 0;
  virtual bool hasItalic() const = 0;
  virtual bool hasStrikeOut() const = 0;
  virtual bool hasColor() const = 0;
  virtual bool hasBold() const = 0;
  virtual bool hasScript() const = 0;
  virtual bool hasUnderline() const = 0;
  virtual bool hasName() const = 0;
  virtual bool rgbMode() const = 0;
  virtual void setRgbMode(bool rgbMode) = 0;
};

using Font = IFontT<char16_t>;

}  // namespace rubrica
