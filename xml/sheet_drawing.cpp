// Pictures and comments of an .xlsx sheet.
#include <algorithm>
#include <cmath>

#include "engine/address.h"
#include "engine/picture_header.h"
#include "xml/book_impl.h"
#include "xml/comments.h"
#include "xml/drawing.h"
#include "xml/package_links.h"
#include "xml/package_names.h"
#include "xml/picture_anchors.h"
#include "xml/sheet_impl.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

constexpr char kPictureIdOutOfRange[] = "pictureId is out of range";
constexpr double kPixelsPerPoint = 96.0 / 72;
// Far past any sheet; keeps the arithmetic of places and sizes within an int.
constexpr int kMostPixels = 1 << 26;

int pixelsOf(std::int64_t units) {
  return static_cast<int>(std::clamp<std::int64_t>(
      (units + (units < 0 ? -1 : 1) * kDrawingUnitsPerPixel / 2) / kDrawingUnitsPerPixel, -kMostPixels, kMostPixels));
}

int scaled(int pixels, double scale) {
  const double size = std::floor(pixels * scale + 0.5);
  return std::isnan(size) ? 0 : static_cast<int>(std::clamp<double>(size, 0, kMostPixels));
}

// Pictures of a file are measured when they are first asked for.
void measure(BookPicture& picture) {
  if (picture.width != 0 || picture.height != 0 || picture.data == nullptr) return;
  const std::span bytes(reinterpret_cast<const std::byte*>(picture.data), picture.size);
  const PixelSize size = pixelSizeOf(pictureTypeOf(bytes), bytes);
  picture.width = size.width;
  picture.height = size.height;
}

void set(int* target, int value) {
  if (target != nullptr) *target = value;
}

}  // namespace

// The part that a relationship of this sheet means; empty where there is none.
template <class Tag>
std::string XMLSheetImplT<Tag>::linkedPart(std::string_view id) const {
  const std::string own = _book->partNameOf(*this);
  const Relationships* links = _book->relationshipsOf(own);
  const std::string target = links == nullptr ? std::string() : links->findById(id);
  return target.empty() ? target : targetKey(partDirectory(own), target);
}

template <class Tag>
std::string XMLSheetImplT<Tag>::drawingPart() const {
  const auto* element = this->find_drawing();
  return element == nullptr ? std::string() : linkedPart(element->get_r_id());
}

template <class Tag>
Drawing<Tag>* XMLSheetImplT<Tag>::findDrawing() const {
  return _book->parts().template findAs<Drawing<Tag>>(drawingPart());
}

template <class Tag>
Comments* XMLSheetImplT<Tag>::findComments() const {
  const std::string own = _book->partNameOf(*this);
  Relationships* links = _book->relationshipsOf(own);
  if (links == nullptr) return nullptr;
  std::string target = links->findByType(relationship_type::kComments);
  if (target.empty()) target = links->findByType(relationship_type::kStrictComments);
  if (target.empty()) return nullptr;
  return _book->parts().template findAs<Comments>(targetKey(partDirectory(own), target));
}

template <class Tag>
std::string XMLSheetImplT<Tag>::needDrawing() {
  constexpr std::string_view kPrefix = "/xl/drawings/drawing";
  if (this->isset_drawing()) {
    if (findDrawing() == nullptr) throw xlerror("can't get access to existing drawing object");
    return drawingPart();
  }
  ContentTypes& types = _book->needContentTypes();
  std::string name = _book->parts().freeName(kPrefix, 1, ".xml");
  types.addOverride(name, content_type::kDrawing);
  _book->parts().add(name, std::make_unique<Drawing<Tag>>());
  const std::string target = ".." + name.substr(part_name::kBaseDirectory.size());
  const std::string id = _book->needRelationshipsOf(_book->partNameOf(*this)).add(target, relationship_type::kDrawing);
  this->get_drawing().set_r_id(id);
  return name;
}

