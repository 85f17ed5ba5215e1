// The workbook globals: what a new book writes, in which order, and what a load keeps.
#include "tests/biff/core/book_fixture.h"

namespace rubrica {
namespace {

using test::bof;
using test::Bytes;
using test::BytesBuilder;
using test::fileOf;
using test::findRecord;
using test::idsOf;
using test::loadBytes;
using test::loaded;
using test::newBook;
using test::OneSheet;
using test::Record;
using test::recordsOf;
using test::savedBytes;
using test::savedRecords;
using test::substream;
using test::textOf;

// The globals of a book around extra records, with one empty sheet.
std::vector<Record> withGlobals(const std::vector<Record>& extra, std::uint16_t version = kBiff8Version) {
  auto records = test::bookAround({}, version);
  std::size_t at = 1;
  while (records[at].recordId != id::kBoundSheet) ++at;
  records.insert(records.begin() + static_cast<std::ptrdiff_t>(at), extra.begin(), extra.end());
  return records;
}

std::string loadMessage(const std::vector<Record>& records) {
  auto book = newBook();
  return loadBytes(*book, fileOf(records)) ? "ok" : book->errorMessage();
}

TEST(BookGlobals, ANewBookWritesItsRecordsInTheOrderOfTheFormat) {
  auto book = newBook();
  const auto ids = idsOf(savedRecords(*book));
  std::vector<std::uint16_t> expected = {2057, 225, 193, 226, 92, 66,  353, 317, 156, 25, 18,
                                         19,   431, 444, 61,  64, 141, 34,  14,  439, 218};
  expected.insert(expected.end(), 5, 49);
  expected.insert(expected.end(), 21, 224);
  expected.insert(expected.end(), 6, 659);
  for (const int recordId : {352, 140, 449, 252, 255, 10}) expected.push_back(static_cast<std::uint16_t>(recordId));
  EXPECT_EQ(ids, expected);
}

TEST(BookGlobals, ANewBookWritesTheStatedValues) {
  auto book = newBook();
  const auto records = savedRecords(*book);
  EXPECT_EQ(records[0].bytes, Bytes(BytesBuilder().u16(0x0600).u16(5).u16(0x209A).u16(0x07CD).u32(0xC0C9).u32(0x306)));
  EXPECT_EQ(findRecord(records, 225)->bytes, Bytes(BytesBuilder().u16(1200)));
  EXPECT_EQ(findRecord(records, 66)->bytes, Bytes(BytesBuilder().u16(1200)));
  EXPECT_EQ(findRecord(records, 156)->bytes, Bytes(BytesBuilder().u16(14)));
  EXPECT_EQ(findRecord(records, 61)->bytes,
            Bytes(BytesBuilder().u16(0).u16(15).u16(16155).u16(10230).u16(56).u16(0).u16(0).u16(1).u16(600)));
  EXPECT_EQ(findRecord(records, 140)->bytes, Bytes(BytesBuilder().u16(1).u16(1)));
  EXPECT_EQ(findRecord(records, 449)->bytes, Bytes(BytesBuilder().u16(449).u16(0).u32(114210)));
  EXPECT_EQ(findRecord(records, 14)->bytes, Bytes(BytesBuilder().u16(1)));
  const Bytes& user = findRecord(records, 92)->bytes;
  ASSERT_EQ(user.size(), 112u);
  EXPECT_EQ(Bytes(user.begin(), user.begin() + 3), test::bytesOf({1, 0, 0}));
  EXPECT_EQ(user[111], std::byte{0x20});
}

TEST(BookGlobals, SheetPositionsAreFilledIn) {
  OneSheet b;
  b.book->addSheet(u"Second");
  const Bytes file = savedBytes(*b.book);
  const auto records = recordsOf(file);
  std::uint32_t position = 0;
  std::vector<std::uint32_t> bofs, noted;
  for (const Record& record : records) {
    if (record.recordId == id::kBof) bofs.push_back(position);
    if (record.recordId == id::kBoundSheet) {
      std::uint32_t note = 0;
      std::memcpy(&note, record.bytes.data(), sizeof(note));
      noted.push_back(note);
    }
    position += static_cast<std::uint32_t>(4 + record.bytes.size());
  }
  ASSERT_EQ(bofs.size(), 3u);
  EXPECT_EQ(noted, (std::vector<std::uint32_t>{bofs[1], bofs[2]}));
}

TEST(BookGlobals, KnownAndUnknownRecordsSurviveInTheirPlaces) {
  const Record unknown1{0x0999, BytesBuilder().text("one")}, unknown2{0x0998, BytesBuilder().text("two")},
      more{id::kContinue, BytesBuilder().text("more")}, theme{2198, BytesBuilder().text("theme")},
      compat{2188, BytesBuilder().text("c12")}, codeName{442, BytesBuilder().text("code")},
      xfExt{2173, BytesBuilder().text("xfext")}, picture{2150, BytesBuilder().text("hf")};
  const auto book = loaded(fileOf(withGlobals({unknown1, compat, theme, xfExt, unknown2, more, codeName, picture})));
  const auto globals = substream(savedRecords(*book), 0);
  for (const Record& record : {unknown1, unknown2, more, theme, compat, codeName, xfExt, picture}) {
    const Record* found = findRecord(globals, record.recordId);
    ASSERT_NE(found, nullptr) << record.recordId;
    EXPECT_EQ(*found, record);
  }
  const auto ids = idsOf(globals);
  const std::vector<std::uint16_t> tail(ids.end() - 5, ids.end());
  EXPECT_EQ(tail, (std::vector<std::uint16_t>{2198, 2188, 0x0999, 0x0998, id::kContinue}));
}

TEST(BookGlobals, BookExtAndExcel9FileAreReadAndDropped) {
  const auto book =
      loaded(fileOf(withGlobals({{448, {}}, {2147, BytesBuilder().fill(22, 0)}, {2147, BytesBuilder().fill(20, 0)}})));
  const auto records = savedRecords(*book);
  EXPECT_EQ(findRecord(records, 448), nullptr);
  EXPECT_EQ(findRecord(records, 2147), nullptr);
  EXPECT_EQ(loadMessage(withGlobals({{2147, BytesBuilder().fill(23, 0)}})), "BookExt size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{2147, BytesBuilder().fill(19, 0)}})), "BookExt size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{448, BytesBuilder().u8(0)}})), "Excel9File size is incorrect");
}

