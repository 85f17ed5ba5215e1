// What a compound file says about where its bytes are: header, DIFAT, FAT, mini FAT and directory, read from a file in
// memory. Xls owns one; the readers of streams look places up in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "compound/dir_entry.h"
#include "compound/header.h"

namespace rubrica {

struct SectorTables {
  // Parses all of them. Throws xlerror with the texts of docs/formats/compound.md; no table grows past what the file's
  // size allows.
  void load(std::span<const std::byte> bytes);

  // The first entry called so, the case of letters ignored.
  std::optional<std::size_t> findEntry(std::u16string_view name) const;
  // The entry of the workbook's stream: "Workbook", else "Book".
  std::optional<std::size_t> findMainEntry() const;
  // The file's bytes of a sector: fewer than a sector at the file's end, none past it.
  std::span<const std::byte> sectorBytes(std::uint32_t sector) const;

  std::span<const std::byte> file;
  CompoundHeader header;
  std::uint32_t sectorSize = 0;      // bytes
  std::uint32_t miniSectorSize = 0;  // bytes
  std::vector<std::uint32_t> difat;
  std::vector<std::uint32_t> fat;
  std::vector<std::uint32_t> miniFat;
  std::vector<DirEntry> dir;

 private:
  void loadDifat();
  void loadFat();
  void loadMiniFat();
  void loadDir();
  std::vector<std::uint32_t> directoryChain() const;
  void consume(std::uint64_t size, const char* text);

  // Bytes that the steps of parsing have taken, wherever they stood: more than the file holds means that a chain runs
  // in a circle.
  std::uint64_t _consumed = 0;
};

}  // namespace rubrica
