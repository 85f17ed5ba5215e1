#include "biff/hlink.h"
#include "tests/biff/sheet_ops/sheet_fixture.h"

namespace rubrica::test {
namespace {

const Bytes kStandard =
    bytesOf({0xD0, 0xC9, 0xEA, 0x79, 0xF9, 0xBA, 0xCE, 0x11, 0x8C, 0x82, 0, 0xAA, 0, 0x4B, 0xA9, 0x0B});
const Bytes kUrl = bytesOf({0xE0, 0xC9, 0xEA, 0x79, 0xF9, 0xBA, 0xCE, 0x11, 0x8C, 0x82, 0, 0xAA, 0, 0x4B, 0xA9, 0x0B});
const Bytes kFile = bytesOf({3, 3, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46});
const Bytes kUnknown = bytesOf({9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9});

BytesBuilder head(std::uint32_t flags) {
  return BytesBuilder().u16(1).u16(2).u16(3).u16(4).bytes(kStandard).u32(2).u32(flags);
}

Bytes string(std::u16string_view text) {
  return BytesBuilder().u32(static_cast<std::uint32_t>(text.size() + 1)).wide(text).u16(0);
}

std::u16string linkText(TestBook& book, int index = 0) {
  const char16_t* text = book.sheet->hyperlink(index, nullptr, nullptr, nullptr, nullptr);
  return text == nullptr ? u"<none>" : text;
}

TEST(HyperlinkText, BecomesTargetAndLocation) {
  struct Case {
    const char16_t *text, *target, *location;
    std::uint32_t flags;
  };
  for (const Case& c : {Case{u"http://example.org/a!b", u"http://example.org/a!b", u"", 23},
                        Case{u"a.xls", u"a.xls", u"", 23}, Case{u"a.xls#Sheet2!A1", u"a.xls", u"Sheet2!A1", 31},
                        Case{u"Sheet2!A1", u"", u"Sheet2!A1", 30}, Case{u"#Sheet2!A1", u"", u"Sheet2!A1", 30},
                        Case{u"a.xls#", u"a.xls", u"", 31}, Case{u"a#b#c", u"a", u"b#c", 31},
                        Case{u"mailto:me@example.org", u"mailto:me@example.org", u"", 23}, Case{u"", u"", u"", 22}}) {
    const HyperlinkObject object = HyperlinkObject::of(c.text);
    EXPECT_EQ(object.target(), c.target);
    EXPECT_EQ(object.location(), c.location);
    EXPECT_EQ(object.flags(), c.flags);
    EXPECT_EQ(object.hasMoniker(), *c.target != u'\0');
  }
}

TEST(HyperlinkText, AnAddressWithAFragmentIsAFileOfThatName) {
  const HyperlinkObject object = HyperlinkObject::of(u"http://example.org/a#part");
  EXPECT_EQ(object.text(), u"part");
  EXPECT_EQ(object.flags(), 23u);
}

TEST(Hyperlinks, AreAddedReadAndDeleted) {
  TestBook book;
  book.sheet->addHyperlink(u"http://example.org", 1, 2, 3, 4);
  EXPECT_EQ(book.message(), "ok");
  book.sheet->addHyperlink(u"Sheet2!A1", 5, 5, 5, 5);
  book.sheet->addHyperlink(u"a.xls#Sheet2!A1", 6, 6, 6, 6);
  EXPECT_EQ(book.sheet->hyperlinkSize(), 3);
  for (int round = 0; round < 2; ++round) {
    int r1 = 0, r2 = 0, c1 = 0, c2 = 0;
    EXPECT_EQ(std::u16string(book.sheet->hyperlink(0, &r1, &r2, &c1, &c2)), u"http://example.org");
    EXPECT_EQ((std::vector<int>{r1, r2, c1, c2}), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(linkText(book, 1), u"Sheet2!A1");
    EXPECT_EQ(linkText(book, 2), u"a.xls#Sheet2!A1");
    ASSERT_TRUE(book.reload()) << book.message();
  }
  EXPECT_REFUSED(book, book.sheet->hyperlink(3, nullptr, nullptr, nullptr, nullptr), "index is out of range");
  EXPECT_REFUSED(book, book.sheet->hyperlink(-1, nullptr, nullptr, nullptr, nullptr), "index is out of range");
  EXPECT_REFUSED(book, book.sheet->delHyperlink(3), "index is out of range");
  EXPECT_REFUSED(book, book.sheet->delHyperlink(-1), "index is out of range");
  EXPECT_TRUE(book.sheet->delHyperlink(0));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(linkText(book, 0), u"Sheet2!A1");
  EXPECT_EQ(book.sheet->hyperlinkSize(), 2);
}

TEST(Hyperlinks, OutsideTheSheetAreRefused) {
  TestBook book;
  book.sheet->addHyperlink(u"a", 0, 65536, 0, 0);
  EXPECT_EQ(book.message(), "row must be in range 0-65535");
  book.sheet->addHyperlink(u"a", 0, 0, -1, 0);
  EXPECT_EQ(book.message(), "col must be in range 0-255");
  EXPECT_EQ(book.sheet->hyperlinkSize(), 0);
  book.sheet->addHyperlink(nullptr, 0, 0, 0, 0);
  EXPECT_EQ(linkText(book), u"");
}

TEST(Hyperlinks, OfAUrlAreWrittenAsPublished) {
  TestBook book;
  book.sheet->addHyperlink(u"x://y", 1, 2, 3, 4);
  const Bytes expected = head(23).bytes(string(u"x://y")).bytes(kUrl).u32(12).wide(u"x://y").u16(0);
  EXPECT_EQ(book.saved(id::kHLink), std::vector<Bytes>{expected});
}

TEST(Hyperlinks, OfAFileAreWrittenAsPublished) {
  TestBook book;
  book.sheet->addHyperlink(u"x://y#z\u00E9", 1, 2, 3, 4);
  const Bytes expected = head(23)
                             .bytes(string(u"x://y#z\u00E9"))
                             .bytes(kFile)
                             .u16(0)
                             .u32(3)
                             .text("z?")
                             .u8(0)
                             .u16(0xFFFF)
                             .u16(0xDEAD)
                             .fill(20, 0)
                             .u32(10)
                             .u32(4)
                             .u16(3)
                             .wide(u"z\u00E9");
  EXPECT_EQ(book.saved(id::kHLink), std::vector<Bytes>{expected});
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(linkText(book), u"z\u00E9");
}

// Links as files have them, with the text that each stands for.
TEST(Hyperlinks, OfEveryKindSurviveByteForByte) {
  const Bytes guid = BytesBuilder().fill(16, 0x77);
  struct Case {
    Bytes bytes;
    const char16_t* text;
  };
  const std::vector<Case> cases = {
      {head(3).bytes(kUrl).u32(6).wide(u"ab").u16(0), u"ab"},
      // The URL moniker's serial parts stand within its length.
      {head(3).bytes(kUrl).u32(30).wide(u"ab").u16(0).fill(24, 5), u"ab"},
      {head(0x1FB)
           .bytes(string(u"shown"))
           .bytes(string(u"frame"))
           .bytes(string(u"C:\\x"))
           .bytes(string(u"A1"))
           .bytes(guid)
           .u32(1)
           .u32(2),
       u"C:\\x#A1"},
      {head(0x08).bytes(string(u"A1")), u"A1"},
      {head(0x03).bytes(kFile).u16(2).u32(4).text("b.x").u8(0).u16(0xFFFF).u16(0xDEAD).fill(20, 0).u32(0),
       u"..\\..\\b.x"},
      {head(0x0B)
           .bytes(kFile)
           .u16(0)
           .u32(4)
           .text("b_x")
           .u8(0)
           .u16(0xFFFF)
           .u16(0xDEAD)
           .fill(20, 0)
           .u32(12)
           .u32(6)
           .u16(3)
           .wide(u"b\u0416x")
           .bytes(string(u"A1")),
       u"b\u0416x#A1"},
      {head(0x0B).bytes(kUnknown).fill(33, 6), u""},
      {head(0x03).bytes(kUnknown), u""},
      {head(0x10).u32(0), u""},
      {head(0x10).u32(3).wide(u"abc"), u""},
      {head(0x00).fill(5, 9), u""},
      // Monikers whose bodies say more than there is.
      {head(0x03).bytes(kUrl).u32(500).wide(u"ab"), u""},
      {head(0x03).bytes(kUrl).u16(1), u""},
      {head(0x0B).bytes(kFile).u16(0).u32(0xFFFFFFFF).fill(40, 1), u""},
  };
  std::vector<Record> records;
  std::vector<Bytes> bodies;
  for (const Case& c : cases) {
    records.push_back({id::kHLink, c.bytes});
    bodies.push_back(c.bytes);
  }
  TestBook book;
  ASSERT_TRUE(book.reload(records)) << book.message();
  for (std::size_t i = 0; i < cases.size(); ++i) EXPECT_EQ(linkText(book, static_cast<int>(i)), cases[i].text) << i;
  EXPECT_EQ(book.saved(id::kHLink), bodies);
}

TEST(Hyperlinks, ThatEndTooSoonAreRefused) {
  struct Case {
    Bytes bytes;
    const char* message;
  };
  for (const Case& c : {Case{BytesBuilder().fill(23, 0), "error reading HLink"},
                        Case{BytesBuilder().fill(24, 0), "error in reading HyperlinkObj"},
                        Case{head(0x20).fill(15, 0), "error in reading HyperlinkObj"},
                        Case{head(0x40).u32(1), "error in reading HyperlinkObj"},
                        Case{head(0x10).u32(2).u16(1), "error in reading HyperlinkObj"},
                        Case{head(0x10).u32(0xFFFFFFFF).u16(1), "error in reading HyperlinkObj"},
                        Case{head(0x08), "error in reading HyperlinkObj"},
                        Case{head(0x01).fill(15, 0), "error in reading HyperlinkMoniker"}}) {
    TestBook book;
    EXPECT_FALSE(book.reload({{id::kHLink, c.bytes}}));
    EXPECT_EQ(book.message(), c.message);
  }
}

TEST(Hyperlinks, PastOneRecordGoOnInTheNext) {
  TestBook book;
  const std::u16string longText(5000, u'x');
  book.sheet->addHyperlink(longText.c_str(), 0, 0, 0, 0);
  book.sheet->addHyperlink(u"short", 0, 0, 0, 0);
  const auto links = book.saved(id::kHLink);
  ASSERT_EQ(links.size(), 2u);
  EXPECT_EQ(links[0].size(), 8223u);
  EXPECT_EQ(book.saved(id::kContinue).size(), 2u);
  ASSERT_TRUE(book.reload()) << book.message();
  EXPECT_EQ(linkText(book, 0), longText);
  EXPECT_EQ(linkText(book, 1), u"short");
}

TEST(Hyperlinks, GoIntoCopiesOfTheirSheet) {
  TestBook book;
  book.sheet->addHyperlink(u"a.xls", 1, 1, 1, 1);
  Sheet* copy = book.book->addSheet(u"Copy", book.sheet);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->hyperlinkSize(), 1);
  TestBook other;
  Sheet* adopted = other.book->addSheet(u"Copy", book.sheet);
  ASSERT_NE(adopted, nullptr);
  EXPECT_EQ(std::u16string(adopted->hyperlink(0, nullptr, nullptr, nullptr, nullptr)), u"a.xls");
}

}  // namespace
}  // namespace rubrica::test
