// What a sheet that is a copy of another brings along beside its cells.
#include <algorithm>

#include "tests/xml/flavours.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_names.h"

namespace rubrica::package_test {
namespace {

template <class Tag>
std::string emptyDrawing() {
  return std::is_same_v<Tag, excelStrict_tag>
             ? R"(<wsDr xmlns="http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing"/>)"
             : R"(<d:wsDr xmlns:d="http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing"/>)";
}

template <class Tag>
class SheetCopy : public ::testing::Test {
 protected:
  SheetCopy() {
    const std::string comments =
        "<comments xmlns=\"" + flavourText<excelNormal_tag>().main +
        "\"><authors><author>a</author></authors><commentList><comment ref=\"A1\" authorId=\"0\">"
        "<text><t>note</t></text></comment></commentList></comments>";
    const std::string link = flavourText<Tag>().relationships + "/";
    addPart(entries, "xl/drawings/drawing1.xml", emptyDrawing<Tag>(), content_type::kDrawing);
    addPart(entries, "xl/comments1.xml", comments, content_type::kComments);
    addPart(entries, "xl/drawings/user1.xml", "<shapes/>", content_type::kChartShapes);
    addPart(entries, "xl/charts/chart1.xml", "<c/>", content_type::kChart);
    addPart(entries, "xl/media/image1.png", "\x89PNG\r\n", "image/png");
    addPart(
        entries, "xl/tables/table1.xml",
        replaced(partText<Tag>("table", "<tableColumns count=\"1\"><tableColumn id=\"1\" name=\"c\"/></tableColumns>"),
                 "<table ", "<table id=\"1\" displayName=\"T\" ref=\"A1:A2\" "),
        content_type::kTable);
    addLink(entries, "xl/worksheets/sheet1.xml", "rId1", link + "drawing", "../drawings/drawing1.xml");
    addLink(entries, "xl/worksheets/sheet1.xml", "rId2", link + "comments", "../comments1.xml");
    addLink(entries, "xl/worksheets/sheet1.xml", "rId3", link + "hyperlink", "http://example.org/", true);
    addLink(entries, "xl/worksheets/sheet1.xml", "rId4", link + "table", "../tables/table1.xml");
    addLink(entries, "xl/drawings/drawing1.xml", "rId1", link + "chart", "../charts/chart1.xml");
    addLink(entries, "xl/drawings/drawing1.xml", "rId2", link + "image", "../media/image1.png");
    // What a package may say as well: back to the sheet, to the workbook, to nothing, to itself.
    addLink(entries, "xl/drawings/drawing1.xml", "rId3", "urn:other", "../worksheets/sheet1.xml");
    addLink(entries, "xl/drawings/drawing1.xml", "rId4", "urn:other", "../workbook.xml");
    addLink(entries, "xl/drawings/drawing1.xml", "rId5", "urn:other", "../none.xml");
    addLink(entries, "xl/drawings/drawing1.xml", "rId6", "urn:other", "drawing1.xml");
    addLink(entries, "xl/charts/chart1.xml", "rId1", link + "chartUserShapes", "../drawings/user1.xml");
    TestEntry& sheet = entry(entries, "xl/worksheets/sheet1.xml");
    sheet.content = replaced(sheet.content, "<sheetData>",
                             "<sheetViews><sheetView tabSelected=\"1\" workbookViewId=\"0\"/></sheetViews><sheetData>");
    sheet.content = replaced(sheet.content, "</sheetData>",
                             "</sheetData><drawing xmlns:r=\"" + flavourText<Tag>().relationships +
                                 "\" r:id=\"rId1\"/><tableParts><tablePart xmlns:r=\"" +
                                 flavourText<Tag>().relationships + "\" r:id=\"rId4\"/></tableParts>");
  }
  std::string savedEntry(Book& from, std::string_view name) { return entryOf(saveRaw(from), name); }

