#include "officeart/picture_anchor.h"

namespace rubrica::officeart {
namespace {

constexpr int kColumnParts = 1024, kRowParts = 256;
constexpr int kLastColumn = 255, kLastRow = 65535;
constexpr std::uint16_t kToCellEndParts = 32767;

std::uint16_t partsOf(std::int64_t pixels, int linePixels, int parts) {
  if (linePixels <= 0 || pixels <= 0) return 0;
  return static_cast<std::uint16_t>(std::min<std::int64_t>(pixels * parts / linePixels, parts));
}

// Rounded up, as parts are cut when they are made.
int pixelsOf(std::uint16_t part, int linePixels, int parts) {
  return (std::min<int>(part, parts) * linePixels + parts - 1) / parts;
}

struct AxisEnds {
  std::uint16_t firstParts = 0, last = 0, lastParts = 0;
};

template <class PixelsAt>
AxisEnds endsOf(int first, int from, int offset, int extent, int limit, int parts, PixelsAt pixelsAt) {
  AxisEnds ends;
  ends.firstParts = partsOf(offset, pixelsAt(first), parts);
  if (extent == PixelBox::kToCellEnd) {
    ends.last = static_cast<std::uint16_t>(from);
    ends.lastParts = kToCellEndParts;
    return ends;
  }
  std::int64_t left = std::int64_t{offset} + extent;
  int line = from, pixels = pixelsAt(line);
  for (; left >= pixels && line < limit; pixels = pixelsAt(++line)) left -= pixels;
  ends.last = static_cast<std::uint16_t>(line);
  ends.lastParts = partsOf(left, pixels, parts);
  return ends;
}

template <class PixelsAt>
int extentOf(int first, int last, int offset, std::uint16_t lastParts, int parts, PixelsAt pixelsAt) {
  std::int64_t extent = pixelsOf(lastParts, pixelsAt(last), parts) - std::int64_t{offset};
  for (int line = first; line < last; ++line) extent += pixelsAt(line);
  return static_cast<int>(std::max<std::int64_t>(extent, 0));
}

}  // namespace

CellAnchor anchorOf(const PixelBox& box, const CellGrid& grid) {
  const int colFrom = box.colLast < 0 ? box.col : box.colLast, rowFrom = box.rowLast < 0 ? box.row : box.rowLast;
  const AxisEnds cols = endsOf(box.col, colFrom, box.offsetX, box.width, kLastColumn, kColumnParts,
                               [&](int col) { return grid.columnPixels(col); });
  const AxisEnds rows = endsOf(box.row, rowFrom, box.offsetY, box.height, kLastRow, kRowParts,
                               [&](int row) { return grid.rowPixels(row); });
  CellAnchor anchor;
  anchor.colL = static_cast<std::uint16_t>(box.col);
  anchor.dxL = cols.firstParts;
  anchor.colR = cols.last;
  anchor.dxR = cols.lastParts;
  anchor.rwT = static_cast<std::uint16_t>(box.row);
  anchor.dyT = rows.firstParts;
  anchor.rwB = rows.last;
  anchor.dyB = rows.lastParts;
  return anchor;
}

PixelBox boxOf(const CellAnchor& anchor, const CellGrid& grid) {
  const auto columnPixels = [&](int col) { return grid.columnPixels(std::min(col, kLastColumn)); };
  const auto rowPixels = [&](int row) { return grid.rowPixels(row); };
  PixelBox box;
  box.col = anchor.colL;
  box.row = anchor.rwT;
  box.colLast = anchor.colR;
  box.rowLast = anchor.rwB;
  box.offsetX = pixelsOf(anchor.dxL, columnPixels(anchor.colL), kColumnParts);
  box.offsetY = pixelsOf(anchor.dyT, rowPixels(anchor.rwT), kRowParts);
  box.width = extentOf(anchor.colL, std::min<int>(anchor.colR, kLastColumn), box.offsetX, anchor.dxR, kColumnParts,
                       columnPixels);
  box.height = extentOf(anchor.rwT, anchor.rwB, box.offsetY, anchor.dyB, kRowParts, rowPixels);
  return box;
}

}  // namespace rubrica::officeart
