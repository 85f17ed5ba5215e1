#include "compound/sector_tables.h"

#include <gtest/gtest.h>

#include "compound/stream_runs.h"
#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

// A main stream in sectors 0 to 7, the mini stream in 8, the mini FAT in 9, the directory in 10, the FAT in 11.
constexpr std::uint32_t kMiniFatSectorInFile = 9;
constexpr std::uint32_t kDirSectorInFile = 10;
constexpr std::uint32_t kFatSectorInFile = 11;
constexpr std::uint32_t kOutside = 5000;

Bytes goodFile() {
  return makeFile({{u"Workbook", pattern(4096)}, {u"Small", pattern(100)}});
}

template <typename T>
std::string messageWith(std::size_t offset, T value) {
  Bytes file = goodFile();
  put(file, offset, value);
  return readMessage(file);
}

std::string messageWithFat(std::uint32_t sector, std::uint32_t next, std::uint32_t numMiniFatSectors = 1) {
  Bytes file = goodFile();
  put(file, kNumMiniFatSectorsAt, numMiniFatSectors);
  put(file, fatEntryAt(file, sector), next);
  return readMessage(file);
}

TEST(CompoundHeaderErrors, AFileShorterThanAHeader) {
  Bytes file = goodFile();
  EXPECT_EQ(readMessage(file), "no failure");
  file.resize(511);
  EXPECT_EQ(readMessage(file), "readHeader: file is corrupt (size < 512 bytes)");
  EXPECT_EQ(readMessage({}), "readHeader: file is corrupt (size < 512 bytes)");
}

TEST(CompoundHeaderErrors, AnotherSignature) {
  EXPECT_EQ(messageWith<std::uint8_t>(7, 0xE0), "invalid file format");
  EXPECT_EQ(readMessage(Bytes(512)), "invalid file format");
}

TEST(CompoundHeaderErrors, SectorSizesThatDontFitSixteenBits) {
  EXPECT_EQ(messageWith<std::uint16_t>(kSectorShiftAt, 16), "Xls::readHeader(): _sectorSize can't be 0");
  EXPECT_EQ(messageWith<std::uint16_t>(kMiniSectorShiftAt, 31), "Xls::readHeader(): _miniSectorSize can't be 0");
  EXPECT_EQ(messageWith<std::uint16_t>(kSectorShiftAt, 9 + 32), "no failure");  // the processor's shift sees 9
}

TEST(DifatErrors, AChainLongerOrShorterThanTheHeaderSays) {
  EXPECT_EQ(messageWith<std::uint32_t>(kDifatAt, 3),
            "Xls::loadDifat(): difat chain contains more sectors than _header.numDifatSectors (0)");
  EXPECT_EQ(messageWith<std::uint32_t>(kNumDifatSectorsAt, 0xFFFFFFFF),
            "Xls::loadDifat(): difat chain sectors (0) not equal _header.numDifatSectors (4294967295)");
}

TEST(DifatErrors, AFreeFirstSectorIsNoChain) {
  EXPECT_EQ(messageWith<std::uint32_t>(kDifatAt, 0xFFFFFFFF), "no failure");
}

TEST(DifatErrors, AChainInACircleEndsWithTheFile) {
  Bytes file = goodFile();
  put<std::uint32_t>(file, kDifatAt, 0);
  put<std::uint32_t>(file, kNumDifatSectorsAt, 1000);
  put<std::uint32_t>(file, sectorAt(file, 0) + 508, 0);
  EXPECT_EQ(readMessage(file), "loadDifat: file is corrupt [1]");
  // With a tail of 508 bytes the entries of one more sector fit, but not its pointer.
  file.resize(file.size() + 508);
  EXPECT_EQ(readMessage(file), "loadDifat: file is corrupt [2]");
}

TEST(DifatErrors, ASectorOutsideTheFile) {
  Bytes file = goodFile();
  put<std::uint32_t>(file, kNumDifatSectorsAt, 1);
  put<std::uint32_t>(file, kDifatAt, kOutside);
  EXPECT_EQ(readMessage(file), "loadDifat: file is corrupt [1]");
}

