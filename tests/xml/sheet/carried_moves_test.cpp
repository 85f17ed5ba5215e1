// Content that nobody here has a model of, on a sheet whose lines move.
#include "tests/xml/sheet/sheet_fixture.h"
#include "xml/comments.h"
#include "xml/package_names.h"

namespace rubrica::test {
namespace {

constexpr char kSheetPart[] = "/xl/worksheets/sheet1.xml";
constexpr char kVmlRelationship[] = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/vmlDrawing";
constexpr char kVmlType[] = "application/vnd.openxmlformats-officedocument.vmlDrawing";
constexpr char kPivotType[] = "application/vnd.openxmlformats-officedocument.spreadsheetml.pivotTable+xml";
constexpr char kThreadsType[] = "application/vnd.ms-excel.threadedcomments+xml";

template <class Tag>
class XmlCarried : public XmlSheets<Tag> {
 protected:
  std::string addPart(const std::string& name, std::string_view relationship, std::string_view contentType,
                      const std::string& text) {
    this->book->parts().add(name, std::make_unique<BinaryFile>(text.data(), text.size()));
    this->book->needContentTypes().addOverride(name, contentType);
    return this->book->needRelationshipsOf(kSheetPart).add(".." + name.substr(3), relationship);
  }
  void addExtension(const std::string& uri, const std::string& text) {
    auto& extension = this->sheet->get_extLst().get_EG_ExtensionList().append_ext();
    extension.set_uri(uri);
    lmx::any_item item;
    item.namespace_uri = "http://schemas.microsoft.com/office/spreadsheetml/2009/9/main";
    item.name = "x14:any";
    item.text = text;
    extension.append_any(item);
  }
};
TYPED_TEST_SUITE(XmlCarried, Flavours, FlavourNames);

const std::string kX14 =
    " xmlns:x14=\"http://schemas.microsoft.com/office/spreadsheetml/2009/9/main\""
    " xmlns:xm=\"http://schemas.microsoft.com/office/excel/2006/main\"";

std::string formats(const std::string& ranges) {
  return "<x14:conditionalFormattings" + kX14 +
         "><x14:conditionalFormatting><x14:cfRule type=\"dataBar\" id=\"{1}\"/><xm:sqref>" + ranges +
         "</xm:sqref></x14:conditionalFormatting></x14:conditionalFormattings>";
}

TYPED_TEST(XmlCarried, ExtensionsMoveWithTheirCellsAndGoWithTheLast) {
  this->addExtension("{78C0D931-6437-407d-A8EE-F0AAD7539E65}", formats("B3:B9"));
  this->addExtension("{other}", "<x14:any" + kX14 + "/>");
  ASSERT_TRUE(this->sheet->insertRow(0, 1, true));
  this->reload();
  EXPECT_TRUE(this->holds("<xm:sqref>B5:B11</xm:sqref>")) << this->sheetXml();
  ASSERT_TRUE(this->sheet->removeCol(1, 1, true));
  EXPECT_FALSE(this->holds("sqref"));
  EXPECT_FALSE(this->holds("{78C0D931-6437-407d-A8EE-F0AAD7539E65}"));
  EXPECT_TRUE(this->holds("{other}"));
  this->reload();
}

TYPED_TEST(XmlCarried, AListOfExtensionsOfWhichNoneIsLeftGoes) {
  this->addExtension("{78C0D931-6437-407d-A8EE-F0AAD7539E65}", formats("B3:B9"));
  ASSERT_TRUE(this->sheet->removeRow(0, 20, true));
  EXPECT_FALSE(this->sheet->isset_extLst());
}

TYPED_TEST(XmlCarried, ThreadsOfCommentsMove) {
  this->addPart("/xl/threadedComments/threadedComment1.xml", relationship_type::kThreadedComments, kThreadsType,
                "<ThreadedComments><threadedComment ref=\"B2\"/></ThreadedComments>");
  ASSERT_TRUE(this->sheet->insertRow(0, 0, true));
  this->reload();
  EXPECT_EQ(this->part("/xl/threadedComments/threadedComment1.xml"),
            "<ThreadedComments><threadedComment ref=\"B3\"/></ThreadedComments>");
}

TYPED_TEST(XmlCarried, EachPivotTableMoves) {
  for (const char* number : {"1", "2"}) {
    this->addPart(std::string("/xl/pivotTables/pivotTable") + number + ".xml", relationship_type::kPivotTable,
                  kPivotType,
                  std::string("<pivotTableDefinition><location ref=\"A") + number + ":C9\"/></pivotTableDefinition>");
  }
  ASSERT_TRUE(this->sheet->insertRow(0, 0, true));
  this->reload();
  EXPECT_NE(this->part("/xl/pivotTables/pivotTable1.xml").find("ref=\"A2:C10\""), std::string::npos);
  EXPECT_NE(this->part("/xl/pivotTables/pivotTable2.xml").find("ref=\"A3:C10\""), std::string::npos);
}

// The strict dialect has no legacy drawings.
class XmlNotes : public XmlCarried<excelNormal_tag> {};

TEST_F(XmlNotes, BoxesOfNotesMoveWithTheirCells) {
  const std::string before =
      "<xml xmlns:v=\"urn:schemas-microsoft-com:vml\" xmlns:x=\"urn:schemas-microsoft-com:office:excel\">\r\n"
      "<v:shape id=\"a\"><x:ClientData ObjectType=\"Note\"><x:Anchor>\r\n 3, 15, 5, 6, 5, 45, 9, 12</x:Anchor>"
      "<x:Row>6</x:Row><x:Column>2</x:Column></x:ClientData></v:shape></xml>";
  const std::string name = "/xl/drawings/vmlDrawing1.vml";
  sheet->get_legacyDrawing().set_r_id(addPart(name, kVmlRelationship, kVmlType, before));
  ASSERT_TRUE(sheet->insertRow(20, 20, true));
  EXPECT_EQ(part(name), before) << "byte for byte where nothing moves";
  ASSERT_TRUE(sheet->insertRow(6, 6, true));
  reload();
  EXPECT_NE(part(name).find("<x:Anchor>3, 15, 6, 6, 5, 45, 10, 12</x:Anchor><x:Row>7</x:Row><x:Column>2</x:Column>"),
            std::string::npos)
      << part(name);
  ASSERT_TRUE(sheet->removeRow(7, 7, true));
  EXPECT_EQ(part(name).find("v:shape id"), std::string::npos) << "a box without a note is none";
}

}  // namespace
}  // namespace rubrica::test
