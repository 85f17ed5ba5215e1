// omnis-run: runs a script in Omnis notation against the built component.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "simhost/component_host.h"
#include "simhost/files.h"
#include "simhost/interpreter.h"
#include "simhost/parser.h"
#include "simhost/script_error.h"

namespace {

using namespace rubrica::simhost;

enum ExitCode { exitDone = 0, exitScriptError = 1, exitUsage = 2 };

constexpr const char* componentVariable = "OMNIS_RUN_COMPONENT";
constexpr const char* componentFile = "TabulixU.so";

constexpr const char* help =
    R"(usage: omnis-run [--component PATH] SCRIPT.omn [ARGUMENTS]

Runs a script in Omnis notation against the Tabulix component.

  --component PATH   the module to load; else $OMNIS_RUN_COMPONENT, else
                     TabulixU.so beside this program, in ../host, or where
                     it is installed
  --check            only checks the script, without running it
  --help             shows this
  --version          shows the version

ARGUMENTS are the values of the script's `Parameter` lines, in order.
Exit code 0: the script ended. 1: an error in the script, shown with its line.
2: a wrong command line, or no component.

The language (docs/omnis-run.md tells it whole):
  Parameter pFile Character = 'report.xls'
  Var oBook Object Tabulix.Workbook
  Var oSheet Object Tabulix.Worksheet
  Var lRow Integer, lList List        each on a line of its own
  Do oBook.$load(pFile) Returns lOK
  Calculate oSheet.$landscape as kTrue
  Do oSheet.$cell(1,'A').$setValue(dat('2026-11-20'),oFormat,kXLTypeDate)
  If / Else If / Else / End If, For x from a to b step c / End For, While,
  Repeat / Until, For each line in list lList, Switch / Case / Default,
  Break to end of loop, Jump to start of loop, Quit method, Quit all methods
  Method name(pA Character, pList Field reference) ... End Method
  Do method name(...) Returns lX
  Method oBook.$error(pCode Integer, pText Character, pLong Character, pName Character)
  Print a, b   Send to trace log {text [expression]}   Signal error {text}
  Do lList.$define(lName,lNum), $add, $linecount, $line, lList.3.lName,
  lList.[i].C2, $cols.$add, $sort, $search, rows, lst()
  ReadCSV, WriteCSV, ReadBinFile, WriteBinFile, FileOps.$doesfileexist
Left out: windows, tasks, file classes and SQL; classes and $cinst; #F and
the other hash variables; current lists (`Set current list`, `Add line to
list`); list selections, $makelist and smart lists; totc and its fellows (a
column's $total() is there); text blocks; reversible blocks; error handlers
(`Load error handler`; a book's $error is there); item references; $sendall;
timers, workers and threads. All of it stops the script with its line.
)";

struct Options {
  std::string component;
  std::string script;
  std::vector<std::string> arguments;
  bool checkOnly = false;
  bool showHelp = false;
  bool showVersion = false;
};

// False when the command line makes no sense; says why.
bool parseOptions(const std::vector<std::string>& words, Options& options) {
  std::size_t i = 0;
  for (; i < words.size() && words[i].starts_with("-"); ++i) {
    if (words[i] == "--help" || words[i] == "-h") {
      options.showHelp = true;
      return true;
    }
    if (words[i] == "--version") {
      options.showVersion = true;
      return true;
    }
    if (words[i] == "--check") {
      options.checkOnly = true;
    } else if (words[i] == "--component") {
      if (++i == words.size()) {
        std::fputs("omnis-run: --component needs a path\n", stderr);
        return false;
      }
      options.component = words[i];
    } else {
      std::fprintf(stderr, "omnis-run: unknown option '%s'; see omnis-run --help\n", words[i].c_str());
      return false;
    }
  }
  if (i == words.size()) {
    std::fputs("omnis-run: no script is given; see omnis-run --help\n", stderr);
    return false;
  }
  options.script = words[i];
  options.arguments.assign(words.begin() + static_cast<std::ptrdiff_t>(i) + 1, words.end());
  return true;
}

std::string defaultComponent() {
  if (const char* path = std::getenv(componentVariable); path != nullptr && *path != '\0') return path;
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path folder = error ? std::filesystem::current_path() : program.parent_path();
  for (const auto& place : {folder, folder / ".." / "host", folder / "..", folder / ".." / RUBRICA_COMPONENT_DIR}) {
    if (std::filesystem::exists(place / componentFile, error)) return (place / componentFile).lexically_normal();
  }
  return (folder / componentFile).string();
}

// Long text only where the component gave one.
std::string shownError(const std::string& className, const std::vector<Value>& values) {
  const auto part = [&values](std::size_t i) { return i < values.size() ? values[i].toUtf8() : std::string(); };
  std::string text = className;
  if (!part(3).empty()) text += "." + part(3);
  text += ": error " + part(0) + ", " + part(1);
  if (!part(2).empty()) text += " " + part(2);
  return text;
}

int runScript(const Options& options, ComponentHost& host) {
  Bytes bytes;
  if (readFile(options.script, bytes) != 0) {
    std::fprintf(stderr, "omnis-run: the script '%s' can't be read\n", options.script.c_str());
    return exitUsage;
  }
  try {
    const Program program = parseScript({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, &host);
    if (options.checkOnly) return exitDone;
    RunOptions run;
    run.print = [](const std::string& line) {
      std::fwrite(line.data(), 1, line.size(), stdout);
      std::fputc('\n', stdout);
    };
    run.arguments = options.arguments;
    run.scriptFolder = std::filesystem::absolute(options.script).parent_path().string();
    Interpreter interpreter(program, &host, std::move(run));
    host.setUnhandledError([&](const std::string& className, const std::vector<Value>& values) {
      std::fflush(stdout);
      std::fprintf(stderr, "%s:%d: %s\n", options.script.c_str(), interpreter.line(),
                   shownError(className, values).c_str());
    });
    interpreter.run();
  } catch (const ScriptError& error) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s:%d: %s\n", options.script.c_str(), error.line(), error.what());
    return exitScriptError;
  }
  return exitDone;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!parseOptions({argv + 1, argv + argc}, options)) return exitUsage;
  if (options.showHelp) {
    std::fputs(help, stdout);
    return exitDone;
  }
  if (options.showVersion) {
    std::puts("omnis-run " RUBRICA_VERSION);
    return exitDone;
  }
  try {
    ComponentHost host(options.component.empty() ? defaultComponent() : options.component);
    return runScript(options, host);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "omnis-run: %s\n", error.what());
    return exitUsage;
  }
}
