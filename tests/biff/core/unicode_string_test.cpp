#include "biff/unicode_string.h"

#include <gtest/gtest.h>

#include "tests/biff/record_stream.h"

namespace rubrica {
namespace {

using test::Bytes;
using test::BytesBuilder;
using test::errorOf;
using test::Record;
using test::RecordStream;

constexpr std::uint16_t kAnyId = 516;

// Reads a string from the first record of a stream.
struct ReadResult {
  XLUnicodeString string;
  std::uint16_t remaining = 0;
};
ReadResult readString(RecordPool& pool, const std::vector<Record>& records, const TextForm& form = {},
                      bool byteLength = false) {
  RecordStream stream(records);
  ReadResult result;
  Xls& xls = stream.firstRecord(result.remaining);
  result.string.byteLength = byteLength;
  result.string.read(xls, pool, result.remaining, form);
  return result;
}

TEST(UnicodeStrings, AreReadInBothWidths) {
  RecordPool pool;
  EXPECT_EQ(readString(pool, {{kAnyId, BytesBuilder().u16(3).u8(0).text("abc")}}).string.view(), u"abc");
  EXPECT_EQ(readString(pool, {{kAnyId, BytesBuilder().u16(2).u8(1).wide(u"漢字")}}).string.view(), u"漢字");
  EXPECT_EQ(readString(pool, {{kAnyId, BytesBuilder().u16(1).u8(0).u8(0xE9)}}).string.view(), u"é");
}

TEST(UnicodeStrings, GoOnInContinueRecordsUnderTheirFirstFlags) {
  RecordPool pool;
  const auto result = readString(pool, {{kAnyId, BytesBuilder().u16(6).u8(1).wide(u"abc")},
                                        {id::kContinue, BytesBuilder().wide(u"de")},
                                        {id::kContinue, BytesBuilder().wide(u"f").u8(9)}});
  EXPECT_EQ(result.string.view(), u"abcdef");
  EXPECT_EQ(result.remaining, 1);
}

TEST(UnicodeStrings, FailWhereNoContinueFollows) {
  RecordPool pool;
  EXPECT_EQ(
      errorOf([&] {
        readString(pool, {{kAnyId, BytesBuilder().u16(6).u8(0).text("abc")}, {kAnyId, BytesBuilder().text("def")}});
      }),
      "error in XLUnicodeString record #1");
}

TEST(UnicodeStrings, FailWhereARecordBoundarySplitsACharacter) {
  RecordPool pool;
  EXPECT_EQ(errorOf([&] {
              readString(pool, {{kAnyId, BytesBuilder().u16(2).u8(1).u8('a').u8(0).u8('b')},
                                {id::kContinue, BytesBuilder().u8(0)}});
            }),
            "error in XLUnicodeString record #2");
}

TEST(UnicodeStrings, FailOnAnEmptyContinue) {
  RecordPool pool;
  EXPECT_EQ(errorOf([&] {
              readString(pool, {{kAnyId, BytesBuilder().u16(2).u8(0).text("a")}, {id::kContinue, {}}});
            }),
            "XLUnicodeString::read(): data is empty");
}

TEST(UnicodeStrings, ZeroLengthAtTheEndOfARecordHasNoFlags) {
  RecordPool pool;
  const auto result = readString(pool, {{kAnyId, BytesBuilder().u16(0)}, {id::kContinue, BytesBuilder().u8(1)}});
  EXPECT_TRUE(result.string.view().empty());
  EXPECT_EQ(result.string.text, nullptr);
}

TEST(UnicodeStrings, Biff5TextIsDecodedByTheCodePage) {
  RecordPool pool;
  const TextForm cyrillic{true, 1251};
  const auto result = readString(pool, {{kAnyId, BytesBuilder().u16(2).u8(0xC4).u8(0xE0)}}, cyrillic);
  EXPECT_EQ(result.string.view(), u"Да");
  EXPECT_TRUE(result.string.fHighByte);
  const auto shortForm = readString(pool, {{kAnyId, BytesBuilder().u8(2).text("ab")}}, {true, 1252}, true);
  EXPECT_EQ(shortForm.string.view(), u"ab");
}

TEST(UnicodeStrings, TakeTextOfUpTo65535Characters) {
  RecordPool pool;
  XLUnicodeString string;
  string.assign(std::u16string(65535, u'x'), pool);
  EXPECT_EQ(string.cch, 65535);
  EXPECT_EQ(errorOf([&] { string.assign(std::u16string(65536, u'x'), pool); }), "string is too long");
  XLUnicodeString narrow;
  narrow.byteLength = true;
  EXPECT_EQ(errorOf([&] { narrow.assign(std::u16string(256, u'x'), pool); }), "string is too long");
}

TEST(UnicodeStrings, AreWrittenWideWhenMadeHere) {
  RecordPool pool;
  XLUnicodeString string;
  string.assign(u"aé", pool);
  EXPECT_EQ(string.size(), 7u);
  RecordStream stream([&](Xls& xls) {
    xls.writeHeader(kAnyId, static_cast<std::uint16_t>(string.size()));
    string.write(xls);
  });
  EXPECT_EQ(stream.records(), (std::vector<Record>{{kAnyId, BytesBuilder().u16(2).u8(1).wide(u"aé")}}));
}

TEST(UnicodeStrings, KeepTheWidthTheyWereReadIn) {
  RecordPool pool;
  const Bytes body = BytesBuilder().u16(3).u8(0).text("abc");
  const auto read = readString(pool, {{kAnyId, body}});
  RecordStream stream([&](Xls& xls) {
    xls.writeHeader(kAnyId, static_cast<std::uint16_t>(read.string.size()));
    read.string.write(xls);
  });
  EXPECT_EQ(stream.records(), (std::vector<Record>{{kAnyId, body}}));
}

TEST(UnicodeStrings, WriteRefusesALengthThatOneByteCantHold) {
  RecordPool pool;
  XLUnicodeString string;
  string.assign(std::u16string(300, u'x'), pool);
  string.byteLength = true;
  RecordStream stream;
  EXPECT_EQ(errorOf([&] { string.write(stream.writer()); }), "string is too long");
}

TEST(ShortUnicodeStrings, AreReadFromBytes) {
  RecordPool pool;
  ShortXLUnicodeString string;
  const Bytes wide = BytesBuilder().u8(2).u8(1).wide(u"漢字").u8(7);
  EXPECT_EQ(string.read(wide, pool), 6u);
  EXPECT_EQ(string.view(), u"漢字");
  const Bytes narrow = BytesBuilder().u8(3).text("abc");
  EXPECT_EQ(string.read(narrow, pool, {true, 1252}), 4u);
  EXPECT_EQ(string.view(), u"abc");
}

TEST(ShortUnicodeStrings, ThatDontFitAreRefused) {
  RecordPool pool;
  ShortXLUnicodeString string;
  for (const Bytes& bytes : {Bytes{}, Bytes(BytesBuilder().u8(1)), Bytes(BytesBuilder().u8(3).u8(0).text("ab")),
                             Bytes(BytesBuilder().u8(1).u8(1).u8('a'))}) {
    EXPECT_EQ(string.read(bytes, pool), 0u);
  }
  EXPECT_EQ(errorOf([&] { string.assign(std::u16string(256, u'x'), pool); }),
            "ShortXLUnicodeString: string is too long");
  EXPECT_NO_THROW(string.assign(std::u16string(255, u'x'), pool));
}

TEST(StringsWithoutCount, RestartTheirFlagsInEveryContinue) {
  RecordPool pool;
  RecordStream stream({{kAnyId, BytesBuilder().u8(0).text("abc")},
                       {id::kContinue, BytesBuilder().u8(1).wide(u"d漢")},
                       {id::kContinue, BytesBuilder().u8(0).text("f")}});
  std::uint16_t remaining = 0;
  Xls& xls = stream.firstRecord(remaining);
  XLUnicodeStringNoCch string;
  string.read(xls, pool, 6, remaining);
  EXPECT_EQ(string.view(), u"abcd漢f");
  EXPECT_FALSE(string.fHighByte);
}

TEST(StringsWithoutCount, FailOnAnEmptyContinue) {
  RecordPool pool;
  RecordStream stream({{kAnyId, BytesBuilder().u8(0).text("a")}, {id::kContinue, {}}});
  std::uint16_t remaining = 0;
  Xls& xls = stream.firstRecord(remaining);
  XLUnicodeStringNoCch string;
  EXPECT_EQ(errorOf([&] { string.read(xls, pool, 2, remaining); }), "XLUnicodeStringNoCch::read(): data is empty");
}

TEST(RecordPools, RefuseRequestsPastTheirLimit) {
  RecordPool pool;
  EXPECT_EQ(pool.allocateText(0), nullptr);
  EXPECT_NE(pool.allocateText(RecordPool::kMaxUnits), nullptr);
  EXPECT_EQ(errorOf([&] { pool.allocateText(RecordPool::kMaxUnits + 1); }), "record data is too long");
  EXPECT_EQ(errorOf([&] { pool.allocateBytes(RecordPool::kMaxUnits + 1); }), "record data is too long");
}

TEST(RecordPools, DestroyWhatTheyAdopted) {
  struct Witness final : BaseClass {
    explicit Witness(int& count) : _count(&count) {}
    ~Witness() override { ++*_count; }
    int* _count;
  };
  int destroyed = 0;
  {
    RecordPool pool;
    pool.adopt(std::make_unique<Witness>(destroyed));
    pool.clear();
    EXPECT_EQ(destroyed, 1);
    pool.adopt(std::make_unique<Witness>(destroyed));
  }
  EXPECT_EQ(destroyed, 2);
}

}  // namespace
}  // namespace rubrica
