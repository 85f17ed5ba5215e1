#include "tests/biff/styles/style_fixture.h"

namespace rubrica::test {
namespace {

std::u16string numbered(int i) {
  std::u16string text = u"0.0 \"";
  for (const char c : std::to_string(i)) text += static_cast<char16_t>(c);
  return text + u'"';
}

TEST(NumberFormats, IdsAreHandedOutFrom164AndEqualTextsShareOne) {
  NewBook book;
  EXPECT_EQ(book.tables.addCustomNumFormat(u"0.000"), 164);
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.tables.addCustomNumFormat(u"0.0000"), 165);
  EXPECT_EQ(book.tables.addCustomNumFormat(u"0.000"), 164);
  EXPECT_EQ(book.written(&StyleTables::writeFormats).size(), 2u);
  EXPECT_EQ(std::u16string(book.tables.customNumFormat(165)), u"0.0000");
  EXPECT_EQ(book.message(), "ok");
}

TEST(NumberFormats, FindingATextLeavesTheMessage) {
  NewBook book;
  book.tables.addCustomNumFormat(u"0.000");
  book.state.setMessage("earlier");
  EXPECT_EQ(book.tables.addCustomNumFormat(u"0.000"), 164);
  EXPECT_EQ(book.message(), "earlier");
}

TEST(NumberFormats, AnUnknownIdHasNoText) {
  NewBook book;
  for (const int id : {-1, 0, 14, 164, 65535, 65536 + 164}) {
    EXPECT_EQ(book.tables.customNumFormat(id), nullptr);
    EXPECT_EQ(book.message(), "custom number format not found");
  }
}

TEST(NumberFormats, TheSmallestIdThatAFileLeftFreeComesNext) {
  StyleBook book;
  for (const unsigned id : {164u, 166u, 200u}) {
    ASSERT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(id).u16(1).u8(0).u8('0' + id % 10)),
              kNothingThrown);
  }
  EXPECT_EQ(book.tables.addCustomNumFormat(u"0"), 200);
  EXPECT_EQ(book.tables.addCustomNumFormat(u"a"), 165);
  EXPECT_EQ(book.tables.addCustomNumFormat(u"b"), 167);
}

TEST(NumberFormats, OfTwoEntriesTheFirstAnswers) {
  StyleBook book;
  ASSERT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(170).u16(1).u8(0).text("a")), kNothingThrown);
  ASSERT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(170).u16(1).u8(0).text("b")), kNothingThrown);
  ASSERT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(171).u16(1).u8(0).text("a")), kNothingThrown);
  EXPECT_EQ(std::u16string(book.tables.customNumFormat(170)), u"a");
  EXPECT_EQ(book.tables.addCustomNumFormat(u"a"), 170);
  EXPECT_EQ(book.tables.addCustomNumFormat(u"b"), 170);
}

TEST(NumberFormats, The230thTextFailsAndIsKeptUnderIdZero) {
  NewBook book;
  for (int i = 0; i < 229; ++i) EXPECT_EQ(book.tables.addCustomNumFormat(numbered(i)), 164 + i);
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.tables.addCustomNumFormat(numbered(229)), 0);
  EXPECT_EQ(book.message(), "maximum number of custom formats is exceeded");
  EXPECT_EQ(book.written(&StyleTables::writeFormats).size(), 230u);
  EXPECT_EQ(book.tables.addCustomNumFormat(numbered(230)), 0);
  EXPECT_EQ(book.written(&StyleTables::writeFormats).size(), 231u);
  EXPECT_EQ(book.tables.addCustomNumFormat(numbered(5)), 169);
  EXPECT_EQ(std::u16string(book.tables.customNumFormat(0)), numbered(229));
  EXPECT_EQ(book.written(&StyleTables::writeFormats)[229].bytes[0], std::byte{0});
}

TEST(NumberFormats, AMissingTextEqualsAnEmptyOne) {
  NewBook book;
  EXPECT_EQ(book.tables.addCustomNumFormat({}), 164);
  EXPECT_EQ(book.tables.addCustomNumFormat(u""), 164);
  EXPECT_EQ(book.tables.customNumFormat(164), nullptr);
  EXPECT_EQ(book.written(&StyleTables::writeFormats), (std::vector<Record>{{1054, BytesBuilder().u16(164)}}));

  NewBook other;
  EXPECT_EQ(other.tables.addCustomNumFormat(u""), 164);
  EXPECT_EQ(std::u16string(other.tables.customNumFormat(164)), u"");
  EXPECT_EQ(other.written(&StyleTables::writeFormats)[0].bytes.size(), 5u);
}

