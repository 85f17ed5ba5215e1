// The workbook stream of an .xls file as a list of raw records, read without the book above it. What is wrong with the
// list is told in words and not thrown, so that a damaged file can be looked at as far as it goes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "compound/dir_entry.h"

namespace rubrica::tools {

struct RawStreamRecord {
  std::uint64_t offset = 0;  // of its header in the workbook stream
  std::uint16_t recordId = 0;
  std::uint16_t statedSize = 0;
  int substream = 0;  // 0 the globals, 1 the first sheet and so on; -1 outside all of them
  int depth = 0;      // 1 in the substream itself, more within one nested in it, such as an embedded chart
  std::span<const std::byte> body;  // within the stream's bytes; shorter than stated where the stream ends

  std::uint16_t word(std::size_t at) const;  // little-endian; 0 past the end
  std::uint32_t doubleWord(std::size_t at) const;
};

struct RecordStream {
  std::vector<std::byte> bytes;
  std::vector<RawStreamRecord> records;
  std::vector<DirEntry> directory;
  std::vector<std::string> damage;
  bool opened = false;  // false: no compound file with a workbook in it; the reason is the only damage
};

RecordStream readRecordStream(std::span<const std::byte> file);

}  // namespace rubrica::tools
