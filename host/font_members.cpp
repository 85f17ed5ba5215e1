// The method and the properties of NVObjFont.
#include "host/nv_obj_font.h"
#include "host/property_access.h"
#include "host/style_self.h"

namespace rubrica::host {
namespace {

using Self = NVObjFont;

void writeName(Self& self, const HostField& value) {
  const std::u16string current(orEmpty(self.font->name()));
  const std::u16string name = value.text();
  if (!current.empty() && name != current) self.font->setName(name.c_str());
}

constexpr MethodEntry<Self> kMethods[] = {{6000, "$self", returnSelf<Self>}};

constexpr PropertyEntry<Self> kProperties[] = {
    {6100, readInteger<Self, &Font::size>, writeInteger<Self, &Font::size, &Font::setSize>},
    {6101, readBoolean<Self, &Font::italic>, writeBoolean<Self, &Font::italic, &Font::setItalic>},
    {6102, readBoolean<Self, &Font::strikeOut>, writeBoolean<Self, &Font::strikeOut, &Font::setStrikeOut>},
    {6103, readConstantProperty<Self, &Font::color, colorConstants>,
     writeConstantProperty<Self, &Font::color, &Font::setColor, colorConstants>},
    {6104, readBoolean<Self, &Font::bold>, writeBoolean<Self, &Font::bold, &Font::setBold>},
    {6105, readConstantProperty<Self, &Font::script, scriptConstants>,
     writeConstantProperty<Self, &Font::script, &Font::setScript, scriptConstants>},
    {6106, readConstantProperty<Self, &Font::underline, underlineConstants>,
     writeConstantProperty<Self, &Font::underline, &Font::setUnderline, underlineConstants>},
    {6107, readText<Self, &Font::name>, writeName},
};

}  // namespace

std::span<const MethodEntry<NVObjFont>> NVObjFont::methods() {
  return kMethods;
}
std::span<const PropertyEntry<NVObjFont>> NVObjFont::properties() {
  return kProperties;
}

void NVObjFont::copyStateFrom(const NVObjFont& other) {
  book = other.book;
  font = other.font;
}

}  // namespace rubrica::host
