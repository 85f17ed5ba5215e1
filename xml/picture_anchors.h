// The pictures of a drawing part: placing one with its anchor, reading where they stand, and moving the anchors with
// the cells. Functions over the bound root of either flavour (c_wsDr), which the Drawing part of a sheet holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "engine/enums.h"
#include "engine/line_move.h"

namespace rubrica {

// Drawing units in a pixel at 96 dots an inch.
inline constexpr std::int64_t kDrawingUnitsPerPixel = 9525;

// A place on the grid: a cell and an offset from its top left corner in drawing units.
struct AnchorCorner {
  int col = 0;
  std::int64_t colOff = 0;
  int row = 0;
  std::int64_t rowOff = 0;
  bool operator==(const AnchorCorner&) const = default;
};

// A picture on a sheet. One that is anchored at both corners has `to`, one that is anchored at its top left corner has
// width and height (drawing units) instead; one that is anchored at the page has them too and stands in no cell.
struct PlacedPicture {
  AnchorCorner from;
  std::optional<AnchorCorner> to;
  std::int64_t width = 0, height = 0;
  PicturePosition position = PicturePosition::moveAndSize;
  std::string embedId, linkId;  // relationships of the drawing; either may be empty
};

// One more than any id that an object on top of the drawing has: ids have to differ within a drawing.
template <class Root>
std::uint32_t freeObjectId(const Root& root);

// Appends a picture with this id that is anchored at both corners. Width and height are those of the picture on the
// sheet.
template <class Root>
void placePicture(Root& root, const PlacedPicture& picture, std::uint32_t id);

// Anchors that hold a picture; shapes, charts and groups don't count.
template <class Root>
std::size_t pictureCount(const Root& root);
template <class Root>
std::optional<PlacedPicture> pictureAt(const Root& root, std::size_t index);

// Moves the anchors of all objects with their cells. An anchor that keeps its size keeps its extent of cells; one that
// is fixed to the page stays.
template <class Root>
void moveAnchors(Root& root, const LineMove& move);

// "12700" or a measure with a unit such as "1pt", in drawing units; nothing for other text.
std::optional<std::int64_t> drawingUnits(const std::string& text);

}  // namespace rubrica
