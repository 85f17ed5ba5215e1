// The examples are written as spreadsheet programs write them.
#include "xml/carried_moves.h"

#include <gtest/gtest.h>

namespace rubrica::test {
namespace {

LineMove insertRows(int first, int last) {
  return {kXlsxGrid, LineMove::Axis::rows, LineMove::Kind::insert, first, last};
}
LineMove removeRows(int first, int last) {
  return {kXlsxGrid, LineMove::Axis::rows, LineMove::Kind::remove, first, last};
}
LineMove insertCols(int first, int last) {
  return {kXlsxGrid, LineMove::Axis::columns, LineMove::Kind::insert, first, last};
}

const std::string kUris =
    " xmlns:x14=\"http://schemas.microsoft.com/office/spreadsheetml/2009/9/main\""
    " xmlns:xm=\"http://schemas.microsoft.com/office/excel/2006/main\"";

std::string validation(const std::string& ranges) {
  return "<x14:dataValidation type=\"list\"><x14:formula1><xm:f>Other!$A$1:$A$3</xm:f></x14:formula1><xm:sqref>" +
         ranges + "</xm:sqref></x14:dataValidation>";
}
std::string validations(const std::string& count, const std::string& content) {
  return "<x14:dataValidations" + kUris + " count=\"" + count + "\">" + content + "</x14:dataValidations>";
}
std::string sparklines(const std::string& content) {
  return "<x14:sparklineGroup type=\"column\"><x14:colorSeries theme=\"4\"/><x14:sparklines>" + content +
         "</x14:sparklines></x14:sparklineGroup>";
}
std::string sparkline(const std::string& cell) {
  return "<x14:sparkline><xm:f>Data!B6:M6</xm:f><xm:sqref>" + cell + "</xm:sqref></x14:sparkline>";
}

TEST(CarriedMoves, RangesOfExtensionsMoveAndFormulasStay) {
  EXPECT_EQ(movedExtension(validations("1", validation("E2:E9 G1 B4")), insertRows(2, 3)),
            validations("1", validation("E2:E11 G1 B6")));
  EXPECT_EQ(movedExtension(validations("1", validation("E2:E9")), insertCols(0, 0)),
            validations("1", validation("F2:F9")));
  const std::string untouched = validations("1", validation("A1"));
  EXPECT_EQ(movedExtension(untouched, insertRows(5, 5)), untouched);
}

TEST(CarriedMoves, WhatHasNoRangeLeftGoesAndTheCountFollows) {
  EXPECT_EQ(movedExtension(validations("2", validation("A1:A2") + validation("A3 B9")), removeRows(0, 2)),
            validations("1", validation("B6")));
  EXPECT_EQ(movedExtension(validations("1", validation("A1:A2")), removeRows(0, 2)), std::nullopt);
}

TEST(CarriedMoves, AGroupOfSparklinesGoesWithTheLast) {
  const std::string open = "<x14:sparklineGroups" + kUris + ">", close = "</x14:sparklineGroups>";
  const std::string first = sparklines(sparkline("O4")), second = sparklines(sparkline("O5") + sparkline("O6"));
  EXPECT_EQ(movedExtension(open + first + second + close, removeRows(3, 4)),
            open + sparklines(sparkline("O4")) + close);
  EXPECT_EQ(movedExtension(open + first + close, removeRows(3, 3)), std::nullopt);
}

TEST(CarriedMoves, ExtensionsWithoutRangesStayAsTheyAre) {
  for (const char* text :
       {"<mx:PLV xmlns:mx=\"u\" Mode=\"0\"/>", "<a><!-- <sqref>A1</sqref> --><b>1</b></a>", "<a><sqref/></a>",
        "<a><sqref>no range</sqref></a>", "<a><sqref> A1000\n  B2000 </sqref></a>", "<a><sqref></sqref></a>",
        "<a><sqref>A1", "", "<"}) {
    EXPECT_EQ(movedExtension(text, removeRows(2000, 2009)), text);
  }
}

std::string shape(const std::string& data) {
  return "<v:shape id=\"_x0000_s1025\" style='visibility:hidden'><v:textbox><div><br></div></v:textbox>" + data +
         "</v:shape>";
}
std::string note(const std::string& anchor, int row, int col) {
  return shape("<x:ClientData ObjectType=\"Note\"><x:MoveWithCells/><x:SizeWithCells/><x:Anchor>" + anchor +
               "</x:Anchor><x:Row>" + std::to_string(row) + "</x:Row><x:Column>" + std::to_string(col) +
               "</x:Column></x:ClientData>");
}
std::string button(const std::string& flags, const std::string& anchor) {
  return shape("<x:ClientData ObjectType=\"Button\">" + flags + "<x:Anchor>" + anchor + "</x:Anchor></x:ClientData>");
}
std::string legacy(const std::string& shapes) {
  return "<xml xmlns:v=\"urn:schemas-microsoft-com:vml\" xmlns:x=\"urn:schemas-microsoft-com:office:excel\">"
         "<v:shapetype id=\"_x0000_t202\"><v:stroke joinstyle=\"miter\"/></v:shapetype>" +
         shapes + "</xml>";
}

TEST(CarriedMoves, BoxesOfNotesGoWithTheirCells) {
  const std::string before =
      legacy(note("\n 3, 15, 5, 6, 5, 45, 9, 12", 6, 2) + note("1, 15, 0, 2, 3, 15, 3, 16", 0, 0));
  EXPECT_EQ(movedLegacyDrawing(before, insertRows(3, 4)),
            legacy(note("3, 15, 7, 6, 5, 45, 11, 12", 8, 2) + note("1, 15, 0, 2, 3, 15, 3, 16", 0, 0)));
  EXPECT_EQ(movedLegacyDrawing(before, insertCols(0, 0)),
            legacy(note("4, 15, 5, 6, 6, 45, 9, 12", 6, 3) + note("2, 15, 0, 2, 4, 15, 3, 16", 0, 1)));
  EXPECT_EQ(movedLegacyDrawing(before, removeRows(6, 6)), legacy(note("1, 15, 0, 2, 3, 15, 3, 16", 0, 0)));
  EXPECT_EQ(movedLegacyDrawing(before, insertRows(7, 9)), before) << "a box grows by nothing that comes into it";
}

TEST(CarriedMoves, ABoxStopsAtTheEdgeOfTheSheet) {
  EXPECT_EQ(movedLegacyDrawing(legacy(note("1, 0, 1, 0, 3, 0, 4, 0", 5, 0)), removeRows(0, 3)),
            legacy(note("1, 0, 0, 0, 3, 0, 3, 0", 1, 0)));
  EXPECT_EQ(movedLegacyDrawing(legacy(note("16381, 0, 1, 0, 16382, 0, 4, 0", 5, 16380)), insertCols(0, 2)),
            legacy(note("16382, 0, 1, 0, 16383, 0, 4, 0", 5, 16383)));
}

TEST(CarriedMoves, ControlsFollowTheirFirstCellUnlessTheyAreFixed) {
  const std::string anchor = "1, 2, 4, 3, 5, 6, 8, 7";
  EXPECT_EQ(movedLegacyDrawing(legacy(button("<x:SizeWithCells/>", anchor)), insertRows(0, 1)),
            legacy(button("<x:SizeWithCells/>", "1, 2, 6, 3, 5, 6, 10, 7")));
  EXPECT_EQ(movedLegacyDrawing(legacy(button("", anchor)), removeRows(3, 5)),
            legacy(button("", "1, 2, 3, 3, 5, 6, 7, 7")))
      << "its cell is gone, the one behind takes its place";
  const std::string fixed = legacy(button("<x:MoveWithCells/>", anchor));
  EXPECT_EQ(movedLegacyDrawing(fixed, insertRows(0, 1)), fixed);
}

TEST(CarriedMoves, ShapesThatSayNothingOfUseStay) {
  for (const std::string& text :
       {legacy(note("1, 2", 99999999, 0)), legacy(shape("")), legacy(note("-1, 0, 0, 0, 0, 0, 0, 0", 0, 0)),
        legacy(shape("<x:ClientData ObjectType=\"Note\"><x:Row>1</x:Row></x:ClientData>")), std::string("<v:shape"),
        std::string("<v:shape><x:Anchor>1"), std::string("</v:shape></v:shape>"), std::string()}) {
    EXPECT_EQ(movedLegacyDrawing(text, insertRows(1, 1)), text);
  }
}

TEST(CarriedMoves, ThreadsGoWithTheirCells) {
  const auto thread = [](const std::string& ref) {
    return "<threadedComment ref=\"" + ref + "\" personId=\"{1}\" id=\"{2}\"><text>A1 it is</text></threadedComment>";
  };
  const std::string before = "<ThreadedComments>" + thread("B2") + thread("C9") + "</ThreadedComments>";
  EXPECT_EQ(movedThreadedComments(before, insertRows(4, 4)),
            "<ThreadedComments>" + thread("B2") + thread("C10") + "</ThreadedComments>");
  EXPECT_EQ(movedThreadedComments(before, removeRows(1, 1)),
            "<ThreadedComments>" + thread("C8") + "</ThreadedComments>");
  EXPECT_EQ(movedThreadedComments("<threadedComment ref=\"A1\"/><threadedComment ref=\"A2\"/>", removeRows(0, 0)),
            "<threadedComment ref=\"A1\"/>");
}

TEST(CarriedMoves, PivotTablesStandWithTheirCells) {
  const auto pivot = [](const std::string& ref) {
    return "<pivotTableDefinition name=\"P\"><location firstHeaderRow=\"1\" ref=\"" + ref +
           "\" rowPageCount=\"1\"/><rowFields><field x=\"0\"/></rowFields></pivotTableDefinition>";
  };
  EXPECT_EQ(movedPivotTable(pivot("A3:C20"), insertRows(0, 1)), pivot("A5:C22"));
  EXPECT_EQ(movedPivotTable(pivot("A3:C20"), insertCols(3, 3)), pivot("A3:C20"));
  EXPECT_EQ(movedPivotTable(pivot("A3:C20"), removeRows(0, 30)), pivot("A3:C20"));
  EXPECT_EQ(movedPivotTable("<a/>", insertRows(0, 0)), "<a/>");
}

}  // namespace
}  // namespace rubrica::test
