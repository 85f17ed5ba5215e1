#include "compound/xls.h"

#include <algorithm>
#include <array>

#include "compound/file_layout.h"
#include "engine/xlerror.h"

namespace rubrica {

namespace {

constexpr std::size_t kRootEntry = 0;
constexpr std::size_t kNewMainEntry = 1;
constexpr const char16_t* kRootName = u"Root Entry";

}  // namespace

Xls::Xls() {
  reset(true);
}

void Xls::reset(bool newDirectory) {
  _isEncryptionInfo = false;
  _cursor.clear();
  mark();
  _out.attach(nullptr, kWrittenSectorSize);
  _tables.file = {};
  _tables.header = CompoundHeader();
  _tables.sectorSize = _tables.header.sectorSize("Xls::reset()");
  _tables.difat.assign(_tables.header.difat.begin(), _tables.header.difat.end());
  _tables.fat.clear();

  const std::optional<std::size_t> main = newDirectory ? std::nullopt : _tables.findMainEntry();
  if (main) {
    _mainEntry = *main;
    // The mini FAT of other sizes than those we write would lead to other bytes.
    if (_tables.miniSectorSize != _tables.header.miniSectorSize("Xls::reset()")) _tables.miniFat.clear();
    return;
  }
  _tables.dir = {DirEntry(kRootName, EntryType::root, kNewMainEntry),
                 DirEntry(u"Workbook", EntryType::stream, DirEntry::kNoEntry)};
  _tables.miniFat.clear();
  _mainEntry = kNewMainEntry;
  _streams.clear();
}

void Xls::read(std::span<const std::byte> file) {
  reset(true);
  SectorTables tables;
  tables.load(file);
  std::optional<std::size_t> entry = tables.findMainEntry();
  const bool encrypted = !entry;
  if (encrypted) entry = tables.findEntry(u"EncryptionInfo");
  if (!entry) throw xlerror("Xls::read(): EncryptionInfo section is not found");
  _cursor.open(file, runsOfStream(tables, tables.dir[*entry]));
  _tables = std::move(tables);
  _mainEntry = *entry;
  _isEncryptionInfo = encrypted;
  _fileSize = file.size();
  mark();
}

void Xls::captureOtherStreams() {
  // However many entries share their sectors, all copies together stay within the size of the file.
  std::uint64_t allowed = _fileSize;
  const std::uint64_t cutoff = std::max(_tables.header.miniStreamCutoff, kMiniStreamCutoff);
  for (std::size_t i = 0; i < _tables.dir.size(); ++i) {
    const DirEntry& entry = _tables.dir[i];
    const bool isStream = entry.objectType != static_cast<std::uint8_t>(EntryType::empty) &&
                          entry.objectType != static_cast<std::uint8_t>(EntryType::storage);
    const bool hasBytes = entry.startingSectorLocation != kEndOfChain && entry.startingSectorLocation != kFreeSector &&
                          entry.streamSize != 0;
    const bool isRoot = i == kRootEntry && entry.isNamed(kRootName);
    if (i == _mainEntry || !isStream || !hasBytes || (entry.streamSize < cutoff && !isRoot)) continue;

    StreamCursor stream;
    stream.open(_tables.file, isRoot ? runsOfMiniStream(_tables) : runsOfStream(_tables, entry));
    const std::uint64_t present = std::min(entry.streamSize, stream.left());
    // One that is cut short is filled up, since below the cutoff it would be looked for in the mini stream.
    const std::uint64_t size = isRoot ? present : std::max<std::uint64_t>(present, kMiniStreamCutoff);
    if (present == 0 || size > allowed) continue;
    allowed -= size;
    std::vector<std::byte> bytes(static_cast<std::size_t>(size));
    stream.read(bytes.data(), static_cast<std::size_t>(present));
    _streams[{entry.nameText(), i}] = std::move(bytes);
  }
}

void Xls::mark(std::uint16_t word) {
  _marked = _cursor.place();
  _markedWord = word;
}

std::uint16_t Xls::rewind() {
  _cursor.goTo(_marked);
  return _markedWord;
}

}  // namespace rubrica
