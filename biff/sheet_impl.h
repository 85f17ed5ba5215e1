// SheetImplT: one sheet of an .xls book, over compact tables of BIFF records. State that belongs to one subject is an
// object of its own (cells, rows, columns, merges, page layout, view, protection); the operations of the interface are
// grouped by subject into sheet_cells.cpp, sheet_formulas.cpp, sheet_rows_columns.cpp, sheet_outline.cpp,
// sheet_breaks.cpp, sheet_ranges.cpp, sheet_moves.cpp, sheet_page.cpp, sheet_names.cpp, sheet_links.cpp,
// sheet_pictures.cpp and sheet_comments.cpp; loading and saving stand in sheet_load.cpp and sheet_save.cpp. Owned by
// its book.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "biff/book_state.h"
#include "biff/carried_drawing.h"
#include "biff/cell_store.h"
#include "biff/column_table.h"
#include "biff/expression_walk.h"
#include "biff/formula_definitions.h"
#include "biff/hlink.h"
#include "biff/merge_table.h"
#include "biff/note_table.h"
#include "biff/page_layout.h"
#include "biff/records/global_records.h"
#include "biff/records/record_io.h"
#include "biff/records/sheet_records.h"
#include "biff/row_table.h"
#include "biff/shared_features.h"
#include "biff/sheet_protection.h"
#include "biff/sheet_view.h"
#include "engine/line_move.h"
#include "engine/sheet.h"

namespace rubrica {

class BookImplT;

// Which rows' cells a load keeps.
struct RowWindow {
  int first = 0, last = kBiffRows;  // last is exclusive
  bool holds(int row) const { return first <= row && row < last; }
};

// Words of the sheet's one-word records.
struct SheetWords {
  std::uint16_t calcMode = 1, calcCount = 100, calcRefMode = 1, calcIter = 0, calcSaveRecalc = 1, printRowCol = 0,
                printGrid = 0, gridSet = 1, wsBool = 0x04C1, defColWidth = 8, standardWidth = 0xFFFF, uncalced = 0;

  static constexpr std::uint16_t kRowSumsBelow = 0x0040, kColSumsRight = 0x0080, kFitToPage = 0x0100;
};

// 523. Carried as it stands: its offsets are not renewed.
struct SheetIndexRecord {
  std::uint32_t reserved = 0, rwMic = 0, rwMac = 3, ibXF = 0;
  std::vector<std::uint32_t> offsets;
};

class SheetImplT final : public ISheetT<char16_t> {
 public:
  using Text = const char16_t*;
  using FormatPtr = IFormatT<char16_t>*;

  SheetImplT(BookImplT& book, std::u16string name);
  // A copy for `book`, which may be another than the source's. It is not selected.
  SheetImplT(BookImplT& book, std::u16string name, SheetImplT& source);
  SheetImplT& operator=(const SheetImplT&) = default;

  // ---- For the book
  void load(Xls& xls, const RowWindow& window, bool skipBlanks);
  void save(Xls& xls);
  const std::u16string& currentName() const { return _name; }
  std::uint16_t substreamType() const { return _bof.dt; }
  void setSelected(bool selected) { _view.setSelected(selected); }
  bool a1Mode() const { return _words.calcRefMode != 0; }
  void setA1Mode(bool a1) { _words.calcRefMode = a1 ? 1 : 0; }
  // Gives the sheet's formulas the new indexes of the names that they use.
  void renumberNames(const NameMapping& mapping);
  const officeart::Drawing& shapes() const { return _drawing.shapes(); }
  // Gives comments that hold their own text, as those of a BIFF5 book, shapes to hold it.
  void settleComments();
  const ChunkedTable<LabelSstCell>& labelSstTable() const { return _cells.labelSstTable(); }

