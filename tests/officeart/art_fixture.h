// Test support: OfficeArt records put together byte by byte, read by their classes, and written again.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/xlerror.h"
#include "officeart/drawing.h"
#include "officeart/drawing_group.h"
#include "officeart/record_writer.h"

namespace rubrica::officeart::test {

using Bytes = std::vector<std::byte>;

template <class... Values>
Bytes fields(const Values&... values) {
  BytesBuilder builder;
  (builder.field(values), ...);
  return builder.take();
}
inline std::uint16_t u16(unsigned value) {
  return static_cast<std::uint16_t>(value);
}
inline std::uint32_t u32(unsigned value) {
  return value;
}
inline Bytes filled(std::size_t count, unsigned value) {
  return Bytes(count, static_cast<std::byte>(value));
}
inline Bytes joined(const std::vector<Bytes>& parts) {
  BytesBuilder builder;
  for (const Bytes& part : parts) builder.bytes(part);
  return builder.take();
}

// A record; a container is one whose body is records. `length` in place of the body's own where it lies.
inline Bytes art(unsigned recVer, unsigned recInstance, unsigned recType, const Bytes& body, long length = -1) {
  const auto recLen = static_cast<std::uint32_t>(length < 0 ? body.size() : static_cast<std::size_t>(length));
  return joined({fields(u16(recVer | recInstance << 4), u16(recType), recLen), body});
}
inline Bytes box(unsigned recType, const std::vector<Bytes>& children, unsigned recInstance = 0) {
  return art(0xF, recInstance, recType, joined(children));
}

struct KeptRecord {
  std::uint16_t recordId = 0;
  Bytes body;
  bool operator==(const KeptRecord&) const = default;
};

class Keeper final : public RecordSink {
 public:
  void record(std::uint16_t recordId, ByteView body) override {
    kept.push_back({recordId, {body.begin(), body.end()}});
  }
  std::vector<KeptRecord> kept;
};

// The records' own bytes, without the objects that follow them.
class ByteSink final : public DrawingSink {
 public:
  void put(ByteView more) override { bytes.insert(bytes.end(), more.begin(), more.end()); }
  void follow(const ObjBase&) override {}
  Bytes bytes;
};

inline Bytes written(const OfficeArtRecordBase& record) {
  ByteSink sink;
  record.write(sink);
  return sink.bytes;
}

template <class Record>
std::unique_ptr<Record> readAs(const Bytes& bytes) {
  RecordReader reader(Slice::copyOf(bytes));
  RecordHeader header;
  EXPECT_TRUE(takeHeader(reader, header));
  auto record = std::make_unique<Record>();
  RecordReader body(reader.takeSlice(header.recLen));
  record->read(header, body);
  return record;
}

template <class Body>
std::string refusal(const Body& body) {
  try {
    body();
  } catch (const xlerror& error) {
    return error.what();
  }
  return "nothing was refused";
}
template <class Record>
std::string refusalOf(const Bytes& bytes) {
  return refusal([&] { readAs<Record>(bytes); });
}

inline std::vector<SheetRecord> views(const std::vector<KeptRecord>& records) {
  std::vector<SheetRecord> views;
  for (const KeptRecord& record : records) views.push_back({record.recordId, record.body});
  return views;
}
inline std::vector<KeptRecord> recordsOf(const Drawing& drawing) {
  Keeper keeper;
  drawing.write(keeper);
  return keeper.kept;
}
inline std::vector<KeptRecord> recordsOf(const DrawingGroup& group) {
  Keeper keeper;
  group.write(keeper);
  return keeper.kept;
}
inline DrawingGroup groupOf(const std::vector<KeptRecord>& records) {
  DrawingGroup group;
  for (const KeptRecord& record : records) group.append(record.recordId, record.body);
  group.finishReading();
  return group;
}

inline Bytes png(std::size_t size) {
  Bytes bytes = filled(size, 0x5A);
  const unsigned signature[] = {0x89, 'P', 'N', 'G', 13, 10, 26, 10, 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
  for (std::size_t i = 0; i < size && i < std::size(signature); ++i) bytes[i] = static_cast<std::byte>(signature[i]);
  return bytes;
}

}  // namespace rubrica::officeart::test
