// Whole files read into memory, the one way in which the engine reads files.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace rubrica::platform {

// The bytes of the file at `path` (wide text: used as it is on Windows, as UTF-8 elsewhere), or nothing when it can't
// be opened or read or is not a regular file. An empty file gives an empty vector.
std::optional<std::vector<std::byte>> readWholeFile(std::u16string_view path);

}  // namespace rubrica::platform
