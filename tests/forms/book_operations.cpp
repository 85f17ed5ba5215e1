// The operations of a book.
#include "tests/forms/operation_text.h"
#include "tests/forms/operations.h"
#include "tests/support/temporary_directory.h"

namespace rubrica::test {
namespace {

std::string sheetNames(B b) {
  std::string names;
  for (int i = 0; i < b.book->sheetCount(); ++i) names += shown(b.book->getSheetName(i)) + ' ';
  return names + std::to_string(b.book->sheetCount());
}

std::string colorParts(B b, Color color) {
  int red = -1, green = -1, blue = -1;
  b.book->colorUnpack(color, &red, &green, &blue);
  return join(red, green, blue);
}

std::string defaultFontText(B b) {
  int size = -1;
  const std::string name = shown(b.book->defaultFont(&size));
  return join(name, size);
}

// What a fresh book says of a load.
template <class Load>
std::string loaded(B b, const Load& load) {
  const BookPtr book(b.form->create());
  if (!load(*book)) return std::string("[") + book->errorMessage() + "]";
  Sheet* first = book->sheetCount() > 0 ? book->getSheet(0) : nullptr;
  const std::string value = first == nullptr ? "-" : join(first->readNum(0, 0)) + ' ' + join(first->readNum(9, 0));
  return join(book->sheetCount(), value);
}

// Two sheets with a number in the first row and another in the tenth, in a file of the book's form.
template <class Load>
Operation loading(std::string names, std::string about, Load load, std::string xls, std::string xlsx) {
  return {std::move(names),
          std::move(about),
          [](B b) {
            for (Sheet* sheet : {b.sheet, b.book->addSheet(u"Two")}) {
              sheet->writeNum(0, 0, sheet == b.sheet ? 1 : 3);
              sheet->writeNum(9, 0, sheet == b.sheet ? 2 : 4);
            }
          },
          [load](B b) {
            const TemporaryDirectory directory;
            const std::u16string path = directory.file(std::string("book.") + b.form->name).u16string();
            if (!b.book->save(path.c_str())) return "not saved: " + b.message();
            return loaded(b, [&](Book& book) { return load(book, path.c_str()); });
          },
          std::move(xls),
          std::move(xlsx)};
}

std::vector<Operation> fileOperations() {
  return {
      loading(
          "load save release errorMessage", "files", [](Book& book, const char16_t* path) { return book.load(path); },
          "2 1.00 2.00", "2 1.00 2.00"),
      loading(
          "loadSheet", "loading one sheet", [](Book& book, const char16_t* path) { return book.loadSheet(path, 1); },
          "1 3.00 4.00", "1 3.00 4.00"),
      loading(
          "loadPartially", "loading some rows of a sheet",
          [](Book& book, const char16_t* path) { return book.loadPartially(path, 0, 5, 20); }, "1 0.00 2.00",
          "1 0.00 2.00"),
      loading(
          "loadWithoutEmptyCells", "loading without empty cells",
          [](Book& book, const char16_t* path) { return book.loadWithoutEmptyCells(path); }, "2 1.00 2.00",
          "[Book::loadWithoutEmptyCells() is not supported for xlsx files]"),
      loading(
          "loadInfo", "loading the names of the sheets",
          [](Book& book, const char16_t* path) { return book.loadInfo(path); }, "0 -", "2 -"),
      {"loadRaw saveRaw", "bytes that are no workbook", [](B) {},
       [](B b) { return loaded(b, [](Book& book) { return book.loadRaw("no workbook", 11); }); },
       "[readHeader: file is corrupt (size < 512 bytes)]", "[can't read zip archive: Not a zip archive]"},
      {"load", "a file that is not there", [](B) {},
       [](B b) { return loaded(b, [](Book& book) { return book.load(u"no/such/file"); }); },
       "[can't open file for reading]", "[can't open file for reading]"},
      {"isTemplate setTemplate", "templates", [](B b) { b.book->setTemplate(); },
       [](B b) { return join(b.book->isTemplate()); }, "1", "1"},
      {"version biffVersion", "versions", [](B) {},
       [](B b) { return join(b.book->version() != 0, b.book->biffVersion()); }, "1 1536", "1 0"},
      {"setLocale", "the locale for narrow text", [](B) {},
       [](B b) { return join(b.book->setLocale("C"), b.book->setLocale("no_SUCH.locale")); }, "1 0", "1 0"},
  };
}

std::vector<Operation> sheetListOperations() {
  return {
      {"addSheet insertSheet getSheet getSheetName sheetCount", "adding sheets",
       [](B b) {
         b.sheet->writeNum(0, 0, 5);
         b.book->insertSheet(0, u"First");
         b.book->addSheet(u"Last", b.sheet);
       },
       [](B b) { return join(sheetNames(b), b.book->getSheet(2)->readNum(0, 0), b.book->getSheet(3) == nullptr); },
       "First One Last 3 5.00 1", "First One Last 3 5.00 1"},
      {"moveSheet delSheet", "moving and deleting sheets",
       [](B b) {
         for (const char16_t* name : {u"Two", u"Three", u"Four"}) b.book->addSheet(name);
         b.book->moveSheet(3, 0);
         b.book->delSheet(1);
       },
       [](B b) { return sheetNames(b); }, "Four Two Three 3", "Four Two Three 3"},
      {"delSheet", "deleting a sheet that is not there", [](B b) { b.book->delSheet(1); },
       [](B b) { return sheetNames(b); }, "[index is out of range] One 1", "[index is out of range] One 1"},
      {"sheetType", "kinds of sheets", [](B) {}, [](B b) { return join(b.book->sheetType(0), b.book->sheetType(1)); },
       "0 2", "0 2"},
      {"activeSheet setActiveSheet", "the sheet on top",
       [](B b) {
         b.book->addSheet(u"Two");
         b.book->setActiveSheet(1);
       },
       [](B b) { return join(b.book->activeSheet()); }, "1", "1"},
  };
}

std::vector<Operation> valueOperations() {
  return {
      {"addFormat format formatSize", "formats of the book", [](B b) { b.book->addFormat()->setNumFormat(9); },
       [](B b) { return join(b.book->format(b.book->formatSize() - 1)->numFormat(), b.book->format(9999) == nullptr); },
       "9 1", "9 1"},
      {"addFont font fontSize", "fonts of the book", [](B b) { b.book->addFont()->setSize(17); },
       [](B b) { return join(b.book->font(b.book->fontSize() - 1)->size(), b.book->font(9999) == nullptr); }, "17 1",
       "17 1"},
      {"formatSize fontSize", "formats and fonts of a new book", [](B) {},
       [](B b) { return join(b.book->formatSize(), b.book->fontSize()); }, "21 5", "1 1"},
      {"addCustomNumFormat customNumFormat", "number formats of one's own",
       [](B b) {
         Format* format = b.book->addFormat();
         format->setNumFormat(b.book->addCustomNumFormat(u"0.0 \"pieces\""));
         b.sheet->writeNum(0, 0, 1, format);
       },
       [](B b) { return shown(b.book->customNumFormat(b.sheet->cellFormat(0, 0)->numFormat())); }, "0.0 \"pieces\"",
       "0.0 \"pieces\""},
      {"addCustomNumFormat", "the id of the first number format of one's own", [](B) {},
       [](B b) { return join(b.book->addCustomNumFormat(u"0.0 \"pieces\"")); }, "164", "166"},
      {"datePack dateUnpack", "dates as numbers", [](B) {},
       [](B b) {
         int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
         const double date = b.book->datePack(2026, 11, 21, 6, 30);
         const bool is = b.book->dateUnpack(date, &year, &month, &day, &hour, &minute, &second);
         return join(date, is, year, month, day, hour, minute, second);
       },
       "46347.27 1 2026 11 21 6 30 0", "46347.27 1 2026 11 21 6 30 0"},
      {"isDate1904 setDate1904", "the date system", [](B b) { b.book->setDate1904(); },
       [](B b) { return join(b.book->isDate1904(), b.book->datePack(1904, 1, 2)); }, "1 1.00", "1 1.00"},
      {"colorPack colorUnpack", "a colour that the palette lacks", [](B) {},
       [](B b) { return colorParts(b, b.book->colorPack(10, 200, 30)); }, "10 200 30", "0 255 0"},
      {"rgbMode setRgbMode", "colours by their parts", [](B) {},
       [](B b) {
         const bool before = b.book->rgbMode();
         b.book->setRgbMode();
         return join(before, b.book->rgbMode(), colorParts(b, b.book->colorPack(10, 200, 30)));
       },
       "0 1 10 200 30", "0 1 10 200 30"},
      {"defaultFont setDefaultFont", "the default font", [](B b) { b.book->setDefaultFont(u"Verdana", 12); },
       [](B b) { return defaultFontText(b); }, "Verdana 12", "Verdana 12"},
      {"defaultFont", "the default font that nobody set", [](B) {}, [](B b) { return defaultFontText(b); }, "Arial 10",
       "Calibri 11"},
      {"refR1C1 setRefR1C1", "references by their distance",
       [](B b) {
         b.sheet->writeFormula(1, 1, u"A1*2");
         b.book->setRefR1C1();
       },
       [](B b) { return join(b.book->refR1C1(), shown(b.sheet->readFormula(1, 1))); }, "1 A1*2", "1 R[-1]C[-1]*2"},
  };
}

std::vector<Operation> pictureOperations() {
  return {
      {"addPicture2 pictureSize getPicture", "pictures of the book",
       [](B b) { b.sheet->setPicture(0, 0, addPng(b, 40, 20), 1.0, 0, 0, PicturePosition::moveAndSize); },
       [](B b) {
         const void* data = nullptr;
         std::size_t size = 0;
         const PictureType type = b.book->getPicture(0, &data, &size);
         return join(b.book->pictureSize(), type, size == png(40, 20).size(), b.book->getPicture(1, &data, &size));
       },
       "1 0 1 255", "1 0 1 255"},
      {"addPicture", "a picture from a file",
       [](B b) {
         const TemporaryDirectory directory;
         writeText(directory.file("a.png"), png(30, 10));
         const int id = b.book->addPicture(directory.file("a.png").u16string().c_str());
         b.sheet->setPicture(0, 0, id, 1.0, 0, 0, PicturePosition::moveAndSize);
       },
       [](B b) { return join(b.book->pictureSize()); }, "1", "1"},
      {"addPicture2", "a picture of an unknown kind", [](B b) { b.book->addPicture2("no picture", 10); },
       [](B b) { return join(b.book->pictureSize()); }, "[unknown picture format] 0", "[unknown picture format] 0"},
      {"addPictureAsLink", "a picture that is left in its file", [](B) {},
       [](B b) {
         const TemporaryDirectory directory;
         writeText(directory.file("a.png"), png(30, 10));
         const int id = b.book->addPictureAsLink(directory.file("a.png").u16string().c_str(), false);
         return withMessage(b, id);
       },
       "-1 function is not supported for xls files", "0 ok"},
  };
}

}  // namespace

std::vector<Operation> bookOperations() {
  std::vector<Operation> all;
  for (auto part : {fileOperations(), sheetListOperations(), valueOperations(), pictureOperations()}) {
    for (Operation& operation : part) all.push_back(std::move(operation));
  }
  return all;
}

}  // namespace rubrica::test
