#include "engine/picture_header.h"

#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

using Picture = std::vector<std::uint8_t>;

std::span<const std::byte> bytes(const Picture& picture) {
  return std::as_bytes(std::span(picture));
}
PictureType typeOf(const Picture& picture) {
  return pictureTypeOf(bytes(picture));
}
PixelSize sizeOf(const Picture& picture) {
  return pixelSizeOf(typeOf(picture), bytes(picture));
}
Picture without(Picture picture, std::size_t last) {
  picture.resize(picture.size() - last);
  return picture;
}

const Picture kPng = {0x89, 'P', 'N', 'G', 13, 10, 26, 10, 0, 0, 0, 13, 'I', 'H', 'D', 'R', 0, 0, 1, 2, 0, 0, 0, 7};
// SOI, APP0 of 4 bytes, a fill byte, SOF2 with 300 rows and 511 columns.
const Picture kJpeg = {0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 1, 2, 0xFF, 0xFF, 0xC2, 0, 17, 8, 1, 44, 1, 255};
const Picture kWmf = {0xD7, 0xCD, 0xC6, 0x9A, 0, 0, 0, 0, 10, 0, 0xA0, 0x05, 0xDA, 2, 0xA0, 0x05};
const Picture kDib = {40, 0, 0, 0, 20, 0, 0, 0, 0xF6, 0xFF, 0xFF, 0xFF};
const Picture kCoreDib = {12, 0, 0, 0, 20, 0, 0xFF, 0xFF};
const Picture kEmf = {1, 0, 0, 0, 108, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 5, 0, 0, 0, 98, 0, 0, 0, 5, 0, 0, 0};

TEST(PictureHeaders, TheFirstBytesTellTheKind) {
  EXPECT_EQ(typeOf(kPng), PictureType::png);
  EXPECT_EQ(typeOf(kJpeg), PictureType::jpeg);
  EXPECT_EQ(typeOf(kWmf), PictureType::wmf);
  EXPECT_EQ(typeOf({'B', 'M', 0, 0, 0}), PictureType::dib);
  EXPECT_EQ(typeOf(kEmf), PictureType::emf);
}

TEST(PictureHeaders, AHeaderSizeInTheFirstByteIsTakenForADibWhateverFollows) {
  for (const int first : {12, 64, 40, 108, 124}) {
    EXPECT_EQ(typeOf({static_cast<std::uint8_t>(first), 0xFF, 0xFF, 0xFF, 0xFF}), PictureType::dib) << first;
  }
}

TEST(PictureHeaders, OtherBytesAndFourBytesAreUnknown) {
  for (const Picture& picture :
       {Picture{}, Picture{0x89}, Picture{0x89, 'P', 'N', 'G'}, Picture{40, 0, 0, 0}, Picture{'G', 'I', 'F', '8', '9'},
        Picture{0xD7, 0xCD, 0xC6, 0, 0}, Picture{0xFF, 0xD8, 0, 0, 0}, Picture{1, 1, 0, 0, 0}}) {
    try {
      typeOf(picture);
      ADD_FAILURE() << picture.size() << " bytes were taken for a picture";
    } catch (const xlerror& error) {
      EXPECT_STREQ(error.what(), "unknown picture format");
    }
  }
}

TEST(PictureHeaders, SizesComeFromEachHeader) {
  EXPECT_EQ(sizeOf(kPng), (PixelSize{258, 7}));
  EXPECT_EQ(sizeOf(kJpeg), (PixelSize{511, 300}));
  EXPECT_EQ(sizeOf(kDib), (PixelSize{20, 10}));  // a negative height says that the rows come from the top
  EXPECT_EQ(sizeOf(kCoreDib), (PixelSize{20, 65535}));
  EXPECT_EQ(sizeOf(kEmf), (PixelSize{100, 1}));
}

TEST(PictureHeaders, APlaceableMetafileIsMeasuredByItsUnitsPerInch) {
  // 0 to 720 and 10 to 730 units of 1/1440 inch.
  Picture wmf = kWmf;
  wmf[6] = 0, wmf[7] = 0, wmf[8] = 10, wmf[9] = 0, wmf[10] = 0xD0, wmf[11] = 2, wmf[12] = 0xDA, wmf[13] = 2;
  EXPECT_EQ(sizeOf(wmf), (PixelSize{48, 48}));
  wmf[14] = wmf[15] = 0;
  EXPECT_EQ(sizeOf(wmf), PixelSize{});
}

TEST(PictureHeaders, ABitmapFileHeaderStandsBeforeTheDib) {
  Picture bmp(kBitmapFileHeaderSize, 0);
  bmp[0] = 'B', bmp[1] = 'M';
  bmp.insert(bmp.end(), kDib.begin(), kDib.end());
  EXPECT_TRUE(hasBitmapFileHeader(bytes(bmp)));
  EXPECT_EQ(sizeOf(bmp), (PixelSize{20, 10}));
  EXPECT_EQ(sizeOf({'B', 'M', 0, 0, 0}), PixelSize{});
}

TEST(PictureHeaders, AHeaderCutShortHasNoSize) {
  for (const Picture& picture : {kPng, kJpeg, kWmf, kDib, kCoreDib, kEmf}) {
    for (std::size_t last = 1; picture.size() - last > 4; ++last) {
      EXPECT_EQ(sizeOf(without(picture, last)), PixelSize{}) << int{picture[0]} << " less " << last;
    }
  }
}

TEST(PictureHeaders, AJpegWalkThatLeavesTheDataOrStandsStillHasNoSize) {
  EXPECT_EQ(sizeOf({0xFF, 0xD8, 0xFF, 0xE0, 0xFF, 0xFF}), PixelSize{});
  EXPECT_EQ(sizeOf({0xFF, 0xD8, 0xFF, 0xE0, 0, 0, 0xFF, 0xC0, 0, 17, 8, 0, 1, 0, 1}), PixelSize{});
  EXPECT_EQ(sizeOf({0xFF, 0xD8, 0xFF, 0xDA, 0, 2, 0xFF, 0xC4, 0, 2, 0xFF, 0xD9}), PixelSize{});
}

TEST(PictureHeaders, AJpegWithoutItsStartIsRefused) {
  for (const Picture& picture :
       {Picture{}, Picture{0xFF, 0xD8}, Picture{0xFF, 0xD9, 0xFF, 0}, Picture{'j', 'p', 'g'}}) {
    try {
      pixelSizeOf(PictureType::jpeg, bytes(picture));
      ADD_FAILURE() << picture.size() << " bytes were taken for a JPEG";
    } catch (const xlerror& error) {
      EXPECT_STREQ(error.what(), "invalid jpg file");
    }
  }
}

TEST(PictureHeaders, SizesBeyondAnIntAreCut) {
  Picture png = kPng;
  for (std::size_t i = 16; i < 24; ++i) png[i] = 0xFF;
  const int most = std::numeric_limits<int>::max();
  EXPECT_EQ(sizeOf(png), (PixelSize{most, most}));
  Picture emf = kEmf;
  for (std::size_t i = 8; i < 12; ++i) emf[i] = 0, emf[i + 8] = 0xFF;
  emf[11] = 0x80, emf[19] = 0x7F;
  EXPECT_EQ(sizeOf(emf).width, most);
}

}  // namespace
}  // namespace rubrica
