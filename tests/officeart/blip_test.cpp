#include "officeart/blip.h"

#include <gtest/gtest.h>

#include "officeart/deflate.h"
#include "officeart/md4.h"
#include "tests/officeart/art_fixture.h"

namespace rubrica::officeart::test {
namespace {

Bytes textBytes(std::string_view text) {
  Bytes bytes;
  for (const char c : text) bytes.push_back(static_cast<std::byte>(c));
  return bytes;
}

std::string hex(const BlipUid& uid) {
  std::string text;
  for (const std::byte b : uid) {
    for (const unsigned digit : {std::to_integer<unsigned>(b) >> 4, std::to_integer<unsigned>(b) & 15}) {
      text += "0123456789abcdef"[digit];
    }
  }
  return text;
}

Bytes wmf(std::size_t bodySize) {
  // Bounds 0, 0, 1440, 720 in units of 1/1440 inch; the checksum is right.
  Bytes header = fields(u32(0x9AC6CDD7), u16(0), u16(0), u16(0), u16(1440), u16(720), u16(1440), u32(0));
  std::uint16_t sum = 0;
  for (std::size_t i = 0; i < header.size(); i += 2) {
    sum = static_cast<std::uint16_t>(
        sum ^ (std::to_integer<unsigned>(header[i]) | std::to_integer<unsigned>(header[i + 1]) << 8));
  }
  return joined({header, fields(sum), filled(bodySize, 0x11)});
}

Bytes emf() {
  return joined({fields(u32(1), u32(108), u32(0), u32(0), u32(99), u32(49), u32(0), u32(0), u32(2540), u32(1270)),
                 filled(68, 0x22)});
}

TEST(Md4, GivesTheDigestsOfItsDescription) {
  EXPECT_EQ(hex(md4(textBytes(""))), "31d6cfe0d16ae931b73c59d7e0c089c0");
  EXPECT_EQ(hex(md4(textBytes("a"))), "bde52cb31de33e46245e05fbdbd6fb24");
  EXPECT_EQ(hex(md4(textBytes("message digest"))), "d9130a8164549fe818874806e1c7014b");
  EXPECT_EQ(hex(md4(textBytes("12345678901234567890123456789012345678901234567890123456789012345678901234567890"))),
            "e33b4ddc9c38f2199c3e7b164fcc0536");
  EXPECT_EQ(hex(md4(textBytes("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"))),
            "043f8582f241db351ce627e153e7f0e4");
}

TEST(Deflate, GivesTheBytesBackAndRefusesWhatIsNone) {
  for (const std::size_t size : {0, 1, 17, 8224, 300000}) {
    const Bytes bytes = filled(size, 0x41);
    const auto back = inflated(deflated(bytes), size);
    ASSERT_TRUE(back) << size;
    EXPECT_EQ(*back, bytes) << size;
  }
  EXPECT_FALSE(inflated(filled(40, 0xFF), 100));
  EXPECT_FALSE(inflated(deflated(filled(100, 1)), 99));
  EXPECT_FALSE(inflated(deflated(filled(100, 1)), 0xFFFFFFFF)) << "no allocation of what a header says";
}

TEST(Blips, OfEveryKindKeepTheirBytes) {
  struct Kind {
    unsigned recType, instance;
    std::size_t prefix;
  };
  const Bytes jpegStart = fields(u16(0xD8FF), u16(0xE0FF));
  for (const Kind kind :
       {Kind{type::blipPng, 0x6E0, 17}, Kind{type::blipPng, 0x6E1, 33}, Kind{type::blipDib, 0x7A8, 17},
        Kind{type::blipDib, 0x7A9, 33}, Kind{type::blipTiff, 0x6E4, 17}, Kind{type::blipEmf, 0x3D4, 50},
        Kind{type::blipEmf, 0x3D5, 66}, Kind{type::blipWmf, 0x216, 50}, Kind{type::blipPict, 0x543, 66},
        Kind{type::blipJpeg, 0x46A, 17}, Kind{type::blipJpeg, 0x6E3, 33}}) {
    const auto blip = makeBlip(static_cast<std::uint16_t>(kind.recType));
    ASSERT_NE(blip, nullptr);
    const auto readBlip = [&](std::size_t size) {
      Bytes body = filled(size, 0xFE);
      if (kind.recType == type::blipJpeg && size >= kind.prefix + 4) {
        std::copy(jpegStart.begin(), jpegStart.end(), body.begin() + static_cast<std::ptrdiff_t>(kind.prefix));
      }
      const Bytes bytes = art(0, kind.instance, kind.recType, body);
      RecordReader reader(Slice::copyOf(bytes));
      RecordHeader header;
      takeHeader(reader, header);
      blip->read(header, reader);
      EXPECT_EQ(written(*blip), bytes);
    };
    EXPECT_EQ(refusal([&] { readBlip(kind.prefix - 1); }), "OfficeArtBlip: data is corrupted") << kind.recType;
    EXPECT_EQ(refusal([&] { readBlip(kind.prefix); }), "OfficeArtBlip: buffer is empty") << kind.recType;
    readBlip(kind.prefix + 100);
    EXPECT_EQ(dynamic_cast<BlipContent&>(*blip).file().size(), 100u) << kind.recType;
  }
}

TEST(Blips, WithAWrongHeaderAreRefusedByTheirNames) {
  const Bytes body = filled(100, 0);
  EXPECT_EQ(refusalOf<OfficeArtBlipPNG>(art(1, 0x6E0, type::blipPng, body)), "error in record OfficeArtBlipPNG");
  EXPECT_EQ(refusalOf<OfficeArtBlipDIB>(art(1, 0x7A8, type::blipDib, body)), "error in record OfficeArtBlipDIB");
  EXPECT_EQ(refusalOf<OfficeArtBlipTIFF>(art(1, 0x6E4, type::blipTiff, body)), "error in record OfficeArtBlipDIB");
  EXPECT_EQ(refusalOf<OfficeArtBlipEMF>(art(1, 0x3D4, type::blipEmf, body)), "error in record OfficeArtBlipEMF");
  EXPECT_EQ(refusalOf<OfficeArtBlipWMF>(art(1, 0x216, type::blipWmf, body)), "error in record OfficeArtBlipWMF");
  EXPECT_EQ(refusalOf<OfficeArtBlipPICT>(art(1, 0x542, type::blipPict, body)), "error in record OfficeArtBlipPICT");
  EXPECT_EQ(refusalOf<OfficeArtBlipJPEG>(art(1, 0x46A, type::blipJpeg, body)), "error in record OfficeArtBlipJPEG");
  EXPECT_EQ(refusalOf<OfficeArtBlipJPEG>(art(0, 0x46A, type::blipJpeg, body)), "error in record OfficeArtBlipJPEG (2)");
}

TEST(StoreEntries, AreMadeWithTheKindAndTheBytes) {
  struct Case {
    Bytes picture;
    PictureType type;
    unsigned entryKind, recType, instance, mac;
  };
  const Bytes dib = joined({fields(u32(40), u32(8), u32(4)), filled(60, 1)});
  const Bytes jpeg = joined({fields(u16(0xD8FF), u16(0xE0FF), u16(0x0400)), filled(20, 0)});
  for (const Case& test : {Case{png(500), PictureType::png, 6, type::blipPng, 0x6E0, 6},
                           Case{jpeg, PictureType::jpeg, 5, type::blipJpeg, 0x46A, 5},
                           Case{dib, PictureType::dib, 7, type::blipDib, 0x7A8, 7},
                           Case{wmf(300), PictureType::wmf, 3, type::blipWmf, 0x216, 4},
                           Case{emf(), PictureType::emf, 2, type::blipEmf, 0x3D4, 4}}) {
    const auto entry = OfficeArtFBSE::of(test.picture);
    EXPECT_EQ(entry->recInstance(), test.entryKind);
    EXPECT_EQ(entry->btWin32, test.entryKind);
    EXPECT_EQ(entry->btMacOs, test.mac);
    EXPECT_EQ(entry->cRef, 0u);
    ASSERT_NE(entry->blip(), nullptr);
    EXPECT_EQ(entry->blip()->pictureType, test.type);
    const Bytes bytes = written(*entry);
    EXPECT_EQ(entry->size() + kHeaderSize, bytes.size());
    EXPECT_EQ(entry->blipSize, bytes.size() - 8 - 36);
    const auto again = readAs<OfficeArtFBSE>(bytes);
    EXPECT_EQ(written(*again), bytes);
    const ByteView file = again->blip()->file();
    EXPECT_EQ(Bytes(file.begin(), file.end()), test.picture) << int(test.type);
    EXPECT_EQ(again->blip()->pixelSize(), pixelSizeOf(test.type, test.picture)) << int(test.type);
    EXPECT_EQ(hex(again->uid), hex(again->blip()->uid()));
    RecordReader inner(Slice::copyOf(bytes).part(8 + 36, bytes.size()));
    RecordHeader header;
    ASSERT_TRUE(takeHeader(inner, header));
    EXPECT_EQ(header.recType, test.recType);
    EXPECT_EQ(header.recInstance, test.instance);
  }
}

TEST(StoreEntries, HoldABitmapWithoutItsFileHeader) {
  const Bytes dib = joined({fields(u32(40), u32(8), u32(4)), filled(60, 1)});
  const Bytes bmp = joined({textBytes("BM"), filled(12, 0), dib});
  const auto entry = OfficeArtFBSE::of(bmp);
  const ByteView file = entry->blip()->file();
  EXPECT_EQ(Bytes(file.begin(), file.end()), dib);
  EXPECT_EQ(entry->blip()->pixelSize(), (PixelSize{8, 4}));
  const Bytes headerAlone = joined({textBytes("BM"), filled(12, 0)});
  EXPECT_EQ(OfficeArtFBSE::of(headerAlone)->blip()->file().size(), headerAlone.size());
}

TEST(StoreEntries, OfUnknownBytesAreNotMade) {
  EXPECT_EQ(refusal([] { OfficeArtFBSE::of(filled(100, 'x')); }), "unknown picture format");
  EXPECT_EQ(refusal([] { OfficeArtFBSE::of({}); }), "unknown picture format");
}

TEST(StoreEntries, KeepNamesAndWhateverStandsBehindThePicture) {
  Bytes head = filled(36, 0);
  head[33] = std::byte{6};  // cbName
  const Bytes blip = art(0, 0x6E0, type::blipPng, filled(30, 1));
  for (const Bytes& tail :
       {Bytes{}, filled(7, 3), blip, joined({blip, filled(5, 2)}), art(0, 0, 0xF029, filled(9, 1))}) {
    const Bytes bytes = art(2, 6, type::fbse, joined({head, filled(6, 'n'), tail}));
    EXPECT_EQ(written(*readAs<OfficeArtFBSE>(bytes)), bytes) << tail.size();
  }
}

TEST(StoreEntries, ThatLieAreRefused) {
  EXPECT_EQ(refusalOf<OfficeArtFBSE>(art(2, 6, type::fbse, filled(35, 0))), "error in record OfficeArtFBSE");
  EXPECT_EQ(refusalOf<OfficeArtFBSE>(art(0, 6, type::fbse, filled(36, 0))), "error in record OfficeArtFBSE");
  Bytes named = filled(36, 0);
  named[33] = std::byte{1};
  EXPECT_EQ(refusalOf<OfficeArtFBSE>(art(2, 6, type::fbse, named)), "error in record OfficeArtFBSE #1");
  const Bytes tooLong = art(0, 0x6E0, type::blipPng, filled(30, 1), 31);
  EXPECT_EQ(refusalOf<OfficeArtFBSE>(art(2, 6, type::fbse, joined({filled(36, 0), tooLong}))),
            "error in record OfficeArtBlip");
}

TEST(Metafiles, WithALyingSizeAreRefusedWhenTheyAreAskedFor) {
  Bytes bytes = written(*OfficeArtFBSE::of(wmf(5000)));
  const std::size_t cbSize = 8 + 36 + 8 + 16;
  for (const unsigned size : {4999u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    const Bytes lie = fields(u32(size));
    std::copy(lie.begin(), lie.end(), bytes.begin() + static_cast<std::ptrdiff_t>(cbSize));
    const auto entry = readAs<OfficeArtFBSE>(bytes);
    EXPECT_EQ(refusal([&] { entry->blip()->file(); }), "OfficeArtBlip: data is corrupted") << size;
  }
}

}  // namespace
}  // namespace rubrica::officeart::test
