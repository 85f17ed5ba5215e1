// Formulas as text: separators, reference styles, cached values, shared groups.
#include "tests/xml/sheet_fixture.h"

namespace rubrica {
namespace {

template <class Tag>
class SheetFormulasOf : public SheetFixture<Tag> {
 protected:
  void SetUp() override { this->book.setLocale("UTF-8.comma"); }
};
TYPED_TEST_SUITE(SheetFormulasOf, Flavours, FlavourNames);

// A group of four by two cells, B2:C5, of which C3 is an ordinary number and D2 another group.
constexpr char kGroup[] =
    "<row r=\"2\"><c r=\"B2\"><f t=\"shared\" ref=\"B2:C5\" si=\"0\">A2+$A$1</f><v>1</v></c>"
    "<c r=\"C2\"><f t=\"shared\" si=\"0\"/><v>2</v></c><c r=\"D2\"><f t=\"shared\" ref=\"D2\" si=\"1\">A1</f></c></row>"
    "<row r=\"3\"><c r=\"B3\"><f t=\"shared\" si=\"0\"/></c><c r=\"C3\"><v>3</v></c></row>"
    "<row r=\"5\"><c r=\"C5\"><f t=\"shared\" si=\"0\"/></c></row>";

TYPED_TEST(SheetFormulasOf, AFormulaIsStoredAsText) {
  auto& sheet = this->fresh;
  EXPECT_TRUE(sheet.writeFormula(0, 0, u"=SUM(A2;B2)&\"a;b\"", nullptr));
  EXPECT_EQ(this->rowsOf(sheet), "<row r=\"1\"><c r=\"A1\"><f>SUM(A2,B2)&amp;&quot;a,b&quot;</f></c></row>");
  EXPECT_EQ(this->formulaAt(sheet, 0, 0), u"SUM(A2,B2)&\"a,b\"");
  EXPECT_TRUE(sheet.isFormula(0, 0));
  EXPECT_EQ(sheet.cellType(0, 0), CellType::number);
  EXPECT_FALSE(sheet.isFormula(0, 1));
  EXPECT_EQ(this->message(), "ok");
  sheet.writeNum(0, 1, 1, nullptr);
  EXPECT_EQ(sheet.readFormula(0, 1, nullptr), nullptr);
  EXPECT_EQ(this->message(), "this cell doesn't contain a formula");
  EXPECT_EQ(sheet.readFormula(3, 3, nullptr), nullptr);
  EXPECT_EQ(this->message(), "cell is not found");
}

TYPED_TEST(SheetFormulasOf, TheSeparatorFollowsTheBook) {
  auto& sheet = this->fresh;
  this->book.setLocale("UTF-8.semicolon");
  sheet.writeFormula(0, 0, u"SUM(A1;B1)", nullptr);
  EXPECT_EQ(this->formulaAt(sheet, 0, 0), u"SUM(A1;B1)");
  EXPECT_EQ(this->rowsOf(sheet), "<row r=\"1\"><c r=\"A1\"><f>SUM(A1,B1)</f></c></row>");
  sheet.writeFormula(0, 0, u"A1&\",\"", nullptr);
  EXPECT_EQ(this->formulaAt(sheet, 0, 0), u"A1&\";\"") << "texts aren't told from the rest";
}

TYPED_TEST(SheetFormulasOf, CachedValues) {
  auto& sheet = this->fresh;
  sheet.writeFormulaNum(0, 0, u"0.1", 0.1, nullptr);
  sheet.writeFormulaStr(0, 1, u"\"a\"", u"a", nullptr);
  sheet.writeFormulaBool(0, 2, u"TRUE", true, nullptr);
  EXPECT_EQ(this->rowsOf(sheet),
            "<row r=\"1\"><c r=\"A1\"><f>0.1</f><v>0.10000000000000001</v></c>"
            "<c r=\"B1\" t=\"str\"><f>&quot;a&quot;</f><v>a</v></c><c r=\"C1\" t=\"b\"><f>TRUE</f><v>1</v></c></row>");
  EXPECT_EQ(sheet.readNum(0, 0, nullptr), 0.1);
  EXPECT_EQ(this->stringAt(sheet, 0, 1), u"a");
  EXPECT_TRUE(sheet.readBool(0, 2, nullptr));
  EXPECT_EQ(sheet.cellType(0, 1), CellType::string);
  EXPECT_TRUE(sheet.writeFormula(0, 1, u"1", nullptr));
  EXPECT_EQ(sheet.cellType(0, 1), CellType::number) << "the old value is gone";
  EXPECT_FALSE(sheet.writeFormulaStr(0, 3, u"1", std::u16string(32768, u'a').c_str(), nullptr));
  EXPECT_EQ(this->message(), "string is too long");
}

TYPED_TEST(SheetFormulasOf, R1c1StyleIsConvertedBothWays) {
  auto& sheet = this->fresh;
  this->book.setRefR1C1(true);
  EXPECT_TRUE(sheet.writeFormula(4, 2, u"=SUM(R[-1]C;R1C1)+LOG10(RC[1])", nullptr));
  EXPECT_EQ(this->rowsOf(sheet), "<row r=\"5\"><c r=\"C5\"><f>SUM(C4,$A$1)+LOG10(D5)</f></c></row>");
  EXPECT_EQ(this->formulaAt(sheet, 4, 2), u"SUM(R[-1]C,R1C1)+LOG10(RC[1])");
  this->book.setRefR1C1(false);
  EXPECT_EQ(this->formulaAt(sheet, 4, 2), u"SUM(C4,$A$1)+LOG10(D5)");
}

TYPED_TEST(SheetFormulasOf, MembersOfASharedGroupReadByTheirPlace) {
  const auto sheet = this->parse(kGroup);
  EXPECT_EQ(this->formulaAt(*sheet, 1, 1), u"A2+$A$1");
  EXPECT_EQ(this->formulaAt(*sheet, 1, 2), u"B2+$A$1");
  EXPECT_EQ(this->formulaAt(*sheet, 2, 1), u"A3+$A$1");
  EXPECT_EQ(this->formulaAt(*sheet, 4, 2), u"B5+$A$1");
  EXPECT_EQ(this->formulaAt(*sheet, 1, 3), u"A1");
  this->book.setRefR1C1(true);
  EXPECT_EQ(this->formulaAt(*sheet, 4, 2), u"RC[-1]+R1C1");
}

TYPED_TEST(SheetFormulasOf, AnOverwrittenMasterHandsItsGroupOver) {
  const auto sheet = this->parse(kGroup);
  sheet->writeNum(1, 1, 5, nullptr);
  EXPECT_EQ(
      this->rowsOf(*sheet),
      "<row r=\"2\"><c r=\"B2\"><v>5</v></c><c r=\"C2\"><f t=\"shared\" ref=\"B2:C5\" si=\"0\">B2+$A$1</f><v>2</v></c>"
      "<c r=\"D2\"><f t=\"shared\" ref=\"D2\" si=\"1\">A1</f></c></row>"
      "<row r=\"3\"><c r=\"B3\"><f t=\"shared\" si=\"0\"/></c><c r=\"C3\"><v>3</v></c></row>"
      "<row r=\"5\"><c r=\"C5\"><f t=\"shared\" si=\"0\"/></c></row>");
  EXPECT_EQ(this->formulaAt(*sheet, 2, 1), u"A3+$A$1");
  sheet->writeStr(1, 2, u"x", nullptr, 0);
  EXPECT_EQ(this->formulaAt(*sheet, 2, 1), u"A3+$A$1");
  EXPECT_EQ(this->formulaAt(*sheet, 4, 2), u"B5+$A$1");
  sheet->writeBlank(2, 1, nullptr);
  EXPECT_EQ(this->formulaAt(*sheet, 4, 2), u"B5+$A$1");
  EXPECT_NE(this->rowsOf(*sheet).find("<c r=\"C5\"><f t=\"shared\" ref=\"B2:C5\" si=\"0\">B5+$A$1</f></c>"),
            std::string::npos);
  sheet->writeFormula(4, 2, u"7", nullptr);
  EXPECT_EQ(this->formulaAt(*sheet, 4, 2), u"7");
  EXPECT_EQ(this->formulaAt(*sheet, 1, 3), u"A1");
}

TYPED_TEST(SheetFormulasOf, AnOverwrittenMemberLeavesTheGroup) {
  const auto sheet = this->parse(kGroup);
  sheet->writeNum(1, 2, 5, nullptr);
  EXPECT_EQ(this->formulaAt(*sheet, 1, 1), u"A2+$A$1");
  EXPECT_EQ(this->formulaAt(*sheet, 2, 1), u"A3+$A$1");
  sheet->setCellFormat(1, 1, this->book.addFormat(nullptr));
  EXPECT_EQ(this->formulaAt(*sheet, 4, 2), u"B5+$A$1") << "a format changes no formula";
}

TYPED_TEST(SheetFormulasOf, LongGroupsAreHandedOverCellByCell) {
  std::string rows;
  constexpr int kRows = 20000;
  for (int r = 1; r <= kRows; ++r) {
    const std::string number = std::to_string(r);
    rows += "<row r=\"" + number + "\"><c r=\"B" + number + "\"><f t=\"shared\"" +
            (r == 1 ? " ref=\"B1:B20000\" si=\"3\">A1*2</f>" : std::string(" si=\"3\"/>")) + "</c></row>";
  }
  const auto sheet = this->parse(rows);
  for (int r = 0; r < kRows - 1; ++r) sheet->writeNum(r, 1, r, nullptr);
  EXPECT_EQ(this->formulaAt(*sheet, kRows - 1, 1), u"A20000*2");
}

TYPED_TEST(SheetFormulasOf, ACopyOfAMemberHasAFormulaOfItsOwn) {
  const auto sheet = this->parse(kGroup);
  EXPECT_TRUE(sheet->copyCell(2, 1, 9, 9));
  EXPECT_EQ(this->formulaAt(*sheet, 9, 9), u"A3+$A$1");
  EXPECT_NE(this->rowsOf(*sheet).find("<c r=\"J10\"><f>A3+$A$1</f></c>"), std::string::npos);
  EXPECT_TRUE(sheet->copyCell(1, 2, 1, 1)) << "over the master";
  EXPECT_EQ(this->formulaAt(*sheet, 1, 1), u"B2+$A$1");
  EXPECT_EQ(this->formulaAt(*sheet, 4, 2), u"B5+$A$1");
  EXPECT_TRUE(sheet->copyCell(1, 1, 1, 1)) << "onto itself";
  EXPECT_EQ(this->formulaAt(*sheet, 1, 1), u"B2+$A$1");
}

TYPED_TEST(SheetFormulasOf, GroupsThatAreNoneReadEmpty) {
  const auto sheet = this->parse(
      "<row r=\"1\"><c r=\"A1\"><f t=\"shared\" si=\"5\"/></c><c r=\"B1\"><f t=\"shared\" si=\"6\" "
      "ref=\"nonsense\">X1</f></c>"
      "<c r=\"C1\"><f t=\"shared\" si=\"6\"/></c><c r=\"D1\"><f t=\"shared\"/></c>"
      "<c r=\"E1\"><f t=\"shared\" si=\"7\" ref=\"A1:XFD1048576\">Y1</f></c>"
      "<c r=\"F1\"><f t=\"shared\" si=\"8\" ref=\"C3:A1\">Z1</f></c></row>");
  EXPECT_EQ(this->formulaAt(*sheet, 0, 0), u"");
  EXPECT_EQ(this->formulaAt(*sheet, 0, 1), u"X1");
  EXPECT_EQ(this->formulaAt(*sheet, 0, 2), u"");
  EXPECT_EQ(this->formulaAt(*sheet, 0, 3), u"");
  for (int col = 0; col < 6; ++col) EXPECT_TRUE(sheet->writeNum(0, col, col, nullptr));
  EXPECT_EQ(sheet->readNum(0, 5, nullptr), 5);
}

TYPED_TEST(SheetFormulasOf, ArrayFormulasReadAsText) {
  const auto sheet = this->parse("<row r=\"1\"><c r=\"A1\"><f t=\"array\" ref=\"A1:A3\">B1:B3*2</f><v>1</v></c></row>");
  EXPECT_EQ(this->formulaAt(*sheet, 0, 0), u"B1:B3*2");
  EXPECT_EQ(this->rowsOf(*sheet),
            "<row r=\"1\"><c r=\"A1\"><f t=\"array\" ref=\"A1:A3\">B1:B3*2</f><v>1</v></c></row>");
}

}  // namespace
}  // namespace rubrica
