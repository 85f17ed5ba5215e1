#include "officeart/blip.h"

#include <limits>

#include "officeart/deflate.h"
#include "officeart/md4.h"

namespace rubrica::officeart {
namespace {

constexpr std::int64_t kEmuPerInch = 914400, kEmuPerPixel = 9525, kEmuPerHundredthMillimetre = 360;

// META_PLACEABLE in front of a WMF: key, handle, bounds, units per inch, reserved, checksum.
struct PlaceableHeader {
  std::uint32_t key = 0x9AC6CDD7;
  std::uint16_t handle = 0;
  std::int16_t left = 0, top = 0, right = 0, bottom = 0;
  std::uint16_t inch = 0;
  std::uint32_t reserved = 0;
  std::uint16_t checksum = 0;
  static void visit(auto& self, auto&& field) {
    field(self.key);
    field(self.handle);
    field(self.left);
    field(self.top);
    field(self.right);
    field(self.bottom);
    field(self.inch);
    field(self.reserved);
    field(self.checksum);
  }
  static constexpr std::size_t kSize = 22;
};

template <class Fields>
void takeFields(Fields& fields, ByteView bytes) {
  RecordReader reader(Slice::copyOf(bytes));
  Fields::visit(fields, [&](auto& field) { reader.take(field); });
}

std::int32_t emu(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, 0, std::numeric_limits<std::int32_t>::max()));
}

// The header by which a WMF of the store becomes a file again; its checksum is over the words before it.
std::vector<std::byte> placeable(const MetafileHeader& metafile) {
  PlaceableHeader header;
  const auto word = [](std::int32_t value) { return static_cast<std::int16_t>(std::clamp(value, -32768, 32767)); };
  header.left = word(metafile.left);
  header.top = word(metafile.top);
  header.right = word(metafile.right);
  header.bottom = word(metafile.bottom);
  const std::int64_t units = std::int64_t{metafile.right} - metafile.left;
  const std::int64_t perInch =
      metafile.width > 0 ? (units * kEmuPerInch + metafile.width / 2) / metafile.width : kEmuPerInch / kEmuPerPixel;
  header.inch = static_cast<std::uint16_t>(std::clamp<std::int64_t>(perInch, 1, 65535));
  BytesBuilder builder;
  PlaceableHeader::visit(header, [&](const auto& field) { builder.field(field); });
  std::vector<std::byte> bytes = builder.take();
  for (std::size_t i = 0; i + 2 < PlaceableHeader::kSize; i += 2) {
    std::uint16_t part = 0;
    std::memcpy(&part, bytes.data() + i, sizeof(part));
    header.checksum = static_cast<std::uint16_t>(header.checksum ^ part);
  }
  std::memcpy(bytes.data() + PlaceableHeader::kSize - sizeof(header.checksum), &header.checksum,
              sizeof(header.checksum));
  return bytes;
}

bool hasPlaceableHeader(ByteView bytes) {
  PlaceableHeader header;
  const std::uint32_t key = header.key;
  takeFields(header, bytes.first(std::min(bytes.size(), PlaceableHeader::kSize)));
  return bytes.size() >= PlaceableHeader::kSize && header.key == key;
}

// Which class and which entry a picture file gets.
struct KindRule {
  PictureType type;
  std::uint16_t recType;
  std::uint8_t btWin32, btMacOs;
};
constexpr KindRule kKinds[] = {{PictureType::png, type::blipPng, 6, 6},
                               {PictureType::jpeg, type::blipJpeg, 5, 5},
                               {PictureType::dib, type::blipDib, 7, 7},
                               {PictureType::wmf, type::blipWmf, 3, 4},  // the other system's kind is PICT
                               {PictureType::emf, type::blipEmf, 2, 4}};

}  // namespace

void BlipContent::assign(PictureType type, ByteView picture) {
  pictureType = type;
  if (isMetafile()) return assignMetafile(picture);
  // What the store calls a DIB has no file header; one that consists of nothing else stays, as no blip is empty.
  const bool strip = hasBitmapFileHeader(picture) && type == PictureType::dib && picture.size() > kBitmapFileHeaderSize;
  const ByteView stored = strip ? picture.subspan(kBitmapFileHeaderSize) : picture;
  _uid1 = md4(stored);
  _payload = Slice::copyOf(stored);
}

