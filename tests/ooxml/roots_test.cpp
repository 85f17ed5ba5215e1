#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "lmx/driver.h"
#include "source/ooxml/comments.h"
#include "source/ooxml/contentypes.h"
#include "source/ooxml/drawing.h"
#include "source/ooxml/relationships.h"
#include "source/ooxml/sharedStringTable.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/strictdrawing.h"
#include "source/ooxml/styles.h"
#include "source/ooxml/table.h"
#include "source/ooxml/workbook.h"

namespace rubrica {

namespace {

constexpr std::string_view kDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
constexpr std::string_view kMain = R"(xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main")";
constexpr std::string_view kRelationships =
    R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships")";
constexpr std::string_view kStrict =
    R"(xmlns="http://purl.oclc.org/ooxml/spreadsheetml/main" xmlns:r="http://purl.oclc.org/ooxml/officeDocument/relationships" xmlns:xdr="http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing")";

template <class Root>
lmx::elmx_error readInto(Root& root, const std::string& text, lmx::c_error_record* record = nullptr) {
  return root.unmarshal(text.data(), text.size(), record);
}

template <class Root>
std::string written(const Root& root) {
  std::string text;
  EXPECT_EQ(root.marshal(text), lmx::ELMX_OK);
  return text;
}

// The document is in the form that is written, so that it has to come back as it is.
template <class Root>
void expectSame(std::string_view root_element, std::string_view namespaces, std::string_view content) {
  const std::string name(root_element);
  const std::string text =
      std::string(kDeclaration) + "<" + name + " " + std::string(namespaces) + std::string(content) + "</" + name + ">";
  Root root;
  lmx::c_error_record record;
  ASSERT_EQ(readInto(root, text, &record), lmx::ELMX_OK) << record.message();
  EXPECT_EQ(written(root), text);
}

std::string both(std::string_view first, std::string_view second) {
  return std::string(first) + " " + std::string(second);
}

std::string workbookWith(std::string_view sheets) {
  return "<workbook " + both(kMain, kRelationships) + "><sheets>" + std::string(sheets) + "</sheets></workbook>";
}

std::string worksheetWith(std::string_view content) {
  return "<worksheet " + both(kMain, kRelationships) + ">" + std::string(content) + "</worksheet>";
}

struct failure {
  lmx::elmx_error code;
  std::string item;
  bool operator==(const failure&) const = default;
};

std::ostream& operator<<(std::ostream& out, const failure& f) {
  return out << f.code << " " << f.item;
}

template <class Root>
failure failureOf(const std::string& text) {
  Root root;
  lmx::c_error_record record;
  const lmx::elmx_error code = readInto(root, text, &record);
  EXPECT_EQ(code, record.code);
  return {code, record.item_name};
}

}  // namespace

TEST(WorkbookRoot, DeclaresRelationshipsFirst) {
  expectSame<workbook::c_workbook>(
      "workbook", both(kRelationships, kMain),
      R"(><fileVersion appName="xl"/><workbookPr date1904="true"/><bookViews><workbookView activeTab="1"/></bookViews>)"
      R"(<sheets><sheet name="A &amp; B" sheetId="1" r:id="rId1"/><sheet name="C" sheetId="2" state="hidden" r:id="rId2"/>)"
      R"(</sheets><definedNames><definedName name="n" localSheetId="0">A!$A$1</definedName></definedNames>)"
      R"(<calcPr calcId="125725"/>)");
}

TEST(SheetRoot, DeclaresTheMainNamespaceFirst) {
  expectSame<sheet::c_worksheet>(
      "worksheet", both(kMain, kRelationships),
      R"(><sheetPr><tabColor rgb="FF00FF00"/></sheetPr><dimension ref="A1:B2"/><sheetViews>)"
      R"(<sheetView showGridLines="false" workbookViewId="0"/></sheetViews><sheetFormatPr defaultRowHeight="15"/>)"
      R"(<cols><col min="1" max="2" width="9.5" customWidth="true"/></cols><sheetData>)"
      R"(<row r="1" spans="1:2"><c r="A1" s="1" t="s"><v>0</v></c><c r="B1"><f>A1*2</f><v>0.10000000000000001</v></c></row>)"
      R"(<row r="2"><c r="A2" t="inlineStr"><is><t xml:space="preserve"> a </t></is></c><c r="B2"/></row></sheetData>)"
      R"(<mergeCells count="1"><mergeCell ref="A1:B1"/></mergeCells><conditionalFormatting sqref="A1 B2:C3">)"
      R"(<cfRule type="cellIs" priority="1" operator="equal"><formula>1</formula></cfRule></conditionalFormatting>)"
      R"(<hyperlinks><hyperlink ref="A1" r:id="rId1"/></hyperlinks>)"
      R"(<pageMargins left="0.7" right="0.7" top="0.75" bottom="0.75" header="0.3" footer="0.3"/>)"
      R"(<headerFooter><oddHeader>&amp;L a &apos;b&apos;</oddHeader></headerFooter><drawing r:id="rId2"/>)");
}

