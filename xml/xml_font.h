// XMLFontImplT: a font of an OOXML book, a view of one `font` element, whose properties are children in any order. Made
// and owned by Styles.
#pragma once

#include <string>

#include "engine/font.h"
#include "xml/styles.h"

namespace rubrica {

template <class Tag>
class XMLFontImplT final : public IFontPrivate<char16_t> {
 public:
  using Element = typename StyleClasses<Tag>::Font;

  XMLFontImplT(Styles<Tag>& styles, Element& element) : _styles(&styles), _element(&element) {}
  XMLFontImplT(const XMLFontImplT&) = delete;
  XMLFontImplT& operator=(const XMLFontImplT&) = delete;

  // Points; 11, the size that a font has by default, where none is stated. Fractions are cut.
  int size() const override;
  void setSize(int points) override;
  bool italic() const override;
  void setItalic(bool italic) override;
  bool strikeOut() const override;
  void setStrikeOut(bool strikeOut) override;
  Color color() const override;
  void setColor(Color color) override;
  bool bold() const override;
  void setBold(bool bold) override;
  Script script() const override;
  void setScript(Script script) override;
  Underline underline() const override;
  void setUnderline(Underline underline) override;
  const char16_t* name() override;
  bool setName(const char16_t* name) override;

  bool hasSize() const override;
  bool hasItalic() const override;
  bool hasStrikeOut() const override;
  bool hasColor() const override;
  bool hasBold() const override;
  bool hasScript() const override;
  bool hasUnderline() const override;
  bool hasName() const override;
  bool rgbMode() const override { return _styles->rgbMode(); }
  void setRgbMode(bool rgbMode) override { _styles->setRgbMode(rgbMode); }

  const Element& element() const { return *_element; }
  const Styles<Tag>& styles() const { return *_styles; }
  void assignName(const char16_t* name);  // setName without its frame
  // Takes the properties that a font of any book of either file form states.
  void copyFrom(IFontT<char16_t>& source);

 private:
  Styles<Tag>* _styles;
  Element* _element;
  std::u16string _name;  // of the last name()
};

extern template class XMLFontImplT<excelNormal_tag>;
extern template class XMLFontImplT<excelStrict_tag>;

}  // namespace rubrica
