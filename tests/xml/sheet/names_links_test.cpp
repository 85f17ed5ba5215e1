#include "tests/xml/sheet/sheet_fixture.h"
#include "xml/comments.h"
#include "xml/table.h"

namespace rubrica::test {
namespace {

template <class Tag>
class XmlNames : public XmlSheets<Tag> {
 protected:
  std::string workbookXml() { return this->part("/xl/workbook.xml"); }
  auto& addName(const char* name, const char* value) {
    auto& entry = this->book->get_definedNames().append_definedName();
    entry.set_name(name);
    entry.set_value(value);
    return entry;
  }
};
TYPED_TEST_SUITE(XmlNames, Flavours, FlavourNames);

TYPED_TEST(XmlNames, RangesAreNamedForTheBookOrASheet) {
  auto* s = this->sheet;
  EXPECT_TRUE(s->setNamedRange(u"Area", 5, 1, 3, 2, -1, false));
  EXPECT_TRUE(s->setNamedRange(u"area", 0, 0, 0, 0, 0, true));
  EXPECT_NE(this->workbookXml().find("<definedName name=\"Area\">One!$C$2:$D$6</definedName>"), std::string::npos)
      << this->workbookXml();
  EXPECT_NE(
      this->workbookXml().find("<definedName name=\"area\" localSheetId=\"0\" hidden=\"true\">One!$A$1</definedName>"),
      std::string::npos);
  int r1 = 0, scope = 7;
  bool hidden = false;
  EXPECT_TRUE(s->getNamedRange(u"AREA", &r1, nullptr, nullptr, nullptr, -2, &hidden));
  EXPECT_EQ(r1, 1);
  EXPECT_FALSE(hidden);
  EXPECT_EQ(s->namedRangeSize(), 2);
  EXPECT_EQ(narrow(s->namedRange(1, &r1, nullptr, nullptr, nullptr, &scope, &hidden)), "area");
  EXPECT_EQ(scope, 0);
  EXPECT_TRUE(hidden);
  EXPECT_EQ(s->namedRange(2, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(this->message(), "index is out of range");
  auto* other = this->book->addSheet(u"Two", nullptr);
  EXPECT_EQ(other->namedRangeSize(), 1) << "names of other sheets don't count";
  EXPECT_TRUE(s->setNamedRange(u"AREA", 8, 8, 8, 8, -1, false)) << "the same name again moves it";
  EXPECT_EQ(s->namedRangeSize(), 2);
}

TYPED_TEST(XmlNames, NamesAreChecked) {
  auto* s = this->sheet;
  EXPECT_REFUSED(s->setNamedRange(u"a b", 0, 0, 0, 0, -1, false), "space symbol isn't allowed");
  EXPECT_REFUSED(s->setNamedRange(u"", 0, 0, 0, 0, -1, false), "name can't be empty");
  EXPECT_REFUSED(s->setNamedRange(nullptr, 0, 0, 0, 0, -1, false), "name can't be empty");
  EXPECT_REFUSED(s->setNamedRange(u"a", 0, 1048576, 0, 0, -1, false), "row must be in range 0-1048575");
  EXPECT_REFUSED(s->setNamedRange(u"a", 0, 0, 0, 0, 1, false), "index is out of range");
  EXPECT_REFUSED(s->getNamedRange(u"a", nullptr, nullptr, nullptr, nullptr, -1, nullptr), "named range is not found");
  EXPECT_REFUSED(s->delNamedRange(u"a", -1), "named range not found");
  EXPECT_FALSE(this->book->isset_definedNames());
  EXPECT_TRUE(s->setNamedRange(u"a", 0, 0, 0, 0, -1, false));
  EXPECT_TRUE(s->delNamedRange(u"A", -1));
  EXPECT_FALSE(this->book->isset_definedNames());
}

TYPED_TEST(XmlNames, AreFoundWhereTheyStandAfterOthersWentAndSheetsMoved) {
  auto* s = this->sheet;
  int row = -1;
  const auto rowOf = [&](const char16_t* name, int scope) {
    row = -1;
    return s->getNamedRange(name, &row, nullptr, nullptr, nullptr, scope, nullptr) ? row : -1;
  };
  for (const char16_t* name : {u"first", u"second", u"\u00E4rger"}) {
    EXPECT_TRUE(s->setNamedRange(name, 1, 1, 0, 0, -1, false));
    EXPECT_TRUE(s->setNamedRange(name, 2, 2, 0, 0, 0, false));
  }
  EXPECT_EQ(rowOf(u"\u00C4RGER", -1), 1);
  EXPECT_TRUE(s->delNamedRange(u"FIRST", -1));
  EXPECT_EQ(rowOf(u"first", -1), -1);
  EXPECT_EQ(rowOf(u"First", 0), 2);
  EXPECT_EQ(rowOf(u"SECOND", 0), 2);
  EXPECT_TRUE(s->setNamedRange(u"first", 3, 3, 0, 0, -1, false));
  EXPECT_EQ(rowOf(u"first", -1), 3);
  ASSERT_NE(this->book->insertSheet(0, u"Before", nullptr), nullptr);
  EXPECT_EQ(rowOf(u"second", 0), -1) << "the name went along with its sheet";
  EXPECT_EQ(rowOf(u"second", 1), 2);
  EXPECT_TRUE(this->book->delSheet(0));
  EXPECT_EQ(rowOf(u"second", 0), 2);
}

TYPED_TEST(XmlNames, PartsThatAreNoRangesArePassedOver) {
  this->addName("mixed", "OFFSET(One!$A$1,1,1),One!$B$2:$C$3");
  this->addName("formula", "SUM(One!$A$1:$A$3)");
  int row = -1;
  EXPECT_TRUE(this->sheet->getNamedRange(u"mixed", &row, nullptr, nullptr, nullptr, -1, nullptr));
  EXPECT_EQ(this->message(), "warning: some parts were skipped");
  EXPECT_EQ(row, 1);
  EXPECT_REFUSED(this->sheet->getNamedRange(u"formula", nullptr, nullptr, nullptr, nullptr, -1, nullptr),
                 "named range is not found");
  EXPECT_EQ(narrow(this->sheet->namedRange(1, &row, nullptr, nullptr, nullptr, nullptr, nullptr)), "formula");
  EXPECT_EQ(row, -1);
}

TYPED_TEST(XmlNames, PrintTitlesAreColumnsAndRows) {
  auto* s = this->sheet;
  s->setName(u"My sheet");
  EXPECT_REFUSED(s->printRepeatRows(nullptr, nullptr), "not found");
  EXPECT_REFUSED(s->printRepeatCols(nullptr, nullptr), "print repeat columns are not found");
  s->setPrintRepeatRows(2, 0);
  EXPECT_REFUSED(s->printRepeatCols(nullptr, nullptr), "print repeat columns are not found");
  s->setPrintRepeatCols(1, 2);
  EXPECT_NE(
      this->workbookXml().find("<definedName name=\"_xlnm.Print_Titles\" localSheetId=\"0\">&apos;My sheet&apos;!$B:$C,"
                               "&apos;My sheet&apos;!$1:$3</definedName>"),
      std::string::npos)
      << this->workbookXml();
  s->setPrintRepeatRows(0, 1048576);
  EXPECT_EQ(this->message(), "row must be in range 0-1048575");
  s->setPrintRepeatCols(0, 16384);
  EXPECT_EQ(this->message(), "col must be in range 0-16383");
  this->reload();
  int first = -1, last = -1;
  EXPECT_TRUE(this->sheet->printRepeatRows(&first, &last));
  EXPECT_EQ(last, 2);
  EXPECT_TRUE(this->sheet->printRepeatCols(&first, &last));
  EXPECT_EQ(first, 1);
  this->sheet->clearPrintRepeats();
  this->sheet->clearPrintRepeats();
  EXPECT_EQ(this->message(), "ok");
  EXPECT_FALSE(this->sheet->printRepeatRows(&first, &last));
}

TYPED_TEST(XmlNames, TitlesOfEveryCellAreBothRowsAndColumns) {
  this->addName("_xlnm.Print_Titles", "One!$A$1:$XFD$1048576").set_localSheetId(0);
  int last = -1;
  EXPECT_TRUE(this->sheet->printRepeatRows(nullptr, &last));
  EXPECT_EQ(last, 1048575);
  EXPECT_TRUE(this->sheet->printRepeatCols(nullptr, &last));
  EXPECT_EQ(last, 16383);
}

TYPED_TEST(XmlNames, LinksLeadToAddressesFilesAndPlaces) {
  auto* s = this->sheet;
  s->addHyperlink(u"https://example.org/a?b=1&c=2#part", 0, 1, 0, 2);
  s->addHyperlink(u"other.xlsx#Data!B2", 2, 2, 0, 0);
  s->addHyperlink(u"#One!C3", 3, 3, 0, 0);
  s->addHyperlink(u"One!C4", 4, 4, 0, 0);
  s->addHyperlink(u"mailto:me@example.org", 5, 5, 0, 0);
  const std::string links = this->part("/xl/worksheets/_rels/sheet1.xml.rels");
  EXPECT_EQ(countOf(links, "TargetMode=\"External\""), 3U) << links;
  EXPECT_NE(links.find("Target=\"https://example.org/a?b=1&amp;c=2\""), std::string::npos);
  EXPECT_TRUE(this->holds("<hyperlink ref=\"A1:C2\" r:id=\"rId1\" location=\"part\"/>")) << this->sheetXml();
  this->reload();
  s = this->sheet;
  EXPECT_EQ(s->hyperlinkSize(), 5);
  int r2 = -1, c2 = -1;
  EXPECT_EQ(narrow(s->hyperlink(0, nullptr, &r2, nullptr, &c2)), "https://example.org/a?b=1&c=2#part");
  EXPECT_EQ(r2, 1);
  EXPECT_EQ(c2, 2);
  EXPECT_EQ(narrow(s->hyperlink(1, nullptr, nullptr, nullptr, nullptr)), "other.xlsx#Data!B2");
  EXPECT_EQ(narrow(s->hyperlink(2, nullptr, nullptr, nullptr, nullptr)), "One!C3");
  EXPECT_EQ(narrow(s->hyperlink(3, nullptr, nullptr, nullptr, nullptr)), "One!C4");
  EXPECT_EQ(narrow(s->hyperlink(4, nullptr, nullptr, nullptr, nullptr)), "mailto:me@example.org");
  EXPECT_EQ(s->hyperlink(5, nullptr, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(this->message(), "index is out of range");
  EXPECT_REFUSED(s->delHyperlink(-1), "index is out of range");
  EXPECT_TRUE(s->delHyperlink(0));
  EXPECT_EQ(this->part("/xl/worksheets/_rels/sheet1.xml.rels").find("b=1"), std::string::npos);
  while (s->hyperlinkSize() > 0) ASSERT_TRUE(s->delHyperlink(0));
  EXPECT_FALSE(s->isset_hyperlinks());
  s->addHyperlink(u"x", 0, 1048576, 0, 0);
  EXPECT_EQ(this->message(), "row must be in range 0-1048575");
}

TYPED_TEST(XmlNames, IgnoredErrorsHaveTheirAttributes) {
  auto* s = this->sheet;
  EXPECT_TRUE(s->addIgnoredError(0, 0, 4, 4, 1 | 2 | 4 | 8));
  EXPECT_TRUE(s->addIgnoredError(0, 0, 4, 4, 16 | 32 | 64 | 128));
  EXPECT_REFUSED(s->addIgnoredError(1, 1, 2, 2, 15), "ignored error already exists");
  EXPECT_TRUE(s->addIgnoredError(1, 1, 5, 5, 15)) << "it reaches out of the other";
  EXPECT_TRUE(
      this->holds("<ignoredError sqref=\"A1:E5\" evalError=\"true\" numberStoredAsText=\"true\" formulaRange=\"true\" "
                  "emptyCellReference=\"true\"/>"))
      << this->sheetXml();
  EXPECT_TRUE(
      this->holds("<ignoredError sqref=\"A1:E5\" twoDigitTextYear=\"true\" formula=\"true\" unlockedFormula=\"true\" "
                  "listDataValidation=\"true\"/>"))
      << this->sheetXml();
  EXPECT_REFUSED(s->addIgnoredError(0, 0, 1048576, 0, 1), "row must be in range 0-1048575");
}

TYPED_TEST(XmlNames, ValidationsSayWhatACellTakes) {
  auto* s = this->sheet;
  const auto add = [&](ValidationType type, ValidationOperator op, const char16_t* first, const char16_t* second) {
    return s->addDataValidation(type, op, 0, 4, 1, 1, first, second, true, false, true, true, u"Title & more",
                                u"Prompt", u"Wrong", u"Try again", ValidationErrorStyle::warning);
  };
  EXPECT_TRUE(add(ValidationType::list, ValidationOperator::between, u"yes,\"no\"", nullptr));
  EXPECT_TRUE(add(ValidationType::list, ValidationOperator::between, u"$D$1:$D$9", nullptr));
  EXPECT_TRUE(add(ValidationType::custom, ValidationOperator::between, u"=ISNUMBER(A1)", nullptr));
  EXPECT_TRUE(s->addDataValidationDouble(ValidationType::decimal, ValidationOperator::notBetween, 0, 0, 0, 0, 0.1, 1e21,
                                         false, true, false, false, nullptr, nullptr, nullptr, nullptr,
                                         ValidationErrorStyle::stop));
  const std::string xml = this->sheetXml();
  EXPECT_NE(xml.find("<dataValidations count=\"4\">"), std::string::npos) << xml;
  EXPECT_NE(xml.find("type=\"list\" errorStyle=\"warning\""), std::string::npos);
  EXPECT_NE(xml.find("sqref=\"B1:B5\"><formula1>&quot;yes,&quot;&quot;no&quot;&quot;&quot;</formula1>"),
            std::string::npos);
  EXPECT_NE(xml.find("<formula1>$D$1:$D$9</formula1>"), std::string::npos);
  EXPECT_NE(xml.find("<formula1>ISNUMBER(A1)</formula1>"), std::string::npos);
  EXPECT_NE(xml.find("promptTitle=\"Title &amp; more\""), std::string::npos);
  EXPECT_NE(xml.find("<formula1>0.1</formula1><formula2>1e+21</formula2>"), std::string::npos);
  EXPECT_NE(xml.find("operator=\"notBetween\" allowBlank=\"false\" showDropDown=\"true\""), std::string::npos);
  EXPECT_REFUSED(
      s->addDataValidationDouble(ValidationType::whole, ValidationOperator::equal, 1, 0, 0, 0, 1, 0, true, false, true,
                                 true, nullptr, nullptr, nullptr, nullptr, ValidationErrorStyle::stop),
      "rowLast must be greater than or equal to rowFirst");
  this->reload();
  EXPECT_EQ(this->sheet->get_dataValidations().size_dataValidation(), 4U);
  EXPECT_TRUE(this->sheet->removeDataValidations());
  EXPECT_REFUSED(this->sheet->removeDataValidations(), "data validations are not found");
}

}  // namespace
}  // namespace rubrica::test
