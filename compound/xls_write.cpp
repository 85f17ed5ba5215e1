// The writing side of Xls: the main stream as it comes, and close(), which lays out the rest of the file behind it.
#include <algorithm>
#include <array>
#include <limits>

#include "compound/file_layout.h"
#include "compound/record_ids.h"
#include "compound/xls.h"
#include "engine/xlerror.h"

namespace rubrica {

namespace {

std::uint32_t sectorsOf(std::uint64_t bytes) {
  return static_cast<std::uint32_t>((bytes + kWrittenSectorSize - 1) / kWrittenSectorSize);
}

}  // namespace

void Xls::attach(platform::OutputStream& output) {
  _out.attach(&output, kWrittenSectorSize);
}

void Xls::start() {
  platform::OutputStream* output = _out.output();
  static constexpr std::array<std::byte, kWrittenSectorSize> kRoom{};
  if (output == nullptr || !output->seek(0) || !output->write(kRoom.data(), kRoom.size()))
    throw xlerror("stream error");
  _out.attach(output, kWrittenSectorSize);
}

void Xls::writeHeader(std::uint16_t id, std::uint16_t size) {
  writeNumber(static_cast<std::uint32_t>(id | static_cast<std::uint32_t>(size) << 16));
}

void Xls::writeRecord(std::uint16_t id, const void* data, std::uint16_t size) {
  writeHeader(id, size);
  write(data, size);
}

void Xls::writeWithContinueRecords(const void* data, std::size_t size, std::uint16_t& room, std::size_t left) {
  const auto* bytes = static_cast<const std::byte*>(data);
  left = std::max(left, size);
  while (size != 0) {
    if (room == 0) {
      room = static_cast<std::uint16_t>(std::min<std::size_t>(left, kMaxRecordSize));
      writeHeader(kContinueId, room);
    }
    const std::size_t part = std::min<std::size_t>(size, room);
    write(bytes, part);
    bytes += part;
    size -= part;
    left -= part;
    room = static_cast<std::uint16_t>(room - part);
  }
}

std::uint32_t Xls::tell() {
  const std::uint64_t position = _out.position() - kWrittenSectorSize;
  const bool known = _out.output() != nullptr && _out.output()->tell() >= 0;
  if (!known || position > std::numeric_limits<std::uint32_t>::max()) {
    throw xlerror("can't get the current write position");
  }
  return static_cast<std::uint32_t>(position);
}

void Xls::seekTo(std::uint32_t position) {
  _out.seek(kWrittenSectorSize + std::uint64_t{position});
}

// Fills up the last sector of `count` bytes just written; returns the number of sectors that they take.
std::uint32_t Xls::padSector(std::uint64_t count) {
  const std::uint32_t sectors = sectorsOf(count);
  _out.writeZeros(std::uint64_t{sectors} * kWrittenSectorSize - count);
  return sectors;
}

std::uint32_t Xls::writeMainStream() {
  DirEntry& entry = _tables.dir[_mainEntry];
  std::uint64_t written = _out.end() - kWrittenSectorSize;
  _out.seek(_out.end());
  if (written == 0) {
    entry.startingSectorLocation = kEndOfChain;
    entry.streamSize = 0;
    return 0;
  }
  if (written < kMiniStreamCutoff) {
    // We write no mini stream, so the stream grows to the least size that may stand outside it.
    _out.writeZeros(kMiniStreamCutoff - written);
    written = kMiniStreamCutoff;
  }
  entry.startingSectorLocation = 0;
  entry.streamSize = written;
  return padSector(written);
}

std::uint32_t Xls::writeCarriedStreams(std::uint32_t sectors) {
  for (const auto& [key, bytes] : _streams) {
    DirEntry& entry = _tables.dir[key.second];
    entry.startingSectorLocation = sectors;
    entry.streamSize = bytes.size();
    write(bytes.data(), bytes.size());
    sectors += padSector(bytes.size());
  }
  return sectors;
}

std::uint32_t Xls::writeMiniFat() {
  writeTable(_tables.miniFat);
  return padSector(_tables.miniFat.size() * sizeof(std::uint32_t));
}

// A stream whose bytes are not in the new file is left as an empty one. Those of the mini stream are there where the
// root's bytes and the mini FAT are; a mini FAT without the root's bytes leads nowhere.
void Xls::emptyLostEntries() {
  if (!_streams.contains({_tables.dir[0].nameText(), 0})) _tables.miniFat.clear();
  const bool hasMiniStream = !_tables.miniFat.empty();
  for (std::size_t i = 0; i < _tables.dir.size(); ++i) {
    DirEntry& entry = _tables.dir[i];
    const auto type = static_cast<EntryType>(entry.objectType);
    if (i == _mainEntry || type == EntryType::empty || type == EntryType::storage) continue;
    if (_streams.contains({entry.nameText(), i})) continue;
    if (hasMiniStream && type == EntryType::stream && entry.streamSize < kMiniStreamCutoff) continue;
    entry.startingSectorLocation = kEndOfChain;
    entry.streamSize = 0;
  }
}

void Xls::cutStreams(std::vector<std::uint32_t>& fat, const CompoundHeader& header) const {
  if (header.numMiniFatSectors != 0) {
    cutChain(fat, header.miniFatSectorLocation, "miniFatSectorLocation is out of range");
  }
  for (const auto& [key, bytes] : _streams) {
    cutChain(fat, _tables.dir[key.second].startingSectorLocation, "startingSectorLocation is out of range");
  }
}

void Xls::writeTable(const std::vector<std::uint32_t>& entries) {
  for (const std::uint32_t entry : entries) writeInt32(entry);
}

void Xls::writeDifat(const std::vector<std::uint32_t>& entries, std::uint32_t firstSector) {
  std::uint32_t sector = firstSector;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    writeInt32(entries[i]);
    if ((i + 1) % kDifatEntriesPerSector != 0) continue;
    ++sector;
    writeInt32(i + 1 == entries.size() ? kEndOfChain : sector);
  }
}

void Xls::writeDirectory() {
  for (const DirEntry& entry : _tables.dir) {
    std::array<std::byte, DirEntry::kDiskSize> bytes;
    entry.store(bytes.data());
    write(bytes.data(), bytes.size());
  }
  padSector(_tables.dir.size() * DirEntry::kDiskSize);
}

void Xls::close() {
  CompoundHeader header;
  emptyLostEntries();
  std::uint32_t sectors = writeCarriedStreams(writeMainStream());
  if (!_tables.miniFat.empty()) {
    header.miniFatSectorLocation = sectors;
    header.numMiniFatSectors = writeMiniFat();
    sectors += header.numMiniFatSectors;
  }

  const FileLayout layout = planLayout(sectors, _tables.dir.size());
  header.numFatSectors = layout.fatSectors;
  header.numDifatSectors = layout.difatSectors;
  header.directorySectorLocation = layout.firstDirSector();
  std::vector<std::uint32_t> fat = buildFat(layout);
  cutStreams(fat, header);
  const std::vector<std::uint32_t> difat = buildDifat(layout, header);
  if (layout.difatSectors != 0) header.difatSectorLocation = sectors;
  writeDifat(difat, sectors);
  writeTable(fat);
  writeDirectory();

  _fileSize = _out.end();
  _out.seek(0);
  const auto bytes = header.store();
  write(bytes.data(), bytes.size());
  _out.flush();
}

}  // namespace rubrica
