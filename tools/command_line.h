// The command line of a tool: its options are declared once, and parsing, --help and the check of its manual page
// follow from that list. Every tool also has --help and --version.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace rubrica::tools {

// What the tools answer to the shell.
inline constexpr int kExitFine = 0;
inline constexpr int kExitFinding = 1;  // a difference, a loss, a complaint
inline constexpr int kExitFailed = 2;   // a wrong call, or a file that can't be read or written

struct OptionRow {
  const char* name;      // without the leading "--"
  const char* argument;  // what stands for its argument in --help; null for a switch
  const char* help;
};

struct ToolText {
  const char* name;
  const char* usage;    // behind "usage: NAME "
  const char* summary;  // sentences between the usage and the options
  std::span<const OptionRow> options;
  const char* ending;  // behind the options: exit codes and examples
};

std::string helpText(const ToolText& tool);

class CommandLine {
 public:
  // Parses; where an exit code is set, the call is over: help was printed, or the reason of a wrong call.
  CommandLine(const ToolText& tool, int argc, char** argv);

  const std::optional<int>& exitCode() const { return _exitCode; }
  bool has(const std::string& option) const { return _values.contains(option); }
  // The argument of an option as it was given last; empty without it.
  std::string value(const std::string& option) const;
  // A whole number from 0 on; `missing` without the option. Ends the call with a message for anything else.
  int number(const std::string& option, int missing);
  const std::vector<std::string>& files() const { return _files; }
  // Ends the call, where it isn't over yet, unless there are exactly `count` file names.
  void expectFiles(std::size_t count);
  void reject(const std::string& reason);

 private:
  const ToolText& _tool;
  std::optional<int> _exitCode;
  std::map<std::string, std::string> _values;
  std::vector<std::string> _files;
};

// Words between commas.
std::vector<std::string> splitList(const std::string& text);

// "NAME: message" on standard error.
void complain(const char* tool, const std::string& message);

// Flushes standard output; false, with a message, where it could not be written.
bool finishOutput(const char* tool);

}  // namespace rubrica::tools
