#include "compound/dir_entry.h"

#include <gtest/gtest.h>

#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

TEST(DirEntryNames, OneToThirtyOneCharactersAreTaken) {
  const std::u16string longest(31, u'x');
  const DirEntry entry(longest.c_str(), EntryType::stream, 7);
  EXPECT_EQ(entry.nameText(), longest);
  EXPECT_EQ(entry.nameLength, 64);
  EXPECT_EQ(DirEntry(u"a", EntryType::stream, 7).nameLength, 4);
}

TEST(DirEntryNames, EmptyNullAndLongerNamesAreRefused) {
  const std::u16string tooLong(32, u'x');
  for (const char16_t* name : {static_cast<const char16_t*>(nullptr), u"", tooLong.c_str()}) {
    EXPECT_EQ(messageOf([name] { DirEntry(name, EntryType::stream, 0); }), "DirEntry::DirEntry(): incorrect name");
  }
}

TEST(DirEntryNames, AreComparedWithoutRegardToCase) {
  const DirEntry entry(u"WorkBook", EntryType::stream, 0);
  EXPECT_TRUE(entry.isNamed(u"workbook"));
  EXPECT_TRUE(entry.isNamed(u"WORKBOOK"));
  EXPECT_FALSE(entry.isNamed(u"Workboo"));
  EXPECT_FALSE(entry.isNamed(u"Workbook2"));
  EXPECT_FALSE(DirEntry(u"[", EntryType::stream, 0).isNamed(u"{"));
}

TEST(DirEntryNames, ANameWithoutATerminatorEndsWithItsField) {
  DirEntry entry;
  entry.name.fill('n');
  EXPECT_EQ(entry.nameText(), std::u16string(32, u'n'));
}

TEST(DirEntry, IsNewWithoutSiblingsOrBytes) {
  const DirEntry entry(u"Root Entry", EntryType::root, 1);
  EXPECT_EQ(entry.objectType, 5);
  EXPECT_EQ(entry.color, 1);
  EXPECT_EQ(entry.leftSibling, 0xFFFFFFFF);
  EXPECT_EQ(entry.rightSibling, 0xFFFFFFFF);
  EXPECT_EQ(entry.child, 1U);
  EXPECT_EQ(entry.startingSectorLocation, 0xFFFFFFFE);
  EXPECT_EQ(entry.streamSize, 0U);
}

TEST(DirEntry, TakesItsBytesInTheFilesOrder) {
  Bytes bytes(DirEntry::kDiskSize);
  put<std::uint16_t>(bytes, 0, u'B');
  put<std::uint16_t>(bytes, 64, 4);
  put<std::uint8_t>(bytes, 66, 2);
  put<std::uint8_t>(bytes, 67, 1);
  put<std::uint32_t>(bytes, 68, 11);
  put<std::uint32_t>(bytes, 72, 12);
  put<std::uint32_t>(bytes, 76, 13);
  put<std::uint8_t>(bytes, 80, 0xC1);
  put<std::uint32_t>(bytes, 96, 14);
  put<std::uint64_t>(bytes, 100, 15);
  put<std::uint64_t>(bytes, 108, 16);
  put<std::uint32_t>(bytes, 116, 17);
  put<std::uint64_t>(bytes, 120, 18);
  const DirEntry entry = DirEntry::load(bytes.data());
  EXPECT_EQ(entry.nameText(), u"B");
  EXPECT_EQ(entry.leftSibling, 11U);
  EXPECT_EQ(entry.rightSibling, 12U);
  EXPECT_EQ(entry.child, 13U);
  EXPECT_EQ(entry.classId[0], 0xC1);
  EXPECT_EQ(entry.stateBits, 14U);
  EXPECT_EQ(entry.creationTime, 15U);
  EXPECT_EQ(entry.modifiedTime, 16U);
  EXPECT_EQ(entry.startingSectorLocation, 17U);
  EXPECT_EQ(entry.streamSize, 18U);
  Bytes stored(DirEntry::kDiskSize);
  entry.store(stored.data());
  EXPECT_EQ(stored, bytes);
}

TEST(DirEntry, LosesTheHighHalfOfAStreamSize) {
  Bytes bytes(DirEntry::kDiskSize);
  put<std::uint64_t>(bytes, 120, 0x0000000700001234);
  EXPECT_EQ(DirEntry::load(bytes.data()).streamSize, 0x1234U);
}

}  // namespace
}  // namespace rubrica::compound_test
