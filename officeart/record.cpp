#include "officeart/record.h"

namespace rubrica::officeart {

void OfficeArtRecordBase::read(const RecordHeader& header, RecordReader& body) {
  _header = header;
  _body = body.takeRest();
}

void OfficeArtRecordBase::write(DrawingSink& sink) const {
  writeHeader(sink);
  sink.put(_body.view());
}

std::uint32_t OfficeArtRecordBase::size() const {
  return static_cast<std::uint32_t>(_body.size());
}

void OfficeArtRecordBase::writeHeader(DrawingSink& sink) const {
  sink.field(static_cast<std::uint16_t>(_header.recVer | _header.recInstance << 4));
  sink.field(_header.recType);
  sink.field(size());
}

bool takeHeader(RecordReader& reader, RecordHeader& header) {
  std::uint16_t version = 0;
  if (reader.left() < kHeaderSize) return false;
  reader.take(version);
  reader.take(header.recType);
  reader.take(header.recLen);
  header.recVer = version & 0xF;
  header.recInstance = static_cast<std::uint16_t>(version >> 4);
  return true;
}

void OfficeArtContainer::readChildren(RecordReader& body, Make make, const char* message) {
  if (body.depth() > RecordReader::kMostNested) throw xlerror(message);
  while (body.left() > 0) {
    RecordHeader header;
    if (!takeHeader(body, header) || header.recLen > body.left()) throw xlerror(message);
    auto record = make(header.recType);
    if (record == nullptr) record = std::make_unique<OfficeArtRecordBase>();
    RecordReader inner(body.takeSlice(header.recLen), body.depth() + 1);
    record->read(header, inner);
    children.push_back(std::move(record));
  }
}

void OfficeArtContainer::writeChildren(DrawingSink& sink) const {
  for (const auto& child : children) child->write(sink);
}

std::uint32_t OfficeArtContainer::childrenSize() const {
  std::uint32_t bytes = 0;
  for (const auto& child : children) bytes += kHeaderSize + child->size();
  return bytes;
}

}  // namespace rubrica::officeart
