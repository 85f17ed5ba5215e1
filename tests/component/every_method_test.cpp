// Each method and property of the component, on a workbook of either file form that it loads: what it did stands in the
// saved file. Where the forms are meant to differ, the difference is stated.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "platform/text.h"
#include "tests/component/component_calls.h"
#include "tests/support/corpus.h"

namespace rubrica::simhost::test {
namespace {

namespace fs = std::filesystem;

Value integer(int value) {
  return Value::integer(value);
}
Value number(double value) {
  return Value::number(value);
}
Value text(const char* value) {
  return Value::utf8(value);
}

// One black dot.
constexpr unsigned char kPng[] = {0x89, 'P',  'N',  'G',  0x0D, 0x0A, 0x1A, 0x0A, 0,    0,    0,    0x0D, 'I',  'H',
                                  'D',  'R',  0,    0,    0,    1,    0,    0,    0,    1,    8,    0,    0,    0,
                                  0,    0x3A, 0x7E, 0x9B, 0x55, 0,    0,    0,    0x0A, 'I',  'D',  'A',  'T',  0x78,
                                  0x9C, 0x63, 0x60, 0,    0,    0,    2,    0,    1,    0x48, 0xAF, 0xA4, 0x71, 0,
                                  0,    0,    0,    'I',  'E',  'N',  'D',  0xAE, 0x42, 0x60, 0x82};

// Where the first worksheet of a book has room: past all that it holds.
struct Place {
  int sheet = 0;  // from 1
  int row = 0;    // from 1: a row and some thirty below it
  int column = 0;
  bool isR1C1 = false;  // the book shows references by their distance

  int engineRow(int offset = 0) const { return row - 1 + offset; }
  int engineColumn(int offset = 0) const { return column - 1 + offset; }
};

std::optional<Place> placeIn(Book& book) {
  constexpr int mostRows = 65000, mostColumns = 200;
  for (int i = 0; i < book.sheetCount(); ++i) {
    if (book.sheetType(i) != SheetType::sheet) continue;
    Sheet* sheet = book.getSheet(i);
    if (sheet == nullptr || sheet->lastRow() > mostRows || sheet->lastCol() > mostColumns) continue;
    return Place{i + 1, sheet->lastRow() + 10, sheet->lastCol() + 5, book.refR1C1()};
  }
  return std::nullopt;
}

struct BookForm {
  const char* name;
  Book* (*create)() noexcept;
  const char* constant;
  bool keepsComments, keepsRgbMode, namesNewFonts;
  bool showsR1C1;  // formulas of .xls books are shown in A1 whatever the book prefers
  friend void PrintTo(const BookForm& form, std::ostream* out) { *out << form.name; }
};
constexpr BookForm kBookForms[] = {{"xls", &createBiffBook, "kXLxls", true, false, true, false},
                                   {"xlsx", &createXmlBook, "kXLxlsx", false, true, false, true}};

class EveryMethod : public ComponentCalls, public testing::WithParamInterface<BookForm> {
 protected:
  const BookForm& form() const { return GetParam(); }
  fs::path fileNamed(const std::string& stem) const { return directory.file(stem + "." + form().name); }
  BookPtr loadedBook(const fs::path& path) const {
    BookPtr book(form().create());
    return book->load(path.u16string().c_str()) ? std::move(book) : nullptr;
  }
  fs::path writeSample() const;
  // An empty one of this form.
  Object newWorkbook() {
    const Object made = make("Workbook");
    call(made, "$initialize", {constant(form().constant)});
    return made;
  }
  void useAll(const fs::path& source, Place at);

