#include <cstring>
#include <filesystem>
#include <optional>
#include <string>

#include "expect.h"
#include "platform/input_file.h"
#include "platform/large_block.h"
#include "platform/output_stream.h"

namespace rubrica::platform {

namespace {

namespace fs = std::filesystem;

std::string contents(const std::u16string& path) {
  const std::optional<FileBytes> bytes = readWholeFile(path);
  if (!bytes) return "(unreadable)";
  return {reinterpret_cast<const char*>(bytes->data()), bytes->size()};
}

bool writeFile(const std::u16string& path, const std::string& text) {
  const std::unique_ptr<OutputStream> output = openFileOutput(path);
  return output != nullptr && output->write(text.data(), text.size()) && output->commit();
}

std::ptrdiff_t filesIn(const std::u16string& directory) {
  return std::distance(fs::directory_iterator(fs::path(directory)), fs::directory_iterator());
}

void checkWriting(const std::u16string& directory) {
  // A name outside of every one-byte code page, so that no narrow call can be behind it.
  const std::u16string path = directory + u"/\u0416\u30C6 book.xls";
  EXPECT(writeFile(path, "first"));
  EXPECT(contents(path) == "first");
  EXPECT(writeFile(path, "second, longer"));
  EXPECT(contents(path) == "second, longer");
  EXPECT(writeFile(path, ""));
  EXPECT(contents(path).empty());
  EXPECT(filesIn(directory) == 1);
  fs::remove(fs::path(path));
}

void checkPositions(const std::u16string& directory) {
  const std::u16string path = directory + u"/positions";
  const std::string large(200'000, 'x');
  {
    const std::unique_ptr<OutputStream> output = openFileOutput(path);
    EXPECT(output != nullptr);
    if (output == nullptr) return;
    EXPECT(output->write(large.data(), large.size()));
    EXPECT(output->tell() == 200'000);
    EXPECT(output->seek(1) && output->write("ab", 2) && output->tell() == 3);
    EXPECT(output->seek(200'002) && output->write("z", 1));
    EXPECT(output->commit());
    EXPECT(!output->write("late", 4));
  }
  std::string expected = large + std::string(2, '\0') + "z";
  expected.replace(1, 2, "ab");
  EXPECT(contents(path) == expected);
  fs::remove(fs::path(path));
}

void checkThatTheTargetIsKept(const std::u16string& directory) {
  const std::u16string path = directory + u"/kept";
  EXPECT(writeFile(path, "kept"));
  {
    const std::unique_ptr<OutputStream> output = openFileOutput(path);
    EXPECT(output != nullptr && output->write("lost", 4));
    EXPECT(filesIn(directory) == 2);
    EXPECT(contents(path) == "kept");
  }
  EXPECT(contents(path) == "kept");
  EXPECT(filesIn(directory) == 1);

  fs::permissions(fs::path(path), fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  EXPECT(openFileOutput(path) == nullptr);
  EXPECT(contents(path) == "kept");
  fs::permissions(fs::path(path), fs::perms::owner_write, fs::perm_options::add);
  fs::remove(fs::path(path));
}

void checkRefusals(const std::u16string& directory) {
  EXPECT(!readWholeFile(directory));
  EXPECT(!readWholeFile(directory + u"/absent"));
  EXPECT(!readWholeFile(u""));
  EXPECT(!readWholeFile(u"NUL"));
  EXPECT(!readWholeFile(directory + std::u16string(u"/a\0b", 4)));
  EXPECT(openFileOutput(directory) == nullptr);
  EXPECT(openFileOutput(directory + u"/") == nullptr);
  EXPECT(openFileOutput(directory + u"/absent/book.xls") == nullptr);
  EXPECT(openFileOutput(u"") == nullptr);
  EXPECT(openFileOutput(u"NUL") == nullptr);
  EXPECT(filesIn(directory) == 0);
}

void checkLargeBlock() {
  const std::size_t size = kLargeBlock + 1;
  const Block<std::byte> block = makeBlock<std::byte>(size);
  std::memset(block.get(), 0x5A, size);
  EXPECT(block[0] == block[size - 1]);
}

}  // namespace

void checkFiles(const std::u16string& directory) {
  checkWriting(directory);
  checkPositions(directory);
  checkThatTheTargetIsKept(directory);
  checkRefusals(directory);
  checkLargeBlock();
}

}  // namespace rubrica::platform
