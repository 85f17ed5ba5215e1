#include "tools/command_line.h"

#include <charconv>
#include <cstdio>
#include <getopt.h>

namespace rubrica::tools {
namespace {

constexpr std::size_t kHelpColumn = 22;
constexpr OptionRow kCommonOptions[] = {{"help", nullptr, "print this text"},
                                        {"version", nullptr, "print the version"}};

std::vector<OptionRow> allOptions(const ToolText& tool) {
  std::vector<OptionRow> all(tool.options.begin(), tool.options.end());
  all.insert(all.end(), std::begin(kCommonOptions), std::end(kCommonOptions));
  return all;
}

}  // namespace

std::string helpText(const ToolText& tool) {
  std::string text = std::string("usage: ") + tool.name + " " + tool.usage + "\n" + tool.summary + "\n";
  for (const OptionRow& row : allOptions(tool)) {
    std::string line =
        std::string("  --") + row.name + (row.argument == nullptr ? "" : std::string(" ") + row.argument);
    line.resize(std::max(line.size() + 2, kHelpColumn), ' ');
    text += line + row.help + "\n";
  }
  return text + tool.ending;
}

CommandLine::CommandLine(const ToolText& tool, int argc, char** argv) : _tool(tool) {
  const std::vector<OptionRow> rows = allOptions(tool);
  std::vector<option> options;
  options.reserve(rows.size() + 1);
  for (const OptionRow& row : rows) {
    options.push_back({row.name, row.argument == nullptr ? no_argument : required_argument, nullptr, 0});
  }
  options.push_back({nullptr, 0, nullptr, 0});
  int index = 0;
  for (int c = 0; (c = getopt_long(argc, argv, "h", options.data(), &index)) != -1;) {
    if (c == '?') {
      std::fprintf(stderr, "Try \"%s --help\".\n", tool.name);
      _exitCode = kExitFailed;
      return;
    }
    const std::string name = c == 'h' ? "help" : rows[static_cast<std::size_t>(index)].name;
    _values[name] = c != 'h' && optarg != nullptr ? optarg : "";
  }
  _files.assign(argv + optind, argv + argc);
  if (has("help")) {
    std::fputs(helpText(tool).c_str(), stdout);
    _exitCode = kExitFine;
  } else if (has("version")) {
    std::printf("%s %s\n", tool.name, RUBRICA_VERSION);
    _exitCode = kExitFine;
  }
}

std::string CommandLine::value(const std::string& option) const {
  const auto found = _values.find(option);
  return found == _values.end() ? std::string() : found->second;
}

int CommandLine::number(const std::string& option, int missing) {
  if (!has(option)) return missing;
  const std::string text = value(option);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc() && end == text.data() + text.size() && number >= 0) return number;
  reject("--" + option + " takes a whole number from 0 on, not \"" + text + "\"");
  return missing;
}

void CommandLine::expectFiles(std::size_t count) {
  if (_files.size() == count) return;
  reject("takes " + std::to_string(count) + (count == 1 ? " file" : " files") + ", not " +
         std::to_string(_files.size()));
}

void CommandLine::reject(const std::string& reason) {
  if (_exitCode) return;
  complain(_tool.name, reason);
  std::fprintf(stderr, "usage: %s %s\nTry \"%s --help\".\n", _tool.name, _tool.usage, _tool.name);
  _exitCode = kExitFailed;
}

std::vector<std::string> splitList(const std::string& text) {
  std::vector<std::string> words;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(',', start), text.size());
    if (end > start) words.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return words;
}

void complain(const char* tool, const std::string& message) {
  std::fprintf(stderr, "%s: %s\n", tool, message.c_str());
}

bool finishOutput(const char* tool) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
  complain(tool, "standard output can't be written");
  return false;
}

}  // namespace rubrica::tools
