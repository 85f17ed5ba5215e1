// NVObjCell: an address, a row and a column of a sheet, 0-based. Empty until $cell of a Worksheet fills it.
#pragma once

#include "host/book_share.h"
#include "host/num_format_mgr.h"
#include "host/nv_obj.h"

namespace rubrica::host {

class NVObjCell : public NVObj<NVObjCell> {
 public:
  static constexpr std::uint32_t kClassId = classid::cell;
  static constexpr int kUnknownMethodCode = code::nothing;

  using NVObj::NVObj;

  static std::span<const MethodEntry<NVObjCell>> methods();
  static std::span<const PropertyEntry<NVObjCell>> properties();
  static std::span<const MethodRow> methodRows() { return cellMethods(); }
  static std::span<const PropertyRow> propertyRows() { return cellProperties(); }
  bool isSetUp() const {
    return numFormats && book && sheet != nullptr && !isDeleted(book, sheet) && row >= 0 && column >= 0;
  }
  void copyStateFrom(const NVObjCell& other);

  std::int32_t row = 0;
  std::int32_t column = 0;
  NumFormatMgrPtr numFormats;
  BookPtr book;
  Sheet* sheet = nullptr;
};

}  // namespace rubrica::host
