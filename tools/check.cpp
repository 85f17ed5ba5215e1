// rubrica-check: what becomes of the content of a workbook, and what is wrong with it.
#include <cstdio>

#include "platform/input_file.h"
#include "tools/book_opener.h"
#include "tools/command_line.h"
#include "tools/xls_check.h"
#include "tools/xlsx_check.h"

namespace rubrica::tools {
namespace {

constexpr OptionRow kOptions[] = {
    {"quiet", nullptr, "print damage and complaints alone"},
    {"max", "N", "print at most N lines of each kind (20)"},
};

constexpr ToolText kTool = {
    "rubrica-check", "[OPTIONS] FILE",
    "Tells what becomes of a workbook's content in a load and a save, and what is wrong with the file:\n"
    "  known      understood, and written anew at a save\n"
    "  kept       not understood, kept as the bytes that they are\n"
    "  dropped    gone after a load and a save\n"
    "  apart      what the engine's interfaces say nothing of\n"
    "  changed    values, formulas, formats and settings that a load and a save change\n"
    "  damaged    broken in the file\n"
    "  complaint  what a strict reader would not accept",
    kOptions,
    "Exit code: 0 nothing is wrong, 1 damage or complaints, 2 the file can't be read or the call is wrong.\n"};

constexpr int kDefaultMost = 20;

void printCounts(const char* kind, const std::map<std::string, long>& counts) {
  for (const auto& [name, count] : counts) std::printf("%-10s %s %ld\n", kind, name.c_str(), count);
}

void printLines(const char* kind, const std::vector<std::string>& lines, std::size_t most) {
  for (std::size_t i = 0; i < lines.size() && i < most; ++i) std::printf("%-10s %s\n", kind, lines[i].c_str());
  if (lines.size() > most) std::printf("%-10s ... and %zu more\n", kind, lines.size() - most);
}

void print(const std::string& file, const CheckReport& report, bool quiet, std::size_t most) {
  if (!quiet) {
    std::printf("%s: %s\n", file.c_str(), report.form.empty() ? "no workbook that can be loaded" : report.form.c_str());
    printCounts("known", report.known);
    printCounts("kept", report.kept);
    printCounts("dropped", report.dropped);
    printLines("apart", report.unmodelled, most);
    printLines("changed", report.changed, most);
  }
  printLines("damaged", report.damage, most);
  printLines("complaint", report.complaints, most);
}

int run(int argc, char** argv) {
  CommandLine line(kTool, argc, argv);
  line.expectFiles(line.exitCode() ? line.files().size() : 1);
  const int most = line.number("max", kDefaultMost);
  if (line.exitCode()) return *line.exitCode();
  const std::string& file = line.files().front();
  const auto bytes = platform::readWholeFile(wideText(file));
  if (!bytes) {
    complain(kTool.name, file + ": can't open file for reading");
    return kExitFailed;
  }
  const std::string form = formOf(file);
  if (createBook(form) == nullptr) {
    complain(kTool.name, file + ": this version reads no ." + form + " files");
    return kExitFailed;
  }
  Progress progress(kTool.name);
  const CheckReport report = form == "xls" ? checkXls(*bytes, progress) : checkXlsx(*bytes, progress);
  progress.finish();
  print(file, report, line.has("quiet"), static_cast<std::size_t>(most));
  if (!finishOutput(kTool.name)) return kExitFailed;
  return report.hasFindings() ? kExitFinding : kExitFine;
}

}  // namespace
}  // namespace rubrica::tools

int main(int argc, char** argv) {
  return rubrica::tools::run(argc, argv);
}
