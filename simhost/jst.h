// jst(): a value justified and formatted by a code such as `-10N2,`. Used by the text functions.
#pragma once

#include "simhost/value.h"

namespace rubrica::simhost {

// `[-|^][width]` left, right or centred in a width, then any of `Nn` decimal places, `,` thousands, `E` zero as empty,
// `X` cut to the width, `Pc` pad with c, `U` `L` `C` case, `D:format` a date by dat()'s codes (the rest of the text).
// Throws ScriptError for an unknown code.
Text justified(const Value& value, TextView format);

// With the decimal places rounded half away from zero, as people round.
std::string textWithPlaces(double value, int places);

}  // namespace rubrica::simhost
