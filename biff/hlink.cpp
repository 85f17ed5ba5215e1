#include "biff/hlink.h"

#include <algorithm>

namespace rubrica {

HLink HLink::read(Xls& xls, std::uint16_t size) {
  const auto first = xls.view(size);
  std::vector<std::byte> bytes(first.begin(), first.end());
  while (xls.peekRecordId() == id::kContinue) {
    std::uint16_t recordId = 0, length = 0;
    xls.readInt16(recordId);
    xls.readInt16(length);
    const auto more = xls.view(length);
    appendBytes(bytes, more);
  }
  RecordBody body(bytes);
  HLink link;
  if (!body.take(link.range) || !body.take(link.classId)) throw xlerror("error reading HLink");
  link.object = HyperlinkObject::read(body);
  return link;
}

void HLink::write(Xls& xls) const {
  std::vector<std::byte> bytes;
  bytes.reserve(kHeadSize + object.size());
  appendField(bytes, range);
  appendField(bytes, classId);
  object.append(bytes);
  // A declared size never reaches the largest body.
  auto room = static_cast<std::uint16_t>(std::min<std::size_t>(bytes.size(), kMaxRecordSize - 1));
  xls.writeHeader(id::kHLink, room);
  xls.writeWithContinueRecords(bytes.data(), bytes.size(), room, bytes.size());
}

}  // namespace rubrica
