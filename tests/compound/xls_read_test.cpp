#include <initializer_list>

#include <gtest/gtest.h>

#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

void expectMainStream(const Bytes& file, const Bytes& content) {
  Xls xls;
  xls.read(file);
  Bytes bytes = readAll(xls);
  ASSERT_GE(bytes.size(), content.size());
  bytes.resize(content.size());
  EXPECT_TRUE(bytes == content);
}

TEST(XlsReading, FindsTheWorkbookUnderItsNames) {
  const Bytes main = pattern(5000);
  const Bytes other = pattern(6000, 2);
  expectMainStream(makeFile({{u"Workbook", main}}), main);
  expectMainStream(makeFile({{u"WORKBOOK", main}}), main);
  expectMainStream(makeFile({{u"Book", main}}), main);
  expectMainStream(makeFile({{u"bOOK", main}}), main);
  expectMainStream(makeFile({{u"Book", other}, {u"Workbook", main}}), main);
  expectMainStream(makeFile({{u"EncryptionInfo", other}, {u"Book", main}}), main);
}

TEST(XlsReading, AnEncryptedPackageIsEnteredAtItsEncryptionInfo) {
  const Bytes info = pattern(5000);
  const Bytes file = makeFile({{u"EncryptedPackage", pattern(5000, 2)}, {u"encryptioninfo", info}});
  expectMainStream(file, info);
  Xls xls;
  xls.read(file);
  EXPECT_TRUE(xls.isEncryptionInfo());
  xls.read(makeFile({{u"Workbook", info}}));
  EXPECT_FALSE(xls.isEncryptionInfo());
}

TEST(XlsReading, StreamsUnderFourKilobytesComeFromTheMiniStream) {
  for (const std::size_t size : {1U, 63U, 64U, 65U, 512U, 513U, 4095U}) {
    const Bytes main = pattern(size);
    const std::vector<TestStream> streams{{u"Small", pattern(300, 2)}, {u"Workbook", main}};
    for (const auto shift : std::initializer_list<std::uint16_t>{9, 10, 12}) {
      expectMainStream(makeFile(streams, {.sectorShift = shift}), main);
      expectMainStream(makeFile(streams, {.sectorShift = shift, .reversed = true}), main);
    }
  }
}

