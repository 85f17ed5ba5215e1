// FontImplT: a font of an .xls book, which is one Font record. Made and owned by StyleTables; its name lies in the
// book's pool, so the text that name() gives stays valid until the next setName or load.
#pragma once

#include <cstdint>
#include <string_view>

#include "biff/book_state.h"
#include "biff/records/record_ids.h"
#include "biff/unicode_string.h"
#include "engine/font.h"

namespace rubrica {

// The part of the Font record in front of the name.
struct FontRecord {
  static constexpr std::uint16_t kId = id::kFont;
  static constexpr char kName[] = "Font";

  std::uint16_t height = 200;  // twentieths of a point
  std::uint16_t options = 0;   // bit 1 italic, bit 3 strike-out; the others are carried
  std::uint16_t color = 0x7FFF;
  std::uint16_t weight = 400;
  std::uint16_t script = 0;
  std::uint8_t underline = 0;
  std::uint8_t family = 0;
  std::uint8_t charSet = 0;
  std::uint8_t reserved = 0;

  static void visit(auto& self, auto&& field) {
    field(self.height);
    field(self.options);
    field(self.color);
    field(self.weight);
    field(self.script);
    field(self.underline);
    field(self.family);
    field(self.charSet);
    field(self.reserved);
  }
};

template <class C>
class FontImplT final : public IFontPrivate<C> {
 public:
  explicit FontImplT(BookState& state) : _state(&state) {}
  FontImplT(const FontImplT&) = delete;
  FontImplT& operator=(const FontImplT&) = delete;

  int size() const override { return _record.height / 20; }
  void setSize(int points) override;
  bool italic() const override { return (_record.options & kItalic) != 0; }
  void setItalic(bool italic) override { setOption(kItalic, italic); }
  bool strikeOut() const override { return (_record.options & kStrikeOut) != 0; }
  void setStrikeOut(bool strikeOut) override { setOption(kStrikeOut, strikeOut); }
  Color color() const override { return _record.color; }
  void setColor(Color color) override { _record.color = static_cast<std::uint16_t>(color); }
  bool bold() const override { return _record.weight >= kBoldWeight; }
  void setBold(bool bold) override { _record.weight = bold ? kBoldWeight : kNormalWeight; }
  Script script() const override { return static_cast<Script>(_record.script); }
  void setScript(Script script) override { _record.script = static_cast<std::uint16_t>(script); }
  Underline underline() const override { return static_cast<Underline>(_record.underline); }
  void setUnderline(Underline underline) override { _record.underline = static_cast<std::uint8_t>(underline); }
  const C* name() override { return _state->convert(_name.text); }
  bool setName(const C* name) override;

  // A BIFF font states every property.
  bool hasSize() const override { return true; }
  bool hasItalic() const override { return true; }
  bool hasStrikeOut() const override { return true; }
  bool hasColor() const override { return true; }
  bool hasBold() const override { return true; }
  bool hasScript() const override { return true; }
  bool hasUnderline() const override { return true; }
  bool hasName() const override { return true; }
  bool rgbMode() const override { return _state->rgbMode; }
  void setRgbMode(bool rgbMode) override;

  // setName without its guard: throws xlerror above 255 characters.
  void assignName(const C* name);
  // Takes the properties of a font of any book of either file form; its colour as an index, not as RGB.
  void copyFrom(IFontT<C>& source);
  void read(Xls& xls, std::uint16_t size);
  void write(Xls& xls) const;

 private:
  static constexpr std::uint16_t kItalic = 1 << 1, kStrikeOut = 1 << 3;
  static constexpr std::uint16_t kNormalWeight = 400, kBoldWeight = 700;
  static constexpr std::uint16_t kMaxHeight = 0x1FFF;

  void setOption(std::uint16_t bit, bool on) {
    _record.options = static_cast<std::uint16_t>(on ? _record.options | bit : _record.options & ~bit);
  }

  BookState* _state;
  FontRecord _record;
  ShortXLUnicodeString _name{5, true, u"Arial"};  // a null text: the record has none
};

using FontImpl = FontImplT<char16_t>;
extern template class FontImplT<char16_t>;

}  // namespace rubrica