  // Takes the picture at `index` of pictureSize() off the sheet; the book keeps its bytes. False with "picture not
  // found".
  bool removePictureByIndex(int index);

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
  // ---- Cells (sheet_cells.cpp)
  BookState& state();
  // For an operation that this form doesn't have.
  template <class Result>
  Result refuse(const char* message, Result failure);
  // Throw xlerror "row must be in range 0-65535", "col must be in range 0-255".
  static void checkCell(int row, int col);
  CellWord cellAt(int row, int col) const;
  // The XF index that a cell gets: of the format, else of what the place has.
  std::uint16_t xfFor(FormatPtr format, CellWord word, int col);
  void giveFormat(CellWord word, FormatPtr* format);
  FormatPtr formatOfXf(std::uint16_t xf);
  void widenDimensions(int row, int col);
  void clearCells(int rowFirst, int rowLast, int colFirst, int colLast);
  double numberAt(CellWord word);
  // The number of a cell, or its text; nothing and null for other kinds.
  std::optional<double> numberIn(CellWord word);
  Text textAt(CellWord word);

  // ---- Rows and columns (sheet_rows_columns.cpp, sheet_outline.cpp)

  // The width of a column that has none of its own.
  std::uint16_t defaultStoredWidth();
  // An entry as a column gets it that had none.
  ColInfo freshColumn();
  // The row's entry; a new one has the sheet's default height.
  RowRecord& rowEntry(int row);
  // Sets width, hiding and, where given, the format of columns.
  void writeColumns(int colFirst, int colLast, std::uint16_t stored, std::optional<std::uint16_t> xf, bool hidden);
  // The width that fits the column to its cells; nothing when texts can't be measured.
  std::optional<std::uint16_t> fittedWidth(int col);

  // ---- Ranges (sheet_ranges.cpp)

  // Throw "rowFirst must be in range 0-65535" and the like.
  static void checkRows(int rowFirst, int rowLast);
  static void checkCols(int colFirst, int colLast);
  void addMerge(const MergedRange& range);

  // ---- Inserting and removing lines (sheet_moves.cpp)
  struct ColumnSetting {
    std::uint16_t stored = 0;  // width
    bool hidden = false;
    bool operator==(const ColumnSetting&) const = default;
  };
  void moveLines(const LineMove& move, bool updateNamedRanges);
  void keepReferences(const LineMove& move);
  // Gives a cell of a shared formula tokens of its own, with its references resolved for its place.
  void unshare(FormulaCell& cell);
  void moveRowsOfCells(const LineMove& move);
  void moveColumnsOfCells(const LineMove& move);
  void moveRowEntries(const LineMove& move);
  ColumnSetting columnSetting(int col);
  void moveColumnSettings(const LineMove& move);
  void moveDimensions(const LineMove& move);
  void moveMerges(const LineMove& move);
  void moveDefinitions(const LineMove& move);

  // ---- Links and marks (sheet_links.cpp)
  // Throws "index is out of range".
  HLink& linkAt(int index);
  // The SheetExt record, made on demand.
  RawRecord& sheetExt();

  // ---- Pictures and comments (sheet_pictures.cpp, sheet_comments.cpp)
  class Grid;
  int columnPixels(int col);
  int rowPixels(int row);
  // The drawing, begun where the sheet has none, and the id of a new shape in it.
  std::uint32_t newShape();
  // Places a box and answers the id of its object.
  std::uint16_t addCommentBox(int row, int col, std::u16string_view text, int width, int height);
  // Takes ids of its own and counts the pictures, after a copy within the book.
  void ownDrawing();

  // ---- Formulas (sheet_formulas.cpp)

