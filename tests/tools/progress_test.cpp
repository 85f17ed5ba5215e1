#include "tools/progress.h"

#include <functional>

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace rubrica::test {
namespace {

using namespace std::chrono_literals;

std::string shownWhile(std::chrono::milliseconds patience, const std::function<void(tools::Progress&)>& work) {
  const TemporaryDirectory directory;
  const std::string path = directory.file("progress").string();
  std::FILE* sink = std::fopen(path.c_str(), "w");
  {
    tools::Progress progress("tool", sink, patience);
    work(progress);
  }
  std::fclose(sink);
  return readText(path);
}

TEST(ToolProgress, ShortWorkShowsNothing) {
  EXPECT_EQ(shownWhile(1h, [](tools::Progress& progress) { progress.begin("reading"); }), "");
}

TEST(ToolProgress, WorkThatCantBeCountedIsNamed) {
  const std::string shown = shownWhile(5ms, [](tools::Progress& progress) {
    progress.begin("reading a.xls");
    std::this_thread::sleep_for(200ms);
  });
  EXPECT_TRUE(shown.starts_with("tool: reading a.xls, 0 s\n")) << shown;
}

TEST(ToolProgress, CountedWorkShowsItsShare) {
  const std::string shown = shownWhile(5ms, [](tools::Progress& progress) {
    progress.begin("comparing", 200);
    progress.advance(50);
    std::this_thread::sleep_for(200ms);
  });
  EXPECT_TRUE(shown.starts_with("tool: comparing, 25 %, 0 s\n")) << shown;
}

TEST(ToolProgress, NothingIsShownBeforeAnythingBegins) {
  EXPECT_EQ(shownWhile(5ms, [](tools::Progress&) { std::this_thread::sleep_for(100ms); }), "");
}

TEST(ToolProgress, FinishingTwiceIsFinishingOnce) {
  EXPECT_EQ(shownWhile(1h,
                       [](tools::Progress& progress) {
                         progress.begin("reading");
                         progress.finish();
                         progress.finish();
                       }),
            "");
}

}  // namespace
}  // namespace rubrica::test
