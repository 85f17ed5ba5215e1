#include "compound/sector_tables.h"

#include <algorithm>
#include <string>

#include "compound/field_io.h"
#include "engine/xlerror.h"

namespace rubrica {

namespace {

constexpr std::size_t kEntrySize = sizeof(std::uint32_t);

// Entries of a FAT-like sector. Those that a cut last sector no longer holds are free.
void appendEntries(std::vector<std::uint32_t>& to, std::span<const std::byte> from, std::size_t count) {
  const std::size_t before = to.size();
  const std::size_t present = std::min(count, from.size() / kEntrySize);
  to.resize(before + count, kFreeSector);
  for (std::size_t i = 0; i < present; ++i) to[before + i] = loadLittle<std::uint32_t>(from.data() + i * kEntrySize);
}

std::string mismatch(const char* before, std::size_t count, const char* between, std::uint32_t stated) {
  return before + std::to_string(count) + between + std::to_string(stated) + ")";
}

}  // namespace

void SectorTables::load(std::span<const std::byte> bytes) {
  *this = SectorTables();
  file = bytes;
  header = CompoundHeader::load(file);
  _consumed = CompoundHeader::kDiskSize;
  sectorSize = header.sectorSize("Xls::readHeader()");
  miniSectorSize = header.miniSectorSize("Xls::readHeader()");
  loadDifat();
  loadFat();
  loadMiniFat();
  loadDir();
}

void SectorTables::consume(std::uint64_t size, const char* text) {
  _consumed += size;
  if (_consumed > file.size()) throw xlerror(text);
}

std::span<const std::byte> SectorTables::sectorBytes(std::uint32_t sector) const {
  const std::uint64_t offset = (std::uint64_t{sector} + 1) * sectorSize;
  if (offset >= file.size()) return {};
  const auto start = static_cast<std::size_t>(offset);
  return file.subspan(start, std::min<std::size_t>(sectorSize, file.size() - start));
}

void SectorTables::loadDifat() {
  // The last word of a DIFAT sector is the number of the next one.
  const std::size_t perSector = sectorSize >= kEntrySize ? sectorSize / kEntrySize - 1 : 0;
  difat.assign(header.difat.begin(), header.difat.end());

  std::uint32_t count = 0;
  std::uint32_t sector = header.difatSectorLocation;
  while (sector != kEndOfChain && sector != kFreeSector) {
    if (count >= header.numDifatSectors) {
      throw xlerror("Xls::loadDifat(): difat chain contains more sectors than _header.numDifatSectors (" +
                    std::to_string(header.numDifatSectors) + ")");
    }
    consume(perSector * kEntrySize, "loadDifat: file is corrupt [1]");
    consume(kEntrySize, "loadDifat: file is corrupt [2]");
    const std::span<const std::byte> bytes = sectorBytes(sector);
    if (bytes.size() < perSector * kEntrySize) throw xlerror("loadDifat: file is corrupt [1]");
    if (bytes.size() < (perSector + 1) * kEntrySize) throw xlerror("loadDifat: file is corrupt [2]");
    appendEntries(difat, bytes, perSector);
    sector = loadLittle<std::uint32_t>(bytes.data() + perSector * kEntrySize);
    ++count;
  }
  if (count != header.numDifatSectors) {
    throw xlerror(mismatch("Xls::loadDifat(): difat chain sectors (", count, ") not equal _header.numDifatSectors (",
                           header.numDifatSectors));
  }
}

void SectorTables::loadFat() {
  const auto isUsed = [](std::uint32_t entry) { return entry < kFreeSector; };
  const auto count = static_cast<std::size_t>(std::count_if(difat.begin(), difat.end(), isUsed));
  if (count != header.numFatSectors) {
    throw xlerror(mismatch("Xls::loadFat(): extract fat sectors (", count, ") not equal _header.numFatSectors (",
                           header.numFatSectors));
  }
  const std::size_t perSector = sectorSize / kEntrySize;
  if (count != 0 && perSector == 0) throw xlerror("Xls::loadFat(): index is out of range of _fat");
  if (count > file.size() / sectorSize) throw xlerror("loadFat: file is corrupt");
  fat.reserve(count * perSector);
  for (const std::uint32_t sector : difat) {
    if (!isUsed(sector)) continue;
    consume(sectorSize, "loadFat: file is corrupt");
    const std::span<const std::byte> bytes = sectorBytes(sector);
    if (bytes.empty()) throw xlerror("loadFat: file is corrupt");
    appendEntries(fat, bytes, perSector);
  }
}

void SectorTables::loadMiniFat() {
  if (header.numMiniFatSectors == 0) return;
  const std::size_t perSector = sectorSize / kEntrySize;
  std::uint32_t count = 0;
  for (std::uint32_t sector = header.miniFatSectorLocation; sector != kEndOfChain;) {
    if (count == header.numMiniFatSectors) throw xlerror("error in loading minifat");
    consume(sectorSize, "loadMiniFat: file is corrupt");
    const std::span<const std::byte> bytes = sectorBytes(sector);
    if (sector >= fat.size() || bytes.empty()) throw xlerror("Xls::loadMiniFat(): file is corrupt");
    appendEntries(miniFat, bytes, perSector);
    ++count;
    if (fat[sector] == sector) throw xlerror("loadMiniFat: error in fat");
    sector = fat[sector];
  }
}

std::vector<std::uint32_t> SectorTables::directoryChain() const {
  std::vector<std::uint32_t> chain;
  for (std::uint32_t sector = header.directorySectorLocation; sector != kEndOfChain;) {
    if (sector >= fat.size()) {
      throw xlerror("Xls::loadDir(): sector #" + std::to_string(sector) + " is not found in _fat");
    }
    chain.push_back(sector);
    if (chain.size() * sectorSize > file.size()) throw xlerror("loadDir: file is corrupt [1]");
    if (fat[sector] == sector) throw xlerror("loadDir: error in fat [1]");
    sector = fat[sector];
  }
  return chain;
}

void SectorTables::loadDir() {
  const std::vector<std::uint32_t> chain = directoryChain();
  const std::size_t perSector = sectorSize / DirEntry::kDiskSize;
  if (!chain.empty() && perSector == 0) throw xlerror("Xls::loadDir(): unexpected DirEntry found");
  dir.reserve(chain.size() * perSector);
  for (const std::uint32_t sector : chain) {
    consume(sectorSize, "loadDir: file is corrupt [2]");
    const std::span<const std::byte> bytes = sectorBytes(sector);
    if (bytes.empty()) throw xlerror("Xls::loadDir(): file is corrupt");
    for (std::size_t at = 0; at < perSector * DirEntry::kDiskSize; at += DirEntry::kDiskSize) {
      const bool whole = at + DirEntry::kDiskSize <= bytes.size();
      dir.push_back(whole ? DirEntry::load(bytes.data() + at) : DirEntry());
    }
  }
}

std::optional<std::size_t> SectorTables::findEntry(std::u16string_view name) const {
  const auto found =
      std::find_if(dir.begin(), dir.end(), [name](const DirEntry& entry) { return entry.isNamed(name); });
  if (found == dir.end()) return std::nullopt;
  return static_cast<std::size_t>(found - dir.begin());
}

std::optional<std::size_t> SectorTables::findMainEntry() const {
  const std::optional<std::size_t> workbook = findEntry(u"Workbook");
  return workbook ? workbook : findEntry(u"Book");
}

}  // namespace rubrica
