// Test support: records written into the workbook stream of a compound file in memory, and read back from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "biff/records/record_ids.h"
#include "biff/records/record_io.h"
#include "compound/xls.h"
#include "engine/xlerror.h"
#include "platform/output_stream.h"

namespace rubrica::test {

using Bytes = std::vector<std::byte>;

inline Bytes bytesOf(std::initializer_list<int> values) {
  Bytes bytes;
  for (const int value : values) bytes.push_back(static_cast<std::byte>(value));
  return bytes;
}

// Little-endian fields put one after another.
class BytesBuilder {
 public:
  BytesBuilder& u8(unsigned value) { return put(value, 1); }
  BytesBuilder& u16(unsigned value) { return put(value, 2); }
  BytesBuilder& u32(std::uint32_t value) { return put(value, 4); }
  BytesBuilder& text(std::string_view text) {
    for (const char c : text) u8(static_cast<unsigned char>(c));
    return *this;
  }
  BytesBuilder& wide(std::u16string_view text) {
    for (const char16_t c : text) u16(c);
    return *this;
  }
  BytesBuilder& bytes(const Bytes& more) {
    _bytes.insert(_bytes.end(), more.begin(), more.end());
    return *this;
  }
  BytesBuilder& fill(std::size_t count, unsigned value) {
    _bytes.insert(_bytes.end(), count, static_cast<std::byte>(value));
    return *this;
  }
  operator Bytes() const { return _bytes; }

 private:
  BytesBuilder& put(std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) _bytes.push_back(static_cast<std::byte>(value >> (8 * i)));
    return *this;
  }
  Bytes _bytes;
};

struct Record {
  std::uint16_t recordId = 0;
  Bytes bytes;
  bool operator==(const Record&) const = default;
};

// A compound file whose workbook stream holds these records.
inline Bytes fileOf(const std::vector<Record>& records) {
  Xls xls;
  platform::MemoryOutput output;
  xls.reset(true);
  xls.attach(output);
  xls.start();
  for (const Record& record : records) {
    xls.writeRecord(record.recordId, record.bytes.data(), static_cast<std::uint16_t>(record.bytes.size()));
  }
  xls.close();
  return output.release();
}

// The stream: filled through writer(), then read through reader(). An EOF record ends it unless it is to end at once.
class RecordStream {
 public:
  RecordStream() {
    _writer.reset(true);
    _writer.attach(_output);
    _writer.start();
  }
  explicit RecordStream(const std::vector<Record>& records) : RecordStream() {
    for (const Record& record : records) {
      _writer.writeRecord(record.recordId, record.bytes.data(), static_cast<std::uint16_t>(record.bytes.size()));
    }
  }
  explicit RecordStream(const std::function<void(Xls&)>& write) : RecordStream() { write(_writer); }

  Xls& writer() { return _writer; }

  // The reader at the first byte of the stream.
  Xls& reader() {
    if (!_closed) {
      _writer.writeHeader(id::kEof, 0);
      _writer.close();
      _closed = true;
    }
    _reader.read(_output.bytes());
    return _reader;
  }

  // The reader behind the header of the first record, whose size is `size`.
  Xls& firstRecord(std::uint16_t& size) {
    Xls& xls = reader();
    std::uint16_t recordId = 0;
    xls.readInt16(recordId);
    xls.readInt16(size);
    return xls;
  }

  // All records up to the EOF.
  std::vector<Record> records() {
    std::vector<Record> all;
    Xls& xls = reader();
    for (;;) {
      std::uint16_t recordId = 0, size = 0;
      xls.readInt16(recordId);
      xls.readInt16(size);
      if (recordId == id::kEof || xls.isEnd()) return all;
      const auto body = xls.view(size);
      all.push_back({recordId, {body.begin(), body.end()}});
    }
  }

 private:
  platform::MemoryOutput _output;
  Xls _writer;
  Xls _reader;
  bool _closed = false;
};

// The text of the xlerror that `body` throws; "nothing thrown" without one.
inline std::string errorOf(const std::function<void()>& body) {
  try {
    body();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "nothing thrown";
}

}  // namespace rubrica::test
