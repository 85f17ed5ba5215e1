// NVObjWorkbook: the root of a tree of host objects. It makes the engine's book and hands out Worksheets, Formats and
// Fonts; it is usable as soon as it exists. Replacing its book ($initialize, $load, $loadRaw) leaves the objects handed
// out before on the former book.
#pragma once

#include "host/book_share.h"
#include "host/num_format_mgr.h"
#include "host/nv_obj.h"

namespace rubrica::host {

class NVObjWorkbook : public NVObj<NVObjWorkbook> {
 public:
  static constexpr std::uint32_t kClassId = classid::workbook;
  static constexpr int kUnknownMethodCode = code::badMethod;
  // File types, the values of kXLxls and kXLxlsx.
  static constexpr std::int16_t kXls = 10, kXlsx = 11;

  explicit NVObjWorkbook(ObjectHandle self) : NVObj(self) { createBook(); }

  static std::span<const MethodEntry<NVObjWorkbook>> methods();
  static std::span<const PropertyEntry<NVObjWorkbook>> properties();
  static std::span<const MethodRow> methodRows() { return workbookMethods(); }
  static std::span<const PropertyRow> propertyRows() { return workbookProperties(); }
  bool isSetUp() const { return book != nullptr; }
  void copyStateFrom(const NVObjWorkbook& other);

  // Replaces the book by a new, empty one of the object's file type. False when none can be had.
  bool createBook();

  NumFormatMgrPtr numFormats;
  BookPtr book;
  std::int16_t fileType = kXls;
};

}  // namespace rubrica::host
