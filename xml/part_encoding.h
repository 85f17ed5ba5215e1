// Parts of a package may be UTF-8 or UTF-16. The reader knows both; what looks into the text of a part before it is
// bound knows UTF-8 alone and asks here first.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rubrica {

// Whether the first two bytes are those of UTF-16, with or without a byte order mark.
bool looksLikeUtf16(std::string_view part);

// The part in UTF-8, its declaration with it; nothing for a part that isn't UTF-16, and for one that the reader would
// refuse for its encoding.
std::optional<std::string> utf8OfUtf16(std::string_view part);

}  // namespace rubrica
