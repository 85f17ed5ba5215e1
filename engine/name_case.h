// Names of sheets and defined names, which differ in more than the case of their letters. Shared by both file forms.
#pragma once

#include <string_view>

namespace rubrica {

// Names of sheets and ranges compare without regard to the case of Latin-1, Greek and Cyrillic letters.
bool sameNameIgnoringCase(std::u16string_view a, std::u16string_view b);

}  // namespace rubrica
