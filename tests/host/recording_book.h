// A book that does nothing but record what the host component asks of it, so that tests can see every argument that
// reaches the engine. Sheets, formats and fonts exist and can be counted; all else answers what a test sets.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/book.h"
#include "engine/date_serial.h"
#include "tests/host/call_log.h"

namespace rubrica::host::testing {

class RecordingFont : public Font {
 public:
  explicit RecordingFont(const CallLog::Lines& lines) : calls(lines), _calls(calls) {}
  CallLog calls;

  int size() const override { return _calls.answer<int>("size"); }
  void setSize(int points) override { return _calls.answer<void>("setSize", points); }
  bool italic() const override { return _calls.answer<bool>("italic"); }
  void setItalic(bool italic) override { return _calls.answer<void>("setItalic", italic); }
  bool strikeOut() const override { return _calls.answer<bool>("strikeOut"); }
  void setStrikeOut(bool strikeOut) override { return _calls.answer<void>("setStrikeOut", strikeOut); }
  Color color() const override { return _calls.answer<Color>("color"); }
  void setColor(Color color) override { return _calls.answer<void>("setColor", color); }
  bool bold() const override { return _calls.answer<bool>("bold"); }
  void setBold(bool bold) override { return _calls.answer<void>("setBold", bold); }
  Script script() const override { return _calls.answer<Script>("script"); }
  void setScript(Script script) override { return _calls.answer<void>("setScript", script); }
  Underline underline() const override { return _calls.answer<Underline>("underline"); }
  void setUnderline(Underline underline) override { return _calls.answer<void>("setUnderline", underline); }
  const char16_t* name() override { return _calls.answer<const char16_t*>("name"); }
  bool setName(const char16_t* name) override { return _calls.answer<bool>("setName", name); }

 private:
  CallLog& _calls;
};

class RecordingFormat : public Format {
 public:
  explicit RecordingFormat(const CallLog::Lines& lines) : calls(lines), _calls(calls) {}
  CallLog calls;
  Font* givenFont = nullptr;

