#include "biff/sheet_ext.h"

namespace rubrica {
namespace {

// The future record header, the size of what is meaningful, the palette index; then optionally the index again with
// flags, and the colour as a kind, a value and a tint.
constexpr std::size_t kSizeOffset = 12, kIndexOffset = 16, kPlainSize = 20, kIndex12Offset = 20, kColorOffset = 24,
                      kFullSize = 40;
constexpr std::uint32_t kIndexMask = 0x7F, kNoColor = 0x7F;
constexpr std::uint32_t kIndexedColor = 1, kRgbColor = 2, kOpaque = 0xFF000000;

template <class T>
void putAt(std::vector<std::byte>& bytes, std::size_t offset, const T& value) {
  std::memcpy(bytes.data() + offset, &value, sizeof(value));
}

// The flags beside an index stay.
void putIndex(std::vector<std::byte>& bytes, std::size_t offset, int index) {
  std::uint32_t word = 0;
  std::memcpy(&word, bytes.data() + offset, sizeof(word));
  putAt(bytes, offset, (word & ~kIndexMask) | (static_cast<std::uint32_t>(index) & kIndexMask));
}

void putColor(std::vector<std::byte>& bytes, std::uint32_t kind, std::uint32_t value) {
  putAt(bytes, kColorOffset, kind);
  putAt(bytes, kColorOffset + sizeof(kind), value);
  putAt(bytes, kColorOffset + sizeof(kind) + sizeof(value), double{0});
}

}  // namespace

RawRecord makeSheetExt() {
  RawRecord record{id::kSheetExt, true, std::vector<std::byte>(kPlainSize)};
  putAt(record.bytes, 0, id::kSheetExt);
  putAt(record.bytes, kSizeOffset, static_cast<std::uint32_t>(kPlainSize));
  putAt(record.bytes, kIndexOffset, kNoColor);
  return record;
}

void setTabColorIndex(RawRecord& sheetExt, int index) {
  if (sheetExt.bytes.size() < kPlainSize) sheetExt = makeSheetExt();
  putIndex(sheetExt.bytes, kIndexOffset, index);
  if (sheetExt.bytes.size() < kFullSize) return;
  putIndex(sheetExt.bytes, kIndex12Offset, index);
  putColor(sheetExt.bytes, kIndexedColor, static_cast<std::uint32_t>(index) & kIndexMask);
}

void setTabColorRgb(RawRecord& sheetExt, int red, int green, int blue, int nearestIndex) {
  if (sheetExt.bytes.size() < kPlainSize) sheetExt = makeSheetExt();
  if (sheetExt.bytes.size() < kFullSize) sheetExt.bytes.resize(kFullSize);
  putAt(sheetExt.bytes, kSizeOffset, static_cast<std::uint32_t>(kFullSize));
  putIndex(sheetExt.bytes, kIndexOffset, nearestIndex);
  putIndex(sheetExt.bytes, kIndex12Offset, nearestIndex);
  const auto byteOf = [](int channel, int shift) { return (static_cast<std::uint32_t>(channel) & 0xFF) << shift; };
  putColor(sheetExt.bytes, kRgbColor, byteOf(red, 0) | byteOf(green, 8) | byteOf(blue, 16) | kOpaque);
}

}  // namespace rubrica
