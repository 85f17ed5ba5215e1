#include "host/constants.h"
#include "host/nv_obj_format.h"
#include "host/parameters.h"
#include "host/style_self.h"

namespace rubrica::host {
namespace {

int setBorder(NVObjFormat& self, MethodCall& call, int) {
  Parameters in(call);
  const int constant = in.integer(1, "borderStyleConstant");
  if (in.failed()) return in.failure();
  self.format->setBorder(static_cast<BorderStyle>(borderStyleConstants().forward(constant)));
  return code::done;
}

int setBorderColor(NVObjFormat& self, MethodCall& call, int) {
  Parameters in(call);
  const int constant = in.integer(1, "borderColor");
  if (in.failed()) return in.failure();
  self.format->setBorderColor(colorConstants().forward(constant));
  return code::done;
}

constexpr MethodEntry<NVObjFormat> kMethods[] = {
    {5000, "$setBorder", setBorder},
    {5001, "$setBorderColor", setBorderColor},
    {5002, "$self", returnSelf<NVObjFormat>},
};

}  // namespace

std::span<const MethodEntry<NVObjFormat>> NVObjFormat::methods() {
  return kMethods;
}

void NVObjFormat::copyStateFrom(const NVObjFormat& other) {
  book = other.book;
  format = other.format;
}

}  // namespace rubrica::host
