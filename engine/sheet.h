// ISheetT: one sheet of a book: cells, rows and columns, ranges, page setup, names, links and views. Rows and columns
// are 0-based, ranges inclusive. An .xls sheet has rows 0 to 65535 and columns 0 to 255, an .xlsx sheet rows 0 to
// 1048575 and columns 0 to 16383.
//
// Failures answer false, null, 0, 0.0 or ErrorType::noError and leave the reason in the book's errorMessage; a cell
// outside the sheet fails with "row must be in range 0-65535" and the like. Out arguments may be null unless said
// otherwise. Texts stay valid until the next call that gives out a text of this book. Owned by the book; one thread per
// book.
//
//   sheet->writeNum(0, 0, book->datePack(2026, 11, 20), dateFormat);  // dates are numbers with a date format
#pragma once

#include "engine/auto_filter.h"
#include "engine/enums.h"
#include "engine/format.h"

namespace rubrica {

template <class C>
class ISheetT {
 public:
  // ---- Cells

  // The type of a cell; of a formula cell, that of its cached value.
  virtual CellType cellType(int row, int col) = 0;
  virtual bool isFormula(int row, int col) = 0;
  // The format of the cell; of an absent cell, that of its column or the default.
  virtual IFormatT<C>* cellFormat(int row, int col) = 0;
  // Gives the cell a format of this book; an absent cell becomes a blank.
  virtual void setCellFormat(int row, int col, IFormatT<C>* format) = 0;
  // Readers. `format`, where given, gets the cell's format. A cell of another kind fails: "this cell doesn't contain a
  // string" and so on.
  virtual const C* readStr(int row, int col, IFormatT<C>** format = nullptr) = 0;
  // Writers. A null `format` keeps what the place has; another must be of this book: "specified format not found".
  // Text is at most 32767 characters: "string is too long". `kind` picks the string form of an .xlsx cell: 0 and 2
  // shared, 1 inline.
  virtual bool writeStr(int row, int col, const C* value, IFormatT<C>* format = nullptr, int kind = 0) = 0;
  virtual double readNum(int row, int col, IFormatT<C>** format = nullptr) = 0;
  virtual bool writeNum(int row, int col, double value, IFormatT<C>* format = nullptr) = 0;
  virtual bool readBool(int row, int col, IFormatT<C>** format = nullptr) = 0;
  // errCode noError (255) writes a boolean, any other an error cell of that code.
  virtual bool writeBool(int row, int col, bool value, IFormatT<C>* format = nullptr,
                         ErrorType errCode = ErrorType::noError) = 0;
  // `format` must be given here: "format mustn't be NULL".
  virtual bool readBlank(int row, int col, IFormatT<C>** format) = 0;
  virtual bool writeBlank(int row, int col, IFormatT<C>* format) = 0;
  // Formula text without "="; null with "cell doesn't contain a formula".
  virtual const C* readFormula(int row, int col, IFormatT<C>** format = nullptr) = 0;
  // Formula text with or without "=", in A1 form with English function names. The other forms also store a cached
  // value, for programs that read values without calculating.
  virtual bool writeFormula(int row, int col, const C* expression, IFormatT<C>* format = nullptr) = 0;
  virtual bool writeFormulaNum(int row, int col, const C* expression, double value, IFormatT<C>* format = nullptr) = 0;
  virtual bool writeFormulaStr(int row, int col, const C* expression, const C* value,
                               IFormatT<C>* format = nullptr) = 0;
  virtual bool writeFormulaBool(int row, int col, const C* expression, bool value, IFormatT<C>* format = nullptr) = 0;
  // Comments: null with "ok" where there is none. Width and height of the box are pixels.
  virtual const C* readComment(int row, int col) = 0;
  virtual void writeComment(int row, int col, const C* value, const C* author = nullptr, int width = 129,
                            int height = 75) = 0;
  virtual bool removeComment(int row, int col) = 0;
  // True for a number whose format is a date or time format.
  virtual bool isDate(int row, int col) = 0;
  virtual ErrorType readError(int row, int col) = 0;
  virtual void writeError(int row, int col, ErrorType error, IFormatT<C>* format = nullptr) = 0;

  // ---- Rows and columns

  // Width in characters of the default font, 0 when hidden; height in points.
  virtual double colWidth(int col) = 0;
  virtual double rowHeight(int row) = 0;
  // Width in characters; a negative width fits the column to its content. A null format keeps the columns' own.
  virtual bool setCol(int colFirst, int colLast, double width, IFormatT<C>* format = nullptr, bool hidden = false) = 0;
  // Height in points, at most 409.6.
  virtual bool setRow(int row, double height, IFormatT<C>* format = nullptr, bool hidden = false) = 0;
  virtual bool rowHidden(int row) = 0;
  virtual bool setRowHidden(int row, bool hidden) = 0;
  virtual bool colHidden(int col) = 0;
  virtual bool setColHidden(int col, bool hidden) = 0;

