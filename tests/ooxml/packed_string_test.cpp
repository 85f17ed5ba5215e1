// The hand-laid string item: what it keeps in which form, and that it is read and written as the driver reads and
// writes the type's described form.
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "lmx/c_xml_writer.h"
#include "lmx/driver.h"
#include "plain/plain_strings.h"
#include "source/ooxml/sharedStringTable.h"
#include "tests/ooxml/read_and_write.h"

namespace rubrica {

namespace {

using sharedStringTable::c_CT_Rst;

using ooxml_tests::read_result;
using ooxml_tests::readAndWrite;

std::string tableOf(const std::string& items) {
  return R"(<sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" count="3">)" + items + "</sst>";
}

void expectSame(const std::string& document) {
  const read_result described = readAndWrite<plain_strings::c_sst>(document);
  EXPECT_EQ(readAndWrite<sharedStringTable::c_sst>(document), described) << document;
  EXPECT_EQ(readAndWrite<sharedStringTable::c_sst>(document, true), readAndWrite<plain_strings::c_sst>(document, true))
      << document;
}

std::string written(const lmx::object& item, const lmx::writer_layout& layout = {}) {
  std::string text;
  lmx::c_xml_writer writer(text, lmx::c_xml_writer::kNoDeclaration, layout);
  EXPECT_EQ(lmx::marshal(item, writer, "si"), lmx::ELMX_OK);
  return text;
}

}  // namespace

TEST(PackedString, TakesTwentyFourBytes) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "the size is stated for 64 bits";
  EXPECT_EQ(sizeof(c_CT_Rst), 24U);
}

TEST(PackedString, IsEmptyWhenNew) {
  const c_CT_Rst item;
  EXPECT_FALSE(item.view_t() || item.isset_t() || item.find_full());
  EXPECT_EQ(item.size_r(), 0U);
}

TEST(PackedString, KeepsTextToTheByteUntilMoreIsAskedFor) {
  for (const std::string& text : {std::string(), std::string("a"), std::string("a\0b", 3), std::string(40000, 'x')}) {
    c_CT_Rst item;
    item.set_t(text);
    EXPECT_TRUE(item.isset_t());
    EXPECT_EQ(item.view_t(), text);
    EXPECT_EQ(item.find_full(), nullptr);
    EXPECT_EQ(item.get_t().get_value(), text);
    EXPECT_EQ(item.view_t(), std::nullopt);
    EXPECT_TRUE(item.isset_t());
    EXPECT_TRUE(item.get_full().isset_t());
    item.set_t("text alone again");
    EXPECT_EQ(item.find_full(), nullptr);
  }
}

TEST(PackedString, CopiesDeeplyAndMoves) {
  c_CT_Rst text, rich;
  text.set_t("text");
  rich.append_r().get_t().set_value("run");
  c_CT_Rst copy = text;
  copy.set_t("other");
  EXPECT_EQ(text.view_t(), "text");
  copy = rich;
  copy.get_r(0).get_t().set_value("other run");
  EXPECT_EQ(rich.get_r(0).get_t().get_value(), "run");
  EXPECT_EQ(copy.get_r(0).get_t().get_value(), "other run");
  copy = text;
  EXPECT_EQ(copy.view_t(), "text");
  EXPECT_EQ(copy.size_r(), 0U);
  const c_CT_Rst moved = std::move(copy);
  EXPECT_EQ(moved.view_t(), "text");
  const lmx::owned clone(rich.clone());
  EXPECT_TRUE(lmx::equal(rich, *clone.get()));
}

TEST(PackedString, IsEqualToItselfInEitherForm) {
  c_CT_Rst text, full, other, empty;
  text.set_t("text");
  full.get_t().set_value("text");
  other.set_t("other");
  EXPECT_TRUE(lmx::equal(text, full) && lmx::equal(full, text));
  EXPECT_EQ(written(text), written(full));
  EXPECT_FALSE(lmx::equal(text, other) || lmx::equal(full, other) || lmx::equal(text, empty));
  full.get_t().set_xml_space("preserve");
  EXPECT_FALSE(lmx::equal(text, full));
  std::string item;
  EXPECT_EQ(lmx::check(text, item), lmx::ELMX_OK);
  full.get_t().set_xml_space("keep");
  EXPECT_EQ(lmx::check(full, item), lmx::ELMX_VALUE_NOT_IN_ENUMERATION);
}

