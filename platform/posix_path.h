// File names as the system calls of POSIX take them. Used by the file streams of this folder only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rubrica::platform {

// `path` as UTF-8, or nothing where no file can have that name: empty, with a NUL inside, or not well-formed UTF-16.
std::optional<std::string> posixPath(std::u16string_view path);

}  // namespace rubrica::platform
