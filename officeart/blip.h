// Pictures as the blip store holds them: a blip for the bytes, one class a kind, and the entry (FBSE) that counts its
// uses. Bitmaps stand as they are (a BMP without its file header), metafiles compressed behind a header of their own.
#pragma once

#include <array>
#include <optional>

#include "engine/picture_header.h"
#include "officeart/record.h"

namespace rubrica::officeart {

using BlipUid = std::array<std::byte, 16>;

// What stands between the UIDs and the compressed bytes of a metafile. EMU: 914,400 an inch.
struct MetafileHeader {
  std::uint32_t cbSize = 0;  // uncompressed
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  std::int32_t width = 0, height = 0;  // EMU
  std::uint32_t cbSave = 0;            // compressed
  std::uint8_t compression = 0, filter = 0xFE;

  static void visit(auto& self, auto&& field) {
    field(self.cbSize);
    field(self.left);
    field(self.top);
    field(self.right);
    field(self.bottom);
    field(self.width);
    field(self.height);
    field(self.cbSave);
    field(self.compression);
    field(self.filter);
  }
  static constexpr std::uint8_t kDeflate = 0, kNone = 0xFE;
  static constexpr std::size_t kSize = 34;
};

// What all blips have in common.
class BlipContent {
 public:
  virtual ~BlipContent() = default;
  virtual bool isMetafile() const = 0;
  // As the picture's file: uncompressed, a WMF with its placeable header. Kept for the next call.
  ByteView file();
  PixelSize pixelSize();
  const BlipUid& uid() const { return _uid1; }
  // Takes a picture file. `type` is what pictureTypeOf answered for it.
  void assign(PictureType type, ByteView picture);

  PictureType pictureType = PictureType::notFound;

 protected:
  BlipUid _uid1{}, _uid2{};
  std::uint8_t _tag = 0xFF;
  MetafileHeader _metafile;
  Slice _payload;

 private:
  void assignMetafile(ByteView picture);
  std::vector<std::byte> uncompressed() const;

  std::optional<std::vector<std::byte>> _file;  // of a metafile
};

// MetafileUids is 1 for the metafiles, which have the further header, and 0 for the bitmaps.
template <std::uint16_t RecType, unsigned MetafileUids>
class OfficeArtBlip : public RecordOf<RecType>, public BlipContent {
 public:
  void read(const RecordHeader& header, RecordReader& body) override;
  void write(DrawingSink& sink) const override;
  std::uint32_t size() const override { return static_cast<std::uint32_t>(prefixSize() + _payload.size()); }
  // The second form of each kind, with an odd instance, has two UIDs.
  virtual bool hasTwoUids() const { return (this->recInstance() & 1) != 0; }
  bool isMetafile() const override { return MetafileUids != 0; }

 private:
  // 17 or 33 bytes before a bitmap, 50 or 66 before a metafile.
  std::size_t prefixSize() const {
    return sizeof(BlipUid) * (hasTwoUids() ? 2 : 1) + (isMetafile() ? MetafileHeader::kSize : sizeof(_tag));
  }
};

// Of each kind: how FBSE and getPicture call it, and the instance of a new blip with one UID.
template <std::uint16_t RecType, unsigned MetafileUids, PictureType Type, std::uint16_t NewInstance>
class BlipOf : public OfficeArtBlip<RecType, MetafileUids> {
 public:
  BlipOf() {
    this->pictureType = Type;
    this->setInstance(NewInstance);
  }
};

class OfficeArtBlipEMF final : public BlipOf<type::blipEmf, 1, PictureType::emf, 0x3D4> {};
class OfficeArtBlipWMF final : public BlipOf<type::blipWmf, 1, PictureType::wmf, 0x216> {};
class OfficeArtBlipPICT final : public BlipOf<type::blipPict, 1, PictureType::pict, 0x542> {};
class OfficeArtBlipJPEG final : public BlipOf<type::blipJpeg, 0, PictureType::jpeg, 0x46A> {
 public:
  // Throws xlerror "error in record OfficeArtBlipJPEG (2)" as well, for bytes that are no JPEG.
  void read(const RecordHeader& header, RecordReader& body) override;
};
class OfficeArtBlipPNG final : public BlipOf<type::blipPng, 0, PictureType::png, 0x6E0> {};
class OfficeArtBlipDIB final : public BlipOf<type::blipDib, 0, PictureType::dib, 0x7A8> {};
class OfficeArtBlipTIFF final : public BlipOf<type::blipTiff, 0, PictureType::tiff, 0x6E4> {};

// The object for a blip's record type; null for another one.
std::unique_ptr<OfficeArtRecordBase> makeBlip(std::uint16_t recType);

// An entry of the store. recInstance is the kind.
class OfficeArtFBSE final : public RecordOf<type::fbse> {
 public:
  std::uint8_t btWin32 = 0, btMacOs = 0;
  BlipUid uid{};
  std::uint16_t tag = 0xFF;
  std::uint32_t blipSize = 0;  // of the blip with its header
  std::uint32_t cRef = 0, foDelay = 0;
  std::uint8_t usage = 0, cbName = 0;
  std::array<std::uint8_t, 2> reserved{};

  // An entry for a picture file, used by no shape yet. Throws xlerror "unknown picture format".
  static std::unique_ptr<OfficeArtFBSE> of(ByteView picture);

  void read(const RecordHeader& header, RecordReader& body) override;
  void write(DrawingSink& sink) const override;
  std::uint32_t size() const override;
  // Null for an entry without a picture.
  BlipContent* blip() const { return dynamic_cast<BlipContent*>(_blip.get()); }

  static void visit(auto& self, auto&& field) {
    field(self.btWin32);
    field(self.btMacOs);
    field(self.uid);
    field(self.tag);
    field(self.blipSize);
    field(self.cRef);
    field(self.foDelay);
    field(self.usage);
    field(self.cbName);
    field(self.reserved);
  }

 private:
  Slice _name;  // 16-bit characters
  std::unique_ptr<OfficeArtRecordBase> _blip;
  Slice _rest;
};

class OfficeArtBStoreContainer final : public ContainerRecord<OfficeArtBStoreContainer, type::bStoreContainer> {
 public:
  static std::unique_ptr<OfficeArtRecordBase> make(std::uint16_t recType);
};

}  // namespace rubrica::officeart
