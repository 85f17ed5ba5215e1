// Strings that go on in CONTINUE records: as our writer splits them, and as other writers may.
#include "tests/biff/shared_strings/sst_fixture.h"

namespace rubrica::test {
namespace {

// What the first record has for strings, behind the counts.
constexpr std::size_t kFirstRoom = 8216;

std::u16string patterned(std::size_t length, bool wide) {
  std::u16string text(length, u'\0');
  for (std::size_t i = 0; i < length; ++i)
    text[i] = static_cast<char16_t>((i * 7 + i / 251 + 1) & (wide ? 0xFFFF : 0xFF));
  return text;
}

// Writes the table, checks what every reader relies on, reads it again and compares.
std::vector<Record> roundTrip(SstBook& book) {
  const auto records = book.written();
  EXPECT_EQ(records[0].recordId, 252);
  for (std::size_t i = 0; i < records.size(); ++i) {
    EXPECT_LE(records[i].bytes.size(), 8224u);
    EXPECT_GT(records[i].bytes.size(), 0u);
    if (i > 0) {
      EXPECT_EQ(records[i].recordId, 60);
    }
  }
  SstBook loaded;
  EXPECT_EQ(loaded.read(records), "nothing thrown");
  expectSame(loaded.strings, book.strings);
  return records;
}

TEST(SstContinue, StringsAroundTheEndOfTheFirstRecord) {
  for (const std::uint8_t flags : {std::uint8_t{0}, kWide}) {
    const std::size_t width = flags == kWide ? 2 : 1;
    for (std::size_t length = (kFirstRoom - 20) / width; length <= (8224 + 20) / width; ++length) {
      SCOPED_TRACE(length);
      SstBook book;
      book.strings.append(book.entry(patterned(length, flags == kWide), flags));
      book.strings.append(book.entry(u"behind", 0));
      roundTrip(book);
    }
  }
}

TEST(SstContinue, LongStringsTakeSeveralRecords) {
  for (const std::size_t length : {8222u * 2, 8222u * 2 + 4106, 8213u + 8222, 8214u + 8222, 65535u}) {
    for (const std::uint8_t flags : {std::uint8_t{0}, kWide}) {
      SCOPED_TRACE(length);
      SstBook book;
      book.strings.append(book.entry(patterned(length, flags == kWide), flags));
      book.strings.append(book.entry(patterned(length, flags == kWide), flags));
      EXPECT_GT(roundTrip(book).size(), 2u);
    }
  }
}

TEST(SstContinue, EachTextPartStartsWithItsFlagByte) {
  SstBook book;
  book.strings.add(patterned(10000, true));
  const auto records = roundTrip(book);
  ASSERT_EQ(records.size(), 3u);
  // 8 bytes of counts, 3 of the string's head, and 8212 of its characters: the odd byte stays free.
  EXPECT_EQ(records[0].bytes.size(), 8223u);
  EXPECT_EQ(records[1].bytes.size(), 8223u);
  EXPECT_EQ(records[2].bytes.size(), 1u + 20000 - 8212 - 8222);
  EXPECT_EQ(records[1].bytes[0], std::byte{1});
  EXPECT_EQ(records[2].bytes[0], std::byte{1});
}

TEST(SstContinue, OneByteTextAlsoLeavesTheOddByteFree) {
  SstBook book;
  book.strings.append(book.entry(patterned(9000, false), 0));
  const auto records = roundTrip(book);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].bytes.size(), 8223u);
  EXPECT_EQ(records[1].bytes[0], std::byte{0});
  EXPECT_EQ(records[1].bytes.size(), 1u + 9000 - 8212);
}

TEST(SstContinue, AStringBeginsInANewRecordWhenLessThanTenBytesAreLeft) {
  for (std::size_t room = 0; room <= 20; ++room) {
    SCOPED_TRACE(room);
    SstBook book;
    book.strings.append(book.entry(patterned(kFirstRoom - 3 - room, false), 0));
    book.strings.append(book.entry(u"", 0));
    const auto records = roundTrip(book);
    EXPECT_EQ(records.size(), room < 10 ? 2u : 1u);
    EXPECT_EQ(records[0].bytes.size(), room < 10 ? 8224 - room : 8224 - room + 3);
  }
}

