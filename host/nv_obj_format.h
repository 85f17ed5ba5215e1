// NVObjFormat: one cell format of a book. Empty until a Workbook or Cell fills it.
#pragma once

#include "host/book_share.h"
#include "host/nv_obj.h"

namespace rubrica::host {

class NVObjFormat : public NVObj<NVObjFormat> {
 public:
  static constexpr std::uint32_t kClassId = classid::format;
  static constexpr int kUnknownMethodCode = code::nothing;

  using NVObj::NVObj;

  static std::span<const MethodEntry<NVObjFormat>> methods();
  static std::span<const PropertyEntry<NVObjFormat>> properties();
  static std::span<const MethodRow> methodRows() { return formatMethods(); }
  static std::span<const PropertyRow> propertyRows() { return formatProperties(); }
  bool isSetUp() const { return book && format != nullptr; }
  void copyStateFrom(const NVObjFormat& other);
  Format& engine() { return *format; }
  void setEngine(Format* value) { format = value; }

  BookPtr book;
  Format* format = nullptr;
};

}  // namespace rubrica::host
