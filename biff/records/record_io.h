// How records are declared and moved. A fixed record states its fields once, in file order:
//
//   struct Window1 {
//     static constexpr std::uint16_t kId = id::kWindow1;
//     static constexpr char kName[] = "Window1";
//     std::uint16_t xWn = 0, yWn = 15, ...;
//     static void visit(auto& self, auto&& field) { field(self.xWn); field(self.yWn); ... }
//   };
//
// and reading, writing, size and the size check follow from that list. Fields are little-endian integers, doubles and
// arrays of them.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "biff/records/record_ids.h"
#include "compound/xls.h"
#include "engine/xlerror.h"

namespace rubrica {

static_assert(std::endian::native == std::endian::little, "records are moved as the little-endian bytes of the file");

[[noreturn]] inline void throwSizeIsIncorrect(const char* record) {
  throw xlerror(std::string(record) + " size is incorrect");
}

// The body of one record, consumed from front to back. A take that asks for more than is left takes nothing and answers
// false.
class RecordBody {
 public:
  explicit RecordBody(std::span<const std::byte> bytes) : _rest(bytes) {}

  template <class T>
  requires std::is_trivially_copyable_v<T>
  bool take(T& value) {
    if (_rest.size() < sizeof(T)) return false;
    std::memcpy(&value, _rest.data(), sizeof(T));
    _rest = _rest.subspan(sizeof(T));
    return true;
  }
  std::span<const std::byte> takeBytes(std::size_t count) {
    const auto taken = _rest.first(std::min(count, _rest.size()));
    _rest = _rest.subspan(taken.size());
    return taken;
  }
  std::size_t left() const { return _rest.size(); }
  std::span<const std::byte> rest() const { return _rest; }

 private:
  std::span<const std::byte> _rest;
};

template <class Record>
std::size_t fixedSize(const Record& record) {
  std::size_t size = 0;
  Record::visit(record, [&](const auto& field) { size += sizeof(field); });
  return size;
}

// Reads a record whose size must be that of its fields.
template <class Record>
void readFixed(Record& record, std::span<const std::byte> bytes) {
  if (bytes.size() != fixedSize(record)) throwSizeIsIncorrect(Record::kName);
  RecordBody body(bytes);
  Record::visit(record, [&](auto& field) { body.take(field); });
}

// Reads a record that may end behind any of its fields; the fields after that keep their values.
template <class Record>
void readPrefix(Record& record, std::span<const std::byte> bytes) {
  RecordBody body(bytes);
  bool whole = true;
  Record::visit(record, [&](auto& field) {
    if (body.left() > 0 && whole) whole = body.take(field);
  });
  if (!whole || body.left() > 0) throwSizeIsIncorrect(Record::kName);
}

// A body of varying length, put together piece by piece. Not inline: where its growth is inlined many times over, the
// optimiser of g++ 12 sees overflows that can't be.
void appendBytes(std::vector<std::byte>& body, std::span<const std::byte> bytes);
template <class T>
requires std::is_trivially_copyable_v<T>
void appendField(std::vector<std::byte>& body, const T& value) {
  appendBytes(body, std::as_bytes(std::span(&value, 1)));
}

// A body being put together for writing: small ones stay on the stack of their writer.
template <std::size_t Capacity>
class RecordBuffer {
 public:
  template <class T>
  requires std::is_trivially_copyable_v<T>
  void put(const T& value) {
    static_assert(sizeof(T) <= Capacity);
    std::memcpy(_bytes.data() + _size, &value, sizeof(T));
    _size += sizeof(T);
  }
  const std::byte* data() const { return _bytes.data(); }
  std::uint16_t size() const { return static_cast<std::uint16_t>(_size); }

 private:
  std::array<std::byte, Capacity> _bytes;
  std::size_t _size = 0;
};

template <class Record>
void writeFixed(Xls& xls, const Record& record) {
  RecordBuffer<sizeof(Record) + 16> buffer;
  Record::visit(record, [&](const auto& field) { buffer.put(field); });
  xls.writeRecord(Record::kId, buffer.data(), buffer.size());
}

// A record that the engine carries as it came: its id and its bytes. A member for one stays absent until a file brings
// it, and is then written back in its place.
struct RawRecord {
  std::uint16_t recordId = 0;
  bool present = false;
  std::vector<std::byte> bytes;

  static RawRecord of(std::uint16_t recordId, std::span<const std::byte> body) {
    return {recordId, true, {body.begin(), body.end()}};
  }
};

inline void writeRaw(Xls& xls, const RawRecord& record) {
  if (record.present)
    xls.writeRecord(record.recordId, record.bytes.data(), static_cast<std::uint16_t>(record.bytes.size()));
}

}  // namespace rubrica
