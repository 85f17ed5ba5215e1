// XMLSheetImplT: one worksheet of an OOXML book. It is the bound tree of its part, and there is no second cell table: a
// cell is an object in sheetData, found by binary search, and a save writes the tree as it stands. Rows and cells are
// kept in ascending order, every one with its reference, from the moment that a part is read. Owned by the book's part
// map; one thread per book.
//
// The operations are grouped by subject: sheet_tree.cpp (rows and cells of the tree), sheet_cells.cpp,
// sheet_writers.cpp, sheet_formulas.cpp, sheet_save.cpp, sheet_unbuilt.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "engine/sheet.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "xml/flavour.h"
#include "xml/part.h"
#include "xml/shared_formulas.h"

namespace rubrica {

template <class Tag>
class XMLBookImplT;

// The cells in use: the last of each pair is one past the last row or column. All are 0 where there are none.
struct UsedRange {
  int firstRow = 0;
  int lastRow = 0;
  int firstCol = 0;
  int lastCol = 0;

  void widen(int row, int col);
  bool empty() const { return firstRow == lastRow; }
};

template <class Tag>
class XMLSheetImplT final : public XmlFile<typename Flavour<Tag>::WorksheetRoot>, public ISheetT<char16_t> {
 public:
  using Text = const char16_t*;
  using FormatPtr = IFormatT<char16_t>*;
  using Root = typename Flavour<Tag>::WorksheetRoot;
  using Base = XmlFile<Root>;
  using SheetData = std::remove_reference_t<decltype(std::declval<Root&>().get_sheetData())>;
  using Row = std::remove_reference_t<decltype(std::declval<SheetData&>().get_row(0))>;
  using Cell = std::remove_reference_t<decltype(std::declval<Row&>().get_c(0))>;

  static constexpr std::size_t kColumns = 16384;

  explicit XMLSheetImplT(XMLBookImplT<Tag>& book);
  // A part from memory or from a file (path in UTF-8). Only the rows firstRow to lastRow are kept; -1 leaves that end
  // open.
  XMLSheetImplT(XMLBookImplT<Tag>& book, const char* data, std::size_t size, int firstRow = -1, int lastRow = -1);
  XMLSheetImplT(XMLBookImplT<Tag>& book, const std::string& path, int firstRow = -1, int lastRow = -1);
  // A copy for `book`, which may be another than the source's: texts and formats are then entered into it.
  XMLSheetImplT(XMLBookImplT<Tag>& book, const XMLSheetImplT& source);
  XMLSheetImplT(const XMLSheetImplT&) = delete;
  XMLSheetImplT& operator=(const XMLSheetImplT&) = delete;

  // ---- For the book

  // Brings everything beside the tree into line with it. Throws xlerror where a row or a cell lies outside the sheet.
  void init();
  void save(std::string& target) override;
  XMLBookImplT<Tag>& book() const { return *_book; }
  // Cells that refer to the shared strings.
  std::uint32_t sharedStringCells() const;

  // ---- ISheetT
  CellType cellType(int row, int col) override;
  bool isFormula(int row, int col) override;
  FormatPtr cellFormat(int row, int col) override;
  void setCellFormat(int row, int col, FormatPtr format) override;
  Text readStr(int row, int col, FormatPtr* format) override;
  bool writeStr(int row, int col, Text value, FormatPtr format, int kind) override;
  double readNum(int row, int col, FormatPtr* format) override;
  bool writeNum(int row, int col, double value, FormatPtr format) override;
  bool readBool(int row, int col, FormatPtr* format) override;
  bool writeBool(int row, int col, bool value, FormatPtr format, ErrorType errCode) override;
  bool readBlank(int row, int col, FormatPtr* format) override;
  bool writeBlank(int row, int col, FormatPtr format) override;
  Text readFormula(int row, int col, FormatPtr* format) override;
  bool writeFormula(int row, int col, Text expression, FormatPtr format) override;
  bool writeFormulaNum(int row, int col, Text expression, double value, FormatPtr format) override;
  bool writeFormulaStr(int row, int col, Text expression, Text value, FormatPtr format) override;
  bool writeFormulaBool(int row, int col, Text expression, bool value, FormatPtr format) override;
  Text readComment(int row, int col) override;
  void writeComment(int row, int col, Text value, Text author, int width, int height) override;
  bool removeComment(int row, int col) override;
  bool isDate(int row, int col) override;
  ErrorType readError(int row, int col) override;
  void writeError(int row, int col, ErrorType error, FormatPtr format) override;

