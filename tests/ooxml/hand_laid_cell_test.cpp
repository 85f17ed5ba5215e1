// The hand-laid cell against the driver on the same input: a worksheet read into the module's classes and into classes
// that are all described gives the same result, the same text when written, and the same error.
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "lmx/driver.h"
#include "plain/plain_sheet.h"
#include "source/ooxml/sheet.h"
#include "tests/ooxml/read_and_write.h"

namespace rubrica {

namespace {

using ooxml_tests::read_result;
using ooxml_tests::readAndWrite;

std::string worksheetOf(const std::string& rows) {
  return R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)"
         "\n<sheetData>" +
         rows + "</sheetData>\n</worksheet>";
}

// Near the end of a document no cell is read the short way: with blanks behind it all may be.
void expectSame(const std::string& document) {
  for (const std::string& text : {document, document + std::string(200, ' ')}) {
    EXPECT_EQ(readAndWrite<sheet::c_worksheet>(text), readAndWrite<plain_sheet::c_worksheet>(text)) << text;
  }
}

// The short way against the cell's own reader, which is how the layers' events are read: the two agree on references
// that are no addresses too, which the driver keeps as text.
void expectSameWithoutShortWay(const std::string& document) {
  const std::string text = document + std::string(200, ' ');
  EXPECT_EQ(readAndWrite<sheet::c_worksheet>(text), readAndWrite<sheet::c_worksheet>(text, true)) << text;
}

}  // namespace

TEST(HandLaidCell, ReadsAndWritesWhatTheDriverDoes) {
  const std::vector<std::string> cells = {
      R"(<c r="A1"/>)",
      R"(<c r="A1"></c>)",
      R"(<c/>)",
      R"(<c r="XFD1048576" s="4294967295" t="str"><v>text</v></c>)",
      R"(<c r="B2" t="s"><v>12</v></c>)",
      R"(<c r="B2" t="b"><v>1</v></c>)",
      R"(<c r="B2" t="e"><v>#DIV/0!</v></c>)",
      R"(<c r="B2" t="n"><v>-1.2345678901234567E-308</v></c>)",
      R"(<c r="B2"><v/></c>)",
      R"(<c r="B2"><v></v></c>)",
      R"(<c r="B2"><v xml:space="preserve">  two blanks  </v></c>)",
      R"(<c r="B2"><v>a&lt;b&#x41;</v></c>)",
      R"(<c r="B2"><v><![CDATA[<raw>]]></v></c>)",
      R"(<c r="B2"><f>A1+1</f><v>3</v></c>)",
      R"(<c r="B2"><f t="shared" si="0" ref="B2:B9">A1+1</f></c>)",
      R"(<c r="B2"><f t="shared" si="0"/><v>3</v></c>)",
      R"(<c r="B2" t="inlineStr"><is><t xml:space="preserve"> a </t></is></c>)",
      R"(<c r="B2" t="inlineStr"><is><r><rPr><b/></rPr><t>a</t></r></is></c>)",
      R"(<c r="B2" cm="1" vm="2" ph="1"><v>3</v></c>)",
      R"(<c r="B2"><v>3</v><extLst><ext uri="u"><x:a xmlns:x="urn:x"/></ext></extLst></c>)",
      "<c r=\"B2\">\n  <f>1</f>\n  <v>3</v>\n</c>",
  };
  for (const std::string& cell : cells) expectSame(worksheetOf("<row r=\"1\">" + cell + "</row>"));
}

