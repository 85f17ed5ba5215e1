// The records of the workbook globals that are plain settings, with what a new book writes. The book decides where each
// of them stands in the file; this class holds, reads and writes them.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "biff/records/global_records.h"
#include "biff/records/record_io.h"

namespace rubrica {

struct WorkbookGlobals {
  WorkbookGlobals();

  Bof bof;
  bool isTemplate = false;
  std::array<std::uint8_t, 2> mms{};
  std::array<std::uint8_t, 112> writeAccess;
  Window1 window1;
  Country country;
  RecalcId recalcId;
  // One word each.
  std::uint16_t interfaceCodePage = 1200, codePage = 1200, dsf = 0, builtInFnGroupCount = 14, winProtect = 0,
                protect = 0, password = 0, prot4Rev = 0, prot4RevPass = 0, backup = 0, hideObj = 0, date1904 = 0,
                calcPrecision = 1, refreshAll = 0, bookBool = 0, usesElfs = 0;
  // Records that are carried, each in a place of its own.
  std::vector<RawRecord> carried;

  // Takes a record of this subject; false when the id is none of its own.
  bool read(Xls& xls, std::uint16_t recordId, std::uint16_t size);
  // Writes the word records of these ids in the given order.
  void writeWords(Xls& xls, std::initializer_list<std::uint16_t> ids) const;
  // Writes the carried records of these ids, as far as the book has them.
  void writeCarried(Xls& xls, std::initializer_list<std::uint16_t> ids) const;
};

// The id of one carried record of the globals, by the name that its format gives it.
namespace carried {
inline constexpr std::uint16_t kObProj = 211, kCodeName = 442, kObNoMacros = 445, kXfCrc = 2172, kCompat12 = 2188,
                               kTableStyles = 2190, kTheme = 2198, kMtrSettings = 2202, kCompressPictures = 2203,
                               kForceFullCalculation = 2211, kClrtClient = 4188;
}

}  // namespace rubrica