  Font* font() override { return givenFont; }
  bool setFont(Font* font) override { return _calls.answer<bool>("setFont", font); }
  int numFormat() const override { return _calls.answer<int>("numFormat"); }
  void setNumFormat(int numFormat) override { return _calls.answer<void>("setNumFormat", numFormat); }
  AlignH alignH() const override { return _calls.answer<AlignH>("alignH"); }
  void setAlignH(AlignH align) override { return _calls.answer<void>("setAlignH", align); }
  AlignV alignV() const override { return _calls.answer<AlignV>("alignV"); }
  void setAlignV(AlignV align) override { return _calls.answer<void>("setAlignV", align); }
  bool wrap() const override { return _calls.answer<bool>("wrap"); }
  void setWrap(bool wrap) override { return _calls.answer<void>("setWrap", wrap); }
  int rotation() const override { return _calls.answer<int>("rotation"); }
  bool setRotation(int rotation) override { return _calls.answer<bool>("setRotation", rotation); }
  int indent() const override { return _calls.answer<int>("indent"); }
  void setIndent(int indent) override { return _calls.answer<void>("setIndent", indent); }
  bool shrinkToFit() const override { return _calls.answer<bool>("shrinkToFit"); }
  void setShrinkToFit(bool shrinkToFit) override { return _calls.answer<void>("setShrinkToFit", shrinkToFit); }
  void setBorder(BorderStyle style) override { return _calls.answer<void>("setBorder", style); }
  void setBorderColor(Color color) override { return _calls.answer<void>("setBorderColor", color); }
  BorderStyle borderLeft() const override { return _calls.answer<BorderStyle>("borderLeft"); }
  void setBorderLeft(BorderStyle style) override { return _calls.answer<void>("setBorderLeft", style); }
  BorderStyle borderRight() const override { return _calls.answer<BorderStyle>("borderRight"); }
  void setBorderRight(BorderStyle style) override { return _calls.answer<void>("setBorderRight", style); }
  BorderStyle borderTop() const override { return _calls.answer<BorderStyle>("borderTop"); }
  void setBorderTop(BorderStyle style) override { return _calls.answer<void>("setBorderTop", style); }
  BorderStyle borderBottom() const override { return _calls.answer<BorderStyle>("borderBottom"); }
  void setBorderBottom(BorderStyle style) override { return _calls.answer<void>("setBorderBottom", style); }
  Color borderLeftColor() const override { return _calls.answer<Color>("borderLeftColor"); }
  void setBorderLeftColor(Color color) override { return _calls.answer<void>("setBorderLeftColor", color); }
  Color borderRightColor() const override { return _calls.answer<Color>("borderRightColor"); }
  void setBorderRightColor(Color color) override { return _calls.answer<void>("setBorderRightColor", color); }
  Color borderTopColor() const override { return _calls.answer<Color>("borderTopColor"); }
  void setBorderTopColor(Color color) override { return _calls.answer<void>("setBorderTopColor", color); }
  Color borderBottomColor() const override { return _calls.answer<Color>("borderBottomColor"); }
  void setBorderBottomColor(Color color) override { return _calls.answer<void>("setBorderBottomColor", color); }
  BorderDiagonal borderDiagonal() const override { return _calls.answer<BorderDiagonal>("borderDiagonal"); }
  void setBorderDiagonal(BorderDiagonal border) override { return _calls.answer<void>("setBorderDiagonal", border); }
  BorderStyle borderDiagonalStyle() const override { return _calls.answer<BorderStyle>("borderDiagonalStyle"); }
  void setBorderDiagonalStyle(BorderStyle style) override {
    return _calls.answer<void>("setBorderDiagonalStyle", style);
  }
  Color borderDiagonalColor() const override { return _calls.answer<Color>("borderDiagonalColor"); }
  void setBorderDiagonalColor(Color color) override { return _calls.answer<void>("setBorderDiagonalColor", color); }
  FillPattern fillPattern() const override { return _calls.answer<FillPattern>("fillPattern"); }
  void setFillPattern(FillPattern pattern) override { return _calls.answer<void>("setFillPattern", pattern); }
  Color patternForegroundColor() const override { return _calls.answer<Color>("patternForegroundColor"); }
  void setPatternForegroundColor(Color color) override {
    return _calls.answer<void>("setPatternForegroundColor", color);
  }
  Color patternBackgroundColor() const override { return _calls.answer<Color>("patternBackgroundColor"); }
  void setPatternBackgroundColor(Color color) override {
    return _calls.answer<void>("setPatternBackgroundColor", color);
  }
  bool locked() const override { return _calls.answer<bool>("locked"); }
  void setLocked(bool locked) override { return _calls.answer<void>("setLocked", locked); }
  bool hidden() const override { return _calls.answer<bool>("hidden"); }
  void setHidden(bool hidden) override { return _calls.answer<void>("setHidden", hidden); }

 private:
  CallLog& _calls;
};

class RecordingSheet : public Sheet {
 public:
  explicit RecordingSheet(const CallLog::Lines& lines) : calls(lines), _calls(calls) {}
  CallLog calls;
  Format* givenFormat = nullptr;

