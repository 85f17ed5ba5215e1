// The operations that an .xlsx sheet doesn't have yet. They fail with "not supported".
#include "xml/book_impl.h"
#include "xml/sheet_impl.h"

namespace rubrica {
namespace {

template <class Result>
Result refuse(LastMessage& last, Result failure) {
  last.setMessage("not supported");
  return failure;
}

}  // namespace

// ---- Rows and columns: sheet_rows_columns.cpp
template <class Tag>
double XMLSheetImplT<Tag>::colWidth(int) {
  return refuse(_book->lastMessage(), 0.0);
}
template <class Tag>
double XMLSheetImplT<Tag>::rowHeight(int) {
  return refuse(_book->lastMessage(), 0.0);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setCol(int, int, double, FormatPtr, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setRow(int, double, FormatPtr, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::rowHidden(int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setRowHidden(int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::colHidden(int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setColHidden(int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::groupRows(int, int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::groupCols(int, int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::groupSummaryBelow() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setGroupSummaryBelow(bool) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::groupSummaryRight() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setGroupSummaryRight(bool) {
  refuse(_book->lastMessage(), false);
}

// ---- Ranges: sheet_ranges.cpp
template <class Tag>
bool XMLSheetImplT<Tag>::getMerge(int, int, int*, int*, int*, int*) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setMerge(int, int, int, int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::delMerge(int, int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
int XMLSheetImplT<Tag>::mergeSize() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
bool XMLSheetImplT<Tag>::merge(int, int*, int*, int*, int*) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::delMergeByIndex(int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::clear(int, int, int, int) {
  refuse(_book->lastMessage(), false);
}

// ---- Inserting and removing lines: sheet_moves.cpp
template <class Tag>
bool XMLSheetImplT<Tag>::insertCol(int, int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::insertRow(int, int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::removeCol(int, int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::removeRow(int, int, bool) {
  return refuse(_book->lastMessage(), false);
}

// ---- Page breaks: sheet_breaks.cpp
template <class Tag>
int XMLSheetImplT<Tag>::getHorzPageBreak(int) {
  return refuse(_book->lastMessage(), -1);
}
template <class Tag>
int XMLSheetImplT<Tag>::getHorzPageBreakSize() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
int XMLSheetImplT<Tag>::getVertPageBreak(int) {
  return refuse(_book->lastMessage(), -1);
}
template <class Tag>
int XMLSheetImplT<Tag>::getVertPageBreakSize() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setHorzPageBreak(int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setVertPageBreak(int, bool) {
  return refuse(_book->lastMessage(), false);
}

// ---- Page setup: sheet_page.cpp
template <class Tag>
bool XMLSheetImplT<Tag>::printGridlines() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPrintGridlines(bool) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
int XMLSheetImplT<Tag>::printZoom() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPrintZoom(int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::getPrintFit(int*, int*) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPrintFit(int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::landscape() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setLandscape(bool) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
int XMLSheetImplT<Tag>::paper() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPaper(int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
auto XMLSheetImplT<Tag>::header() -> Text {
  return refuse(_book->lastMessage(), Text{});
}
template <class Tag>
bool XMLSheetImplT<Tag>::setHeader(Text, double) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
double XMLSheetImplT<Tag>::headerMargin() {
  return refuse(_book->lastMessage(), 0.0);
}
template <class Tag>
auto XMLSheetImplT<Tag>::footer() -> Text {
  return refuse(_book->lastMessage(), Text{});
}
template <class Tag>
bool XMLSheetImplT<Tag>::setFooter(Text, double) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
double XMLSheetImplT<Tag>::footerMargin() {
  return refuse(_book->lastMessage(), 0.0);
}
template <class Tag>
bool XMLSheetImplT<Tag>::hCenter() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setHCenter(bool) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::vCenter() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setVCenter(bool) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
double XMLSheetImplT<Tag>::marginLeft() {
  return refuse(_book->lastMessage(), 0.0);
}
template <class Tag>
void XMLSheetImplT<Tag>::setMarginLeft(double) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
double XMLSheetImplT<Tag>::marginRight() {
  return refuse(_book->lastMessage(), 0.0);
}
template <class Tag>
void XMLSheetImplT<Tag>::setMarginRight(double) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
double XMLSheetImplT<Tag>::marginTop() {
  return refuse(_book->lastMessage(), 0.0);
}
template <class Tag>
void XMLSheetImplT<Tag>::setMarginTop(double) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
double XMLSheetImplT<Tag>::marginBottom() {
  return refuse(_book->lastMessage(), 0.0);
}
template <class Tag>
void XMLSheetImplT<Tag>::setMarginBottom(double) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::printRowCol() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPrintRowCol(bool) {
  refuse(_book->lastMessage(), false);
}

// ---- The sheet and its view: sheet_view.cpp
template <class Tag>
void XMLSheetImplT<Tag>::split(int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::splitInfo(int*, int*) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::displayGridlines() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setDisplayGridlines(bool) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
int XMLSheetImplT<Tag>::zoom() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
void XMLSheetImplT<Tag>::setZoom(int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
auto XMLSheetImplT<Tag>::name() -> Text {
  return refuse(_book->lastMessage(), Text{});
}
template <class Tag>
void XMLSheetImplT<Tag>::setName(Text) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::protect() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setProtect(bool, Text, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
SheetState XMLSheetImplT<Tag>::hidden() {
  return refuse(_book->lastMessage(), SheetState::visible);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setHidden(SheetState) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::getTopLeftView(int*, int*) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setTopLeftView(int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::rightToLeft() {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setRightToLeft(bool) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setAutoFitArea(int, int, int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setTabRgbColor(int, int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setTabColor(Color) {
  refuse(_book->lastMessage(), false);
}

// ---- Names: sheet_names.cpp
template <class Tag>
bool XMLSheetImplT<Tag>::printRepeatRows(int*, int*) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPrintRepeatRows(int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::printRepeatCols(int*, int*) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPrintRepeatCols(int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::printArea(int*, int*, int*, int*) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPrintArea(int, int, int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::clearPrintRepeats() {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::clearPrintArea() {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::getNamedRange(Text, int*, int*, int*, int*, int, bool*) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::setNamedRange(Text, int, int, int, int, int, bool) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::delNamedRange(Text, int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
int XMLSheetImplT<Tag>::namedRangeSize() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
auto XMLSheetImplT<Tag>::namedRange(int, int*, int*, int*, int*, int*, bool*) -> Text {
  return refuse(_book->lastMessage(), Text{});
}

// ---- Links: sheet_links.cpp
template <class Tag>
int XMLSheetImplT<Tag>::hyperlinkSize() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
auto XMLSheetImplT<Tag>::hyperlink(int, int*, int*, int*, int*) -> Text {
  return refuse(_book->lastMessage(), Text{});
}
template <class Tag>
bool XMLSheetImplT<Tag>::delHyperlink(int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::addHyperlink(Text, int, int, int, int) {
  refuse(_book->lastMessage(), false);
}

// ---- Marks and validation: sheet_validation.cpp
template <class Tag>
bool XMLSheetImplT<Tag>::addIgnoredError(int, int, int, int, int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::addDataValidation(ValidationType, ValidationOperator, int, int, int, int, Text, Text, bool,
                                           bool, bool, bool, Text, Text, Text, Text, ValidationErrorStyle) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::addDataValidationDouble(ValidationType, ValidationOperator, int, int, int, int, double, double,
                                                 bool, bool, bool, bool, Text, Text, Text, Text, ValidationErrorStyle) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::removeDataValidations() {
  return refuse(_book->lastMessage(), false);
}

// ---- Filters and tables: sheet_filters.cpp
template <class Tag>
int XMLSheetImplT<Tag>::tableSize() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
auto XMLSheetImplT<Tag>::table(int, int*, int*, int*, int*, int*, int*) -> Text {
  return refuse(_book->lastMessage(), Text{});
}
template <class Tag>
IAutoFilterT<char16_t>* XMLSheetImplT<Tag>::autoFilter() {
  return refuse(_book->lastMessage(), static_cast<IAutoFilterT<char16_t>*>(nullptr));
}
template <class Tag>
void XMLSheetImplT<Tag>::applyFilter() {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::removeFilter() {
  refuse(_book->lastMessage(), false);
}

// ---- Pictures and comments: sheet_drawing.cpp
template <class Tag>
auto XMLSheetImplT<Tag>::readComment(int, int) -> Text {
  return refuse(_book->lastMessage(), Text{});
}
template <class Tag>
void XMLSheetImplT<Tag>::writeComment(int, int, Text, Text, int, int) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
bool XMLSheetImplT<Tag>::removeComment(int, int) {
  return refuse(_book->lastMessage(), false);
}
template <class Tag>
int XMLSheetImplT<Tag>::pictureSize() {
  return refuse(_book->lastMessage(), 0);
}
template <class Tag>
int XMLSheetImplT<Tag>::getPicture(int, int*, int*, int*, int*, int*, int*, int*, int*) {
  return refuse(_book->lastMessage(), -1);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPicture(int, int, int, double, int, int, PicturePosition) {
  refuse(_book->lastMessage(), false);
}
template <class Tag>
void XMLSheetImplT<Tag>::setPicture2(int, int, int, int, int, int, int, PicturePosition) {
  refuse(_book->lastMessage(), false);
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
