// rubrica-diff: what differs between two workbooks.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "tools/book_diff.h"
#include "tools/command_line.h"

namespace rubrica::tools {
namespace {

constexpr OptionRow kOptions[] = {
    {"only", "LIST", "compare these subjects alone, separated by commas"},
    {"ignore", "LIST", "compare all but these subjects"},
    {"tolerance", "T", "numbers are equal up to T times the larger one, as in 1e-12"},
    {"max", "N", "print at most N differences"},
    {"quiet", nullptr, "print nothing, answer with the exit code"},
};

constexpr ToolText kTool = {
    "rubrica-diff", "[OPTIONS] A B",
    "Prints what differs between two workbooks, one line a difference: place, subject, value in A -> value in B.\n"
    "Sheets are compared by name, cells by place, formats by what they look like, whatever the file form.",
    kOptions,
    "Subjects: values formulas formats comments merges links names sizes pictures page view protection\n"
    "Exit code: 0 nothing differs, 1 something does, 2 a file can't be read or the call is wrong.\n"};

std::optional<Subject> subjectOf(const std::string& word) {
  for (const Subject subject : allSubjects()) {
    if (word == subjectName(subject)) return subject;
  }
  return std::nullopt;
}

std::set<Subject> subjectsOf(CommandLine& line, const std::string& option) {
  std::set<Subject> subjects;
  for (const std::string& word : splitList(line.value(option))) {
    if (const auto subject = subjectOf(word)) {
      subjects.insert(*subject);
    } else {
      line.reject(std::string("--").append(option).append(" knows no subject \"").append(word).append("\""));
    }
  }
  return subjects;
}

DiffOptions optionsOf(CommandLine& line) {
  DiffOptions options;
  options.subjects = subjectsOf(line, "only");
  const std::set<Subject> ignored = subjectsOf(line, "ignore");
  if (options.subjects.empty()) options.subjects.insert(allSubjects().begin(), allSubjects().end());
  for (const Subject subject : ignored) options.subjects.erase(subject);
  if (options.subjects.empty()) line.reject("nothing is left to compare");
  if (line.has("tolerance")) {
    const std::string text = line.value("tolerance");
    char* end = nullptr;
    options.tolerance = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(options.tolerance >= 0)) {
      line.reject("--tolerance takes a number from 0 on, not \"" + text + "\"");
    }
  }
  return options;
}

int run(int argc, char** argv) {
  CommandLine line(kTool, argc, argv);
  line.expectFiles(line.exitCode() ? line.files().size() : 2);
  const DiffOptions options = optionsOf(line);
  const int most = line.number("max", -1);
  if (line.exitCode()) return *line.exitCode();

  Progress progress(kTool.name);
  OpenedBook books[2];
  for (int i = 0; i < 2; ++i) {
    const std::string& file = line.files()[static_cast<std::size_t>(i)];
    progress.begin("reading " + file);
    books[i] = openBook(file);
    if (books[i].book != nullptr) continue;
    progress.finish();
    complain(kTool.name, books[i].error);
    return kExitFailed;
  }
  long found = 0;
  BookDiff(books[0], books[1], options, [&](const std::string& difference) {
    ++found;
    if (!line.has("quiet") && (most < 0 || found <= most)) std::printf("%s\n", difference.c_str());
  }).run(progress);
  progress.finish();
  if (!line.has("quiet") && most >= 0 && found > most) std::printf("... and %ld more\n", found - most);
  if (!finishOutput(kTool.name)) return kExitFailed;
  return found == 0 ? kExitFine : kExitFinding;
}

}  // namespace
}  // namespace rubrica::tools

int main(int argc, char** argv) {
  return rubrica::tools::run(argc, argv);
}
