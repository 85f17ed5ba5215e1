// Fixed records of the workbook globals, under the field names of the published format, with what a new book writes.
#pragma once

#include <cstdint>

#include "biff/records/record_ids.h"

namespace rubrica {

// 2057. Begins the globals and every sheet; may end behind the type, the build, the year or the flags.
struct Bof {
  static constexpr std::uint16_t kId = id::kBof;
  static constexpr char kName[] = "Bof";
  std::uint16_t vers = kBiff8Version, dt = kGlobals, rupBuild = 0x209A, rupYear = 0x07CD;
  std::uint32_t flags = 0xC0C9, versions = 0x306;

  static constexpr std::uint16_t kGlobals = 5, kWorksheet = 16, kChart = 32;

  static void visit(auto& self, auto&& field) {
    field(self.vers);
    field(self.dt);
    field(self.rupBuild);
    field(self.rupYear);
    field(self.flags);
    field(self.versions);
  }
};

// 61. Position and size of the window in twips.
struct Window1 {
  static constexpr std::uint16_t kId = id::kWindow1;
  static constexpr char kName[] = "Window1";
  std::uint16_t xWn = 0, yWn = 15, dxWn = 16155, dyWn = 10230, grbit = 56, itabCur = 0, itabFirst = 0, ctabSel = 1,
                wTabRatio = 600;
  static void visit(auto& self, auto&& field) {
    field(self.xWn);
    field(self.yWn);
    field(self.dxWn);
    field(self.dyWn);
    field(self.grbit);
    field(self.itabCur);
    field(self.itabFirst);
    field(self.ctabSel);
    field(self.wTabRatio);
  }
};

// 140.
struct Country {
  static constexpr std::uint16_t kId = id::kCountry;
  static constexpr char kName[] = "Country";
  std::uint16_t iCountryDef = 1, iCountryWinIni = 1;
  static void visit(auto& self, auto&& field) {
    field(self.iCountryDef);
    field(self.iCountryWinIni);
  }
};

// 449.
struct RecalcId {
  static constexpr std::uint16_t kId = id::kRecalcId;
  static constexpr char kName[] = "RecalcId";
  std::uint16_t rt = 449, reserved = 0;
  std::uint32_t dwBuild = 114210;
  static void visit(auto& self, auto&& field) {
    field(self.rt);
    field(self.reserved);
    field(self.dwBuild);
  }
};

}  // namespace rubrica
