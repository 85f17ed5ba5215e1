#include "compound/file_layout.h"

#include <algorithm>

#include "compound/dir_entry.h"
#include "engine/xlerror.h"

namespace rubrica {

namespace {

constexpr std::size_t kDirEntriesPerSector = kWrittenSectorSize / DirEntry::kDiskSize;
// Past this many FAT sectors for the FAT itself the estimate takes kExtraSectors more.
constexpr std::uint32_t kLargeFat = 100;
constexpr std::uint32_t kExtraSectors = 3;

std::uint32_t dividedUp(std::size_t count, std::size_t by) {
  return static_cast<std::uint32_t>((count + by - 1) / by);
}

}  // namespace

FileLayout planLayout(std::uint32_t dataSectors, std::size_t dirEntries) {
  FileLayout layout;
  layout.dataSectors = dataSectors;
  layout.dirSectors = dividedUp(dirEntries, kDirEntriesPerSector);
  const std::uint32_t forData = dividedUp(std::size_t{dataSectors} + layout.dirSectors, kFatEntriesPerSector);
  const std::uint32_t forFat = dividedUp(forData, kFatEntriesPerSector);
  layout.fatSectors = forData + forFat + static_cast<std::uint32_t>(forFat / kFatEntriesPerSector);
  if (forFat % kFatEntriesPerSector != 0) ++layout.fatSectors;
  if (forFat > kLargeFat) layout.fatSectors += kExtraSectors;
  if (layout.fatSectors > CompoundHeader::kDifatEntries) {
    layout.difatSectors = dividedUp(layout.fatSectors - CompoundHeader::kDifatEntries, kDifatEntriesPerSector);
  }
  return layout;
}

std::vector<std::uint32_t> buildFat(const FileLayout& layout) {
  std::vector<std::uint32_t> fat(layout.fatSectors * kFatEntriesPerSector, kFreeSector);
  std::size_t next = 0;
  const auto append = [&](std::uint32_t value) {
    if (next >= fat.size()) throw xlerror("Xls::close(): sector is out of fat");
    fat[next++] = value;
  };
  const auto appendChain = [&](std::uint32_t sectors) {
    for (std::uint32_t i = 0; i < sectors; ++i) {
      append(i + 1 == sectors ? kEndOfChain : static_cast<std::uint32_t>(next + 1));
    }
  };
  appendChain(layout.dataSectors);
  for (std::uint32_t i = 0; i < layout.difatSectors; ++i) append(kDifatSector);
  for (std::uint32_t i = 0; i < layout.fatSectors; ++i) append(kFatSector);
  appendChain(layout.dirSectors);
  return fat;
}

void cutChain(std::vector<std::uint32_t>& fat, std::uint32_t start, const char* text) {
  if (start == 0 || start > fat.size()) throw xlerror(text);
  fat[start - 1] = kEndOfChain;
}

std::vector<std::uint32_t> buildDifat(const FileLayout& layout, CompoundHeader& header) {
  std::vector<std::uint32_t> rest(layout.difatSectors * kDifatEntriesPerSector, kFreeSector);
  for (std::uint32_t i = 0; i < layout.fatSectors; ++i) {
    const std::uint32_t sector = layout.firstFatSector() + i;
    if (i < CompoundHeader::kDifatEntries) {
      header.difat[i] = sector;
    } else if (i - CompoundHeader::kDifatEntries < rest.size()) {
      rest[i - CompoundHeader::kDifatEntries] = sector;
    } else {
      throw xlerror("Xls::close(): difat index is out of range");
    }
  }
  return rest;
}

}  // namespace rubrica