TEST(XlsReading, StreamsFromFourKilobytesOnComeFromSectors) {
  for (const std::size_t size : {4096U, 4097U, 50'000U}) {
    const Bytes main = pattern(size);
    const std::vector<TestStream> streams{{u"Small", pattern(300, 2)}, {u"Workbook", main}};
    expectMainStream(makeFile(streams), main);
    expectMainStream(makeFile(streams, {.reversed = true}), main);
  }
  const Bytes main = pattern(5000);
  expectMainStream(makeFile({{u"Workbook", main}}, {.sectorShift = 12}), main);
}

TEST(XlsReading, TheHeadersCutoffIsNotAsked) {
  const Bytes main = pattern(5000);
  Bytes file = makeFile({{u"Workbook", main}});
  put<std::uint32_t>(file, kMiniStreamCutoffAt, 100'000);
  expectMainStream(file, main);
}

TEST(XlsReading, TheEndFlagIsSetByTheReadThatMeetsTheEnd) {
  const Bytes file = makeFile({{u"Workbook", pattern(4096)}});
  Xls xls;
  xls.read(file);
  EXPECT_EQ(xls.bytesLeft(), 4096U);
  EXPECT_EQ(xls.skip(4094), 4094U);
  EXPECT_FALSE(xls.isEnd());
  std::uint32_t value = 0xDEADBEEF;
  EXPECT_EQ(xls.readInt32(value), 2U);
  EXPECT_TRUE(xls.isEnd());
  EXPECT_EQ(value >> 16, 0U);
  EXPECT_EQ(xls.readInt32(value), 0U);
  EXPECT_EQ(value, 0U);
  EXPECT_EQ(xls.bytesLeft(), 0U);
  EXPECT_EQ(xls.fileSize(), file.size());
}

TEST(XlsReading, NumbersAreLittleEndianAndComeWholeAcrossSectors) {
  Bytes main(4096);
  const double number = 1234.5678;
  put<std::uint8_t>(main, 0, 0xAB);
  put<std::uint16_t>(main, 511, 0x1234);
  put<std::uint32_t>(main, 1022, 0x89ABCDEF);
  std::memcpy(main.data() + 1533, &number, sizeof number);
  const Bytes file = makeFile({{u"Workbook", main}}, {.reversed = true});
  Xls xls;
  xls.read(file);
  std::uint8_t a = 0;
  std::uint16_t b = 0;
  std::uint32_t c = 0;
  double d = 0;
  EXPECT_EQ(xls.readInt8(a), 1U);
  EXPECT_EQ(xls.skip(510), 510U);
  EXPECT_EQ(xls.readInt16(b), 2U);
  EXPECT_EQ(xls.skip(509), 509U);
  EXPECT_EQ(xls.readInt32(c), 4U);
  EXPECT_EQ(xls.skip(507), 507U);
  EXPECT_EQ(xls.readDouble(d), 8U);
  EXPECT_EQ(a, 0xAB);
  EXPECT_EQ(b, 0x1234);
  EXPECT_EQ(c, 0x89ABCDEF);
  EXPECT_EQ(d, number);
}

TEST(XlsReading, AViewIsInPlaceWhereSectorsFollowAndGatheredWhereTheyDont) {
  const Bytes main = pattern(5000);
  const Bytes inOrder = makeFile({{u"Workbook", main}});
  Xls xls;
  xls.read(inOrder);
  const auto whole = xls.view(5000);
  EXPECT_EQ(whole.data(), inOrder.data() + 512);
  EXPECT_EQ(Bytes(whole.begin(), whole.end()), main);

  const Bytes reversed = makeFile({{u"Workbook", main}}, {.reversed = true});
  xls.read(reversed);
  xls.skip(100);
  const auto part = xls.view(1000);
  EXPECT_EQ(Bytes(part.begin(), part.end()), Bytes(main.begin() + 100, main.begin() + 1100));
  EXPECT_FALSE(xls.isEnd());
  const auto rest = xls.view(~std::size_t{0});
  EXPECT_EQ(rest.size(), 5120U - 1100);  // to the end of the last sector
  EXPECT_TRUE(xls.isEnd());
}

TEST(XlsReading, SkippingPastTheEndGivesWhatThereWas) {
  Xls xls;
  const Bytes file = makeFile({{u"Workbook", pattern(4096)}}, {.reversed = true});
  xls.read(file);
  EXPECT_EQ(xls.skip(~std::size_t{0}), 4096U);
  EXPECT_TRUE(xls.isEnd());
}

TEST(XlsReading, RewindComesBackToTheMarkWithItsWord) {
  Xls xls;
  const Bytes main = pattern(4096);
  const Bytes file = makeFile({{u"Workbook", main}}, {.reversed = true});
  xls.read(file);
  xls.skip(700);
  xls.mark(1234);
  xls.skip(10'000);
  EXPECT_TRUE(xls.isEnd());
  EXPECT_EQ(xls.rewind(), 1234);
  EXPECT_FALSE(xls.isEnd());
  std::byte next{};
  xls.read(&next, 1);
  EXPECT_EQ(next, main[700]);
}

TEST(XlsReading, AChainInACircleEnds) {
  Bytes file = makeFile({{u"Workbook", pattern(4096)}});
  put(file, fatEntryAt(file, 7), std::uint32_t{0});
  Xls xls;
  xls.read(file);
  EXPECT_LE(readAll(xls).size(), 2 * file.size());
}

TEST(XlsReading, SectorsPastTheEndOfTheFileEndTheStream) {
  Bytes file = makeFile({{u"Workbook", pattern(4096)}});
  put(file, fatEntryAt(file, 2), std::uint32_t{100});
  Xls xls;
  xls.read(file);
  EXPECT_EQ(readAll(xls).size(), 3U * 512);
}

TEST(XlsReading, ACutLastSectorGivesWhatIsThere) {
  const Bytes main = pattern(9000);
  Bytes file = makeFile({{u"Other", pattern(4096)}, {u"Workbook", main}});
  // The FAT stands last; move the stream's end behind it.
  const std::uint32_t last = static_cast<std::uint32_t>(file.size() / 512 - 1);
  put(file, fatEntryAt(file, 9), last);
  file.resize(file.size() + 100, std::byte{0x77});
  Xls xls;
  xls.read(file);
  EXPECT_EQ(readAll(xls).size(), 2U * 512 + 100);
}

TEST(XlsReading, AFailedReadLeavesANewBookBehind) {
  Xls xls;
  EXPECT_THROW(xls.read(Bytes(1000)), xlerror);
  EXPECT_EQ(xls.directory().size(), 2U);
  EXPECT_EQ(xls.bytesLeft(), 0U);
  std::uint16_t value = 7;
  EXPECT_EQ(xls.readInt16(value), 0U);
  EXPECT_TRUE(xls.isEnd());
  xls.reset(false);
  EXPECT_FALSE(xls.isEnd());
}

}  // namespace
}  // namespace rubrica::compound_test
