#include <gmock/gmock.h>

#include "tests/biff/shared_strings/sst_fixture.h"

namespace rubrica::test {
namespace {

TEST(SstRecords, ANewBookWritesEmptyCounts) {
  SstBook book;
  EXPECT_EQ(book.written(), (std::vector<Record>{{252, BytesBuilder().u32(0).u32(0)}}));
}

// The worked example of docs/formats/shared_strings.md.
TEST(SstRecords, AddedTextsAreWrittenInTwoByteForm) {
  SstBook book;
  book.strings.add(u"Tea");
  book.strings.add(u"Tea");
  book.strings.add(u"");
  const Bytes body = BytesBuilder().u32(3).u32(2).u16(3).u8(1).u8('T').u8(0).u8('e').u8(0).u8('a').u8(0).u16(0).u8(1);
  EXPECT_EQ(book.written(), (std::vector<Record>{{252, body}}));
}

TEST(SstRecords, AreWrittenAsTheyWereRead) {
  BytesBuilder body;
  body.u32(9).u32(5);
  body.u16(2).u8(0).text("ab");
  body.u16(1).u8(kWide).u16(0x4E2D);
  body.u16(3).u8(kRich).u16(2).text("abc").u16(0).u16(5).u16(2).u16(6);
  body.u16(1).u8(kWide | kExt).u32(6).u16(0x6771).text("phonet");
  body.u16(2).u8(kRich | kExt).u16(1).u32(3).text("xy").u16(1).u16(7).text("pho");
  SstBook book;
  ASSERT_EQ(book.read({{252, body}}), "nothing thrown");
  EXPECT_EQ(book.strings.cstTotal(), 9u);
  EXPECT_EQ(std::u16string(book.strings.text(0)), u"ab");
  EXPECT_EQ(std::u16string(book.strings.text(1)), u"\u4E2D");
  EXPECT_EQ(book.strings.get(2).ext->runs[1].font, 6);
  EXPECT_EQ(book.strings.get(3).ext->phonetic.size(), 6u);
  EXPECT_EQ(book.written(), (std::vector<Record>{{252, body}}));
}

TEST(SstRecords, RunsAndPhoneticDataMayBeEmpty) {
  BytesBuilder body;
  body.u32(2).u32(2).u16(1).u8(kRich | kExt).u16(0).u32(0).text("a");
  body.u16(0).u8(kRich).u16(1).u16(0).u16(1);
  SstBook book;
  ASSERT_EQ(book.read({{252, body}}), "nothing thrown");
  EXPECT_EQ(book.strings.get(1).cch, 0);
  EXPECT_EQ(book.written(), (std::vector<Record>{{252, body}}));
}

TEST(SstRecords, ASizeBelowTheCountsFails) {
  for (std::size_t size = 0; size < 8; ++size) {
    SstBook book;
    EXPECT_EQ(book.read({{252, Bytes(size)}}), "SST size is incorrect");
  }
}

TEST(SstRecords, MoreStringsThanThereAreFailAtTheNextRecord) {
  SstBook book;
  EXPECT_EQ(book.read({{252, BytesBuilder().u32(1).u32(0xFFFFFFFF).u16(1).u8(0).text("a").u8(7)}}),
            "readInt16: CONTINUE record not found");
  EXPECT_EQ(book.strings.cstUnique(), 1u);
}

TEST(SstRecords, LengthsBeyondTheRecordFail) {
  const auto failure = [](const Bytes& entry) {
    SstBook book;
    return book.read({{252, BytesBuilder().u32(1).u32(1).bytes(entry)}});
  };
  const std::string noBytes = "readWithContinueRecords: CONTINUE record not found";
  EXPECT_EQ(failure(BytesBuilder().u16(0xFFFF).u8(0).text("abc")), noBytes);
  EXPECT_EQ(failure(BytesBuilder().u16(2)), noBytes);
  EXPECT_EQ(failure(BytesBuilder().u16(2).u8(0)), noBytes);
  EXPECT_EQ(failure(BytesBuilder().u16(1).u8(kRich).u8(1)), "readInt16: CONTINUE record not found");
  EXPECT_EQ(failure(BytesBuilder().u16(1).u8(kRich).u16(0xFFFF).text("a").u16(0)),
            "readInt16: CONTINUE record not found");
  EXPECT_EQ(failure(BytesBuilder().u16(1).u8(kExt).u16(1)), "readInt32: CONTINUE record not found");
  EXPECT_EQ(failure(BytesBuilder().u16(1).u8(kExt).u32(0xFFFFFFFF).text("abcdef")), noBytes);
  EXPECT_EQ(failure(BytesBuilder().u16(2).u8(kWide).text("abc")), "error in XLUnicodeRichExtendedString record");
}

TEST(SstRecords, ATableThatTheStreamCutsOffFails) {
  RecordStream stream({{252, BytesBuilder().u32(1).u32(0xFFFFFFFF).fill(4000, 0)}});
  std::uint16_t size = 0;
  Xls& xls = stream.firstRecord(size);
  SstBook book;
  EXPECT_THAT(errorOf([&] { readSst(xls, 65535, book.strings); }), testing::EndsWith("CONTINUE record not found"));
  EXPECT_LT(book.strings.cstUnique(), 2000u);
}

TEST(SstRecords, BytesBehindTheLastStringAreSkipped) {
  SstBook book;
  RecordStream stream({{252, BytesBuilder().u32(1).u32(1).u16(1).u8(0).text("a").fill(20, 9)}, {255, Bytes(2)}});
  std::uint16_t size = 0;
  Xls& xls = stream.firstRecord(size);
  readSst(xls, size, book.strings);
  EXPECT_EQ(xls.peekRecordId(), 255);
}

TEST(ExtSstRecords, ANewBookWritesAnEmptyOne) {
  RecordStream stream([](Xls& xls) { ExtSst().write(xls); });
  EXPECT_EQ(stream.records(), (std::vector<Record>{{255, BytesBuilder().u16(0)}}));
}

std::vector<Record> rewritten(const std::vector<Record>& records, std::size_t items) {
  RecordStream stream(records);
  std::uint16_t size = 0;
  Xls& xls = stream.firstRecord(size);
  ExtSst table;
  table.read(xls, size);
  EXPECT_EQ(table.items.size(), items);
  EXPECT_EQ(xls.peekRecordId(), id::kEof);
  RecordStream again([&](Xls& out) { table.write(out); });
  return again.records();
}

TEST(ExtSstRecords, AreWrittenAsTheyWereRead) {
  const Bytes body = BytesBuilder().u16(8).u32(0x1234).u16(12).u16(0).u32(0x5678).u16(99).u16(1);
  EXPECT_EQ(rewritten({{255, body}}, 2), (std::vector<Record>{{255, body}}));
}

TEST(ExtSstRecords, GoOnInContinueRecords) {
  const Bytes first(8224, std::byte{3}), second(8000, std::byte{4}), tail(2, std::byte{5});
  EXPECT_EQ(rewritten({{255, first}, {60, second}, {60, tail}}, 2028),
            (std::vector<Record>{{255, first}, {60, BytesBuilder().bytes(second).bytes(tail)}}));
}

TEST(ExtSstRecords, PartOfAnItemAtTheEndIsDropped) {
  const Bytes whole = BytesBuilder().u16(8).u32(1).u16(2).u16(3);
  EXPECT_EQ(rewritten({{255, BytesBuilder().bytes(whole).u32(7)}}, 1), (std::vector<Record>{{255, whole}}));
  RecordStream stream({{255, Bytes(1)}});
  std::uint16_t size = 0;
  Xls& xls = stream.firstRecord(size);
  ExtSst table;
  EXPECT_EQ(errorOf([&] { table.read(xls, size); }), "ExtSST size is incorrect");
}

}  // namespace
}  // namespace rubrica::test
