#include "tests/xml/sheet/sheet_fixture.h"

namespace rubrica::test {
namespace {

template <class Tag>
class XmlRanges : public XmlSheets<Tag> {
 protected:
  std::string mergeAt(int index) {
    int r1 = -1, r2 = -1, c1 = -1, c2 = -1;
    if (!this->sheet->merge(index, &r1, &r2, &c1, &c2)) return this->message();
    return rangeText({r1, r2, c1, c2});
  }
};
TYPED_TEST_SUITE(XmlRanges, Flavours, FlavourNames);

TYPED_TEST(XmlRanges, MergesAreCheckedAndCounted) {
  EXPECT_REFUSED(this->sheet->setMerge(2, 1, 0, 0), "rowLast must be greater than or equal to rowFirst");
  EXPECT_REFUSED(this->sheet->setMerge(0, 0, 2, 1), "colLast must be greater than or equal to colFirst");
  EXPECT_REFUSED(this->sheet->setMerge(0, 0, 0, 16384), "col must be less than 16384");
  EXPECT_REFUSED(this->sheet->setMerge(0, 1048576, 0, 0), "row must be in range 0-1048575");
  EXPECT_FALSE(this->sheet->isset_mergeCells());
  ASSERT_TRUE(this->sheet->setMerge(1, 2, 3, 4));
  ASSERT_TRUE(this->sheet->setMerge(8, 8, 8, 9));
  EXPECT_TRUE(this->holds("<mergeCells count=\"2\"><mergeCell ref=\"D2:E3\"/>")) << this->sheetXml();
  EXPECT_EQ(this->sheet->lastRow(), 9);
  EXPECT_EQ(this->sheet->lastCol(), 10);
  this->reload();
  EXPECT_EQ(this->sheet->mergeSize(), 2);
  EXPECT_REFUSED(this->sheet->getMerge(0, 0, nullptr, nullptr, nullptr, nullptr), "this cell isn't in merging block");
  EXPECT_REFUSED(this->sheet->delMerge(0, 0), "this cell isn't in merging block");
  EXPECT_TRUE(this->sheet->getMerge(2, 4, nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(this->mergeAt(2), "index is out of range");
  EXPECT_EQ(this->mergeAt(-1), "index is out of range");
  EXPECT_REFUSED(this->sheet->delMergeByIndex(2), "index is out of range");
  EXPECT_TRUE(this->sheet->delMerge(2, 3));
  EXPECT_EQ(this->mergeAt(0), "I9:J9");
  EXPECT_TRUE(this->sheet->delMergeByIndex(0));
  EXPECT_EQ(this->mergeAt(0), "index is out of range");
  EXPECT_FALSE(this->sheet->isset_mergeCells()) << "an empty element is none";
}

TYPED_TEST(XmlRanges, ClearingHandsSharedFormulasOver) {
  this->sheet->writeFormula(0, 0, u"B1*2", nullptr);
  auto& data = this->sheet->get_sheetData();
  auto& master = data.get_row(0).get_c(0).get_f();
  master.set_t("shared");
  master.set_si(0);
  master.set_ref("A1:A3");
  for (int row = 1; row < 3; ++row) {
    this->sheet->writeNum(row, 0, row, nullptr);
    auto& formula = data.get_row(static_cast<std::size_t>(row)).get_c(0).get_f();
    formula.set_t("shared");
    formula.set_si(0);
  }
  this->reload();
  EXPECT_EQ(narrow(this->sheet->readFormula(2, 0, nullptr)), "B3*2");
  this->sheet->clear(0, 0, 0, 0);
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(this->sheet->cellType(0, 0), CellType::empty);
  EXPECT_EQ(narrow(this->sheet->readFormula(1, 0, nullptr)), "B2*2");
  EXPECT_EQ(narrow(this->sheet->readFormula(2, 0, nullptr)), "B3*2");
  ASSERT_TRUE(this->sheet->insertRow(2, 4, true));
  EXPECT_EQ(narrow(this->sheet->readFormula(1, 0, nullptr)), "B2*2");
  EXPECT_EQ(narrow(this->sheet->readFormula(5, 0, nullptr)), "B3*2") << "formula text stays as it is";
  this->reload();
  EXPECT_EQ(narrow(this->sheet->readFormula(5, 0, nullptr)), "B3*2");
}

TYPED_TEST(XmlRanges, ClearChecksItsRange) {
  this->sheet->clear(1, 0, 0, 0);
  EXPECT_EQ(this->message(), "rowLast must be greater than or equal to rowFirst");
  this->sheet->clear(0, 0, 1, 0);
  EXPECT_EQ(this->message(), "colLast must be greater than or equal to colFirst");
  this->sheet->clear(0, 1048576, 0, 0);
  EXPECT_EQ(this->message(), "row must be in range 0-1048575");
}

TYPED_TEST(XmlRanges, MovesCheckTheirRange) {
  EXPECT_REFUSED(this->sheet->insertRow(2, 1, true), "rowLast must be greater than or equal to rowFirst");
  EXPECT_REFUSED(this->sheet->removeRow(2, 1, true), "rowLast must be greater than or equal to rowFirst");
  EXPECT_REFUSED(this->sheet->insertCol(2, 1, true), "colLast must be greater than or equal to colFirst");
  EXPECT_REFUSED(this->sheet->removeCol(2, 1, true), "colLast must be greater than or equal to colFirst");
  EXPECT_REFUSED(this->sheet->insertRow(0, 1048576, true), "row must be in range 0-1048575");
  EXPECT_REFUSED(this->sheet->removeCol(0, 16384, true), "col must be in range 0-16383");
}

TYPED_TEST(XmlRanges, EverythingThatNamesCellsMovesWithThem) {
  auto* s = this->sheet;
  s->writeNum(9, 4, 94, nullptr);
  s->setRow(9, 40, nullptr, false);
  s->setCol(4, 4, 30, nullptr, false);
  s->setMerge(9, 10, 4, 5);
  s->addHyperlink(u"https://example.org", 9, 9, 4, 4);
  s->setHorzPageBreak(9, true);
  s->setVertPageBreak(4, true);
  s->addIgnoredError(9, 4, 9, 4, 4);
  s->addDataValidationDouble(ValidationType::whole, ValidationOperator::equal, 9, 9, 4, 4, 5, 0, true, false, true,
                             true, nullptr, nullptr, nullptr, nullptr, ValidationErrorStyle::stop);
  auto& formatting = s->append_conditionalFormatting();
  formatting.set_sqref({"E10", "A1"});
  formatting.append_cfRule().set_priority(1);
  auto& guarded = s->get_protectedRanges().append_protectedRange();
  guarded.set_name("mine");
  guarded.set_sqref({"E10:E12"});
  s->setNamedRange(u"spot", 9, 10, 4, 5, -1, false);
  s->setPrintArea(0, 20, 0, 9);
  s->setPrintRepeatRows(9, 9);
  s->autoFilter()->setRef(9, 12, 4, 6);
  ASSERT_TRUE(s->insertRow(3, 4, true)) << this->message();
  ASSERT_TRUE(s->insertCol(0, 0, true)) << this->message();
  this->reload();
  s = this->sheet;
  EXPECT_EQ(s->readNum(11, 5, nullptr), 94);
  EXPECT_EQ(s->rowHeight(11), 40);
  EXPECT_EQ(s->colWidth(5), 30);
  EXPECT_EQ(s->colWidth(4), 8.43);
  EXPECT_EQ(this->mergeAt(0), "F12:G13");
  int r1 = -1, r2 = -1, c1 = -1, c2 = -1;
  EXPECT_EQ(narrow(s->hyperlink(0, &r1, &r2, &c1, &c2)), "https://example.org");
  EXPECT_EQ(std::tie(r1, c1), std::make_tuple(11, 5));
  EXPECT_EQ(s->getHorzPageBreak(0), 11);
  EXPECT_EQ(s->getVertPageBreak(0), 5);
  EXPECT_EQ(s->get_ignoredErrors().get_ignoredError(0).get_sqref(), std::vector<std::string>{"F12"});
  EXPECT_EQ(s->get_dataValidations().get_dataValidation(0).get_sqref(), std::vector<std::string>{"F12"});
  EXPECT_EQ(s->get_conditionalFormatting(0).get_sqref(), (std::vector<std::string>{"F12", "B1"}));
  EXPECT_EQ(s->get_protectedRanges().get_protectedRange(0).get_sqref(), std::vector<std::string>{"F12:F14"});
  EXPECT_TRUE(s->getNamedRange(u"spot", &r1, &r2, &c1, &c2, -1, nullptr));
  EXPECT_EQ(std::tie(r1, r2, c1, c2), std::make_tuple(11, 12, 5, 6));
  EXPECT_TRUE(s->printArea(&r1, &r2, &c1, &c2));
  EXPECT_EQ(std::tie(r1, r2, c1, c2), std::make_tuple(0, 22, 1, 10));
  EXPECT_TRUE(s->printRepeatRows(&r1, &r2));
  EXPECT_EQ(r1, 11);
  EXPECT_TRUE(s->autoFilter()->getRef(&r1, &r2, &c1, &c2));
  EXPECT_EQ(std::tie(r1, r2, c1, c2), std::make_tuple(11, 14, 5, 7));
}

TYPED_TEST(XmlRanges, WhatIsRemovedTakesItsMarksAlong) {
  auto* s = this->sheet;
  s->writeNum(9, 4, 94, nullptr);
  s->writeNum(12, 4, 124, nullptr);
  s->setMerge(9, 10, 4, 5);
  s->addHyperlink(u"https://example.org", 9, 9, 4, 4);
  s->setHorzPageBreak(9, true);
  s->addIgnoredError(9, 4, 9, 4, 4);
  s->addDataValidationDouble(ValidationType::whole, ValidationOperator::equal, 9, 9, 4, 4, 5, 0, true, false, true,
                             true, nullptr, nullptr, nullptr, nullptr, ValidationErrorStyle::stop);
  auto& formatting = s->append_conditionalFormatting();
  formatting.set_sqref({"E10", "A11"});
  formatting.append_cfRule().set_priority(1);
  auto& guarded = s->get_protectedRanges().append_protectedRange();
  guarded.set_name("mine");
  guarded.set_sqref({"E10"});
  s->setNamedRange(u"spot", 9, 9, 4, 4, -1, false);
  s->setPrintArea(9, 9, 0, 9);
  s->autoFilter()->setRef(9, 12, 4, 6);
  s->applyFilter();
  ASSERT_TRUE(s->removeRow(9, 10, true)) << this->message();
  EXPECT_EQ(s->readNum(10, 4, nullptr), 124);
  EXPECT_EQ(s->mergeSize(), 0);
  EXPECT_EQ(s->hyperlinkSize(), 0);
  EXPECT_EQ(this->part("/xl/worksheets/_rels/sheet1.xml.rels").find("example.org"), std::string::npos);
  EXPECT_EQ(s->getHorzPageBreakSize(), 0);
  EXPECT_FALSE(s->isset_ignoredErrors());
  EXPECT_FALSE(s->isset_dataValidations());
  EXPECT_EQ(s->size_conditionalFormatting(), 0U);
  EXPECT_FALSE(s->isset_protectedRanges());
  EXPECT_FALSE(s->isset_autoFilter());
  EXPECT_FALSE(s->printArea(nullptr, nullptr, nullptr, nullptr));
  EXPECT_FALSE(s->getNamedRange(u"spot", nullptr, nullptr, nullptr, nullptr, -1, nullptr));
  EXPECT_EQ(s->namedRangeSize(), 1) << "the name is there, and stands for nothing";
  this->reload();
  EXPECT_EQ(this->sheet->readNum(10, 4, nullptr), 124);
}

TYPED_TEST(XmlRanges, MergesOfWhichOneCellIsLeftAreNone) {
  auto* s = this->sheet;
  s->setMerge(2, 3, 0, 0);
  s->setMerge(6, 6, 6, 7);
  s->setMerge(9, 9, 9, 9);
  ASSERT_TRUE(s->removeRow(3, 3, true));
  EXPECT_EQ(s->mergeSize(), 2);
  ASSERT_TRUE(s->removeCol(7, 7, true));
  EXPECT_EQ(s->mergeSize(), 1);
  EXPECT_EQ(this->mergeAt(0), "I9") << "one that was a single cell before stays";
}

// As other programs write them.
TYPED_TEST(XmlRanges, LinksThatShareARelationshipKeepItUntilTheLast) {
  auto* s = this->sheet;
  s->addHyperlink(u"https://example.org", 0, 0, 0, 0);
  auto& links = s->get_hyperlinks();
  for (const char* ref : {"A5", "A9"}) {
    auto& link = links.append_hyperlink();
    link.set_ref(ref);
    link.set_r_id(links.get_hyperlink(0).get_r_id());
  }
  ASSERT_TRUE(s->removeRow(0, 0, true));
  ASSERT_TRUE(s->delHyperlink(0));
  EXPECT_EQ(narrow(s->hyperlink(0, nullptr, nullptr, nullptr, nullptr)), "https://example.org");
  ASSERT_TRUE(s->delHyperlink(0));
  EXPECT_EQ(this->part("/xl/worksheets/_rels/sheet1.xml.rels").find("example.org"), std::string::npos);
}

TYPED_TEST(XmlRanges, TheRangeInUseComesBackWithALoad) {
  auto* s = this->sheet;
  s->setMerge(1, 20, 2, 9);
  s->setRowHidden(30, true);
  const auto used = [&] {
    auto* now = this->sheet;
    return std::make_tuple(now->firstRow(), now->lastRow(), now->firstCol(), now->lastCol());
  };
  EXPECT_EQ(used(), std::make_tuple(1, 31, 2, 10));
  this->reload();
  EXPECT_EQ(std::get<1>(used()), 31);
  EXPECT_EQ(std::get<3>(used()), 10);
}

TYPED_TEST(XmlRanges, NamesStayWhereTheCallerDoesNotAsk) {
  this->sheet->setNamedRange(u"spot", 9, 10, 4, 5, -1, false);
  ASSERT_TRUE(this->sheet->insertRow(0, 0, false));
  int row = -1;
  EXPECT_TRUE(this->sheet->getNamedRange(u"spot", &row, nullptr, nullptr, nullptr, -1, nullptr));
  EXPECT_EQ(row, 9);
}

TYPED_TEST(XmlRanges, LinesPushedOffTheSheetAreGone) {
  this->sheet->writeNum(1048575, 0, 1, nullptr);
  this->sheet->writeNum(1048573, 0, 2, nullptr);
  this->sheet->writeNum(0, 16383, 3, nullptr);
  ASSERT_TRUE(this->sheet->insertRow(5, 6, true));
  EXPECT_EQ(this->sheet->readNum(1048575, 0, nullptr), 2);
  EXPECT_EQ(this->sheet->get_sheetData().size_row(), 2U);
  ASSERT_TRUE(this->sheet->insertCol(5, 5, true));
  EXPECT_EQ(this->sheet->cellType(0, 16383), CellType::empty);
  ASSERT_TRUE(this->sheet->removeRow(0, 1048575, true));
  EXPECT_EQ(this->sheet->get_sheetData().size_row(), 0U);
  EXPECT_EQ(this->sheet->lastRow(), 0);
  this->reload();
}

TYPED_TEST(XmlRanges, ArrayFormulasStateTheirNewRange) {
  this->sheet->writeFormula(4, 0, u"B5:B6*2", nullptr);
  auto& formula = this->sheet->get_sheetData().get_row(0).get_c(0).get_f();
  formula.set_t("array");
  formula.set_ref("A5:A6");
  ASSERT_TRUE(this->sheet->insertRow(5, 5, true));
  EXPECT_EQ(formula.get_ref(), "A5:A7");
  ASSERT_TRUE(this->sheet->insertCol(0, 1, true));
  EXPECT_EQ(this->sheet->get_sheetData().get_row(0).get_c(0).get_f().get_ref(), "C5:C7");
}

TYPED_TEST(XmlRanges, FormatsOfColumnsGoWithThem) {
  auto* format = this->book->addFormat(nullptr);
  format->setNumFormat(numformat::percent);
  this->sheet->setCol(2, 4, 20, format, false);
  ASSERT_TRUE(this->sheet->insertCol(3, 3, true));
  this->sheet->writeNum(0, 3, 1, nullptr);
  this->sheet->writeNum(0, 5, 1, nullptr);
  EXPECT_EQ(this->sheet->cellFormat(0, 3)->numFormat(), numformat::general);
  EXPECT_EQ(this->sheet->cellFormat(0, 5)->numFormat(), numformat::percent);
  EXPECT_EQ(this->sheet->colWidth(2), 20);
  EXPECT_EQ(this->sheet->colWidth(3), 8.43);
  EXPECT_EQ(this->sheet->colWidth(5), 20);
  ASSERT_TRUE(this->sheet->removeCol(0, 5, true));
  EXPECT_EQ(this->sheet->size_cols(), 0U);
}

}  // namespace
}  // namespace rubrica::test
