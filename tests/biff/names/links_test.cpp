#include "biff/external_book.h"
#include "tests/biff/names/book_fixture.h"

namespace rubrica::test {
namespace {

const Record kSelf{id::kSupBook, bytesOf({1, 0, 1, 4})};

Record externSheet(std::initializer_list<int> words) {
  BytesBuilder body;
  body.u16(static_cast<unsigned>(words.size() / 3));
  for (const int word : words) body.u16(static_cast<unsigned>(word) & 0xFFFF);
  return {id::kExternSheet, body};
}

Record otherBook(std::string_view path, std::initializer_list<std::string_view> sheets) {
  BytesBuilder body;
  const auto text = [&](std::string_view s) { body.u16(static_cast<unsigned>(s.size())).u8(0).text(s); };
  body.u16(static_cast<unsigned>(sheets.size()));
  text(path);
  for (const auto sheet : sheets) text(sheet);
  return {id::kSupBook, body};
}

const Bytes kRef3dOfEntry0 = bytesOf({0x5A, 0, 0, 0, 0, 0, 0xC0});

TEST(Links, AFormulaOverASheetMakesTheTableWhenThereIsNone) {
  const BookPtr book = bookWith({u"Sheet1", u"Sheet2"});
  Sheet& sheet = *book->getSheet(0);
  EXPECT_TRUE(bodiesOf(savedBytes(*book), id::kSupBook).empty());
  EXPECT_TRUE(sheet.writeFormula(0, 0, u"Sheet2!A1", nullptr));
  EXPECT_TRUE(sheet.writeFormula(0, 1, u"sheet2!B7+Sheet2!C9", nullptr));
  EXPECT_TRUE(sheet.writeFormula(0, 2, u"Sheet1!B7", nullptr));
  const Bytes saved = savedBytes(*book);
  EXPECT_EQ(bodiesOf(saved, id::kSupBook).at(0), bytesOf({2, 0, 1, 4}));
  EXPECT_EQ(bodiesOf(saved, id::kExternSheet).at(0), bytesOf({2, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(formula(*loaded(saved), 0, 0, 1), u"Sheet2!B7+Sheet2!C9");
}

TEST(Links, AFormulaThatFailsLeavesNoEntryBehind) {
  const BookPtr book = bookWith({u"Sheet1", u"Sheet2"});
  EXPECT_FALSE(book->getSheet(0)->writeFormula(0, 0, u"Sheet2!A1+nobody", nullptr));
  EXPECT_STREQ(book->errorMessage(), "incorrect token in formula");
  EXPECT_TRUE(bodiesOf(savedBytes(*book), id::kSupBook).empty());
  EXPECT_FALSE(book->getSheet(0)->writeFormula(0, 0, u"Sheet3!A1", nullptr));
  EXPECT_STREQ(book->errorMessage(), "incorrect token in formula");
}

TEST(Links, OneSheetStaysOneSheetWhenOthersComeMoveAndGo) {
  const BookPtr book = bookWith({u"A", u"B"});
  book->getSheet(1)->writeFormula(0, 0, u"A!A1+B!A1", nullptr);
  book->insertSheet(0, u"Z", nullptr);
  book->addSheet(u"Y", nullptr);
  EXPECT_EQ(formula(*book, 2, 0, 0), u"A!A1+B!A1");
  EXPECT_TRUE(book->moveSheet(1, 4));
  EXPECT_EQ(formula(*book, 1, 0, 0), u"A!A1+B!A1");
  EXPECT_TRUE(book->delSheet(3));
  EXPECT_EQ(formula(*reloaded(*book), 1, 0, 0), u"#REF!+B!A1");
}

TEST(Links, ReferencesIntoOtherBooksPrintWithBookAndSheet) {
  const std::pair<std::string_view, std::u16string_view> cases[] = {{"\x01"
                                                                     "Book.xls",
                                                                     u"'[Book.xls]Two words'!A1"},
                                                                    {"Book.xls", u"'[Book.xls]Two words'!A1"},
                                                                    {"\x01"
                                                                     "\x01"
                                                                     "Cdir"
                                                                     "\x03"
                                                                     "Book.xls",
                                                                     u"'C:\\dir\\[Book.xls]Two words'!A1"},
                                                                    {"\x01"
                                                                     "\x01"
                                                                     "@srv"
                                                                     "\x03"
                                                                     "Book.xls",
                                                                     u"'\\\\srv\\[Book.xls]Two words'!A1"},
                                                                    {"\x01"
                                                                     "\x02"
                                                                     "Book.xls",
                                                                     u"'\\[Book.xls]Two words'!A1"},
                                                                    {"\x01"
                                                                     "\x04"
                                                                     "\x04"
                                                                     "Bo'ok.xls",
                                                                     u"'..\\..\\[Bo''ok.xls]Two words'!A1"},
                                                                    {"\x01"
                                                                     "http://host/a/Book.xls",
                                                                     u"'http://host/a/[Book.xls]Two words'!A1"}};
  for (const auto& [path, expected] : cases) {
    const BookPtr book = loaded(bookFile({otherBook(path, {"One", "Two words"}), externSheet({0, 1, 1})},
                                         {formulaRecord(0, 0, kRef3dOfEntry0)}));
    EXPECT_EQ(formula(*book, 0, 0, 0), expected);
  }
}

TEST(Links, ARunOfSheetsOfAnotherBookIsQuotedAsAWhole) {
  const BookPtr book = loaded(bookFile({otherBook("\x01"
                                                  "B.xls",
                                                  {"One", "Two"}),
                                        externSheet({0, 0, 1})},
                                       {formulaRecord(0, 0, kRef3dOfEntry0)}));
  EXPECT_EQ(formula(*book, 0, 0, 0), u"'[B.xls]One:Two'!A1");
}

TEST(Links, WhatPrintsOverAnotherBookCompilesAgain) {
  const BookPtr book = loaded(bookFile({otherBook("\x01"
                                                  "B.xls",
                                                  {"One", "Two"}),
                                        kSelf, externSheet({0, 0, 0})},
                                       {formulaRecord(0, 0, kRef3dOfEntry0)}));
  Sheet& sheet = *book->getSheet(0);
  EXPECT_TRUE(sheet.writeFormula(1, 0, u"SUM('[B.xls]One'!A1:B2)", nullptr)) << book->errorMessage();
  EXPECT_TRUE(sheet.writeFormula(2, 0, u"'[b.xls]Two'!$C$3", nullptr)) << book->errorMessage();
  EXPECT_FALSE(sheet.writeFormula(3, 0, u"'[B.xls]Three'!$C$3", nullptr));
  const BookPtr copy = reloaded(*book);
  EXPECT_EQ(formula(*copy, 0, 1, 0), u"SUM('[B.xls]One'!A1:B2)");
  EXPECT_EQ(formula(*copy, 0, 2, 0), u"'[B.xls]Two'!$C$3");
}

TEST(Links, EntriesThatLeadNowhereAreReferenceErrors) {
  const Record entries[] = {externSheet({}),          externSheet({0, -1, -1}), externSheet({0, 0, 1}),
                            externSheet({0, -2, -2}), externSheet({9, 0, 0}),   externSheet({1, 0, 0}),
                            externSheet({2, 0, 0}),   externSheet({3, 5, 5})};
  for (const Record& entry : entries) {
    const BookPtr book = loaded(bookFile({kSelf,
                                          {id::kSupBook, bytesOf({1, 0, 1, 0x3A})},
                                          {id::kSupBook, bytesOf({0, 0, 3, 0, 0, 'a', 3, 'b'})},
                                          otherBook("x", {"y"}),
                                          entry},
                                         {formulaRecord(0, 0, kRef3dOfEntry0)}));
    EXPECT_EQ(formula(*book, 0, 0, 0), u"#REF!");
  }
}

TEST(Links, EveryCutOfTheirRecordsIsToldOrRead) {
  const Bytes sheets = externSheet({0, 0, 0, 0, 0, 0}).bytes;
  for (std::size_t size = 0; size < sheets.size(); ++size) {
    BookPtr book(createBiffBook());
    const Bytes cut(sheets.begin(), sheets.begin() + static_cast<std::ptrdiff_t>(size));
    const Bytes file = bookFile({kSelf, {id::kExternSheet, cut}}, {});
    EXPECT_FALSE(book->loadRaw(file.data(), file.size(), -1, -1, -1));
    EXPECT_STREQ(book->errorMessage(), size < 2 ? "error in record ExternSheet" : "error in XTI");
  }
  const Bytes other = otherBook(
                          "\x01"
                          "B.xls",
                          {"One", "Two"})
                          .bytes;
  for (std::size_t size = 0; size <= other.size(); ++size) {
    BookPtr book(createBiffBook());
    const Bytes cut(other.begin(), other.begin() + static_cast<std::ptrdiff_t>(size));
    const Bytes file = bookFile({{id::kSupBook, cut}, externSheet({0, 1, 1})}, {formulaRecord(0, 0, kRef3dOfEntry0)});
    const bool read = book->loadRaw(file.data(), file.size(), -1, -1, -1);
    EXPECT_EQ(read, size >= 4) << size;
    if (!read) {
      EXPECT_STREQ(book->errorMessage(), "SupBookBlock: file is corrupt");
      continue;
    }
    EXPECT_EQ(formula(*book, 0, 0, 0), size == other.size() ? u"'[B.xls]Two'!A1" : u"#REF!");
  }
}

TEST(Links, ALongTableIsReadAndWrittenOverContinues) {
  BytesBuilder first, rest;
  first.u16(2000).fill(8222, 0);
  rest.fill(6 * 2000 - 8222, 0);
  const BookPtr book = loaded(bookFile({kSelf, {id::kExternSheet, first}, {id::kContinue, rest}}, {}));
  const Bytes saved = savedBytes(*book);
  EXPECT_EQ(bodiesOf(saved, id::kExternSheet).at(0).size(), 8224u);
  EXPECT_EQ(bodiesOf(saved, id::kContinue).at(0).size(), 12002u - 8224u);
}

TEST(Links, WhatBelongsToASupBookComesBackBehindIt) {
  const Record name{id::kExternName, bytesOf({0, 0, 0, 0, 0, 0, 3, 0, 'F', 'o', 'o', 2, 0, 0x1C, 0x17})};
  const Record addIn{id::kSupBook, bytesOf({1, 0, 1, 0x3A})};
  const BookPtr book =
      loaded(bookFile({addIn, name, kSelf, externSheet({0, -2, -2})},
                      {formulaRecord(0, 0, bytesOf({0x39, 0, 0, 1, 0, 0, 0, 0x1E, 5, 0, 0x42, 2, 255, 0}))}));
  EXPECT_EQ(formula(*book, 0, 0, 0), u"?(5)");
  const auto records = recordsOf(savedBytes(*book));
  const auto at = std::find(records.begin(), records.end(), addIn);
  ASSERT_NE(at, records.end());
  EXPECT_EQ(*(at + 1), name);
  EXPECT_EQ(*(at + 2), kSelf);
}

}  // namespace
}  // namespace rubrica::test
