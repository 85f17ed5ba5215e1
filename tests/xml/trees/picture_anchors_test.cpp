#include "xml/picture_anchors.h"

#include "source/ooxml/drawing.h"
#include "source/ooxml/strictdrawing.h"
#include "tests/xml/trees/xml_text.h"

namespace rubrica::test {
namespace {

template <class Root>
class Drawings : public testing::Test {
 protected:
  Root root;
};
using DrawingRoots = testing::Types<drawing::c_wsDr, strictdrawing::c_wsDr>;
TYPED_TEST_SUITE(Drawings, DrawingRoots);

PlacedPicture picture() {
  PlacedPicture placed;
  placed.from = {1, 9525, 2, 19050};
  placed.to = AnchorCorner{3, 100, 8, 200};
  placed.width = 952500;
  placed.height = 476250;
  placed.embedId = "rId1";
  return placed;
}

TYPED_TEST(Drawings, GiveBackWhatWasPlaced) {
  EXPECT_EQ(pictureCount(this->root), 0U);
  EXPECT_FALSE(pictureAt(this->root, 0));
  placePicture(this->root, picture(), freeObjectId(this->root));
  PlacedPicture second = picture();
  second.from.row = 5;
  second.embedId.clear();
  second.linkId = "rId2";
  second.position = PicturePosition::absolute;
  placePicture(this->root, second, freeObjectId(this->root));
  TypeParam loaded;
  fill(loaded, textOf(this->root));
  ASSERT_EQ(pictureCount(loaded), 2U);
  const auto first = pictureAt(loaded, 0), last = pictureAt(loaded, 1);
  EXPECT_EQ(first->from, picture().from);
  EXPECT_EQ(first->to, picture().to);
  EXPECT_EQ(first->embedId, "rId1");
  EXPECT_EQ(first->position, PicturePosition::moveAndSize);
  EXPECT_EQ(last->from.row, 5);
  EXPECT_EQ(last->linkId, "rId2");
  EXPECT_EQ(last->embedId, "");
  EXPECT_EQ(last->position, PicturePosition::absolute);
  EXPECT_FALSE(pictureAt(loaded, 2));
}

TYPED_TEST(Drawings, NumberTheirObjectsApart) {
  placePicture(this->root, picture(), freeObjectId(this->root));
  this->root.get_choice(0).get_twoCellAnchor().get_EG_ObjectChoices().get_pic().get_nvPicPr().get_cNvPr().set_id(41);
  placePicture(this->root, picture(), freeObjectId(this->root));
  EXPECT_EQ(countOf(textOf(this->root), "name=\"Picture 42\""), 1U);
}

TYPED_TEST(Drawings, AnchorsMoveWithTheirCells) {
  const auto moved = [&](PicturePosition position, LineMove::Axis axis, LineMove::Kind kind, int first, int last) {
    TypeParam tree;
    PlacedPicture placed = picture();
    placed.position = position;
    placePicture(tree, placed, freeObjectId(tree));
    moveAnchors(tree, {kXlsxGrid, axis, kind, first, last});
    return *pictureAt(tree, 0);
  };
  constexpr auto kRows = LineMove::Axis::rows, kCols = LineMove::Axis::columns;
  constexpr auto kInsert = LineMove::Kind::insert, kRemove = LineMove::Kind::remove;
  auto found = moved(PicturePosition::moveAndSize, kRows, kInsert, 4, 5);
  EXPECT_EQ(found.from, picture().from);
  EXPECT_EQ(found.to, (AnchorCorner{3, 100, 10, 200})) << "an insertion between the corners makes the picture taller";
  found = moved(PicturePosition::onlyMove, kRows, kInsert, 0, 1);
  EXPECT_EQ(found.from.row, 4);
  EXPECT_EQ(found.to->row, 10);
  found = moved(PicturePosition::onlyMove, kRows, kInsert, 4, 5);
  EXPECT_EQ(found.to->row, 8) << "one that only moves keeps its extent";
  found = moved(PicturePosition::absolute, kCols, kInsert, 0, 3);
  EXPECT_EQ(found.from, picture().from);
  EXPECT_EQ(found.to, picture().to);
  found = moved(PicturePosition::moveAndSize, kCols, kRemove, 1, 1);
  EXPECT_EQ(found.from, (AnchorCorner{1, 0, 2, 19050})) << "the offset in a column that is gone means nothing";
  EXPECT_EQ(found.to, (AnchorCorner{2, 100, 8, 200}));
  found = moved(PicturePosition::moveAndSize, kCols, kInsert, 0, 16383);
  EXPECT_EQ(found.from.col, 16383);
  EXPECT_EQ(found.to->col, 16383);
}

constexpr char kForeign[] =
    "<xdr:wsDr xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing\" "
    "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" "
    "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
    "<xdr:oneCellAnchor><xdr:from><xdr:col>2</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>3</xdr:row>"
    "<xdr:rowOff>0</xdr:rowOff></xdr:from><xdr:ext cx=\"95250\" cy=\"190500\"/><xdr:pic><xdr:nvPicPr>"
    "<xdr:cNvPr id=\"1\" name=\"p\"/><xdr:cNvPicPr/></xdr:nvPicPr><xdr:blipFill><a:blip r:embed=\"rId9\"/>"
    "</xdr:blipFill><xdr:spPr/></xdr:pic><xdr:clientData/></xdr:oneCellAnchor>"
    "<xdr:absoluteAnchor><xdr:pos x=\"1\" y=\"2\"/><xdr:ext cx=\"9525\" cy=\"9525\"/><xdr:pic><xdr:nvPicPr>"
    "<xdr:cNvPr id=\"7\" name=\"q\"/><xdr:cNvPicPr/></xdr:nvPicPr><xdr:blipFill><a:blip r:link=\"rId8\"/>"
    "</xdr:blipFill><xdr:spPr/></xdr:pic><xdr:clientData/></xdr:absoluteAnchor></xdr:wsDr>";

TEST(ForeignDrawings, PicturesOfOneCornerAndOfThePageAreFound) {
  drawing::c_wsDr root;
  fill(root, kForeign);
  ASSERT_EQ(pictureCount(root), 2U);
  const auto one = pictureAt(root, 0), page = pictureAt(root, 1);
  EXPECT_EQ(one->from, (AnchorCorner{2, 0, 3, 0}));
  EXPECT_FALSE(one->to);
  EXPECT_EQ(one->width, 95250);
  EXPECT_EQ(one->height, 190500);
  EXPECT_EQ(one->embedId, "rId9");
  EXPECT_EQ(page->linkId, "rId8");
  EXPECT_EQ(page->position, PicturePosition::absolute);
  moveAnchors(root, {kXlsxGrid, LineMove::Axis::rows, LineMove::Kind::insert, 0, 0});
  EXPECT_EQ(pictureAt(root, 0)->from.row, 4);
}

TEST(DrawingUnits, ComeAsNumbersAndAsMeasures) {
  EXPECT_EQ(drawingUnits("9525"), 9525);
  EXPECT_EQ(drawingUnits("-5"), -5);
  EXPECT_EQ(drawingUnits("1in"), 914400);
  EXPECT_EQ(drawingUnits("2.5cm"), 900000);
  EXPECT_EQ(drawingUnits("1mm"), 36000);
  EXPECT_EQ(drawingUnits("0.75pt"), kDrawingUnitsPerPixel);
  EXPECT_EQ(drawingUnits("1pi"), drawingUnits("12pt"));
  for (const char* text : {"", "pt", "1 pt", "1px", "1e400", "99999999999999999999", "nan"}) {
    EXPECT_FALSE(drawingUnits(text)) << text;
  }
}

}  // namespace
}  // namespace rubrica::test
