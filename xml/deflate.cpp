#include "xml/deflate.h"

#include <libdeflate.h>
#include <new>

namespace rubrica {

std::uint32_t crc32Of(std::string_view bytes) {
  return libdeflate_crc32(0, bytes.data(), bytes.size());
}

Inflater::Inflater() : _decompressor(libdeflate_alloc_decompressor()) {
  if (_decompressor == nullptr) throw std::bad_alloc();
}

void Inflater::Free::operator()(libdeflate_decompressor* decompressor) const {
  libdeflate_free_decompressor(decompressor);
}

bool Inflater::expand(std::string_view compressed, std::span<char> to) {
  // A null target size makes anything but exactly so many bytes a failure.
  return libdeflate_deflate_decompress(_decompressor.get(), compressed.data(), compressed.size(), to.data(), to.size(),
                                       nullptr) == LIBDEFLATE_SUCCESS;
}

}  // namespace rubrica
