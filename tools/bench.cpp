// rubrica-bench: one whole job in a process, so that it can be set beside any other program.
#include <chrono>
#include <cstdio>
#include <string>

#include <sys/resource.h>

#include "engine/book.h"
#include "tools/bench_workloads.h"
#include "tools/book_opener.h"
#include "tools/command_line.h"

namespace rubrica::tools {
namespace {

constexpr ToolText kTool = {
    "rubrica-bench",
    "write FORM WORKLOAD FILE\n       rubrica-bench read FILE\n       rubrica-bench resave IN OUT",
    "Runs one job and prints cells, seconds and peak memory.\n"
    "  FORM      xls or xlsx\n"
    "  WORKLOAD  N numbers, S strings, M mixed, R random numbers, B ten million numbers (xlsx)\n"
    "read visits every cell and prints a checksum: the sum of the numbers and the length of the strings.",
    {},
    "Exit code: 0 done, 1 a file can't be read or written, 2 the call is wrong.\n"};

constexpr int kExitUnreadable = 1;

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double peakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

int fail(Book& book, const char* what) {
  complain(kTool.name, std::string(what) + ": " + book.errorMessage());
  return kExitUnreadable;
}

int refuse(const std::string& file) {
  complain(kTool.name, file + ": this version reads no ." + formOf(file) + " files");
  return kExitUnreadable;
}

void report(const char* job, long cells, double seconds) {
  std::printf("%s cells=%ld seconds=%.4f peakMB=%.1f\n", job, cells, seconds, peakMegabytes());
}

struct Checksum {
  long cells = 0, strings = 0, bools = 0;
  double sum = 0;
};

void visit(Sheet& sheet, Checksum& checksum) {
  const int lastRow = sheet.lastRow(), lastCol = sheet.lastCol();
  for (int row = sheet.firstRow(); row < lastRow; ++row) {
    for (int col = sheet.firstCol(); col < lastCol; ++col) {
      switch (sheet.cellType(row, col)) {
        case CellType::number:
          checksum.sum += sheet.readNum(row, col);
          break;
        case CellType::string:
          checksum.strings += static_cast<long>(std::char_traits<char16_t>::length(sheet.readStr(row, col)));
          break;
        case CellType::boolean:
          ++checksum.bools;
          break;
        case CellType::blank:
        case CellType::error:
          break;
        case CellType::empty:
          continue;
      }
      ++checksum.cells;
    }
  }
}

int writeJob(const std::string& form, const std::string& workload, const std::string& file) {
  const double start = now();
  const BookPtr book = createBook(form);
  if (book == nullptr) {
    complain(kTool.name, "this version writes no ." + form + " files");
    return kExitUnreadable;
  }
  const Shape shape = shapeOf(form, workload);
  Sheet* sheet = book->addSheet(u"Sheet1");
  if (sheet == nullptr || !fill(*book, *sheet, workload, shape)) return fail(*book, "filling");
  if (!book->save(wideText(file).c_str())) return fail(*book, "saving");
  report("write", static_cast<long>(shape.rows) * shape.cols, now() - start);
  return 0;
}

int readJob(const std::string& file) {
  const double start = now();
  const BookPtr book = createBook(formOf(file));
  if (book == nullptr) return refuse(file);
  if (!book->load(wideText(file).c_str())) return fail(*book, "loading");
  Checksum checksum;
  for (int i = 0; i < book->sheetCount(); ++i) {
    if (Sheet* sheet = book->getSheet(i)) visit(*sheet, checksum);
  }
  const double seconds = now() - start;
  std::printf("sum=%.6f strlen=%ld bools=%ld\n", checksum.sum, checksum.strings, checksum.bools);
  report("read", checksum.cells, seconds);
  return 0;
}

int resaveJob(const std::string& in, const std::string& out) {
  const double start = now();
  const BookPtr book = createBook(formOf(in));
  if (book == nullptr) return refuse(in);
  if (!book->load(wideText(in).c_str())) return fail(*book, "loading");
  if (!book->save(wideText(out).c_str())) return fail(*book, "saving");
  report("resave", 0, now() - start);
  return 0;
}

int run(int argc, char** argv) {
  CommandLine line(kTool, argc, argv);
  if (line.exitCode()) return *line.exitCode();
  const std::vector<std::string>& words = line.files();
  const std::string job = words.empty() ? "" : words[0];
  if (job == "write" && words.size() == 4 && knowsWorkload(words[1], words[2])) {
    return writeJob(words[1], words[2], words[3]);
  }
  if (job == "read" && words.size() == 2) return readJob(words[1]);
  if (job == "resave" && words.size() == 3) return resaveJob(words[1], words[2]);
  line.reject(job.empty() ? "takes a job" : "knows no such job as \"" + job + "\" with these words");
  return *line.exitCode();
}

}  // namespace
}  // namespace rubrica::tools

int main(int argc, char** argv) {
  return rubrica::tools::run(argc, argv);
}
