#include "engine/picture_header.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t kTooShort = 4;  // bytes that no known picture consists of
constexpr std::int64_t kPixelsPerInch = 96;

std::uint8_t at(Bytes bytes, std::size_t offset) {
  return offset < bytes.size() ? std::to_integer<std::uint8_t>(bytes[offset]) : std::uint8_t{0};
}

bool holds(Bytes bytes, std::size_t offset, std::size_t size) {
  return offset <= bytes.size() && size <= bytes.size() - offset;
}

// A number of `size` bytes at `offset`, which the caller knows to be there.
std::uint32_t big(Bytes bytes, std::size_t offset, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < size; ++i) value = value << 8 | at(bytes, offset + i);
  return value;
}
std::uint32_t little(Bytes bytes, std::size_t offset, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = size; i > 0; --i) value = value << 8 | at(bytes, offset + i - 1);
  return value;
}
std::int64_t littleSigned32(Bytes bytes, std::size_t offset) {
  return static_cast<std::int32_t>(little(bytes, offset, 4));
}
std::int64_t littleSigned16(Bytes bytes, std::size_t offset) {
  return static_cast<std::int16_t>(little(bytes, offset, 2));
}

// Headers may state sizes upside down (a DIB from the top, a metafile with a flipped axis).
int pixels(std::int64_t extent) {
  return static_cast<int>(std::min<std::int64_t>(std::llabs(extent), std::numeric_limits<int>::max()));
}

// The signature of 8 bytes, then IHDR: length, type, width, height.
PixelSize sizeOfPng(Bytes picture) {
  constexpr std::size_t kWidth = 16, kHeight = 20;
  if (!holds(picture, kWidth, 8)) return {};
  return {pixels(big(picture, kWidth, 4)), pixels(big(picture, kHeight, 4))};
}

// Segments follow SOI: 0xFF, marker, length (which counts itself), body. The body of SOF0 to SOF3 is precision, height,
// width.
PixelSize sizeOfJpeg(Bytes picture) {
  constexpr std::uint8_t kMarker = 0xFF, kSoi = 0xD8, kSof0 = 0xC0, kSof3 = 0xC3;
  constexpr std::size_t kMarkerSize = 2, kLengthSize = 2, kHeight = 3, kWidth = 5;
  if (picture.size() < 3 || at(picture, 0) != kMarker || at(picture, 1) != kSoi || at(picture, 2) != kMarker) {
    throw xlerror("invalid jpg file");
  }
  for (std::size_t offset = kMarkerSize; holds(picture, offset, kMarkerSize + kLengthSize);) {
    const std::uint8_t marker = at(picture, offset + 1);
    if (at(picture, offset) == kMarker && marker == kMarker) {  // a fill byte
      ++offset;
      continue;
    }
    offset += kMarkerSize;
    if (at(picture, offset - kMarkerSize) == kMarker && marker >= kSof0 && marker <= kSof3) {
      if (!holds(picture, offset, kWidth + 2)) return {};
      return {pixels(big(picture, offset + kWidth, 2)), pixels(big(picture, offset + kHeight, 2))};
    }
    const std::size_t length = big(picture, offset, kLengthSize);
    if (length < kLengthSize) return {};
    offset += length;
  }
  return {};
}

// BITMAPCOREHEADER has 16-bit sizes, all later headers begin like BITMAPINFOHEADER.
PixelSize sizeOfBitmap(Bytes picture) {
  constexpr std::uint32_t kCoreHeader = 12;
  if (hasBitmapFileHeader(picture)) picture = picture.subspan(std::min(kBitmapFileHeaderSize, picture.size()));
  if (holds(picture, 0, 8) && little(picture, 0, 4) == kCoreHeader) {
    return {pixels(little(picture, 4, 2)), pixels(little(picture, 6, 2))};
  }
  if (!holds(picture, 0, 12)) return {};
  return {pixels(littleSigned32(picture, 4)), pixels(littleSigned32(picture, 8))};
}

// META_PLACEABLE: key, handle, left, top, right, bottom, units per inch.
PixelSize sizeOfWmf(Bytes picture) {
  constexpr std::size_t kLeft = 6, kTop = 8, kRight = 10, kBottom = 12, kInch = 14;
  if (!holds(picture, kInch, 2)) return {};
  const std::int64_t unitsPerInch = little(picture, kInch, 2);
  if (unitsPerInch == 0) return {};
  const auto extent = [&](std::size_t from, std::size_t to) {
    return pixels((littleSigned16(picture, to) - littleSigned16(picture, from)) * kPixelsPerInch / unitsPerInch);
  };
  return {extent(kLeft, kRight), extent(kTop, kBottom)};
}

// EMR_HEADER: type, size, then the bounds as left, top, right, bottom; right and bottom belong to the picture.
PixelSize sizeOfEmf(Bytes picture) {
  constexpr std::size_t kLeft = 8, kTop = 12, kRight = 16, kBottom = 20;
  if (!holds(picture, kLeft, 16)) return {};
  const auto extent = [&](std::size_t from, std::size_t to) {
    return pixels(std::max<std::int64_t>(littleSigned32(picture, to) - littleSigned32(picture, from) + 1, 0));
  };
  return {extent(kLeft, kRight), extent(kTop, kBottom)};
}

bool isHeaderSizeOfDib(std::uint8_t first) {
  constexpr std::uint8_t kSizes[] = {12, 64, 40, 108, 124};  // core, OS/2 2.x, info, version 4, version 5
  return std::find(std::begin(kSizes), std::end(kSizes), first) != std::end(kSizes);
}

}  // namespace

bool hasBitmapFileHeader(Bytes picture) {
  return at(picture, 0) == 'B' && at(picture, 1) == 'M';
}

PictureType pictureTypeOf(Bytes picture) {
  const auto startsWith = [&](std::initializer_list<std::uint8_t> signature) {
    std::size_t offset = 0;
    return std::all_of(signature.begin(), signature.end(), [&](std::uint8_t b) { return b == at(picture, offset++); });
  };
  if (picture.size() > kTooShort) {
    if (startsWith({0x89, 'P', 'N', 'G'})) return PictureType::png;
    if (startsWith({0xFF, 0xD8, 0xFF})) return PictureType::jpeg;
    if (startsWith({0xD7, 0xCD, 0xC6, 0x9A})) return PictureType::wmf;
    if (hasBitmapFileHeader(picture) || isHeaderSizeOfDib(at(picture, 0))) return PictureType::dib;
    if (startsWith({0x01, 0x00})) return PictureType::emf;
  }
  throw xlerror("unknown picture format");
}

PixelSize pixelSizeOf(PictureType type, Bytes picture) {
  switch (type) {
    case PictureType::png:
      return sizeOfPng(picture);
    case PictureType::jpeg:
      return sizeOfJpeg(picture);
    case PictureType::dib:
      return sizeOfBitmap(picture);
    case PictureType::wmf:
      return sizeOfWmf(picture);
    case PictureType::emf:
      return sizeOfEmf(picture);
    default:
      return {};
  }
}

}  // namespace rubrica