  XMLBookImplT<Tag> book;
  std::vector<TestEntry> entries = workbookEntries<Tag>(1);
};
TYPED_TEST_SUITE(SheetCopy, Flavours, FlavourNames);

TYPED_TEST(SheetCopy, BringsDrawingsChartsAndCommentsAsPartsOfItsOwn) {
  ASSERT_TRUE(loadRaw(this->book, zipOf(this->entries))) << this->book.errorMessage();
  auto* copy = this->book.addSheet(u"Copy", this->book.getSheet(0));
  ASSERT_NE(copy, nullptr) << this->book.errorMessage();
  EXPECT_EQ(copy->readNum(0, 0), 1);
  EXPECT_EQ(std::u16string(copy->readComment(0, 0)), u"note");
  const std::string saved = saveRaw(this->book);
  const std::string links = entryOf(saved, "xl/worksheets/_rels/sheet2.xml.rels");
  EXPECT_NE(links.find("Target=\"../drawings/drawing2.xml\""), std::string::npos) << links;
  EXPECT_NE(links.find("Target=\"../comments2.xml\""), std::string::npos) << links;
  EXPECT_NE(links.find("Target=\"http://example.org/\" TargetMode=\"External\""), std::string::npos) << links;
  EXPECT_EQ(links.find("table"), std::string::npos) << "two sheets can't share a table";
  const std::string drawing = entryOf(saved, "xl/drawings/_rels/drawing2.xml.rels");
  EXPECT_NE(drawing.find("Target=\"../charts/chart2.xml\""), std::string::npos) << drawing;
  EXPECT_NE(drawing.find("Target=\"../media/image1.png\""), std::string::npos) << drawing;
  EXPECT_NE(drawing.find("Target=\"../drawings/drawing2.xml\""), std::string::npos) << "its own name: " << drawing;
  for (const char* none : {"sheet1.xml", "sheet2.xml", "workbook", "none.xml"}) {
    EXPECT_EQ(drawing.find(none), std::string::npos) << drawing;
  }
  EXPECT_EQ(entryOf(saved, "xl/drawings/user2.xml"), "<shapes/>");
  const std::string types = entryOf(saved, "[Content_Types].xml");
  const ContentTypes read(types.data(), types.size());
  EXPECT_EQ(read.contentType("/xl/drawings/user2.xml"), content_type::kChartShapes);
  EXPECT_EQ(read.contentType("/xl/drawings/drawing2.xml"), content_type::kDrawing);
  EXPECT_EQ(read.contentType("/xl/charts/chart2.xml"), content_type::kChart);
  EXPECT_EQ(entryOf(saved, "xl/worksheets/sheet2.xml").find("tablePart"), std::string::npos);
  EXPECT_NE(entryOf(saved, "xl/worksheets/sheet1.xml").find("tablePart"), std::string::npos);
  EXPECT_EQ(entryOf(saved, "xl/worksheets/sheet2.xml").find("tabSelected=\"true\""), std::string::npos);
  EXPECT_EQ(this->book.pictureSize(), 1);
}

TYPED_TEST(SheetCopy, GoesWhollyWhenItIsRemoved) {
  ASSERT_TRUE(loadRaw(this->book, zipOf(this->entries))) << this->book.errorMessage();
  const auto before = namesOf(saveRaw(this->book));
  ASSERT_NE(this->book.addSheet(u"Copy", this->book.getSheet(0)), nullptr);
  EXPECT_GT(namesOf(saveRaw(this->book)).size(), before.size());
  ASSERT_TRUE(this->book.delSheet(1)) << this->book.errorMessage();
  EXPECT_EQ(namesOf(saveRaw(this->book)), before);
}

TYPED_TEST(SheetCopy, OfAnotherBookBringsItsPicturesToo) {
  XMLBookImplT<TypeParam> source;
  ASSERT_TRUE(loadRaw(source, zipOf(this->entries))) << source.errorMessage();
  ASSERT_NE(this->book.addSheet(u"Own", nullptr), nullptr);
  auto* copy = this->book.addSheet(u"Copy", source.getSheet(0));
  ASSERT_NE(copy, nullptr) << this->book.errorMessage();
  EXPECT_EQ(copy->readNum(0, 0), 1);
  EXPECT_EQ(this->book.pictureSize(), 1);
  const std::string saved = saveRaw(this->book);
  EXPECT_EQ(entryOf(saved, "xl/media/image1.png"), "\x89PNG\r\n");
  EXPECT_NE(entryOf(saved, "xl/drawings/_rels/drawing1.xml.rels").find("../media/image1.png"), std::string::npos);
  XMLBookImplT<TypeParam> again;
  ASSERT_TRUE(loadRaw(again, saved)) << again.errorMessage();
  EXPECT_EQ(again.pictureSize(), 1);
  EXPECT_EQ(again.sheetCount(), 2);
}

TYPED_TEST(SheetCopy, OfTheOtherFlavourIsRefused) {
  XMLBookImplT<typename Flavour<TypeParam>::Other> source;
  auto* sheet = source.addSheet(u"One", nullptr);
  EXPECT_EQ(this->book.addSheet(u"Copy", sheet), nullptr);
  EXPECT_STREQ(this->book.errorMessage(), "not supported");
  EXPECT_EQ(this->book.sheetCount(), 0);
}

TYPED_TEST(SheetCopy, OfALongChainOfPartsEnds) {
  constexpr int kParts = 5000;
  for (int i = 1; i <= kParts; ++i) {
    const std::string name = "xl/chain/part" + std::to_string(i) + ".xml";
    addLink(this->entries, name, "rId1", "urn:next", "part" + std::to_string(i % kParts + 1) + ".xml");
    this->entries.push_back({name, "<p/>"});
  }
  addLink(this->entries, "xl/worksheets/sheet1.xml", "rId9", "urn:next", "../chain/part1.xml");
  ASSERT_TRUE(loadRaw(this->book, zipOf(this->entries))) << this->book.errorMessage();
  const std::size_t before = namesOf(saveRaw(this->book)).size();
  ASSERT_NE(this->book.addSheet(u"Copy", this->book.getSheet(0)), nullptr) << this->book.errorMessage();
  EXPECT_GE(namesOf(saveRaw(this->book)).size(), before + 2 * kParts);
  ASSERT_TRUE(this->book.delSheet(1)) << this->book.errorMessage();
  EXPECT_EQ(namesOf(saveRaw(this->book)).size(), before);
}

}  // namespace
}  // namespace rubrica::package_test
