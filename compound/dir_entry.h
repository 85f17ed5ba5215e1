// One entry of a compound file's directory: a stream or storage, its name, its place in the tree of names and where
// its bytes begin. Entries are values; Xls keeps them in file order and never walks the tree.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace rubrica {

enum class EntryType : std::uint8_t { empty = 0, storage = 1, stream = 2, root = 5 };

struct DirEntry {
  static constexpr std::size_t kDiskSize = 128;
  static constexpr std::size_t kMaxNameLength = 31;  // characters, without the terminator
  static constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;

  // An unused entry: all fields zero.
  DirEntry() = default;
  // Throws xlerror "DirEntry::DirEntry(): incorrect name" where the name is null, empty or longer than 31 characters.
  DirEntry(const char16_t* entryName, EntryType type, std::uint32_t childEntry);

  // An entry of 128 bytes as the file has it. The high half of the stream size is dropped: a stream of 4 GiB or more
  // can't be read.
  static DirEntry load(const std::byte* from);
  void store(std::byte* to) const;

  std::u16string nameText() const;
  // Whether the name is `text`, the case of the letters A to Z ignored.
  bool isNamed(std::u16string_view text) const;

  std::array<std::uint16_t, 32> name{};
  std::uint16_t nameLength = 0;  // bytes, with the terminator
  std::uint8_t objectType = 0;   // EntryType
  std::uint8_t color = 0;        // of the red-black tree: 0 red, 1 black
  std::uint32_t leftSibling = 0;
  std::uint32_t rightSibling = 0;
  std::uint32_t child = 0;
  std::array<std::uint8_t, 16> classId{};
  std::uint32_t stateBits = 0;
  std::uint64_t creationTime = 0;
  std::uint64_t modifiedTime = 0;
  std::uint32_t startingSectorLocation = 0;
  std::uint64_t streamSize = 0;  // bytes
};

}  // namespace rubrica
