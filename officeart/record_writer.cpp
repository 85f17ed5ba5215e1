#include "officeart/record_writer.h"

#include "officeart/object_records.h"

namespace rubrica::officeart {

void RecordWriter::put(ByteView bytes) {
  while (!bytes.empty()) {
    if (_bytes.size() == kMostRecordBytes) flush();
    const std::size_t part = std::min(bytes.size(), kMostRecordBytes - _bytes.size());
    _bytes.insert(_bytes.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(part));
    bytes = bytes.subspan(part);
  }
}

void RecordWriter::follow(const ObjBase& object) {
  finish();
  object.write(_sink);
}

void RecordWriter::flush() {
  _sink.record(_next, _bytes);
  _bytes.clear();
  _next = kContinue;
}

void RecordWriter::finish() {
  if (!_bytes.empty()) flush();
  _next = _recordId;
}

}  // namespace rubrica::officeart