// Every kind of entry at every distance from the end of a record, so that the end falls on each of its positions.
TEST(SstContinue, TheEndOfARecordMayFallAnywhereInAString) {
  const std::vector<FormatRun> runs = {{0, 5}, {1, 6}, {2, 7}};
  const Bytes phonetic(23, std::byte{0x5A});
  for (int kind = 0; kind < 8; ++kind) {
    const auto flags =
        static_cast<std::uint8_t>((kind & 1 ? kWide : 0) | (kind & 2 ? kRich : 0) | (kind & 4 ? kExt : 0));
    for (const std::size_t length : {0u, 1u, 9u, 30u}) {
      for (std::size_t room = 0; room <= 120; ++room) {
        SCOPED_TRACE(testing::Message() << "flags " << int{flags} << " length " << length << " room " << room);
        SstBook book;
        book.strings.append(book.entry(patterned(kFirstRoom - 3 - room, false), 0));
        book.strings.append(book.entry(patterned(length, flags & kWide), flags,
                                       kind & 2 ? runs : std::vector<FormatRun>(), kind & 4 ? phonetic : Bytes()));
        book.strings.append(book.entry(u"behind", kWide));
        roundTrip(book);
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

TEST(SstContinue, RunsAndPhoneticBlocksTakeSeveralRecords) {
  SstBook book;
  std::vector<FormatRun> runs(9000);
  for (std::size_t i = 0; i < runs.size(); ++i)
    runs[i] = {static_cast<std::uint16_t>(i), static_cast<std::uint16_t>(i * 3)};
  Bytes phonetic(30001);
  for (std::size_t i = 0; i < phonetic.size(); ++i) phonetic[i] = static_cast<std::byte>(i * 11);
  book.strings.append(book.entry(patterned(9001, true), kWide | kRich | kExt, runs, phonetic));
  book.strings.append(book.entry(u"behind", 0));
  roundTrip(book);
}

// One entry, cut in two by a CONTINUE at every byte; inside the characters the second part has a flag byte.
TEST(SstContinue, OtherWritersMayCutAnEntryAtAnyByte) {
  for (const bool wide : {false, true}) {
    const std::size_t width = wide ? 2 : 1;
    const std::u16string text = patterned(6, wide);
    const auto flags = static_cast<std::uint8_t>(kRich | kExt | (wide ? kWide : 0));
    BytesBuilder entry;
    entry.u16(6).u8(flags).u16(2).u32(5);
    for (const char16_t c : text) wide ? entry.u16(c) : entry.u8(c);
    entry.u16(0).u16(5).u16(3).u16(6).text("phone");
    const Bytes whole = entry;
    SstBook expected;
    expected.strings.setTotal(1);
    expected.strings.append(expected.entry(text, flags, {{0, 5}, {3, 6}}, BytesBuilder().text("phone")));
    for (std::size_t cut = 1; cut < whole.size(); ++cut) {
      const bool behindFlags = cut == 3;
      const bool inText = cut >= 9 && cut < 9 + 6 * width;
      if (inText && (cut - 9) % width != 0) continue;
      SCOPED_TRACE(cut);
      const auto middle = whole.begin() + static_cast<std::ptrdiff_t>(cut);
      BytesBuilder second;
      if (inText || behindFlags) second.u8(wide ? 1 : 0);
      second.bytes({middle, whole.end()});
      SstBook book;
      ASSERT_EQ(book.read({{252, BytesBuilder().u32(1).u32(1).bytes({whole.begin(), middle})}, {60, second}}),
                "nothing thrown");
      expectSame(book.strings, expected.strings);
    }
  }
}

TEST(SstContinue, PartsMayDifferInWidthAndNothingIsLost) {
  SstBook book;
  ASSERT_EQ(book.read({{252, BytesBuilder().u32(1).u32(1).u16(6).u8(0).text("ab")},
                       {60, BytesBuilder().u8(1).u16(0x0431).u16(0x0432)},
                       {60, BytesBuilder().u8(0).text("cd")}}),
            "nothing thrown");
  EXPECT_EQ(std::u16string(book.strings.text(0)), u"ab\u0431\u0432cd");
  EXPECT_TRUE(book.strings.get(0).fHighByte());
  roundTrip(book);
}

TEST(SstContinue, AStringMayStartBehindARecordsEnd) {
  SstBook book;
  ASSERT_EQ(book.read({{252, BytesBuilder().u32(3).u32(3).u16(1).u8(0).text("a").u16(0).u8(0)},
                       {60, BytesBuilder().u16(1).u8(0).text("b")}}),
            "nothing thrown");
  EXPECT_EQ(std::u16string(book.strings.text(2)), u"b");
}

TEST(SstContinue, EmptyRecordsBetweenPartsAreCrossed) {
  SstBook book;
  ASSERT_EQ(book.read({{252, BytesBuilder().u32(2).u32(2).u16(2).u8(0).text("a")},
                       {60, {}},
                       {60, BytesBuilder().u8(0)},
                       {60, BytesBuilder().u8(0).text("b")},
                       {60, {}},
                       {60, BytesBuilder().u16(1).u8(0).text("c")}}),
            "nothing thrown");
  EXPECT_EQ(std::u16string(book.strings.text(0)), u"ab");
  EXPECT_EQ(std::u16string(book.strings.text(1)), u"c");
}

TEST(SstContinue, ACharacterCutInTwoFails) {
  SstBook book;
  EXPECT_EQ(book.read({{252, BytesBuilder().u32(1).u32(1).u16(2).u8(1).text("a").u8(0).text("b")},
                       {60, BytesBuilder().u8(1).u8(0)}}),
            "error in XLUnicodeRichExtendedString record");
}

TEST(SstContinue, AnotherRecordInBetweenFails) {
  SstBook book;
  EXPECT_EQ(
      book.read({{252, BytesBuilder().u32(1).u32(1).u16(4).u8(0).text("ab")}, {255, BytesBuilder().u8(0).text("cd")}}),
      "readWithContinueRecords: CONTINUE record not found");
}

TEST(SstContinue, ManyStringsComeBack) {
  SstBook book;
  for (std::uint32_t i = 0; i < 5000; ++i) {
    book.strings.add(patterned(i % 300, i % 2 == 0) + static_cast<char16_t>(0x100 + i));
  }
  roundTrip(book);
}

}  // namespace
}  // namespace rubrica::test
