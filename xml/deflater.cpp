// libdeflate compresses whole buffers only and ends each with a block marked as the last. To go on behind it, the mark
// is taken away and an empty stored block brings the stream to a full byte, as a flush of zlib does:
//
//   ... 1 10 <block> 000          the last block: BFINAL, BTYPE, and what fills up the byte
//   ... 0 10 <block> 0 00 0 00 00 FF FF
//                    ^ ^  ^ ^ the length 0 and its complement
//                    BFINAL, BTYPE, what fills up the byte
//
// Where the last block begins only a decoder can tell: zlib's stops between blocks when asked to.
#include "xml/deflater.h"

#include <algorithm>
#include <libdeflate.h>
#include <new>
#include <utility>
#include <zlib.h>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

// On the XML of sheets three to nine times as fast as zlib's default level, and hardly larger.
constexpr int kLevel = 3;

constexpr std::size_t kBlockHeader = 3;                                    // bits: BFINAL and BTYPE
constexpr char kEmptyBlock[] = {'\x00', '\x00', '\xFF', '\xFF'};           // of a stored block, behind its header
constexpr std::size_t kOpenEnd = 1 + sizeof(kEmptyBlock);                  // bytes that an open end adds at most
constexpr int kRawStream = -MAX_WBITS;                                     // for zlib: no header around the blocks
constexpr int kUnusedBits = 7, kIsLastBlock = 64, kIsBetweenBlocks = 128;  // of zlib's data_type

}  // namespace

void Deflater::FreeCompressor::operator()(libdeflate_compressor* compressor) const {
  libdeflate_free_compressor(compressor);
}

void Deflater::EndInflate::operator()(z_stream_s* stream) const {
  inflateEnd(stream);
  delete stream;
}

Deflater::Deflater()
    : _compressor(libdeflate_alloc_compressor(kLevel)),
      _text(platform::makeBlock<char>(kPiece)),
      _room(libdeflate_deflate_compress_bound(_compressor.get(), kPiece) + kOpenEnd),
      _compressed(platform::makeBlock<char>(_room)) {
  if (_compressor == nullptr) throw std::bad_alloc();
  beginPiece();
}

Deflater::~Deflater() = default;

// A stream swallows what its buffer throws: it is kept for finish.
Deflater::int_type Deflater::overflow(int_type c) {
  try {
    takePiece(false);
  } catch (...) {
    _failure = std::current_exception();
    return traits_type::eof();
  }
  if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
  return traits_type::not_eof(c);
}

DeflatedText Deflater::finish() {
  if (_failure) std::rethrow_exception(_failure);
  takePiece(true);
  return std::exchange(_result, {});
}

void Deflater::takePiece(bool isLast) {
  const auto size = static_cast<std::size_t>(pptr() - pbase());
  _result.crc = libdeflate_crc32(_result.crc, pbase(), size);
  _result.size += size;
  std::size_t compressed =
      libdeflate_deflate_compress(_compressor.get(), pbase(), size, _compressed.get(), _room - kOpenEnd);
  if (!isLast) compressed = openEnd(compressed, size);
  ByteBlock piece{platform::makeBlock<char>(compressed), compressed};
  std::copy_n(_compressed.get(), compressed, piece.bytes.get());
  _result.pieces.push_back(std::move(piece));
  _result.compressedSize += compressed;
  beginPiece();
}

// Leaves the stream that was just compressed open for another one behind it, and answers its new size.
std::size_t Deflater::openEnd(std::size_t compressedSize, std::size_t size) {
  constexpr std::uint64_t kByte = 8;
  const auto [begin, end] = lastBlockOf(compressedSize, size);
  char& header = _compressed[begin / kByte];
  header = static_cast<char>(header & ~(1 << (begin % kByte)));
  const auto headerEnd = static_cast<std::size_t>((end + kBlockHeader + kByte - 1) / kByte);
  std::fill(_compressed.get() + compressedSize, _compressed.get() + std::max(headerEnd, compressedSize), '\0');
  std::copy_n(kEmptyBlock, sizeof(kEmptyBlock), _compressed.get() + headerEnd);
  return headerEnd + sizeof(kEmptyBlock);
}

Deflater::LastBlock Deflater::lastBlockOf(std::size_t compressedSize, std::size_t size) {
  if (_walker == nullptr) {
    auto stream = std::make_unique<z_stream>();
    if (inflateInit2(stream.get(), kRawStream) != Z_OK) throw std::bad_alloc();
    _walker.reset(stream.release());
    _walked = platform::makeBlock<char>(kPiece);
  }
  z_stream& walker = *_walker;
  inflateReset(&walker);
  walker.next_in = reinterpret_cast<Bytef*>(_compressed.get());
  walker.avail_in = static_cast<uInt>(compressedSize);
  walker.next_out = reinterpret_cast<Bytef*>(_walked.get());
  walker.avail_out = static_cast<uInt>(size);
  LastBlock block;
  do {
    const int state = inflate(&walker, Z_BLOCK);
    if (state != Z_OK || (walker.data_type & kIsBetweenBlocks) == 0) throw xlerror("a part can't be compressed");
    block.begin = std::exchange(
        block.end, std::uint64_t{walker.total_in} * 8 - static_cast<unsigned>(walker.data_type & kUnusedBits));
  } while ((walker.data_type & kIsLastBlock) == 0);
  return block;
}

}  // namespace rubrica