TEST(HandLaidCell, PlainCellsAreWhatTheDriverMakesOfThem) {
  const std::vector<std::string> cells = {
      R"(<c r="A1"><v>1</v></c><c r="B1"><v>2</v></c><c r="C1"/><c r="D1" s="2"/>)",
      R"(<c t="s" s="999999999" r="ZZ1"><v>0</v></c><c r="AAA1048576" t="n"><v>-1.5E+10</v></c>)",
      R"(<c r="A1"><f>A2*(B3+"x y")</f><v>12345678901234567890</v></c><c r="B1"><f></f></c><c r="C1"><f>1</f></c>)",
      R"(<c r="A1" t="str"><v>quotes " and ' and > and ]]></v></c><c r="B1"><v></v></c>)",
      R"(<c r="A1" t="str"><v>text of more than thirteen characters</v></c><c r="B1" t="str"><v>thirteenchars</v></c>)",
      R"(<c r="A1"><v>12345678901234.5678901234567</v></c><c r="B1"><v>1234567890123456789012345</v></c>)",
      R"(<c r="A1"><v>1234567890123456789012345678</v></c><c r="B1"><v>0.123456789012x</v></c>)",
      "<c r=\"A1\"><v>1</v></c>\n\t <c r=\"B1\"><v>2</v></c>\r\n<c r=\"C1\"><v>3</v></c>\r<c r=\"D1\"><v>4</v></c>",
      R"(<c r="A1"><v>1</v></c><!-- between --><c r="B1"><v>2</v></c><?x y?><c r="C1"><v>3</v></c>)",
      R"(<c r="A1"><v>1</v></c><c r="B1"><v>&#50;</v></c><c r="C1"><v>3</v></c><c  r="D1"><v>4</v></c>)",
      R"(<c r="A1"><v>1</v></c><c r="B1"></c><c r='C1'><v>3</v></c><c r="D1" ><v>4</v></c><c r="E1"><v>5</v ></c>)",
      "<c r=\"A1\"><v>1</v></c><c r=\"B1\" t=\"str\"><v>\xC3\xBC \xE2\x82\xAC</v></c><c r=\"C1\"><v>\x7F\x01</v></c>",
      R"(<c r="A1" t="b"><v>0</v></c><c r="B1" t="e"><v>#N/A</v></c><c r="C1" t="inlineStr"><is><t>a</t></is></c>)",
      R"(<c r="A1"><v>1</v></c><x:c xmlns:x="urn:x" r="B1"/><extLst/>)",
      R"(<c r="A1"><v>1</v></c><c xmlns="urn:x" r="B1"><v>2</v></c>)",
      R"(<c r="A1"><v>1</v></c>text<c r="B1"><v>2</v></c>)",
      R"(<c r="A1"><v>1</v></c><c r="B1"><v>2</v><v>3</v></c><c r="C1"><v>1</v><f>2</f></c>)",
      R"(<c r="A1"><v>1</v></c><c r="B1"><v>2</v></d>)",
      R"(<c r="A1"><v>1</v></c><c r="B1" s=""><v>2</v></c>)",
      R"(<c r="A1"><v>1</v></c><c r="B1" t="boolean"><v>2</v></c>)",
      R"(<c r="A1"><v>1</v></c><c r="B1" r="B1"><v>2</v></c>)",
      R"(<c r="A1"><v>1</v></c><c r="B1" s="1" t="s" s="1"><v>2</v></c>)",
      R"(<c r="A1"><v>1</v></c><c r="B1)",
      R"(<c r="A1"><v>1</v></c><c r="B1"><v>2)",
  };
  for (const std::string& cell : cells) {
    expectSame(worksheetOf("<row r=\"1\">" + cell + "</row>"));
    expectSame(worksheetOf("<row r=\"1\">\n " + cell + "\n</row><row r=\"2\"><c r=\"A2\"><v>9</v></c></row>"));
  }
  // Of another namespace by way of a prefix, or of none.
  const std::string row = R"(row r="1"><c r="A1"><v>1</v></c></row>)";
  expectSame("<m:worksheet xmlns:m=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><m:sheetData><m:" +
             row + "</m:sheetData></m:worksheet>");
  expectSame(worksheetOf("<row xmlns=\"urn:x\" r=\"1\"><c r=\"A1\"><v>1</v></c></row>"));
}

TEST(HandLaidCell, LongTextsAreWrittenAsTheDriverDoes) {
  for (const std::size_t size : {27U, 255U, 256U, 257U, 511U, 512U, 513U, 5000U}) {
    const std::string text(size, '7');
    expectSame(worksheetOf(R"(<row r="1"><c r="A1"><v>)" + text + R"(</v></c><c r="B1"><f>)" + text +
                           R"(</f></c><c r="C1" t="str"><f>)" + text + "</f><v>" + text +
                           R"(</v></c><c r="D1"><f>A1</f><v>)" + text + R"(</v></c><c r="E1"><v>1</v></c></row>)"));
  }
}

