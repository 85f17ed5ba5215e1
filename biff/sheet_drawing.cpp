// Pictures and comments of an .xls sheet.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {

SheetImplT::Text SheetImplT::readComment(int, int) {
  return refuse(kNotSupported, Text{});
}
void SheetImplT::writeComment(int, int, Text, Text, int, int) {
  refuse(kNotSupported, false);
}
bool SheetImplT::removeComment(int, int) {
  return refuse(kNotSupported, false);
}
int SheetImplT::pictureSize() {
  return refuse(kNotSupported, 0);
}
int SheetImplT::getPicture(int, int*, int*, int*, int*, int*, int*, int*, int*) {
  return refuse(kNotSupported, 0);
}
void SheetImplT::setPicture(int, int, int, double, int, int, PicturePosition) {
  refuse(kNotSupported, false);
}
void SheetImplT::setPicture2(int, int, int, int, int, int, int, PicturePosition) {
  refuse(kNotSupported, false);
}

}  // namespace rubrica