  Value row(int offset) const { return integer(place.row + offset); }
  Value column(int offset) const { return integer(place.column + offset); }
  Object cellAt(int rowOffset, int columnOffset) {
    return cell(sheet, place.row + rowOffset, place.column + columnOffset);
  }
  void expectTrue(const Object& object, const char* method, Values values) {
    EXPECT_TRUE(call(object, method, std::move(values)).toBoolean()) << method << ": " << message();
  }
  // "SUM(A1:B2)*2" one row below the place.
  std::string shownFormula() const {
    if (!place.isR1C1 || !form().showsR1C1) return "SUM(A1:B2)*2";
    const auto cornerAt = [&](int corner) {
      return "R[" + std::to_string(corner - place.engineRow(1)) + "]C[" +
             std::to_string(corner - place.engineColumn()) + "]";
    };
    return "SUM(" + cornerAt(0) + ":" + cornerAt(1) + ")*2";
  }
  std::string message() { return get(workbook, "$errorMessage").toUtf8(); }

  void moveLines();
  void useSheet();
  void assignSheet();
  void useStyles();
  void useCells();
  void usePictures();
  void useWorkbook();
  void useLists(const fs::path& saved);
  void checkSheet(Book& book);
  void checkStyles(Sheet& engineSheet);
  void checkCells(Book& book);

