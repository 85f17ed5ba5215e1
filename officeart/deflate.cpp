#include "officeart/deflate.h"

#include <libdeflate.h>
#include <memory>
#include <new>

namespace rubrica::officeart {
namespace {

constexpr int kLevel = 6;
constexpr std::size_t kMostExpansion = 1032;  // one byte of DEFLATE makes no more

struct FreeCompressor {
  void operator()(libdeflate_compressor* c) const { libdeflate_free_compressor(c); }
};
struct FreeDecompressor {
  void operator()(libdeflate_decompressor* d) const { libdeflate_free_decompressor(d); }
};

}  // namespace

std::vector<std::byte> deflated(ByteView bytes) {
  const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(libdeflate_alloc_compressor(kLevel));
  if (compressor == nullptr) throw std::bad_alloc();
  std::vector<std::byte> result(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
  result.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), result.data(), result.size()));
  return result;
}

std::optional<std::vector<std::byte>> inflated(ByteView bytes, std::size_t size) {
  if (size / kMostExpansion > bytes.size()) return std::nullopt;
  const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(libdeflate_alloc_decompressor());
  if (decompressor == nullptr) throw std::bad_alloc();
  std::vector<std::byte> result(size);
  std::size_t made = 0;
  const libdeflate_result outcome =
      libdeflate_zlib_decompress(decompressor.get(), bytes.data(), bytes.size(), result.data(), result.size(), &made);
  if (outcome != LIBDEFLATE_SUCCESS) return std::nullopt;
  result.resize(made);
  return result;
}

}  // namespace rubrica::officeart
