#include "host/cell_value.h"
#include "host/column_letters.h"
#include "host/constants.h"
#include "host/host_object.h"
#include "host/index_base.h"
#include "host/nv_obj_cell.h"
#include "host/nv_obj_font.h"
#include "host/nv_obj_format.h"
#include "host/text.h"

namespace rubrica::host {
namespace {

constexpr std::uint32_t kTypeNumberResource = 23101, kTypeDateResource = 23104;

// All that is no date reads as a number, text and errors too: $value is what tells them apart.
bool readType(NVObjCell& self, HostCall&, HostField& value) {
  constantField(value, self.sheet->isDate(self.row, self.column) ? kTypeDateResource : kTypeNumberResource);
  return true;
}

bool readError(NVObjCell& self, HostCall&, HostField& value) {
  const ConstantMap& errors = cellErrorConstants();
  const int error = static_cast<int>(self.sheet->readError(self.row, self.column));
  constantField(value, errors.resourceOf(errors.backward(error)));
  return true;
}

bool readFormat(NVObjCell& self, HostCall& call, HostField& value) {
  Format* format = self.sheet->cellFormat(self.row, self.column);
  value.setObject(newStyleObject<NVObjFormat>(call, self.book, format, self.ownerHandle));
  return true;
}

void writeFormat(NVObjCell& self, const HostField& value) {
  const auto object = resolveObject<NVObjFormat>(value);
  if (object && object->format != nullptr) self.sheet->setCellFormat(self.row, self.column, object->format);
}

bool readValue(NVObjCell& self, HostCall&, HostField& value) {
  readCell(*self.book, *self.sheet, self.row, self.column, value);
  return true;
}

void writeValue(NVObjCell& self, const HostField& value) {
  writeCell({*self.book, *self.sheet, *self.numFormats, self.row, self.column}, value, celltype::fromKind, nullptr);
}

bool readFont(NVObjCell& self, HostCall& call, HostField& value) {
  Format* format = self.sheet->cellFormat(self.row, self.column);
  Font* font = format != nullptr ? format->font() : nullptr;
  if (format != nullptr && font == nullptr) return false;
  value.setObject(newStyleObject<NVObjFont>(call, self.book, font, self.ownerHandle));
  return true;
}

void writeFont(NVObjCell& self, const HostField& value) {
  const auto object = resolveObject<NVObjFont>(value);
  if (!object || object->font == nullptr) return;
  Format* format = self.sheet->cellFormat(self.row, self.column);
  if (format == nullptr) {
    format = self.book->addFormat(nullptr);
    if (format == nullptr) return;
    self.sheet->setCellFormat(self.row, self.column, format);
  }
  format->setFont(object->font);
}

bool readRow(NVObjCell& self, HostCall&, HostField& value) {
  value.setInteger(toHost(self.row));
  return true;
}

bool readColumn(NVObjCell& self, HostCall&, HostField& value) {
  value.setInteger(toHost(self.column));
  return true;
}

bool readColumnLetters(NVObjCell& self, HostCall&, HostField& value) {
  value.setUtf32(columnLetters(self.column));
  return true;
}

bool readComment(NVObjCell& self, HostCall&, HostField& value) {
  value.setText(orEmpty(self.sheet->readComment(self.row, self.column)));
  return true;
}

bool readIsFormula(NVObjCell& self, HostCall&, HostField& value) {
  value.setBoolean(self.sheet->isFormula(self.row, self.column));
  return true;
}

bool readIsDate(NVObjCell& self, HostCall&, HostField& value) {
  value.setBoolean(self.sheet->isDate(self.row, self.column));
  return true;
}

constexpr PropertyEntry<NVObjCell> kProperties[] = {
    {4100, readType, nullptr},      {4101, readError, nullptr},         {4102, readFormat, writeFormat},
    {4103, readValue, writeValue},  {4104, readFont, writeFont},        {4105, readRow, nullptr},
    {4106, readColumn, nullptr},    {4107, readColumnLetters, nullptr}, {4108, readComment, nullptr},
    {4109, readIsFormula, nullptr}, {4110, readIsDate, nullptr},
};

}  // namespace

std::span<const PropertyEntry<NVObjCell>> NVObjCell::properties() {
  return kProperties;
}

}  // namespace rubrica::host