  Place place;
  Object workbook, sheet, format, font;
  Value ownNumFormat;
  int filePicture = -1, rawPicture = -1;
};

// First, since all that stands behind or below moves.
void EveryMethod::moveLines() {
  const auto mark = [&](int rowOffset, int columnOffset, const char* value) {
    set(cellAt(rowOffset, columnOffset), "$value", text(value));
  };
  mark(20, 0, "pushed down");
  expectTrue(sheet, "$insertRow", {row(19), row(20)});
  mark(28, 0, "pulled up");
  expectTrue(sheet, "$removeRow", {row(26), row(27)});
  mark(0, 20, "pushed right");
  expectTrue(sheet, "$insertCol", {column(19), column(20)});
  mark(0, 30, "pulled left");
  expectTrue(sheet, "$removeCol", {column(27), column(28)});
  mark(18, 0, "cleared");
  call(sheet, "$clear", {row(18), row(18), column(0), column(0)});
}

void EveryMethod::useSheet() {
  expectTrue(sheet, "$setCol", {column(3), column(4), number(20)});
  EXPECT_EQ(call(sheet, "$colWidth", {column(4)}).toNumber(), 20);
  expectTrue(sheet, "$setRow", {row(8), number(30)});
  EXPECT_EQ(call(sheet, "$rowHeight", {row(8)}).toNumber(), 30);
  expectTrue(sheet, "$setMerge", {row(4), row(5), column(0), column(1)});
  Values range;
  const Value none = integer(0);
  EXPECT_TRUE(call(sheet, "$getMerge", {row(5), column(1), none, none, none, none}, &range).toBoolean());
  EXPECT_EQ(range.at(2).toInteger(), place.row + 4);
  EXPECT_EQ(range.at(3).toInteger(), place.row + 5);
  EXPECT_EQ(range.at(4).toInteger(), place.column);
  EXPECT_EQ(range.at(5).toInteger(), place.column + 1);
  expectTrue(sheet, "$setMerge", {row(6), row(7), column(0), column(1)});
  expectTrue(sheet, "$delMerge", {row(6), column(0)});
  expectTrue(sheet, "$setHorzPageBreak", {row(3)});
  expectTrue(sheet, "$setVertPageBreak", {column(2)});
  expectTrue(sheet, "$groupRows", {row(10), row(11)});
  expectTrue(sheet, "$groupCols", {column(6), column(7)});
  call(sheet, "$split", {integer(3), integer(2)});
  call(sheet, "$setPrintRepeatRows", {integer(1), integer(2)});
  call(sheet, "$setPrintRepeatCols", {integer(1), integer(3)});
  call(sheet, "$setPrintArea", {row(0), row(9), column(0), column(2)});
  expectTrue(sheet, "$setNamedRange", {text("every_method"), row(0), row(1), column(0), column(1)});
  expectTrue(sheet, "$setNamedRange", {text("for_a_moment"), row(0), row(1), column(0), column(1)});
  expectTrue(sheet, "$delNamedRange", {text("for_a_moment")});
  assignSheet();
}

void EveryMethod::assignSheet() {
  for (const char* flag : {"$groupSummaryBelow", "$groupSummaryRight", "$displayGridlines"}) set(sheet, flag, no());
  for (const char* flag : {"$printGridlines", "$landscape", "$hCenter", "$vCenter", "$printRowCol", "$protected"}) {
    set(sheet, flag, yes());
  }
  set(sheet, "$paper", constant("kXLPaperA5"));
  set(sheet, "$zoom", integer(130));
  set(sheet, "$printZoom", integer(85));
  set(sheet, "$header", text("&CEvery"));
  set(sheet, "$headerMargin", number(2));
  set(sheet, "$footer", text("&RMethod"));
  set(sheet, "$footerMargin", number(1));
  const char* margins[] = {"$marginLeft", "$marginRight", "$marginTop", "$marginBottom"};
  for (int i = 0; i < 4; ++i) set(sheet, margins[i], number(0.25 * (i + 1)));
}

void EveryMethod::useStyles() {
  // The name of a font can be changed and not given: a new font of an .xlsx book has none, one that is made from
  // another has its.
  Object plainFont = objectFrom(workbook, "$addFont");
  set(plainFont, "$fontname", text("Courier New"));
  EXPECT_EQ(get(plainFont, "$fontname").toUtf8(), form().namesNewFonts ? "Courier New" : "");
  if (!form().namesNewFonts) {
    const Object named = objectIn(objectFrom(workbook, "$addFormat"), "$font");
    plainFont = objectFrom(workbook, "$addFont", {Value::object(named)});
  }
  set(plainFont, "$size", integer(17));
  font = objectFrom(workbook, "$addFont", {Value::object(plainFont)});
  EXPECT_EQ(get(font, "$size").toInteger(), 17);
  for (const char* flag : {"$italic", "$strikeOut", "$bold"}) set(font, flag, yes());
  set(font, "$color", constant("kXLColorBlue"));
  set(font, "$script", constant("kXLScriptSuper"));
  set(font, "$underline", constant("kXLUnderlineDouble"));
  set(font, "$fontname", text("Courier New"));
  EXPECT_EQ(get(objectFrom(font, "$self"), "$fontname").toUtf8(), "Courier New");

  const Object plainFormat = objectFrom(workbook, "$addFormat");
  set(plainFormat, "$wrap", yes());
  format = objectFrom(workbook, "$addFormat", {Value::object(plainFormat)});
  EXPECT_TRUE(get(format, "$wrap").toBoolean());
  call(format, "$setBorder", {constant("kXLBorderStyleThin")});
  call(format, "$setBorderColor", {constant("kXLColorGreen")});
  set(format, "$font", Value::object(font));
  ownNumFormat = call(workbook, "$addCustomNumFormat", {text("0.00 \"every\"")});
  EXPECT_EQ(call(workbook, "$customNumFormat", {ownNumFormat}).toUtf8(), "0.00 \"every\"");
  set(format, "$numFormat", ownNumFormat);
  set(format, "$locked", no());
  for (const char* flag : {"$hidden", "$shrinkToFit", "$wrap"}) set(format, flag, yes());
  set(format, "$alignH", constant("kXLAlignHRight"));
  set(format, "$alignV", constant("kXLAlignVCenter"));
  set(format, "$rotation", integer(30));
  set(format, "$indent", integer(2));
  set(format, "$borderTop", constant("kXLBorderStyleDouble"));
  set(format, "$borderTopColor", constant("kXLColorRed"));
  for (const char* side : {"Left", "Right", "Bottom"}) {
    set(format, std::string("$border") + side, constant("kXLBorderStyleHair"));
    set(format, std::string("$border") + side + "Color", constant("kXLColorBlue"));
  }
  set(format, "$borderDiagonal", constant("kXLBorderDiagonalBoth"));
  set(format, "$borderDiagonalColor", constant("kXLColorRed"));
  set(format, "$fillPattern", constant("kXLFillPatternSolid"));
  set(format, "$patternForegroundColor", constant("kXLColorYellow"));
  set(format, "$patternBackgroundColor", constant("kXLColorWhite"));
  EXPECT_EQ(get(objectFrom(format, "$self", {no()}), "$rotation").toInteger(), 30);
}

void EveryMethod::useCells() {
  call(cellAt(0, 0), "$setValue", {number(2.5), Value::object(format)});
  set(cellAt(0, 1), "$value", text("text"));
  EXPECT_TRUE(call(cellAt(1, 0), "$writeFormula", {text("=SUM(A1:B2)*2")}).toBoolean()) << message();
  EXPECT_EQ(call(cellAt(1, 0), "$readFormula").toUtf8(), shownFormula());
  EXPECT_TRUE(get(cellAt(1, 0), "$isFormula").toBoolean());
  set(cellAt(2, 0), "$value", integer(7));
  call(cellAt(2, 0), "$clear");
  set(cellAt(2, 1), "$value", Value::boolean(true));
  set(cellAt(2, 1), "$format", Value::object(format));
  const Object ownFormat = objectFrom(workbook, "$addFormat");
  call(cellAt(3, 1), "$setValue", {integer(46346), Value::object(ownFormat)});
  set(cellAt(3, 1), "$font", Value::object(font));
  EXPECT_EQ(get(objectIn(cellAt(3, 1), "$font"), "$size").toInteger(), 17);
  EXPECT_EQ(get(objectIn(cellAt(0, 0), "$format"), "$rotation").toInteger(), 30);
  EXPECT_EQ(get(cellAt(0, 0), "$type").toInteger(), constant("kXLTypeNumber").toInteger());
  EXPECT_EQ(get(cellAt(0, 0), "$error").toInteger(), constant("kXLTypeErrorNone").toInteger());
  EXPECT_EQ(get(cellAt(0, 0), "$row").toInteger(), place.row);
  EXPECT_EQ(get(cellAt(0, 0), "$col").toInteger(), place.column);
  EXPECT_FALSE(get(cellAt(0, 0), "$isDate").toBoolean());
  EXPECT_EQ(get(cellAt(0, 0), "$value").toNumber(), 2.5);
  call(cellAt(1, 1), "$setComment", {text("a note"), text("me"), integer(100), integer(50)});
  EXPECT_EQ(message(), form().keepsComments ? "ok" : "not supported");
}

void EveryMethod::usePictures() {
  const fs::path file = directory.file("dot.png");
  std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(kPng), std::size(kPng));
  filePicture = static_cast<int>(call(workbook, "$addPicture", {text(file.c_str())}).toInteger());
  rawPicture = static_cast<int>(
      call(workbook, "$addPictureRaw", {Value::binary(Bytes(std::begin(kPng), std::end(kPng))), integer(0)})
          .toInteger());
  call(cellAt(2, 2), "$setPicture", {integer(filePicture), number(2)});
  EXPECT_GE(filePicture, 0) << message();
  EXPECT_GE(rawPicture, 0) << message();
}

void EveryMethod::useWorkbook() {
  const int sheets = static_cast<int>(get(workbook, "$sheetCount").toInteger());
  const Object added = objectFrom(workbook, "$addSheet", {text("Every method")});
  set(cell(added, 1, 1), "$value", text("added"));
  call(added, "$setPrintRepeatRows", {integer(1), integer(2)});
  call(added, "$clearPrintRepeats");
  call(added, "$setPrintArea", {integer(1), integer(2), integer(1), integer(2)});
  call(added, "$clearPrintArea");
  objectFrom(workbook, "$addSheet", {text("Its copy"), Value::object(added)});
  objectFrom(workbook, "$addSheet", {text("For a moment"), Value::object(added)});
  EXPECT_EQ(get(workbook, "$sheetCount").toInteger(), sheets + 3);
  expectTrue(workbook, "$delSheet", {integer(sheets + 3)});
  set(workbook, "$activeSheet", integer(sheets + 1));
  EXPECT_EQ(get(workbook, "$activeSheet").toInteger(), sheets + 1);
  EXPECT_EQ(get(added, "$firstRow").toInteger(), 1);
  EXPECT_EQ(get(added, "$lastRow").toInteger(), 2);
  EXPECT_EQ(get(added, "$firstCol").toInteger(), 1);
  EXPECT_EQ(get(added, "$lastCol").toInteger(), 2);
  const Value lastFormat = integer(static_cast<int>(get(workbook, "$formatSize").toInteger()) - 1);
  EXPECT_TRUE(call(workbook, "$format", {lastFormat}).isObject());
  const Value lastFont = integer(static_cast<int>(get(workbook, "$fontSize").toInteger()) - 1);
  EXPECT_TRUE(call(workbook, "$font", {lastFont}).isObject());
  set(workbook, "$rgbMode", yes());
  EXPECT_EQ(get(workbook, "$rgbMode").storedBoolean(), form().keepsRgbMode ? 1 : 0);
  set(workbook, "$defaultFont", text("Verdana"));
  set(workbook, "$defaultFontSize", integer(12));
  call(workbook, "$error", {integer(-2), text("a"), text("b"), text("c")});

  const Object other = newWorkbook();
  objectFrom(other, "$addSheet", {text("gone")});
  call(other, "$initialize", {constant(form().constant)});
  EXPECT_EQ(get(other, "$sheetCount").toInteger(), 0);
}

void EveryMethod::checkSheet(Book& book) {
  Sheet& s = *book.getSheet(place.sheet - 1);
  const auto textAt = [&](int rowOffset, int columnOffset) {
    const char16_t* found = s.readStr(place.engineRow(rowOffset), place.engineColumn(columnOffset));
    return std::u16string(found == nullptr ? u"" : found);
  };
  EXPECT_EQ(textAt(22, 0), u"pushed down");
  EXPECT_EQ(textAt(26, 0), u"pulled up");
  EXPECT_EQ(textAt(0, 22), u"pushed right");
  EXPECT_EQ(textAt(0, 28), u"pulled left");
  EXPECT_EQ(s.cellType(place.engineRow(18), place.engineColumn()), CellType::empty);
  // The default font, which was changed since, decides how many of its digits a width makes.
  EXPECT_NEAR(s.colWidth(place.engineColumn(3)), 20, 0.5);
  EXPECT_EQ(s.rowHeight(place.engineRow(8)), 30);
  int a = 0, b = 0, c = 0, d = 0;
  ASSERT_TRUE(s.getMerge(place.engineRow(4), place.engineColumn(), &a, &b, &c, &d));
  EXPECT_EQ(b, place.engineRow(5));
  EXPECT_EQ(d, place.engineColumn(1));
  EXPECT_FALSE(s.getMerge(place.engineRow(6), place.engineColumn(), &a, &b, &c, &d));
  const auto hasBreak = [](int count, const auto& at, int wanted) {
    for (int i = 0; i < count; ++i) {
      if (at(i) == wanted) return true;
    }
    return false;
  };
  EXPECT_TRUE(hasBreak(
      s.getHorzPageBreakSize(), [&](int i) { return s.getHorzPageBreak(i); }, place.engineRow(3)));
  EXPECT_TRUE(hasBreak(
      s.getVertPageBreakSize(), [&](int i) { return s.getVertPageBreak(i); }, place.engineColumn(2)));
  for (int offset : {10, 11}) EXPECT_TRUE(s.rowHidden(place.engineRow(offset)));
  for (int offset : {6, 7}) EXPECT_TRUE(s.colHidden(place.engineColumn(offset)));
  ASSERT_TRUE(s.splitInfo(&a, &b));
  EXPECT_EQ(std::pair(a, b), std::pair(2, 1));
  ASSERT_TRUE(s.printRepeatRows(&a, &b)) << book.errorMessage();
  EXPECT_EQ(std::pair(a, b), std::pair(0, 1));
  ASSERT_TRUE(s.printRepeatCols(&a, &b)) << book.errorMessage();
  EXPECT_EQ(std::pair(a, b), std::pair(0, 2));
  ASSERT_TRUE(s.printArea(&a, &b, &c, &d)) << book.errorMessage();
  EXPECT_EQ(b, place.engineRow(9));
  EXPECT_EQ(d, place.engineColumn(2));
  ASSERT_TRUE(s.getNamedRange(u"every_method", &a, &b, &c, &d)) << book.errorMessage();
  EXPECT_EQ(a, place.engineRow());
  EXPECT_EQ(d, place.engineColumn(1));
  EXPECT_FALSE(s.getNamedRange(u"for_a_moment", &a, &b, &c, &d));
  EXPECT_FALSE(s.groupSummaryBelow() || s.groupSummaryRight() || s.displayGridlines());
  EXPECT_TRUE(s.printGridlines() && s.landscape() && s.hCenter() && s.vCenter() && s.printRowCol() && s.protect());
  constexpr int a5 = 11;
  EXPECT_EQ(s.paper(), a5);
  EXPECT_EQ(s.zoom(), 130);
  EXPECT_EQ(s.printZoom(), 85);
  EXPECT_EQ(std::u16string(s.header()), u"&CEvery");
  EXPECT_EQ(std::u16string(s.footer()), u"&RMethod");
  EXPECT_EQ(s.headerMargin(), 2);
  EXPECT_EQ(s.footerMargin(), 1);
  EXPECT_EQ(s.marginLeft(), 0.25);
  EXPECT_EQ(s.marginRight(), 0.5);
  EXPECT_EQ(s.marginTop(), 0.75);
  EXPECT_EQ(s.marginBottom(), 1);
}

void EveryMethod::checkStyles(Sheet& engineSheet) {
  for (const auto& [rowOffset, columnOffset] : {std::pair(0, 0), std::pair(2, 1)}) {
    Format* f = engineSheet.cellFormat(place.engineRow(rowOffset), place.engineColumn(columnOffset));
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->numFormat(), ownNumFormat.toInteger());
    EXPECT_TRUE(!f->locked() && f->hidden() && f->wrap() && f->shrinkToFit());
    EXPECT_EQ(f->alignH(), AlignH::right);
    EXPECT_EQ(f->alignV(), AlignV::center);
    EXPECT_EQ(f->rotation(), 30);
    EXPECT_EQ(f->indent(), 2);
    EXPECT_EQ(f->borderTop(), BorderStyle::doubleLine);
    EXPECT_EQ(f->borderLeft(), f->borderRight());
    EXPECT_EQ(f->borderBottom(), BorderStyle::hair);
    EXPECT_EQ(f->borderTopColor(), f->borderDiagonalColor());
    EXPECT_EQ(f->borderLeftColor(), f->borderBottomColor());
    EXPECT_EQ(f->borderRightColor(), f->font()->color());
    EXPECT_NE(f->borderTopColor(), f->borderLeftColor());
    EXPECT_EQ(f->borderDiagonal(), BorderDiagonal::both);
    EXPECT_EQ(f->fillPattern(), FillPattern::solid);
    EXPECT_NE(f->patternForegroundColor(), f->patternBackgroundColor());
  }
  for (const auto& [rowOffset, columnOffset] : {std::pair(0, 0), std::pair(3, 1)}) {
    Font* f = engineSheet.cellFormat(place.engineRow(rowOffset), place.engineColumn(columnOffset))->font();
    EXPECT_EQ(f->size(), 17);
    EXPECT_TRUE(f->italic() && f->strikeOut() && f->bold());
    EXPECT_EQ(f->script(), Script::superscript);
    EXPECT_EQ(f->underline(), Underline::doubleLine);
    EXPECT_EQ(std::u16string(f->name()), u"Courier New");
  }
}

