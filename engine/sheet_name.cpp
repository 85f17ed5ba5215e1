#include "engine/sheet_name.h"

#include <algorithm>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

constexpr std::u16string_view kForbiddenInNames = u":\\*?/[]";

}  // namespace

std::u16string_view cutSheetName(std::u16string_view name) {
  if (name.size() <= kMaxSheetName) return name;
  const char16_t last = name[kMaxSheetName - 1];
  const bool halvesPair = last >= 0xD800 && last <= 0xDBFF;
  return name.substr(0, halvesPair ? kMaxSheetName - 1 : kMaxSheetName);
}

void checkSheetName(std::u16string_view name) {
  if (name.empty()) throw xlerror("sheet name can't be empty");
  if (name.front() == u'\'' || name.back() == u'\'' || name.find_first_of(kForbiddenInNames) != name.npos) {
    throw xlerror("sheet name has an invalid character");
  }
}

char16_t nameCapital(char16_t c) {
  const bool latin = (c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
  if (latin || (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) || (c >= 0x430 && c <= 0x44F))
    return static_cast<char16_t>(c - 0x20);
  if (c >= 0x450 && c <= 0x45F) return static_cast<char16_t>(c - 0x50);
  return c;
}

bool sameNameIgnoringCase(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return nameCapital(x) == nameCapital(y); });
}

}  // namespace rubrica
