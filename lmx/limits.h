// Bounds that no honest document meets, so that hostile ones end in a message instead of in exhausted memory or stack.
#pragma once

#include <cstddef>
#include <cstdint>

namespace rubrica::lmx {

// Elements open at once. Nested group shapes and text properties of real drawings stay below 60.
inline constexpr std::size_t kMaxElementDepth = 512;

// Entities being expanded inside each other.
inline constexpr std::size_t kMaxEntityDepth = 32;

// Bytes of entity text expanded over a whole document.
inline constexpr std::size_t kMaxEntityExpansion = std::size_t{4} << 20;

// Namespace declarations in scope at once.
inline constexpr std::size_t kMaxNamespacesInScope = 1024;

// The highest code point that a character reference may name. It is lower than the top of Unicode on purpose: planes 1
// to 15 pass, of plane 16 only its first code point.
inline constexpr std::uint32_t kMaxCharacterReference = 0x100000;

}  // namespace rubrica::lmx
