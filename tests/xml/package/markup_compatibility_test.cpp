// Markup compatibility as it is resolved before a part is bound.
#include "xml/markup_compatibility.h"

#include <gtest/gtest.h>

#include "source/ooxml/drawing.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/workbook.h"

namespace rubrica {
namespace {

const std::string kMain = R"(xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main")";
const std::string kMc = R"(xmlns:mc="http://schemas.openxmlformats.org/markup-compatibility/2006")";
const std::string kX15 = R"(xmlns:x15="http://schemas.microsoft.com/office/spreadsheetml/2010/11/main")";

struct Resolved {
  std::string text;
  std::size_t dropped = 0;
  bool isSameMemory = false;
};

Resolved resolved(const std::string& text, const lmx::root_descriptor& root = workbook::c_workbook::kRoot) {
  const ResolvedMarkup markup(text, root);
  return {std::string(markup.text()), markup.dropped(), markup.text().data() == text.data()};
}

std::string inRoot(const std::string& attributes, const std::string& content) {
  return "<workbook " + kMain + " " + kMc + attributes + ">" + content + "</workbook>";
}

TEST(MarkupCompatibility, TextWithoutItIsNotCopied) {
  const std::string text = "<workbook " + kMain + "><sheets/></workbook>";
  const Resolved result = resolved(text);
  EXPECT_EQ(result.text, text);
  EXPECT_TRUE(result.isSameMemory);
}

TEST(MarkupCompatibility, IgnorableAttributesAloneAreLeftToTheBinding) {
  const std::string text = "<worksheet " + kMain + " " + kMc +
                           R"( xmlns:x14ac="http://schemas.microsoft.com/office/spreadsheetml/2009/9/ac")"
                           R"( mc:Ignorable="x14ac"><sheetData><row r="1" x14ac:dyDescent="0.25"/></sheetData>)"
                           R"(</worksheet>)";
  const Resolved result = resolved(text, sheet::c_worksheet::kRoot);
  EXPECT_TRUE(result.isSameMemory);
  sheet::c_worksheet bound;
  EXPECT_EQ(bound.unmarshal(result.text.data(), result.text.size()), lmx::ELMX_OK);
}

TEST(MarkupCompatibility, AChoiceNobodyKnowsLeavesNothing) {
  const std::string alternate =
      "<mc:AlternateContent " + kMc + "><mc:Choice Requires=\"x15\">" +
      R"(<x15ac:absPath url="C:\" xmlns:x15ac="urn:x15ac"/></mc:Choice></mc:AlternateContent>)";
  const Resolved result =
      resolved(inRoot(" " + kX15 + R"( mc:Ignorable="x15")", "<workbookPr/>" + alternate + "<sheets/>"));
  EXPECT_EQ(result.text, inRoot(" " + kX15, "<workbookPr/><sheets/>"));
  EXPECT_EQ(result.dropped, 1U);
}

TEST(MarkupCompatibility, AFallbackStandsInForUnknownChoices) {
  const Resolved result = resolved(inRoot(" " + kX15,
                                          "<mc:AlternateContent><mc:Choice Requires=\"x15\"><a/></mc:Choice> "
                                          "<mc:Fallback><b>t</b><c/></mc:Fallback> </mc:AlternateContent><d/>"));
  EXPECT_EQ(result.text, inRoot(" " + kX15, "<b>t</b><c/><d/>"));
}

TEST(MarkupCompatibility, TheFirstChoiceWhoseNamespacesAreAllBoundIsTaken) {
  const std::string known = R"( xmlns:m="http://schemas.openxmlformats.org/spreadsheetml/2006/main")";
  const Resolved result = resolved(
      inRoot(known + " " + kX15,
             "<mc:AlternateContent><mc:Choice Requires=\"m x15\"><no/></mc:Choice><mc:Choice Requires=\" "
             "m\t\"><yes/></mc:Choice>"
             "<mc:Choice Requires=\"m\"><late/></mc:Choice><mc:Fallback><no/></mc:Fallback></mc:AlternateContent>"));
  EXPECT_EQ(result.text, inRoot(known + " " + kX15, "<yes/>"));
  EXPECT_EQ(result.dropped, 3U);
}

TEST(MarkupCompatibility, AChoiceIsTakenUnderTheDefaultNamespaceToo) {
  const std::string known = R"( xmlns:m="http://schemas.openxmlformats.org/spreadsheetml/2006/main")";
  const Resolved result = resolved(
      inRoot(known, R"(<AlternateContent xmlns="http://schemas.openxmlformats.org/markup-compatibility/2006">)"
                    R"(<Choice Requires="m"><m:yes/></Choice><Fallback><m:no/></Fallback></AlternateContent>)"));
  EXPECT_NE(result.text.find("<m:yes"), std::string::npos) << result.text;
  EXPECT_EQ(result.text.find("<m:no"), std::string::npos) << result.text;
}

TEST(MarkupCompatibility, AChoiceWithoutRequirementsOrWithAnUnknownPrefixIsNotTaken) {
  const Resolved result = resolved(inRoot("",
                                          "<mc:AlternateContent><mc:Choice><a/></mc:Choice><mc:Choice Requires=\"q\">"
                                          "<b/></mc:Choice><mc:Choice Requires=\"\"><c/></mc:Choice>"
                                          "</mc:AlternateContent>"));
  EXPECT_EQ(result.text, inRoot("", ""));
}

TEST(MarkupCompatibility, AlternativesNest) {
  const Resolved result =
      resolved(inRoot(" " + kX15,
                      "<mc:AlternateContent><mc:Choice Requires=\"x15\"/><mc:Fallback><a><mc:AlternateContent>"
                      "<mc:Choice Requires=\"x15\"><mc:AlternateContent/></mc:Choice><mc:Fallback><b/></mc:Fallback>"
                      "</mc:AlternateContent></a></mc:Fallback></mc:AlternateContent>"));
  EXPECT_EQ(result.text, inRoot(" " + kX15, "<a><b/></a>"));
}

TEST(MarkupCompatibility, AnyPrefixMayStandForTheNamespace) {
  const std::string text =
      "<workbook " + kMain +
      "><q:AlternateContent xmlns:q=\"http://schemas.openxmlformats.org/markup-compatibility/2006\">"
      "<q:Fallback><a/></q:Fallback></q:AlternateContent></workbook>";
  EXPECT_EQ(resolved(text).text,
            "<workbook " + kMain +
                "><a xmlns:q=\"http://schemas.openxmlformats.org/markup-compatibility/2006\"/></workbook>");
}

TEST(MarkupCompatibility, IgnorableElementsGoWithTheirContent) {
  const Resolved result =
      resolved(inRoot(" " + kX15 + R"( mc:Ignorable="x15")",
                      "<a x15:b=\"1\" c='2'/><x15:d>text<e/><x15:d/><!-- </x15:d> --></x15:d><f/><x15:g/>"));
  EXPECT_EQ(result.text, inRoot(" " + kX15, "<a c='2'/><f/>"));
  EXPECT_EQ(result.dropped, 3U);
}

TEST(MarkupCompatibility, AnIgnorableElementMayHaveItsNamespaceAsDefault) {
  const Resolved result =
      resolved(inRoot(" " + kX15 + R"( mc:Ignorable="x15")",
                      R"(<x xmlns="http://schemas.microsoft.com/office/spreadsheetml/2010/11/main">)"
                      "<y/></x><sheets/>"));
  EXPECT_EQ(result.text, inRoot(" " + kX15, "<sheets/>"));
}

TEST(MarkupCompatibility, WhatTheBindingKnowsIsNeverIgnored) {
  const std::string known = R"( xmlns:m="http://schemas.openxmlformats.org/spreadsheetml/2006/main")";
  const std::string text = inRoot(known + R"( mc:Ignorable="m")", "<m:sheets/>");
  EXPECT_EQ(resolved(text).text, text);
}

TEST(MarkupCompatibility, ProcessContentKeepsWhatIsInside) {
  const Resolved result = resolved(inRoot(" " + kX15 + R"( mc:Ignorable="x15" mc:ProcessContent="x15:keep")",
                                          "<x15:keep><a/><x15:go><b/></x15:go></x15:keep><x15:other><c/></x15:other>"));
  EXPECT_EQ(result.text, inRoot(" " + kX15, "<a/>"));
  const Resolved all =
      resolved(inRoot(" " + kX15 + R"( mc:Ignorable="x15" mc:ProcessContent="x15:*")", "<x15:go><b/></x15:go>"));
  EXPECT_EQ(all.text, inRoot(" " + kX15, "<b/>"));
}

TEST(MarkupCompatibility, IgnorableHoldsInsideTheElementThatSaysSo) {
  const Resolved result = resolved(inRoot(" " + kX15, "<a mc:Ignorable=\"x15\"><x15:in/></a><x15:out/>"));
  EXPECT_EQ(result.text, inRoot(" " + kX15, "<a></a><x15:out/>"));
}

TEST(MarkupCompatibility, DeclarationsOfTagsThatGoMoveToWhatStays) {
  const Resolved result = resolved(
      inRoot("",
             "<mc:AlternateContent><mc:Choice xmlns:v=\"urn:v\" Requires=\"v\"><v:a/></mc:Choice>"
             "<mc:Fallback xmlns:p=\"urn:p\" xmlns:q='urn:q'><p:a/><b xmlns:p=\"urn:other\"><p:c/></b></mc:Fallback>"
             "</mc:AlternateContent>"));
  EXPECT_EQ(result.text, inRoot("",
                                "<p:a xmlns:p=\"urn:p\" xmlns:q=\"urn:q\"/>"
                                "<b xmlns:q=\"urn:q\" xmlns:p=\"urn:other\"><p:c/></b>"));
}

TEST(MarkupCompatibility, ContentOfExtensionsStaysAsItIs) {
  const std::string extension = "<extLst><ext uri=\"{1}\" " + kX15 + "><x15:a x15:b=\"1\"><mc:AlternateContent>" +
                                "<mc:Choice Requires=\"x15\"/></mc:AlternateContent></x15:a></ext></extLst>";
  const Resolved result = resolved(inRoot(" " + kX15 + R"( mc:Ignorable="x15")", "<x15:go/><sheets/>" + extension));
  EXPECT_EQ(result.text, inRoot(" " + kX15, "<sheets/>" + extension));
}

TEST(MarkupCompatibility, AnElementCalledExtOutsideAListIsNoExtension) {
  const std::string root =
      "<xdr:wsDr xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing\" " + kMc + ">";
  const Resolved result = resolved(root +
                                       "<xdr:ext><mc:AlternateContent><mc:Fallback><xdr:a/></mc:Fallback>"
                                       "</mc:AlternateContent></xdr:ext></xdr:wsDr>",
                                   drawing::c_wsDr::kRoot);
  EXPECT_EQ(result.text, root + "<xdr:ext><xdr:a/></xdr:ext></xdr:wsDr>");
}

TEST(MarkupCompatibility, CommentsSectionsAndInstructionsAreNoMarkup) {
  const std::string content = "<!-- <mc:AlternateContent> --><![CDATA[<mc:AlternateContent>]]><?mc <mc:Choice> ?>";
  const Resolved result = resolved(inRoot("", content + "<mc:AlternateContent/>"));
  EXPECT_EQ(result.text, inRoot("", content));
}

TEST(MarkupCompatibility, BrokenTextIsLeftToTheBinding) {
  for (const char* broken : {"<mc:AlternateContent", "<mc:AlternateContent><mc:Choice", "<mc:AlternateContent><a",
                             "<x15:a>", "<mc:AlternateContent><mc:Fallback><a></mc:Fallback>", "<", "</", "<!--",
                             "<a b=\"", "<a x15:b>", "<a x15:b=c/>"}) {
    const std::string text = "<workbook " + kMain + " " + kMc + " " + kX15 + " mc:Ignorable=\"x15\"><x15:go/>" + broken;
    const Resolved result = resolved(text);
    workbook::c_workbook bound;
    EXPECT_NE(bound.unmarshal(result.text.data(), result.text.size()), lmx::ELMX_OK) << broken;
  }
}

TEST(MarkupCompatibility, EveryTruncationEnds) {
  const std::string text = inRoot(" " + kX15 + R"( mc:Ignorable="x15" mc:ProcessContent="x15:k")",
                                  "<x15:k><a x15:b='1'/></x15:k><mc:AlternateContent><mc:Choice Requires=\"x15\"><a/>"
                                  "</mc:Choice><mc:Fallback><b/></mc:Fallback></mc:AlternateContent>");
  for (std::size_t size = 0; size < text.size(); ++size) resolved(text.substr(0, size));
  EXPECT_EQ(resolved(text).text, inRoot(" " + kX15, "<a/><b/>"));
}

TEST(MarkupCompatibility, DepthAndGrowthAreBounded) {
  std::string deep, declarations;
  for (int i = 0; i < 100'000; ++i) deep += "<mc:AlternateContent><mc:Fallback>";
  const Resolved ended = resolved(inRoot("", deep));
  EXPECT_LE(ended.text.size(), inRoot("", deep).size());
  for (int i = 0; i < 1000; ++i)
    declarations += " xmlns:p" + std::to_string(i) + "=\"urn:" + std::string(50, 'x') + "\"";
  std::string children;
  for (int i = 0; i < 10'000; ++i) children += "<a/>";
  EXPECT_ANY_THROW(resolved(inRoot("", "<mc:AlternateContent><mc:Fallback" + declarations + ">" + children +
                                           "</mc:Fallback></mc:AlternateContent>")));
}

}  // namespace
}  // namespace rubrica