void EveryMethod::checkCells(Book& book) {
  Sheet& s = *book.getSheet(place.sheet - 1);
  const auto at = [&](int offset) { return place.engineColumn(offset); };
  EXPECT_EQ(s.readNum(place.engineRow(), at(0)), 2.5);
  EXPECT_EQ(std::u16string(s.readStr(place.engineRow(), at(1))), u"text");
  ASSERT_TRUE(s.isFormula(place.engineRow(1), at(0)));
  EXPECT_EQ(platform::utf8FromUtf16Lossy(s.readFormula(place.engineRow(1), at(0))), shownFormula());
  EXPECT_EQ(s.cellType(place.engineRow(2), at(0)), CellType::empty);
  EXPECT_TRUE(s.readBool(place.engineRow(2), at(1)));
  EXPECT_EQ(s.readNum(place.engineRow(3), at(1)), 46346);
  if (form().keepsComments) {
    ASSERT_NE(s.readComment(place.engineRow(1), at(1)), nullptr) << book.errorMessage();
    EXPECT_NE(std::u16string(s.readComment(place.engineRow(1), at(1))).find(u"a note"), std::u16string::npos);
  }
  EXPECT_GT(s.pictureSize(), 0);
  Sheet& added = *book.getSheet(book.sheetCount() - 2);
  Sheet& copied = *book.getSheet(book.sheetCount() - 1);
  EXPECT_EQ(std::u16string(added.name()), u"Every method");
  EXPECT_EQ(std::u16string(copied.name()), u"Its copy");
  for (Sheet* one : {&added, &copied}) EXPECT_EQ(std::u16string(one->readStr(0, 0)), u"added");
  int none = 0;
  EXPECT_FALSE(added.printRepeatRows(&none, &none));
  EXPECT_FALSE(added.printArea(&none, &none, &none, &none));
  EXPECT_EQ(book.activeSheet(), book.sheetCount() - 2);
  int size = 0;
  EXPECT_EQ(std::u16string(book.defaultFont(&size)), u"Verdana");
  EXPECT_EQ(size, 12);
}