TEST(NumberFormats, ATextHasToFitIntoItsRecord) {
  NewBook book;
  EXPECT_EQ(book.tables.addCustomNumFormat(std::u16string(4109, u'0')), 164);
  EXPECT_EQ(errorOf([&] { book.tables.addCustomNumFormat(std::u16string(4110, u'0')); }), "string is too long");
  const auto records = book.written(&StyleTables::writeFormats);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].bytes.size(), 8223u);
}

TEST(FormatRecords, AreWrittenAsTheyWereRead) {
  StyleBook book;
  const Bytes narrow = BytesBuilder().u16(164).u16(4).u8(0).text("0.00");
  const Bytes wide = BytesBuilder().u16(165).u16(3).u8(1).wide(u"0 \u20AC");
  const Bytes beyond = BytesBuilder().u16(1000).u16(1).u8(0).text("@");
  const Bytes missing = BytesBuilder().u16(5);
  std::vector<Record> all;
  for (const Bytes& body : {narrow, wide, beyond, missing}) {
    ASSERT_EQ(book.read(&StyleTables::readFormat, body), kNothingThrown);
    all.push_back({1054, body});
  }
  EXPECT_EQ(book.written(&StyleTables::writeFormats), all);
  EXPECT_EQ(std::u16string(book.tables.customNumFormat(1000)), u"@");
}

TEST(FormatRecords, BadSizesFail) {
  StyleBook book;
  const std::string wrong = "Format size is incorrect";
  EXPECT_EQ(book.read(&StyleTables::readFormat, {}), wrong);
  EXPECT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u8(1)), wrong);
  EXPECT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(164).u16(1).u8(0).text("ab")), wrong);
  EXPECT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(164).u16(3).u8(0).text("ab")),
            "error in XLUnicodeString record #1");
  EXPECT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(164).u16(3).u8(0).text("ab"),
                      {{id::kContinue, BytesBuilder().text("c")}}),
            wrong);
  EXPECT_EQ(book.tables.customNumFormat(164), nullptr);
}

TEST(FormatRecords, Biff5TextsCountInOneByteAndAreWrittenInTheBiff8Form) {
  StyleBook book;
  book.state.biffVersion = kBiff5Version;
  book.state.codePage = 1252;
  ASSERT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(5).u8(3).text("0 ").u8(0xA3)), kNothingThrown);
  EXPECT_EQ(std::u16string(book.tables.customNumFormat(5)), u"0 \u00A3");
  EXPECT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(6).u8(1).text("ab")), "Format size is incorrect");
  const Bytes expected = BytesBuilder().u16(5).u16(3).u8(1).wide(u"0 \u00A3");
  EXPECT_EQ(book.written(&StyleTables::writeFormats), (std::vector<Record>{{1054, expected}}));
}

TEST(DateFormats, BuiltInIdsNeedNoText) {
  StyleBook book;
  for (const unsigned id : {0u, 14u, 40u}) {
    ASSERT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(id).u16(4).u8(0).text(id == 14 ? "0.00" : "yyyy")),
              kNothingThrown);
  }
  for (int id = 0; id <= 49; ++id) {
    const bool date = (id >= 14 && id <= 22) || (id >= 45 && id <= 47);
    EXPECT_EQ(book.tables.isDateNumFormat(id), date) << id;
  }
}

TEST(DateFormats, OtherIdsGoByTheirText) {
  NewBook book;
  book.state.setOk();
  EXPECT_TRUE(book.tables.isDateNumFormat(14));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_FALSE(book.tables.isDateNumFormat(23));
  EXPECT_EQ(book.message(), "custom number format not found");
  const int date = book.tables.addCustomNumFormat(u"yyyy-mm-dd");
  const int number = book.tables.addCustomNumFormat(u"0.0000");
  EXPECT_TRUE(book.tables.isDateNumFormat(date));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_FALSE(book.tables.isDateNumFormat(number));
  ASSERT_EQ(book.read(&StyleTables::readFormat, BytesBuilder().u16(30).u16(4).u8(0).text("m/yy")), kNothingThrown);
  EXPECT_TRUE(book.tables.isDateNumFormat(30));
}

}  // namespace
}  // namespace rubrica::test