TEST(PackedString, IsWrittenAsItsDescribedFormIs) {
  c_CT_Rst text, empty;
  text.set_t("a<b> & \"c\" ]]>");
  EXPECT_EQ(written(empty), "<si xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"/>");
  sharedStringTable::c_sst packed;
  packed.append_si() = text;
  packed.append_si() = empty;
  packed.append_si() = text;
  plain_strings::c_sst described;
  for (int i = 0; i < 3; ++i) {
    auto& item = described.append_si();
    if (i != 1) item.get_t().set_value("a<b> & \"c\" ]]>");
  }
  for (const char* nl : {"", "\n"}) {
    std::string first, second;
    lmx::c_xml_writer to_first(first, lmx::c_xml_writer::kDeclaration, {.tab = "", .nl = nl});
    lmx::c_xml_writer to_second(second, lmx::c_xml_writer::kDeclaration, {.tab = "", .nl = nl});
    ASSERT_EQ(packed.marshal(to_first), lmx::ELMX_OK);
    ASSERT_EQ(described.marshal(to_second), lmx::ELMX_OK);
    EXPECT_EQ(first, second);
  }
}

TEST(PackedString, TablesAreReadAndWrittenAsTheDriverDoes) {
  for (const std::string items : {
           "",
           "<si><t>a</t></si><si><t>b</t></si>",
           "<si><t></t></si><si><t/></si><si/><si></si>",
           "<si><t> two  blanks </t></si>\n <si><t xml:space=\"preserve\"> a </t></si>\n",
           "<si><t>a\nb\r\nc\td</t></si><si><t>e</t></si>",
           "<si><t>a&lt;b&#x41;&amp;</t></si><si><t>quotes \" ' and > and ]]></t></si>",
           "<si><t>\xC3\xBC \xE2\x82\xAC</t></si><si><t>a</t></si><si><t>\x7F</t></si><si><t>\x01</t></si>",
           "<si><t>\xC3</t></si>",
           "<si><t>\xC3\xBC\xC2\x85\xE2\x80\xA8\xE2\x80\xA9 end</t></si>",
           "<si><t>a\xC2\x85</t></si>",
           "<si><t>\xE2\x80\xA8</t></si>",
           "<si><t>\xF0\x9F\x93\x8A \xEF\xBF\xBF \xE2\x80\xA7</t></si>",
           "<si><t>\xE2\x82</t></si>",
           "<si><t>\xED\xA0\x80</t></si>",
           "<si><t>\xC0\xAF</t></si>",
           "<si><t>\xF4\x90\x80\x80</t></si>",
           "<si><t>\xC3\xBC &amp; \xC3\xBC</t></si>",
           "<si><t><![CDATA[<raw>]]></t></si><si><t>a<!-- b -->c</t></si>",
           "<si><r><rPr><b/></rPr><t>a</t></r><r><t>b</t></r></si><si><t>c</t></si>",
           "<si><t>a</t><rPh sb=\"0\" eb=\"1\"><t>b</t></rPh><phoneticPr fontId=\"1\"/></si><si><t>c</t></si>",
           "<si><t>a</t><t>b</t></si>",
           "<si><t>a</t></si>text<si><t>b</t></si>",
           "<si><t>a</t></si><x:si xmlns:x=\"urn:x\"/><si><t>b</t></si>",
           "<si xmlns=\"urn:x\"><t>a</t></si>",
           "<si a=\"1\"><t b=\"2\">a</t></si><si ><t >b</t ></si >",
           "<si><t>a</t></si><extLst><ext uri=\"u\"/></extLst>",
           "<si><t>a</t></si><t>",
           "<si><t>a</t></sj>",
           "<si><t>a</si></t>",
           "<si><t>a<t>b</t></t></si>",
           "<si><t xml:space=\"keep\">a</t></si>",
       }) {
    expectSame(tableOf(items));
    expectSame(tableOf("<si><t>first</t></si>" + items + "<si><t>last</t></si>"));
  }
  const std::string whole = tableOf("<si><t>abc</t></si><si><t>def</t></si>");
  for (std::size_t size = 1; size < whole.size(); ++size) expectSame(whole.substr(0, size));
  expectSame(R"(<m:sst xmlns:m="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><si><t>a</t></si></m:sst>)");
}

TEST(PackedString, TextBeyondAsciiStaysTextAlone) {
  const std::string text = tableOf("<si><t>\xC3\x9C 12 \xE2\x82\xAC \xF0\x9F\x93\x8A</t></si>");
  sharedStringTable::c_sst table;
  ASSERT_EQ(table.unmarshal(text.data(), text.size()), lmx::ELMX_OK);
  ASSERT_EQ(table.size_si(), 1U);
  EXPECT_EQ(table.get_si(0).view_t(), "\xC3\x9C 12 \xE2\x82\xAC \xF0\x9F\x93\x8A");
}

// More text than a writer holds back before its stream gets it.
TEST(PackedString, LongTablesGoToAStreamWhole) {
  sharedStringTable::c_sst table;
  for (int i = 0; i < 20000; ++i) table.append_si().set_t("text number " + std::to_string(i));
  std::string text;
  ASSERT_EQ(table.marshal(text), lmx::ELMX_OK);
  std::ostringstream stream;
  {
    lmx::c_xml_writer writer(stream);
    ASSERT_EQ(table.marshal(writer), lmx::ELMX_OK);
  }
  EXPECT_EQ(stream.str(), text);
  sharedStringTable::c_sst again;
  ASSERT_EQ(again.unmarshal(text.data(), text.size()), lmx::ELMX_OK);
  EXPECT_TRUE(lmx::equal(table, again));
}

}  // namespace rubrica
