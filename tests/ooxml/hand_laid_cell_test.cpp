// The hand-laid cell against the driver on the same input: a worksheet read into the module's classes and into classes
// that are all described gives the same result, the same text when written, and the same error.
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "lmx/driver.h"
#include "plain/plain_sheet.h"
#include "source/ooxml/sheet.h"

namespace rubrica {

namespace {

struct result {
  lmx::elmx_error code;
  std::string item;
  int program_line;
  int xml_line;
  std::string text;
  bool operator==(const result&) const = default;
};

std::ostream& operator<<(std::ostream& out, const result& r) {
  return out << r.code << " " << r.item << " at " << r.program_line << ", " << r.xml_line << ": " << r.text;
}

template <class Root>
result readAndWrite(const std::string& document) {
  Root root;
  lmx::c_error_record record;
  result answer{};
  answer.code = root.unmarshal(document.data(), document.size(), &record);
  answer.item = record.item_name;
  answer.program_line = record.program_line;
  answer.xml_line = record.xml_line;
  if (answer.code == lmx::ELMX_OK) {
    EXPECT_EQ(root.marshal(answer.text), lmx::ELMX_OK);
  }
  return answer;
}

std::string worksheetOf(const std::string& rows) {
  return R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)"
         "\n<sheetData>" +
         rows + "</sheetData>\n</worksheet>";
}

void expectSame(const std::string& document) {
  EXPECT_EQ(readAndWrite<sheet::c_worksheet>(document), readAndWrite<plain_sheet::c_worksheet>(document)) << document;
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
