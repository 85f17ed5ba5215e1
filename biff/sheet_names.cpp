// Defined names, print areas and print titles of an .xls sheet.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {

bool SheetImplT::printRepeatRows(int*, int*) {
  return refuse(kNotSupported, false);
}
void SheetImplT::setPrintRepeatRows(int, int) {
  refuse(kNotSupported, false);
}
bool SheetImplT::printRepeatCols(int*, int*) {
  return refuse(kNotSupported, false);
}
void SheetImplT::setPrintRepeatCols(int, int) {
  refuse(kNotSupported, false);
}
bool SheetImplT::printArea(int*, int*, int*, int*) {
  return refuse(kNotSupported, false);
}
void SheetImplT::setPrintArea(int, int, int, int) {
  refuse(kNotSupported, false);
}
void SheetImplT::clearPrintRepeats() {
  refuse(kNotSupported, false);
}
void SheetImplT::clearPrintArea() {
  refuse(kNotSupported, false);
}
bool SheetImplT::getNamedRange(Text, int*, int*, int*, int*, int, bool*) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::setNamedRange(Text, int, int, int, int, int, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::delNamedRange(Text, int) {
  return refuse(kNotSupported, false);
}
int SheetImplT::namedRangeSize() {
  return refuse(kNotSupported, 0);
}
SheetImplT::Text SheetImplT::namedRange(int, int*, int*, int*, int*, int*, bool*) {
  return refuse(kNotSupported, Text{});
}

}  // namespace rubrica