// Values of digits alone are copied without a look at each of them.
TEST(HandLaidCell, ShortValuesAreEscapedWhereverTheCharacterStands) {
  constexpr std::size_t kLongestShort = 13;
  sheet::c_worksheet packed;
  plain_sheet::c_worksheet described;
  auto& packed_row = packed.get_sheetData().append_row();
  auto& described_row = described.get_sheetData().append_row();
  for (std::size_t size = 0; size <= kLongestShort + 1; ++size) {
    for (std::size_t at = 0; at < size; ++at) {
      for (const char c : std::string("\x01\x1F !\"&'*+-./09:;<=>@AEZ]az~\x7F\x80\xB0\xFF")) {
        std::string value(size, '7');
        value[at] = c;
        packed_row.append_c().set_position(0, 0);
        packed_row.get_c(packed_row.size_c() - 1).set_v(value);
        auto& cell = described_row.append_c();
        cell.set_r("A1");
        cell.set_v(value);
      }
    }
  }
  std::string first, second;
  ASSERT_EQ(packed.marshal(first), lmx::ELMX_OK);
  ASSERT_EQ(described.marshal(second), lmx::ELMX_OK);
  EXPECT_TRUE(first == second);
}

TEST(HandLaidCell, OtherReferencesAreNotReadTheShortWay) {
  for (const std::string cell : {
           R"(<c r="A1"><v>1</v></c><c r="a2"/><c r="A0"/><c r="A01"/><c r="A1048577"/><c r="XFE1"/><c r="AAAA1"/>)",
           R"(<c r="A1"><v>1</v></c><c r=""/><c r="1"/><c r="A"/><c r="A12345678"/><c r="$A$1"/><c s="007"/><c/>)",
       }) {
    expectSameWithoutShortWay(worksheetOf("<row r=\"1\">" + cell + "</row>"));
  }
}

// Whatever rows are put together from pieces of cells.
TEST(HandLaidCell, RandomRowsAreTheSameWithoutTheShortWay) {
  const std::vector<std::string> pieces = {"<c",
                                           "<c ",
                                           "<c r=\"B2\"",
                                           " r=\"C3\"",
                                           " s=\"4\"",
                                           " t=\"s\"",
                                           " t=\"str\"",
                                           ">",
                                           "/>",
                                           "<v>",
                                           "</v>",
                                           "<f>",
                                           "</f>",
                                           "</c>",
                                           "12",
                                           "0.10000000000000001",
                                           "a text",
                                           "\n",
                                           "&amp;",
                                           "<is/>",
                                           " x=\"1\"",
                                           "'",
                                           "<c r=\"A1\"><v>1</v></c>"};
  std::mt19937 random(20261121);
  for (int i = 0; i < 3000; ++i) {
    std::string row;
    // Mostly whole cells with one or two pieces put in somewhere, for noise alone is refused at once.
    for (std::size_t cells = 1 + random() % 4; cells > 0; --cells) {
      row += random() % 2 == 0 ? R"(<c r="B2" s="1"><v>5</v></c>)" : R"(<c r="C9" t="str"><f>B2+C3</f><v>a b</v></c>)";
    }
    for (std::size_t changes = random() % 3; changes > 0; --changes) {
      row.insert(random() % (row.size() + 1), pieces[random() % pieces.size()]);
    }
    expectSameWithoutShortWay(worksheetOf("<row r=\"1\">" + row + "</row>"));
    if (HasFailure()) break;
  }
}

TEST(HandLaidCell, RefusesWhatTheDriverRefuses) {
  const std::vector<std::string> cells = {
      R"(<c r="A1" r="A2"/>)",
      R"(<c s="1" s="1"/>)",
      R"(<c t="n" t="n"/>)",
      R"(<c s="x"/>)",
      R"(<c s="-1"/>)",
      R"(<c s="4294967296"/>)",
      R"(<c t="x"/>)",
      R"(<c t=" n"/>)",
      R"(<c t="d"><v>2026-11-20</v></c>)",
      R"(<c t=""/>)",
      R"(<c cm="1.5"/>)",
      R"(<c vm=""/>)",
      R"(<c ph="yes"/>)",
      R"(<c r="&nothing;"/>)",
      R"(<c><v>1<w/></v></c>)",
      R"(<c><v>1</w></c>)",
      R"(<c><v>1</v></d>)",
      R"(<c><v>1)",
      R"(<c r="A1)",
      R"(<c r=A1/>)",
      R"(<c><f t="none">1</f></c>)",
      R"(<c><is><r/></is></c>)",
      R"(<c><v>&nothing;</v></c>)",
  };
  for (const std::string& cell : cells) {
    const std::string document = worksheetOf("<row r=\"1\">\n" + cell + "</row>");
    EXPECT_NE(readAndWrite<sheet::c_worksheet>(document).code, lmx::ELMX_OK) << document;
    expectSame(document);
  }
}

