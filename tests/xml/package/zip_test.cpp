// The ZIP container and the codec: what is read, what is written, what is refused.
#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_limits.h"
#include "xml/zip_reader.h"
#include "xml/zip_writer.h"

namespace rubrica::package_test {
namespace {

// What reading every entry of an archive ends in.
std::string failureOf(const std::string& archive) {
  try {
    entriesOf(archive);
  } catch (const xlerror& error) {
    return error.what();
  }
  return "ok";
}

std::string written(std::vector<std::pair<std::string, std::string>> parts, std::string temporaryFile = {}) {
  std::vector<std::unique_ptr<BinaryFile>> files;
  platform::MemoryOutput output;
  ZipWriter writer(output, std::move(temporaryFile));
  for (auto& [name, content] : parts) {
    files.push_back(std::make_unique<BinaryFile>(content.data(), content.size()));
    writer.add(name, *files.back());
  }
  writer.finish();
  return {reinterpret_cast<const char*>(output.bytes().data()), output.bytes().size()};
}

std::string patternOf(std::size_t size) {
  std::string text;
  for (std::size_t i = 0; text.size() < size; ++i) text += "<c r=\"A" + std::to_string(i * 7919) + "\"/>";
  text.resize(size);
  return text;
}

TEST(ZipArchives, AreReadAsTheyWereBuilt) {
  const std::vector<TestEntry> entries = {
      {"[Content_Types].xml", "types"}, {"xl/a.xml", patternOf(100'000)}, {"xl/stored.bin", "raw", false}, {"e", ""}};
  const auto read = entriesOf(zipOf(entries));
  ASSERT_EQ(read.size(), entries.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    EXPECT_EQ(read[i].first, entries[i].name);
    EXPECT_EQ(read[i].second, entries[i].content);
  }
}

TEST(ZipArchives, AreWrittenInTheOrderOfTheirParts) {
  const std::string large = patternOf(3'000'000);
  const std::string archive = written({{"/b.xml", "text"}, {"/a/\xC3\xA4.xml", large}, {"/empty", ""}});
  const auto read = entriesOf(archive);
  ASSERT_EQ(read.size(), 3U);
  EXPECT_EQ(read[0], std::make_pair(std::string("b.xml"), std::string("text")));
  EXPECT_EQ(read[1], std::make_pair(std::string("a/\xC3\xA4.xml"), large));
  EXPECT_EQ(read[2].second, "");
  EXPECT_LT(archive.size(), large.size() / 4);
}

TEST(ZipArchives, AreTheSameBytesWheneverTheyAreWritten) {
  EXPECT_EQ(written({{"/a", "text"}}), written({{"/a", "text"}}));
}

TEST(ZipArchives, GoThroughATemporaryFileWithoutLeavingIt) {
  const test::TemporaryDirectory directory;
  const std::string large = patternOf(200'000);
  const std::string archive = written({{"/a", large}, {"/b", "x"}, {"/c", ""}}, directory.file("part.tmp").string());
  EXPECT_EQ(entriesOf(archive), entriesOf(written({{"/a", large}, {"/b", "x"}, {"/c", ""}})));
  EXPECT_EQ(directory.entryCount(), 0U);
}

TEST(ZipArchives, AreExtractedIntoFiles) {
  const test::TemporaryDirectory directory;
  const std::string content = patternOf(200'000);
  const std::string archive = zipOf({{"a", content}, {"b", content, false}});
  ZipReader reader(bytesOf(archive));
  for (const ZipEntry& entry : reader.entries()) {
    reader.extract(entry, directory.file("out").string());
    EXPECT_EQ(test::readText(directory.file("out")), content);
  }
}

TEST(ZipArchives, BackslashesAndAbsoluteNamesAreNormalised) {
  const auto read = entriesOf(zipOf({{"xl\\a.xml", "1"}, {"/xl/b.xml", "2"}, {"//c", "3"}}));
  ASSERT_EQ(read.size(), 3U);
  EXPECT_EQ(read[0].first, "xl/a.xml");
  EXPECT_EQ(read[1].first, "xl/b.xml");
  EXPECT_EQ(read[2].first, "c");
}

TEST(ZipArchives, EntriesOutsideTheirDirectoryAreLeftOut) {
  const auto read = entriesOf(zipOf(
      {{"../up", "1"}, {"xl/../../up", "2"}, {"xl\\..\\up", "3"}, {"./here", "4"}, {"xl/", ""}, {"xl/..a", "5"}}));
  ASSERT_EQ(read.size(), 1U);
  EXPECT_EQ(read[0].first, "xl/..a");
}

TEST(ZipArchives, WhatIsNoneIsSaidToBeNone) {
  EXPECT_EQ(failureOf(""), "data is empty");
  EXPECT_EQ(failureOf("no archive at all"), "can't read zip archive: Not a zip archive");
  EXPECT_EQ(failureOf("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 and more"),
            "not a zip archive but a compound file: an .xls or an encrypted workbook");
}

TEST(ZipArchives, EveryTruncationIsRefused) {
  const std::string archive = zipOf({{"a", patternOf(300)}, {"b", "text", false}});
  for (std::size_t size = 0; size < archive.size(); ++size) EXPECT_NE(failureOf(archive.substr(0, size)), "ok") << size;
}

TEST(ZipArchives, EveryFlippedByteEndsInSuccessOrAMessage) {
  const std::string archive = zipOf({{"a", patternOf(300)}, {"b", "text", false}});
  std::size_t refused = 0;
  for (std::size_t i = 0; i < archive.size(); ++i) {
    for (const int flip : {0x01, 0x80, 0xFF}) {
      std::string changed = archive;
      changed[i] = static_cast<char>(changed[i] ^ flip);
      if (failureOf(changed) != "ok") ++refused;
    }
  }
  EXPECT_GT(refused, archive.size());
}

TEST(ZipArchives, EncryptedAndUnknownEntriesAreRefused) {
  EXPECT_EQ(failureOf(zipOf({{.name = "a", .content = "text", .flags = 1}})), "zip entry /a is encrypted");
  EXPECT_EQ(failureOf(zipOf({{.name = "a", .content = "text", .method = 12}})),
            "zip entry /a uses an unknown compression");
}

TEST(ZipArchives, SizesAndSumsThatAreNotTrueAreRefused) {
  EXPECT_EQ(failureOf(zipOf({{.name = "a", .content = "text", .size = 5}})), "zip entry /a is damaged");
  EXPECT_EQ(failureOf(zipOf({{.name = "a", .content = "text", .size = 3}})), "zip entry /a is damaged");
  EXPECT_EQ(failureOf(zipOf({{.name = "a", .content = "text", .crc = 1}})), "zip entry /a is damaged");
  EXPECT_EQ(failureOf(zipOf({{.name = "a", .content = "text", .isDeflated = false, .crc = 1}})),
            "zip entry /a is damaged");
  EXPECT_EQ(failureOf(zipOf({{.name = "a", .content = "text", .size = 0xFFFFFFF0}})),
            "zip entry /a is damaged: its size can't be true");
}

TEST(ZipArchives, AnEntryOfZerosEndsBeforeItsMemoryIsTaken) {
  // 200 MB in an archive of 200 KB.
  const std::string archive = zipOf({{"a", std::string(std::size_t{200} << 20U, '\0')}});
  ASSERT_LT(archive.size(), std::size_t{1} << 20U);
  EXPECT_EQ(failureOf(archive), "zip archive expands to more than its size allows");
}

TEST(ZipArchives, ManyEntriesOfZerosEndToo) {
  std::vector<TestEntry> entries;
  const std::string megabyte(std::size_t{1} << 20U, '\0');
  for (int i = 0; i < 200; ++i) entries.push_back({"e" + std::to_string(i), megabyte});
  EXPECT_EQ(failureOf(zipOf(entries)), "zip archive expands to more than its size allows");
}

TEST(ZipArchives, EntriesThatShareTheirBytesAreRefused) {
  std::vector<TestEntry> entries = {{"e0", patternOf(100'000), false}};
  for (int i = 1; i < 100; ++i) entries.push_back({.name = "e" + std::to_string(i), .sharesBytesOf = 0});
  EXPECT_EQ(failureOf(zipOf(entries)), "zip archive is damaged: its entries overlap");
}

TEST(ZipArchives, TenThousandEntriesAreRead) {
  std::vector<TestEntry> entries;
  for (int i = 0; i < 10'000; ++i) entries.push_back({"e" + std::to_string(i), "x"});
  EXPECT_EQ(entriesOf(zipOf(entries)).size(), 10'000U);
}

// What reading every entry under these limits ends in.
std::string failureUnder(const PackageLimits& limits, const std::string& archive) {
  try {
    ZipReader reader(bytesOf(archive), limits);
    for (const ZipEntry& entry : reader.entries()) reader.read(entry);
  } catch (const xlerror& error) {
    return error.what();
  }
  return "ok";
}

TEST(ZipLimits, EntriesEndAtTheirNumber) {
  const std::string archive = zipOf({{"a", ""}, {"b", ""}, {"c", ""}});
  EXPECT_EQ(failureUnder({.entries = 3}, archive), "ok");
  EXPECT_EQ(failureUnder({.entries = 2}, archive), "zip archive has too many entries");
}

TEST(ZipLimits, PartsEndAtTheirSize) {
  const std::string archive = zipOf({{"a", patternOf(1000)}});
  EXPECT_EQ(failureUnder({.partSize = 1000}, archive), "ok");
  EXPECT_EQ(failureUnder({.partSize = 999}, archive), "zip entry /a is too large");
}

TEST(ZipLimits, WhatIsFreeToExpandToHoldsForAllPartsTogether) {
  const std::string archive = zipOf({{"a", patternOf(1000)}, {"b", patternOf(500)}});
  EXPECT_EQ(failureUnder({.freeExpansion = 1500, .expansionRatio = 0}, archive), "ok");
  EXPECT_EQ(failureUnder({.freeExpansion = 1499, .expansionRatio = 0}, archive),
            "zip archive expands to more than its size allows");
}

TEST(ZipLimits, BeyondThatTheArchivesSizeCounts) {
  const std::string content = patternOf(100'000);
  const std::string archive = zipOf({{"a", content}});
  const std::uint64_t ratio = content.size() / archive.size();
  EXPECT_EQ(failureUnder({.freeExpansion = 0, .expansionRatio = ratio + 1}, archive), "ok");
  EXPECT_EQ(failureUnder({.freeExpansion = 0, .expansionRatio = ratio}, archive),
            "zip archive expands to more than its size allows");
}

TEST(ZipLimits, DeflateCantClaimMoreThanItCanDo) {
  const std::string archive = zipOf({{"a", "text"}});
  const std::uint64_t compressed = ZipReader(bytesOf(archive)).entries().at(0).compressedSize;
  const auto claimed = [&](std::uint64_t size) {
    return failureOf(zipOf({{.name = "a", .content = "text", .size = static_cast<std::uint32_t>(size)}}));
  };
  EXPECT_EQ(claimed(compressed * kMaxDeflateRatio), "zip entry /a is damaged");
  EXPECT_EQ(claimed(compressed * kMaxDeflateRatio + 1), "zip entry /a is damaged: its size can't be true");
}

// Takes as many bytes as it is told and then fails, as a full disk does.
class FullOutput final : public platform::OutputStream {
 public:
  explicit FullOutput(std::size_t room) : _room(room) {}
  bool write(const void* data, std::size_t size) override {
    return _memory.bytes().size() + size <= _room && _memory.write(data, size);
  }
  bool seek(std::uint64_t position) override { return _memory.seek(position); }
  std::int64_t tell() const override { return _memory.tell(); }
  bool commit() override { return true; }

 private:
  std::size_t _room;
  platform::MemoryOutput _memory;
};

TEST(ZipArchives, AFullDiskIsReportedWhereverItIsMet) {
  const std::size_t whole = written({{"/a", patternOf(5000)}, {"/b", "text"}}).size();
  BinaryFile first(patternOf(5000).data(), 5000), second("text", 4);
  for (std::size_t room = 0; room <= whole; ++room) {
    FullOutput output(room);
    ZipWriter writer(output);
    writer.add("/a", first);
    writer.add("/b", second);
    if (room == whole) {
      EXPECT_NO_THROW(writer.finish());
    } else {
      EXPECT_THROW(writer.finish(), xlerror) << room;
    }
  }
}

class FailingPart final : public XFile {
 public:
  void save(std::string&) override { throw xlerror("no part"); }
  void write(std::ostream&) override { throw xlerror("no part"); }
};

TEST(ZipArchives, APartThatCantBeSavedGivesItsOwnMessage) {
  platform::MemoryOutput output;
  ZipWriter writer(output);
  FailingPart part;
  writer.add("/a", part);
  try {
    writer.finish();
    FAIL();
  } catch (const xlerror& error) {
    EXPECT_STREQ(error.what(), "no part");
  }
}

}  // namespace
}  // namespace rubrica::package_test
