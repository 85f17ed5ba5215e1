// The XF record: one entry of the format table, its words packed as they stand in the file, and the places of the
// properties in them. FormatImplT holds one and reads and changes it in place.
#pragma once

#include <cstdint>

#include "biff/records/record_ids.h"

namespace rubrica {

// A new XF is a style XF that states nothing: bottom aligned, borders without style in the default foreground, no fill.
struct XF {
  static constexpr std::uint16_t kId = id::kXf;
  static constexpr char kName[] = "XF";
  // Locked, style XF, parent 0xFFF: what style XFs hold. A cell XF is locked and has parent 0.
  static constexpr std::uint16_t kStyleProtection = 0xFFF5, kCellProtection = 0x0001;
  static constexpr std::uint32_t kBottomAligned = 0x20;

  std::uint16_t font = 0;  // font index, which skips the value 4
  std::uint16_t numFormat = 0;
  std::uint16_t protection = kStyleProtection;
  std::uint32_t alignment = kBottomAligned;
  std::uint32_t border1 = 64u << 16 | 64u << 23;
  std::uint32_t border2 = 64u | 64u << 7;
  std::uint16_t fill = 64 | 65 << 7;

  static void visit(auto& self, auto&& field) {
    field(self.font);
    field(self.numFormat);
    field(self.protection);
    field(self.alignment);
    field(self.border1);
    field(self.border2);
    field(self.fill);
  }
};

// The bits of one property. A value wider than its field spills into the bits above it: setters don't mask, as callers
// rely on no more than the range that the interface names.
template <class Word>
struct XfField {
  Word XF::*word;
  unsigned shift;
  unsigned width;

  int get(const XF& xf) const { return static_cast<int>((xf.*word >> shift) & ((1u << width) - 1)); }
  void set(XF& xf, int value) const {
    const std::uint32_t mask = ((1u << width) - 1) << shift;
    xf.*word = static_cast<Word>((xf.*word & ~mask) | (static_cast<std::uint32_t>(value) << shift));
  }
};

namespace xf_field {
inline constexpr XfField<std::uint16_t> kLocked{&XF::protection, 0, 1}, kHidden{&XF::protection, 1, 1};
inline constexpr XfField<std::uint32_t> kAlignH{&XF::alignment, 0, 3}, kWrap{&XF::alignment, 3, 1},
    kAlignV{&XF::alignment, 4, 3}, kRotation{&XF::alignment, 8, 8}, kIndent{&XF::alignment, 16, 4},
    kShrinkToFit{&XF::alignment, 20, 1};
inline constexpr XfField<std::uint32_t> kLeft{&XF::border1, 0, 4}, kRight{&XF::border1, 4, 4}, kTop{&XF::border1, 8, 4},
    kBottom{&XF::border1, 12, 4}, kLeftColor{&XF::border1, 16, 7}, kRightColor{&XF::border1, 23, 7},
    kDiagonal{&XF::border1, 30, 2};
inline constexpr XfField<std::uint32_t> kTopColor{&XF::border2, 0, 7}, kBottomColor{&XF::border2, 7, 7},
    kDiagonalColor{&XF::border2, 14, 7}, kDiagonalStyle{&XF::border2, 21, 4}, kPattern{&XF::border2, 26, 6};
inline constexpr XfField<std::uint16_t> kForeground{&XF::fill, 0, 7}, kBackground{&XF::fill, 7, 7};
}  // namespace xf_field

// Bits of the alignment word that say which groups of properties an XF states for itself, beside those of its parent.
// A setter raises its group's bit, and nothing lowers it again.
namespace xf_used {
inline constexpr std::uint32_t kNumFormat = 1u << 26, kFont = 1u << 27, kAlignment = 1u << 28, kBorder = 1u << 29,
                               kFill = 1u << 30, kProtection = 1u << 31;
}  // namespace xf_used

}  // namespace rubrica
