#include <initializer_list>

#include <gtest/gtest.h>

#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

// A reader at the first byte of `start`, which is followed by zeros. Owns the file that it reads.
class Reader {
 public:
  explicit Reader(std::initializer_list<int> start) {
    Bytes content(4096);
    std::size_t at = 0;
    for (const int value : start) content[at++] = static_cast<std::byte>(value);
    _file = makeFile({{u"Workbook", content}}, {.reversed = true});
    xls.read(_file);
  }
  Xls xls;

 private:
  Bytes _file;
};

TEST(ContinueRecords, NumbersAreSplitAtAnyByte) {
  Reader whole{0x34, 0x12, 0x78, 0x56, 0x34, 0x12};
  std::uint16_t remaining = 6;
  std::uint16_t small = 0;
  std::uint32_t large = 0;
  EXPECT_EQ(whole.xls.readInt16(small, remaining), 2U);
  EXPECT_EQ(whole.xls.readInt32(large, remaining), 4U);
  EXPECT_EQ(small, 0x1234);
  EXPECT_EQ(large, 0x12345678U);
  EXPECT_EQ(remaining, 0);

  Reader split{0x34, 60, 0, 4, 0, 0x12, 0x78, 0x56, 0x34, 60, 0, 9, 0, 0x12};
  remaining = 1;
  EXPECT_EQ(split.xls.readInt16(small, remaining), 2U);
  EXPECT_EQ(remaining, 3);
  EXPECT_EQ(split.xls.readInt32(large, remaining), 4U);
  EXPECT_EQ(small, 0x1234);
  EXPECT_EQ(large, 0x12345678U);
  EXPECT_EQ(remaining, 8);
}

TEST(ContinueRecords, EmptyOnesAreSteppedOver) {
  Reader reader{60, 0, 0, 0, 60, 0, 2, 0, 0x34, 0x12};
  std::uint16_t remaining = 0;
  std::uint16_t value = 0;
  EXPECT_EQ(reader.xls.readInt16(value, remaining), 2U);
  EXPECT_EQ(value, 0x1234);
  EXPECT_EQ(remaining, 0);
}

TEST(ContinueRecords, AnotherRecordInTheirPlaceIsAnError) {
  std::uint16_t remaining = 1;
  std::uint16_t small = 0;
  std::uint32_t large = 0;
  char bytes[8];
  std::string text;
  std::u16string wide;
  const auto failure = [&](auto&& action) {
    Reader reader{1, 61, 0, 4, 0};
    remaining = 1;
    return messageOf([&] { action(reader.xls); });
  };
  EXPECT_EQ(failure([&](Xls& xls) { xls.readInt16(small, remaining); }), "readInt16: CONTINUE record not found");
  EXPECT_EQ(failure([&](Xls& xls) { xls.readInt32(large, remaining); }), "readInt32: CONTINUE record not found");
  const std::string generic = "readWithContinueRecords: CONTINUE record not found";
  EXPECT_EQ(failure([&](Xls& xls) { xls.readWithContinueRecords(bytes, 8, remaining); }), generic);
  EXPECT_EQ(failure([&](Xls& xls) { xls.readString(&text, 8, remaining); }), generic);
  EXPECT_EQ(failure([&](Xls& xls) { xls.readStringWithoutNull(&text, 8, remaining); }), generic);
  EXPECT_EQ(failure([&](Xls& xls) { xls.readStringWithoutNull(&wide, 8, remaining); }), generic);
  EXPECT_EQ(failure([&](Xls& xls) { xls.readString(&wide, 8, remaining); }), "readInt16: CONTINUE record not found");
}

TEST(ContinueRecords, BytesAreGatheredAcrossThem) {
  Reader reader{1, 2, 60, 0, 1, 0, 3, 60, 0, 5, 0, 4, 5, 6};
  std::uint16_t remaining = 2;
  std::uint8_t bytes[6] = {};
  EXPECT_EQ(reader.xls.readWithContinueRecords(bytes, 6, remaining), 6U);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(bytes[i], i + 1);
  EXPECT_EQ(remaining, 2);
  EXPECT_EQ(reader.xls.readWithContinueRecords(bytes, 0, remaining), 0U);
}

TEST(ContinueRecords, TheEndOfTheStreamEndsARead) {
  Reader reader{};
  reader.xls.skip(4095);
  std::uint16_t remaining = 100;
  std::uint32_t value = 1;
  EXPECT_EQ(reader.xls.readInt32(value, remaining), 1U);
  EXPECT_EQ(value, 0U);
  EXPECT_EQ(remaining, 99);
  EXPECT_TRUE(reader.xls.isEnd());
  char bytes[8];
  EXPECT_EQ(reader.xls.readWithContinueRecords(bytes, 8, remaining), 0U);
  remaining = 0;
  EXPECT_EQ(messageOf([&] { reader.xls.readInt32(value, remaining); }), "readInt32: CONTINUE record not found");
}

