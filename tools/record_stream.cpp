#include "tools/record_stream.h"

#include <algorithm>
#include <cstring>

#include "biff/records/record_ids.h"
#include "compound/xls.h"
#include "engine/xlerror.h"
#include "tools/record_names.h"

namespace rubrica::tools {
namespace {

constexpr std::size_t kHeaderSize = 4;

template <class T>
T littleAt(std::span<const std::byte> bytes, std::size_t at) {
  T value = 0;
  if (at + sizeof(T) <= bytes.size()) std::memcpy(&value, bytes.data() + at, sizeof(T));
  return value;
}

std::string at(std::uint64_t offset) {
  return " at offset " + std::to_string(offset);
}

// Splits the bytes of the stream into records, following the nesting of substreams.
class Splitter {
 public:
  explicit Splitter(RecordStream& stream) : _stream(stream) {}

  void run() {
    while (_offset < _stream.bytes.size() && step()) {
    }
    if (_depth > 0) _stream.damage.push_back("the last substream has no EOF record");
    if (_stream.records.empty()) _stream.damage.push_back("the workbook stream holds no records");
  }

 private:
  bool step() {
    const auto rest = std::span<const std::byte>(_stream.bytes).subspan(_offset);
    // Behind the last EOF the stream is filled up with zeros.
    const bool onlyZeros = std::all_of(rest.begin(), rest.end(), [](std::byte b) { return b == std::byte{0}; });
    if (_depth == 0 && onlyZeros) return false;
    if (rest.size() < kHeaderSize) {
      _stream.damage.push_back("a record header is cut off" + at(_offset));
      return false;
    }
    RawStreamRecord record;
    record.offset = _offset;
    record.recordId = littleAt<std::uint16_t>(rest, 0);
    record.statedSize = littleAt<std::uint16_t>(rest, 2);
    record.body = rest.subspan(kHeaderSize, std::min<std::size_t>(record.statedSize, rest.size() - kHeaderSize));
    if (record.recordId == 0) {
      _stream.damage.push_back("there is a record of id 0" + at(_offset));
      return false;
    }
    if (record.body.size() < record.statedSize) {
      _stream.damage.push_back("the " + recordName(record.recordId) + " record" + at(_offset) +
                               " is cut off: it states " + std::to_string(record.statedSize) + " bytes, and " +
                               std::to_string(record.body.size()) + " are left");
    }
    place(record);
    _offset += kHeaderSize + record.body.size();
    return true;
  }

  void place(RawStreamRecord& record) {
    if (record.recordId == id::kBof && _depth++ == 0) ++_substream;
    record.substream = _depth > 0 ? _substream : -1;
    record.depth = _depth;
    _stream.records.push_back(record);
    if (_depth == 0) {
      _stream.damage.push_back("the " + recordName(record.recordId) + " record" + at(record.offset) +
                               " stands outside all substreams");
    }
    if (record.recordId == id::kEof && _depth > 0) --_depth;
  }

  RecordStream& _stream;
  std::size_t _offset = 0;
  int _depth = 0, _substream = -1;
};

}  // namespace

std::uint16_t RawStreamRecord::word(std::size_t at) const {
  return littleAt<std::uint16_t>(body, at);
}

std::uint32_t RawStreamRecord::doubleWord(std::size_t at) const {
  return littleAt<std::uint32_t>(body, at);
}

RecordStream readRecordStream(std::span<const std::byte> file) {
  RecordStream stream;
  Xls xls;
  try {
    xls.read(file);
    stream.directory = xls.directory();
    if (xls.isEncryptionInfo()) throw xlerror("workbook is encrypted");
    const auto bytes = xls.view(static_cast<std::size_t>(xls.bytesLeft()));
    stream.bytes.assign(bytes.begin(), bytes.end());
  } catch (const xlerror& error) {
    stream.damage.push_back(error.what());
    return stream;
  }
  stream.opened = true;
  Splitter(stream).run();
  return stream;
}

}  // namespace rubrica::tools
