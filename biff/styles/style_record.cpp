#include "biff/styles/style_record.h"

#include "biff/styles/record_text.h"

namespace rubrica {
namespace {

// The body begins with the record's id once more, as all future records do.
RawRecord readStyleExt(Xls& xls) {
  std::uint16_t recordId = 0, size = 0, rt = 0;
  xls.readInt16(recordId);
  xls.readInt16(size);
  const auto bytes = xls.view(size);
  if (!RecordBody(bytes).take(rt) || rt != id::kStyleExt) throw xlerror("StyleExt: unexpected record");
  return RawRecord::of(recordId, bytes);
}

}  // namespace

void Style::read(Xls& xls, std::uint16_t size, BookState& state) {
  if (size < sizeof xf || xls.readInt16(xf) != sizeof xf) throwSizeIsIncorrect(kName);
  auto left = static_cast<std::uint16_t>(size - sizeof xf);
  if (builtIn()) {
    if (left < 2 || xls.readInt8(builtInId) != 1 || xls.readInt8(level) != 1) throwSizeIsIncorrect(kName);
    left = static_cast<std::uint16_t>(left - 2);
  } else if (left > 1) {
    hasName = true;
    const auto behindName = readRecordText(xls, state, left, name);
    if (!behindName) throwSizeIsIncorrect(kName);
    left = *behindName;
  }
  // Some writers pad the record to an even size.
  if (left == 1) left = static_cast<std::uint16_t>(left - xls.skip(1));
  if (left != 0) throwSizeIsIncorrect(kName);
  if (xls.peekRecordId() == id::kStyleExt) ext = readStyleExt(xls);
}

void Style::write(Xls& xls) const {
  const std::size_t rest = builtIn() ? 2 : hasName ? name.size() : 0;
  xls.writeHeader(id::kStyle, static_cast<std::uint16_t>(sizeof xf + rest));
  xls.writeInt16(xf);
  if (builtIn()) {
    xls.writeInt8(builtInId);
    xls.writeInt8(level);
  } else if (hasName) {
    name.write(xls);
  }
  writeRaw(xls, ext);
}

}  // namespace rubrica
