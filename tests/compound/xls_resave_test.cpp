#include <algorithm>

#include <gtest/gtest.h>

#include "compound/stream_runs.h"
#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

// The bytes of a stream by name, found the way any reader finds them: through the header's cutoff and the tables.
Bytes streamOf(const Bytes& file, std::u16string_view name) {
  SectorTables tables;
  tables.load(file);
  const auto index = tables.findEntry(name);
  if (!index || tables.dir[*index].streamSize == 0) return {};
  const DirEntry& entry = tables.dir[*index];
  StreamCursor cursor;
  cursor.open(file, runsOfStream(tables, entry));
  Bytes bytes(static_cast<std::size_t>(entry.streamSize));
  bytes.resize(cursor.read(bytes.data(), bytes.size()));
  return bytes;
}

const DirEntry& entryOf(const Xls& xls, std::u16string_view name) {
  return *std::find_if(xls.directory().begin(), xls.directory().end(),
                       [name](const DirEntry& entry) { return entry.isNamed(name); });
}

std::vector<std::u16string> carriedNames(const Bytes& file) {
  Xls xls;
  xls.read(file);
  xls.captureOtherStreams();
  std::vector<std::u16string> names;
  for (const auto& [key, bytes] : xls.otherStreams()) names.push_back(key.first);
  return names;
}

const Bytes kMain = pattern(5000);
const Bytes kNewMain = pattern(9000, 9);

TEST(CarriedStreams, FromFourKilobytesOnTheyAreCarried) {
  const Bytes atCutoff = pattern(4096, 2);
  const Bytes under = pattern(4095, 3);
  const Bytes file = makeFile({{u"Workbook", kMain}, {u"Under", under}, {u"AtCutoff", atCutoff}});
  EXPECT_EQ(carriedNames(file), (std::vector<std::u16string>{u"AtCutoff", u"Root Entry"}));
  const Bytes saved = resavedFile(file, kNewMain);
  EXPECT_EQ(streamOf(saved, u"Workbook"), kNewMain);
  EXPECT_EQ(streamOf(saved, u"AtCutoff"), atCutoff);
}

TEST(CarriedStreams, SmallOnesLiveOnInsideTheBytesOfTheRoot) {
  const Bytes small = pattern(700, 2);
  const Bytes tiny = pattern(1, 3);
  for (const bool reversed : {false, true}) {
    const Bytes file = makeFile({{u"Small", small}, {u"Workbook", kMain}, {u"Tiny", tiny}}, {.reversed = reversed});
    Bytes saved = resavedFile(file, kNewMain);
    saved = resavedFile(saved, kNewMain);
    EXPECT_EQ(streamOf(saved, u"Small"), small);
    EXPECT_EQ(streamOf(saved, u"Tiny"), tiny);
    EXPECT_EQ(streamOf(saved, u"Workbook"), kNewMain);
  }
}

TEST(CarriedStreams, AMainStreamOfTheMiniStreamMovesOut) {
  const Bytes small = pattern(700, 2);
  const Bytes file = makeFile({{u"Small", small}, {u"Workbook", pattern(100)}});
  const Bytes saved = resavedFile(file, pattern(100, 9));
  Bytes main = streamOf(saved, u"Workbook");
  ASSERT_EQ(main.size(), 4096U);
  main.resize(100);
  EXPECT_EQ(main, pattern(100, 9));
  EXPECT_EQ(streamOf(saved, u"Small"), small);
}

TEST(CarriedStreams, WithARootOfAnotherNameTheSmallOnesAreEmptied) {
  const Bytes large = pattern(6000, 4);
  const Bytes file =
      makeFile({{u"Workbook", kMain}, {u"Small", pattern(700, 2)}, {u"Large", large}}, {.rootName = u"R"});
  EXPECT_EQ(carriedNames(file), std::vector<std::u16string>{u"Large"});
  const Bytes saved = resavedFile(file, kNewMain);
  Xls xls;
  xls.read(saved);
  for (const std::u16string_view name : {u"R", u"Small"}) {
    EXPECT_EQ(entryOf(xls, name).streamSize, 0U);
    EXPECT_EQ(entryOf(xls, name).startingSectorLocation, 0xFFFFFFFE);
  }
  EXPECT_EQ(get<std::uint32_t>(saved, kNumMiniFatSectorsAt), 0U);
  EXPECT_EQ(streamOf(saved, u"Large"), large);
  EXPECT_EQ(streamOf(saved, u"Workbook"), kNewMain);
}

