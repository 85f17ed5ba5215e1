// The first 512 bytes of a compound file. A default-constructed header is that of a file we write, before its places
// and counts are known.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "compound/sector_values.h"

namespace rubrica {

struct CompoundHeader {
  static constexpr std::size_t kDiskSize = 512;
  static constexpr std::size_t kDifatEntries = 109;
  static constexpr std::array<std::uint8_t, 8> kSignature{0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

  CompoundHeader() { difat.fill(kFreeSector); }

  // Throws xlerror where the file is shorter than a header or doesn't begin with the signature.
  static CompoundHeader load(std::span<const std::byte> file);
  std::array<std::byte, kDiskSize> store() const;

  // Sizes in bytes, of 16 bits: no sector of the format is larger than 4096. Both throw xlerror, its text begun with
  // `operation`, where the shift leaves nothing of those 16 bits.
  std::uint16_t sectorSize(const std::string& operation) const;
  std::uint16_t miniSectorSize(const std::string& operation) const;

  std::array<std::uint8_t, 8> signature = kSignature;
  std::array<std::uint8_t, 16> classId{};
  std::uint16_t minorVersion = 0x3E;
  std::uint16_t majorVersion = 3;
  std::uint16_t byteOrder = 0xFFFE;
  std::uint16_t sectorShift = 9;
  std::uint16_t miniSectorShift = 6;
  std::array<std::uint8_t, 6> reserved{};
  std::uint32_t numDirectorySectors = 0;
  std::uint32_t numFatSectors = 0;
  std::uint32_t directorySectorLocation = kEndOfChain;
  std::uint32_t transactionSignature = 0;
  std::uint32_t miniStreamCutoff = kMiniStreamCutoff;
  std::uint32_t miniFatSectorLocation = kEndOfChain;
  std::uint32_t numMiniFatSectors = 0;
  std::uint32_t difatSectorLocation = kEndOfChain;
  std::uint32_t numDifatSectors = 0;
  std::array<std::uint32_t, kDifatEntries> difat{};
};

}  // namespace rubrica
