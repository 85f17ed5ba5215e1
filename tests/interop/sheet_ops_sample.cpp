// Writes an .xls book with every sheet operation whose result another program can show: sheet_ops_judge.py reads it.
#include <cstdio>
#include <string>

#include "engine/book.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: sheet_ops_sample FILE\n", stderr);
    return 2;
  }
  rubrica::Book* book = rubrica::createBiffBook();
  rubrica::Sheet* sheet = book->addSheet(u"Operations");
  rubrica::Format* bold = book->addFormat(nullptr);
  rubrica::Font* font = book->addFont(nullptr);
  font->setBold(true);
  bold->setFont(font);
  bold->setBorder();

  sheet->writeStr(0, 0, u"Quarterly figures, northern region", bold);
  sheet->setMerge(0, 0, 0, 3);
  for (int row = 2; row < 40; ++row) {
    for (int col = 0; col < 6; ++col) sheet->writeNum(row, col, row * 100 + col);
    sheet->writeStr(row, 6, u"A remark that the column is fitted to");
  }
  sheet->setCol(1, 1, 20);
  sheet->setCol(2, 2, 10, nullptr, true);
  sheet->setCol(6, 6, -1);
  sheet->setRow(2, 30);
  sheet->setRow(3, 15, nullptr, true);
  sheet->groupRows(5, 9, false);
  sheet->groupRows(12, 14, true);
  sheet->groupCols(4, 5, false);
  sheet->setHorzPageBreak(20);
  sheet->setHorzPageBreak(30);
  sheet->setVertPageBreak(4);
  sheet->split(2, 1);
  sheet->setZoom(150);
  sheet->setLandscape(true);
  sheet->setPaper(9);
  sheet->setHeader(u"&CFigures", 0.3);
  sheet->setMarginLeft(0.25);
  sheet->addHyperlink(u"https://example.org/figures", 2, 2, 0, 0);
  sheet->addHyperlink(u"other.xls#Data!B2", 3, 4, 0, 1);
  sheet->addHyperlink(u"Operations!G3", 5, 5, 0, 0);
  sheet->setTabRgbColor(250, 3, 1);
  sheet->addIgnoredError(2, 0, 39, 5, 4);
  sheet->setProtect(true, u"secret");
  // Everything below row 10 goes down by two, and everything right of column B right by one.
  sheet->insertRow(10, 11);
  sheet->insertCol(2, 2);
  sheet->removeRow(35, 36);

  const std::string narrow = argv[1];
  const std::u16string name(narrow.begin(), narrow.end());
  const bool saved = book->save(name.c_str());
  if (!saved) std::fprintf(stderr, "%s\n", book->errorMessage());
  book->release();
  return saved ? 0 : 1;
}
