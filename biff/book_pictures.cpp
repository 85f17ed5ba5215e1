// Pictures of an .xls book, and the ids of the shapes on all its sheets.
#include "biff/book_impl.h"
#include "platform/input_file.h"

namespace rubrica {

int BookImplT::pictureSize() {
  _state.setOk();
  return static_cast<int>(_drawings.pictureCount());
}

PictureType BookImplT::getPicture(int index, const void** data, std::size_t* size) {
  return guarded(_state, PictureType::notFound, [&] {
    officeart::BlipContent* picture = index < 0 ? nullptr : _drawings.pictureAt(static_cast<std::size_t>(index));
    if (picture == nullptr) throw xlerror("index is out of range");
    if (data != nullptr && size != nullptr) {
      const auto bytes = picture->file();
      *data = bytes.data();
      *size = bytes.size();
    }
    return picture->pictureType;
  });
}

int BookImplT::addPicture(Text filename) {
  return guarded(_state, -1, [&] {
    if (filename == nullptr) throw xlerror("file name can't be 0");
    const auto bytes = platform::readWholeFile(filename);
    if (!bytes) throw xlerror("can't open file");
    if (bytes->empty()) throw xlerror("picture is empty");
    return changeDrawings().addPicture(*bytes);
  });
}

int BookImplT::addPicture2(const void* data, std::size_t size) {
  return guarded(_state, -1, [&] {
    return changeDrawings().addPicture({static_cast<const std::byte*>(data), data == nullptr ? 0 : size});
  });
}

int BookImplT::addPictureAsLink(Text, bool) {
  return guarded(_state, -1, [&]() -> int { throw xlerror(kNotForXls); });
}

officeart::DrawingGroup& BookImplT::changeDrawings() {
  if (_shapesAreKnown) return _drawings;
  _shapesAreKnown = true;
  for (const auto& sheet : _sheets) {
    const officeart::Drawing& shapes = sheet->shapes();
    shapes.forEachShapeId([&](std::uint32_t shapeId) { _drawings.claim(shapes.id(), shapeId); });
  }
  return _drawings;
}

void BookImplT::forgetDrawing(const SheetImplT& sheet) {
  const officeart::Drawing& shapes = sheet.shapes();
  if (!shapes.hasShapes()) return;
  officeart::DrawingGroup& drawings = changeDrawings();
  drawings.countDrawing(-1, -shapes.shapeCount());
  for (std::size_t i = 0; i < shapes.pictureCount(); ++i) drawings.addUses(shapes.picture(i).id, -1);
}

}  // namespace rubrica
