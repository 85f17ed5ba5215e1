// XMLSheetImplT: one worksheet of an OOXML book. It is the bound tree of its part, and there is no second cell table: a
// cell is an object in sheetData, found by binary search, and a save writes the tree as it stands. Rows and cells are
// kept in ascending order, every one with its reference, from the moment that a part is read. Owned by the book's part
// map; one thread per book.
//
// The operations are grouped by subject: sheet_tree.cpp (rows and cells of the tree), sheet_cells.cpp,
// sheet_writers.cpp, sheet_formulas.cpp, sheet_save.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "engine/sheet.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/workbook.h"
#include "xml/auto_filter.h"
#include "xml/filter_match.h"
#include "xml/flavour.h"
#include "xml/part.h"
#include "xml/picture_anchors.h"
#include "xml/shared_formulas.h"
#include "xml/sheet_range.h"

namespace rubrica {

template <class Tag>
class XMLBookImplT;
template <class Tag>
class Drawing;
class Comments;
struct BookPicture;

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
  using WorkbookRoot = typename Flavour<Tag>::WorkbookRoot;
  using DefinedName =
      std::remove_reference_t<decltype(std::declval<WorkbookRoot&>().get_definedNames().get_definedName(0))>;

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
  void readWindow(const char* data, std::size_t size, int firstRow, int lastRow);
  void readWindowOfFile(const std::string& path, int firstRow, int lastRow);
  lmx::elmx_error bindWindow(lmx::c_xml_reader& reader, int firstRow, int lastRow);
  // Gives rows and cells without a reference theirs, and puts them in order where they aren't. Both answer whether any
  // cell has a formula.
  bool settleRows();
  static bool settleCells(Row& row);
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

  // ---- Rows and columns (sheet_rows_columns.cpp, sheet_outline.cpp)
  int colPixels(int col);
  int defaultColPixels();
  double freshColWidth();
  double rowPoints(int row);
  std::optional<double> fittedWidth(int col);
  void widenUsedRows(int row);
  // What beside cells is in use in a sheet that was read: hidden rows and merges.
  void widenByMarks();
  void raiseOutlineDepth(int rowLevel, int colLevel);

  // ---- Ranges and moves (sheet_ranges.cpp, sheet_moves.cpp)

  // Throws xlerror "rowLast must be greater than or equal to rowFirst" and the same of columns.
  static void checkOrder(int rowFirst, int rowLast, int colFirst, int colLast);
  void eraseMerge(std::size_t index);
  void eraseCells(Row& row, int colFirst, int colLast);
  void moveLines(const LineMove& move, bool updateNamedRanges);
  void unshareFormulas();
  static void moveFormulaRange(Cell& cell, const LineMove& move);
  void moveRows(const LineMove& move);
  void moveColumns(const LineMove& move);
  void moveUsedRange(const LineMove& move);
  void moveMerges(const LineMove& move);
  void moveMarks(const LineMove& move);
  void moveHyperlinks(const LineMove& move);
  void moveOwnFilter(const LineMove& move);
  void moveTables(const LineMove& move);
  void moveCarriedParts(const LineMove& move);
  void moveExtensions(const LineMove& move);

  // ---- Names and links (sheet_names.cpp, sheet_links.cpp). A scope is the position of a sheet or kScopeWorkbook.
  int checkedScope(int scopeId) const;
  DefinedName* findName(std::string_view name, int scope);
  DefinedName& needName(std::string_view name, int scope);
  bool removeName(std::string_view name, int scope);
  // The sheet's name in the workbook, as it stands there.
  std::string ownName() const;
  void setPrintTitles(std::optional<SheetRange> rows, std::optional<SheetRange> cols);
  void moveNames(const LineMove& move, bool updateNamedRanges);
  void renameInNames(const std::string& from, const std::string& to);
  std::size_t checkedLink(int index) const;
  void forgetLinkTarget(const std::string& id);

  void bringUpToDate() override;
  void dropEmptyLists();

  // ---- Filters (sheet_filters.cpp)
  FilterValue filterValue(int row, int col);
  static std::optional<double> numberIn(const Cell& cell);

  // ---- Drawing (sheet_drawing.cpp)

  // The name of the part that a relationship of this sheet leads to; empty where there is none.
  std::string linkedPart(std::string_view id) const;
  std::string drawingPart() const;
  Drawing<Tag>* findDrawing() const;
  Comments* findComments() const;
  std::string needDrawing();
  int rowPixels(int row);
  AnchorCorner cornerAt(int row, int col, int right, int down);
  BookPicture& pictureOf(int pictureId);
  void placeOnSheet(int row, int col, const BookPicture& picture, int width, int height, int offset_x, int offset_y,
                    PicturePosition position);
  int pictureIdOf(const PlacedPicture& placed, const std::string& drawing) const;

  XMLBookImplT<Tag>* _book;
  std::array<std::uint32_t, kColumns> _colFormats{};  // style index by column, so that a new cell needs no search
  UsedRange _used;
  bool _isPartial = false;           // read with a range of rows
  std::size_t _lastRowPosition = 0;  // where the last row was found or made
  SharedFormulas _sharedFormulas;
  FormatPtr _lastFormat = nullptr;  // of the last write that gave one, with its index
  std::uint32_t _lastFormatIndex = 0;
  std::u16string _text;                   // handed out; good until the next call
  SheetRange _autoFitArea{0, -1, 0, -1};  // -1: to the end
  std::unique_ptr<XMLAutoFilterT<Root>> _autoFilter;
};

}  // namespace rubrica
