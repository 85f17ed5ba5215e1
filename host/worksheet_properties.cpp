#include "host/nv_obj_worksheet.h"
#include "host/property_access.h"

namespace rubrica::host {
namespace {

using Self = NVObjWorksheet;

// Header and footer are set together with their margin, so a change of one passes the other on.
template <auto Text, auto Margin, auto Set>
void writeMarginText(Self& self, const HostField& value) {
  const std::u16string text = value.text();
  if (text != orEmpty((self.engine().*Text)())) (self.engine().*Set)(text.c_str(), (self.engine().*Margin)());
}

// The margin is taken as a whole number: fractions are cut off on assignment.
template <auto Text, auto Margin, auto Set>
void writeTextMargin(Self& self, const HostField& value) {
  const double margin = value.integer();
  if (margin == (self.engine().*Margin)()) return;
  const std::u16string text(orEmpty((self.engine().*Text)()));
  (self.engine().*Set)(text.c_str(), margin);
}

void writeProtected(Self& self, const HostField& value) {
  constexpr int kNoEnhancedProtection = -1;
  const bool wanted = value.boolean();
  if (wanted != self.sheet->protect()) self.sheet->setProtect(wanted, nullptr, kNoEnhancedProtection);
}

template <auto Get, auto Set>
constexpr PropertyEntry<Self> booleanProperty(int id) {
  return {id, readBoolean<Self, Get>, writeBoolean<Self, Get, Set>};
}

template <auto Get, auto Set>
constexpr PropertyEntry<Self> integerProperty(int id) {
  return {id, readInteger<Self, Get>, writeInteger<Self, Get, Set>};
}

template <auto Get, auto Set>
constexpr PropertyEntry<Self> numberProperty(int id) {
  return {id, readNumber<Self, Get>, writeNumber<Self, Get, Set>};
}

constexpr PropertyEntry<Self> kProperties[] = {
    {3500, readIndex<Self, &Sheet::firstRow>, nullptr},
    {3501, readIndex<Self, &Sheet::lastRow>, nullptr},
    {3502, readIndex<Self, &Sheet::firstCol>, nullptr},
    {3503, readIndex<Self, &Sheet::lastCol>, nullptr},
    booleanProperty<&Sheet::groupSummaryBelow, &Sheet::setGroupSummaryBelow>(3504),
    booleanProperty<&Sheet::groupSummaryRight, &Sheet::setGroupSummaryRight>(3505),
    {3506, readConstantProperty<Self, &Sheet::paper, paperConstants>,
     writeConstantProperty<Self, &Sheet::paper, &Sheet::setPaper, paperConstants>},
    booleanProperty<&Sheet::displayGridlines, &Sheet::setDisplayGridlines>(3507),
    booleanProperty<&Sheet::printGridlines, &Sheet::setPrintGridlines>(3508),
    integerProperty<&Sheet::zoom, &Sheet::setZoom>(3509),
    integerProperty<&Sheet::printZoom, &Sheet::setPrintZoom>(3510),
    booleanProperty<&Sheet::landscape, &Sheet::setLandscape>(3511),
    {3512, readText<Self, &Sheet::header>, writeMarginText<&Sheet::header, &Sheet::headerMargin, &Sheet::setHeader>},
    {3513, readNumber<Self, &Sheet::headerMargin>,
     writeTextMargin<&Sheet::header, &Sheet::headerMargin, &Sheet::setHeader>},
    {3514, readText<Self, &Sheet::footer>, writeMarginText<&Sheet::footer, &Sheet::footerMargin, &Sheet::setFooter>},
    {3515, readNumber<Self, &Sheet::footerMargin>,
     writeTextMargin<&Sheet::footer, &Sheet::footerMargin, &Sheet::setFooter>},
    booleanProperty<&Sheet::hCenter, &Sheet::setHCenter>(3516),
    booleanProperty<&Sheet::vCenter, &Sheet::setVCenter>(3517),
    numberProperty<&Sheet::marginLeft, &Sheet::setMarginLeft>(3518),
    numberProperty<&Sheet::marginRight, &Sheet::setMarginRight>(3519),
    numberProperty<&Sheet::marginTop, &Sheet::setMarginTop>(3520),
    numberProperty<&Sheet::marginBottom, &Sheet::setMarginBottom>(3521),
    booleanProperty<&Sheet::printRowCol, &Sheet::setPrintRowCol>(3522),
    {3523, readBoolean<Self, &Sheet::protect>, writeProtected},
};

}  // namespace

std::span<const PropertyEntry<NVObjWorksheet>> NVObjWorksheet::properties() {
  return kProperties;
}

}  // namespace rubrica::host