TEST(StylesRoot, ComesBackInOrder) {
  expectSame<styles::c_styleSheet>(
      "styleSheet", kMain,
      R"(><numFmts count="1"><numFmt numFmtId="164" formatCode="0.00&quot; m&quot;"/></numFmts><fonts count="1"><font>)"
      R"(<sz val="11"/><b/><name val="Calibri"/></font></fonts><fills count="1"><fill><patternFill patternType="none"/>)"
      R"(</fill></fills><borders count="1"><border><left style="thin"><color indexed="64"/></left><right/></border></borders>)"
      R"(<cellXfs count="1"><xf numFmtId="0" fontId="0" applyAlignment="true"><alignment horizontal="center"/></xf></cellXfs>)");
}

TEST(SharedStringsRoot, KeepsRunsAndWhiteSpace) {
  expectSame<sharedStringTable::c_sst>(
      "sst", kMain,
      R"( count="3" uniqueCount="2"><si><t>plain</t></si><si><r><rPr><b/><sz val="11"/><i val="false"/></rPr>)"
      R"(<t xml:space="preserve"> two </t></r><r><t>runs</t></r></si>)");
}

TEST(CommentsRoot, KeepsAuthorsAndText) {
  expectSame<comments::c_comments>(
      "comments", kMain,
      R"(><authors><author>A</author><author></author></authors><commentList><comment ref="A1" authorId="0"><text>)"
      R"(<r><t xml:space="preserve">a )"
      "\n"
      R"(b</t></r></text></comment></commentList>)");
}

TEST(TableRoot, KeepsColumnsAndFilter) {
  expectSame<table::c_table>(
      "table", kMain,
      R"( id="1" name="T" displayName="T" ref="A1:B3" totalsRowShown="false"><autoFilter ref="A1:B3">)"
      R"(<filterColumn colId="0"><filters><filter val="x"/></filters></filterColumn></autoFilter><tableColumns count="2">)"
      R"(<tableColumn id="1" name="a"/><tableColumn id="2" name="b"/></tableColumns>)"
      R"(<tableStyleInfo name="TableStyleMedium2" showRowStripes="true"/>)");
}

TEST(ContentTypesRoot, KeepsTheOrderOfDefaultsAndOverrides) {
  expectSame<contentypes::c_Types>(
      "Types", R"(xmlns="http://schemas.openxmlformats.org/package/2006/content-types")",
      R"(><Default Extension="xml" ContentType="application/xml"/><Override ContentType="a/b" PartName="/a.xml"/>)"
      R"(<Default Extension="png" ContentType="image/png"/>)");
}

TEST(RelationshipsRoot, KeepsEveryAttribute) {
  expectSame<relationships::c_Relationships>(
      "Relationships", R"(xmlns="http://schemas.openxmlformats.org/package/2006/relationships")",
      R"(><Relationship TargetMode="External" Target="http://a/?b=1&amp;c" Type="urn:t" Id="rId1"/>)"
      R"(<Relationship Target="a.xml" Type="urn:t" Id="rId2"/>)");
}

TEST(DrawingRoot, HasThePrefixInItsName) {
  expectSame<drawing::c_wsDr>(
      "xdr:wsDr",
      R"(xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main" xmlns:xdr="http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing" xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships")",
      R"(><xdr:twoCellAnchor><xdr:from><xdr:col>0</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>1</xdr:row>)"
      R"(<xdr:rowOff>9525</xdr:rowOff></xdr:from><xdr:to><xdr:col>2</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>3</xdr:row>)"
      R"(<xdr:rowOff>0</xdr:rowOff></xdr:to><xdr:pic><xdr:nvPicPr><xdr:cNvPr id="2" name="P"/><xdr:cNvPicPr/></xdr:nvPicPr>)"
      R"(<xdr:blipFill><a:blip r:embed="rId1"/><a:stretch><a:fillRect/></a:stretch></xdr:blipFill><xdr:spPr><a:xfrm>)"
      R"(<a:off x="0" y="-5"/><a:ext cx="10" cy="20"/></a:xfrm><a:prstGeom prst="rect"><a:avLst/></a:prstGeom>)"
      R"(<a:solidFill><a:srgbClr val="FF8000"><a:tint val="50000"/><a:shade val="1"/><a:tint val="2"/></a:srgbClr>)"
      R"(</a:solidFill></xdr:spPr></xdr:pic><xdr:clientData/></xdr:twoCellAnchor>)");
}

