// The zlib form of DEFLATE, in which metafiles are stored. Free functions over whole buffers.
#pragma once

#include <optional>

#include "officeart/bytes.h"

namespace rubrica::officeart {

std::vector<std::byte> deflated(ByteView bytes);

// At most `size` bytes, which is what the metafile's header states. Nothing where the bytes are no whole stream, make
// more than that, or where `size` is more than they can make.
std::optional<std::vector<std::byte>> inflated(ByteView bytes, std::size_t size);

}  // namespace rubrica::officeart
