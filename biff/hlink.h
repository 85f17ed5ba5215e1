// HLink records: the links of a sheet, each over a range of cells. Owned by the sheet.
#pragma once

#include <vector>

#include "biff/cell_range.h"
#include "biff/hyperlink_object.h"
#include "compound/xls.h"

namespace rubrica {

struct HLink {
  // The head of the record: the range and the class of the object behind it.
  static constexpr std::size_t kHeadSize = sizeof(CellRange) + sizeof(ClassId);

  CellRange range;
  ClassId classId = kStandardHyperlink;
  HyperlinkObject object;

  // Takes a record's body with what CONTINUE records add to it. Throws "error reading HLink" and the messages of its
  // object.
  static HLink read(Xls& xls, std::uint16_t size);
  // A link too long for one record goes on in CONTINUE records.
  void write(Xls& xls) const;

  // 79EAC9D0-BAF9-11CE-8C82-00AA004BA90B in file order.
  static constexpr ClassId kStandardHyperlink = {0xD0, 0xC9, 0xEA, 0x79, 0xF9, 0xBA, 0xCE, 0x11,
                                                 0x8C, 0x82, 0x00, 0xAA, 0x00, 0x4B, 0xA9, 0x0B};
};

}  // namespace rubrica
