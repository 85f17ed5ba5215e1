// What reads package parts out of whole buffers: INFLATE and the check sum. Errors are xlerror; an object belongs to
// one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "platform/large_block.h"

struct libdeflate_decompressor;

namespace rubrica {

// Bytes of a buffer that may be longer than what it holds.
struct ByteBlock {
  platform::Block<char> bytes;
  std::size_t size = 0;

  std::string_view view() const { return {bytes.get(), size}; }
};

std::uint32_t crc32Of(std::string_view bytes);

class Inflater {
 public:
  Inflater();
  // Fills `to`; false when the stream is damaged or holds any other number of bytes.
  bool expand(std::string_view compressed, std::span<char> to);

 private:
  struct Free {
    void operator()(libdeflate_decompressor* decompressor) const;
  };
  std::unique_ptr<libdeflate_decompressor, Free> _decompressor;
};

}  // namespace rubrica
