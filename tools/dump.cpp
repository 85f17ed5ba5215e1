// rubrica-dump: prints what the engine finds in a workbook, one JSON object a line.
#include <cstdio>
#include <string>

#include "engine/book.h"
#include "platform/input_file.h"
#include "tools/book_opener.h"
#include "tools/cell_value.h"
#include "tools/command_line.h"
#include "tools/json_writer.h"
#include "tools/package_file.h"
#include "tools/progress.h"
#include "tools/record_names.h"
#include "tools/record_stream.h"
#include "tools/sheet_facts.h"

namespace rubrica::tools {
namespace {

constexpr OptionRow kOptions[] = {
    {"sheet", "N", "only the sheet at this position"},
    {"styles", nullptr, "with each cell also its number format, font, fill, alignment and borders"},
    {"records", nullptr, "the raw records of an .xls workbook stream, or the parts of an .xlsx package, instead"},
};

constexpr ToolText kTool = {"rubrica-dump", "[--sheet N] [--styles] FILE\n       rubrica-dump --records FILE",
                            "Prints a workbook as JSON Lines in UTF-8: the book, then each sheet and its cells in row "
                            "order. All numbers count\n"
                            "from 0.",
                            kOptions, "Exit code: 0 all was printed, 1 the file can't be read, 2 the call is wrong.\n"};

constexpr int kExitUnreadable = 1;

struct Options {
  int sheet = -1;
  bool styles = false, records = false;
  std::string file;
};

void print(JsonWriter& json) {
  std::fwrite(json.text().data(), 1, json.text().size(), stdout);
  std::fputc('\n', stdout);
  json.clear();
}

const char* typeName(CellType type) {
  switch (type) {
    case CellType::number:
      return "number";
    case CellType::string:
      return "string";
    case CellType::boolean:
      return "bool";
    case CellType::error:
      return "error";
    case CellType::blank:
    case CellType::empty:
      break;
  }
  return "blank";
}

void writeRange(JsonWriter& json, int rowFirst, int rowLast, int colFirst, int colLast) {
  json.beginArray().value(rowFirst).value(rowLast).value(colFirst).value(colLast).endArray();
}

class Dump {
 public:
  Dump(Book& book, const Options& options, const std::string& form) : _book(book), _options(options), _form(form) {}

  void run() {
    dumpBook();
    for (int i = 0; i < _book.sheetCount(); ++i) {
      if (_options.sheet >= 0 && i != _options.sheet) continue;
      Sheet* sheet = _book.getSheet(i);
      if (sheet == nullptr) continue;  // a chart of an .xlsx book, which holds no cells
      dumpSheet(*sheet, i);
      dumpCells(*sheet, i);
    }
  }

 private:
  void dumpBook() {
    _json.beginObject().key("book").beginObject();
    _json.member("form", std::string_view(_form)).member("sheets", _book.sheetCount());
    _json.member("active", _book.activeSheet()).member("date1904", _book.isDate1904());
    _json.endObject().endObject();
    print(_json);
  }

  void dumpSheet(Sheet& sheet, int index) {
    _json.beginObject().key("sheet").beginObject().member("index", index);
    _json.member("name", std::u16string_view(sheet.name()));
    static constexpr const char* kTypes[] = {"sheet", "chart", "unknown"};
    _json.member("type", kTypes[static_cast<int>(_book.sheetType(index))]);
    _json.member("state", static_cast<int>(sheet.hidden()));
    _json.member("firstRow", sheet.firstRow()).member("lastRow", sheet.lastRow());
    _json.member("firstCol", sheet.firstCol()).member("lastCol", sheet.lastCol());
    dumpMerges(sheet);
    dumpHyperlinks(sheet);
    _json.member("pictures", sheet.pictureSize());
    dumpNames(sheet);
    _json.member("comments", static_cast<int>(comments(_book, sheet).size()));
    _json.endObject().endObject();
    print(_json);
  }

