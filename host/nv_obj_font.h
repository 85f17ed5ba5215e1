// NVObjFont: one font of a book. Empty until a Workbook, Cell or Format fills it.
#pragma once

#include "host/book_share.h"
#include "host/nv_obj.h"

namespace rubrica::host {

class NVObjFont : public NVObj<NVObjFont> {
 public:
  static constexpr std::uint32_t kClassId = classid::font;
  static constexpr int kUnknownMethodCode = code::nothing;

  using NVObj::NVObj;

  static std::span<const MethodEntry<NVObjFont>> methods();
  static std::span<const PropertyEntry<NVObjFont>> properties();
  static std::span<const MethodRow> methodRows() { return fontMethods(); }
  static std::span<const PropertyRow> propertyRows() { return fontProperties(); }
  bool isSetUp() const { return book && font != nullptr; }
  void copyStateFrom(const NVObjFont& other);
  Font& engine() { return *font; }
  void setEngine(Font* value) { font = value; }

  BookPtr book;
  Font* font = nullptr;
};

}  // namespace rubrica::host
