// How the sectors of a written file follow each other: data, DIFAT, FAT, directory, and the tables that say so. Plain
// functions of the counts, used by Xls::close().
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "compound/header.h"

namespace rubrica {

struct FileLayout {
  std::uint32_t dataSectors = 0;  // main stream, side streams, mini FAT
  std::uint32_t difatSectors = 0;
  std::uint32_t fatSectors = 0;
  std::uint32_t dirSectors = 0;

  std::uint32_t firstFatSector() const { return dataSectors + difatSectors; }
  std::uint32_t firstDirSector() const { return firstFatSector() + fatSectors; }
};

// Sizes of the sectors that every written file has, and how many table entries fit into them.
inline constexpr std::size_t kWrittenSectorSize = 512;
inline constexpr std::size_t kFatEntriesPerSector = kWrittenSectorSize / sizeof(std::uint32_t);
inline constexpr std::size_t kDifatEntriesPerSector = kFatEntriesPerSector - 1;

// The count of FAT sectors is an estimate from above: the FAT has to describe its own sectors too, and room is left
// over.
FileLayout planLayout(std::uint32_t dataSectors, std::size_t dirEntries);
// The FAT of a layout, with all data sectors in one chain. Throws xlerror
// "Xls::close(): sector is out of fat" where the estimate was too small.
std::vector<std::uint32_t> buildFat(const FileLayout& layout);
// Ends the chain before `start`, the first sector of a stream; throws xlerror with `text` where no sector is before it.
void cutChain(std::vector<std::uint32_t>& fat, std::uint32_t start, const char* text);
// Places the FAT's sectors: the first 109 into the header, the rest into the entries that are returned, which fill the
// DIFAT sectors without their next pointers.
std::vector<std::uint32_t> buildDifat(const FileLayout& layout, CompoundHeader& header);

}  // namespace rubrica
