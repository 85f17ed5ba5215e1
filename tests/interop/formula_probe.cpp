// The two ends of the checks of formulas against other programs:
//   formula_probe dump FILE.xls    one JSON object a line: {"sheet": name, "row": r, "col": c, "formula": text} for
//   each
//                                  formula cell, 0-based, with "error" in place of "formula" where it doesn't print
//   formula_probe write FILE.xls   makes a book of the lines of standard input, each with fields parted by tabs:
//                                  "sheet NAME" (the next cells are on it), "num ROW COL VALUE", "text ROW COL TEXT",
//                                  "bool ROW COL 0|1", "formula ROW COL TEXT", "name NAME R1 R2 C1 C2" (of this sheet)
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "engine/book.h"
#include "engine/sheet.h"
#include "platform/text.h"

namespace {

using namespace rubrica;
using Book = IBookT<char16_t>;
using Sheet = ISheetT<char16_t>;

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (code < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", code);
      result += escape;
    } else {
      result += c;
    }
  }
  return result + '"';
}

std::string quoted(const char16_t* text) {
  return quoted(platform::utf8FromUtf16Lossy(text == nullptr ? u"" : text));
}

int fail(const Book& book) {
  std::cerr << book.errorMessage() << '\n';
  return 1;
}

int dump(Book& book, const std::u16string& file) {
  if (!book.load(file.c_str(), nullptr)) return fail(book);
  for (int s = 0; s < book.sheetCount(); ++s) {
    Sheet* sheet = book.getSheet(s);
    for (int row = sheet->firstRow(); row < sheet->lastRow(); ++row) {
      for (int col = sheet->firstCol(); col < sheet->lastCol(); ++col) {
        if (!sheet->isFormula(row, col)) continue;
        std::cout << "{\"sheet\": " << quoted(book.getSheetName(s)) << ", \"row\": " << row << ", \"col\": " << col;
        const char16_t* text = sheet->readFormula(row, col, nullptr);
        std::cout << (text == nullptr ? ", \"error\": " : ", \"formula\": ")
                  << (text == nullptr ? quoted(std::string(book.errorMessage())) : quoted(text)) << "}\n";
      }
    }
  }
  return 0;
}

std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t begin = 0;
  for (std::size_t tab = line.find('\t'); tab != line.npos; tab = line.find('\t', begin)) {
    fields.push_back(line.substr(begin, tab - begin));
    begin = tab + 1;
  }
  fields.push_back(line.substr(begin));
  return fields;
}

bool writeLine(Book& book, Sheet*& sheet, const std::vector<std::string>& fields) {
  const std::string& kind = fields[0];
  const auto text = [&](std::size_t i) { return platform::utf16FromUtf8(fields.at(i)); };
  const auto number = [&](std::size_t i) { return std::stoi(fields.at(i)); };
  if (kind == "sheet") {
    sheet = book.addSheet(text(1).c_str(), nullptr);
    return sheet != nullptr;
  }
  if (sheet == nullptr) return false;
  if (kind == "num") return sheet->writeNum(number(1), number(2), std::stod(fields.at(3)), nullptr);
  if (kind == "text") return sheet->writeStr(number(1), number(2), text(3).c_str(), nullptr, 0);
  if (kind == "bool") return sheet->writeBool(number(1), number(2), fields.at(3) == "1", nullptr, ErrorType::noError);
  if (kind == "formula") return sheet->writeFormula(number(1), number(2), text(3).c_str(), nullptr);
  if (kind == "name")
    return sheet->setNamedRange(text(1).c_str(), number(2), number(3), number(4), number(5), Sheet::kScopeWorkbook,
                                false);
  return false;
}

int write(Book& book, const std::u16string& file) {
  Sheet* sheet = nullptr;
  for (std::string line; std::getline(std::cin, line);) {
    if (writeLine(book, sheet, fieldsOf(line))) continue;
    std::cerr << "at " << line << ": ";
    return fail(book);
  }
  return book.save(file.c_str(), false) ? 0 : fail(book);
}

}  // namespace

int main(int count, char** arguments) {
  const std::string verb = count == 3 ? arguments[1] : "";
  if (verb != "dump" && verb != "write") {
    std::cerr << "formula_probe dump|write FILE.xls\n";
    return 2;
  }
  const std::unique_ptr<Book, void (*)(Book*)> book(createBiffBook(), [](Book* made) { made->release(); });
  const std::u16string file = platform::utf16FromUtf8(arguments[2]);
  return verb == "dump" ? dump(*book, file) : write(*book, file);
}
