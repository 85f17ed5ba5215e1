// What the first bytes of a picture file tell: its kind, and its size in pixels. Both file forms read pictures through
// these functions when one is added to a book or placed on a sheet. Free functions without state.
#pragma once

#include <cstddef>
#include <span>

#include "engine/enums.h"

namespace rubrica {

// Pixels; 0 by 0 where the header ends too early or states none. Never negative.
struct PixelSize {
  int width = 0;
  int height = 0;
  bool operator==(const PixelSize&) const = default;
};

// A bitmap file is this header and a DIB behind it; a DIB on its own begins with the size of its header.
inline constexpr std::size_t kBitmapFileHeaderSize = 14;
bool hasBitmapFileHeader(std::span<const std::byte> picture);

// The kind by the first bytes: png, jpeg, wmf (with a placeable header), dib (with or without a bitmap file header) or
// emf. Throws xlerror "unknown picture format" for anything else, and for 4 bytes or fewer.
PictureType pictureTypeOf(std::span<const std::byte> picture);

// The size by the header of a picture of the kind that pictureTypeOf answers; 0 by 0 for the other kinds. Metafiles
// are measured at 96 pixels an inch. Throws xlerror "invalid jpg file" for a JPEG without its first marker.
PixelSize pixelSizeOf(PictureType type, std::span<const std::byte> picture);

}  // namespace rubrica
