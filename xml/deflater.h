// Compresses a text while it is written, a piece at a time, so that of a sheet's hundreds of megabytes of XML only one
// piece ever exists. The pieces follow each other in one DEFLATE stream. Used by the package writer through
// std::ostream; an object belongs to one thread.
//
//   Deflater deflater;
//   std::ostream stream(&deflater);
//   stream << text;
//   const DeflatedText compressed = deflater.finish();
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <streambuf>
#include <string_view>
#include <vector>

#include "xml/deflate.h"

struct libdeflate_compressor;
struct z_stream_s;

namespace rubrica {

struct DeflatedText {
  std::vector<ByteBlock> pieces;  // the stream's bytes, one behind the other
  std::uint64_t size = 0;         // of the text
  std::uint64_t compressedSize = 0;
  std::uint32_t crc = 0;
};

class Deflater final : public std::streambuf {
 public:
  // Bytes of text that are compressed at once. Each piece begins without knowledge of the one before it, which makes
  // sheets longer by a quarter of a percent at this size and by half a percent at half of it.
  static constexpr std::size_t kPiece = std::size_t{1} << 20;

  Deflater();
  ~Deflater() override;
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  // All that was written since the last call. Throws what went wrong on the way.
  DeflatedText finish();

 protected:
  int_type overflow(int_type c) override;

 private:
  struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const;
  };
  struct EndInflate {
    void operator()(z_stream_s* stream) const;
  };
  // Positions in a DEFLATE stream, in bits.
  struct LastBlock {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
  };

  void takePiece(bool isLast);
  LastBlock lastBlockOf(std::size_t compressedSize, std::size_t size);
  std::size_t openEnd(std::size_t compressedSize, std::size_t size);
  void beginPiece() { setp(_text.get(), _text.get() + kPiece); }

  std::unique_ptr<libdeflate_compressor, FreeCompressor> _compressor;
  std::unique_ptr<z_stream_s, EndInflate> _walker;  // both made for the first text of more than one piece
  platform::Block<char> _walked;
  platform::Block<char> _text;
  std::size_t _room;  // bytes
  platform::Block<char> _compressed;
  DeflatedText _result;
  std::exception_ptr _failure;
};

}  // namespace rubrica
