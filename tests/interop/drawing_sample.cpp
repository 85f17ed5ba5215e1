// Writes an .xls book with ten pictures of every kind on three sheets, comments beside them, and columns resized and
// hidden; prints one line for each picture and comment. drawing_judge.py reads both.
#include <cstdio>
#include <string>
#include <vector>

#include "engine/book.h"

namespace {

constexpr int kPicturesOfAKind = 10, kCommentsOfASheet = 12;

std::u16string wide(const char* text) {
  const std::string_view view(text);
  return {view.begin(), view.end()};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: drawing_sample FILE PICTURE...\n", stderr);
    return 2;
  }
  rubrica::Book* book = rubrica::createBiffBook();
  std::vector<rubrica::Sheet*> sheets;
  for (const char16_t* name : {u"One", u"Two", u"Three"}) {
    rubrica::Sheet* sheet = book->addSheet(name);
    sheet->setCol(1, 1, 20);
    sheet->setCol(2, 2, 10, nullptr, true);
    sheet->setCol(5, 5, 3.5);
    sheet->setRow(4, 40);
    sheet->setRow(9, 6);
    sheet->writeStr(0, 0, u"pictures");
    sheet->setLandscape(true);
    sheet->setPrintFit(1, 1);
    sheets.push_back(sheet);
  }
  int placed = 0;
  for (int kind = 0; kind + 2 < argc; ++kind) {
    for (int n = 0; n < kPicturesOfAKind; ++n, ++placed) {
      const int id = book->addPicture(wide(argv[kind + 2]).c_str());
      if (id < 0) {
        std::fprintf(stderr, "%s: %s\n", argv[kind + 2], book->errorMessage());
        return 1;
      }
      const int at = placed % 3;
      const int row = 2 + 5 * (placed / 3 / 4), col = placed / 3 % 4 * 3;
      const int width = 60 + 10 * (n % 5), height = 40 + 5 * kind, x = n % 4, y = n % 3;
      sheets[static_cast<std::size_t>(at)]->setPicture2(row, col, id, width, height, x, y);
      std::printf("picture %d %d %d %d %d %d %d %d\n", at, row, col, width, height, x, y, kind);
    }
  }
  for (int at = 0; at < 3; ++at) {
    for (int n = 0; n < kCommentsOfASheet; ++n) {
      const std::string text = "Remark " + std::to_string(n) + " of sheet " + std::to_string(at);
      const std::string author = n % 2 == 0 ? "Ann" : "Bob";
      sheets[static_cast<std::size_t>(at)]->writeComment(n, n + 2, wide(text.c_str()).c_str(),
                                                         wide(author.c_str()).c_str());
      std::printf("comment %d %d %d %s %s\n", at, n, n + 2, author.c_str(), text.c_str());
    }
  }
  const bool saved = book->save(wide(argv[1]).c_str());
  if (!saved) std::fprintf(stderr, "%s\n", book->errorMessage());
  book->release();
  return saved ? 0 : 1;
}
