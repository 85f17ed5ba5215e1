#include "biff/shared_strings/str_map.h"

#include <memory>

#include "tests/biff/record_stream.h"

namespace rubrica::test {
namespace {

struct Strings {
  RecordPool pool;
  StrMap map{pool};

  // An entry as a file brings it.
  void append(const char16_t* text, std::uint8_t flags = 0) {
    XLUnicodeRichExtendedString entry;
    entry.text = pool.copyText(text);
    entry.cch = static_cast<std::uint16_t>(std::u16string_view(text).size());
    entry.flags = flags;
    if (!entry.isPlain()) entry.ext = pool.adopt(std::make_unique<ExtStringFormat>());
    map.append(entry);
  }
};

TEST(SharedStrings, EqualTextsShareOneEntry) {
  Strings strings;
  EXPECT_EQ(strings.map.add(u"tea"), 0u);
  EXPECT_EQ(strings.map.add(u"tea"), 0u);
  EXPECT_EQ(strings.map.cstTotal(), 2u);
  EXPECT_EQ(strings.map.cstUnique(), 1u);
  EXPECT_EQ(strings.map.add(u"Tea"), 1u);
  EXPECT_EQ(strings.map.add(u"te"), 2u);
  EXPECT_EQ(strings.map.cstTotal(), 4u);
  EXPECT_EQ(strings.map.cstUnique(), 3u);
  EXPECT_EQ(std::u16string(strings.map.text(1)), u"Tea");
  EXPECT_TRUE(strings.map.get(1).fHighByte());
}

TEST(SharedStrings, ManyTextsKeepTheirIndexes) {
  Strings strings;
  const auto text = [](std::uint32_t i) { return std::u16string(1 + i % 7, u'x') + static_cast<char16_t>(i + 0x100); };
  for (std::uint32_t round = 0; round < 2; ++round) {
    for (std::uint32_t i = 0; i < 20000; ++i) ASSERT_EQ(strings.map.add(text(i)), i);
  }
  EXPECT_EQ(strings.map.cstUnique(), 20000u);
  EXPECT_EQ(strings.map.cstTotal(), 40000u);
  EXPECT_EQ(std::u16string(strings.map.text(12345)), text(12345));
}

TEST(SharedStrings, EmptyTextsAndInnerZerosAreTexts) {
  Strings strings;
  EXPECT_EQ(strings.map.add({}), 0u);
  EXPECT_EQ(strings.map.add(u""), 0u);
  EXPECT_EQ(std::u16string(strings.map.text(0)), u"");
  EXPECT_EQ(strings.map.add(std::u16string_view(u"a\0b", 3)), 1u);
  EXPECT_EQ(strings.map.add(std::u16string_view(u"a\0c", 3)), 2u);
  EXPECT_EQ(strings.map.get(1).view(), std::u16string_view(u"a\0b", 3));
}

TEST(SharedStrings, TheLongestTextHas65535Characters) {
  Strings strings;
  EXPECT_EQ(strings.map.add(std::u16string(65535, u'l')), 0u);
  EXPECT_EQ(errorOf([&] { strings.map.add(std::u16string(65536, u'l')); }), "string is too long");
  EXPECT_EQ(errorOf([&] { strings.map.set(0, std::u16string(65536, u'l')); }), "string is too long");
  EXPECT_EQ(strings.map.cstTotal(), 1u);
  EXPECT_EQ(strings.map.cstUnique(), 1u);
  EXPECT_EQ(strings.map.add(std::u16string(65535, u'l')), 0u);
}

TEST(SharedStrings, ReplacingATextMovesItsEntryInTheLookup) {
  Strings strings;
  strings.map.add(u"old");
  strings.map.add(u"other");
  strings.map.set(0, u"new");
  EXPECT_EQ(std::u16string(strings.map.text(0)), u"new");
  EXPECT_EQ(strings.map.cstTotal(), 2u);
  EXPECT_EQ(strings.map.add(u"new"), 0u);
  EXPECT_EQ(strings.map.add(u"old"), 2u);
  EXPECT_EQ(strings.map.cstTotal(), 4u);
  EXPECT_EQ(strings.map.cstUnique(), 3u);
}

TEST(SharedStrings, ReplacingATextByAnotherEntrysTextKeepsTheOtherInTheLookup) {
  Strings strings;
  strings.map.add(u"first");
  strings.map.add(u"second");
  strings.map.set(1, u"first");
  EXPECT_EQ(strings.map.add(u"first"), 0u);
  strings.map.set(1, u"third");
  EXPECT_EQ(strings.map.add(u"first"), 0u);
  EXPECT_EQ(strings.map.add(u"third"), 1u);
  strings.map.set(1, u"third");
  EXPECT_EQ(strings.map.add(u"third"), 1u);
}

TEST(SharedStrings, PositionsPastTheEndFail) {
  Strings strings;
  EXPECT_EQ(errorOf([&] { strings.map.set(0, u"x"); }), "StrMap: sst is out of range (1)");
  EXPECT_EQ(errorOf([&] { strings.map.get(0); }), "StrMap: sst is out of range (2)");
  strings.map.add(u"x");
  EXPECT_EQ(errorOf([&] { strings.map.set(1, u"x"); }), "StrMap: sst is out of range (1)");
  EXPECT_EQ(errorOf([&] { strings.map.text(0xFFFFFFFF); }), "StrMap: sst is out of range (2)");
}

TEST(SharedStrings, DuplicatesOfAFileKeepTheirPositionsAndTheFirstIsFound) {
  Strings strings;
  for (const char16_t* text : {u"a", u"b", u"a"}) strings.append(text);
  EXPECT_EQ(strings.map.cstUnique(), 3u);
  EXPECT_EQ(strings.map.add(u"a"), 0u);
  EXPECT_EQ(strings.map.add(u"b"), 1u);
  EXPECT_EQ(strings.map.add(u"c"), 3u);
  // The one behind it isn't the lookup's, so replacing it takes nothing away.
  strings.map.set(2, u"d");
  EXPECT_EQ(strings.map.add(u"a"), 0u);
  EXPECT_EQ(strings.map.add(u"d"), 2u);
}

TEST(SharedStrings, TheFirstActAfterALoadMayBeAReplacement) {
  Strings strings;
  for (const char16_t* text : {u"a", u"b", u"a"}) strings.append(text);
  strings.map.set(0, u"z");
  EXPECT_EQ(std::u16string(strings.map.text(2)), u"a");
  EXPECT_EQ(strings.map.add(u"z"), 0u);
  EXPECT_EQ(strings.map.add(u"b"), 1u);
  EXPECT_EQ(strings.map.add(u"a"), 3u);
}

TEST(SharedStrings, RichAndPhoneticEntriesEqualNoPlainText) {
  Strings strings;
  strings.append(u"rich", text_flags::kRichSt);
  strings.append(u"phonetic", text_flags::kExtSt);
  EXPECT_EQ(strings.map.add(u"rich"), 2u);
  EXPECT_EQ(strings.map.add(u"phonetic"), 3u);
  strings.map.set(0, u"plain now");
  EXPECT_TRUE(strings.map.get(0).isPlain());
  EXPECT_EQ(strings.map.get(0).ext, nullptr);
  EXPECT_EQ(strings.map.add(u"plain now"), 0u);
  EXPECT_EQ(strings.map.add(u"rich"), 2u);
}

TEST(SharedStrings, TheFormOfAnEntryDoesNotMatterToItsLookup) {
  Strings strings;
  strings.append(u"narrow", 0);
  strings.append(u"wide", text_flags::kHighByte);
  EXPECT_EQ(strings.map.add(u"narrow"), 0u);
  EXPECT_EQ(strings.map.add(u"wide"), 1u);
}

TEST(SharedStrings, AClearedTableStartsAgain) {
  Strings strings;
  strings.map.add(u"a");
  strings.map.clear();
  strings.pool.clear();
  EXPECT_EQ(strings.map.cstTotal(), 0u);
  EXPECT_EQ(strings.map.cstUnique(), 0u);
  EXPECT_EQ(strings.map.add(u"b"), 0u);
  EXPECT_EQ(strings.map.add(u"a"), 1u);
}

TEST(SharedStrings, TheHashIsFnv1OverUnits) {
  EXPECT_EQ(StrMap::hash(u""), 0x811C9DC5u);
  EXPECT_EQ(StrMap::hash(u"a"), 0x050C5D7Eu);
  EXPECT_EQ(StrMap::hash(u"foobar"), 0x31F0B262u);
  EXPECT_EQ(StrMap::hash(u"\u0400"), 0x050C5D1Fu ^ 0x0400u);
}

}  // namespace
}  // namespace rubrica::test