  double colWidth(int col) override;
  double rowHeight(int row) override;
  bool setCol(int colFirst, int colLast, double width, FormatPtr format, bool hidden) override;
  bool setRow(int row, double height, FormatPtr format, bool hidden) override;
  bool rowHidden(int row) override;
  bool setRowHidden(int row, bool hidden) override;
  bool colHidden(int col) override;
  bool setColHidden(int col, bool hidden) override;

  bool getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
  bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) override;
  bool delMerge(int row, int col) override;
  int mergeSize() override;
  bool merge(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
  bool delMergeByIndex(int index) override;

  int pictureSize() override;
  int getPicture(int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height,
                 int* offset_x, int* offset_y) override;
  void setPicture(int row, int col, int pictureId, double scale, int offset_x, int offset_y,
                  PicturePosition pos) override;
  void setPicture2(int row, int col, int pictureId, int width, int height, int offset_x, int offset_y,
                   PicturePosition pos) override;

  int getHorzPageBreak(int index) override;
  int getHorzPageBreakSize() override;
  int getVertPageBreak(int index) override;
  int getVertPageBreakSize() override;
  bool setHorzPageBreak(int row, bool pageBreak) override;
  bool setVertPageBreak(int col, bool pageBreak) override;
  void split(int row, int col) override;
  bool splitInfo(int* row, int* col) override;
  bool groupRows(int rowFirst, int rowLast, bool collapsed) override;
  bool groupCols(int colFirst, int colLast, bool collapsed) override;
  bool groupSummaryBelow() override;
  void setGroupSummaryBelow(bool below) override;
  bool groupSummaryRight() override;
  void setGroupSummaryRight(bool right) override;

  void clear(int rowFirst, int rowLast, int colFirst, int colLast) override;
  bool insertCol(int colFirst, int colLast, bool updateNamedRanges) override;
  bool insertRow(int rowFirst, int rowLast, bool updateNamedRanges) override;
  bool removeCol(int colFirst, int colLast, bool updateNamedRanges) override;
  bool removeRow(int rowFirst, int rowLast, bool updateNamedRanges) override;
  bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) override;
  int firstRow() override;
  int lastRow() override;
  int firstCol() override;
  int lastCol() override;

  bool displayGridlines() override;
  void setDisplayGridlines(bool show) override;
  bool printGridlines() override;
  void setPrintGridlines(bool print) override;
  int zoom() override;
  void setZoom(int zoom) override;
  int printZoom() override;
  void setPrintZoom(int zoom) override;
  bool getPrintFit(int* wPages, int* hPages) override;
  void setPrintFit(int wPages, int hPages) override;
  bool landscape() override;
  void setLandscape(bool landscape) override;
  int paper() override;
  void setPaper(int paper) override;
  Text header() override;
  bool setHeader(Text header, double margin) override;
  double headerMargin() override;
  Text footer() override;
  bool setFooter(Text footer, double margin) override;
  double footerMargin() override;
  bool hCenter() override;
  void setHCenter(bool hCenter) override;
  bool vCenter() override;
  void setVCenter(bool vCenter) override;
  double marginLeft() override;
  void setMarginLeft(double margin) override;
  double marginRight() override;
  void setMarginRight(double margin) override;
  double marginTop() override;
  void setMarginTop(double margin) override;
  double marginBottom() override;
  void setMarginBottom(double margin) override;
  bool printRowCol() override;
  void setPrintRowCol(bool print) override;
  bool printRepeatRows(int* rowFirst, int* rowLast) override;
  void setPrintRepeatRows(int rowFirst, int rowLast) override;
  bool printRepeatCols(int* colFirst, int* colLast) override;
  void setPrintRepeatCols(int colFirst, int colLast) override;
  bool printArea(int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
  void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) override;
  void clearPrintRepeats() override;
  void clearPrintArea() override;