TEST(FatErrors, ACountThatIsNotTheHeaders) {
  EXPECT_EQ(messageWith<std::uint32_t>(kNumFatSectorsAt, 2),
            "Xls::loadFat(): extract fat sectors (1) not equal _header.numFatSectors (2)");
  EXPECT_EQ(messageWith<std::uint32_t>(kDifatEntriesAt + 4, kEndOfChain),
            "Xls::loadFat(): extract fat sectors (2) not equal _header.numFatSectors (1)");
}

TEST(FatErrors, SectorsTooSmallForAnEntry) {
  EXPECT_EQ(messageWith<std::uint16_t>(kSectorShiftAt, 1), "Xls::loadFat(): index is out of range of _fat");
}

TEST(FatErrors, SectorsOutsideTheFileOrMoreThanItHolds) {
  EXPECT_EQ(messageWith<std::uint32_t>(kDifatEntriesAt, kOutside), "loadFat: file is corrupt");
  Bytes file = goodFile();
  for (std::uint32_t i = 0; i < 100; ++i) put(file, kDifatEntriesAt + 4 * i, kFatSectorInFile);
  put<std::uint32_t>(file, kNumFatSectorsAt, 100);
  EXPECT_EQ(readMessage(file), "loadFat: file is corrupt");
}

TEST(MiniFatErrors, AChainLongerThanTheHeaderSays) {
  EXPECT_EQ(messageWithFat(kMiniFatSectorInFile, 0), "error in loading minifat");
}

TEST(MiniFatErrors, AChainShorterThanTheHeaderSaysIsTakenAsItIs) {
  EXPECT_EQ(messageWith<std::uint32_t>(kNumMiniFatSectorsAt, 0xFFFFFFFF), "no failure");
}

TEST(MiniFatErrors, ASectorThatLeadsToItself) {
  EXPECT_EQ(messageWithFat(kMiniFatSectorInFile, kMiniFatSectorInFile), "loadMiniFat: error in fat");
}

TEST(MiniFatErrors, SectorsOutsideTheFatOrTheFile) {
  EXPECT_EQ(messageWith<std::uint32_t>(kMiniFatAt, kOutside), "Xls::loadMiniFat(): file is corrupt");
  EXPECT_EQ(messageWith<std::uint32_t>(kMiniFatAt, 100), "Xls::loadMiniFat(): file is corrupt");
  EXPECT_EQ(messageWith<std::uint32_t>(kMiniFatAt, kFreeSector), "Xls::loadMiniFat(): file is corrupt");
}

TEST(MiniFatErrors, ALongerCircleEndsWithTheFile) {
  Bytes file = goodFile();
  put<std::uint32_t>(file, kNumMiniFatSectorsAt, 1000);
  put(file, fatEntryAt(file, kMiniFatSectorInFile), std::uint32_t{8});
  put(file, fatEntryAt(file, 8), kMiniFatSectorInFile);
  EXPECT_EQ(readMessage(file), "loadMiniFat: file is corrupt");
}

TEST(DirectoryErrors, ASectorOutsideTheFat) {
  EXPECT_EQ(messageWith<std::uint32_t>(kDirectoryAt, kOutside), "Xls::loadDir(): sector #5000 is not found in _fat");
  EXPECT_EQ(messageWithFat(kDirSectorInFile, 128), "Xls::loadDir(): sector #128 is not found in _fat");
}

TEST(DirectoryErrors, ASectorThatLeadsToItself) {
  EXPECT_EQ(messageWithFat(kDirSectorInFile, kDirSectorInFile), "loadDir: error in fat [1]");
}

TEST(DirectoryErrors, ALongerCircleEndsWithTheFile) {
  Bytes file = goodFile();
  put(file, fatEntryAt(file, kDirSectorInFile), std::uint32_t{3});
  put(file, fatEntryAt(file, 3), kDirSectorInFile);
  EXPECT_EQ(readMessage(file), "loadDir: file is corrupt [1]");
}

