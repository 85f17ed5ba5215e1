#include "compound/stream_runs.h"

#include <algorithm>
#include <cstddef>

#include "engine/xlerror.h"

namespace rubrica {

namespace {

// Appends `size` bytes at `offset` of the file, as far as the file reaches. False where it doesn't hold them all.
bool appendPiece(StreamRuns& runs, std::uint64_t offset, std::uint64_t size, std::uint64_t fileSize) {
  if (offset >= fileSize) return false;
  const std::uint64_t present = std::min(size, fileSize - offset);
  if (!runs.empty() && runs.back().fileOffset + runs.back().length == offset) {
    runs.back().length += present;
  } else {
    const std::uint64_t before = runs.empty() ? 0 : runs.back().streamOffset + runs.back().length;
    runs.push_back({offset, before, present});
  }
  return present == size;
}

// No chain without a circle has more links than its table has entries, nor more sectors than the file.
std::size_t longestChain(const std::vector<std::uint32_t>& table, std::uint64_t fileSize, std::uint32_t sectorSize) {
  return static_cast<std::size_t>(std::min<std::uint64_t>(table.size(), fileSize / sectorSize + 1));
}

StreamRuns runsOfChain(const SectorTables& tables, std::uint32_t sector) {
  StreamRuns runs;
  std::size_t left = longestChain(tables.fat, tables.file.size(), tables.sectorSize);
  for (; sector < tables.fat.size() && left != 0; --left) {
    const std::uint64_t offset = (std::uint64_t{sector} + 1) * tables.sectorSize;
    if (!appendPiece(runs, offset, tables.sectorSize, tables.file.size())) break;
    sector = tables.fat[sector];
  }
  return runs;
}

std::vector<std::uint32_t> miniStreamSectors(const SectorTables& tables) {
  if (tables.dir.empty()) throw xlerror("Xls::goMiniSector(): _dir is empty");
  std::vector<std::uint32_t> sectors;
  const std::size_t most = longestChain(tables.fat, tables.file.size(), tables.sectorSize);
  std::uint32_t sector = tables.dir.front().startingSectorLocation;
  while (sector < tables.fat.size() && sectors.size() < most) {
    sectors.push_back(sector);
    sector = tables.fat[sector];
  }
  return sectors;
}

StreamRuns runsOfMiniChain(const SectorTables& tables, std::uint32_t miniSector) {
  StreamRuns runs;
  const std::vector<std::uint32_t> sectors = miniStreamSectors(tables);
  const std::uint32_t perSector = tables.sectorSize / tables.miniSectorSize;
  if (perSector == 0) return runs;
  std::size_t left = longestChain(tables.miniFat, tables.file.size(), tables.miniSectorSize);
  for (; miniSector < tables.miniFat.size() && left != 0; --left) {
    const std::uint32_t index = miniSector / perSector;
    if (index >= sectors.size()) break;
    const std::uint64_t offset = (std::uint64_t{sectors[index]} + 1) * tables.sectorSize +
                                 std::uint64_t{miniSector % perSector} * tables.miniSectorSize;
    if (!appendPiece(runs, offset, tables.miniSectorSize, tables.file.size())) break;
    miniSector = tables.miniFat[miniSector];
  }
  return runs;
}

bool isMarked(std::uint32_t fatEntry) {
  return fatEntry == kFatSector || fatEntry == kFreeSector || fatEntry == kEndOfChain;
}

}  // namespace

StreamRuns runsOfStream(const SectorTables& tables, const DirEntry& entry) {
  std::uint32_t sector = entry.startingSectorLocation;
  if (sector == kEndOfChain) throw xlerror("Xls::read(): stream is empty");
  if (entry.streamSize < kMiniStreamCutoff) return runsOfMiniChain(tables, sector);
  // Some files give the place of a FAT or unused sector as the start of their stream, which then begins at the next
  // sector that is chained to another.
  while (sector < tables.fat.size() && isMarked(tables.fat[sector])) ++sector;
  if (sector >= tables.fat.size()) throw xlerror("Xls::read(): sector is out of fat");
  return runsOfChain(tables, sector);
}

StreamRuns runsOfMiniStream(const SectorTables& tables) {
  if (tables.dir.empty()) throw xlerror("Xls::goMiniSector(): _dir is empty");
  return runsOfChain(tables, tables.dir.front().startingSectorLocation);
}

}  // namespace rubrica