  // ---- Merged ranges
  virtual bool getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
  virtual bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
  virtual bool delMerge(int row, int col) = 0;
  virtual int mergeSize() = 0;
  virtual bool merge(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
  virtual bool delMergeByIndex(int index) = 0;

  // ---- Pictures
  virtual int pictureSize() = 0;
  // The placement at `index`: its cells, its size and its offset from the top left cell in pixels. Answers the id of
  // the book's picture, -1 on failure.
  virtual int getPicture(int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height,
                         int* offset_x, int* offset_y) = 0;
  virtual void setPicture(int row, int col, int pictureId, double scale = 1.0, int offset_x = 0, int offset_y = 0,
                          PicturePosition pos = PicturePosition::moveAndSize) = 0;
  // Width and height in pixels; -1 keeps the picture's own in an .xlsx sheet and reaches to the end of the cell in an
  // .xls sheet.
  virtual void setPicture2(int row, int col, int pictureId, int width = -1, int height = -1, int offset_x = 0,
                           int offset_y = 0, PicturePosition pos = PicturePosition::moveAndSize) = 0;

  // ---- Breaks, panes, outline
  virtual int getHorzPageBreak(int index) = 0;
  virtual int getHorzPageBreakSize() = 0;
  virtual int getVertPageBreak(int index) = 0;
  virtual int getVertPageBreakSize() = 0;
  virtual bool setHorzPageBreak(int row, bool pageBreak = true) = 0;
  virtual bool setVertPageBreak(int col, bool pageBreak = true) = 0;
  // Freezes the rows above `row` and the columns left of `col`.
  virtual void split(int row, int col) = 0;
  virtual bool splitInfo(int* row, int* col) = 0;
  virtual bool groupRows(int rowFirst, int rowLast, bool collapsed = true) = 0;
  virtual bool groupCols(int colFirst, int colLast, bool collapsed = true) = 0;
  virtual bool groupSummaryBelow() = 0;
  virtual void setGroupSummaryBelow(bool below) = 0;
  virtual bool groupSummaryRight() = 0;
  virtual void setGroupSummaryRight(bool right) = 0;

  // ---- Ranges

  // Deletes the cells of a range.
  virtual void clear(int rowFirst = 0, int rowLast = 65535, int colFirst = 0, int colLast = 255) = 0;
  virtual bool insertCol(int colFirst, int colLast, bool updateNamedRanges = true) = 0;
  virtual bool insertRow(int rowFirst, int rowLast, bool updateNamedRanges = true) = 0;
  virtual bool removeCol(int colFirst, int colLast, bool updateNamedRanges = true) = 0;
  virtual bool removeRow(int rowFirst, int rowLast, bool updateNamedRanges = true) = 0;
  // Copies value and format; "empty cell" where the source is absent.
  virtual bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) = 0;
  // The used range. lastRow and lastCol are one past the last used; all are 0 on an empty sheet.
  virtual int firstRow() = 0;
  virtual int lastRow() = 0;
  virtual int firstCol() = 0;
  virtual int lastCol() = 0;

