// Sheets as files have them: cells without references, out of order, repeated, outside the sheet; partial loads; what a
// save brings up to date.
#include "engine/xlerror.h"
#include "tests/support/temporary_directory.h"
#include "tests/xml/sheet_fixture.h"

namespace rubrica {
namespace {

template <class Tag>
class SheetLoadOf : public SheetFixture<Tag> {
 protected:
  std::string failureOf(std::string_view rows) {
    try {
      this->parse(rows);
    } catch (const xlerror& error) {
      return error.what();
    }
    return "ok";
  }
};
TYPED_TEST_SUITE(SheetLoadOf, Flavours, FlavourNames);

TYPED_TEST(SheetLoadOf, CellsAndRowsWithoutReferencesAreReadByPosition) {
  const auto sheet = this->parse(
      "<row><c><v>1</v></c><c><v>2</v></c></row><row><c r=\"C2\"><v>3</v></c><c><v>4</v></c></row>"
      "<row r=\"9\"><c><v>5</v></c></row><row><c><v>6</v></c></row>");
  EXPECT_EQ(sheet->readNum(0, 1, nullptr), 2);
  EXPECT_EQ(sheet->readNum(1, 3, nullptr), 4);
  EXPECT_EQ(sheet->readNum(9, 0, nullptr), 6);
  EXPECT_EQ(sheet->lastRow(), 10);
  EXPECT_EQ(sheet->lastCol(), 4);
  EXPECT_EQ(this->rowsOf(*sheet),
            "<row r=\"1\"><c r=\"A1\"><v>1</v></c><c r=\"B1\"><v>2</v></c></row>"
            "<row r=\"2\"><c r=\"C2\"><v>3</v></c><c r=\"D2\"><v>4</v></c></row>"
            "<row r=\"9\"><c r=\"A9\"><v>5</v></c></row><row r=\"10\"><c r=\"A10\"><v>6</v></c></row>");
}

TYPED_TEST(SheetLoadOf, RowsAndCellsOutOfOrderArePutInOrder) {
  const auto sheet = this->parse(
      "<row r=\"3\"><c r=\"C3\"><v>3</v></c><c r=\"A3\"><v>1</v></c><c r=\"B3\"><v>2</v></c></row>"
      "<row r=\"1\" ht=\"20\"><c r=\"A1\"><v>9</v></c></row>");
  EXPECT_EQ(this->rowsOf(*sheet),
            "<row r=\"1\" ht=\"20\"><c r=\"A1\"><v>9</v></c></row>"
            "<row r=\"3\"><c r=\"A3\"><v>1</v></c><c r=\"B3\"><v>2</v></c><c r=\"C3\"><v>3</v></c></row>");
  EXPECT_TRUE(sheet->writeNum(1, 0, 5, nullptr));
  EXPECT_EQ(sheet->readNum(2, 1, nullptr), 2);
}

TYPED_TEST(SheetLoadOf, RepeatedRowsAreJoinedAndOfRepeatedCellsTheLastStands) {
  const auto sheet = this->parse(
      "<row r=\"2\" ht=\"20\"><c r=\"A2\"><v>1</v></c><c r=\"C2\"><v>3</v></c><c r=\"A2\"><v>7</v></c></row>"
      "<row r=\"1\"/><row r=\"2\" ht=\"30\"><c r=\"B2\"><v>2</v></c><c r=\"C2\"><v>4</v></c></row>");
  EXPECT_EQ(this->rowsOf(*sheet),
            "<row r=\"1\"/><row r=\"2\" ht=\"20\"><c r=\"A2\"><v>7</v></c><c r=\"B2\"><v>2</v></c>"
            "<c r=\"C2\"><v>4</v></c></row>");
}

TYPED_TEST(SheetLoadOf, ACellStandsInTheRowThatItIsIn) {
  const auto sheet = this->parse("<row r=\"2\"><c r=\"A7\"><v>1</v></c><c r=\"nonsense\"><v>2</v></c></row>");
  EXPECT_EQ(this->rowsOf(*sheet), "<row r=\"2\"><c r=\"A2\"><v>1</v></c><c r=\"B2\"><v>2</v></c></row>");
}

TYPED_TEST(SheetLoadOf, RowsAndCellsOutsideTheSheetAreMessages) {
  EXPECT_EQ(this->failureOf("<row r=\"1048576\"><c r=\"XFD1048576\"/></row>"), "ok");
  EXPECT_EQ(this->failureOf("<row r=\"1048577\"/>"), "row must be in range 0-1048575");
  EXPECT_EQ(this->failureOf("<row r=\"0\"/>"), "row must be in range 0-1048575");
  EXPECT_EQ(this->failureOf("<row r=\"4294967295\"/>"), "row must be in range 0-1048575");
  EXPECT_EQ(this->failureOf("<row r=\"1048576\"/><row/>"), "row must be in range 0-1048575");
  EXPECT_EQ(this->failureOf("<row r=\"1\"><c r=\"XFE1\"/></row>"), "col must be in range 0-16383");
  EXPECT_EQ(this->failureOf("<row r=\"1\"><c r=\"XFD1\"/><c/></row>"), "col must be in range 0-16383");
  EXPECT_EQ(this->failureOf("<row r=\"4294967296\"/>").substr(0, 3), "Val");
}

TYPED_TEST(SheetLoadOf, APartialLoadKeepsItsRows) {
  std::string rows;
  for (int r = 1; r <= 30; ++r) {
    const std::string number = std::to_string(r);
    rows += "<row r=\"" + number + "\">";
    if (r != 11) rows += "<c r=\"B" + number + "\"><v>" + number + "</v></c>";
    rows += "</row>";
  }
  const auto sheet = this->parse(rows, 10, 20);
  EXPECT_EQ(sheet->get_sheetData().size_row(), 11u);
  EXPECT_EQ(sheet->firstRow(), 11) << "row 10 has no cell";
  EXPECT_EQ(sheet->lastRow(), 21);
  EXPECT_EQ(sheet->readNum(20, 1, nullptr), 21);
  EXPECT_EQ(sheet->cellType(9, 1), CellType::empty);
  EXPECT_EQ(sheet->cellType(21, 1), CellType::empty);
  EXPECT_EQ(this->parse(rows, 28, -1)->get_sheetData().size_row(), 2u);
  EXPECT_EQ(this->parse(rows, -1, 0)->get_sheetData().size_row(), 1u);
  EXPECT_EQ(this->parse(rows, 20, 10)->get_sheetData().size_row(), 0u);
  EXPECT_EQ(this->parse(rows, 5000, 2000000000)->get_sheetData().size_row(), 0u);
}

TYPED_TEST(SheetLoadOf, APartialLoadCountsRowsThatDoNotSayTheirNumber) {
  const auto sheet = this->parse(
      "<row><c><v>1</v></c></row><row><c><v>2</v></c></row><row r=\"7\"><c><v>7</v></c></row>"
      "<row><c><v>8</v></c></row><row><c><v>9</v></c></row>",
      1, 7);
  EXPECT_EQ(this->rowsOf(*sheet),
            "<row r=\"2\"><c r=\"A2\"><v>2</v></c></row><row r=\"7\"><c r=\"A7\"><v>7</v></c></row>"
            "<row r=\"8\"><c r=\"A8\"><v>8</v></c></row>");
}

TYPED_TEST(SheetLoadOf, APartFromAFileIsTheSame) {
  const test::TemporaryDirectory directory;
  const std::string path = directory.file("sheet.xml").string();
  for (const bool hasMarkup : {false, true}) {
    std::string text = partText<TypeParam>("worksheet",
                                           "<sheetData><row r=\"1\"><c r=\"A1\"><v>1</v></c></row><row r=\"5\"><c "
                                           "r=\"A5\"><v>2</v></c></row></sheetData>");
    if (hasMarkup) {
      text.replace(text.find(" xmlns"), 6,
                   " xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\" mc:Ignorable=\"x\" "
                   "xmlns:x=\"urn:x\" x:y=\"1\" xmlns");
    }
    test::writeText(path, text);
    XMLSheetImplT<TypeParam> whole(this->book, path);
    EXPECT_EQ(whole.readNum(4, 0, nullptr), 2);
    EXPECT_EQ(whole.lastRow(), 5);
    XMLSheetImplT<TypeParam> part(this->book, path, 1, 10);
    EXPECT_EQ(part.firstRow(), 4);
    EXPECT_EQ(part.cellType(0, 0), CellType::empty);
  }
  EXPECT_THROW(XMLSheetImplT<TypeParam>(this->book, path + ".missing"), xlerror);
  EXPECT_THROW(XMLSheetImplT<TypeParam>(this->book, path + ".missing", 1, 2), xlerror);
}

TYPED_TEST(SheetLoadOf, BytesThatAreNoSheetFail) {
  using Sheet = XMLSheetImplT<TypeParam>;
  const char* const kNothing = nullptr;
  EXPECT_THROW(Sheet(this->book, kNothing, std::size_t{0}), xlerror);
  EXPECT_THROW(Sheet(this->book, kNothing, 0, 1, 2), xlerror);
  const std::string strings = partText<TypeParam>("sst", "");
  EXPECT_THROW(Sheet(this->book, strings.data(), strings.size()), xlerror);
  EXPECT_THROW(Sheet(this->book, strings.data(), strings.size(), 1, 2), xlerror);
  const std::string whole =
      partText<TypeParam>("worksheet", "<sheetData><row r=\"1\"><c r=\"A1\"><v>1</v></c></row></sheetData>");
  for (std::size_t size = 0; size + 1 < whole.size(); ++size) {
    EXPECT_THROW(Sheet(this->book, whole.data(), size), xlerror) << size;
  }
}

TYPED_TEST(SheetLoadOf, ASaveDropsSpansAndWritesWhatIsRequired) {
  const auto sheet = this->parseAll(
      "<dimension ref=\"A1:Z99\"/><sheetData><row r=\"1\" spans=\"1:26\"><c r=\"B1\"><v>1</v></c></row></sheetData>");
  const std::string text = this->saved(*sheet);
  EXPECT_EQ(text.find("spans"), std::string::npos) << text;
  EXPECT_NE(text.find("<dimension ref=\"B1\"/>"), std::string::npos) << text;
  EXPECT_NE(text.find("<sheetFormatPr defaultRowHeight=\"15\"/>"), std::string::npos) << text;
  const auto other = this->parseAll("<sheetFormatPr defaultRowHeight=\"12.75\"/><sheetData/>");
  EXPECT_NE(this->saved(*other).find("<sheetFormatPr defaultRowHeight=\"12.75\"/>"), std::string::npos);
}

TYPED_TEST(SheetLoadOf, ACopyInTheSameBookIsTheSameTree) {
  const auto source = this->parseAll(
      "<cols><col min=\"1\" max=\"1\" width=\"9\" style=\"0\"/></cols>"
      "<sheetData><row r=\"3\"><c r=\"B3\" t=\"str\"><v>a</v></c></row></sheetData><mergeCells count=\"1\"><mergeCell "
      "ref=\"A1:B2\"/></mergeCells>");
  XMLSheetImplT<TypeParam> copy(this->book, *source);
  EXPECT_EQ(this->saved(copy), this->saved(*source));
  EXPECT_EQ(copy.firstRow(), 0) << "the merge is in use";
  copy.writeNum(2, 1, 5, nullptr);
  EXPECT_EQ(this->stringAt(*source, 2, 1), u"a");
}

TYPED_TEST(SheetLoadOf, ACopyInAnotherBookBringsItsTextsAndFormats) {
  auto& sheet = this->fresh;
  auto* format = this->book.addFormat(nullptr);
  format->setAlignH(AlignH::center);
  sheet.writeStr(0, 0, u"one", nullptr, 0);
  sheet.writeStr(0, 1, u"two", format, 0);
  sheet.writeStr(1, 1, u"two", format, 0);
  sheet.writeNum(2, 0, 4, format);
  XMLBookImplT<TypeParam> other;
  other.needSharedStrings().add(u"two");
  other.addFormat(nullptr);
  XMLSheetImplT<TypeParam> copy(other, sheet);
  EXPECT_EQ(this->stringAt(copy, 0, 0), u"one");
  EXPECT_EQ(this->stringAt(copy, 0, 1), u"two");
  EXPECT_EQ(other.sharedStrings()->count(), 2u);
  EXPECT_EQ(other.formatSize(), 3) << "one format was brought, once";
  EXPECT_EQ(copy.cellFormat(2, 0), other.format(2));
  EXPECT_EQ(copy.cellFormat(2, 0)->alignH(), AlignH::center);
  EXPECT_EQ(copy.cellFormat(0, 0), other.format(0));
  EXPECT_EQ(this->stringAt(sheet, 0, 1), u"two");
}

}  // namespace
}  // namespace rubrica
