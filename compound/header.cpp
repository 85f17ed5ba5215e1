#include "compound/header.h"

#include "compound/field_io.h"
#include "engine/xlerror.h"

namespace rubrica {

namespace {

// The fields in file order; a loader or a storer visits them.
template <typename Visitor, typename Header>
void visitHeaderFields(Visitor&& visit, Header& header) {
  visit(header.signature);
  visit(header.classId);
  visit(header.minorVersion);
  visit(header.majorVersion);
  visit(header.byteOrder);
  visit(header.sectorShift);
  visit(header.miniSectorShift);
  visit(header.reserved);
  visit(header.numDirectorySectors);
  visit(header.numFatSectors);
  visit(header.directorySectorLocation);
  visit(header.transactionSignature);
  visit(header.miniStreamCutoff);
  visit(header.miniFatSectorLocation);
  visit(header.numMiniFatSectors);
  visit(header.difatSectorLocation);
  visit(header.numDifatSectors);
  visit(header.difat);
}

// The processor's own rule for shifts of 32-bit words: only the low five bits of the count matter.
std::uint16_t powerOfTwo(std::uint16_t shift, const std::string& zeroText) {
  constexpr unsigned kShiftMask = 31;
  const auto size = static_cast<std::uint16_t>(1U << (shift & kShiftMask));
  if (size == 0) throw xlerror(zeroText);
  return size;
}

}  // namespace

CompoundHeader CompoundHeader::load(std::span<const std::byte> file) {
  if (file.size() < kDiskSize) throw xlerror("readHeader: file is corrupt (size < 512 bytes)");
  CompoundHeader header;
  visitHeaderFields(FieldLoader(file.data()), header);
  if (header.signature != kSignature) throw xlerror("invalid file format");
  return header;
}

std::array<std::byte, CompoundHeader::kDiskSize> CompoundHeader::store() const {
  std::array<std::byte, kDiskSize> bytes{};
  visitHeaderFields(FieldStorer(bytes.data()), *this);
  return bytes;
}

std::uint16_t CompoundHeader::sectorSize(const std::string& operation) const {
  return powerOfTwo(sectorShift, operation + ": _sectorSize can't be 0");
}

std::uint16_t CompoundHeader::miniSectorSize(const std::string& operation) const {
  return powerOfTwo(miniSectorShift, operation + ": _miniSectorSize can't be 0");
}

}  // namespace rubrica