TEST(StrictDrawingRoot, HasNoPrefixInItsName) {
  expectSame<strictdrawing::c_wsDr>(
      "wsDr",
      R"(xmlns:a="http://purl.oclc.org/ooxml/drawingml/main" xmlns="http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing" xmlns:r="http://purl.oclc.org/ooxml/officeDocument/relationships")",
      R"(><absoluteAnchor><pos x="1" y="12.5mm"/><ext cx="3" cy="4"/><contentPart r:id="rId1"/><clientData/>)"
      R"(</absoluteAnchor>)");
}

TEST(StrictRoots, AllDeclareRelationshipsAndDrawings) {
  expectSame<strict::c_workbook>("workbook", kStrict, R"(><sheets><sheet name="A" sheetId="1" r:id="x"/></sheets>)");
  expectSame<strict::c_worksheet>("worksheet", kStrict,
                                  R"(><sheetData><row r="1"><c r="A1" t="d"><v>2026-11-20</v></c></row></sheetData>)");
  expectSame<strict::c_styleSheet>("styleSheet", kStrict, R"(><fonts count="0"/>)");
  expectSame<strict::c_sst>("sst", kStrict, R"(><si><t>a</t></si>)");
  expectSame<strict::c_table>(
      "table", kStrict,
      R"( id="1" displayName="T" ref="A1"><tableColumns><tableColumn id="1" name="a"/></tableColumns>)");
}

TEST(Roots, RefuseTheOtherFlavourAtTheFirstElement) {
  const std::string strict_text = "<workbook " + std::string(kStrict) + "><sheets/></workbook>";
  EXPECT_EQ(failureOf<workbook::c_workbook>(strict_text).code, lmx::ELMX_ELEMENT_NOT_FOUND);
  EXPECT_EQ(failureOf<strict::c_workbook>(workbookWith("")).code, lmx::ELMX_ELEMENT_NOT_FOUND);
}

TEST(Roots, RefuseAnotherElementOfTheirNamespace) {
  EXPECT_EQ(failureOf<sheet::c_worksheet>(workbookWith("")).code, lmx::ELMX_ELEMENT_NOT_FOUND);
}

TEST(Attributes, MayNotStandTwice) {
  EXPECT_EQ(failureOf<workbook::c_workbook>(workbookWith(R"(<sheet name="a" name="b" sheetId="1" r:id="x"/>)")),
            (failure{lmx::ELMX_ATTRIBUTE_ALREADY_READ, "@name"}));
}

TEST(Attributes, AreMissedWhenRequired) {
  EXPECT_EQ(failureOf<workbook::c_workbook>(workbookWith(R"(<sheet name="a" sheetId="1"/>)")),
            (failure{lmx::ELMX_REQUIRED_ATTRIBUTES_MISSING, "CT_Sheet"}));
}

TEST(Attributes, TakeTheTokensOfTheirEnumerationOnly) {
  EXPECT_EQ(failureOf<workbook::c_workbook>(workbookWith(R"(<sheet name="a" sheetId="1" state="Visible" r:id="x"/>)")),
            (failure{lmx::ELMX_VALUE_NOT_IN_ENUMERATION, "@state"}));
}

TEST(Attributes, OfNoRowAreIgnoredAndNotWrittenAgain) {
  workbook::c_workbook book;
  ASSERT_EQ(
      readInto(book, workbookWith(R"(<sheet name="a" other="1" xmlns:q="urn:q" q:name="2" sheetId="1" r:id="x"/>)")),
      lmx::ELMX_OK);
  EXPECT_NE(written(book).find(R"(<sheet name="a" sheetId="1" r:id="x"/>)"), std::string::npos);
}

TEST(Attributes, AbsentOnesStayAbsentAndDefaultsOnceSetAreWritten) {
  workbook::c_CT_Sheet sheet;
  EXPECT_EQ(sheet.get_state(), "visible");
  EXPECT_FALSE(sheet.isset_state());
  sheet.set_state("visible");
  EXPECT_TRUE(sheet.isset_state());
  sheet.set_state("hidden");
  sheet.unset_state();
  EXPECT_FALSE(sheet.isset_state());
  EXPECT_EQ(sheet.get_state(), "visible");
}

TEST(Attributes, BooleansAreWrittenAsWords) {
  sheet::c_worksheet root;
  ASSERT_EQ(
      readInto(root, worksheetWith(
                         R"(<sheetViews><sheetView showGridLines="0" workbookViewId="0"/></sheetViews><sheetData/>)")),
      lmx::ELMX_OK);
  EXPECT_NE(written(root).find(R"(showGridLines="false")"), std::string::npos);
}

