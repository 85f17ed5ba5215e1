#include "compound/file_layout.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

TEST(FileLayout, LeavesRoomInTheFat) {
  const FileLayout smallest = planLayout(8, 2);
  EXPECT_EQ(smallest.dirSectors, 1U);
  EXPECT_EQ(smallest.fatSectors, 3U);  // 1 for the data, 1 for the FAT, 1 since that is no multiple of 128
  EXPECT_EQ(smallest.difatSectors, 0U);
  EXPECT_EQ(planLayout(8, 5).dirSectors, 2U);
  EXPECT_EQ(planLayout(127, 4).fatSectors, 3U);
  EXPECT_EQ(planLayout(128, 4).fatSectors, 4U);
}

TEST(FileLayout, TakesItsExtraSectorsForLargeFats) {
  // 128 sectors of FAT for the FAT: no remainder, 128 / 128 more, and three for more than 100.
  const std::uint32_t dataSectors = 128 * 128 * 128 - 1;
  EXPECT_EQ(planLayout(dataSectors, 4).fatSectors, 128U * 128 + 128 + 1 + 3);
  EXPECT_EQ(planLayout(100 * 128 * 128 - 1, 4).fatSectors, 100U * 128 + 100 + 1);
  EXPECT_EQ(planLayout(101 * 128 * 128 - 1, 4).fatSectors, 101U * 128 + 101 + 1 + 3);
}

TEST(FileLayout, NeedsDifatSectorsPastTheHeadersEntries) {
  const auto difatSectors = [](std::uint32_t forData) { return planLayout(forData * 128 - 1, 4).difatSectors; };
  EXPECT_EQ(planLayout(107 * 128 - 1, 4).fatSectors, 109U);
  EXPECT_EQ(difatSectors(107), 0U);
  EXPECT_EQ(difatSectors(108), 1U);
  EXPECT_EQ(planLayout(233 * 128 - 1, 4).fatSectors, 109U + 127);
  EXPECT_EQ(difatSectors(233), 1U);
  EXPECT_EQ(difatSectors(234), 2U);
}

TEST(FileLayout, TheFatMarksEverySectorByItsUse) {
  FileLayout layout;
  layout.dataSectors = 3;
  layout.difatSectors = 1;
  layout.fatSectors = 1;
  layout.dirSectors = 2;
  std::vector<std::uint32_t> fat = buildFat(layout);
  ASSERT_EQ(fat.size(), 128U);
  const std::vector<std::uint32_t> used{1, 2, kEndOfChain, kDifatSector, kFatSector, 6, kEndOfChain};
  EXPECT_TRUE(std::equal(used.begin(), used.end(), fat.begin()));
  EXPECT_EQ(std::count(fat.begin() + 7, fat.end(), kFreeSector), 121);
  cutChain(fat, 1, "text");
  EXPECT_EQ(fat[0], kEndOfChain);
}

TEST(FileLayout, SectorsThatTheFatHasNoEntryForAreAnError) {
  FileLayout layout;
  layout.dataSectors = 127;
  layout.fatSectors = 1;
  EXPECT_EQ(messageOf([&] { buildFat(layout); }), "no failure");
  layout.dirSectors = 1;
  EXPECT_EQ(messageOf([&] { buildFat(layout); }), "Xls::close(): sector is out of fat");
}

TEST(FileLayout, FatSectorsThatTheDifatHasNoEntryForAreAnError) {
  FileLayout layout;
  layout.fatSectors = 109;
  CompoundHeader header;
  EXPECT_TRUE(buildDifat(layout, header).empty());
  EXPECT_EQ(header.difat[108], 108U);
  layout.fatSectors = 110;
  EXPECT_EQ(messageOf([&] { buildDifat(layout, header); }), "Xls::close(): difat index is out of range");
}

TEST(FileLayout, AStreamWithNoSectorBeforeItCantBeCutOff) {
  std::vector<std::uint32_t> fat(128);
  EXPECT_EQ(messageOf([&] { cutChain(fat, 0, "the text"); }), "the text");
  EXPECT_EQ(messageOf([&] { cutChain(fat, 129, "the text"); }), "the text");
  EXPECT_EQ(messageOf([&] { cutChain(fat, 128, "the text"); }), "no failure");
}

}  // namespace
}  // namespace rubrica::compound_test
