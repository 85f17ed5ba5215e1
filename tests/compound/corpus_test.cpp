// Workbooks that other programs made, where a folder of them is at hand: each is read, captured and written again, and
// every stream is the same afterwards. Crafted ones may be refused, but nothing worse.
#include "tests/support/corpus.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/input_file.h"
#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

namespace fs = std::filesystem;

Bytes mainOf(Xls& xls) {
  Bytes main = readAll(xls);
  for (const DirEntry& entry : xls.directory()) {
    if (!entry.isNamed(u"Workbook") && !entry.isNamed(u"Book")) continue;
    if (entry.streamSize < main.size()) main.resize(static_cast<std::size_t>(entry.streamSize));
    break;
  }
  return main;
}

TEST(RealWorkbooks, KeepTheirStreamsThroughALoadAndASave) {
  const auto paths = test::corpusFiles("xls");
  if (paths.empty()) GTEST_SKIP() << test::kNoCorpus;
  std::size_t read = 0;
  for (const fs::path& path : paths) {
    const auto content = platform::readWholeFile(path.u16string());
    ASSERT_TRUE(content) << path;
    const Bytes file(content->data(), content->data() + content->size());
    try {
      Xls before;
      before.read(file);
      const Bytes main = mainOf(before);
      before.captureOtherStreams();
      const Bytes saved = resavedFile(file, main);
      Xls after;
      after.read(saved);
      Bytes mainAfter = mainOf(after);
      mainAfter.resize(std::min(mainAfter.size(), main.size()));
      EXPECT_EQ(mainAfter, main) << path;
      after.captureOtherStreams();
      EXPECT_EQ(after.otherStreams(), before.otherStreams()) << path;
      ++read;
    } catch (const xlerror& error) {
      RecordProperty(path.filename().string(), error.what());
    }
  }
  EXPECT_GE(read * 100, paths.size() * 98);
}

TEST(RealWorkbooks, CraftedOnesAreReadOrRefused) {
  const auto paths = test::corpusFiles("malformed");
  if (paths.empty()) GTEST_SKIP() << test::kNoCorpus;
  for (const fs::path& path : paths) {
    const auto content = platform::readWholeFile(path.u16string());
    ASSERT_TRUE(content) << path;
    const Bytes file(content->data(), content->data() + content->size());
    try {
      resavedFile(file, pattern(5000));
    } catch (const xlerror& error) {
      EXPECT_STRNE(error.what(), "") << path;
    }
  }
}

}  // namespace
}  // namespace rubrica::compound_test
