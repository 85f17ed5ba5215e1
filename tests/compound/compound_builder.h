// Makes compound files for the tests, through the writer or by hand, and changes single fields of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "compound/dir_entry.h"
#include "compound/field_io.h"
#include "compound/xls.h"
#include "engine/xlerror.h"

namespace rubrica::compound_test {

using Bytes = std::vector<std::byte>;

// `size` bytes that differ from place to place, so that a piece read from a wrong place is seen.
inline Bytes pattern(std::size_t size, std::uint32_t seed = 1) {
  Bytes bytes(size);
  std::uint32_t state = seed * 2654435761U + 1;
  for (std::byte& b : bytes) {
    state = state * 1664525U + 1013904223U;
    b = static_cast<std::byte>(state >> 24);
  }
  return bytes;
}

// A file of our own writer whose main stream holds `content`.
inline Bytes writtenFile(const Bytes& content) {
  Xls xls;
  platform::MemoryOutput output;
  xls.reset(true);
  xls.attach(output);
  xls.start();
  xls.write(content.data(), content.size());
  xls.close();
  return output.release();
}

// Loads a file as a book does and saves it again with `content` as the main stream.
inline Bytes resavedFile(const Bytes& file, const Bytes& content) {
  Xls xls;
  xls.read(file);
  xls.captureOtherStreams();
  platform::MemoryOutput output;
  xls.reset(false);
  xls.attach(output);
  xls.start();
  xls.write(content.data(), content.size());
  xls.close();
  return output.release();
}

// All bytes from the cursor to the end of the main stream.
inline Bytes readAll(Xls& xls) {
  Bytes bytes;
  Bytes part(1000);
  while (!xls.isEnd()) {
    const std::size_t got = xls.read(part.data(), part.size());
    bytes.insert(bytes.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(got));
  }
  return bytes;
}

inline std::string messageOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const xlerror& error) {
    return error.what();
  }
  return "no failure";
}

inline std::string readMessage(const Bytes& file) {
  return messageOf([&] {
    Xls xls;
    xls.read(file);
  });
}

template <typename T>
void put(Bytes& bytes, std::size_t offset, T value) {
  storeLittle(bytes.data() + offset, value);
}

template <typename T>
T get(const Bytes& bytes, std::size_t offset) {
  return loadLittle<T>(bytes.data() + offset);
}

// Offsets of header fields.
inline constexpr std::size_t kSectorShiftAt = 30;
inline constexpr std::size_t kMiniSectorShiftAt = 32;
inline constexpr std::size_t kNumFatSectorsAt = 44;
inline constexpr std::size_t kDirectoryAt = 48;
inline constexpr std::size_t kMiniStreamCutoffAt = 56;
inline constexpr std::size_t kMiniFatAt = 60;
inline constexpr std::size_t kNumMiniFatSectorsAt = 64;
inline constexpr std::size_t kDifatAt = 68;
inline constexpr std::size_t kNumDifatSectorsAt = 72;
inline constexpr std::size_t kDifatEntriesAt = 76;
// Offsets of a directory entry's fields.
inline constexpr std::size_t kEntryTypeAt = 66;
inline constexpr std::size_t kEntryStartAt = 116;
inline constexpr std::size_t kEntrySizeAt = 120;

inline std::size_t sectorSizeOf(const Bytes& file) {
  return std::size_t{1} << get<std::uint16_t>(file, kSectorShiftAt);
}

// Where in the file a sector, a FAT entry of the first FAT sector, or an entry of the first directory sector stands.
inline std::size_t sectorAt(const Bytes& file, std::uint32_t sector) {
  return (sector + 1) * sectorSizeOf(file);
}
inline std::size_t fatEntryAt(const Bytes& file, std::uint32_t sector) {
  return sectorAt(file, get<std::uint32_t>(file, kDifatEntriesAt)) + sector * sizeof(std::uint32_t);
}
inline std::size_t dirEntryAt(const Bytes& file, std::uint32_t entry) {
  return sectorAt(file, get<std::uint32_t>(file, kDirectoryAt)) + entry * DirEntry::kDiskSize;
}

struct TestStream {
  std::u16string name;
  Bytes bytes;
};

struct TestFileForm {
  std::uint16_t sectorShift = 9;
  bool reversed = false;  // the sectors of large streams stand in the file from last to first
  std::u16string rootName = u"Root Entry";
};

// A file as other programs make them: streams under 4096 bytes in the mini stream, the others in sectors.
Bytes makeFile(const std::vector<TestStream>& streams, const TestFileForm& form = {});

}  // namespace rubrica::compound_test
