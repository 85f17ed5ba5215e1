#include "tests/host/module_file.h"

#include <cstring>
#include <elf.h>
#include <stdexcept>

#include "host/text.h"
#include "tests/support/temporary_directory.h"

namespace rubrica::host::testing {
namespace {

class Elf {
 public:
  explicit Elf(const std::string& path) {
    _bytes = rubrica::test::readText(path);
    if (_bytes.size() < sizeof(Elf64_Ehdr)) throw std::runtime_error("no module file at " + path);
  }

  // The bytes of a section by name; empty when there is none.
  std::string section(const std::string& wanted) const {
    const auto header = at<Elf64_Ehdr>(0);
    const auto names = sectionHeader(header, header.e_shstrndx);
    for (unsigned i = 0; i < header.e_shnum; ++i) {
      const auto candidate = sectionHeader(header, i);
      if (wanted == _bytes.c_str() + names.sh_offset + candidate.sh_name) {
        return _bytes.substr(candidate.sh_offset, candidate.sh_size);
      }
    }
    return {};
  }

 private:
  template <class T>
  T at(std::size_t offset) const {
    T value;
    std::memcpy(&value, _bytes.substr(offset, sizeof(T)).data(), sizeof(T));
    return value;
  }
  Elf64_Shdr sectionHeader(const Elf64_Ehdr& header, unsigned index) const {
    return at<Elf64_Shdr>(header.e_shoff + std::size_t{index} * header.e_shentsize);
  }

  std::string _bytes;
};

std::uint32_t littleEndian(const std::string& bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
  return value;
}

}  // namespace

std::map<std::uint32_t, std::u32string> readStringResources(const std::string& modulePath) {
  constexpr std::size_t kHeader = 16, kEntry = 12;
  const std::string table = Elf(modulePath).section(".tabulix_strings");
  if (table.substr(0, 8) != "TBXSTR01") throw std::runtime_error("no string table in " + modulePath);
  const std::size_t count = littleEndian(table, 8), textBytes = littleEndian(table, 12);
  const std::string text = table.substr(kHeader + count * kEntry, textBytes);
  if (text.size() != textBytes) throw std::runtime_error("the string table is cut short");
  std::map<std::uint32_t, std::u32string> strings;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t entry = kHeader + i * kEntry;
    const std::uint32_t id = littleEndian(table, entry);
    if (!strings.empty() && id <= strings.rbegin()->first) throw std::runtime_error("the string ids don't ascend");
    strings[id] = utf32FromUtf8(text.substr(littleEndian(table, entry + 4), littleEndian(table, entry + 8)));
  }
  return strings;
}

std::vector<std::string> exportedSymbols(const std::string& modulePath) {
  const Elf elf(modulePath);
  const std::string symbols = elf.section(".dynsym"), names = elf.section(".dynstr");
  std::vector<std::string> result;
  for (std::size_t at = 0; at + sizeof(Elf64_Sym) <= symbols.size(); at += sizeof(Elf64_Sym)) {
    Elf64_Sym symbol;
    std::memcpy(&symbol, symbols.data() + at, sizeof symbol);
    const bool isLocal = ELF64_ST_BIND(symbol.st_info) == STB_LOCAL;
    if (symbol.st_shndx != SHN_UNDEF && !isLocal) result.emplace_back(names.c_str() + symbol.st_name);
  }
  return result;
}

}  // namespace rubrica::host::testing
