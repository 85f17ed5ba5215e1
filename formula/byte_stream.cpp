#include "formula/byte_stream.h"

#include <algorithm>
#include <bit>

#include "engine/xlerror.h"

namespace rubrica::formula {
namespace {

constexpr char moveError[] = "GetFormula move1 error";

template <typename Value>
Value littleEndian(std::span<const std::uint8_t> bytes) {
  Value value = 0;
  for (std::size_t i = 0; i < sizeof(Value); ++i) {
    value = static_cast<Value>(value | static_cast<Value>(static_cast<Value>(bytes[i]) << (8 * i)));
  }
  return value;
}

}  // namespace

ByteStream::ByteStream(std::span<const std::uint8_t> bytes) : _bytes(bytes.begin(), bytes.end()), _back(bytes.size()) {}

void ByteStream::clear() {
  _front = _back = 0;
}

void ByteStream::grow(std::size_t count) {
  _bytes.resize(std::max(_back + count, 2 * _bytes.size()));
}

std::uint8_t ByteStream::popByte() {
  require(1, moveError);
  const std::uint8_t value = bytes()[0];
  drop(1);
  return value;
}

std::uint16_t ByteStream::popInt16() {
  require(2, moveError);
  const auto value = littleEndian<std::uint16_t>(bytes());
  drop(2);
  return value;
}

std::uint32_t ByteStream::popInt32() {
  require(4, "ByteStream::popInt32() error");
  const auto value = littleEndian<std::uint32_t>(bytes());
  drop(4);
  return value;
}

double ByteStream::popDouble() {
  require(8, "ByteStream::popDouble() error");
  const auto value = littleEndian<std::uint64_t>(bytes());
  drop(8);
  return std::bit_cast<double>(value);
}

void ByteStream::moveTo(ByteStream& target, std::size_t count) {
  require(count, moveError);
  const auto moved = bytes().first(count);
  std::copy(moved.begin(), moved.end(), target.extend(count));
  drop(count);
}

std::uint8_t& ByteStream::operator[](std::size_t position) {
  if (position >= size()) throw xlerror("invalid deque<T> subscript");
  return _bytes[_front + position];
}

std::uint8_t ByteStream::operator[](std::size_t position) const {
  if (position >= size()) throw xlerror("invalid deque<T> subscript");
  return _bytes[_front + position];
}

void ByteStream::require(std::size_t count, const char* message) const {
  if (size() < count) throw xlerror(message);
}

void ByteStream::drop(std::size_t count) {
  _front += count;
  if (_front == _back) {
    clear();
  } else if (_front >= kBlockSize && _front > size()) {
    const std::size_t blocks = _front / kBlockSize * kBlockSize;
    std::copy(_bytes.data() + _front, _bytes.data() + _back, _bytes.data() + (_front - blocks));
    _front -= blocks;
    _back -= blocks;
  }
}

}  // namespace rubrica::formula
