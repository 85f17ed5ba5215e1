// rubrica-convert: a workbook in the other file form, by what the engine's interfaces can say of it.
#include <cstdio>
#include <filesystem>

#include "tools/book_copy.h"
#include "tools/command_line.h"
#include "tools/unmodelled.h"

namespace rubrica::tools {
namespace {

constexpr OptionRow kOptions[] = {
    {"to", "FORM", "xls or xlsx; without it the ending of OUT decides"},
    {"rebuild", nullptr, "where both forms are the same, too, make a new book cell by cell"},
    {"quiet", nullptr, "don't list what is lost"},
};

constexpr ToolText kTool = {
    "rubrica-convert", "[OPTIONS] IN OUT",
    "Writes the workbook IN as OUT in the other file form: values, formulas, formats, fonts, sizes, merged cells, "
    "names,\n"
    "hyperlinks, comments, pictures, page setup, views and protection. What the other form can't hold, or the engine\n"
    "can't read, is listed. Where both forms are the same the book is loaded and saved, which also keeps what the "
    "engine\n"
    "doesn't understand.",
    kOptions, "Exit code: 0 all was carried over, 1 something was lost, 2 a file can't be read or written.\n"};

struct Target {
  std::string form;
  bool isTemplate = false;
};

Target targetOf(const std::string& path, const std::string& wanted) {
  std::string ending = std::filesystem::path(path).extension().string();
  for (char& c : ending) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  Target target;
  target.isTemplate = ending == ".xlt" || ending == ".xltx" || ending == ".xltm";
  if (!wanted.empty()) {
    target.form = wanted;
  } else if (ending == ".xls" || ending == ".xlt") {
    target.form = "xls";
  } else if (ending == ".xlsx" || ending == ".xlsm" || ending == ".xltx" || ending == ".xltm") {
    target.form = "xlsx";
  }
  return target;
}

int fail(Progress& progress, const std::string& message) {
  progress.finish();
  complain(kTool.name, message);
  return kExitFailed;
}

int convert(const std::string& in, const std::string& out, const Target& target, bool rebuild, Losses& losses,
            Progress& progress) {
  progress.begin("reading " + in);
  OpenedBook source = openBook(in);
  if (source.book == nullptr) return fail(progress, source.error);
  if (source.form == target.form && !rebuild) {
    progress.begin("writing " + out);
    if (target.isTemplate) source.book->setTemplate(true);
    if (!source.book->save(wideText(out).c_str())) return fail(progress, out + ": " + source.book->errorMessage());
    return kExitFine;
  }
  const BookPtr made = createBook(target.form);
  if (made == nullptr) return fail(progress, out + ": this version writes no ." + target.form + " files");
  if (!BookCopy(source, *made, target.form, losses).run(progress)) {
    return fail(progress, out + ": " + made->errorMessage());
  }
  for (const std::string& content : unmodelledContent(in, source.form)) losses.add("not carried over: " + content);
  made->setTemplate(target.isTemplate);
  progress.begin("writing " + out);
  if (!made->save(wideText(out).c_str())) return fail(progress, out + ": " + made->errorMessage());
  return kExitFine;
}

int run(int argc, char** argv) {
  CommandLine line(kTool, argc, argv);
  line.expectFiles(line.exitCode() ? line.files().size() : 2);
  if (line.exitCode()) return *line.exitCode();
  const std::string wanted = line.value("to");
  if (line.has("to") && wanted != "xls" && wanted != "xlsx")
    line.reject("--to takes xls or xlsx, not \"" + wanted + "\"");
  const Target target = targetOf(line.files()[1], wanted);
  if (target.form.empty()) line.reject("the ending of " + line.files()[1] + " names no file form: use --to");
  if (line.exitCode()) return *line.exitCode();

  Progress progress(kTool.name);
  Losses losses;
  const int code = convert(line.files()[0], line.files()[1], target, line.has("rebuild"), losses, progress);
  progress.finish();
  if (code != kExitFine) return code;
  if (!line.has("quiet")) {
    for (const std::string& text : losses.lines()) std::printf("%s\n", text.c_str());
  }
  if (!finishOutput(kTool.name)) return kExitFailed;
  return losses.empty() ? kExitFine : kExitFinding;
}

}  // namespace
}  // namespace rubrica::tools

int main(int argc, char** argv) {
  return rubrica::tools::run(argc, argv);
}