TEST(CarriedStreams, ALargeRootOfAnyNameIsCarried) {
  const Bytes small = pattern(3000, 2);
  const Bytes other = pattern(3000, 3);
  Bytes file = makeFile({{u"Workbook", kMain}, {u"Small", small}, {u"Other", other}}, {.rootName = u"ROOT entry"});
  EXPECT_EQ(carriedNames(file), std::vector<std::u16string>{u"ROOT entry"});
  EXPECT_EQ(streamOf(resavedFile(file, kNewMain), u"Other"), other);
  file = makeFile({{u"Workbook", kMain}, {u"Small", small}, {u"Other", other}}, {.rootName = u"R"});
  EXPECT_EQ(carriedNames(file), std::vector<std::u16string>{u"R"});
  EXPECT_EQ(streamOf(resavedFile(file, kNewMain), u"Other"), other);
}

TEST(CarriedStreams, WithoutCaptureNothingIsCarriedAndNothingPointsAstray) {
  const Bytes file = makeFile({{u"Workbook", kMain}, {u"Small", pattern(700)}, {u"Large", pattern(6000)}});
  Xls xls;
  xls.read(file);
  platform::MemoryOutput output;
  xls.reset(false);
  xls.attach(output);
  xls.start();
  xls.write(kNewMain.data(), kNewMain.size());
  xls.close();
  Xls back;
  back.read(output.bytes());
  for (const std::u16string_view name : {u"Root Entry", u"Small", u"Large"}) {
    EXPECT_EQ(entryOf(back, name).streamSize, 0U);
    EXPECT_EQ(entryOf(back, name).startingSectorLocation, 0xFFFFFFFE);
  }
}

TEST(CarriedStreams, StreamsOfOneNameInSeveralStoragesAreAllCarried) {
  Bytes file = makeFile({{u"Workbook", kMain},
                         {u"Package", pattern(5000, 2)},
                         {u"Package", pattern(6000, 3)},
                         {u"Workbook", pattern(7000, 4)}});
  const Bytes saved = resavedFile(file, kNewMain);
  Xls xls;
  xls.read(saved);
  xls.captureOtherStreams();
  ASSERT_EQ(xls.otherStreams().size(), 3U);
  EXPECT_EQ(xls.otherStreams().at({u"Package", 2}), pattern(5000, 2));
  EXPECT_EQ(xls.otherStreams().at({u"Package", 3}), pattern(6000, 3));
  EXPECT_EQ(xls.otherStreams().at({u"Workbook", 4}), pattern(7000, 4));
  EXPECT_EQ(streamOf(saved, u"Workbook"), kNewMain);
}

TEST(CarriedStreams, StoragesUnusedEntriesAndStreamsWithoutBytesAreNot) {
  const Bytes file = makeFile({{u"Workbook", kMain}, {u"A", pattern(5000)}, {u"B", pattern(5000)}, {u"C", {}}});
  EXPECT_EQ(carriedNames(file), (std::vector<std::u16string>{u"A", u"B"}));
  const auto namesWith = [&](std::uint32_t entry, std::size_t field, auto value) {
    // The directory takes two sectors: entry 4 is the first of the second one.
    Bytes changed = file;
    put(changed, dirEntryAt(changed, entry) + field, value);
    return carriedNames(changed);
  };
  const std::vector<std::u16string> onlyB{u"B"};
  EXPECT_EQ(namesWith(2, kEntryTypeAt, std::uint8_t{0}), onlyB);
  EXPECT_EQ(namesWith(2, kEntryTypeAt, std::uint8_t{1}), onlyB);
  EXPECT_EQ(namesWith(2, kEntryStartAt, kEndOfChain), onlyB);
  EXPECT_EQ(namesWith(2, kEntryStartAt, kFreeSector), onlyB);
  EXPECT_EQ(namesWith(2, kEntrySizeAt, std::uint32_t{0}), onlyB);
}

TEST(CarriedStreams, OneUnderAHigherCutoffOfTheHeaderIsLost) {
  Bytes file = makeFile({{u"Workbook", kMain}, {u"A", pattern(5000)}, {u"B", pattern(6000)}});
  put<std::uint32_t>(file, kMiniStreamCutoffAt, 5001);
  EXPECT_EQ(carriedNames(file), std::vector<std::u16string>{u"B"});
}

TEST(CarriedStreams, AStartOutsideTheFatIsAnError) {
  Bytes file = makeFile({{u"Workbook", kMain}, {u"A", pattern(5000)}});
  put<std::uint32_t>(file, dirEntryAt(file, 2) + kEntryStartAt, 4000);
  Xls xls;
  xls.read(file);
  EXPECT_EQ(messageOf([&] { xls.captureOtherStreams(); }), "Xls::read(): sector is out of fat");
}