TEST(DirectoryErrors, MoreBytesThanTheOtherTablesLeave) {
  Bytes file = goodFile();
  for (std::uint32_t i = 0; i < kFatSectorInFile; ++i) put(file, fatEntryAt(file, i), i + 1);
  put(file, fatEntryAt(file, kFatSectorInFile), kEndOfChain);
  put<std::uint32_t>(file, kNumMiniFatSectorsAt, 0);
  put<std::uint32_t>(file, kDirectoryAt, 0);
  EXPECT_EQ(readMessage(file), "loadDir: file is corrupt [2]");
}

TEST(DirectoryErrors, ASectorPastTheEndOfTheFile) {
  Bytes file = goodFile();
  put(file, fatEntryAt(file, kDirSectorInFile), std::uint32_t{50});
  put(file, fatEntryAt(file, 50), kEndOfChain);
  EXPECT_EQ(readMessage(file), "Xls::loadDir(): file is corrupt");
}

TEST(DirectoryErrors, SectorsTooSmallForAnEntry) {
  Bytes file(1024);
  const auto header = CompoundHeader().store();
  std::copy(header.begin(), header.end(), file.begin());
  put<std::uint16_t>(file, kSectorShiftAt, 6);
  put<std::uint32_t>(file, kNumFatSectorsAt, 1);
  put<std::uint32_t>(file, kDifatEntriesAt, 8);
  put<std::uint32_t>(file, kDirectoryAt, 0);
  put(file, sectorAt(file, 8), kEndOfChain);
  EXPECT_EQ(readMessage(file), "Xls::loadDir(): unexpected DirEntry found");
}

TEST(DirectoryErrors, NoStreamThatCouldBeRead) {
  EXPECT_EQ(readMessage(makeFile({{u"Other", pattern(5000)}})), "Xls::read(): EncryptionInfo section is not found");
  Bytes file = goodFile();
  put(file, kDirectoryAt, kEndOfChain);
  EXPECT_EQ(readMessage(file), "Xls::read(): EncryptionInfo section is not found");
}

TEST(StreamPlaces, AStreamWithoutAStartIsEmpty) {
  EXPECT_EQ(readMessage(makeFile({{u"Workbook", {}}})), "Xls::read(): stream is empty");
}

TEST(StreamPlaces, AStartOutsideTheFatIsAnError) {
  Bytes file = goodFile();
  put(file, dirEntryAt(file, 1) + kEntryStartAt, kOutside);
  EXPECT_EQ(readMessage(file), "Xls::read(): sector is out of fat");
}

TEST(StreamPlaces, AStartAtAMarkedSectorMovesForward) {
  for (const std::uint32_t mark : {kFatSector, kFreeSector, kEndOfChain}) {
    Bytes file = goodFile();
    put(file, fatEntryAt(file, 0), mark);
    put(file, fatEntryAt(file, 1), mark);
    Xls xls;
    xls.read(file);
    Bytes first(10);
    xls.read(first.data(), first.size());
    EXPECT_EQ(first, Bytes(file.begin() + 512 * 3, file.begin() + 512 * 3 + 10));
  }
}

TEST(StreamPlaces, MovingForwardPastTheFatIsAnError) {
  Bytes file = goodFile();
  put(file, dirEntryAt(file, 1) + kEntryStartAt, std::uint32_t{100});
  EXPECT_EQ(readMessage(file), "Xls::read(): sector is out of fat");
}

TEST(StreamPlaces, AMiniStreamNeedsADirectory) {
  const SectorTables empty;
  DirEntry entry(u"x", EntryType::stream, 0);
  entry.startingSectorLocation = 0;
  entry.streamSize = 10;
  EXPECT_EQ(messageOf([&] { runsOfStream(empty, entry); }), "Xls::goMiniSector(): _dir is empty");
  EXPECT_EQ(messageOf([&] { runsOfMiniStream(empty); }), "Xls::goMiniSector(): _dir is empty");
}

}  // namespace
}  // namespace rubrica::compound_test
