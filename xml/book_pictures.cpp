// The pictures of an OOXML book: the image parts of the package, and pictures that are only linked.
#include "engine/picture_header.h"
#include "platform/input_file.h"
#include "platform/text.h"
#include "xml/book_impl.h"
#include "xml/sheet_impl.h"

namespace rubrica {
namespace {

constexpr std::string_view kMediaPrefix = "/xl/media/image";
constexpr std::string_view kImageType = "image";
constexpr std::string_view kFilePrefix = "file:///";

struct PictureKind {
  PictureType type;
  std::string_view extension;
  std::string_view contentType;
};
constexpr PictureKind kKinds[] = {{PictureType::png, "png", "image/png"},   {PictureType::jpeg, "jpg", "image/jpeg"},
                                  {PictureType::gif, "gif", "image/gif"},   {PictureType::wmf, "wmf", "image/x-wmf"},
                                  {PictureType::emf, "emf", "image/x-emf"}, {PictureType::dib, "bmp", "image/bmp"}};

const PictureKind& kindOf(std::span<const std::byte> bytes) {
  const PictureType type = pictureTypeOf(bytes);
  for (const PictureKind& kind : kKinds) {
    if (kind.type == type) return kind;
  }
  throw xlerror("unknown picture format");
}

platform::FileBytes readPictureFile(const char16_t* filename) {
  if (filename == nullptr) throw xlerror("file name can't be 0");
  auto bytes = platform::readWholeFile(filename);
  if (!bytes) throw xlerror("can't open file");
  if (bytes->empty()) throw xlerror("file is empty");
  return std::move(*bytes);
}

}  // namespace

template <class Tag>
void XMLBookImplT<Tag>::notePicture(const XFile& part, const std::string& partName, std::string_view type) {
  const auto* image = dynamic_cast<const BinaryFile*>(&part);
  if (image == nullptr || !type.starts_with(kImageType)) return;
  _pictures.push_back({.data = image->data(),
                       .size = image->size(),
                       .partName = partName,
                       .extension = std::string(image->pictureType()),
                       .width = 0,
                       .height = 0,
                       .link = {}});
}

template <class Tag>
int XMLBookImplT<Tag>::pictureSize() {
  return static_cast<int>(_pictures.size());
}

template <class Tag>
PictureType XMLBookImplT<Tag>::getPicture(int index, const void** data, std::size_t* size) {
  return guarded(_last, PictureType::notFound, [&] {
    if (index < 0 || index >= pictureSize()) throw xlerror("index is out of range");
    const BookPicture& picture = _pictures[static_cast<std::size_t>(index)];
    if (data != nullptr) *data = picture.data;
    if (size != nullptr) *size = picture.size;
    for (const PictureKind& kind : kKinds) {
      if (kind.extension == picture.extension) return kind.type;
    }
    return PictureType::notFound;
  });
}

template <class Tag>
int XMLBookImplT<Tag>::addPicture(Text filename) {
  return guarded(_last, -1, [&] { return addPictureBytes(readPictureFile(filename)); });
}

template <class Tag>
int XMLBookImplT<Tag>::addPicture2(const void* data, std::size_t size) {
  return guarded(_last, -1, [&] {
    return addPictureBytes({static_cast<const std::byte*>(data), data == nullptr ? 0 : size});
  });
}

template <class Tag>
int XMLBookImplT<Tag>::addPictureBytes(std::span<const std::byte> bytes) {
  const PictureKind& kind = kindOf(bytes);
  const PixelSize pixels = pixelSizeOf(kind.type, bytes);
  ContentTypes& types = needContentTypes();
  std::string suffix = ".";
  suffix.append(kind.extension);
  // Pictures of other extensions have numbers of their own, so the search starts at the list's end.
  const std::string name = _parts.freeName(kMediaPrefix, static_cast<unsigned>(_pictures.size()) + 1, suffix);
  types.addDefault(kind.extension, kind.contentType);
  const BinaryFile& part = _parts.add(name, std::make_unique<BinaryFile>(bytes.data(), bytes.size()));
  _pictures.push_back({part.data(), part.size(), name, std::string(kind.extension), pixels.width, pixels.height, {}});
  return static_cast<int>(_pictures.size()) - 1;
}

// A linked picture is read for its size; with `insert` it goes into the package too.
template <class Tag>
int XMLBookImplT<Tag>::addPictureAsLink(Text filename, bool insert) {
  return guarded(_last, -1, [&] {
    const platform::FileBytes bytes = readPictureFile(filename);
    if (insert) {
      const int id = addPictureBytes(bytes);
      _pictures[static_cast<std::size_t>(id)].link = std::string(kFilePrefix) + platform::utf8FromUtf16(filename);
      return id;
    }
    const PictureKind& kind = kindOf(bytes);
    const PixelSize pixels = pixelSizeOf(kind.type, bytes);
    BookPicture picture;
    picture.link = std::string(kFilePrefix) + platform::utf8FromUtf16(filename);
    picture.extension = kind.extension;
    picture.width = pixels.width;
    picture.height = pixels.height;
    _pictures.push_back(std::move(picture));
    return static_cast<int>(_pictures.size()) - 1;
  });
}

template class XMLBookImplT<excelNormal_tag>;
template class XMLBookImplT<excelStrict_tag>;

}  // namespace rubrica