TEST(BookGlobals, RecordsOfAWrongSizeFailWithTheirName) {
  const struct {
    std::uint16_t recordId;
    const char* name;
  } words[] = {
      {14, "CalcPrecision"}, {18, "Protect"},  {19, "Password"},  {25, "WinProtect"},           {34, "Date1904"},
      {64, "Backup"},        {66, "CodePage"}, {141, "HideObj"},  {156, "BuiltInFnGroupCount"}, {218, "BookBool"},
      {352, "UsesELFs"},     {353, "DSF"},     {431, "Prot4Rev"}, {439, "RefreshAll"},          {444, "Prot4RevPass"}};
  for (const auto& [recordId, name] : words) {
    EXPECT_EQ(loadMessage(withGlobals({{recordId, BytesBuilder().u8(0)}})), std::string(name) + " size is incorrect");
    EXPECT_EQ(loadMessage(withGlobals({{recordId, BytesBuilder().u16(0).u8(0)}})),
              std::string(name) + " size is incorrect");
    EXPECT_EQ(loadMessage(withGlobals({{recordId, BytesBuilder().u16(0)}})), "ok");
  }
  EXPECT_EQ(loadMessage(withGlobals({{61, BytesBuilder().fill(17, 0)}})), "Window1 size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{140, BytesBuilder().fill(3, 0)}})), "Country size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{449, BytesBuilder().fill(9, 0)}})), "RecalcId size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{317, BytesBuilder().fill(3, 0)}})), "RRTabId size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{193, BytesBuilder().fill(1, 0)}})), "Mms size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{225, BytesBuilder().fill(1, 0)}})), "InterfaceHdr size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{226, BytesBuilder().fill(3, 0)}})), "InterfaceEnd size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{96, BytesBuilder().fill(1, 0)}})), "Template size is incorrect");
  EXPECT_EQ(loadMessage(withGlobals({{133, BytesBuilder().fill(7, 0)}})), "BoundSheet8 size is incorrect");
}

TEST(BookGlobals, BofMayEndBehindAnyOfItsFields) {
  for (const std::size_t size : {4u, 6u, 8u, 12u, 16u}) {
    auto records = test::bookAround({});
    records[0].bytes.resize(size);
    EXPECT_EQ(loadMessage(records), "ok") << size;
  }
  for (const std::size_t size : {0u, 1u, 2u, 3u, 5u, 7u, 9u, 10u, 11u, 13u, 15u}) {
    auto records = test::bookAround({});
    records[0].bytes.resize(size);
    EXPECT_EQ(loadMessage(records), "Bof size is incorrect") << size;
  }
  auto longer = test::bookAround({});
  longer[0].bytes.resize(18);
  EXPECT_EQ(loadMessage(longer), "Bof size is incorrect");
}