  // ---- View and page setup
  virtual bool displayGridlines() = 0;
  virtual void setDisplayGridlines(bool show = true) = 0;
  virtual bool printGridlines() = 0;
  virtual void setPrintGridlines(bool print = true) = 0;
  virtual int zoom() = 0;  // percent
  virtual void setZoom(int zoom) = 0;
  virtual int printZoom() = 0;  // percent
  virtual void setPrintZoom(int zoom) = 0;
  // Whether printing is fitted to pages, and to how many across and down.
  virtual bool getPrintFit(int* wPages, int* hPages) = 0;
  virtual void setPrintFit(int wPages, int hPages) = 0;
  virtual bool landscape() = 0;
  virtual void setLandscape(bool landscape = true) = 0;
  virtual int paper() = 0;  // a paper code, see enums.h
  virtual void setPaper(int paper = kPaperDefault) = 0;
  // Header and footer texts with their margins in inches.
  virtual const C* header() = 0;
  virtual bool setHeader(const C* header, double margin = 0.5) = 0;
  virtual double headerMargin() = 0;
  virtual const C* footer() = 0;
  virtual bool setFooter(const C* footer, double margin = 0.5) = 0;
  virtual double footerMargin() = 0;
  virtual bool hCenter() = 0;
  virtual void setHCenter(bool hCenter = true) = 0;
  virtual bool vCenter() = 0;
  virtual void setVCenter(bool vCenter = true) = 0;
  // Margins in inches.
  virtual double marginLeft() = 0;
  virtual void setMarginLeft(double margin) = 0;
  virtual double marginRight() = 0;
  virtual void setMarginRight(double margin) = 0;
  virtual double marginTop() = 0;
  virtual void setMarginTop(double margin) = 0;
  virtual double marginBottom() = 0;
  virtual void setMarginBottom(double margin) = 0;
  virtual bool printRowCol() = 0;
  virtual void setPrintRowCol(bool print = true) = 0;
  virtual bool printRepeatRows(int* rowFirst, int* rowLast) = 0;
  virtual void setPrintRepeatRows(int rowFirst, int rowLast) = 0;
  virtual bool printRepeatCols(int* colFirst, int* colLast) = 0;
  virtual void setPrintRepeatCols(int colFirst, int colLast) = 0;
  virtual bool printArea(int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
  virtual void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
  virtual void clearPrintRepeats() = 0;
  virtual void clearPrintArea() = 0;

  // ---- Names, tables, links

  // scopeId: kScopeUndefined and kScopeWorkbook for a name of the whole book, otherwise the 0-based index of the sheet
  // whose name it is; names of other scopes aren't looked at. Names are compared without regard to case. A sheet counts
  // and lists its own names and those of the book; the list gives -1 for the range of a name that stands for none.
  static constexpr int kScopeUndefined = -2;
  static constexpr int kScopeWorkbook = -1;
  virtual bool getNamedRange(const C* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast,
                             int scopeId = kScopeUndefined, bool* hidden = nullptr) = 0;
  virtual bool setNamedRange(const C* name, int rowFirst, int rowLast, int colFirst, int colLast,
                             int scopeId = kScopeUndefined, bool hidden = false) = 0;
  virtual bool delNamedRange(const C* name, int scopeId = kScopeUndefined) = 0;
  virtual int namedRangeSize() = 0;
  virtual const C* namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast,
                              int* scopeId = nullptr, bool* hidden = nullptr) = 0;
  virtual int tableSize() = 0;
  virtual const C* table(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int* headerRowCount,
                         int* totalsRowCount) = 0;
  virtual int hyperlinkSize() = 0;
  virtual const C* hyperlink(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
  virtual bool delHyperlink(int index) = 0;
  virtual void addHyperlink(const C* hyperlink, int rowFirst, int rowLast, int colFirst, int colLast) = 0;
  // The filter of an .xlsx sheet, made on demand; null on an .xls sheet.
  virtual IAutoFilterT<C>* autoFilter() = 0;
  virtual void applyFilter() = 0;
  virtual void removeFilter() = 0;

  // ---- The sheet itself
  virtual const C* name() = 0;
  virtual void setName(const C* name) = 0;
  virtual bool protect() = 0;
  // `enhanced`: -1, or the option mask of an enhanced protection feature.
  virtual void setProtect(bool protect, const C* password = nullptr, int enhanced = -1) = 0;
  virtual SheetState hidden() = 0;
  virtual bool setHidden(SheetState state = SheetState::hidden) = 0;
  virtual void getTopLeftView(int* row, int* col) = 0;
  virtual void setTopLeftView(int row, int col) = 0;
  virtual bool rightToLeft() = 0;
  virtual void setRightToLeft(bool rightToLeft = true) = 0;
  // The area that setCol measures when it fits a column; the defaults are the whole sheet.
  virtual void setAutoFitArea(int rowFirst = 0, int colFirst = 0, int rowLast = -1, int colLast = -1) = 0;
  // A1 addresses. A part with "$" is absolute, one without is relative.
  virtual void addrToRowCol(const C* addr, int* row, int* col, bool* rowRelative = nullptr,
                            bool* colRelative = nullptr) = 0;
  virtual const C* rowColToAddr(int row, int col, bool rowRelative = true, bool colRelative = true) = 0;
  virtual void setTabRgbColor(int red, int green, int blue) = 0;
  virtual void setTabColor(Color color) = 0;

  // ---- Marks and validation

  // errorSet: the bits of the ignored-error feature (1 evaluation, 2 empty reference, 4 number as text, 8 inconsistent
  // range, 16 inconsistent formula, 32 two-digit year, 64 unlocked, 128 list).
  virtual bool addIgnoredError(int rowFirst, int colFirst, int rowLast, int colLast, int errorSet) = 0;
  virtual bool addDataValidation(ValidationType type, ValidationOperator op, int rowFirst, int rowLast, int colFirst,
                                 int colLast, const C* value1, const C* value2 = nullptr, bool allowBlank = true,
                                 bool hideDropDown = false, bool showInputMessage = true, bool showErrorMessage = true,
                                 const C* promptTitle = nullptr, const C* prompt = nullptr,
                                 const C* errorTitle = nullptr, const C* error = nullptr,
                                 ValidationErrorStyle errorStyle = ValidationErrorStyle::stop) = 0;
  virtual bool addDataValidationDouble(ValidationType type, ValidationOperator op, int rowFirst, int rowLast,
                                       int colFirst, int colLast, double value1, double value2 = 0.0,
                                       bool allowBlank = true, bool hideDropDown = false, bool showInputMessage = true,
                                       bool showErrorMessage = true, const C* promptTitle = nullptr,
                                       const C* prompt = nullptr, const C* errorTitle = nullptr,
                                       const C* error = nullptr,
                                       ValidationErrorStyle errorStyle = ValidationErrorStyle::stop) = 0;
  virtual bool removeDataValidations() = 0;
  virtual ~ISheetT() = default;
};

using Sheet = ISheetT<char16_t>;

}  // namespace rubrica
