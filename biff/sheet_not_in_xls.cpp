// What .xlsx sheets have and .xls sheets don't: filters, tables and data validations.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {

int SheetImplT::tableSize() {
  return refuse(kNotForXls, 0);
}
SheetImplT::Text SheetImplT::table(int, int*, int*, int*, int*, int*, int*) {
  return refuse(kNotForXls, Text{});
}
IAutoFilterT<char16_t>* SheetImplT::autoFilter() {
  return nullptr;
}
void SheetImplT::applyFilter() {}
void SheetImplT::removeFilter() {}
bool SheetImplT::addDataValidation(ValidationType, ValidationOperator, int, int, int, int, Text, Text, bool, bool, bool,
                                   bool, Text, Text, Text, Text, ValidationErrorStyle) {
  return refuse(kNotForXls, false);
}
bool SheetImplT::addDataValidationDouble(ValidationType, ValidationOperator, int, int, int, int, double, double, bool,
                                         bool, bool, bool, Text, Text, Text, Text, ValidationErrorStyle) {
  return refuse(kNotForXls, false);
}
bool SheetImplT::removeDataValidations() {
  return refuse(kNotForXls, false);
}

}  // namespace rubrica
