// Hyperlinks and marks of an .xls sheet.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {

int SheetImplT::hyperlinkSize() {
  return refuse(kNotSupported, 0);
}
SheetImplT::Text SheetImplT::hyperlink(int, int*, int*, int*, int*) {
  return refuse(kNotSupported, Text{});
}
bool SheetImplT::delHyperlink(int) {
  return refuse(kNotSupported, false);
}
void SheetImplT::addHyperlink(Text, int, int, int, int) {
  refuse(kNotSupported, false);
}
bool SheetImplT::addIgnoredError(int, int, int, int, int) {
  return refuse(kNotSupported, false);
}
void SheetImplT::setTabRgbColor(int, int, int) {
  refuse(kNotSupported, false);
}
void SheetImplT::setTabColor(Color) {
  refuse(kNotSupported, false);
}

}  // namespace rubrica
