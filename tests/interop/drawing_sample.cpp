// Writes an .xls book with ten pictures of every kind on three sheets, comments beside them, and columns resized and
// hidden; prints one line for each picture and comment. Or adds a picture and a comment to each worksheet of a book of
// another program, and prints the numbers of these sheets. drawing_judge.py reads all of it.
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

int addedPicture(rubrica::Book& book, const char* path) {
  const int id = book.addPicture(wide(path).c_str());
  if (id < 0) std::fprintf(stderr, "%s: %s\n", path, book.errorMessage());
  return id;
}

bool fill(rubrica::Book* book, const std::vector<const char*>& pictures) {
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
  for (int kind = 0; kind < static_cast<int>(pictures.size()); ++kind) {
    for (int n = 0; n < kPicturesOfAKind; ++n, ++placed) {
      const int id = addedPicture(*book, pictures[static_cast<std::size_t>(kind)]);
      if (id < 0) return false;
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
  return true;
}

// Far from what the sheets of other programs hold, and within what every reader shows.
constexpr int kFarRow = 4000, kFarColumn = 100;

bool extend(rubrica::Book* book, const char* source, const char* picture) {
  if (!book->load(wide(source).c_str())) {
    std::fprintf(stderr, "%s: %s\n", source, book->errorMessage());
    return false;
  }
  const int id = addedPicture(*book, picture);
  if (id < 0) return false;
  for (int i = 0; i < book->sheetCount(); ++i) {
    if (book->sheetType(i) != rubrica::SheetType::sheet) continue;
    rubrica::Sheet* sheet = book->getSheet(i);
    sheet->setPicture(kFarRow, kFarColumn, id);
    sheet->writeComment(kFarRow + 4, kFarColumn, u"Added", u"Ann");
    std::printf("%d\n", i);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const bool extends = argc == 5 && std::string_view(argv[1]) == "--add";
  if (argc < 3) {
    std::fputs("usage: drawing_sample FILE PICTURE...\n       drawing_sample --add BOOK FILE PICTURE\n", stderr);
    return 2;
  }
  rubrica::Book* book = rubrica::createBiffBook();
  const bool made = extends ? extend(book, argv[2], argv[4]) : fill(book, {argv + 2, argv + argc});
  const bool saved = made && book->save(wide(argv[extends ? 3 : 1]).c_str());
  if (made && !saved) std::fprintf(stderr, "%s\n", book->errorMessage());
  book->release();
  return saved ? 0 : 1;
}