  // Compiles an expression and stores it with a cached value.
  bool storeFormula(int row, int col, Text expression, const FormulaValue& value, Text text, FormatPtr format);
  void putFormula(const FormulaCell& cell);
  std::u16string formulaText(const FormulaCell& cell);
  // Tokens, with the data of array constants behind them.
  struct Expression {
    std::vector<std::uint8_t> bytes;
    std::size_t tokenSize = 0;
    // Whether it only names a shared formula, array or data table.
    bool isMember() const { return tokenSize > 0 && bytes[0] <= 2; }
  };
  // What a cell would hold on its own: the expression of its shared or array formula, offsets resolved for its place.
  Expression ownExpression(const FormulaCell& cell);
  // Makes it the cell's expression.
  void holdOwnExpression(FormulaCell& cell, const Expression& own);
  // Stores the cached value of a formula cell in place of the formula.
  void addCachedValue(const FormulaCell& cell);
  bool copyFormula(CellWord source, int rowDst, int colDst);

  // ---- Copies (sheet_copy.cpp)
  void copyContent(SheetImplT& source);
  void adoptFromOtherBook(SheetImplT& source);
  void adoptCell(SheetImplT& source, int row, int col, CellWord word, std::uint16_t xf);
  void adoptFormula(SheetImplT& source, FormulaCell cell, std::uint16_t xf);

  // ---- Load (sheet_load.cpp)
  struct LoadState;
  void resetForLoad();
  void loadRecord(Xls& xls, LoadState& load, std::uint16_t recordId, std::uint16_t size);
  bool loadCell(Xls& xls, const LoadState& load, std::uint16_t recordId, std::uint16_t size);
  void loadFormula(Xls& xls, const LoadState& load, std::uint16_t size);
  void loadFormulaFollowers(Xls& xls, FormulaCell& cell);
  void loadDefinition(const FormulaCell& holder, std::uint16_t recordId, std::span<const std::byte> bytes);
  bool loadCarried(Xls& xls, std::uint16_t recordId, std::uint16_t size);
  void loadNote(Xls& xls, std::uint16_t size);
  void loadDimensions(std::span<const std::byte> bytes);
  void loadIndex(std::span<const std::byte> bytes);
  void widenByCells();

  // ---- Save (sheet_save.cpp)
  void saveWorksheet(Xls& xls);
  void saveAsRecords(Xls& xls);
  void saveHead(Xls& xls);
  void saveColumns(Xls& xls);
  void recomputeDimensions();
  void saveRows(Xls& xls);
  void saveCells(Xls& xls);
  void saveCell(Xls& xls, CellWord word, const FormulaDefinitions::Placement& definitions);
  void saveFormula(Xls& xls, const FormulaCell& cell, const FormulaDefinition* definition);
  void saveTail(Xls& xls);
  void saveRawMember(Xls& xls, std::uint16_t recordId);

  BookImplT* _book;
  std::u16string _name;
  Bof _bof;
  SheetIndexRecord _indexRecord;
  SheetWords _words;
  bool _hasUncalced = false;
  CalcDelta _calcDelta;
  Guts _guts;
  DefaultRowHeight _defaultRowHeight;
  CellStore _cells;
  FormulaDefinitions _definitions;
  RowTable _rows;
  ColumnTable _columns;
  Dimensions _dimensions;
  MergeTable _merges;
  PageLayout _page;
  SheetView _view;
  SheetProtection _protection;
  std::vector<HLink> _hyperlinks;
  SharedFeatures _features;
  CarriedDrawing _drawing;
  NoteTable _notes;
  FormulaRange _autoFitArea{0, -1, 0, -1};  // what setCol measures; a negative end is that of the sheet
  // Records of subjects that are carried as they came, in file order within each list.
  std::vector<RawRecord> _rawMembers;    // one or more of an id with a place of its own
  std::vector<RawRecord> _phonetic;      // PhoneticInfo
  std::vector<RawRecord> _otherRecords;  // everything else
  std::u16string _addressText;
  std::u16string _formulaText;
  std::u16string _rangeName;
  std::u16string _hyperlinkText;
  std::u16string _commentText;
};

template <class Result>
Result SheetImplT::refuse(const char* message, Result failure) {
  state().setMessage(message);
  return failure;
}

}  // namespace rubrica
