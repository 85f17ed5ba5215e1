// Rows and columns of an .xls sheet: widths, heights, hiding, outline groups, page breaks and panes.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {

double SheetImplT::colWidth(int) {
  return refuse(kNotSupported, 0.0);
}
double SheetImplT::rowHeight(int) {
  return refuse(kNotSupported, 0.0);
}
bool SheetImplT::setCol(int, int, double, FormatPtr, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::setRow(int, double, FormatPtr, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::rowHidden(int) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::setRowHidden(int, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::colHidden(int) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::setColHidden(int, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::groupRows(int, int, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::groupCols(int, int, bool) {
  return refuse(kNotSupported, false);
}
int SheetImplT::getHorzPageBreak(int) {
  return refuse(kNotSupported, 0);
}
int SheetImplT::getHorzPageBreakSize() {
  return refuse(kNotSupported, 0);
}
int SheetImplT::getVertPageBreak(int) {
  return refuse(kNotSupported, 0);
}
int SheetImplT::getVertPageBreakSize() {
  return refuse(kNotSupported, 0);
}
bool SheetImplT::setHorzPageBreak(int, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::setVertPageBreak(int, bool) {
  return refuse(kNotSupported, false);
}
void SheetImplT::split(int, int) {
  refuse(kNotSupported, false);
}
bool SheetImplT::splitInfo(int*, int*) {
  return refuse(kNotSupported, false);
}
void SheetImplT::setAutoFitArea(int, int, int, int) {
  refuse(kNotSupported, false);
}

}  // namespace rubrica