// Lists take the place of sheets: a Workbook of its own.
void EveryMethod::useLists(const fs::path& saved) {
  const Object other = newWorkbook();
  ASSERT_TRUE(call(other, "$load", {text(saved.c_str())}).toBoolean());
  // A list takes the place of an only sheet, whatever its name; of several, one that stays may have the name already.
  while (get(other, "$sheetCount").toInteger() > 1) expectTrue(other, "$delSheet", {integer(1)});
  List list;
  list.addColumn({U"Name"});
  list.addColumn({U"Age", Kind::Integer});
  list.addLine();
  list.set(1, 1, text("Ann"));
  list.set(1, 2, integer(41));
  call(other, "$populateWithList", {Value::list(list), constant("kXLPopulateDefinitionHeader")});
  const fs::path file = fileNamed("list");
  ASSERT_TRUE(call(other, "$save", {text(file.c_str())}).toBoolean());
  const BookPtr book = loadedBook(file);
  ASSERT_NE(book, nullptr);
  ASSERT_EQ(book->sheetCount(), 1);
  Sheet& filled = *book->getSheet(0);
  EXPECT_EQ(std::u16string(filled.name()), u"Sheet1");
  EXPECT_EQ(std::u16string(filled.readStr(0, 1)), u"Age");
  EXPECT_EQ(filled.readNum(1, 1), 41);
  const Value back = call(other, "$extractList", {integer(2)});
  ASSERT_TRUE(back.isList());
  EXPECT_EQ(back.listRef().at(1, 1).toUtf8(), "Ann");
  // A cell without a format takes the book's default one, which in some books is a date's.
  const Value& age = back.listRef().at(1, 2);
  if (filled.isDate(1, 1)) {
    EXPECT_EQ(age.kind(), Kind::Date);
  } else {
    EXPECT_EQ(age.toInteger(), 41);
  }
}

