// Pictures of an .xls sheet, and the drawing that they and the comments are shapes of.
#include <cmath>
#include <limits>

#include "biff/book_impl.h"
#include "biff/sheet_grid.h"
#include "biff/sheet_impl.h"
#include "engine/column_widths.h"

namespace rubrica {
namespace {

constexpr int kTwipsPerPixel = 15;

int scaled(int pixels, double scale) {
  const double size = pixels * scale;
  if (!(size > 0)) return 0;
  return static_cast<int>(std::min<double>(size, std::numeric_limits<int>::max()));
}

// Cuts an offset to the cell; true where that changed it.
bool cutOffset(int& offset, int pixels) {
  const bool exceeds = offset > pixels;
  offset = std::clamp(offset, 0, pixels);
  return exceeds;
}

std::uint16_t anchorFlags(PicturePosition position) {
  switch (position) {
    case PicturePosition::onlyMove:
      return officeart::CellAnchor::kNoSize;
    case PicturePosition::absolute:
      return officeart::CellAnchor::kNoMove | officeart::CellAnchor::kNoSize;
    default:
      return 0;
  }
}

void give(int* out, int value) {
  if (out != nullptr) *out = value;
}

}  // namespace

int SheetImplT::columnPixels(int col) {
  const ColumnWidths widths(_book->digitWidth());
  if (const ColInfo* info = _columns.find(col); info != nullptr) {
    return (info->grbit & ColInfo::kHidden) != 0 ? 0 : widths.pixelsOfStored(info->coldx);
  }
  return widths.pixelsOfStored(defaultStoredWidth());
}

int SheetImplT::rowPixels(int row) {
  const RowRecord* entry = _rows.find(row);
  if (entry == nullptr) return _defaultRowHeight.miyRw / kTwipsPerPixel;
  return (entry->flags & RowRecord::kHidden) != 0 ? 0 : entry->miyRw / kTwipsPerPixel;
}

std::uint32_t SheetImplT::newShape() {
  officeart::DrawingGroup& group = _book->changeDrawings();
  officeart::Drawing& drawing = _drawing.change();
  if (!drawing.hasShapes()) {
    const std::uint16_t drawingId = group.newDrawing();
    drawing.begin(drawingId, group.newShape(drawingId));
    group.countDrawing(1, 0);
  }
  return group.newShape(drawing.id());
}

void SheetImplT::ownDrawing() {
  if (!shapes().hasShapes()) return;
  officeart::DrawingGroup& group = _book->changeDrawings();
  const std::uint16_t drawingId = group.newDrawing();
  boost::unordered_flat_map<std::uint32_t, std::uint32_t> ids;
  shapes().forEachShapeId([&](std::uint32_t shapeId) {
    if (!ids.contains(shapeId)) ids[shapeId] = group.newShape(drawingId);
  });
  _drawing.change().renumber(drawingId, ids);
  group.countDrawing(1, 0);
  for (std::size_t i = 0; i < shapes().pictureCount(); ++i) group.addUses(shapes().picture(i).id, 1);
}

int SheetImplT::pictureSize() {
  state().setOk();
  return static_cast<int>(shapes().pictureCount());
}

int SheetImplT::getPicture(int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height,
                           int* offset_x, int* offset_y) {
  return guarded(state(), -1, [&] {
    if (index < 0 || static_cast<std::size_t>(index) >= shapes().pictureCount()) throw xlerror("picture not found");
    const officeart::PlacedPicture picture = shapes().picture(static_cast<std::size_t>(index));
    const officeart::PixelBox box = officeart::boxOf(picture.anchor, Grid(*this));
    give(rowTop, box.row);
    give(colLeft, box.col);
    give(rowBottom, box.rowLast);
    give(colRight, box.colLast);
    give(width, box.width);
    give(height, box.height);
    give(offset_x, box.offsetX);
    give(offset_y, box.offsetY);
    return picture.id;
  });
}

void SheetImplT::setPicture(int row, int col, int pictureId, double scale, int offset_x, int offset_y,
                            PicturePosition pos) {
  PixelSize size;
  const bool found = guarded(state(), false, [&] {
    officeart::BlipContent* picture = _book->drawings().pictureOf(pictureId);
    if (picture == nullptr) throw xlerror("pictureId is out of range");
    size = picture->pixelSize();
    return true;
  });
  if (found)
    setPicture2(row, col, pictureId, scaled(size.width, scale), scaled(size.height, scale), offset_x, offset_y, pos);
}

void SheetImplT::setPicture2(int row, int col, int pictureId, int width, int height, int offset_x, int offset_y,
                             PicturePosition pos) {
  guarded(state(), [&] {
    checkCell(row, col);
    if (_book->drawings().pictureOf(pictureId) == nullptr) throw xlerror("pictureId is out of range");
    const bool cutY = cutOffset(offset_y, rowPixels(row)), cutX = cutOffset(offset_x, columnPixels(col));
    officeart::CellAnchor anchor = officeart::anchorOf({row, col, width, height, offset_x, offset_y}, Grid(*this));
    anchor.flags = anchorFlags(pos);
    const std::uint32_t shapeId = newShape();
    _drawing.change().addPicture(shapeId, anchor, pictureId);
    _book->changeDrawings().addUses(pictureId, 1);
    if (cutX && cutY) {
      state().setMessage("warning: offset_x and offset_y exceed cell's size");
    } else if (cutY) {
      state().setMessage("warning: offset_y exceed cell's height");
    } else if (cutX) {
      state().setMessage("warning: offset_x exceed cell's width");
    }
  });
}

bool SheetImplT::removePictureByIndex(int index) {
  return guarded(state(), false, [&] {
    if (index < 0 || static_cast<std::size_t>(index) >= shapes().pictureCount()) throw xlerror("picture not found");
    const int pictureId = shapes().picture(static_cast<std::size_t>(index)).id;
    _drawing.change().removePicture(static_cast<std::size_t>(index));
    officeart::DrawingGroup& group = _book->changeDrawings();
    group.addUses(pictureId, -1);
    group.countDrawing(0, -1);
    return true;
  });
}

}  // namespace rubrica
