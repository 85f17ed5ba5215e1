// The manual page of each tool and its --help name the same options.
#include <filesystem>
#include <set>

#include "tests/tools/tool_runner.h"

namespace rubrica::test {
namespace {

class ManPage : public testing::TestWithParam<const char*> {
 protected:
  // Words that begin with two hyphens. In a page a hyphen that is typed has a backslash.
  static std::set<std::string> optionsIn(std::string text) {
    std::erase(text, '\\');
    std::set<std::string> options;
    for (std::size_t at = 0; (at = text.find("--", at)) != std::string::npos;) {
      const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at);
      options.insert(text.substr(at, end - at));
      at = std::min(end, text.size());
    }
    return options;
  }
  static std::string page() { return readText(std::string(RUBRICA_SOURCE_DIR) + "/docs/man/" + GetParam() + ".1"); }
  static std::set<std::string> optionsOfPage() {
    const std::string text = page();
    const std::size_t start = text.find(".SH OPTIONS");
    return optionsIn(text.substr(start, text.find("\n.SH", start + 1) - start));
  }
};

TEST_P(ManPage, NamesTheOptionsOfHelp) {
  const ToolResult help = runTool(GetParam(), {"--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_EQ(help.err, "");
  const std::set<std::string> options = optionsOfPage();
  EXPECT_TRUE(options.contains("--help"));
  EXPECT_EQ(options, optionsIn(help.out));
}

TEST_P(ManPage, HasTheSectionsThatReadersLookFor) {
  const std::string text = page();
  EXPECT_TRUE(text.starts_with(".TH "));
  for (const char* section :
       {".SH NAME\n", ".SH SYNOPSIS\n", ".SH DESCRIPTION\n", ".SH OPTIONS\n", ".SH EXIT STATUS\n"}) {
    EXPECT_NE(text.find(section), std::string::npos) << section;
  }
  EXPECT_NE(text.find(std::string(GetParam()) + " \\- "), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Tools, ManPage,
                         testing::Values("rubrica-bench", "rubrica-check", "rubrica-convert", "rubrica-diff",
                                         "rubrica-dump", "omnis-run"),
                         [](const auto& parameter) {
                           std::string name = parameter.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(ToolVersion, IsThatOfTheProject) {
  for (const std::string tool :
       {"rubrica-bench", "rubrica-check", "rubrica-convert", "rubrica-diff", "rubrica-dump", "omnis-run"}) {
    EXPECT_EQ(runTool(tool, {"--version"}).out, tool + " " + RUBRICA_VERSION + "\n");
  }
}

TEST(ManPages, AreOneForEachTool) {
  std::set<std::string> pages;
  for (const auto& entry : std::filesystem::directory_iterator(std::string(RUBRICA_SOURCE_DIR) + "/docs/man")) {
    pages.insert(entry.path().filename().string());
  }
  EXPECT_EQ(pages, (std::set<std::string>{"omnis-run.1", "rubrica-bench.1", "rubrica-check.1", "rubrica-convert.1",
                                          "rubrica-diff.1", "rubrica-dump.1"}));
}

}  // namespace
}  // namespace rubrica::test
