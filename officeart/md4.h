// The MD4 digest (RFC 1320), by which the blip store names pictures. It proves nothing; two pictures with one digest
// are two entries of the store all the same. A free function without state.
#pragma once

#include <array>

#include "officeart/bytes.h"

namespace rubrica::officeart {

std::array<std::byte, 16> md4(ByteView bytes);

}  // namespace rubrica::officeart
