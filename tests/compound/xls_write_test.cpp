#include <array>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

constexpr const char* kStreamError = "stream error, perhaps it's too small writing buffer";

// What the main stream of `file` holds, as long as its entry says.
Bytes mainStream(const Bytes& file) {
  Xls xls;
  xls.read(file);
  Bytes bytes(static_cast<std::size_t>(xls.directory()[1].streamSize));
  EXPECT_EQ(xls.read(bytes.data(), bytes.size()), bytes.size());
  return bytes;
}

// The chain of a sector in the FAT, checked against its end mark.
std::size_t chainLength(const SectorTables& tables, std::uint32_t sector) {
  std::size_t length = 0;
  for (; sector != kEndOfChain; sector = tables.fat.at(sector)) {
    if (++length > tables.fat.size()) return 0;
  }
  return length;
}

TEST(XlsWriting, TheSmallestFileHasTheseBytes) {
  const Bytes file = writtenFile(Bytes{std::byte{0x09}});
  // Header, 8 sectors of main stream, 3 of FAT, 1 of directory.
  ASSERT_EQ(file.size(), 512U * 13);
  constexpr std::array<std::uint8_t, 88> kHeader{
      0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1, 0, 0, 0, 0, 0, 0,    0, 0, 0,    0,    0,    0,    0, 0,
      0,    0,    0x3E, 0,    3,    0,    0xFE, 0xFF, 9, 0, 6, 0, 0, 0,    0, 0, 0,    0,    0,    0,    0, 0,
      3,    0,    0,    0,    11,   0,    0,    0,    0, 0, 0, 0, 0, 0x10, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0, 0,
      0,    0,    0xFE, 0xFF, 0xFF, 0xFF, 0,    0,    0, 0, 8, 0, 0, 0,    9, 0, 0,    0,    10,   0,    0, 0};
  for (std::size_t i = 0; i < kHeader.size(); ++i) EXPECT_EQ(get<std::uint8_t>(file, i), kHeader[i]) << i;
  for (std::size_t i = kHeader.size(); i < 512; ++i) EXPECT_EQ(get<std::uint8_t>(file, i), 0xFF) << i;
  EXPECT_EQ(get<std::uint8_t>(file, 512), 9);
}

TEST(XlsWriting, AStreamUnderFourKilobytesGrowsToThem) {
  for (const std::size_t size : {1U, 4095U, 4096U}) {
    const Bytes content = pattern(size);
    Bytes back = mainStream(writtenFile(content));
    ASSERT_EQ(back.size(), 4096U);
    EXPECT_TRUE(std::equal(content.begin(), content.end(), back.begin()));
    for (std::size_t i = size; i < back.size(); ++i) EXPECT_EQ(back[i], std::byte{0});
  }
  EXPECT_EQ(mainStream(writtenFile(pattern(4097))).size(), 4097U);
}

TEST(XlsWriting, StreamsOfEverySizeComeBackWithClosedChains) {
  // About 6.8 MB need the first DIFAT sector, about 15 MB the second.
  for (const std::size_t size : {5000U, 512U * 200, 6'900'000U, 7'500'000U, 15'500'000U}) {
    const Bytes content = pattern(size);
    const Bytes file = writtenFile(content);
    EXPECT_EQ(mainStream(file), content);
    SectorTables tables;
    tables.load(file);
    EXPECT_EQ(tables.header.numDifatSectors, size < 7'000'000 ? 0U : size < 15'000'000 ? 1U : 2U);
    EXPECT_EQ(chainLength(tables, 0), (size + 511) / 512);
    EXPECT_EQ(chainLength(tables, tables.header.directorySectorLocation), 1U);
    EXPECT_EQ(file.size() % 512, 0U);
  }
}

TEST(XlsWriting, TheFirstByteStandsBehindTheHeadersRoom) {
  Xls xls;
  platform::MemoryOutput output;
  xls.reset(true);
  xls.attach(output);
  xls.start();
  EXPECT_EQ(output.bytes(), Bytes(512));
  EXPECT_EQ(xls.tell(), 0U);
  xls.writeInt8(0xAA);
  EXPECT_EQ(xls.tell(), 1U);
  xls.close();
  EXPECT_EQ(output.bytes()[512], std::byte{0xAA});
  EXPECT_EQ(xls.fileSize(), output.bytes().size());
}

TEST(XlsWriting, WithoutStartTheFirstByteStandsThereToo) {
  Xls xls;
  platform::MemoryOutput output;
  xls.attach(output);
  xls.writeInt8(0xAA);
  xls.close();
  EXPECT_EQ(output.bytes()[512], std::byte{0xAA});
  EXPECT_EQ(get<std::uint8_t>(output.bytes(), 0), 0xD0);
}

TEST(XlsWriting, RecordsAndNumbersAreLittleEndian) {
  Xls xls;
  platform::MemoryOutput output;
  xls.attach(output);
  xls.writeRecord(0x1234, "abc", 3);
  xls.writeHeader(10, 0);
  xls.writeInt16(0x5678);
  xls.writeInt32(0x89ABCDEF);
  xls.writeDouble(1.0);
  xls.close();
  const std::vector<int> expected{0x34, 0x12, 3,    0,    'a', 'b', 'c', 10, 0, 0, 0,    0x78, 0x56,
                                  0xEF, 0xCD, 0xAB, 0x89, 0,   0,   0,   0,  0, 0, 0xF0, 0x3F};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(std::to_integer<int>(output.bytes()[512 + i]), expected[i]) << i;
  }
}

