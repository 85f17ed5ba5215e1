#include "host/index_base.h"
#include "host/nv_obj_workbook.h"
#include "host/text.h"

namespace rubrica::host {
namespace {

bool readErrorMessage(NVObjWorkbook& self, HostCall&, HostField& value) {
  value.setUtf8(self.book->errorMessage());
  return true;
}

template <auto Get>
bool readCount(NVObjWorkbook& self, HostCall&, HostField& value) {
  value.setInteger((*self.book.*Get)());
  return true;
}

bool readActiveSheet(NVObjWorkbook& self, HostCall&, HostField& value) {
  value.setInteger(self.book->sheetCount() < 1 ? 0 : toHost(self.book->activeSheet()));
  return true;
}

void writeActiveSheet(NVObjWorkbook& self, const HostField& value) {
  const int index = toEngine(value.integer());
  if (index != self.book->activeSheet() && index < self.book->sheetCount()) self.book->setActiveSheet(index);
}

struct DefaultFont {
  explicit DefaultFont(Book& book) : name(orEmpty(book.defaultFont(&size))) {}

  int size = 0;
  std::u16string name;
};

bool readDefaultFont(NVObjWorkbook& self, HostCall&, HostField& value) {
  value.setText(DefaultFont(*self.book).name);
  return true;
}

void writeDefaultFont(NVObjWorkbook& self, const HostField& value) {
  const DefaultFont current(*self.book);
  const std::u16string name = value.text();
  if (name != current.name) self.book->setDefaultFont(name.c_str(), current.size);
}

bool readDefaultFontSize(NVObjWorkbook& self, HostCall&, HostField& value) {
  value.setInteger(DefaultFont(*self.book).size);
  return true;
}

void writeDefaultFontSize(NVObjWorkbook& self, const HostField& value) {
  const DefaultFont current(*self.book);
  const int size = value.integer();
  if (size != current.size) self.book->setDefaultFont(current.name.c_str(), size);
}

// The mode is given as 1 and 0, not as the host's booleans, on which code in use relies.
bool readRgbMode(NVObjWorkbook& self, HostCall&, HostField& value) {
  value.setRawBoolean(self.book->rgbMode() ? 1 : 0);
  return true;
}

// Any value that reads as a boolean asks for RGB colours, whatever it is: the mode goes on and stays on. A palette is
// all that an xls book has.
void writeRgbMode(NVObjWorkbook& self, const HostField& value) {
  const bool wanted = value.readsAsBoolean();
  if (wanted == self.book->rgbMode()) return;
  if (wanted && self.fileType == NVObjWorkbook::kXls) return;
  self.book->setRgbMode(wanted);
}

constexpr PropertyEntry<NVObjWorkbook> kProperties[] = {
    {2500, readErrorMessage, nullptr},
    {2501, readCount<&Book::sheetCount>, nullptr},
    {2502, readCount<&Book::formatSize>, nullptr},
    {2503, readCount<&Book::fontSize>, nullptr},
    {2504, readActiveSheet, writeActiveSheet},
    {2505, readDefaultFont, writeDefaultFont},
    {2506, readDefaultFontSize, writeDefaultFontSize},
    {2507, readRgbMode, writeRgbMode},
};

}  // namespace

std::span<const PropertyEntry<NVObjWorkbook>> NVObjWorkbook::properties() {
  return kProperties;
}

}  // namespace rubrica::host