TEST(CarriedStreams, AStreamCutShortIsCarriedAsFarAsItGoes) {
  Bytes file = makeFile({{u"Workbook", kMain}, {u"A", pattern(5000)}});
  put<std::uint32_t>(file, dirEntryAt(file, 2) + kEntrySizeAt, 1'000'000'000);
  Xls xls;
  xls.read(file);
  xls.captureOtherStreams();
  EXPECT_EQ(xls.otherStreams().at({u"A", 2}).size(), 5120U);
}

TEST(CarriedStreams, AStreamCutUnderFourKilobytesIsFilledUpWithZeros) {
  const Bytes large = pattern(5000, 2);
  Bytes file = makeFile({{u"Workbook", kMain}, {u"A", large}});
  put(file, fatEntryAt(file, 11), kEndOfChain);  // two of its ten sectors are left
  Bytes back = streamOf(resavedFile(file, kNewMain), u"A");
  ASSERT_EQ(back.size(), 4096U);
  EXPECT_TRUE(std::equal(back.begin(), back.begin() + 1024, large.begin()));
  EXPECT_EQ(Bytes(back.begin() + 1024, back.end()), Bytes(3072));
}

TEST(CarriedStreams, ManyEntriesOfOneChainCopyNoMoreThanTheFile) {
  std::vector<TestStream> streams{{u"Workbook", kMain}};
  for (char16_t c = 0; c < 200; ++c) streams.push_back({u"S" + std::u16string(1, char16_t(u'\u0100' + c)), {}});
  Bytes file = makeFile(streams);
  for (std::uint32_t i = 2; i < 202; ++i) {
    put<std::uint32_t>(file, dirEntryAt(file, i) + kEntryStartAt, 0);
    put<std::uint32_t>(file, dirEntryAt(file, i) + kEntrySizeAt, 5000);
  }
  Xls xls;
  xls.read(file);
  xls.captureOtherStreams();
  std::size_t total = 0;
  for (const auto& [key, bytes] : xls.otherStreams()) total += bytes.size();
  EXPECT_LE(total, file.size());
  EXPECT_GT(total, 0U);
}

TEST(CarriedStreams, MiniSectorsOfAnotherSizeAreNotCarriedOver) {
  Bytes file = makeFile({{u"Workbook", kMain}, {u"Small", pattern(700)}});
  put<std::uint16_t>(file, kMiniSectorShiftAt, 5);
  const Bytes saved = resavedFile(file, kNewMain);
  EXPECT_EQ(get<std::uint32_t>(saved, kNumMiniFatSectorsAt), 0U);
  EXPECT_TRUE(streamOf(saved, u"Small").empty());
}

TEST(CarriedStreams, FilesOfLargeSectorsAreWrittenWithSmallOnes) {
  const Bytes small = pattern(3000, 2);
  const Bytes large = pattern(10'000, 3);
  const Bytes file = makeFile({{u"Workbook", kMain}, {u"Small", small}, {u"Large", large}}, {.sectorShift = 12});
  const Bytes saved = resavedFile(file, kNewMain);
  EXPECT_EQ(sectorSizeOf(saved), 512U);
  EXPECT_EQ(streamOf(saved, u"Small"), small);
  EXPECT_EQ(streamOf(saved, u"Large"), large);
  EXPECT_EQ(streamOf(saved, u"Workbook"), kNewMain);
}

TEST(CarriedStreams, ANewDirectoryDropsThem) {
  Xls xls;
  const Bytes file = makeFile({{u"Workbook", kMain}, {u"A", pattern(5000)}});
  xls.read(file);
  xls.captureOtherStreams();
  EXPECT_EQ(xls.otherStreams().size(), 1U);
  xls.reset(true);
  EXPECT_TRUE(xls.otherStreams().empty());
  EXPECT_EQ(xls.directory().size(), 2U);
  EXPECT_EQ(xls.directory()[0].nameText(), u"Root Entry");
  EXPECT_EQ(xls.directory()[0].objectType, 5);
  EXPECT_EQ(xls.directory()[0].child, 1U);
  EXPECT_EQ(xls.directory()[1].nameText(), u"Workbook");
  EXPECT_EQ(xls.directory()[1].objectType, 2);
}

TEST(CarriedStreams, WithNothingBeforeThemTheyCantBeCutOff) {
  const auto closeWithoutMain = [](const Bytes& file) {
    return messageOf([&file] {
      Xls xls;
      xls.read(file);
      xls.captureOtherStreams();
      platform::MemoryOutput output;
      xls.reset(false);
      xls.attach(output);
      xls.close();
    });
  };
  EXPECT_EQ(closeWithoutMain(makeFile({{u"Workbook", kMain}, {u"A", pattern(5000)}})),
            "startingSectorLocation is out of range");
}

TEST(CarriedStreams, ABookStreamStaysOneWhenSaved) {
  const Bytes saved = resavedFile(makeFile({{u"Book", kMain}}), kNewMain);
  EXPECT_EQ(streamOf(saved, u"Book"), kNewMain);
  EXPECT_TRUE(streamOf(saved, u"Workbook").empty());
}

}  // namespace
}  // namespace rubrica::compound_test