template <class Tag>
int XMLSheetImplT<Tag>::rowPixels(int row) {
  return static_cast<int>(std::clamp<double>(std::floor(rowPoints(row) * kPixelsPerPoint + 0.5), 0, kMostPixels));
}

// Where the far corner lies, this many pixels from the top left corner of a cell.
template <class Tag>
AnchorCorner XMLSheetImplT<Tag>::cornerAt(int row, int col, int right, int down) {
  for (int width = colPixels(col); right >= width && col < kMaxCol; width = colPixels(col)) {
    right -= width;
    ++col;
  }
  for (int height = rowPixels(row); down >= height && row < kMaxRow; height = rowPixels(row)) {
    down -= height;
    ++row;
  }
  return {col, right * kDrawingUnitsPerPixel, row, down * kDrawingUnitsPerPixel};
}

template <class Tag>
void XMLSheetImplT<Tag>::setPicture(int row, int col, int pictureId, double scale, int offset_x, int offset_y,
                                    PicturePosition pos) {
  guarded(_book->lastMessage(), [&] {
    BookPicture& picture = pictureOf(pictureId);
    measure(picture);
    placeOnSheet(row, col, picture, scaled(picture.width, scale), scaled(picture.height, scale), offset_x, offset_y,
                 pos);
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setPicture2(int row, int col, int pictureId, int width, int height, int offset_x, int offset_y,
                                     PicturePosition pos) {
  guarded(_book->lastMessage(), [&] {
    BookPicture& picture = pictureOf(pictureId);
    if (width == -1 || height == -1) measure(picture);
    placeOnSheet(row, col, picture, width == -1 ? picture.width : width, height == -1 ? picture.height : height,
                 offset_x, offset_y, pos);
  });
}

template <class Tag>
BookPicture& XMLSheetImplT<Tag>::pictureOf(int pictureId) {
  auto& pictures = _book->pictures();
  if (pictureId < 0 || static_cast<std::size_t>(pictureId) >= pictures.size()) throw xlerror(kPictureIdOutOfRange);
  return pictures[static_cast<std::size_t>(pictureId)];
}

template <class Tag>
void XMLSheetImplT<Tag>::placeOnSheet(int row, int col, const BookPicture& picture, int width, int height, int offset_x,
                                      int offset_y, PicturePosition position) {
  checkCell(row, col);
  const std::string name = needDrawing();
  Relationships& links = _book->needRelationshipsOf(name);
  const auto linkTo = [&](const std::string& target, bool external) {
    const std::string known = links.findByTarget(target);
    return known.empty() ? links.add(target, relationship_type::kImage, external) : known;
  };
  PlacedPicture placed;
  placed.position = position;
  if (!picture.partName.empty()) {
    placed.embedId = linkTo(".." + picture.partName.substr(part_name::kBaseDirectory.size()), false);
  }
  if (!picture.link.empty()) placed.linkId = linkTo(picture.link, true);
  const int cellWidth = colPixels(col), cellHeight = rowPixels(row);
  const bool tooFarRight = offset_x > cellWidth, tooFarDown = offset_y > cellHeight;
  const int right = std::clamp(offset_x, 0, cellWidth), down = std::clamp(offset_y, 0, cellHeight);
  width = std::clamp(width, 0, kMostPixels);
  height = std::clamp(height, 0, kMostPixels);
  placed.from = {col, right * kDrawingUnitsPerPixel, row, down * kDrawingUnitsPerPixel};
  placed.to = cornerAt(row, col, right + width, down + height);
  placed.width = width * kDrawingUnitsPerPixel;
  placed.height = height * kDrawingUnitsPerPixel;
  Drawing<Tag>& drawing = *findDrawing();
  placePicture(static_cast<typename Flavour<Tag>::DrawingRoot&>(drawing), placed, drawing.takeObjectId());
  if (tooFarRight && tooFarDown) {
    _book->lastMessage().setMessage("warning: offset_x and offset_y exceed cell's size");
  } else if (tooFarRight) {
    _book->lastMessage().setMessage("warning: offset_x exceed cell's width");
  } else if (tooFarDown) {
    _book->lastMessage().setMessage("warning: offset_y exceed cell's height");
  }
}

template <class Tag>
int XMLSheetImplT<Tag>::pictureSize() {
  return guarded(_book->lastMessage(), 0, [&] {
    const auto* drawing = findDrawing();
    using DrawingRoot = typename Flavour<Tag>::DrawingRoot;
    return drawing == nullptr ? 0 : static_cast<int>(pictureCount(static_cast<const DrawingRoot&>(*drawing)));
  });
}

// The book's number of the picture that a drawing's relationships lead to, -1 for none.
template <class Tag>
int XMLSheetImplT<Tag>::pictureIdOf(const PlacedPicture& placed, const std::string& drawing) const {
  const Relationships* links = _book->relationshipsOf(drawing);
  if (links == nullptr) throw xlerror("can't find drawing relationships");
  const std::string target = links->findById(placed.embedId);
  const std::string part = target.empty() ? target : targetKey(partDirectory(drawing), target);
  const std::string link = links->findById(placed.linkId);
  const auto& pictures = _book->pictures();
  const auto found = std::find_if(pictures.begin(), pictures.end(), [&](const BookPicture& picture) {
    return part.empty() ? !link.empty() && picture.link == link : samePartName(picture.partName, part);
  });
  return found == pictures.end() ? -1 : static_cast<int>(found - pictures.begin());
}

template <class Tag>
int XMLSheetImplT<Tag>::getPicture(int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width,
                                   int* height, int* offset_x, int* offset_y) {
  return guarded(_book->lastMessage(), -1, [&] {
    const auto* drawing = findDrawing();
    if (drawing == nullptr) throw xlerror("can't find drawing object");
    using DrawingRoot = typename Flavour<Tag>::DrawingRoot;
    const auto placed = index < 0
                            ? std::nullopt
                            : pictureAt(static_cast<const DrawingRoot&>(*drawing), static_cast<std::size_t>(index));
    const int id = placed ? pictureIdOf(*placed, drawingPart()) : -1;
    if (id < 0) throw xlerror("picture not found");
    const AnchorCorner& from = placed->from;
    checkCell(from.row, from.col);
    const int right = pixelsOf(from.colOff), down = pixelsOf(from.rowOff);
    int wide = pixelsOf(placed->width), high = pixelsOf(placed->height);
    AnchorCorner to;
    if (placed->to) {
      to = *placed->to;
      wide = pixelsOf(to.colOff) - right;
      high = pixelsOf(to.rowOff) - down;
      for (int col = from.col; col < std::min(to.col, kMaxCol + 1); ++col) wide += colPixels(col);
      for (int row = from.row; row < std::min(to.row, kMaxRow + 1); ++row) high += rowPixels(row);
    } else {
      to = cornerAt(from.row, from.col, right + wide, down + high);
    }
    set(rowTop, from.row);
    set(colLeft, from.col);
    set(rowBottom, to.row);
    set(colRight, to.col);
    set(width, wide);
    set(height, high);
    set(offset_x, right);
    set(offset_y, down);
    return id;
  });
}

template <class Tag>
typename XMLSheetImplT<Tag>::Text XMLSheetImplT<Tag>::readComment(int row, int col) {
  return guarded(_book->lastMessage(), Text{}, [&]() -> Text {
    const Comments* comments = findComments();
    if (comments == nullptr) {  // the usual case, asked for cell by cell: an exception each would be slow
      _book->lastMessage().setMessage("error in readComment");
      return nullptr;
    }
    const auto text = comments->text(row, col);
    if (!text) return nullptr;
    fromXstring(*text, _text);
    return _text.c_str();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::writeComment(int, int, Text, Text, int, int) {
  _book->lastMessage().setMessage("not supported");
}

template <class Tag>
bool XMLSheetImplT<Tag>::removeComment(int, int) {
  _book->lastMessage().setMessage("not supported");
  return false;
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
