#include "host/host_object.h"
#include "host/nv_obj_font.h"
#include "host/nv_obj_format.h"
#include "host/property_access.h"

namespace rubrica::host {
namespace {

using Self = NVObjFormat;

bool readFont(Self& self, HostCall& call, HostField& value) {
  Font* font = self.format->font();
  if (font != nullptr) value.setObject(newStyleObject<NVObjFont>(call, self.book, font, self.ownerHandle));
  return true;
}

void writeFont(Self& self, const HostField& value) {
  const auto object = resolveObject<NVObjFont>(value);
  if (object && object->font != nullptr && object->font != self.format->font()) self.format->setFont(object->font);
}

// A format of the book's own has no constant; its id goes out as a plain number.
bool readNumFormat(Self& self, HostCall&, HostField& value) {
  const ConstantMap& map = numFormatConstants();
  const int id = self.format->numFormat();
  const int constant = map.backward(id);
  if (constant < 1) {
    value.setInteger(id);
  } else {
    constantField(value, map.resourceOf(constant));
  }
  return true;
}

// A constant, or its name, stands for a built-in format; any other value is an id as it is.
void writeNumFormat(Self& self, const HostField& value) {
  const std::int32_t type = value.type();
  int id = 0;
  if (type == kind::constant || type == kind::character) {
    const ConstantMap& map = numFormatConstants();
    const int constant = readConstant(value, map.firstResource(), map.lastResource());
    if (!map.isValid(constant)) return;
    id = map.forward(constant);
  } else {
    id = value.integer();
  }
  if (id != self.format->numFormat()) self.format->setNumFormat(id);
}

// 0 and 180 are refused here although the engine takes them.
void writeRotation(Self& self, const HostField& value) {
  constexpr int kFirst = 1, kLast = 179, kStacked = 255;
  const int rotation = value.integer();
  if ((rotation < kFirst || rotation > kLast) && rotation != kStacked) return;
  if (rotation != self.format->rotation()) self.format->setRotation(rotation);
}

template <auto Get, auto Set>
constexpr PropertyEntry<Self> booleanProperty(int id) {
  return {id, readBoolean<Self, Get>, writeBoolean<Self, Get, Set>};
}

template <auto Get, auto Set, auto Map>
constexpr PropertyEntry<Self> constantProperty(int id) {
  return {id, readConstantProperty<Self, Get, Map>, writeConstantProperty<Self, Get, Set, Map>};
}

template <auto Get, auto Set>
constexpr PropertyEntry<Self> borderProperty(int id) {
  return constantProperty<Get, Set, borderStyleConstants>(id);
}

template <auto Get, auto Set>
constexpr PropertyEntry<Self> colorProperty(int id) {
  return constantProperty<Get, Set, colorConstants>(id);
}

constexpr PropertyEntry<Self> kProperties[] = {
    booleanProperty<&Format::locked, &Format::setLocked>(5100),
    booleanProperty<&Format::hidden, &Format::setHidden>(5101),
    {5102, readFont, writeFont},
    {5103, readNumFormat, writeNumFormat},
    constantProperty<&Format::alignH, &Format::setAlignH, alignHConstants>(5104),
    constantProperty<&Format::alignV, &Format::setAlignV, alignVConstants>(5105),
    booleanProperty<&Format::wrap, &Format::setWrap>(5106),
    {5107, readInteger<Self, &Format::rotation>, writeRotation},
    {5108, readInteger<Self, &Format::indent>, writeInteger<Self, &Format::indent, &Format::setIndent>},
    booleanProperty<&Format::shrinkToFit, &Format::setShrinkToFit>(5109),
    borderProperty<&Format::borderLeft, &Format::setBorderLeft>(5110),
    borderProperty<&Format::borderRight, &Format::setBorderRight>(5111),
    borderProperty<&Format::borderTop, &Format::setBorderTop>(5112),
    borderProperty<&Format::borderBottom, &Format::setBorderBottom>(5113),
    colorProperty<&Format::borderLeftColor, &Format::setBorderLeftColor>(5114),
    colorProperty<&Format::borderRightColor, &Format::setBorderRightColor>(5115),
    colorProperty<&Format::borderTopColor, &Format::setBorderTopColor>(5116),
    colorProperty<&Format::borderBottomColor, &Format::setBorderBottomColor>(5117),
    constantProperty<&Format::borderDiagonal, &Format::setBorderDiagonal, borderDiagonalConstants>(5118),
    colorProperty<&Format::borderDiagonalColor, &Format::setBorderDiagonalColor>(5119),
    constantProperty<&Format::fillPattern, &Format::setFillPattern, fillPatternConstants>(5120),
    colorProperty<&Format::patternForegroundColor, &Format::setPatternForegroundColor>(5121),
    colorProperty<&Format::patternBackgroundColor, &Format::setPatternBackgroundColor>(5122),
};

}  // namespace

std::span<const PropertyEntry<NVObjFormat>> NVObjFormat::properties() {
  return kProperties;
}

}  // namespace rubrica::host