TEST(BookGlobals, OnlyTwoVersionsAreRead) {
  for (const unsigned version : {0x0200u, 0x0300u, 0x0400u, 0x0700u}) {
    auto records = test::bookAround({});
    records[0].bytes = bof(5, static_cast<std::uint16_t>(version));
    EXPECT_EQ(loadMessage(records), "This file format isn't supported");
  }
}

TEST(BookGlobals, EncryptedBooksAreRefused) {
  EXPECT_EQ(loadMessage(withGlobals({{47, BytesBuilder().fill(54, 1)}})), "workbook is encrypted");
}

TEST(BookGlobals, ARecordIdOfZeroFails) {
  EXPECT_EQ(loadMessage(withGlobals({{0, {}}})), "read error: record id can't be 0");
  EXPECT_EQ(loadMessage(test::bookAround({{0, {}}})), "read error: record id can't be 0");
}

TEST(BookGlobals, TemplatesCarryTheirRecord) {
  OneSheet b;
  EXPECT_FALSE(b.book->isTemplate());
  b.book->setTemplate();
  const auto records = savedRecords(*b.book);
  EXPECT_EQ(records[1], (Record{96, {}}));
  EXPECT_TRUE(test::reloaded(*b.book)->isTemplate());
}

TEST(BookGlobals, TheDateSystemSurvives) {
  OneSheet b;
  EXPECT_FALSE(b.book->isDate1904());
  EXPECT_TRUE(b.book->setDate1904());
  EXPECT_EQ(b.book->datePack(2026, 11, 20), 46346.0 - 1462);
  const auto again = test::reloaded(*b.book);
  EXPECT_TRUE(again->isDate1904());
  int year = 0, month = 0, day = 0;
  EXPECT_TRUE(again->dateUnpack(46346.0 - 1462, &year, &month, &day));
  EXPECT_EQ(year * 10000 + month * 100 + day, 20261120);
}

TEST(BookGlobals, DateUnpackOutsideItsRangeLeavesTheMessage) {
  auto book = newBook();
  book->getSheet(3);
  EXPECT_FALSE(book->dateUnpack(1e9, nullptr, nullptr, nullptr));
  EXPECT_STREQ(book->errorMessage(), "index is out of range");
}

TEST(BookGlobals, SheetNamesOfBiff5HaveNoFlagByte) {
  auto records = test::bookAround({}, kBiff5Version);
  for (Record& record : records) {
    if (record.recordId == id::kFont)
      record.bytes = BytesBuilder().u16(200).u16(0).u16(0x7FFF).u16(400).u16(0).u32(0).u8(5).text("Arial");
    if (record.recordId == id::kXf) record.bytes = BytesBuilder().u16(0).u16(0).u16(1).fill(10, 0);
  }
  const auto book = loaded(fileOf(records));
  EXPECT_EQ(textOf(book->getSheetName(0)), u"Sheet1");
  EXPECT_EQ(book->biffVersion(), 0x0500);
  const auto again = test::reloaded(*book);
  EXPECT_EQ(again->biffVersion(), 0x0600) << "what is saved is BIFF8 throughout";
  EXPECT_EQ(textOf(again->getSheetName(0)), u"Sheet1");
}

TEST(BookGlobals, PaletteIsWrittenOnceColoursWerePacked) {
  OneSheet b;
  EXPECT_EQ(findRecord(savedRecords(*b.book), id::kPalette), nullptr);
  EXPECT_EQ(b.book->colorPack(1, 2, 3), 8);
  const auto records = savedRecords(*b.book);
  ASSERT_NE(findRecord(records, id::kPalette), nullptr);
  int red = 0, green = 0, blue = 0;
  test::reloaded(*b.book)->colorUnpack(8, &red, &green, &blue);
  EXPECT_EQ(red * 10000 + green * 100 + blue, 10203);
}

TEST(BookGlobals, AStreamUnderTheMiniCutoffSaysItIs4096BytesLong) {
  auto book = newBook();
  Xls xls;
  const Bytes file = savedBytes(*book);
  xls.read(file);
  EXPECT_EQ(xls.directory()[1].streamSize, 4096u);
}

TEST(BookGlobals, SavingTwiceGivesTheSameBytes) {
  OneSheet b;
  b.sheet->writeStr(0, 0, u"text");
  b.sheet->writeNum(3, 3, 0.1);
  const Bytes first = savedBytes(*b.book);
  EXPECT_EQ(savedBytes(*b.book), first);
  EXPECT_EQ(savedBytes(*loaded(first)), first);
}

}  // namespace
}  // namespace rubrica