  bool getNamedRange(Text name, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int scopeId,
                     bool* hidden) override;
  bool setNamedRange(Text name, int rowFirst, int rowLast, int colFirst, int colLast, int scopeId,
                     bool hidden) override;
  bool delNamedRange(Text name, int scopeId) override;
  int namedRangeSize() override;
  Text namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int* scopeId,
                  bool* hidden) override;
  int tableSize() override;
  Text table(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int* headerRowCount,
             int* totalsRowCount) override;
  int hyperlinkSize() override;
  Text hyperlink(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
  bool delHyperlink(int index) override;
  void addHyperlink(Text hyperlink, int rowFirst, int rowLast, int colFirst, int colLast) override;
  IAutoFilterT<char16_t>* autoFilter() override;
  void applyFilter() override;
  void removeFilter() override;

  Text name() override;
  void setName(Text name) override;
  bool protect() override;
  void setProtect(bool protect, Text password, int enhanced) override;
  SheetState hidden() override;
  bool setHidden(SheetState state) override;
  void getTopLeftView(int* row, int* col) override;
  void setTopLeftView(int row, int col) override;
  bool rightToLeft() override;
  void setRightToLeft(bool rightToLeft) override;
  void setAutoFitArea(int rowFirst, int colFirst, int rowLast, int colLast) override;
  void addrToRowCol(Text addr, int* row, int* col, bool* rowRelative, bool* colRelative) override;
  Text rowColToAddr(int row, int col, bool rowRelative, bool colRelative) override;
  void setTabRgbColor(int red, int green, int blue) override;
  void setTabColor(Color color) override;

  bool addIgnoredError(int rowFirst, int colFirst, int rowLast, int colLast, int errorSet) override;
  bool addDataValidation(ValidationType type, ValidationOperator op, int rowFirst, int rowLast, int colFirst,
                         int colLast, Text value1, Text value2, bool allowBlank, bool hideDropDown,
                         bool showInputMessage, bool showErrorMessage, Text promptTitle, Text prompt, Text errorTitle,
                         Text error, ValidationErrorStyle errorStyle) override;
  bool addDataValidationDouble(ValidationType type, ValidationOperator op, int rowFirst, int rowLast, int colFirst,
                               int colLast, double value1, double value2, bool allowBlank, bool hideDropDown,
                               bool showInputMessage, bool showErrorMessage, Text promptTitle, Text prompt,
                               Text errorTitle, Text error, ValidationErrorStyle errorStyle) override;
  bool removeDataValidations() override;

 private:
  // ---- The tree (sheet_tree.cpp)

  // Throws xlerror "col must be in range 0-16383", "row must be in range 0-1048575".
  static void checkCell(int row, int col);
  void readWindow(lmx::c_xml_reader& reader, int firstRow, int lastRow);
  // Gives rows and cells without a reference theirs, and puts them in order where they aren't.
  void settleRows();
  static void settleCells(Row& row);
  static void sortRows(SheetData& data);
  void adoptColumnFormats();
  void adoptSharedFormulas();
  void adoptContentOf(const XMLSheetImplT& source);

  // Null where there is none.
  Row* findRow(int row);
  Cell* findCell(int row, int col);
  // Throws xlerror "cell is not found".
  Cell& cellAt(int row, int col);
  Row& needRow(int row);
  // The cell, made if it isn't there, with the format that it gets: `format`, else its own, else the column's.
  Cell& needCell(int row, int col, FormatPtr format);
  // The same with nothing in it but the format. A shared formula that it was the master of goes on in another cell.
  Cell& emptyCell(int row, int col, FormatPtr format);
  // The position of the first row or cell at or after the one that is looked for.
  std::size_t rowPosition(const SheetData& data, int row) const;
  static std::size_t cellPosition(const Row& row, int col);

  // ---- Values (sheet_cells.cpp, sheet_writers.cpp)
  FormatPtr formatOf(const Cell* cell, int col);
  void giveFormat(const Cell& cell, int col, FormatPtr* format);
  std::uint32_t indexOfFormat(FormatPtr format);
  static bool hasContent(const Cell& cell);
  static CellType typeOf(const Cell* cell);
  // The position of a cell's text in the shared strings.
  static std::optional<std::size_t> sharedIndexOf(const Cell& cell);
  double numberOf(const Cell& cell);
  // Into _text; false for a cell that holds no text.
  bool readText(const Cell& cell);

  // ---- Formulas (sheet_formulas.cpp)

  // The text as it stands in the tree, of a shared formula that of its place.
  std::string formulaText(int row, int col, const Cell& cell);
  template <class StoreValue>
  bool storeFormula(int row, int col, Text expression, FormatPtr format, StoreValue storeValue);
  void handOverSharedFormula(int row, int col, Cell& cell);

  XMLBookImplT<Tag>* _book;
  std::array<std::uint32_t, kColumns> _colFormats{};  // style index by column, so that a new cell needs no search
  UsedRange _used;
  std::size_t _lastRowPosition = 0;  // where the last row was found or made
  SharedFormulas _sharedFormulas;
  FormatPtr _lastFormat = nullptr;  // of the last write that gave one, with its index
  std::uint32_t _lastFormatIndex = 0;
  std::u16string _text;  // handed out; good until the next call
};

}  // namespace rubrica