TEST(HandLaidCell, TreatsForeignContentAsTheDriverDoes) {
  const std::vector<std::string> cells = {
      R"(<c other="1" x:other="2" xmlns:x="urn:x" r="A1"/>)",
      R"(<c><foreign/></c>)",
      R"(<c><v>1</v><foreign><v>2</v></foreign></c>)",
      R"(<c><foreign/><v>1</v></c>)",
      R"(<c><v>1</v><foreign/><is><t>a</t></is></c>)",
      R"(<c><v>1</v><foreign/><f>2</f></c>)",
      R"(<c><v>1</v><f>2</f></c>)",
      R"(<c><v>1</v><v>2</v></c>)",
      R"(<c><v>1</v>stray text</c>)",
      R"(<c>stray text<v>1</v></c>)",
      R"(<c><v>1</v><f>2</f><is><t>a</t></is></c>)",
      R"(<x:c xmlns:x="urn:x"/>)",
  };
  for (const std::string& cell : cells) expectSame(worksheetOf("<row r=\"1\">" + cell + "<c r=\"Z9\"/></row>"));
}

TEST(HandLaidCell, DropsAReferenceThatIsNoAddress) {
  sheet::c_worksheet root;
  const std::string document = worksheetOf(R"(<row r="1"><c r="$A$1"><v>1</v></c></row>)");
  ASSERT_EQ(root.unmarshal(document.data(), document.size()), lmx::ELMX_OK);
  EXPECT_FALSE(root.get_sheetData().get_row(0).get_c(0).isset_r());
}

TEST(Rows, AreDroppedAsTheyAreReadWhenNotWanted) {
  const std::string document = worksheetOf(R"(<row r="1"/><row r="2"><c r="A2"/></row><row/><row r="9"/>)");
  std::uint32_t seen = 0;
  const lmx::child_filter second_only = {&sheet::c_CT_Row::kDescriptor,
                                         [](void* context, const lmx::object& child) {
                                           ++*static_cast<std::uint32_t*>(context);
                                           return static_cast<const sheet::c_CT_Row&>(child).get_r() == 2;
                                         },
                                         &seen};
  lmx::c_xml_reader_memory reader(document.data(), document.size());
  reader.set_child_filter(second_only);
  sheet::c_worksheet root;
  ASSERT_EQ(root.unmarshal(reader), lmx::ELMX_OK);
  EXPECT_EQ(seen, 4U);
  ASSERT_EQ(root.get_sheetData().size_row(), 1U);
  EXPECT_EQ(root.get_sheetData().get_row(0).size_c(), 1U);
}

TEST(Rows, HoldTheirCellsInOrderAndByValue) {
  sheet::c_CT_Row row;
  row.append_c().set_position(0, 5);
  row.append_c().set_position(0, 9);
  row.insert_c(0).set_position(0, 1);
  row.insert_c(2).set_v("between");
  ASSERT_EQ(row.size_c(), 4U);
  EXPECT_EQ(row.get_c(0).column(), 1);
  EXPECT_EQ(row.get_c(1).column(), 5);
  EXPECT_EQ(row.get_c(2).get_v(), "between");
  const sheet::c_CT_Row copy = row;
  row.erase_c(2);
  EXPECT_EQ(row.size_c(), 3U);
  EXPECT_EQ(copy.size_c(), 4U);
  EXPECT_EQ(copy.get_c(2).get_v(), "between");
  row.clear_c();
  EXPECT_EQ(row.size_c(), 0U);
}

}  // namespace rubrica
