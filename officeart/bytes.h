// Bytes of drawings in memory: a slice that shares the buffer it lies in (a book's pictures are not copied for being
// read), the reader that takes records from one, and the sinks that records are written to. Used by all of this folder
// and by the BIFF book, which gives the sinks.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace rubrica::officeart {

static_assert(std::endian::native == std::endian::little, "fields are moved as the little-endian bytes of the file");

using ByteView = std::span<const std::byte>;

// BIFF records that drawings are carried in, and how much one holds.
inline constexpr std::uint16_t kContinue = 60, kObj = 93, kMsoDrawingGroup = 235, kMsoDrawing = 236, kTextObject = 438;
inline constexpr std::size_t kMostRecordBytes = 8224;

class Slice {
 public:
  Slice() = default;
  explicit Slice(std::vector<std::byte> bytes)
      : _owner(std::make_shared<const std::vector<std::byte>>(std::move(bytes))), _view(*_owner) {}

  static Slice copyOf(ByteView bytes) { return Slice(std::vector<std::byte>(bytes.begin(), bytes.end())); }
  ByteView view() const { return _view; }
  std::size_t size() const { return _view.size(); }
  bool empty() const { return _view.empty(); }
  // A part that shares the buffer; cut to what there is.
  Slice part(std::size_t offset, std::size_t count) const {
    Slice cut = *this;
    offset = std::min(offset, _view.size());
    cut._view = _view.subspan(offset, std::min(count, _view.size() - offset));
    return cut;
  }

 private:
  std::shared_ptr<const std::vector<std::byte>> _owner;
  ByteView _view;
};

// Takes fields from the front of a slice. A take that asks for more than is left takes nothing and answers false.
class RecordReader {
 public:
  // Groups in groups beyond this are refused: no program makes them, and each takes a frame of the stack.
  static constexpr int kMostNested = 64;

  explicit RecordReader(Slice bytes, int depth = 0) : _bytes(std::move(bytes)), _depth(depth) {}

  template <class T>
  requires std::is_trivially_copyable_v<T>
  bool take(T& value) {
    if (left() < sizeof(T)) return false;
    std::memcpy(&value, _bytes.view().data() + _at, sizeof(T));
    _at += sizeof(T);
    return true;
  }
  Slice takeSlice(std::size_t count) {
    Slice taken = _bytes.part(_at, count);
    _at += taken.size();
    return taken;
  }
  Slice takeRest() { return takeSlice(left()); }
  std::size_t left() const { return _bytes.size() - _at; }
  int depth() const { return _depth; }

 private:
  Slice _bytes;
  std::size_t _at = 0;
  int _depth = 0;
};

class ObjBase;

// Where OfficeArt records go.
class DrawingSink {
 public:
  virtual ~DrawingSink() = default;
  virtual void put(ByteView bytes) = 0;
  // A record of the sheet that has to follow what was put so far.
  virtual void follow(const ObjBase& object) = 0;

  template <class T>
  requires std::is_trivially_copyable_v<T>
  void field(const T& value) { put(std::as_bytes(std::span(&value, 1))); }
};

// Where BIFF records go.
class RecordSink {
 public:
  virtual ~RecordSink() = default;
  virtual void record(std::uint16_t recordId, ByteView body) = 0;
};

// A body of varying length, put together field by field.
class BytesBuilder {
 public:
  template <class T>
  requires std::is_trivially_copyable_v<T> BytesBuilder& field(const T& value) {
    return bytes(std::as_bytes(std::span(&value, 1)));
  }
  BytesBuilder& bytes(ByteView more) {
    _bytes.insert(_bytes.end(), more.begin(), more.end());
    return *this;
  }
  std::vector<std::byte> take() { return std::move(_bytes); }

 private:
  std::vector<std::byte> _bytes;
};

}  // namespace rubrica::officeart
