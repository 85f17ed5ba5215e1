// The shared-feature records of a sheet: FeatHdr with the Feat records behind it, and FeatHdr11. The engine makes two
// kinds, the options of an enhanced protection and the ignored errors of ranges; data of all other kinds is carried as
// it came. Owned by the sheet.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "biff/cell_range.h"
#include "biff/records/record_io.h"
#include "engine/line_move.h"

namespace rubrica {

// What future records begin with.
struct FrtHeader {
  std::uint16_t rt = 0, grbitFrt = 0;
  std::array<std::uint32_t, 2> reserved{};

  static void visit(auto& self, auto&& field) {
    field(self.rt);
    field(self.grbitFrt);
    field(self.reserved);
  }
};

// The kinds of shared features that the engine knows.
enum class FeatureType : std::uint16_t { protection = 2, ignoredErrors = 3 };

// 2152. A feature of some ranges.
struct Feat {
  FrtHeader head{id::kFeat, 0, {}};
  std::uint16_t isf = 0;
  std::uint8_t reserved1 = 0;
  std::uint32_t reserved2 = 0, cbFeatData = 0;
  std::uint16_t reserved3 = 0;
  std::vector<CellRange> ranges;
  std::vector<std::byte> data;
  std::vector<RawRecord> continued;  // ContinueFrt records

  static Feat ofIgnoredErrors(int errorSet, const CellRange& range);
  // Reads the record in front of the cursor and the ContinueFrt records behind it.
  static Feat read(Xls& xls);
  void write(Xls& xls) const;
  bool ignores(int errorSet) const;
  // Whether one more range still fits into the record.
  bool hasRoom() const;
};

// 2151.
struct FeatHdr {
  FrtHeader head{id::kFeatHdr, 0, {}};
  std::uint16_t isf = 0;
  std::uint8_t reserved = 1;
  std::uint32_t cbHdrData = 0;
  std::vector<std::byte> data;
  std::vector<Feat> feats;

  static FeatHdr ofProtection(std::uint32_t options);
  static FeatHdr ofIgnoredErrors();
  // Reads the body and the Feat records behind it.
  static FeatHdr read(Xls& xls, std::uint16_t size);
  void write(Xls& xls) const;
  bool is(FeatureType type) const { return isf == static_cast<std::uint16_t>(type); }
};

// 2161.
struct FeatHdr11 {
  static constexpr std::uint16_t kId = id::kFeatHdr11;
  static constexpr char kName[] = "FeatHdr11";
  FrtHeader head{id::kFeatHdr11, 0, {}};
  std::uint16_t isf = 0;
  std::uint8_t reserved1 = 0;
  std::uint32_t reserved2 = 0, reserved3 = 0, idListNext = 0;
  std::uint16_t reserved4 = 0;

  static void visit(auto& self, auto&& field) {
    FrtHeader::visit(self.head, field);
    field(self.isf);
    field(self.reserved1);
    field(self.reserved2);
    field(self.reserved3);
    field(self.idListNext);
    field(self.reserved4);
  }
};

class SharedFeatures {
 public:
  // Takes a record of this subject with all that belongs to it; false when the id is none of its own.
  bool read(Xls& xls, std::uint16_t recordId, std::uint16_t size);
  void write(Xls& xls) const;
  void clear() { *this = {}; }

  void addProtection(std::uint32_t options) { _headers.push_back(FeatHdr::ofProtection(options)); }
  // False when the range has this very set of ignored errors already.
  bool addIgnoredErrors(int errorSet, const CellRange& range);
  // Ranges go with their cells; a feature that loses its last range goes too.
  void move(const LineMove& move);

  const std::vector<FeatHdr>& headers() const { return _headers; }

 private:
  std::vector<FeatHdr> _headers;
  std::vector<FeatHdr11> _headers11;
};

}  // namespace rubrica