void EveryMethod::useAll(const fs::path& source, Place at) {
  place = at;
  workbook = newWorkbook();
  ASSERT_TRUE(call(workbook, "$load", {text(source.c_str())}).toBoolean()) << message();
  sheet = objectFrom(workbook, "$getSheet", {integer(place.sheet)});
  moveLines();
  useSheet();
  useStyles();
  useCells();
  usePictures();
  useWorkbook();
  const fs::path saved = fileNamed("saved");
  ASSERT_TRUE(call(workbook, "$save", {text(saved.c_str())}).toBoolean()) << message();
  Values bytes;
  ASSERT_TRUE(call(workbook, "$saveRaw", {Value::binary({}), number(0)}, &bytes).toBoolean()) << message();
  const Object again = newWorkbook();
  ASSERT_TRUE(call(again, "$loadRaw", {bytes.at(0), number(0)}).toBoolean());
  const fs::path savedAgain = fileNamed("again");
  ASSERT_TRUE(call(again, "$save", {text(savedAgain.c_str())}).toBoolean());
  for (const fs::path& file : {saved, savedAgain}) {
    SCOPED_TRACE(file);
    const BookPtr book = loadedBook(file);
    ASSERT_NE(book, nullptr);
    checkSheet(*book);
    checkStyles(*book->getSheet(place.sheet - 1));
    checkCells(*book);
  }
  useLists(saved);
}