  Format* cellFormat(int, int) override { return givenFormat; }
  CellType cellType(int row, int col) override { return _calls.answer<CellType>("cellType", row, col); }
  bool isFormula(int row, int col) override { return _calls.answer<bool>("isFormula", row, col); }
  void setCellFormat(int row, int col, Format* format) override {
    return _calls.answer<void>("setCellFormat", row, col, format);
  }
  const char16_t* readStr(int row, int col, Format** format) override {
    return _calls.answer<const char16_t*>("readStr", row, col, format);
  }
  bool writeStr(int row, int col, const char16_t* value, Format* format, int kind) override {
    return _calls.answer<bool>("writeStr", row, col, value, format, kind);
  }
  double readNum(int row, int col, Format** format) override {
    return _calls.answer<double>("readNum", row, col, format);
  }
  bool writeNum(int row, int col, double value, Format* format) override {
    return _calls.answer<bool>("writeNum", row, col, value, format);
  }
  bool readBool(int row, int col, Format** format) override {
    return _calls.answer<bool>("readBool", row, col, format);
  }
  bool writeBool(int row, int col, bool value, Format* format, ErrorType errCode) override {
    return _calls.answer<bool>("writeBool", row, col, value, format, errCode);
  }
  bool readBlank(int row, int col, Format** format) override {
    return _calls.answer<bool>("readBlank", row, col, format);
  }
  bool writeBlank(int row, int col, Format* format) override {
    return _calls.answer<bool>("writeBlank", row, col, format);
  }
  const char16_t* readFormula(int row, int col, Format** format) override {
    return _calls.answer<const char16_t*>("readFormula", row, col, format);
  }
  bool writeFormula(int row, int col, const char16_t* expression, Format* format) override {
    return _calls.answer<bool>("writeFormula", row, col, expression, format);
  }
  bool writeFormulaNum(int row, int col, const char16_t* expression, double value, Format* format) override {
    return _calls.answer<bool>("writeFormulaNum", row, col, expression, value, format);
  }
  bool writeFormulaStr(int row, int col, const char16_t* expression, const char16_t* value, Format* format) override {
    return _calls.answer<bool>("writeFormulaStr", row, col, expression, value, format);
  }
  bool writeFormulaBool(int row, int col, const char16_t* expression, bool value, Format* format) override {
    return _calls.answer<bool>("writeFormulaBool", row, col, expression, value, format);
  }
  const char16_t* readComment(int row, int col) override {
    return _calls.answer<const char16_t*>("readComment", row, col);
  }
  void writeComment(int row, int col, const char16_t* value, const char16_t* author, int width, int height) override {
    return _calls.answer<void>("writeComment", row, col, value, author, width, height);
  }
  bool removeComment(int row, int col) override { return _calls.answer<bool>("removeComment", row, col); }
  bool isDate(int row, int col) override { return _calls.answer<bool>("isDate", row, col); }
  ErrorType readError(int row, int col) override { return _calls.answer<ErrorType>("readError", row, col); }
  void writeError(int row, int col, ErrorType error, Format* format) override {
    return _calls.answer<void>("writeError", row, col, error, format);
  }
  double colWidth(int col) override { return _calls.answer<double>("colWidth", col); }
  double rowHeight(int row) override { return _calls.answer<double>("rowHeight", row); }
  bool setCol(int colFirst, int colLast, double width, Format* format, bool hidden) override {
    return _calls.answer<bool>("setCol", colFirst, colLast, width, format, hidden);
  }
  bool setRow(int row, double height, Format* format, bool hidden) override {
    return _calls.answer<bool>("setRow", row, height, format, hidden);
  }
  bool rowHidden(int row) override { return _calls.answer<bool>("rowHidden", row); }
  bool setRowHidden(int row, bool hidden) override { return _calls.answer<bool>("setRowHidden", row, hidden); }
  bool colHidden(int col) override { return _calls.answer<bool>("colHidden", col); }
  bool setColHidden(int col, bool hidden) override { return _calls.answer<bool>("setColHidden", col, hidden); }
  bool getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override {
    return _calls.answer<bool>("getMerge", row, col, rowFirst, rowLast, colFirst, colLast);
  }
  bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) override {
    return _calls.answer<bool>("setMerge", rowFirst, rowLast, colFirst, colLast);
  }
  bool delMerge(int row, int col) override { return _calls.answer<bool>("delMerge", row, col); }
  int mergeSize() override { return _calls.answer<int>("mergeSize"); }
  bool merge(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override {
    return _calls.answer<bool>("merge", index, rowFirst, rowLast, colFirst, colLast);
  }
  bool delMergeByIndex(int index) override { return _calls.answer<bool>("delMergeByIndex", index); }
  int pictureSize() override { return _calls.answer<int>("pictureSize"); }
  int getPicture(int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height,
                 int* offset_x, int* offset_y) override {
    return _calls.answer<int>("getPicture", index, rowTop, colLeft, rowBottom, colRight, width, height, offset_x,
                              offset_y);
  }
  void setPicture(int row, int col, int pictureId, double scale, int offset_x, int offset_y,
                  PicturePosition pos) override {
    return _calls.answer<void>("setPicture", row, col, pictureId, scale, offset_x, offset_y, pos);
  }
  void setPicture2(int row, int col, int pictureId, int width, int height, int offset_x, int offset_y,
                   PicturePosition pos) override {
    return _calls.answer<void>("setPicture2", row, col, pictureId, width, height, offset_x, offset_y, pos);
  }
  int getHorzPageBreak(int index) override { return _calls.answer<int>("getHorzPageBreak", index); }
  int getHorzPageBreakSize() override { return _calls.answer<int>("getHorzPageBreakSize"); }
  int getVertPageBreak(int index) override { return _calls.answer<int>("getVertPageBreak", index); }
  int getVertPageBreakSize() override { return _calls.answer<int>("getVertPageBreakSize"); }
  bool setHorzPageBreak(int row, bool pageBreak) override {
    return _calls.answer<bool>("setHorzPageBreak", row, pageBreak);
  }
  bool setVertPageBreak(int col, bool pageBreak) override {
    return _calls.answer<bool>("setVertPageBreak", col, pageBreak);
  }
  void split(int row, int col) override { return _calls.answer<void>("split", row, col); }
  bool splitInfo(int* row, int* col) override { return _calls.answer<bool>("splitInfo", row, col); }
  bool groupRows(int rowFirst, int rowLast, bool collapsed) override {
    return _calls.answer<bool>("groupRows", rowFirst, rowLast, collapsed);
  }
  bool groupCols(int colFirst, int colLast, bool collapsed) override {
    return _calls.answer<bool>("groupCols", colFirst, colLast, collapsed);
  }
  bool groupSummaryBelow() override { return _calls.answer<bool>("groupSummaryBelow"); }
  void setGroupSummaryBelow(bool below) override { return _calls.answer<void>("setGroupSummaryBelow", below); }
  bool groupSummaryRight() override { return _calls.answer<bool>("groupSummaryRight"); }
  void setGroupSummaryRight(bool right) override { return _calls.answer<void>("setGroupSummaryRight", right); }
  void clear(int rowFirst, int rowLast, int colFirst, int colLast) override {
    return _calls.answer<void>("clear", rowFirst, rowLast, colFirst, colLast);
  }
  bool insertCol(int colFirst, int colLast, bool updateNamedRanges) override {
    return _calls.answer<bool>("insertCol", colFirst, colLast, updateNamedRanges);
  }
  bool insertRow(int rowFirst, int rowLast, bool updateNamedRanges) override {
    return _calls.answer<bool>("insertRow", rowFirst, rowLast, updateNamedRanges);
  }
  bool removeCol(int colFirst, int colLast, bool updateNamedRanges) override {
    return _calls.answer<bool>("removeCol", colFirst, colLast, updateNamedRanges);
  }
  bool removeRow(int rowFirst, int rowLast, bool updateNamedRanges) override {
    return _calls.answer<bool>("removeRow", rowFirst, rowLast, updateNamedRanges);
  }
  bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) override {
    return _calls.answer<bool>("copyCell", rowSrc, colSrc, rowDst, colDst);
  }
  int firstRow() override { return _calls.answer<int>("firstRow"); }
  int lastRow() override { return _calls.answer<int>("lastRow"); }
  int firstCol() override { return _calls.answer<int>("firstCol"); }
  int lastCol() override { return _calls.answer<int>("lastCol"); }
  bool displayGridlines() override { return _calls.answer<bool>("displayGridlines"); }
  void setDisplayGridlines(bool show) override { return _calls.answer<void>("setDisplayGridlines", show); }
  bool printGridlines() override { return _calls.answer<bool>("printGridlines"); }
  void setPrintGridlines(bool print) override { return _calls.answer<void>("setPrintGridlines", print); }
  int zoom() override { return _calls.answer<int>("zoom"); }
  void setZoom(int zoom) override { return _calls.answer<void>("setZoom", zoom); }
  int printZoom() override { return _calls.answer<int>("printZoom"); }
  void setPrintZoom(int zoom) override { return _calls.answer<void>("setPrintZoom", zoom); }
  bool getPrintFit(int* wPages, int* hPages) override { return _calls.answer<bool>("getPrintFit", wPages, hPages); }
  void setPrintFit(int wPages, int hPages) override { return _calls.answer<void>("setPrintFit", wPages, hPages); }
  bool landscape() override { return _calls.answer<bool>("landscape"); }
  void setLandscape(bool landscape) override { return _calls.answer<void>("setLandscape", landscape); }
  int paper() override { return _calls.answer<int>("paper"); }
  void setPaper(int paper) override { return _calls.answer<void>("setPaper", paper); }
  const char16_t* header() override { return _calls.answer<const char16_t*>("header"); }
  bool setHeader(const char16_t* header, double margin) override {
    return _calls.answer<bool>("setHeader", header, margin);
  }
  double headerMargin() override { return _calls.answer<double>("headerMargin"); }
  const char16_t* footer() override { return _calls.answer<const char16_t*>("footer"); }
  bool setFooter(const char16_t* footer, double margin) override {
    return _calls.answer<bool>("setFooter", footer, margin);
  }
  double footerMargin() override { return _calls.answer<double>("footerMargin"); }
  bool hCenter() override { return _calls.answer<bool>("hCenter"); }
  void setHCenter(bool hCenter) override { return _calls.answer<void>("setHCenter", hCenter); }
  bool vCenter() override { return _calls.answer<bool>("vCenter"); }
  void setVCenter(bool vCenter) override { return _calls.answer<void>("setVCenter", vCenter); }
  double marginLeft() override { return _calls.answer<double>("marginLeft"); }
  void setMarginLeft(double margin) override { return _calls.answer<void>("setMarginLeft", margin); }
  double marginRight() override { return _calls.answer<double>("marginRight"); }
  void setMarginRight(double margin) override { return _calls.answer<void>("setMarginRight", margin); }
  double marginTop() override { return _calls.answer<double>("marginTop"); }
  void setMarginTop(double margin) override { return _calls.answer<void>("setMarginTop", margin); }
  double marginBottom() override { return _calls.answer<double>("marginBottom"); }
  void setMarginBottom(double margin) override { return _calls.answer<void>("setMarginBottom", margin); }
  bool printRowCol() override { return _calls.answer<bool>("printRowCol"); }
  void setPrintRowCol(bool print) override { return _calls.answer<void>("setPrintRowCol", print); }
  bool printRepeatRows(int* rowFirst, int* rowLast) override {
    return _calls.answer<bool>("printRepeatRows", rowFirst, rowLast);
  }
  void setPrintRepeatRows(int rowFirst, int rowLast) override {
    return _calls.answer<void>("setPrintRepeatRows", rowFirst, rowLast);
  }
  bool printRepeatCols(int* colFirst, int* colLast) override {
    return _calls.answer<bool>("printRepeatCols", colFirst, colLast);
  }
  void setPrintRepeatCols(int colFirst, int colLast) override {
    return _calls.answer<void>("setPrintRepeatCols", colFirst, colLast);
  }
  bool printArea(int* rowFirst, int* rowLast, int* colFirst, int* colLast) override {
    return _calls.answer<bool>("printArea", rowFirst, rowLast, colFirst, colLast);
  }
  void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) override {
    return _calls.answer<void>("setPrintArea", rowFirst, rowLast, colFirst, colLast);
  }
  void clearPrintRepeats() override { return _calls.answer<void>("clearPrintRepeats"); }
  void clearPrintArea() override { return _calls.answer<void>("clearPrintArea"); }
  bool getNamedRange(const char16_t* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int scopeId,
                     bool* hidden) override {
    return _calls.answer<bool>("getNamedRange", name, rowFirst, rowLast, colFirst, colLast, scopeId, hidden);
  }
  bool setNamedRange(const char16_t* name, int rowFirst, int rowLast, int colFirst, int colLast, int scopeId,
                     bool hidden) override {
    return _calls.answer<bool>("setNamedRange", name, rowFirst, rowLast, colFirst, colLast, scopeId, hidden);
  }
  bool delNamedRange(const char16_t* name, int scopeId) override {
    return _calls.answer<bool>("delNamedRange", name, scopeId);
  }
  int namedRangeSize() override { return _calls.answer<int>("namedRangeSize"); }
  const char16_t* namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int* scopeId,
                             bool* hidden) override {
    return _calls.answer<const char16_t*>("namedRange", index, rowFirst, rowLast, colFirst, colLast, scopeId, hidden);
  }
  int tableSize() override { return _calls.answer<int>("tableSize"); }
  const char16_t* table(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int* headerRowCount,
                        int* totalsRowCount) override {
    return _calls.answer<const char16_t*>("table", index, rowFirst, rowLast, colFirst, colLast, headerRowCount,
                                          totalsRowCount);
  }
  int hyperlinkSize() override { return _calls.answer<int>("hyperlinkSize"); }
  const char16_t* hyperlink(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override {
    return _calls.answer<const char16_t*>("hyperlink", index, rowFirst, rowLast, colFirst, colLast);
  }
  bool delHyperlink(int index) override { return _calls.answer<bool>("delHyperlink", index); }
  void addHyperlink(const char16_t* hyperlink, int rowFirst, int rowLast, int colFirst, int colLast) override {
    return _calls.answer<void>("addHyperlink", hyperlink, rowFirst, rowLast, colFirst, colLast);
  }
  IAutoFilterT<char16_t>* autoFilter() override { return _calls.answer<IAutoFilterT<char16_t>*>("autoFilter"); }
  void applyFilter() override { return _calls.answer<void>("applyFilter"); }
  void removeFilter() override { return _calls.answer<void>("removeFilter"); }
  const char16_t* name() override { return _calls.answer<const char16_t*>("name"); }
  void setName(const char16_t* name) override { return _calls.answer<void>("setName", name); }
  bool protect() override { return _calls.answer<bool>("protect"); }
  void setProtect(bool protect, const char16_t* password, int enhanced) override {
    return _calls.answer<void>("setProtect", protect, password, enhanced);
  }
  SheetState hidden() override { return _calls.answer<SheetState>("hidden"); }
  bool setHidden(SheetState state) override { return _calls.answer<bool>("setHidden", state); }
  void getTopLeftView(int* row, int* col) override { return _calls.answer<void>("getTopLeftView", row, col); }
  void setTopLeftView(int row, int col) override { return _calls.answer<void>("setTopLeftView", row, col); }
  bool rightToLeft() override { return _calls.answer<bool>("rightToLeft"); }
  void setRightToLeft(bool rightToLeft) override { return _calls.answer<void>("setRightToLeft", rightToLeft); }
  void setAutoFitArea(int rowFirst, int colFirst, int rowLast, int colLast) override {
    return _calls.answer<void>("setAutoFitArea", rowFirst, colFirst, rowLast, colLast);
  }
  void addrToRowCol(const char16_t* addr, int* row, int* col, bool* rowRelative, bool* colRelative) override {
    return _calls.answer<void>("addrToRowCol", addr, row, col, rowRelative, colRelative);
  }
  const char16_t* rowColToAddr(int row, int col, bool rowRelative, bool colRelative) override {
    return _calls.answer<const char16_t*>("rowColToAddr", row, col, rowRelative, colRelative);
  }
  void setTabRgbColor(int red, int green, int blue) override {
    return _calls.answer<void>("setTabRgbColor", red, green, blue);
  }
  void setTabColor(Color color) override { return _calls.answer<void>("setTabColor", color); }
  bool addIgnoredError(int rowFirst, int colFirst, int rowLast, int colLast, int errorSet) override {
    return _calls.answer<bool>("addIgnoredError", rowFirst, colFirst, rowLast, colLast, errorSet);
  }
  bool addDataValidation(ValidationType type, ValidationOperator op, int rowFirst, int rowLast, int colFirst,
                         int colLast, const char16_t* value1, const char16_t* value2, bool allowBlank,
                         bool hideDropDown, bool showInputMessage, bool showErrorMessage, const char16_t* promptTitle,
                         const char16_t* prompt, const char16_t* errorTitle, const char16_t* error,
                         ValidationErrorStyle errorStyle) override {
    return _calls.answer<bool>("addDataValidation", type, op, rowFirst, rowLast, colFirst, colLast, value1, value2,
                               allowBlank, hideDropDown, showInputMessage, showErrorMessage, promptTitle, prompt,
                               errorTitle, error, errorStyle);
  }
  bool addDataValidationDouble(ValidationType type, ValidationOperator op, int rowFirst, int rowLast, int colFirst,
                               int colLast, double value1, double value2, bool allowBlank, bool hideDropDown,
                               bool showInputMessage, bool showErrorMessage, const char16_t* promptTitle,
                               const char16_t* prompt, const char16_t* errorTitle, const char16_t* error,
                               ValidationErrorStyle errorStyle) override {
    return _calls.answer<bool>("addDataValidationDouble", type, op, rowFirst, rowLast, colFirst, colLast, value1,
                               value2, allowBlank, hideDropDown, showInputMessage, showErrorMessage, promptTitle,
                               prompt, errorTitle, error, errorStyle);
  }
  bool removeDataValidations() override { return _calls.answer<bool>("removeDataValidations"); }

 private:
  CallLog& _calls;
};

