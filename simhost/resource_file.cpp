#include "simhost/resource_file.h"

#include <cstring>
#include <stdexcept>

#include "simhost/files.h"

namespace rubrica::simhost {

namespace {

constexpr std::string_view sectionName = ".tabulix_strings";
constexpr std::string_view sectionMagic = "TBXSTR01";

using Span = std::span<const std::uint8_t>;

// Little-endian numbers at checked offsets; a read outside of the data throws.
class Reader {
 public:
  explicit Reader(Span data) : _data(data) {}

  std::uint64_t number(std::uint64_t offset, std::size_t width) const {
    const Span bytes = part(offset, width);
    std::uint64_t value = 0;
    for (std::size_t i = width; i > 0; --i) value = value << 8u | bytes[i - 1];
    return value;
  }
  std::uint32_t number32(std::uint64_t offset) const { return static_cast<std::uint32_t>(number(offset, 4)); }

  Span part(std::uint64_t offset, std::uint64_t length) const {
    if (offset > _data.size() || length > _data.size() - offset) throw std::runtime_error("the file is cut short");
    return _data.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
  }

 private:
  Span _data;
};

// Offsets of the fields of the ELF header and of a section header, by the width of the file's addresses.
struct ElfLayout {
  std::size_t word;             // width of addresses and offsets
  std::uint64_t sectionTable;   // e_shoff
  std::uint64_t entrySize;      // e_shentsize
  std::uint64_t sectionOffset;  // sh_offset
  std::uint64_t sectionSize;    // sh_size
  std::uint64_t leastEntry;     // bytes of a section header
};
constexpr ElfLayout elf32 = {4, 32, 46, 16, 20, 40};
constexpr ElfLayout elf64 = {8, 40, 58, 24, 32, 64};
constexpr std::uint8_t littleEndian = 1;

struct Section {
  std::uint32_t name;
  Span content;
};

class ElfFile {
 public:
  explicit ElfFile(Span file) : _reader(file) {
    constexpr std::string_view magic =
        "\x7F"
        "ELF";
    if (file.size() < 16 || std::memcmp(file.data(), magic.data(), magic.size()) != 0) {
      throw std::runtime_error("it is not an ELF file");
    }
    if (file[4] != 1 && file[4] != 2) throw std::runtime_error("its ELF class is unknown");
    if (file[5] != littleEndian) throw std::runtime_error("it is not a little-endian file");
    _layout = file[4] == 1 ? elf32 : elf64;
    _table = _reader.number(_layout.sectionTable, _layout.word);
    _entrySize = _reader.number(_layout.entrySize, 2);
    _count = _reader.number(_layout.entrySize + 2, 2);
    _names = _reader.number(_layout.entrySize + 4, 2);
    if (_count > 0 && _entrySize < _layout.leastEntry) throw std::runtime_error("its section headers are too small");
  }

  Span section(std::string_view name) const {
    if (_names >= _count) throw std::runtime_error("it has no section names");
    const Span names = entry(_names).content;
    for (std::uint64_t i = 0; i < _count; ++i) {
      const std::uint32_t at = nameOf(i);
      if (at > names.size() || names.size() - at < name.size() + 1) continue;
      const char* text = reinterpret_cast<const char*>(names.data()) + at;
      if (std::string_view(text, name.size()) == name && text[name.size()] == '\0') return entry(i).content;
    }
    throw std::runtime_error("it has no section " + std::string(name));
  }

 private:
  std::uint64_t entryAt(std::uint64_t index) const { return _table + index * _entrySize; }
  std::uint32_t nameOf(std::uint64_t index) const { return _reader.number32(entryAt(index)); }
  Section entry(std::uint64_t index) const {
    const std::uint64_t at = entryAt(index);
    const std::uint64_t offset = _reader.number(at + _layout.sectionOffset, _layout.word);
    const std::uint64_t size = _reader.number(at + _layout.sectionSize, _layout.word);
    return {_reader.number32(at), _reader.part(offset, size)};
  }

  Reader _reader;
  ElfLayout _layout{};
  std::uint64_t _table = 0;
  std::uint64_t _entrySize = 0;
  std::uint64_t _count = 0;
  std::uint64_t _names = 0;
};

}  // namespace

StringResources StringResources::fromSection(Span section) {
  constexpr std::uint64_t headerSize = 16;
  constexpr std::uint64_t entrySize = 12;
  const Reader reader(section);
  const Span magic = reader.part(0, sectionMagic.size());
  if (std::memcmp(magic.data(), sectionMagic.data(), sectionMagic.size()) != 0) {
    throw std::runtime_error("its string resources begin with unknown bytes");
  }
  const std::uint64_t count = reader.number32(8);
  const Span entries = reader.part(headerSize, count * entrySize);
  const Reader texts(reader.part(headerSize + entries.size(), reader.number32(12)));
  StringResources resources;
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint64_t at = headerSize + i * entrySize;
    const Span text = texts.part(reader.number32(at + 4), reader.number32(at + 8));
    resources._texts.insert_or_assign(reader.number32(at),
                                      textFromUtf8({reinterpret_cast<const char*>(text.data()), text.size()}));
  }
  return resources;
}

StringResources StringResources::fromElf(Span file) {
  return fromSection(ElfFile(file).section(sectionName));
}

StringResources StringResources::fromModule(const std::string& path) {
  Bytes file;
  const int error = readFile(path, file);
  if (error != 0) throw std::runtime_error(path + ": " + std::strerror(error));
  try {
    return fromElf(file);
  } catch (const std::runtime_error& failure) {
    throw std::runtime_error(path + " holds no string resources: " + failure.what());
  }
}

const Text& StringResources::text(std::uint32_t id) const {
  static const Text none;
  const auto found = _texts.find(id);
  return found == _texts.end() ? none : found->second;
}

}  // namespace rubrica::simhost
