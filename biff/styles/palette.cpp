#include "biff/styles/palette.h"

#include <algorithm>

#include "biff/records/record_io.h"
#include "engine/standard_palette.h"
#include "engine/xlerror.h"

namespace rubrica {
namespace {

constexpr std::uint32_t kColorBits = 0x00FFFFFF;
constexpr char kPaletteName[] = "Palette";

constexpr std::uint32_t entryOf(int red, int green, int blue) {
  return static_cast<std::uint8_t>(red) | std::uint32_t{static_cast<std::uint8_t>(green)} << 8 |
         std::uint32_t{static_cast<std::uint8_t>(blue)} << 16;
}

}  // namespace

Palette::Palette() {
  resetColors();
}

void Palette::resetColors() {
  _entries.clear();
  for (const std::uint32_t c : kStandardPalette) {
    _entries.push_back(entryOf(static_cast<int>(c >> 16), static_cast<int>(c >> 8), static_cast<int>(c)));
  }
}

int Palette::pack(int red, int green, int blue) {
  const std::uint32_t wanted = entryOf(red, green, blue);
  const auto match = std::find_if(_entries.begin(), _entries.end(),
                                  [wanted](std::uint32_t entry) { return (entry & kColorBits) == wanted; });
  auto position = static_cast<std::size_t>(match - _entries.begin());
  if (match == _entries.end()) {
    position = static_cast<std::size_t>(std::find(_used.begin(), _used.end(), false) - _used.begin());
    if (position == kSize) throw xlerror("no free color index, limit is reached for xls format");
    // A file's palette may have fewer entries than there are indexes.
    if (position >= _entries.size()) _entries.resize(position + 1);
    _entries[position] = wanted;
  }
  if (position < kSize) _used[position] = true;
  return static_cast<int>(position) + kFirstIndex;
}

int Palette::nearest(int red, int green, int blue) const {
  const auto distance = [&](std::uint32_t entry) {
    const std::int64_t differences[] = {std::int64_t{entry & 0xFF} - red, std::int64_t{entry >> 8 & 0xFF} - green,
                                        std::int64_t{entry >> 16 & 0xFF} - blue};
    std::int64_t sum = 0;
    for (const std::int64_t difference : differences) sum += difference * difference;
    return sum;
  };
  const auto end = _entries.begin() + static_cast<std::ptrdiff_t>(std::min(_entries.size(), kSize));
  const auto found = std::min_element(_entries.begin(), end,
                                      [&](std::uint32_t a, std::uint32_t b) { return distance(a) < distance(b); });
  return static_cast<int>(found - _entries.begin()) + kFirstIndex;
}

void Palette::unpack(int color, int* red, int* green, int* blue) const {
  const unsigned position = static_cast<unsigned>(color) - unsigned{kFirstIndex};
  if (position >= _entries.size()) throw xlerror("invalid vector<T> subscript");
  const std::uint32_t entry = _entries[position];
  if (red != nullptr) *red = static_cast<int>(entry & 0xFF);
  if (green != nullptr) *green = static_cast<int>(entry >> 8 & 0xFF);
  if (blue != nullptr) *blue = static_cast<int>(entry >> 16 & 0xFF);
}

void Palette::read(Xls& xls, std::uint16_t size) {
  const auto bytes = xls.view(size);
  RecordBody body(bytes);
  std::int16_t count = 0;
  if (bytes.size() != size || !body.take(count)) throwSizeIsIncorrect(kPaletteName);
  const auto entries = static_cast<std::size_t>(std::max<std::int16_t>(count, 0));
  if (body.left() != entries * sizeof(std::uint32_t)) throwSizeIsIncorrect(kPaletteName);
  if (entries == 0) return;
  _entries.resize(entries);
  std::memcpy(_entries.data(), body.rest().data(), body.left());
}

void Palette::write(Xls& xls) const {
  const std::size_t size = _entries.size() * sizeof(std::uint32_t);
  xls.writeHeader(id::kPalette, static_cast<std::uint16_t>(2 + size));
  xls.writeInt16(static_cast<std::uint16_t>(_entries.size()));
  xls.write(_entries.data(), size);
}

}  // namespace rubrica
