#include "platform/output_stream.h"

#include <csignal>
#include <unistd.h>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/support/temporary_directory.h"

namespace rubrica::platform {
namespace {

using test::readText;
using test::TemporaryDirectory;
using test::writeText;

std::string textOf(const std::vector<std::byte>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::unique_ptr<OutputStream> openAt(const std::filesystem::path& path) {
  return openFileOutput(path.u16string());
}

TEST(MemoryOutput, WritesOverAndBehindWhatIsThere) {
  MemoryOutput output;
  EXPECT_TRUE(output.write("abcdef", 6));
  EXPECT_TRUE(output.seek(4));
  EXPECT_TRUE(output.write("XYZ", 3));
  EXPECT_EQ(output.tell(), 7);
  EXPECT_EQ(textOf(output.bytes()), "abcdXYZ");
}

TEST(MemoryOutput, AGapIsFilledWithZerosByTheNextWriteOnly) {
  MemoryOutput output;
  EXPECT_TRUE(output.seek(3));
  EXPECT_TRUE(output.write("", 0));
  EXPECT_TRUE(output.bytes().empty());
  EXPECT_TRUE(output.write("a", 1));
  EXPECT_EQ(textOf(output.bytes()), std::string("\0\0\0a", 4));
}

TEST(MemoryOutput, ReleaseLeavesAnEmptyStream) {
  MemoryOutput output;
  output.write("abc", 3);
  EXPECT_EQ(textOf(output.release()), "abc");
  EXPECT_EQ(output.tell(), 0);
  EXPECT_TRUE(output.bytes().empty());
}

TEST(MemoryOutput, APositionThatNoMemoryReachesFailsTheWrite) {
  MemoryOutput output;
  output.seek(~std::uint64_t{0});
  EXPECT_FALSE(output.write("a", 1));
}

TEST(FileOutput, ReplacesTheTargetAtCommitAndNotBefore) {
  TemporaryDirectory directory;
  const auto path = directory.file("book.xls");
  writeText(path, "old");
  const auto output = openAt(path);
  ASSERT_TRUE(output);
  EXPECT_TRUE(output->write("new text", 8));
  EXPECT_EQ(readText(path), "old");
  EXPECT_TRUE(output->commit());
  EXPECT_EQ(readText(path), "new text");
  EXPECT_EQ(directory.entryCount(), 1U);
  EXPECT_FALSE(output->write("x", 1));
  EXPECT_FALSE(output->commit());
}

TEST(FileOutput, WithoutCommitNothingIsLeftBehind) {
  TemporaryDirectory directory;
  writeText(directory.file("kept"), "old");
  {
    const auto replacing = openAt(directory.file("kept"));
    const auto fresh = openAt(directory.file("fresh"));
    ASSERT_TRUE(replacing && fresh);
    EXPECT_TRUE(replacing->write("new", 3));
    EXPECT_TRUE(fresh->write("new", 3));
  }
  EXPECT_EQ(readText(directory.file("kept")), "old");
  EXPECT_EQ(directory.entryCount(), 1U);
}

TEST(FileOutput, SeeksAndPatchesOnBothSidesOfItsBuffer) {
  TemporaryDirectory directory;
  const std::string large(200'000, 'a');
  const auto output = openAt(directory.file("f"));
  ASSERT_TRUE(output);
  EXPECT_TRUE(output->write(large.data(), large.size()));
  EXPECT_EQ(output->tell(), 200'000);
  EXPECT_TRUE(output->write("tail", 4));
  EXPECT_TRUE(output->seek(10));
  EXPECT_TRUE(output->write("PATCH", 5));
  EXPECT_EQ(output->tell(), 15);
  EXPECT_TRUE(output->seek(200'010));
  EXPECT_TRUE(output->write("end", 3));
  EXPECT_TRUE(output->commit());
  std::string expected = large + "tail" + std::string(6, '\0') + "end";
  expected.replace(10, 5, "PATCH");
  EXPECT_EQ(readText(directory.file("f")), expected);
}

TEST(FileOutput, KeepsTheModeOfTheFileThatItReplaces) {
  TemporaryDirectory directory;
  const auto path = directory.file("book");
  writeText(path, "old");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  const auto output = openAt(path);
  ASSERT_TRUE(output && output->write("n", 1) && output->commit());
  struct stat status {};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST(FileOutput, ANewFileHasTheModeThatTheUmaskLeaves) {
  TemporaryDirectory directory;
  const mode_t before = umask(027);
  const auto output = openAt(directory.file("new"));
  umask(before);
  ASSERT_TRUE(output && output->commit());
  struct stat status {};
  ASSERT_EQ(stat(directory.file("new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST(FileOutput, ALinkStaysALinkAndItsTargetIsReplaced) {
  TemporaryDirectory directory;
  std::filesystem::create_directory(directory.file("sub"));
  writeText(directory.file("sub/real"), "old");
  std::filesystem::create_symlink("sub/real", directory.file("link"));
  std::filesystem::create_symlink(directory.file("sub/missing"), directory.file("dangling"));
  for (const char* name : {"link", "dangling"}) {
    const auto output = openAt(directory.file(name));
    ASSERT_TRUE(output && output->write("new", 3) && output->commit()) << name;
    EXPECT_TRUE(std::filesystem::is_symlink(directory.file(name))) << name;
  }
  EXPECT_EQ(readText(directory.file("sub/real")), "new");
  EXPECT_EQ(readText(directory.file("sub/missing")), "new");
}

TEST(FileOutput, LinksInACircleAreRefused) {
  TemporaryDirectory directory;
  std::filesystem::create_symlink("b", directory.file("a"));
  std::filesystem::create_symlink("a", directory.file("b"));
  EXPECT_FALSE(openAt(directory.file("a")));
}

TEST(FileOutput, RefusesWhatIsNoPlainFile) {
  TemporaryDirectory directory;
  ASSERT_EQ(mkfifo(directory.file("pipe").c_str(), 0600), 0);
  EXPECT_FALSE(openAt(directory.file("pipe")));
  EXPECT_FALSE(openAt(directory.file("")));
  EXPECT_FALSE(openFileOutput(u"/dev/null"));
  EXPECT_FALSE(openFileOutput(u""));
  EXPECT_FALSE(openFileOutput(std::u16string(1, char16_t{0xDC00})));
  EXPECT_FALSE(openAt(directory.file("no/such/directory/file")));
  std::filesystem::create_directory(directory.file("sub"));
  EXPECT_FALSE(openAt(directory.file("sub")));
  EXPECT_EQ(directory.entryCount(), 2U);
}

TEST(FileOutput, AWriteProtectedTargetIsRefused) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser may write everywhere";
  TemporaryDirectory directory;
  writeText(directory.file("f"), "old");
  ASSERT_EQ(chmod(directory.file("f").c_str(), 0444), 0);
  EXPECT_FALSE(openAt(directory.file("f")));
}

// Lowers the size that this process may give a file, as a full disk would.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : _signal(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &_before);
    const rlimit lowered{bytes, _before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &lowered);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &_before);
    std::signal(SIGXFSZ, _signal);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*_signal)(int);
  rlimit _before{};
};

TEST(FileOutput, AFailedWriteFailsAllThatFollowsAndKeepsTheTarget) {
  TemporaryDirectory directory;
  writeText(directory.file("f"), "old");
  {
    const auto output = openAt(directory.file("f"));
    ASSERT_TRUE(output);
    const FileSizeLimit limit(100'000);
    const std::string large(300'000, 'a');
    EXPECT_FALSE(output->write(large.data(), large.size()));
    EXPECT_EQ(output->tell(), -1);
    EXPECT_FALSE(output->seek(0));
    EXPECT_FALSE(output->write("a", 1));
    EXPECT_FALSE(output->commit());
  }
  EXPECT_EQ(readText(directory.file("f")), "old");
  EXPECT_EQ(directory.entryCount(), 1U);
}

TEST(FileOutput, BytesThatFailOnlyWhenTheBufferGoesOutFailTheCommit) {
  TemporaryDirectory directory;
  const auto output = openAt(directory.file("f"));
  ASSERT_TRUE(output);
  const FileSizeLimit limit(10);
  EXPECT_TRUE(output->write("more than ten bytes", 19));
  EXPECT_FALSE(output->commit());
  EXPECT_FALSE(std::filesystem::exists(directory.file("f")));
}

TEST(FileOutput, TwoWritersOfOneTargetDoNotMeet) {
  TemporaryDirectory directory;
  const auto first = openAt(directory.file("f"));
  const auto second = openAt(directory.file("f"));
  ASSERT_TRUE(first && second);
  EXPECT_TRUE(first->write("first", 5) && second->write("second", 6));
  EXPECT_TRUE(first->commit());
  EXPECT_EQ(readText(directory.file("f")), "first");
  EXPECT_TRUE(second->commit());
  EXPECT_EQ(readText(directory.file("f")), "second");
}

}  // namespace
}  // namespace rubrica::platform
