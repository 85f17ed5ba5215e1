// Parts that the binding refuses although every reader of workbooks takes them: what some programs are known to write
// otherwise than the schemas say, put right in the part's text. Only a part that could not be bound is looked at, so
// that parts that are right cost nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lmx/descriptor.h"
#include "lmx/elmx_error.h"

namespace rubrica {

// The text to try once more after binding `text` ended in `code`; nothing when no known deviation stands in it.
//   - a colour of six digits, red, green and blue, gets the opacity that it leaves out;
//   - the sides of a border, "left" and "right" in transitional books, "start" and "end" in strict ones, get the
//     flavour's names;
//   - comments of strict books are bound by the transitional class, under its namespace;
//   - the old drawings of a strict sheet, which its class doesn't know and which stand before what it knows, go;
//   - the namespaces of the format before its first edition become those of that edition.
// Extensions stay as they are: they are their owner's.
std::optional<std::string> repairedPart(std::string_view text, const lmx::root_descriptor& root, lmx::elmx_error code);

}  // namespace rubrica
