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

  std::size_t size() const { return _back - _front; }
  bool empty() const { return size() == 0; }
  // All bytes from the front on. Valid until the next change.
  std::span<const std::uint8_t> bytes() const { return std::span(_bytes).subspan(_front, size()); }
  void clear();
  void pushByte(std::uint8_t value) { *extend(1) = value; }
  // Low byte first.
  void pushInt16(std::uint16_t value) { putLittleEndian(extend(sizeof(value)), value); }
  void pushInt32(std::uint32_t value) { putLittleEndian(extend(sizeof(value)), value); }
  // Several unsigned values one after the other.
  template <typename... Values>
  void pushAll(Values... values) {
    std::uint8_t* place = extend((sizeof(Values) + ...));
    ((putLittleEndian(place, values), place += sizeof(Values)), ...);
  }
  void pushDouble(double value) { putLittleEndian(extend(sizeof(value)), std::bit_cast<std::uint64_t>(value)); }

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

  template <typename Value>
  static void putLittleEndian(std::uint8_t* place, Value value) {
    for (std::size_t i = 0; i < sizeof(Value); ++i) place[i] = static_cast<std::uint8_t>(value >> (8 * i));
  }
  // Room at the back for so many bytes, which are to be written at once.
  std::uint8_t* extend(std::size_t count) {
    if (_bytes.size() - _back < count) grow(count);
    std::uint8_t* const place = _bytes.data() + _back;
    _back += count;
    return place;
  }
  void grow(std::size_t count);
  void require(std::size_t count, const char* message) const;
  void drop(std::size_t count);

  std::vector<std::uint8_t> _bytes;  // those in use lie between the two positions; the room around them is kept
  std::size_t _front = 0;
  std::size_t _back = 0;
};

}  // namespace rubrica::formula
