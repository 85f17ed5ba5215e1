// Uses every public header: writes a book, loads it again and prints what it holds.
#include <cstdio>

#include "engine/address.h"
#include "engine/auto_filter.h"
#include "engine/book_ptr.h"
#include "engine/date_serial.h"
#include "engine/xlerror.h"

namespace {

int fail(const rubrica::Book& book) {
  std::fprintf(stderr, "%s\n", book.errorMessage());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::u16string path;
  for (const char* c = argv[1]; *c != '\0'; ++c) path += static_cast<char16_t>(*c);

  const rubrica::BookPtr book(rubrica::createBiffBook());
  rubrica::Sheet* sheet = book->addSheet(u"Prices");
  rubrica::Format* date = book->addFormat();
  date->setNumFormat(rubrica::numformat::date);
  sheet->writeStr(0, 0, u"Tea");
  sheet->writeNum(0, 1, 2.5);
  sheet->writeFormulaNum(1, 1, u"SUM(B1:B1)*2", 5);
  sheet->writeNum(2, 0, rubrica::datePack(false, 2026, 11, 20, 0, 0, 0, 0), date);
  if (!book->save(path.c_str())) return fail(*book);

  const rubrica::BookPtr again(rubrica::createBiffBook());
  if (!again->load(path.c_str())) return fail(*again);
  sheet = again->getSheet(0);
  const std::u16string formula = sheet->readFormula(1, 1);
  int year = 0, month = 0, day = 0;
  rubrica::dateUnpack(false, sheet->readNum(2, 0), &year, &month, &day, nullptr, nullptr, nullptr, nullptr);
  const rubrica::CellAddress b2 = rubrica::parseAddress(u"$B$2");
  std::printf("version %x\n", again->version());
  std::printf("tea %g, total %g by a formula of %zu characters\n", sheet->readNum(0, 1), sheet->readNum(b2.row, b2.col),
              formula.size());
  std::printf("date %d-%d-%d %s\n", year, month, day, sheet->isDate(2, 0) ? "as a date" : "as a number");
  try {
    rubrica::parseAddress(u"nowhere!");
  } catch (const rubrica::xlerror& error) {
    std::printf("caught: %s\n", error.what());
  }
  return 0;
}
