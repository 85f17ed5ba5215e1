#include "biff/shared_features.h"

#include <algorithm>

namespace rubrica {
namespace {

constexpr std::size_t kFeatHdrSize = 19, kFeatSize = 27, kSmallestContinueFrt = 4;
constexpr std::uint32_t kAllData = 0xFFFFFFFF;
constexpr std::size_t kErrorSetSize = 4;

// The body of a record of varying length, put together field by field.
class BodyBuilder {
 public:
  template <class T>
  void operator()(const T& value) {
    appendField(bytes, value);
  }
  void append(std::span<const std::byte> more) { appendBytes(bytes, more); }
  void writeAs(Xls& xls, std::uint16_t recordId) const {
    xls.writeRecord(recordId, bytes.data(), static_cast<std::uint16_t>(bytes.size()));
  }
  std::vector<std::byte> bytes;
};

void takeHead(FrtHeader& head, RecordBody& body) {
  FrtHeader::visit(head, [&](auto& field) { body.take(field); });
}

RawRecord readContinueFrt(Xls& xls) {
  std::uint16_t recordId = 0, size = 0;
  xls.readInt16(recordId);
  xls.readInt16(size);
  if (recordId != id::kContinueFrt) throw xlerror("ContinueFrt: unexpected record");
  const auto bytes = xls.view(size);
  if (size < kSmallestContinueFrt || bytes.size() < size) throwSizeIsIncorrect("ContinueFrt");
  return RawRecord::of(recordId, bytes);
}

}  // namespace

Feat Feat::ofIgnoredErrors(int errorSet, const CellRange& range) {
  Feat feat;
  feat.isf = static_cast<std::uint16_t>(FeatureType::ignoredErrors);
  feat.cbFeatData = kErrorSetSize;
  feat.data.resize(kErrorSetSize);
  feat.data.front() = static_cast<std::byte>(errorSet);
  feat.ranges.push_back(range);
  return feat;
}

Feat Feat::read(Xls& xls) {
  std::uint16_t recordId = 0, size = 0, count = 0;
  xls.readInt16(recordId);
  xls.readInt16(size);
  if (recordId != id::kFeat) throw xlerror("Feat: unexpected record");
  Feat feat;
  RecordBody body(xls.view(size));
  if (body.left() < kFeatSize || body.left() < size) throwSizeIsIncorrect("Feat");
  takeHead(feat.head, body);
  body.take(feat.isf);
  body.take(feat.reserved1);
  body.take(feat.reserved2);
  body.take(count);
  body.take(feat.cbFeatData);
  body.take(feat.reserved3);
  if (count > body.left() / sizeof(CellRange)) throwSizeIsIncorrect("Feat");
  feat.ranges.resize(count);
  for (CellRange& range : feat.ranges) body.take(range);
  feat.data.assign(body.rest().begin(), body.rest().end());
  while (xls.peekRecordId() == id::kContinueFrt) feat.continued.push_back(readContinueFrt(xls));
  return feat;
}

void Feat::write(Xls& xls) const {
  BodyBuilder body;
  FrtHeader::visit(head, body);
  body(isf);
  body(reserved1);
  body(reserved2);
  body(static_cast<std::uint16_t>(ranges.size()));
  body(cbFeatData);
  body(reserved3);
  for (const CellRange& range : ranges) body(range);
  body.append(data);
  body.writeAs(xls, id::kFeat);
  for (const RawRecord& record : continued) writeRaw(xls, record);
}

bool Feat::ignores(int errorSet) const {
  return isf == static_cast<std::uint16_t>(FeatureType::ignoredErrors) && !data.empty() &&
         data.front() == static_cast<std::byte>(errorSet);
}

bool Feat::hasRoom() const {
  return kFeatSize + (ranges.size() + 1) * sizeof(CellRange) + data.size() <= kMaxRecordSize;
}

FeatHdr FeatHdr::ofProtection(std::uint32_t options) {
  FeatHdr header;
  header.isf = static_cast<std::uint16_t>(FeatureType::protection);
  header.cbHdrData = kAllData;
  appendField(header.data, options);
  return header;
}

FeatHdr FeatHdr::ofIgnoredErrors() {
  FeatHdr header;
  header.isf = static_cast<std::uint16_t>(FeatureType::ignoredErrors);
  return header;
}

FeatHdr FeatHdr::read(Xls& xls, std::uint16_t size) {
  FeatHdr header;
  RecordBody body(xls.view(size));
  if (body.left() < kFeatHdrSize || body.left() < size) throwSizeIsIncorrect("FeatHdr");
  takeHead(header.head, body);
  body.take(header.isf);
  body.take(header.reserved);
  body.take(header.cbHdrData);
  header.data.assign(body.rest().begin(), body.rest().end());
  while (xls.peekRecordId() == id::kFeat) header.feats.push_back(Feat::read(xls));
  return header;
}

void FeatHdr::write(Xls& xls) const {
  BodyBuilder body;
  FrtHeader::visit(head, body);
  body(isf);
  body(reserved);
  body(cbHdrData);
  body.append(data);
  body.writeAs(xls, id::kFeatHdr);
  for (const Feat& feat : feats) feat.write(xls);
}

bool SharedFeatures::read(Xls& xls, std::uint16_t recordId, std::uint16_t size) {
  if (recordId == id::kFeatHdr) {
    _headers.push_back(FeatHdr::read(xls, size));
    return true;
  }
  if (recordId != id::kFeatHdr11) return false;
  readFixed(_headers11.emplace_back(), xls.view(size));
  return true;
}

void SharedFeatures::write(Xls& xls) const {
  for (const FeatHdr& header : _headers) header.write(xls);
  for (const FeatHdr11& header : _headers11) writeFixed(xls, header);
}

bool SharedFeatures::addIgnoredErrors(int errorSet, const CellRange& range) {
  auto header =
      std::find_if(_headers.begin(), _headers.end(), [](const FeatHdr& h) { return h.is(FeatureType::ignoredErrors); });
  if (header == _headers.end()) header = _headers.insert(_headers.end(), FeatHdr::ofIgnoredErrors());
  Feat* last = nullptr;
  for (Feat& feat : header->feats) {
    if (!feat.ignores(errorSet)) continue;
    last = &feat;
    const bool isCovered = std::any_of(feat.ranges.begin(), feat.ranges.end(), [&](const CellRange& present) {
      return present.holds(range.rowFirst, range.colFirst) && present.holds(range.rowLast, range.colLast);
    });
    if (isCovered) return false;
  }
  if (last != nullptr && last->hasRoom()) {
    last->ranges.push_back(range);
  } else {
    header->feats.push_back(Feat::ofIgnoredErrors(errorSet, range));
  }
  return true;
}

void SharedFeatures::move(const LineMove& move) {
  for (FeatHdr& header : _headers) {
    std::erase_if(header.feats, [&](Feat& feat) {
      const bool hadRanges = !feat.ranges.empty();
      std::erase_if(feat.ranges, [&](CellRange& range) { return !move.apply(range); });
      return hadRanges && feat.ranges.empty();
    });
  }
}

}  // namespace rubrica
