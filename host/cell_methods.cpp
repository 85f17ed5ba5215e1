#include "host/cell_value.h"
#include "host/host_object.h"
#include "host/nv_obj_cell.h"
#include "host/nv_obj_format.h"
#include "host/parameters.h"
#include "host/text.h"

namespace rubrica::host {
namespace {

// Pixels, in the order in which $setComment takes them.
constexpr int kDefaultCommentWidth = 75, kDefaultCommentHeight = 129;

// With two parameters the second is a scale. With three the picture still goes through the scaling call: the width
// stands in the scale's place and the height in that of the horizontal offset, as code in use expects.
int setPicture(NVObjCell& self, MethodCall& call, int parameterCount) {
  Parameters in(call);
  const int pictureId = in.integer(1, "row");
  if (in.failed()) return in.failure();
  double scale = 0.0;
  int offset = 0;
  if (parameterCount == 2) {
    scale = in.number(2, "scale");
  } else if (parameterCount == 3) {
    offset = in.integer(2, "height");
    scale = in.integer(3, "width");
  } else {
    in.fail("Invalid number of parameters. Takes 2 or 3 parameters.");
  }
  if (in.failed()) return in.failure();
  self.sheet->setPicture(self.row, self.column, pictureId, scale, offset, 0, PicturePosition::moveAndSize);
  return code::done;
}

int setValue(NVObjCell& self, MethodCall& call, int) {
  Parameters in(call);
  const HostField value = in.required(1, "value");
  if (in.failed()) return in.failure();
  Format* format = nullptr;
  if (const HostField field = call.host.parameter(2)) {
    const auto object = resolveObject<NVObjFormat>(field);
    if (!object) return in.fail("Unrecognized second parameter, format.  Expected Format object.");
    format = object->format;
  }
  const HostField type = call.host.parameter(3);
  const std::int32_t typeKind = type.type();
  const bool hasType = typeKind == kind::integer || typeKind == kind::constant;
  writeCell({*self.book, *self.sheet, *self.numFormats, self.row, self.column}, value,
            hasType ? type.integer() : celltype::fromKind, format);
  return code::done;
}

int clear(NVObjCell& self, MethodCall&, int) {
  self.sheet->clear(self.row, self.row, self.column, self.column);
  return code::done;
}

int setComment(NVObjCell& self, MethodCall& call, int) {
  Parameters in(call);
  const std::u16string comment = in.text(1, "comment");
  if (in.failed()) return in.failure();
  const HostField author = call.host.parameter(2);
  const std::u16string authorName = author.text();
  const int width = in.isPassed(3) ? call.host.parameter(3).integer() : kDefaultCommentWidth;
  const int height = in.isPassed(4) ? call.host.parameter(4).integer() : kDefaultCommentHeight;
  self.sheet->writeComment(self.row, self.column, comment.c_str(), author ? authorName.c_str() : nullptr, width,
                           height);
  return code::done;
}

int readFormula(NVObjCell& self, MethodCall& call, int) {
  if (!self.sheet->isFormula(self.row, self.column)) {
    call.longError = "Cannot return formula for the cell.  Cell does not contain a formula value.";
    return code::failed;
  }
  call.host.returnText(orEmpty(self.sheet->readFormula(self.row, self.column, nullptr)));
  return code::done;
}

int writeFormula(NVObjCell& self, MethodCall& call, int) {
  const HostField formula = call.host.parameter(1);
  if (!formula) {
    call.longError = "Parameter 1 is unrecognized.  Expected Character containing formula.";
    return code::failed;
  }
  call.host.returnBoolean(self.sheet->writeFormula(self.row, self.column, formula.text().c_str(), nullptr));
  return code::formulaWritten;
}

constexpr MethodEntry<NVObjCell> kMethods[] = {
    {4000, "$setPicture", setPicture}, {4001, "$setValue", setValue},       {4002, "$clear", clear},
    {4003, "$setComment", setComment}, {4004, "$readFormula", readFormula}, {4005, "$writeFormula", writeFormula},
};

}  // namespace

std::span<const MethodEntry<NVObjCell>> NVObjCell::methods() {
  return kMethods;
}

void NVObjCell::copyStateFrom(const NVObjCell& other) {
  row = other.row;
  column = other.column;
  numFormats = other.numFormats;
  book = other.book;
  sheet = other.sheet;
}

}  // namespace rubrica::host
