// Fixed records of a worksheet substream, under the field names of the published format.
#pragma once

#include <array>
#include <cstdint>

#include "biff/records/record_ids.h"

namespace rubrica {

// 520. A row that was never set up: columns 0 to 1, the default height, xf 15.
struct RowRecord {
  static constexpr std::uint16_t kId = id::kRow;
  static constexpr char kName[] = "Row";
  std::uint16_t rw = 0, colMic = 0, colMac = 1, miyRw = 255, reserved1 = 0, reserved2 = 0;
  std::uint32_t flags = 0x000F0100;

  static constexpr std::uint32_t kOutlineLevel = 0x07, kCollapsed = 0x10, kHidden = 0x20, kUnsynced = 0x40,
                                 kGhostDirty = 0x80, kAlwaysSet = 0x100;
  static constexpr int kXfShift = 16;  // bits 16 to 27: the row's xf, in force with kGhostDirty

  static void visit(auto& self, auto&& field) {
    field(self.rw);
    field(self.colMic);
    field(self.colMac);
    field(self.miyRw);
    field(self.reserved1);
    field(self.reserved2);
    field(self.flags);
  }
};

// 125. Width in 1/256 of the default digit width.
struct ColInfo {
  static constexpr std::uint16_t kId = id::kColInfo;
  static constexpr char kName[] = "ColInfo";
  std::uint16_t colFirst = 0, colLast = 0, coldx = 0, ixfe = 15, grbit = 0, reserved = 0;

  static constexpr std::uint16_t kHidden = 0x0001, kUserSet = 0x0002, kCollapsed = 0x1000;
  static constexpr std::uint16_t kLevelMask = 0x0700;
  static constexpr int kLevelShift = 8;

  static void visit(auto& self, auto&& field) {
    field(self.colFirst);
    field(self.colLast);
    field(self.coldx);
    field(self.ixfe);
    field(self.grbit);
    field(self.reserved);
  }
};

// 512, BIFF8 form. Last row and column are one past the last used.
struct Dimensions {
  static constexpr std::uint16_t kId = id::kDimensions;
  static constexpr char kName[] = "Dimensions";
  std::uint32_t rwMic = 0, rwMac = 0;
  std::uint16_t colMic = 0, colMac = 0, reserved = 0;

  static void visit(auto& self, auto&& field) {
    field(self.rwMic);
    field(self.rwMac);
    field(self.colMic);
    field(self.colMac);
    field(self.reserved);
  }
};

// 512, BIFF5 form.
struct Dimensions5 {
  static constexpr std::uint16_t kId = id::kDimensions;
  static constexpr char kName[] = "Dimensions";
  std::uint16_t rwMic = 0, rwMac = 0, colMic = 0, colMac = 0, reserved = 0;

  static void visit(auto& self, auto&& field) {
    field(self.rwMic);
    field(self.rwMac);
    field(self.colMic);
    field(self.colMac);
    field(self.reserved);
  }
};

// 16.
struct CalcDelta {
  static constexpr std::uint16_t kId = id::kCalcDelta;
  static constexpr char kName[] = "CalcDelta";
  double numDelta = 0.001;
  static void visit(auto& self, auto&& field) { field(self.numDelta); }
};

// 128. Pixel widths of the outline gutters and the outline depths plus one.
struct Guts {
  static constexpr std::uint16_t kId = id::kGuts;
  static constexpr char kName[] = "Guts";
  std::uint16_t dxRwGut = 0, dyColGut = 0, iLevelRwMac = 0, iLevelColMac = 0;
  static void visit(auto& self, auto&& field) {
    field(self.dxRwGut);
    field(self.dyColGut);
    field(self.iLevelRwMac);
    field(self.iLevelColMac);
  }
};

// 549. Height in twips.
struct DefaultRowHeight {
  static constexpr std::uint16_t kId = id::kDefaultRowHeight;
  static constexpr char kName[] = "DefaultRowHeight";
  std::uint16_t flags = 0, miyRw = 255;
  static void visit(auto& self, auto&& field) {
    field(self.flags);
    field(self.miyRw);
  }
};

// 574. A BIFF5 record ends behind its first four fields or its colour.
struct Window2 {
  static constexpr std::uint16_t kId = id::kWindow2;
  static constexpr char kName[] = "Window2";
  std::uint16_t grbit = 0x00B6, rwTop = 0, colLeft = 0, icvHdr = 64, reserved2 = 0, wScaleSLV = 0, wScaleNormal = 0;
  std::uint32_t reserved4 = 0;

  static constexpr std::uint16_t kGridlines = 0x0002, kFrozen = 0x0008, kRightToLeft = 0x0040,
                                 kFrozenWithoutSplit = 0x0100, kSelected = 0x0200, kPaged = 0x0400;

  static void visit(auto& self, auto&& field) {
    field(self.grbit);
    field(self.rwTop);
    field(self.colLeft);
    field(self.icvHdr);
    field(self.reserved2);
    field(self.wScaleSLV);
    field(self.wScaleNormal);
    field(self.reserved4);
  }
};

// 160.
struct Scl {
  static constexpr std::uint16_t kId = id::kScl;
  static constexpr char kName[] = "Scl";
  std::uint16_t numerator = 100, denominator = 100;
  static void visit(auto& self, auto&& field) {
    field(self.numerator);
    field(self.denominator);
  }
};

// 65. For frozen panes x and y count columns and rows, otherwise twips. The last byte is missing in some files.
struct Pane {
  static constexpr std::uint16_t kId = id::kPane;
  static constexpr char kName[] = "Pane";
  std::uint16_t x = 0, y = 0, rwTop = 0, colLeft = 0;
  std::uint8_t pnnAcct = 3, reserved = 0;
  static void visit(auto& self, auto&& field) {
    field(self.x);
    field(self.y);
    field(self.rwTop);
    field(self.colLeft);
    field(self.pnnAcct);
    field(self.reserved);
  }
};

// 161. Header and footer margins in inches.
struct PageSetup {
  static constexpr std::uint16_t kId = id::kSetup;
  static constexpr char kName[] = "PageSetup";
  std::uint16_t iPaperSize = 0, iScale = 100, iPageStart = 1, iFitWidth = 1, iFitHeight = 1,
                grbit = kPortrait | kNoOrient, iRes = 600, iVRes = 600;
  double numHdr = 0.5, numFtr = 0.5;
  std::uint16_t iCopies = 1;

  static constexpr std::uint16_t kPortrait = 0x0002, kNoPls = 0x0004, kNoOrient = 0x0040;

  static void visit(auto& self, auto&& field) {
    field(self.iPaperSize);
    field(self.iScale);
    field(self.iPageStart);
    field(self.iFitWidth);
    field(self.iFitHeight);
    field(self.grbit);
    field(self.iRes);
    field(self.iVRes);
    field(self.numHdr);
    field(self.numFtr);
    field(self.iCopies);
  }
};

}  // namespace rubrica