void BlipContent::assignMetafile(ByteView picture) {
  const PixelSize pixels = pixelSizeOf(pictureType, picture);
  if (pictureType == PictureType::wmf && hasPlaceableHeader(picture)) {
    PlaceableHeader header;
    takeFields(header, picture.first(PlaceableHeader::kSize));
    picture = picture.subspan(PlaceableHeader::kSize);
    _metafile.left = header.left;
    _metafile.top = header.top;
    _metafile.right = header.right;
    _metafile.bottom = header.bottom;
    const auto extent = [&](std::int64_t units) {
      return header.inch == 0 ? 0 : emu((units < 0 ? -units : units) * kEmuPerInch / header.inch);
    };
    _metafile.width = extent(std::int64_t{header.right} - header.left);
    _metafile.height = extent(std::int64_t{header.bottom} - header.top);
  } else if (pictureType == PictureType::emf && pixels != PixelSize{}) {
    constexpr std::size_t kBounds = 8, kFrame = 24, kRectangle = 16;  // EMR_HEADER: pixels, then 1/100 mm
    std::int32_t frame[4] = {};
    std::memcpy(&_metafile.left, picture.data() + kBounds, kRectangle);
    if (picture.size() >= kFrame + kRectangle) std::memcpy(frame, picture.data() + kFrame, kRectangle);
    const std::int64_t width = std::int64_t{frame[2]} - frame[0], height = std::int64_t{frame[3]} - frame[1];
    _metafile.width = emu(width > 0 ? width * kEmuPerHundredthMillimetre : pixels.width * kEmuPerPixel);
    _metafile.height = emu(height > 0 ? height * kEmuPerHundredthMillimetre : pixels.height * kEmuPerPixel);
  }
  _uid1 = md4(picture);
  _payload = Slice(deflated(picture));
  _metafile.cbSize = static_cast<std::uint32_t>(picture.size());
  _metafile.cbSave = static_cast<std::uint32_t>(_payload.size());
}

std::vector<std::byte> BlipContent::uncompressed() const {
  if (_metafile.compression != MetafileHeader::kDeflate) return {_payload.view().begin(), _payload.view().end()};
  auto bytes = inflated(_payload.view(), _metafile.cbSize);
  if (!bytes) throw xlerror("OfficeArtBlip: data is corrupted");
  return std::move(*bytes);
}

ByteView BlipContent::file() {
  if (!isMetafile()) return _payload.view();
  if (!_file) {
    std::vector<std::byte> bytes = uncompressed();
    if (pictureType == PictureType::wmf && !hasPlaceableHeader(bytes) && _metafile.right != _metafile.left) {
      std::vector<std::byte> whole = placeable(_metafile);
      whole.insert(whole.end(), bytes.begin(), bytes.end());
      bytes = std::move(whole);
    }
    _file = std::move(bytes);
  }
  return *_file;
}

// A metafile without bounds of its own has the size that the store states for it.
PixelSize BlipContent::pixelSize() {
  const PixelSize stated = pixelSizeOf(pictureType, file());
  if (!isMetafile() || stated != PixelSize{}) return stated;
  const auto pixels = [](std::int32_t extent) { return static_cast<int>(std::max(extent, 0) / kEmuPerPixel); };
  return {pixels(_metafile.width), pixels(_metafile.height)};
}

template <std::uint16_t RecType, unsigned MetafileUids>
void OfficeArtBlip<RecType, MetafileUids>::read(const RecordHeader& header, RecordReader& body) {
  RecordOf<RecType>::read(header, body);
  if (body.left() < prefixSize()) throw xlerror("OfficeArtBlip: data is corrupted");
  if (body.left() == prefixSize()) throw xlerror("OfficeArtBlip: buffer is empty");
  body.take(_uid1);
  if (hasTwoUids()) body.take(_uid2);
  if (isMetafile()) {
    MetafileHeader::visit(_metafile, [&](auto& field) { body.take(field); });
  } else {
    body.take(_tag);
  }
  _payload = body.takeRest();
}

