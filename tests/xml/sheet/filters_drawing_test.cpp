#include "tests/xml/sheet/sheet_fixture.h"
#include "xml/comments.h"
#include "xml/package_names.h"
#include "xml/table.h"

namespace rubrica::test {
namespace {

template <class Tag>
class XmlObjects : public XmlSheets<Tag> {
 protected:
  // Rows 1 to 5 of two columns under a header.
  void fillColumns() {
    const char16_t* const texts[] = {u"apple", u"Pear", u"plum", u"peach", u""};
    for (int row = 1; row <= 5; ++row) {
      this->sheet->writeNum(row, 0, row * 10, nullptr);
      if (row < 5) this->sheet->writeStr(row, 1, texts[row - 1], nullptr, 0);
    }
    this->sheet->autoFilter()->setRef(0, 5, 0, 1);
  }
  std::string shownRows() {
    std::string rows;
    for (int row = 0; row <= 6; ++row) rows += this->sheet->rowHidden(row) ? '-' : static_cast<char>('0' + row);
    return rows;
  }
  int addPng(int width, int height) {
    std::string bytes("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);
    for (const int value : {width, height}) {
      for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
    }
    bytes += std::string("\x08\x02\0\0\0\0\0\0\0", 9);
    return this->book->addPicture2(bytes.data(), bytes.size());
  }
  // A part of the sheet, of bytes as a file would have them.
  template <class Part>
  void addPart(const char* name, const char* target, std::string_view type, std::string_view contentType,
               const std::string& xml) {
    this->book->parts().add(name, std::make_unique<Part>(xml.data(), xml.size()));
    this->book->needContentTypes().addOverride(name, contentType);
    lastId = this->book->needRelationshipsOf("/xl/worksheets/sheet1.xml").add(target, type);
  }
  void addTable() {
    const std::string xml = partText<Tag>("table", "");
    std::string text = xml.substr(0, xml.find('>', xml.find("<table"))) +
                       " id=\"1\" name=\"Sales\" displayName=\"Sales\" ref=\"B3:C9\"><tableColumns count=\"2\">"
                       "<tableColumn id=\"1\" name=\"a\"/><tableColumn id=\"2\" name=\"b\"/></tableColumns></table>";
    addPart<Table<Tag>>("/xl/tables/table1.xml", "../tables/table1.xml",
                        "http://schemas.openxmlformats.org/officeDocument/2006/relationships/table",
                        content_type::kTable, text);
    this->sheet->get_tableParts().append_tablePart().set_r_id(lastId);
  }
  std::string lastId;
};
TYPED_TEST_SUITE(XmlObjects, Flavours, FlavourNames);

TYPED_TEST(XmlObjects, FiltersHideWhatTheyDoNotLetThrough) {
  this->fillColumns();
  auto* filter = this->sheet->autoFilter();
  EXPECT_EQ(this->sheet->autoFilter(), filter) << "one object for the sheet";
  filter->column(0)->setCustomFilter(FilterOperator::greaterThan, u"10", FilterOperator::lessThan, u"50", true);
  filter->column(1)->setCustomFilter(FilterOperator::equal, u"p*", FilterOperator::equal, nullptr, false);
  this->sheet->applyFilter();
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(this->shownRows(), "0-234-6");
  EXPECT_TRUE(this->holds("filterMode=\"true\""));
  EXPECT_NE(this->part("/xl/workbook.xml")
                .find("<definedName name=\"_xlnm._FilterDatabase\" localSheetId=\"0\" hidden=\"true\">One!$A$1:$B$6<"),
            std::string::npos)
      << this->part("/xl/workbook.xml");
  filter->column(1)->clear();
  filter->column(1)->addFilter(u"PEAR");
  this->sheet->applyFilter();
  EXPECT_EQ(this->shownRows(), "0-2---6") << "a filter that changes shows rows again";
  filter->column(0)->clear();
  filter->column(1)->clear();
  filter->column(0)->setTop10(2, true, false);
  this->sheet->applyFilter();
  EXPECT_EQ(this->shownRows(), "0---456");
  this->reload();
  EXPECT_EQ(this->shownRows(), "0---456");
  auto* column = this->sheet->autoFilter()->column(0);
  this->sheet->removeFilter();
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(this->shownRows(), "0123456");
  EXPECT_FALSE(this->sheet->isset_autoFilter());
  EXPECT_EQ(this->sheet->namedRangeSize(), 0);
  EXPECT_TRUE(column->getTop10(nullptr, nullptr, nullptr)) << "held by the caller still";
  EXPECT_EQ(this->sheet->autoFilter()->columnSize(), 0);
  EXPECT_FALSE(this->sheet->autoFilter()->getRef(nullptr, nullptr, nullptr, nullptr));
}

TYPED_TEST(XmlObjects, RowsOfNothingAreBlank) {
  this->fillColumns();
  this->sheet->autoFilter()->setRef(0, 6, 0, 1);
  this->sheet->autoFilter()->column(1)->setCustomFilter(FilterOperator::notEqual, u"", FilterOperator::equal, nullptr,
                                                        false);
  this->sheet->applyFilter();
  EXPECT_EQ(this->shownRows(), "01234--");
}

TYPED_TEST(XmlObjects, DatesAreFilteredByTheirGroups) {
  for (int month = 1; month <= 4; ++month)
    this->sheet->writeNum(month, 0, this->book->datePack(2026, month, 15, 0, 0, 0, 0), nullptr);
  this->sheet->autoFilter()->setRef(0, 4, 0, 0);
  this->sheet->autoFilter()->column(0);
  auto& filters = this->sheet->get_autoFilter().get_filterColumn(0).get_filters();
  auto& group = filters.append_dateGroupItem();
  group.set_year(2026);
  group.set_month(3);
  group.set_dateTimeGrouping("month");
  this->sheet->applyFilter();
  EXPECT_EQ(this->shownRows(), "0--3-56");
}

TYPED_TEST(XmlObjects, WithoutARangeNothingIsFiltered) {
  this->sheet->applyFilter();
  EXPECT_EQ(this->message(), "ref is not found");
  this->sheet->removeFilter();
  EXPECT_EQ(this->message(), "ok");
  this->sheet->get_autoFilter().set_ref("what");
  this->sheet->applyFilter();
  EXPECT_EQ(this->message(), "ref has unrecognized format");
  EXPECT_FALSE(this->book->isset_definedNames());
}

TYPED_TEST(XmlObjects, TablesAreReadThroughTheirRelationship) {
  EXPECT_EQ(this->sheet->tableSize(), 0);
  EXPECT_EQ(this->sheet->table(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(this->message(), "index is out of range");
  this->sheet->get_tableParts().append_tablePart().set_r_id("rId9");
  EXPECT_EQ(this->sheet->table(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(this->message(), "sheet relationships is not found");
  this->addTable();
  EXPECT_EQ(this->sheet->table(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(this->message(), "table is not found");
  EXPECT_EQ(this->sheet->tableSize(), 2);
  int r1 = -1, r2 = -1, c1 = -1, c2 = -1, headers = -1, totals = -1;
  EXPECT_EQ(narrow(this->sheet->table(1, &r1, &r2, &c1, &c2, &headers, &totals)), "Sales");
  EXPECT_EQ(std::tie(r1, r2, c1, c2, headers, totals), std::make_tuple(2, 8, 1, 2, 1, 0));
}

TYPED_TEST(XmlObjects, TablesFollowTheirCells) {
  this->addTable();
  ASSERT_TRUE(this->sheet->insertCol(2, 2, true)) << this->message();
  EXPECT_EQ(narrow(this->sheet->readStr(2, 2, nullptr)), "Column3") << "the header cell bears the new column's name";
  ASSERT_TRUE(this->sheet->insertRow(0, 0, true));
  this->reload();
  int r1 = -1, r2 = -1, c1 = -1, c2 = -1;
  EXPECT_EQ(narrow(this->sheet->table(0, &r1, &r2, &c1, &c2, nullptr, nullptr)), "Sales");
  EXPECT_EQ(std::tie(r1, r2, c1, c2), std::make_tuple(3, 9, 1, 3));
  ASSERT_TRUE(this->sheet->removeRow(3, 9, true));
  EXPECT_EQ(this->sheet->tableSize(), 0);
  EXPECT_FALSE(this->book->parts().contains("/xl/tables/table1.xml"));
  this->reload();
  EXPECT_EQ(this->sheet->tableSize(), 0);
}

TYPED_TEST(XmlObjects, CommentsAreReadAndFollowTheirCells) {
  EXPECT_EQ(this->sheet->readComment(0, 0), nullptr);
  EXPECT_EQ(this->message(), "error in readComment");
  this->template addPart<Comments>(
      "/xl/comments1.xml", "../comments1.xml", relationship_type::kComments, content_type::kComments,
      std::string("<comments xmlns=\"") + kMain +
          "\"><authors><author/></authors><commentList><comment ref=\"B2\" authorId=\"0\"><text><t>Grüße"
          "</t></text></comment></commentList></comments>");
  EXPECT_EQ(narrow(this->sheet->readComment(1, 1)), "Grüße");
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(this->sheet->readComment(0, 0), nullptr);
  EXPECT_EQ(this->message(), "ok");
  ASSERT_TRUE(this->sheet->insertRow(0, 0, true));
  EXPECT_EQ(narrow(this->sheet->readComment(2, 1)), "Grüße");
}

TYPED_TEST(XmlObjects, CommentsAreNotWritten) {
  this->sheet->writeComment(0, 0, u"text", u"me", 10, 10);
  EXPECT_EQ(this->message(), "not supported");
  EXPECT_REFUSED(this->sheet->removeComment(0, 0), "not supported");
  this->reload();
  for (const auto& [name, entry] : this->book->parts()) EXPECT_EQ(name.find("comment"), std::string::npos) << name;
}

TYPED_TEST(XmlObjects, PicturesStandAtTheirOwnSize) {
  const int id = this->addPng(100, 30);
  this->sheet->setPicture(2, 1, id, 1.0, 0, 0, PicturePosition::moveAndSize);
  EXPECT_EQ(this->message(), "ok");
  this->reload();
  int row = -1, col = -1, bottom = -1, right = -1, width = -1, height = -1, x = -1, y = -1;
  EXPECT_EQ(this->sheet->pictureSize(), 1);
  EXPECT_EQ(this->sheet->getPicture(0, &row, &col, &bottom, &right, &width, &height, &x, &y), 0);
  EXPECT_EQ(std::tie(row, col, width, height, x, y), std::make_tuple(2, 1, 100, 30, 0, 0));
  EXPECT_EQ(right, 2) << "64 pixels in the first column, the rest in the next";
  EXPECT_EQ(bottom, 3);
  const std::string xml = this->part("/xl/drawings/drawing1.xml");
  EXPECT_NE(xml.find("colOff>342900</"), std::string::npos) << "36 pixels: " << xml;
  EXPECT_NE(this->part("/xl/drawings/_rels/drawing1.xml.rels").find("Target=\"../media/image1.png\""),
            std::string::npos);
  EXPECT_NE(this->part("/xl/worksheets/_rels/sheet1.xml.rels").find("Target=\"../drawings/drawing1.xml\""),
            std::string::npos);
}

TYPED_TEST(XmlObjects, FurtherPicturesGoIntoTheSameDrawing) {
  const int id = this->addPng(10, 10), other = this->addPng(20, 20);
  this->sheet->setPicture(0, 0, id, 1.0, 0, 0, PicturePosition::moveAndSize);
  this->sheet->setPicture(5, 0, other, 2.0, 0, 0, PicturePosition::onlyMove);
  this->sheet->setPicture2(9, 0, id, 30, -1, 0, 0, PicturePosition::absolute);
  this->reload();
  EXPECT_EQ(this->sheet->pictureSize(), 3);
  EXPECT_FALSE(this->book->parts().contains("/xl/drawings/drawing2.xml"));
  int width = -1, height = -1;
  EXPECT_EQ(this->sheet->getPicture(1, nullptr, nullptr, nullptr, nullptr, &width, &height, nullptr, nullptr), 1);
  EXPECT_EQ(width, 40);
  EXPECT_EQ(this->sheet->getPicture(2, nullptr, nullptr, nullptr, nullptr, &width, &height, nullptr, nullptr), 0);
  EXPECT_EQ(width, 30);
  EXPECT_EQ(height, 10);
  EXPECT_EQ(countOf(this->part("/xl/drawings/_rels/drawing1.xml.rels"), "<Relationship "), 2U)
      << "one picture, one link";
  auto* second = this->book->addSheet(u"Two", nullptr);
  second->setPicture(0, 0, 0, 1.0, 0, 0, PicturePosition::moveAndSize);
  EXPECT_TRUE(this->book->parts().contains("/xl/drawings/drawing2.xml"));
}

TYPED_TEST(XmlObjects, OffsetsAreCutToTheirCell) {
  const int id = this->addPng(10, 10);
  const auto place = [&](int x, int y) {
    this->sheet->setPicture(0, 0, id, 1.0, x, y, PicturePosition::moveAndSize);
    const std::string message = this->message();
    int dx = -1, dy = -1;
    this->sheet->getPicture(this->sheet->pictureSize() - 1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &dx,
                            &dy);
    return message + ' ' + std::to_string(dx) + ' ' + std::to_string(dy);
  };
  EXPECT_EQ(place(64, 20), "ok 64 20");
  EXPECT_EQ(place(65, 20), "warning: offset_x exceed cell's width 64 20");
  EXPECT_EQ(place(0, 21), "warning: offset_y exceed cell's height 0 20");
  EXPECT_EQ(place(1000, 1000), "warning: offset_x and offset_y exceed cell's size 64 20");
  EXPECT_EQ(place(-5, -5), "ok 0 0");
}

TYPED_TEST(XmlObjects, PicturesThatAreNotThereAreRefused) {
  const int id = this->addPng(10, 10);
  for (const int wrong : {-1, id + 1}) {
    this->sheet->setPicture(0, 0, wrong, 1.0, 0, 0, PicturePosition::moveAndSize);
    EXPECT_EQ(this->message(), "pictureId is out of range");
    this->sheet->setPicture2(0, 0, wrong, 1, 1, 0, 0, PicturePosition::moveAndSize);
    EXPECT_EQ(this->message(), "pictureId is out of range");
  }
  EXPECT_FALSE(this->sheet->isset_drawing());
  const auto get = [&](int index) {
    return this->sheet->getPicture(index, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(get(0), -1);
  EXPECT_EQ(this->message(), "can't find drawing object");
  this->sheet->setPicture(1048576, 0, id, 1.0, 0, 0, PicturePosition::moveAndSize);
  EXPECT_EQ(this->message(), "row must be in range 0-1048575");
  EXPECT_FALSE(this->sheet->isset_drawing()) << "nothing changes";
  this->sheet->setPicture(0, 0, id, 1.0, 0, 0, PicturePosition::moveAndSize);
  EXPECT_EQ(get(1), -1);
  EXPECT_EQ(this->message(), "picture not found");
  EXPECT_EQ(get(-1), -1);
  this->book->parts().remove("/xl/drawings/_rels/drawing1.xml.rels");
  EXPECT_EQ(get(0), -1);
  EXPECT_EQ(this->message(), "can't find drawing relationships");
  this->book->parts().remove("/xl/drawings/drawing1.xml");
  this->sheet->setPicture(0, 0, id, 1.0, 0, 0, PicturePosition::moveAndSize);
  EXPECT_EQ(this->message(), "can't get access to existing drawing object");
}

TYPED_TEST(XmlObjects, HiddenColumnsTakeNoRoomAndTheSheetEndsEveryPicture) {
  const int id = this->addPng(70, 10);
  this->sheet->setColHidden(1, true);
  this->sheet->setPicture(0, 0, id, 1.0, 0, 0, PicturePosition::moveAndSize);
  int right = -1;
  this->sheet->getPicture(0, nullptr, nullptr, nullptr, &right, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(right, 2);
  this->sheet->setPicture2(1048575, 16383, id, 5000, 5000, 0, 0, PicturePosition::moveAndSize);
  EXPECT_EQ(this->message(), "ok");
  this->sheet->getPicture(1, nullptr, nullptr, nullptr, &right, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(right, 16383);
}

TYPED_TEST(XmlObjects, PicturesMoveWithTheirCells) {
  const int id = this->addPng(70, 50);
  this->sheet->setPicture(3, 2, id, 1.0, 0, 0, PicturePosition::moveAndSize);
  ASSERT_TRUE(this->sheet->insertRow(0, 1, true));
  ASSERT_TRUE(this->sheet->insertCol(0, 0, true));
  int row = -1, col = -1;
  this->sheet->getPicture(0, &row, &col, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(row, 5);
  EXPECT_EQ(col, 3);
}

}  // namespace
}  // namespace rubrica::test
