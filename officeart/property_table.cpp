#include "officeart/property_table.h"

namespace rubrica::officeart {

void OfficeArtFOPTEOPID::read(RecordReader& reader) {
  if (!reader.take(word)) throw xlerror("error in OfficeArtFOPTEOPID");
}

void OfficeArtRGFOPTE::read(RecordReader& body, std::size_t count) {
  std::uint64_t dataSize = 0;
  for (std::size_t i = 0; i < count; ++i) {
    OfficeArtFOPTE entry;
    entry.id.read(body);
    if (!body.take(entry.op)) throw xlerror("error in record OfficeArtRGFOPTE (1)");
    if (entry.id.isComplex()) dataSize += entry.op;
    entries.push_back(entry);
  }
  // Lengths of arrays may leave out the arrays' own headers, so there may be more data than the lengths say.
  if (dataSize > body.left()) throw xlerror("error in record OfficeArtRGFOPTE (2)");
  _data = body.takeRest();
}

void OfficeArtRGFOPTE::write(DrawingSink& sink) const {
  for (const OfficeArtFOPTE& entry : entries) {
    sink.field(entry.id.word);
    sink.field(entry.op);
  }
  sink.put(_data.view());
}

std::uint32_t OfficeArtRGFOPTE::size() const {
  constexpr std::size_t kEntrySize = 6;
  return static_cast<std::uint32_t>(entries.size() * kEntrySize + _data.size());
}

std::optional<std::uint32_t> OfficeArtRGFOPTE::value(std::uint16_t opid) const {
  for (const OfficeArtFOPTE& entry : entries) {
    if (entry.id.opid() == opid && !entry.id.isComplex()) return entry.op;
  }
  return std::nullopt;
}

void OfficeArtRGFOPTE::setValue(std::uint16_t opid, std::uint32_t op) {
  for (OfficeArtFOPTE& entry : entries) {
    if (entry.id.opid() == opid && !entry.id.isComplex()) entry.op = op;
  }
}

}  // namespace rubrica::officeart