  void dumpMerges(Sheet& sheet) {
    _json.key("merges").beginArray();
    for (int i = 0; i < sheet.mergeSize(); ++i) {
      int rowFirst = 0, rowLast = 0, colFirst = 0, colLast = 0;
      if (sheet.merge(i, &rowFirst, &rowLast, &colFirst, &colLast))
        writeRange(_json, rowFirst, rowLast, colFirst, colLast);
    }
    _json.endArray();
  }

  void dumpHyperlinks(Sheet& sheet) {
    _json.key("hyperlinks").beginArray();
    for (int i = 0; i < sheet.hyperlinkSize(); ++i) {
      int rowFirst = 0, rowLast = 0, colFirst = 0, colLast = 0;
      const char16_t* target = sheet.hyperlink(i, &rowFirst, &rowLast, &colFirst, &colLast);
      if (target == nullptr) continue;
      _json.beginObject().key("ref");
      writeRange(_json, rowFirst, rowLast, colFirst, colLast);
      _json.member("target", std::u16string_view(target)).endObject();
    }
    _json.endArray();
  }

  void dumpNames(Sheet& sheet) {
    _json.key("names").beginArray();
    for (int i = 0; i < sheet.namedRangeSize(); ++i) {
      const char16_t* name = sheet.namedRange(i, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
      if (name != nullptr) _json.value(std::u16string_view(name));
    }
    _json.endArray();
  }

  void dumpCells(Sheet& sheet, int index) {
    const int lastRow = sheet.lastRow(), firstCol = sheet.firstCol(), lastCol = sheet.lastCol();
    for (int row = sheet.firstRow(); row < lastRow; ++row) {
      for (int col = firstCol; col < lastCol; ++col) {
        const CellType type = sheet.cellType(row, col);
        if (type == CellType::empty && !sheet.isFormula(row, col)) continue;
        _json.beginObject().key("cell").beginObject();
        _json.member("s", index).member("r", row).member("c", col).member("t", typeName(type));
        dumpValue(sheet, row, col, type);
        if (const char16_t* text = sheet.isFormula(row, col) ? sheet.readFormula(row, col) : nullptr) {
          _json.member("f", std::u16string_view(text));
        }
        if (sheet.isDate(row, col)) _json.member("date", true);
        if (_options.styles) dumpStyle(sheet.cellFormat(row, col));
        _json.endObject().endObject();
        print(_json);
      }
    }
  }

  void dumpValue(Sheet& sheet, int row, int col, CellType type) {
    switch (type) {
      case CellType::number:
        _json.member("v", sheet.readNum(row, col));
        break;
      case CellType::string: {
        const char16_t* text = sheet.readStr(row, col);
        _json.member("v", std::u16string_view(text == nullptr ? u"" : text));
        break;
      }
      case CellType::boolean:
        _json.member("v", sheet.readBool(row, col));
        break;
      case CellType::error:
        _json.member("v", errorText(sheet.readError(row, col)));
        break;
      case CellType::blank:
      case CellType::empty:
        break;
    }
  }

  void dumpStyle(Format* format) {
    if (format == nullptr) return;
    _json.key("fmt").beginObject().member("id", format->numFormat());
    const char16_t* text =
        format->numFormat() >= numformat::firstCustom ? _book.customNumFormat(format->numFormat()) : nullptr;
    if (text != nullptr) _json.member("text", std::u16string_view(text));
    _json.endObject();
    if (Font* font = format->font()) {
      _json.key("font").beginObject();
      const char16_t* name = font->name();
      _json.member("name", std::u16string_view(name == nullptr ? u"" : name)).member("size", font->size());
      _json.member("bold", font->bold()).member("italic", font->italic()).member("strike", font->strikeOut());
      _json.member("underline", static_cast<int>(font->underline())).member("script", static_cast<int>(font->script()));
      _json.member("color", font->color()).endObject();
    }
    _json.key("fill").beginObject().member("pattern", static_cast<int>(format->fillPattern()));
    _json.member("fg", format->patternForegroundColor()).member("bg", format->patternBackgroundColor()).endObject();
    _json.key("align").beginObject().member("h", static_cast<int>(format->alignH()));
    _json.member("v", static_cast<int>(format->alignV())).member("wrap", format->wrap());
    _json.member("rotation", format->rotation()).member("indent", format->indent()).endObject();
    _json.key("border").beginObject();
    writeSide("left", format->borderLeft(), format->borderLeftColor());
    writeSide("right", format->borderRight(), format->borderRightColor());
    writeSide("top", format->borderTop(), format->borderTopColor());
    writeSide("bottom", format->borderBottom(), format->borderBottomColor());
    _json.endObject();
  }

  void writeSide(std::string_view name, BorderStyle style, Color color) {
    _json.key(name).beginArray().value(static_cast<int>(style)).value(color).endArray();
  }

  Book& _book;
  const Options& _options;
  const std::string& _form;
  JsonWriter _json;
};

int fail(Progress& progress, const std::string& message) {
  progress.finish();
  complain(kTool.name, message);
  return kExitUnreadable;
}

void printRecords(const RecordStream& stream) {
  JsonWriter json;
  for (const RawStreamRecord& record : stream.records) {
    json.beginObject().key("record").beginObject();
    json.member("offset", static_cast<std::int64_t>(record.offset)).member("id", int{record.recordId});
    json.member("name", std::string_view(recordName(record.recordId)));
    json.member("size", int{record.statedSize}).member("substream", record.substream);
    json.endObject().endObject();
    print(json);
  }
}

void printParts(const PackageFile& package) {
  JsonWriter json;
  for (const PackagePart& part : package.parts) {
    json.beginObject().key("part").beginObject();
    json.member("name", std::string_view(part.name)).member("type", std::string_view(part.type));
    json.member("handling", nameOf(part.handling)).member("size", static_cast<std::int64_t>(part.size));
    json.endObject().endObject();
    print(json);
  }
}

// A damaged file is printed as far as it goes.
int dumpRecords(const Options& options, Progress& progress) {
  const auto bytes = platform::readWholeFile(wideText(options.file));
  if (!bytes) return fail(progress, options.file + ": can't open file for reading");
  std::vector<std::string> damages;
  if (formOf(options.file) == "xls") {
    const RecordStream stream = readRecordStream(*bytes);
    printRecords(stream);
    damages = stream.damage;
  } else {
    const PackageFile package = readPackage(*bytes);
    printParts(package);
    damages = package.damage;
  }
  for (const std::string& damage : damages) complain(kTool.name, options.file + ": " + damage);
  return damages.empty() ? kExitFine : kExitUnreadable;
}

int dumpBook(const Options& options, Progress& progress) {
  const std::string form = formOf(options.file);
  const BookPtr book = createBook(form);
  if (book == nullptr) return fail(progress, options.file + ": this version reads no ." + form + " files");
  if (!book->load(wideText(options.file).c_str())) return fail(progress, options.file + ": " + book->errorMessage());
  if (options.sheet >= book->sheetCount()) {
    return fail(progress, options.file + " has " + std::to_string(book->sheetCount()) + " sheets, none at position " +
                              std::to_string(options.sheet));
  }
  progress.begin("printing " + options.file);
  Dump(*book, options, form).run();
  return kExitFine;
}

int run(int argc, char** argv) {
  CommandLine line(kTool, argc, argv);
  line.expectFiles(line.exitCode() ? line.files().size() : 1);
  Options options;
  options.sheet = line.number("sheet", -1);
  options.styles = line.has("styles");
  options.records = line.has("records");
  if (options.records && (options.styles || line.has("sheet"))) line.reject("--records goes with no other option");
  if (line.exitCode()) return *line.exitCode();
  options.file = line.files().front();
  Progress progress(kTool.name);
  progress.begin("reading " + options.file);
  const int code = options.records ? dumpRecords(options, progress) : dumpBook(options, progress);
  progress.finish();
  return finishOutput(kTool.name) ? code : kExitUnreadable;
}

}  // namespace
}  // namespace rubrica::tools

int main(int argc, char** argv) {
  return rubrica::tools::run(argc, argv);
}