TEST(Attributes, OfAGuidAreCheckedAgainstItsPattern) {
  const std::string start = R"(<workbook )" + std::string(kMain) + R"(><fileVersion codeName=")";
  const std::string end = R"("/><sheets/></workbook>)";
  EXPECT_EQ(failureOf<workbook::c_workbook>(start + "{0}" + end), (failure{lmx::ELMX_NO_PATTERN_MATCHED, "@codeName"}));
}

TEST(Elements, UnknownOnesAfterTheLastMemberAreDropped) {
  workbook::c_workbook book;
  ASSERT_EQ(
      readInto(book,
               workbookWith(R"(<sheet name="a" sheetId="1" r:id="x"><foreign><deep a="1">t</deep></foreign></sheet>)")),
      lmx::ELMX_OK);
  EXPECT_EQ(written(book).find("foreign"), std::string::npos);
}

TEST(Elements, UnknownOnesBeforeARequiredMemberStopTheLoad) {
  const failure stopped = failureOf<sheet::c_worksheet>(worksheetWith("<foreign/><sheetData/>"));
  EXPECT_TRUE(stopped.code == lmx::ELMX_MANDATORY_ELEMENT_MISSING || stopped.code == lmx::ELMX_BAD_END_OF_ELEMENT)
      << stopped;
}

TEST(Elements, RequiredOnesAreMissed) {
  EXPECT_EQ(failureOf<sheet::c_worksheet>(worksheetWith("<dimension ref=\"A1\"/>")).code,
            lmx::ELMX_MANDATORY_ELEMENT_MISSING);
}

TEST(Extensions, ComeBackWithTheirDeclarationsInTheStartTag) {
  workbook::c_workbook book;
  ASSERT_EQ(readInto(book, "<workbook " + std::string(kMain) +
                               R"(><sheets><sheet name="a" sheetId="1" xmlns:q=")"
                               "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
                               R"(" q:id="x"/></sheets><extLst><ext uri="{1}"><x:a xmlns:x="urn:x" b='1 "2"'><x:c>)"
                               R"(t &amp; u</x:c><![CDATA[<raw>]]></x:a></ext></extLst></workbook>)"),
            lmx::ELMX_OK);
  EXPECT_NE(written(book).find(R"(<x:a xmlns:x="urn:x" b='1 "2"'><x:c>t &amp; u</x:c><![CDATA[<raw>]]></x:a>)"),
            std::string::npos)
      << written(book);
}

TEST(Roots, AreReadFromAndWrittenToFiles) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "rubrica_bindings_test.xml";
  sharedStringTable::c_sst table;
  table.append_si().get_t().set_value("a");
  ASSERT_EQ(table.marshal(path.c_str()), lmx::ELMX_OK);
  sharedStringTable::c_sst again;
  ASSERT_EQ(again.unmarshal(path.c_str()), lmx::ELMX_OK);
  ASSERT_EQ(again.size_si(), 1U);
  EXPECT_EQ(again.get_si(0).get_t().get_value(), "a");
  std::filesystem::remove(path);
  EXPECT_EQ(again.unmarshal(path.c_str()), lmx::ELMX_UNABLE_TO_OPEN_FILE);
}

TEST(RepeatedChildren, AreInsertedErasedAndCounted) {
  workbook::c_CT_Sheets sheets;
  sheets.append_sheet().set_name("b");
  sheets.insert_sheet(0).set_name("a");
  sheets.append_sheet().set_name("c");
  ASSERT_EQ(sheets.size_sheet(), 3U);
  EXPECT_EQ(sheets.get_sheet(0).get_name(), "a");
  sheets.erase_sheet(1);
  ASSERT_EQ(sheets.size_sheet(), 2U);
  EXPECT_EQ(sheets.get_sheet(1).get_name(), "c");
  sheets.clear_sheet();
  EXPECT_EQ(sheets.size_sheet(), 0U);
}

TEST(OptionalChildren, AreNotThereUntilAskedFor) {
  workbook::c_workbook book;
  EXPECT_FALSE(book.isset_calcPr());
  EXPECT_EQ(book.find_calcPr(), nullptr);
  book.get_calcPr().set_calcId(7);
  ASSERT_TRUE(book.isset_calcPr());
  workbook::c_workbook copy = book;
  copy.get_calcPr().set_calcId(8);
  EXPECT_EQ(book.get_calcPr().get_calcId(), 7U);
  book.unset_calcPr();
  EXPECT_EQ(book.find_calcPr(), nullptr);
}

}  // namespace rubrica
