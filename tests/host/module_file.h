// What the tests read from the built module file itself: its string resources and its exported symbols. 64-bit ELF.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace rubrica::host::testing {

// The strings of the section .tabulix_strings by id; fails the running test when the section isn't as documented.
std::map<std::uint32_t, std::u32string> readStringResources(const std::string& modulePath);

// The names of the symbols that the module defines for others.
std::vector<std::string> exportedSymbols(const std::string& modulePath);

}  // namespace rubrica::host::testing