class RecordingBook : public Book {
 public:
  explicit RecordingBook(bool isXmlForm);
  ~RecordingBook() override;
  const bool isXml;
  // The book made last, and how many there are.
  static RecordingBook* latest;
  static int alive;

  const std::vector<std::string>& lines() const { return *_lines; }
  // The last call of an operation, or empty.
  std::string last(const std::string& name) const;
  void clearLines() { _lines->clear(); }

  std::string message = "ok";
  bool refusesNewObjects = false;
  std::string rawData;
  std::vector<std::unique_ptr<RecordingSheet>> sheets;
  std::vector<std::unique_ptr<RecordingFormat>> formats;
  std::vector<std::unique_ptr<RecordingFont>> fonts;

 private:
  CallLog::Lines _lines = std::make_shared<std::vector<std::string>>();

 public:
  CallLog calls{_lines};

  Sheet* addSheet(const char16_t* name, Sheet* initSheet) override;
  Sheet* getSheet(int index) override;
  const char16_t* getSheetName(int) override { return nullptr; }
  bool delSheet(int index) override;
  int sheetCount() override { return static_cast<int>(sheets.size()); }
  Format* addFormat(Format* initFormat) override;
  Font* addFont(Font* initFont) override;
  Format* format(int index) override;
  int formatSize() override { return static_cast<int>(formats.size()); }
  Font* font(int index) override;
  int fontSize() override { return static_cast<int>(fonts.size()); }
  double datePack(int year, int month, int day, int hour, int min, int sec, int msec) override;
  bool dateUnpack(double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec) override;
  bool saveRaw(const void** data, std::size_t* size) override;
  PictureType getPicture(int, const void**, std::size_t*) override { return PictureType::notFound; }
  const char* errorMessage() const override { return message.c_str(); }
  void release() override { delete this; }
  bool load(const char16_t* filename, const char16_t* tempFile) override {
    return _calls.answer<bool>("load", filename, tempFile);
  }
  bool loadSheet(const char16_t* filename, int sheetIndex, const char16_t* tempFile) override {
    return _calls.answer<bool>("loadSheet", filename, sheetIndex, tempFile);
  }
  bool loadPartially(const char16_t* filename, int sheetIndex, int firstRow, int lastRow,
                     const char16_t* tempFile) override {
    return _calls.answer<bool>("loadPartially", filename, sheetIndex, firstRow, lastRow, tempFile);
  }
  bool loadWithoutEmptyCells(const char16_t* filename) override {
    return _calls.answer<bool>("loadWithoutEmptyCells", filename);
  }
  bool loadInfo(const char16_t* filename) override { return _calls.answer<bool>("loadInfo", filename); }
  bool save(const char16_t* filename, bool useTempFile) override {
    return _calls.answer<bool>("save", filename, useTempFile);
  }
  bool loadRaw(const void* data, std::size_t size, int sheetIndex, int firstRow, int lastRow) override {
    return _calls.answer<bool>("loadRaw", data, size, sheetIndex, firstRow, lastRow);
  }
  Sheet* insertSheet(int index, const char16_t* name, Sheet* initSheet) override {
    return _calls.answer<Sheet*>("insertSheet", index, name, initSheet);
  }
  SheetType sheetType(int index) override { return _calls.answer<SheetType>("sheetType", index); }
  bool moveSheet(int srcIndex, int dstIndex) override { return _calls.answer<bool>("moveSheet", srcIndex, dstIndex); }
  int addCustomNumFormat(const char16_t* customNumFormat) override {
    return _calls.answer<int>("addCustomNumFormat", customNumFormat);
  }
  const char16_t* customNumFormat(int fmt) override { return _calls.answer<const char16_t*>("customNumFormat", fmt); }
  Color colorPack(int red, int green, int blue) override { return _calls.answer<Color>("colorPack", red, green, blue); }
  void colorUnpack(Color color, int* red, int* green, int* blue) override {
    return _calls.answer<void>("colorUnpack", color, red, green, blue);
  }
  int activeSheet() override { return _calls.answer<int>("activeSheet"); }
  void setActiveSheet(int index) override { return _calls.answer<void>("setActiveSheet", index); }
  int pictureSize() override { return _calls.answer<int>("pictureSize"); }
  int addPicture(const char16_t* filename) override { return _calls.answer<int>("addPicture", filename); }
  int addPicture2(const void* data, std::size_t size) override { return _calls.answer<int>("addPicture2", data, size); }
  int addPictureAsLink(const char16_t* filename, bool insert) override {
    return _calls.answer<int>("addPictureAsLink", filename, insert);
  }
  const char16_t* defaultFont(int* size) override { return _calls.answer<const char16_t*>("defaultFont", size); }
  void setDefaultFont(const char16_t* name, int size) override {
    return _calls.answer<void>("setDefaultFont", name, size);
  }
  bool refR1C1() override { return _calls.answer<bool>("refR1C1"); }
  void setRefR1C1(bool refR1C1) override { return _calls.answer<void>("setRefR1C1", refR1C1); }
  bool rgbMode() override { return _calls.answer<bool>("rgbMode"); }
  void setRgbMode(bool rgbMode) override { return _calls.answer<void>("setRgbMode", rgbMode); }
  unsigned version() override { return _calls.answer<unsigned>("version"); }
  int biffVersion() override { return _calls.answer<int>("biffVersion"); }
  bool isDate1904() override { return _calls.answer<bool>("isDate1904"); }
  bool setDate1904(bool date1904) override { return _calls.answer<bool>("setDate1904", date1904); }
  bool isTemplate() override { return _calls.answer<bool>("isTemplate"); }
  void setTemplate(bool tmpl) override { return _calls.answer<void>("setTemplate", tmpl); }
  bool setLocale(const char* locale) override { return _calls.answer<bool>("setLocale", locale); }

 private:
  CallLog& _calls = calls;
};

}  // namespace rubrica::host::testing