// The sample has something of each kind already, so that the methods change and add and don't only begin.
fs::path EveryMethod::writeSample() const {
  const fs::path path = fileNamed("sample");
  BookPtr book(form().create());
  Sheet* first = book->addSheet(u"Sample");
  Format* percent = book->addFormat();
  percent->setNumFormat(9);
  for (int row = 0; row < 12; ++row) {
    first->writeStr(row, 0, u"label");
    first->writeNum(row, 1, row * 0.5, percent);
    first->writeFormula(row, 2, u"B1*2");
  }
  first->setMerge(13, 14, 0, 2);
  first->setNamedRange(u"labels", 0, 11, 0, 0);
  first->setHorzPageBreak(5);
  first->setPrintArea(0, 11, 0, 2);
  first->setCol(0, 1, 18);
  book->addSheet(u"Second");
  EXPECT_TRUE(book->save(path.u16string().c_str())) << book->errorMessage();
  return path;
}

TEST_P(EveryMethod, LeavesItsEffectInTheSavedFile) {
  const fs::path sample = writeSample();
  const BookPtr book = loadedBook(sample);
  ASSERT_NE(book, nullptr);
  const auto room = placeIn(*book);
  ASSERT_TRUE(room);
  useAll(sample, *room);
  for (const ComponentClass& objectClass : host.classes()) {
    for (const ComponentMethod& method : objectClass.methods) {
      EXPECT_TRUE(called.contains(objectClass.name + "." + method.name)) << objectClass.name << method.name;
    }
    const Object object = make(objectClass.name.c_str());
    for (const ComponentProperty& property : objectClass.properties) {
      const std::string name = objectClass.name + "." + property.name;
      EXPECT_TRUE(read.contains(name) || assigned.contains(name)) << name;
    }
  }
}

TEST_P(EveryMethod, WorksOnTheWorkbooksOfOtherPrograms) {
  const std::vector<fs::path> files = rubrica::test::corpusFiles(form().name);
  if (files.empty()) GTEST_SKIP() << rubrica::test::kNoCorpus;
  int used = 0;
  for (const fs::path& file : files) {
    const BookPtr book = loadedBook(file);
    const auto room = book != nullptr ? placeIn(*book) : std::nullopt;
    if (!room) continue;
    SCOPED_TRACE(file);
    useAll(file, *room);
    ++used;
  }
  EXPECT_GT(used, 0) << "no workbook of " << files.size() << " has room";
  RecordProperty("workbooks", used);
}

INSTANTIATE_TEST_SUITE_P(Forms, EveryMethod, testing::ValuesIn(kBookForms),
                         [](const testing::TestParamInfo<BookForm>& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace rubrica::simhost::test