template <std::uint16_t RecType, unsigned MetafileUids>
void OfficeArtBlip<RecType, MetafileUids>::write(DrawingSink& sink) const {
  this->writeHeader(sink);
  sink.field(_uid1);
  if (hasTwoUids()) sink.field(_uid2);
  if (isMetafile()) {
    MetafileHeader::visit(_metafile, [&](const auto& field) { sink.field(field); });
  } else {
    sink.field(_tag);
  }
  sink.put(_payload.view());
}

void OfficeArtBlipJPEG::read(const RecordHeader& header, RecordReader& body) {
  BlipOf::read(header, body);
  constexpr std::byte kStart[] = {std::byte{0xFF}, std::byte{0xD8}, std::byte{0xFF}};
  const ByteView bytes = _payload.view();
  if (bytes.size() < std::size(kStart) || !std::equal(std::begin(kStart), std::end(kStart), bytes.begin())) {
    throw xlerror("error in record OfficeArtBlipJPEG (2)");
  }
}

std::unique_ptr<OfficeArtRecordBase> makeBlip(std::uint16_t recType) {
  switch (recType) {
    case type::blipEmf:
      return std::make_unique<OfficeArtBlipEMF>();
    case type::blipWmf:
      return std::make_unique<OfficeArtBlipWMF>();
    case type::blipPict:
      return std::make_unique<OfficeArtBlipPICT>();
    case type::blipJpeg:
      return std::make_unique<OfficeArtBlipJPEG>();
    case type::blipPng:
      return std::make_unique<OfficeArtBlipPNG>();
    case type::blipDib:
      return std::make_unique<OfficeArtBlipDIB>();
    case type::blipTiff:
      return std::make_unique<OfficeArtBlipTIFF>();
    default:
      return nullptr;
  }
}

std::unique_ptr<OfficeArtFBSE> OfficeArtFBSE::of(ByteView picture) {
  const PictureType kind = pictureTypeOf(picture);
  for (const KindRule& rule : kKinds) {
    if (rule.type != kind) continue;
    auto entry = std::make_unique<OfficeArtFBSE>();
    entry->_blip = makeBlip(rule.recType);
    entry->blip()->assign(kind, picture);
    entry->setInstance(rule.btWin32);
    entry->btWin32 = rule.btWin32;
    entry->btMacOs = rule.btMacOs;
    entry->blipSize = kHeaderSize + entry->_blip->size();
    entry->uid = entry->blip()->uid();
    return entry;
  }
  throw xlerror("unknown picture format");
}

void OfficeArtFBSE::read(const RecordHeader& header, RecordReader& body) {
  OfficeArtRecord::read(header, body);
  bool whole = true;
  visit(*this, [&](auto& field) { whole = whole && body.take(field); });
  if (!whole) fail();
  if (cbName > body.left()) throw xlerror("error in record OfficeArtFBSE #1");
  _name = body.takeSlice(cbName);
  RecordHeader inner;
  if (body.left() >= kHeaderSize) {
    takeHeader(body, inner);
    if (inner.recLen > body.left()) throw xlerror("error in record OfficeArtBlip");
    _blip = makeBlip(inner.recType);
    if (_blip == nullptr) _blip = std::make_unique<OfficeArtRecordBase>();
    RecordReader blipBody(body.takeSlice(inner.recLen), body.depth() + 1);
    _blip->read(inner, blipBody);
  }
  _rest = body.takeRest();
}

void OfficeArtFBSE::write(DrawingSink& sink) const {
  writeHeader(sink);
  visit(*this, [&](const auto& field) { sink.field(field); });
  sink.put(_name.view());
  if (_blip != nullptr) _blip->write(sink);
  sink.put(_rest.view());
}

std::uint32_t OfficeArtFBSE::size() const {
  std::size_t bytes = _name.size() + _rest.size();
  visit(*this, [&](const auto& field) { bytes += sizeof(field); });
  if (_blip != nullptr) bytes += kHeaderSize + _blip->size();
  return static_cast<std::uint32_t>(bytes);
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtBStoreContainer::make(std::uint16_t recType) {
  if (recType == type::fbse) return std::make_unique<OfficeArtFBSE>();
  return makeBlip(recType);
}

}  // namespace rubrica::officeart
