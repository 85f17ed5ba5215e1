// The words of error values in cells. Free functions over a constant table.
#pragma once

#include <string_view>

#include "engine/enums.h"

namespace rubrica {

// Empty for a value that is no error.
std::string_view wordOfError(ErrorType error);
// noError for a word that stands for none of the seven.
ErrorType errorOfWord(std::string_view word);

}  // namespace rubrica
