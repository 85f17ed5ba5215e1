#include "platform/input_file.h"

#include <unistd.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/temporary_directory.h"

namespace rubrica::platform {
namespace {

using test::TemporaryDirectory;
using test::writeText;

TEST(WholeFile, GivesTheBytesOfAFile) {
  TemporaryDirectory directory;
  writeText(directory.file("a.bin"), std::string("a\0\xFFz", 4));
  const auto bytes = readWholeFile(directory.file("a.bin").u16string());
  ASSERT_TRUE(bytes);
  EXPECT_EQ(std::vector<std::byte>(bytes->data(), bytes->data() + bytes->size()),
            (std::vector<std::byte>{std::byte{'a'}, std::byte{0}, std::byte{0xFF}, std::byte{'z'}}));
}

TEST(WholeFile, FilesOfManyMegabytesComeWhole) {
  TemporaryDirectory directory;
  std::string text(5'000'000, 'x');
  text.back() = 'y';
  writeText(directory.file("large"), text);
  const auto bytes = readWholeFile(directory.file("large").u16string());
  ASSERT_TRUE(bytes);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size()), text);
}

TEST(WholeFile, AnEmptyFileHasNoBytesAndIsNoFailure) {
  TemporaryDirectory directory;
  writeText(directory.file("empty"), "");
  const auto bytes = readWholeFile(directory.file("empty").u16string());
  ASSERT_TRUE(bytes);
  EXPECT_TRUE(bytes->empty());
}

TEST(WholeFile, NamesOutsideAsciiAreUtf8) {
  TemporaryDirectory directory;
  writeText(directory.file("\xC3\xA9\xF0\x9F\x98\x80.txt"), "x");
  const std::u16string path = directory.file("").u16string() + u"\u00E9\U0001F600.txt";
  EXPECT_TRUE(readWholeFile(path));
}

TEST(WholeFile, FilesWhoseStatedSizeIsNotTheirLengthAreReadToTheEnd) {
  const auto bytes = readWholeFile(u"/proc/self/status");  // states 0 bytes
  ASSERT_TRUE(bytes);
  EXPECT_GT(bytes->size(), 100U);
}

TEST(WholeFile, DirectoriesAndSpecialFilesAreRefused) {
  TemporaryDirectory directory;
  EXPECT_FALSE(readWholeFile(directory.file("").u16string()));
  EXPECT_FALSE(readWholeFile(u"/dev/zero"));
  ASSERT_EQ(mkfifo(directory.file("pipe").c_str(), 0600), 0);
  EXPECT_FALSE(readWholeFile(directory.file("pipe").u16string()));
}

TEST(WholeFile, NamesThatNoFileCanHaveAreRefused) {
  TemporaryDirectory directory;
  writeText(directory.file("a"), "x");
  EXPECT_FALSE(readWholeFile(u""));
  EXPECT_FALSE(readWholeFile(directory.file("missing").u16string()));
  EXPECT_FALSE(readWholeFile(directory.file("a").u16string() + std::u16string(u"\0b", 2)));
  EXPECT_FALSE(readWholeFile(directory.file("").u16string() + std::u16string(1, char16_t{0xD800})));
}

}  // namespace
}  // namespace rubrica::platform