TEST(RecordText, EndsAtAZeroOrAtItsGreatestLength) {
  Reader reader{'a', 'b', 0, 'c', 'd', 'e', 'f'};
  std::uint16_t remaining = 100;
  std::string text;
  EXPECT_EQ(reader.xls.readString(&text, 10, remaining), 3U);
  EXPECT_EQ(text, "ab");
  EXPECT_EQ(reader.xls.readString(&text, 2, remaining), 2U);
  EXPECT_EQ(text, "cd");
  EXPECT_EQ(reader.xls.readString(&text, 0, remaining), 0U);
  EXPECT_EQ(text, "");
  EXPECT_EQ(remaining, 95);
}

TEST(RecordText, WideUnitsAreSplitByAContinueRecord) {
  Reader reader{'a', 0, 0xAC, 60, 0, 9, 0, 0x20, 'c', 0, 0, 0, 'd', 0};
  std::uint16_t remaining = 3;
  std::u16string text;
  EXPECT_EQ(reader.xls.readString(&text, 10, remaining), 8U);
  EXPECT_EQ(text, u"a\u20ACc");
  EXPECT_EQ(remaining, 4);
}

TEST(RecordText, WithoutATerminatorIsTakenWhole) {
  Reader reader{'a', 0, 'b', 60, 0, 9, 0, 0xAC, 0x20, 0, 0};
  std::uint16_t remaining = 3;
  std::string text;
  EXPECT_EQ(reader.xls.readStringWithoutNull(&text, 3, remaining), 3U);
  EXPECT_EQ(text, std::string("a\0b", 3));
  std::u16string wide;
  EXPECT_EQ(reader.xls.readStringWithoutNull(&wide, 2, remaining), 4U);
  EXPECT_EQ(wide, std::u16string(u"\u20AC\0", 2));
  EXPECT_EQ(remaining, 5);
}

TEST(RecordText, ALengthPastTheStreamCostsNoMemoryAndEndsWithIt) {
  Bytes content = pattern(60'000);
  const Bytes file = makeFile({{u"Workbook", content}});
  Xls xls;
  xls.read(file);
  xls.skip(20'000);
  std::uint16_t remaining = 65'535;
  std::u16string text;
  xls.readStringWithoutNull(&text, ~std::size_t{0} / 4, remaining);
  EXPECT_TRUE(xls.isEnd());
  EXPECT_LE(text.size(), 25'000U);
}

TEST(RecordText, ANullTargetIsAnError) {
  Reader reader{'a'};
  std::uint16_t remaining = 10;
  std::string* none = nullptr;
  std::u16string* noneWide = nullptr;
  Xls& xls = reader.xls;
  EXPECT_EQ(messageOf([&] { xls.readString(none, 1, remaining); }), "Xls::readString(): s == 0");
  EXPECT_EQ(messageOf([&] { xls.readString(noneWide, 1, remaining); }), "Xls::readString(): s == 0");
  EXPECT_EQ(messageOf([&] { xls.readStringWithoutNull(none, 1, remaining); }), "Xls::readStringWithoutNull(): s == 0");
  EXPECT_EQ(messageOf([&] { xls.readStringWithoutNull(noneWide, 1, remaining); }),
            "Xls::readStringWithoutNull(): s == 0");
}

TEST(RecordPeeks, TakeAContinueHeaderOnlyAtTheEndOfARecord) {
  Reader reader{60, 0, 7, 0, 10, 0, 0, 0};
  std::uint16_t remaining = 5;
  EXPECT_FALSE(reader.xls.goNextIfContinue(remaining));
  remaining = 0;
  EXPECT_EQ(reader.xls.peekRecordId(), 60);
  EXPECT_TRUE(reader.xls.goNextIfContinue(remaining));
  EXPECT_EQ(remaining, 7);
  remaining = 0;
  EXPECT_FALSE(reader.xls.goNextIfContinue(remaining));
  EXPECT_EQ(remaining, 0);
  EXPECT_EQ(reader.xls.peekRecordId(), 10);
}

TEST(RecordPeeks, LeaveMarkAndEndFlagAlone) {
  Reader reader{1, 0, 2, 0, 60, 0, 3, 0};
  reader.xls.mark(5);
  reader.xls.skip(4);
  EXPECT_EQ(reader.xls.peekRecordId(), 60);
  std::uint16_t remaining = 0;
  EXPECT_TRUE(reader.xls.goNextIfContinue(remaining));
  EXPECT_EQ(reader.xls.rewind(), 5);
  EXPECT_EQ(reader.xls.peekRecordId(), 1);
  reader.xls.skip(4095);
  EXPECT_EQ(reader.xls.peekRecordId(), 0);
  EXPECT_FALSE(reader.xls.isEnd());
}

}  // namespace
}  // namespace rubrica::compound_test
