#include "simhost/resource_file.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "simhost/value.h"

namespace rubrica::simhost::test {
namespace {

void put(Bytes& bytes, std::uint64_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void put(Bytes& bytes, std::string_view text) {
  bytes.insert(bytes.end(), text.begin(), text.end());
}

void setNumber(Bytes& bytes, std::size_t at, std::uint64_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

// The worked example of docs/formats/resources.md.
Bytes oneString() {
  Bytes section;
  put(section, "TBXSTR01");
  put(section, 1, 4);
  put(section, 7, 4);
  put(section, 1000, 4);
  put(section, 0, 4);
  put(section, 7, 4);
  put(section, "Tabulix");
  return section;
}

// An ELF file of nothing but a header, the section, the section names and three section headers.
Bytes elfWith(const Bytes& section, bool wide) {
  const std::size_t word = wide ? 8 : 4;
  const std::size_t headerSize = wide ? 64 : 52;
  const std::size_t entrySize = wide ? 64 : 40;
  Bytes file(headerSize, 0);
  put(file, std::string_view(reinterpret_cast<const char*>(section.data()), section.size()));
  const std::size_t names = file.size();
  constexpr std::string_view namesText("\0.tabulix_strings\0.shstrtab\0", 28);
  put(file, namesText);
  const std::size_t table = file.size();
  const auto header = [&](std::uint32_t name, std::size_t offset, std::size_t size) {
    const std::size_t start = file.size();
    file.resize(start + entrySize, 0);
    setNumber(file, start, name, 4);
    setNumber(file, start + (wide ? 24 : 16), offset, word);
    setNumber(file, start + (wide ? 32 : 20), size, word);
  };
  header(0, 0, 0);
  header(1, headerSize, section.size());
  header(18, names, namesText.size());
  const Bytes magic = {0x7F, 'E', 'L', 'F', static_cast<std::uint8_t>(wide ? 2 : 1), 1, 1};
  std::copy(magic.begin(), magic.end(), file.begin());
  setNumber(file, wide ? 40 : 32, table, word);
  setNumber(file, wide ? 58 : 46, entrySize, 2);
  setNumber(file, wide ? 60 : 48, 3, 2);
  setNumber(file, wide ? 62 : 50, 2, 2);
  return file;
}

std::string failure(const Bytes& file) {
  try {
    StringResources::fromElf(file);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(StringResources, ReadTheWorkedExample) {
  const StringResources resources = StringResources::fromSection(oneString());
  EXPECT_EQ(resources.size(), 1u);
  EXPECT_EQ(resources.text(1000), U"Tabulix");
  EXPECT_EQ(resources.text(1001), U"");
}

TEST(StringResources, PaddingAfterTheTextsIsIgnored) {
  Bytes section = oneString();
  section.resize(section.size() + 9, 0xAA);
  EXPECT_EQ(StringResources::fromSection(section).text(1000), U"Tabulix");
}

TEST(StringResources, AreFoundInFilesOfBothWidths) {
  EXPECT_EQ(StringResources::fromElf(elfWith(oneString(), true)).text(1000), U"Tabulix");
  EXPECT_EQ(StringResources::fromElf(elfWith(oneString(), false)).text(1000), U"Tabulix");
}

TEST(StringResources, CountsThatLieBeyondTheFileAreRefused) {
  Bytes section = oneString();
  setNumber(section, 8, 0xFFFFFFFF, 4);
  EXPECT_THROW(StringResources::fromSection(section), std::runtime_error);
  section = oneString();
  setNumber(section, 12, 8, 4);
  EXPECT_THROW(StringResources::fromSection(section), std::runtime_error);
  section = oneString();
  setNumber(section, 20, 0xFFFFFFFF, 4);
  EXPECT_THROW(StringResources::fromSection(section), std::runtime_error);
  section = oneString();
  setNumber(section, 24, 8, 4);
  EXPECT_THROW(StringResources::fromSection(section), std::runtime_error);
  section = oneString();
  section[0] = 'X';
  EXPECT_THROW(StringResources::fromSection(section), std::runtime_error);
}

TEST(StringResources, EveryPrefixAndEveryChangedByteEndsInResourcesOrInAMessage) {
  for (const bool wide : {false, true}) {
    const Bytes good = elfWith(oneString(), wide);
    // The last fields of the last section header mean nothing here.
    const std::size_t needed = good.size() - (wide ? 24 : 16);
    for (std::size_t length = 0; length < needed; ++length) {
      EXPECT_FALSE(failure(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length))).empty()) << length;
    }
    std::size_t refused = 0;
    for (std::size_t at = 0; at < good.size(); ++at) {
      for (const std::uint8_t byte : Bytes{0x00, 0x7F, 0xFF}) {
        Bytes changed = good;
        changed[at] = byte;
        refused += failure(changed).empty() ? 0 : 1;
      }
    }
    EXPECT_GT(refused, 50u);
  }
}

TEST(StringResources, AFileThatIsNoModuleIsNamedInTheMessage) {
  EXPECT_EQ(failure(Bytes(100, 'x')), "it is not an ELF file");
  EXPECT_EQ(failure(elfWith(Bytes(), true)), "the file is cut short");
  try {
    StringResources::fromModule("/nonexistent/module.so");
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "/nonexistent/module.so: No such file or directory");
  }
}

}  // namespace
}  // namespace rubrica::simhost::test
