#include "tests/compound/compound_builder.h"

#include <algorithm>

#include "compound/header.h"

namespace rubrica::compound_test {

namespace {

constexpr std::size_t kMiniSectorSize = 64;

// Sectors behind the header, with the FAT that chains them.
class SectorWriter {
 public:
  explicit SectorWriter(const TestFileForm& form)
      : _form(form), _sectorSize(std::size_t{1} << form.sectorShift), _data(_sectorSize) {}

  std::size_t sectorSize() const { return _sectorSize; }
  std::uint32_t next() const { return static_cast<std::uint32_t>(_fat.size()); }

  // The first sector of the chain that now holds `bytes`.
  std::uint32_t append(const Bytes& bytes, bool reversed = false) {
    const std::size_t count = (bytes.size() + _sectorSize - 1) / _sectorSize;
    if (count == 0) return kEndOfChain;
    const std::uint32_t base = next();
    const auto place = [&](std::size_t i) { return static_cast<std::uint32_t>(base + (reversed ? count - 1 - i : i)); };
    _fat.resize(base + count, kEndOfChain);
    _data.resize((base + count + 1) * _sectorSize);
    for (std::size_t i = 0; i < count; ++i) {
      if (i + 1 < count) _fat[place(i)] = place(i + 1);
      const std::size_t size = std::min(_sectorSize, bytes.size() - i * _sectorSize);
      std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(i * _sectorSize), size,
                  _data.begin() + static_cast<std::ptrdiff_t>((place(i) + 1) * _sectorSize));
    }
    return place(0);
  }

  Bytes finish(CompoundHeader header) {
    const std::size_t perSector = _sectorSize / sizeof(std::uint32_t);
    std::size_t count = 1;
    while ((_fat.size() + count + perSector - 1) / perSector > count) ++count;
    const std::uint32_t first = next();
    _fat.resize(first + count, kFatSector);
    for (std::uint32_t i = 0; i < count; ++i) header.difat.at(i) = first + i;
    _fat.resize(count * perSector, kFreeSector);
    header.numFatSectors = static_cast<std::uint32_t>(count);
    header.sectorShift = _form.sectorShift;
    _data.resize((first + count + 1) * _sectorSize);
    for (std::size_t i = 0; i < _fat.size(); ++i) put(_data, (first + 1) * _sectorSize + i * sizeof _fat[i], _fat[i]);
    const auto bytes = header.store();
    std::copy(bytes.begin(), bytes.end(), _data.begin());
    return _data;
  }

 private:
  TestFileForm _form;
  std::size_t _sectorSize;
  Bytes _data;
  std::vector<std::uint32_t> _fat;
};

// Appends a small stream to the mini stream; returns its first mini sector.
std::uint32_t appendMini(const Bytes& bytes, Bytes& miniStream, std::vector<std::uint32_t>& miniFat) {
  const auto first = static_cast<std::uint32_t>(miniFat.size());
  miniStream.insert(miniStream.end(), bytes.begin(), bytes.end());
  miniStream.resize((miniStream.size() + kMiniSectorSize - 1) / kMiniSectorSize * kMiniSectorSize);
  while (miniFat.size() * kMiniSectorSize < miniStream.size()) {
    miniFat.push_back(static_cast<std::uint32_t>(miniFat.size() + 1));
  }
  miniFat.back() = kEndOfChain;
  return first;
}

}  // namespace

Bytes makeFile(const std::vector<TestStream>& streams, const TestFileForm& form) {
  SectorWriter sectors(form);
  CompoundHeader header;
  Bytes miniStream;
  std::vector<std::uint32_t> miniFat;
  std::vector<DirEntry> dir{DirEntry(form.rootName.c_str(), EntryType::root, 1)};
  for (const TestStream& stream : streams) {
    DirEntry entry(stream.name.c_str(), EntryType::stream, DirEntry::kNoEntry);
    // Siblings in a line to the right: the order of names is nobody's business here.
    if (dir.size() < streams.size()) entry.rightSibling = static_cast<std::uint32_t>(dir.size() + 1);
    entry.streamSize = stream.bytes.size();
    if (stream.bytes.size() >= kMiniStreamCutoff) {
      entry.startingSectorLocation = sectors.append(stream.bytes, form.reversed);
    } else if (!stream.bytes.empty()) {
      entry.startingSectorLocation = appendMini(stream.bytes, miniStream, miniFat);
    }
    dir.push_back(entry);
  }
  if (!miniFat.empty()) {
    dir[0].startingSectorLocation = sectors.append(miniStream, form.reversed);
    dir[0].streamSize = miniStream.size();
    miniFat.resize((miniFat.size() * 4 + sectors.sectorSize() - 1) / sectors.sectorSize() * sectors.sectorSize() / 4,
                   kFreeSector);
    Bytes table(miniFat.size() * 4);
    for (std::size_t i = 0; i < miniFat.size(); ++i) put(table, i * 4, miniFat[i]);
    header.miniFatSectorLocation = sectors.append(table);
    header.numMiniFatSectors = static_cast<std::uint32_t>(table.size() / sectors.sectorSize());
  }
  Bytes table(dir.size() * DirEntry::kDiskSize);
  for (std::size_t i = 0; i < dir.size(); ++i) dir[i].store(table.data() + i * DirEntry::kDiskSize);
  header.directorySectorLocation = sectors.append(table);
  return sectors.finish(header);
}

}  // namespace rubrica::compound_test
