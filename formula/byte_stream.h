// A double-ended queue of formula bytes: tokens are pushed at the back by the compiler and taken from the front by the
// printer. Owns its bytes; copying copies them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace rubrica::formula {

class ByteStream {
 public:
  ByteStream() = default;
  explicit ByteStream(std::span<const std::uint8_t> bytes);

  std::size_t size() const { return _bytes.size() - _front; }
  bool empty() const { return size() == 0; }
  // All bytes from the front on. Valid until the next change.
  std::span<const std::uint8_t> bytes() const { return std::span(_bytes).subspan(_front); }
  void clear();
  // Makes room for pushes up to this size.
  void reserve(std::size_t size) { _bytes.reserve(_front + size); }
  // All bytes, taken out of a stream that is given up.
  std::vector<std::uint8_t> release() &&;

  void pushByte(std::uint8_t value) { _bytes.push_back(value); }
  // Low byte first.
  void pushInt16(std::uint16_t value) {
    _bytes.push_back(static_cast<std::uint8_t>(value));
    _bytes.push_back(static_cast<std::uint8_t>(value >> 8));
  }
  void pushInt32(std::uint32_t value) {
    pushInt16(static_cast<std::uint16_t>(value));
    pushInt16(static_cast<std::uint16_t>(value >> 16));
  }
  void pushDouble(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    pushInt32(static_cast<std::uint32_t>(bits));
    pushInt32(static_cast<std::uint32_t>(bits >> 32));
  }

  // Throw xlerror when too few bytes are left, and take nothing then: "GetFormula move1 error" for the byte and the
  // 16-bit value, "ByteStream::popInt32() error", "ByteStream::popDouble() error".
  std::uint8_t popByte();
  std::uint16_t popInt16();
  std::uint32_t popInt32();
  double popDouble();

  // Moves `count` bytes from this stream's front to the back of `target`; throws xlerror "GetFormula move1 error" when
  // there are fewer. `target` is another stream.
  void moveTo(ByteStream& target, std::size_t count);

  // The byte at a position counted from the front; throws xlerror "invalid deque<T> subscript" past the end.
  std::uint8_t& operator[](std::size_t position);
  std::uint8_t operator[](std::size_t position) const;

 private:
  // Consumed space is given back in whole blocks once it is the larger part, so that every byte is moved once at most
  // on average.
  static constexpr std::size_t kBlockSize = 16;

  void require(std::size_t count, const char* message) const;
  void drop(std::size_t count);

  std::vector<std::uint8_t> _bytes;
  std::size_t _front = 0;
};

}  // namespace rubrica::formula
