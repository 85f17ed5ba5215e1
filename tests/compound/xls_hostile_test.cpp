#include <gtest/gtest.h>

#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

// Everything that a load and a save do with a file. Success or an xlerror; the test fails through any other exception,
// a crash or a sanitizer's report.
void loadAndSave(const Bytes& file, int& read, int& refused) {
  try {
    Xls xls;
    xls.read(file);
    const Bytes main = readAll(xls);
    xls.captureOtherStreams();
    platform::MemoryOutput output;
    xls.reset(false);
    xls.attach(output);
    xls.start();
    xls.write(main.data(), main.size());
    xls.close();
    ++read;
  } catch (const xlerror& error) {
    EXPECT_STRNE(error.what(), "");
    ++refused;
  }
}

Bytes smallFile() {
  return makeFile({{u"Small", pattern(100)}, {u"Workbook", pattern(4200)}, {u"Large", pattern(4096, 2)}});
}

TEST(HostileFiles, EveryPrefixIsReadOrRefused) {
  for (const Bytes& file : {smallFile(), writtenFile(pattern(10))}) {
    int read = 0;
    int refused = 0;
    for (std::size_t size = 0; size < file.size(); ++size) {
      loadAndSave(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)), read, refused);
    }
    EXPECT_GT(refused, 512);
    EXPECT_EQ(read + refused, static_cast<int>(file.size()));
  }
}

TEST(HostileFiles, EveryByteMayBeAnything) {
  Bytes file = smallFile();
  int read = 0;
  int refused = 0;
  for (std::size_t i = 0; i < file.size(); ++i) {
    const std::byte before = file[i];
    for (const int value : {0x00, 0x7F, 0xFF}) {
      file[i] = static_cast<std::byte>(value);
      loadAndSave(file, read, refused);
    }
    file[i] = before;
  }
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
}

TEST(HostileFiles, EveryWordOfTheTablesMayBeAnything) {
  const Bytes file = smallFile();
  int read = 0;
  int refused = 0;
  const auto tryWords = [&](std::size_t from, std::size_t to) {
    for (std::size_t at = from; at < to; at += 4) {
      for (const std::uint32_t value : {0U, 1U, 2U, 0x7FU, 0x80U, 0x7FFFFFFFU, 0xFFFFFFFCU, 0xFFFFFFFDU, 0xFFFFFFFEU}) {
        Bytes changed = file;
        put(changed, at, value);
        loadAndSave(changed, read, refused);
      }
    }
  };
  tryWords(8, 512);
  tryWords(fatEntryAt(file, 0), fatEntryAt(file, 0) + 512);
  tryWords(dirEntryAt(file, 0), dirEntryAt(file, 4));
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace rubrica::compound_test
