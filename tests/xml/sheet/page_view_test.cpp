#include "tests/xml/sheet/sheet_fixture.h"

namespace rubrica::test {
namespace {

template <class Tag>
class XmlPages : public XmlSheets<Tag> {};
TYPED_TEST_SUITE(XmlPages, Flavours, FlavourNames);

TYPED_TEST(XmlPages, AskingMakesNothing) {
  auto* s = this->sheet;
  const std::string before = this->sheetXml();
  EXPECT_TRUE(s->displayGridlines());
  EXPECT_FALSE(s->rightToLeft());
  EXPECT_EQ(s->zoom(), 100);
  EXPECT_FALSE(s->printGridlines());
  EXPECT_FALSE(s->printRowCol());
  EXPECT_FALSE(s->hCenter());
  EXPECT_FALSE(s->vCenter());
  EXPECT_EQ(s->printZoom(), 100);
  int wide = 0, high = 0, row = 7, col = 7;
  EXPECT_FALSE(s->getPrintFit(&wide, &high));
  EXPECT_EQ(wide, 1);
  EXPECT_EQ(high, 1);
  EXPECT_FALSE(s->landscape());
  EXPECT_EQ(s->paper(), 1);
  EXPECT_EQ(narrow(s->header()), "");
  EXPECT_EQ(narrow(s->footer()), "");
  EXPECT_EQ(s->headerMargin(), 0.3);
  EXPECT_EQ(s->footerMargin(), 0.3);
  EXPECT_EQ(s->marginLeft(), 0.7);
  EXPECT_EQ(s->marginRight(), 0.7);
  EXPECT_EQ(s->marginTop(), 0.75);
  EXPECT_EQ(s->marginBottom(), 0.75);
  EXPECT_TRUE(s->groupSummaryBelow());
  EXPECT_TRUE(s->groupSummaryRight());
  EXPECT_FALSE(s->protect());
  s->getTopLeftView(&row, &col);
  EXPECT_EQ(row, 0);
  EXPECT_EQ(col, 0);
  EXPECT_FALSE(s->splitInfo(&row, &col));
  EXPECT_EQ(this->message(), "worksheet is not splitted");
  EXPECT_EQ(this->sheetXml(), before);
}

TYPED_TEST(XmlPages, OneMarginMakesAllSix) {
  this->sheet->setMarginTop(2);
  EXPECT_TRUE(
      this->holds("<pageMargins left=\"0.7\" right=\"0.7\" top=\"2\" bottom=\"0.75\" header=\"0.3\" footer=\"0.3\"/>"))
      << this->sheetXml();
}

TYPED_TEST(XmlPages, AScaleEndsFittingToPages) {
  this->sheet->setPrintFit(1, 0);
  EXPECT_TRUE(this->sheet->getPrintFit(nullptr, nullptr));
  this->sheet->setPrintZoom(70);
  EXPECT_FALSE(this->sheet->getPrintFit(nullptr, nullptr));
  EXPECT_EQ(this->sheet->printZoom(), 70);
}

TYPED_TEST(XmlPages, ZoomIsThatOfTheNormalViewToo) {
  this->sheet->setZoom(150);
  EXPECT_TRUE(this->holds("zoomScale=\"150\" zoomScaleNormal=\"150\" workbookViewId=\"0\"")) << this->sheetXml();
}

TYPED_TEST(XmlPages, PanesAreFrozenAtTheCell) {
  this->sheet->split(2, 1);
  EXPECT_TRUE(this->holds(
      "<pane xSplit=\"1\" ySplit=\"2\" topLeftCell=\"B3\" activePane=\"bottomRight\" state=\"frozenSplit\"/>"))
      << this->sheetXml();
  this->sheet->split(1048576, 0);
  EXPECT_EQ(this->message(), "row must be in range 0-1048575");
  int row = 0, col = 0;
  EXPECT_TRUE(this->sheet->splitInfo(&row, &col));
  EXPECT_EQ(row, 2);
  EXPECT_EQ(col, 1);
}

TYPED_TEST(XmlPages, TheLastCellCanStandOnTop) {
  this->sheet->setTopLeftView(1048575, 16383);
  this->sheet->setTopLeftView(0, 16384);
  EXPECT_EQ(this->message(), "col must be in range 0-16383");
  int row = 0, col = 0;
  this->sheet->getTopLeftView(&row, &col);
  EXPECT_EQ(row, 1048575);
  EXPECT_EQ(col, 16383);
}

TYPED_TEST(XmlPages, TabColoursAreAnIndexOrTheirParts) {
  this->sheet->setTabColor(10);
  EXPECT_TRUE(this->holds("<tabColor indexed=\"10\"/>")) << this->sheetXml();
  this->sheet->setTabRgbColor(1, 171, 255);
  EXPECT_TRUE(this->holds("<tabColor rgb=\"FF01ABFF\"/>")) << this->sheetXml();
  this->book->setRgbMode(true);
  this->sheet->setTabColor(this->book->colorPack(2, 3, 4));
  EXPECT_TRUE(this->holds("<tabColor rgb=\"FF020304\"/>")) << this->sheetXml();
}

TYPED_TEST(XmlPages, BreaksStayInOrderAndCounted) {
  for (const int row : {30, 10, 20}) EXPECT_TRUE(this->sheet->setHorzPageBreak(row, true));
  EXPECT_TRUE(this->holds("<rowBreaks count=\"3\" manualBreakCount=\"3\"><brk id=\"10\" max=\"16383\" man=\"true\"/>"))
      << this->sheetXml();
  EXPECT_REFUSED(this->sheet->setHorzPageBreak(20, true), "pagebreak already exists");
  EXPECT_REFUSED(this->sheet->setHorzPageBreak(21, false), "pagebreak not found");
  EXPECT_REFUSED(this->sheet->setVertPageBreak(1, false), "pagebreak not found");
  EXPECT_REFUSED(this->sheet->setHorzPageBreak(1048576, true), "row must be in range 0-1048575");
  EXPECT_TRUE(this->sheet->setVertPageBreak(5, true));
  EXPECT_TRUE(this->holds("<colBreaks count=\"1\" manualBreakCount=\"1\"><brk id=\"5\" max=\"1048575\" man=\"true\"/>"))
      << this->sheetXml();
  EXPECT_EQ(this->sheet->getHorzPageBreak(3), 0);
  EXPECT_EQ(this->message(), "index is out of range");
  EXPECT_EQ(this->sheet->getVertPageBreak(-1), 0);
  this->sheet->get_colBreaks().append_brk();
  EXPECT_EQ(this->sheet->getVertPageBreak(1), 0);
  EXPECT_EQ(this->message(), "c_CT_Break without id");
  for (const int row : {30, 10, 20}) EXPECT_TRUE(this->sheet->setHorzPageBreak(row, false));
  EXPECT_FALSE(this->sheet->isset_rowBreaks());
}

TYPED_TEST(XmlPages, ProtectionMakesItsElement) {
  this->sheet->setProtect(true, nullptr, -1);
  EXPECT_TRUE(this->sheet->protect());
  EXPECT_TRUE(this->holds("<sheetProtection sheet=\"true\" objects=\"true\" scenarios=\"true\"/>")) << this->sheetXml();
  this->sheet->setProtect(true, nullptr, 1 | 4 | 1024);
  EXPECT_TRUE(this->holds("objects=\"false\" scenarios=\"true\" formatCells=\"false\" formatColumns=\"true\""))
      << this->sheetXml();
  EXPECT_TRUE(this->holds("selectLockedCells=\"false\" sort=\"true\"")) << this->sheetXml();
  this->sheet->setProtect(false, nullptr, -1);
  EXPECT_FALSE(this->sheet->protect());
}

TYPED_TEST(XmlPages, PasswordsAreKeptWhereTheFlavourHasRoomForThem) {
  this->sheet->setProtect(true, u"abcdefghij", -1);
  if constexpr (std::is_same_v<TypeParam, excelNormal_tag>) {
    EXPECT_TRUE(this->holds("password=\"FEF1\"")) << this->sheetXml();
    this->sheet->setProtect(true, nullptr, -1);
    EXPECT_FALSE(this->holds("password"));
  } else {
    EXPECT_EQ(this->message(), "not supported");
    EXPECT_FALSE(this->sheet->isset_sheetProtection()) << "nothing changes";
  }
}

TYPED_TEST(XmlPages, SheetsWithoutAStateAreVisible) {
  EXPECT_EQ(this->sheet->hidden(), SheetState::visible);
  EXPECT_REFUSED(this->sheet->setHidden(SheetState::hidden), "a workbook must contain at least one visible worksheet");
  this->book->addSheet(u"Two", nullptr);
  EXPECT_REFUSED(this->sheet->setHidden(static_cast<SheetState>(3)), "hidden is out of range");
  EXPECT_REFUSED(this->sheet->setHidden(static_cast<SheetState>(-1)), "hidden is out of range");
  EXPECT_TRUE(this->sheet->setHidden(SheetState::veryHidden));
  EXPECT_TRUE(this->sheet->setHidden(SheetState::hidden)) << "it is hidden already";
  this->reload();
  EXPECT_EQ(this->sheet->hidden(), SheetState::hidden);
}

TYPED_TEST(XmlPages, NamesOfSheetsAreChecked) {
  this->book->addSheet(u"Two", nullptr);
  this->sheet->setNamedRange(u"spot", 0, 1, 0, 1, -1, false);
  for (const auto& [name, text] :
       std::vector<std::pair<const char16_t*, const char*>>{{u"two", "book already contains such sheet name"},
                                                            {u"a:b", "sheet name has an invalid character"},
                                                            {u"'a", "sheet name has an invalid character"},
                                                            {u"", "sheet name can't be empty"}}) {
    this->sheet->setName(name);
    EXPECT_EQ(this->message(), text);
    EXPECT_EQ(narrow(this->sheet->name()), "One");
  }
  this->sheet->setName(u"It's 1");
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(narrow(this->sheet->name()), "It's 1");
  EXPECT_TRUE(this->sheet->getNamedRange(u"spot", nullptr, nullptr, nullptr, nullptr, -1, nullptr));
  EXPECT_NE(this->part("/xl/workbook.xml").find(">&apos;It&apos;&apos;s 1&apos;!$A$1:$B$2<"), std::string::npos);
  this->sheet->setName(u"12345678901234567890123456789012");
  EXPECT_EQ(this->message(), "warning: sheet's name is cut to 31 characters");
}

// One that the workbook lists nowhere.
TYPED_TEST(XmlPages, ASheetWithoutABookHasNoName) {
  XMLSheetImplT<TypeParam> alone(*this->book);
  EXPECT_EQ(alone.name(), nullptr);
  EXPECT_EQ(this->message(), "sheet doen't have relationship with book");
  alone.setName(u"Mine");
  EXPECT_EQ(this->message(), "sheet doen't have relationship with book");
}

}  // namespace
}  // namespace rubrica::test
