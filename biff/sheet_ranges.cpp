// Ranges of an .xls sheet: merges, inserting and removing rows and columns.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {

bool SheetImplT::getMerge(int, int, int*, int*, int*, int*) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::setMerge(int, int, int, int) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::delMerge(int, int) {
  return refuse(kNotSupported, false);
}
int SheetImplT::mergeSize() {
  return refuse(kNotSupported, 0);
}
bool SheetImplT::merge(int, int*, int*, int*, int*) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::delMergeByIndex(int) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::insertCol(int, int, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::insertRow(int, int, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::removeCol(int, int, bool) {
  return refuse(kNotSupported, false);
}
bool SheetImplT::removeRow(int, int, bool) {
  return refuse(kNotSupported, false);
}

}  // namespace rubrica
