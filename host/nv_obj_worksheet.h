// NVObjWorksheet: the host's face of one sheet. Empty until a Workbook fills it.
#pragma once

#include "host/book_share.h"
#include "host/num_format_mgr.h"
#include "host/nv_obj.h"

namespace rubrica::host {

class NVObjWorksheet : public NVObj<NVObjWorksheet> {
 public:
  static constexpr std::uint32_t kClassId = classid::worksheet;
  static constexpr int kUnknownMethodCode = code::nothing;

  using NVObj::NVObj;

  static std::span<const MethodEntry<NVObjWorksheet>> methods();
  static std::span<const PropertyEntry<NVObjWorksheet>> properties();
  static std::span<const MethodRow> methodRows() { return worksheetMethods(); }
  static std::span<const PropertyRow> propertyRows() { return worksheetProperties(); }
  bool isSetUp() const { return numFormats && book && sheet != nullptr && !isDeleted(book, sheet); }
  void copyStateFrom(const NVObjWorksheet& other);
  Sheet& engine() { return *sheet; }

  NumFormatMgrPtr numFormats;
  BookPtr book;
  Sheet* sheet = nullptr;
};

}  // namespace rubrica::host