TEST(XlsWriting, PatchesLeaveTheSizeAlone) {
  // Larger than the buffer, so that the first record is out and the last is not.
  const std::size_t size = 3 * WriteBuffer::kCapacity + 10;
  Bytes content = pattern(size);
  Xls xls;
  platform::MemoryOutput output;
  xls.attach(output);
  xls.start();
  xls.write(content.data(), content.size());
  const std::uint32_t end = xls.tell();
  EXPECT_EQ(end, size);
  for (const std::uint32_t place : {0U, 70'000U, end - 6}) {
    xls.seekTo(place);
    EXPECT_EQ(xls.tell(), place);
    xls.writeInt32(0xCAFEF00D);
    put(content, place, 0xCAFEF00D);
  }
  xls.seekTo(end);
  xls.writeInt8(0x5A);
  content.push_back(std::byte{0x5A});
  xls.seekTo(1);  // where the cursor stands at the end doesn't matter
  xls.close();
  EXPECT_EQ(mainStream(output.bytes()), content);
}

TEST(XlsWriting, LongRecordsGoOnInContinueRecords) {
  const Bytes content = pattern(20'000);
  Xls xls;
  platform::MemoryOutput output;
  xls.attach(output);
  std::uint16_t room = 8224;
  xls.writeHeader(0xFC, room);
  std::size_t left = content.size();
  for (std::size_t at = 0; at < content.size(); at += 100) {
    xls.writeWithContinueRecords(content.data() + at, 100, room, left);
    left -= 100;
  }
  EXPECT_EQ(room, 0);
  EXPECT_EQ(xls.tell(), content.size() + 3 * 4);
  xls.close();
  const Bytes& file = output.bytes();
  EXPECT_EQ(get<std::uint16_t>(file, 512 + 4 + 8224), 60);
  EXPECT_EQ(get<std::uint16_t>(file, 512 + 4 + 8224 + 2), 8224);
  EXPECT_EQ(get<std::uint16_t>(file, 512 + 2 * (4 + 8224)), 60);
  EXPECT_EQ(get<std::uint16_t>(file, 512 + 2 * (4 + 8224) + 2), 20'000 - 2 * 8224);

  xls.read(file);
  std::uint16_t id = 0;
  std::uint16_t remaining = 0;
  xls.readInt16(id);
  xls.readInt16(remaining);
  Bytes back(content.size());
  EXPECT_EQ(xls.readWithContinueRecords(back.data(), back.size(), remaining), back.size());
  EXPECT_EQ(back, content);
}

TEST(XlsWriting, AnEmptyMainStreamGivesAReadableDirectory) {
  const Bytes file = writtenFile({});
  EXPECT_EQ(readMessage(file), "Xls::read(): stream is empty");
}

TEST(XlsWriting, ThePositionOfNoOutputCantBeHad) {
  Xls xls;
  EXPECT_EQ(messageOf([&] { xls.tell(); }), "can't get the current write position");
  EXPECT_EQ(messageOf([&] { xls.start(); }), "stream error");
  EXPECT_EQ(messageOf([&] { xls.writeInt8(1); }), kStreamError);
}

// Fails the n-th of its calls and every later one.
class FailingOutput final : public platform::OutputStream {
 public:
  explicit FailingOutput(int callsThatWork) : _left(callsThatWork) {}
  bool write(const void* data, std::size_t size) override { return works() && _memory.write(data, size); }
  bool seek(std::uint64_t position) override { return works() && _memory.seek(position); }
  std::int64_t tell() const override { return _left < 0 ? -1 : _memory.tell(); }
  bool commit() override { return works(); }
  const Bytes& bytes() const { return _memory.bytes(); }

 private:
  bool works() {
    if (_left >= 0) --_left;
    return _left >= 0;
  }
  int _left;
  platform::MemoryOutput _memory;
};

TEST(XlsWriting, EachFailingCallOfTheOutputIsAnError) {
  const Bytes content = pattern(2 * WriteBuffer::kCapacity);
  std::vector<std::string> messages;
  for (int works = 0; messages.empty() || messages.back() != "no failure"; ++works) {
    ASSERT_LT(works, 50);
    FailingOutput output(works);
    messages.push_back(messageOf([&] {
      Xls xls;
      xls.attach(output);
      xls.start();
      xls.write(content.data(), content.size());
      xls.seekTo(0);
      xls.writeInt32(1);
      xls.close();
    }));
    if (messages.back() == "no failure") {
      EXPECT_EQ(mainStream(output.bytes()).size(), content.size());
    }
  }
  ASSERT_GT(messages.size(), 5U);
  EXPECT_EQ(messages[0], "stream error");
  EXPECT_EQ(messages[1], "stream error");
  for (std::size_t i = 2; i + 1 < messages.size(); ++i) EXPECT_EQ(messages[i], kStreamError) << i;
}

TEST(XlsWriting, ThePositionOfAFailedOutputCantBeHad) {
  FailingOutput output(2);
  Xls xls;
  xls.attach(output);
  xls.start();
  EXPECT_EQ(xls.tell(), 0U);
  output.seek(0);
  EXPECT_EQ(messageOf([&] { xls.tell(); }), "can't get the current write position");
}

}  // namespace
}  // namespace rubrica::compound_test
