#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "lmx/limits.h"

namespace rubrica::lmx {
namespace {

constexpr namespace_row kMap[] = {{1000, "r", "urn:r"}, {1001, "", "urn:main"}, {}};
constexpr name_row kNames[] = {{1001, 1, 13, "a"}, {1000, 1, 14, "a"},  {1, 1, 15, "x"}, {1000, 1, 16, "x"},
                               {0, 1, 17, "u"},    {2, 5, 18, "space"}, {1, 1, 19, "n"}, {}};

class memory_reader : public c_xml_reader {
 public:
  explicit memory_reader(std::string document)
      : memory_reader(std::make_unique<std::string>(std::move(document)), nullptr) {}

 private:
  struct block {
    std::unique_ptr<std::string> text;
    c_read_memory memory;
    explicit block(std::unique_ptr<std::string> owned_text)
        : text(std::move(owned_text)), memory(text->data(), text->size()) {}
  };
  memory_reader(std::unique_ptr<std::string> text, std::nullptr_t)
      : memory_reader(std::make_unique<block>(std::move(text))) {}
  explicit memory_reader(std::unique_ptr<block> b) : c_xml_reader(b->memory, &b->memory), _block(std::move(b)) {}
  std::unique_ptr<block> _block;
};

// Every test of this file runs in both lanes.
class Reader : public testing::TestWithParam<bool> {
 protected:
  std::unique_ptr<memory_reader> open(const std::string& document) const {
    auto reader = std::make_unique<memory_reader>(document);
    if (!GetParam()) reader->disable_fast_lane();
    reader->add_namespace_mapping(kMap);
    return reader;
  }
};

INSTANTIATE_TEST_SUITE_P(Lanes, Reader, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Fast" : "Layers"; });

void enter(c_xml_reader& reader) {
  ASSERT_EQ(reader.get_element_event(), TOKEN_NAME);
  ASSERT_EQ(reader.get_attribute_event(), TOKEN_START_TAG_END);
}

TEST_P(Reader, AnEmptyDocumentEndsAtOnce) {
  const auto reader = open("");
  EXPECT_EQ(reader->get_element_event(), TOKEN_END_OF_INPUT);
  EXPECT_EQ(reader->report_end(ELMX_UNEXPECTED_END, "a"), ELMX_UNEXPECTED_END);
  EXPECT_EQ(reader->get_error_message(),
            "Error: Unexpected end of message\nItem: a\nProgram file: <unspecified>\nProgram line: -1\nXML line: 1\n");
}

TEST_P(Reader, EventsInOrder) {
  const auto reader = open("<r><a x='1' y=\"2\"/>\n <b>text</b>mixed</r>");
  enter(*reader);
  ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->name(), "a");
  ASSERT_EQ(reader->get_attribute_event(), TOKEN_NAME);
  EXPECT_EQ(reader->name(), "x");
  std::string_view value;
  EXPECT_TRUE(reader->get_attribute_value(value, white_space::keep));
  EXPECT_EQ(value, "1");
  ASSERT_EQ(reader->get_attribute_event(), TOKEN_NAME);
  EXPECT_EQ(reader->name(), "y");
  ASSERT_EQ(reader->get_attribute_event(), TOKEN_ELEMENT_END);
  EXPECT_EQ(reader->name(), "a");
  ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->name(), "b");
  EXPECT_EQ(reader->line(), 2);
  ASSERT_EQ(reader->get_attribute_event(), TOKEN_START_TAG_END);
  EXPECT_TRUE(reader->get_simple_type_value(value, white_space::keep));
  EXPECT_EQ(value, "text");
  EXPECT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  EXPECT_EQ(reader->get_element_event(), TOKEN_TEXT);
  EXPECT_TRUE(reader->get_simple_type_value(value, white_space::keep));
  EXPECT_EQ(value, "mixed");
  EXPECT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  EXPECT_EQ(reader->name(), "r");
  EXPECT_EQ(reader->get_element_event(), TOKEN_END_OF_INPUT);
  EXPECT_EQ(reader->errors().fatal_count(), 0);
}

TEST_P(Reader, AttributesThatNobodyAskedForArePassedOver) {
  const auto reader = open("<r x='1'><a y='2'/><b/></r>");
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->name(), "a");
  EXPECT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->name(), "b");
}

TEST_P(Reader, TextKeepsWhatLeadsAndTrailsWhenReadAtOnce) {
  const auto reader = open("<r><t>  x  </t><t> </t></r>");
  enter(*reader);
  std::string_view value;
  enter(*reader);
  EXPECT_TRUE(reader->get_simple_type_value(value, white_space::keep));
  EXPECT_EQ(value, "  x  ");
  reader->get_element_event();
  enter(*reader);
  EXPECT_TRUE(reader->get_simple_type_value(value, white_space::keep));
  EXPECT_EQ(value, " ");
}

TEST_P(Reader, CdataAndCommentsAndInstructionsInText) {
  const auto reader = open("<r>a<![CDATA[<&]]]>b]]>c<!-- x -->d<?p?>e<![CDATA[]]><![CDATA[]>]]]]></r>");
  enter(*reader);
  std::string_view value;
  EXPECT_TRUE(reader->get_simple_type_value(value, white_space::keep));
  EXPECT_EQ(value, "a<&]b]]>cde]>]]");
}

TEST_P(Reader, CdataThatOpensAnElementIsText) {
  const auto reader = open("<r><![CDATA[ x]]>y</r>");
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->get_element_event(), TOKEN_TEXT);
  std::string_view value;
  EXPECT_TRUE(reader->get_simple_type_value(value, white_space::keep));
  EXPECT_EQ(value, " xy");
  const auto unread = open("<r><![CDATA[</x>]]><b/></r>");
  EXPECT_EQ(unread->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(unread->get_element_event(), TOKEN_TEXT);
  EXPECT_EQ(unread->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(unread->name(), "b");
}

TEST_P(Reader, NamesAreClassifiedByNamespace) {
  const auto reader = open(
      "<a xmlns='urn:main' xmlns:q='urn:r' x='' q:x='' un:u='' xml:space='' y='' "
      "xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:type='' i:nil='' i:schemaLocation='' "
      "i:noNamespaceSchemaLocation='' i:other=''><q:a/><b/><a xmlns=''/><a xmlns='urn:else'/><a/></a>");
  ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->tokenise(kNames, true), 13);
  EXPECT_EQ(reader->tokenise(nullptr, true), TOKEN_UNKNOWN);
  EXPECT_EQ(reader->tokenise(kNames, true), 13) << "an unknown name is classified again";
  for (const int wanted : {15, 16, 17, 18, 1, 8, 9, 10, 11, 1}) {
    ASSERT_EQ(reader->get_attribute_event(), TOKEN_NAME);
    EXPECT_EQ(reader->tokenise(kNames, false), wanted) << reader->name();
    if (wanted >= 8 && wanted <= 11) {
      EXPECT_EQ(reader->tokenise(nullptr, false), wanted);
    }
  }
  EXPECT_EQ(reader->get_attribute_event(), TOKEN_START_TAG_END);
  EXPECT_EQ(reader->tokenise(kNames, true), TOKEN_START_TAG_END);
  for (const int wanted : {14, 1, 1, 1, 13}) {
    ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
    EXPECT_EQ(reader->tokenise(kNames, true), wanted) << reader->name();
    ASSERT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  }
}

TEST_P(Reader, NamespaceIds) {
  const auto reader =
      open("<r><x xmlns='urn:new' xmlns:p='urn:other' p:y='' q:z='' xml:w='' v=''><x xmlns=''/></x><p:x/></r>");
  ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->namespace_id(true), kNoNamespace);
  ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->namespace_id(true), 1002) << "the first id that the module has left";
  EXPECT_EQ(reader->namespace_uri(1002), "urn:new");
  for (const int id : {1003, kUndeclaredNamespace, kXmlNamespace, kNoNamespace}) {
    ASSERT_EQ(reader->get_attribute_event(), TOKEN_NAME);
    EXPECT_EQ(reader->namespace_id(false), id) << reader->name();
  }
  ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->namespace_id(true), kNoNamespace) << "xmlns='' takes the default away";
  ASSERT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  ASSERT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->namespace_id(true), kUndeclaredNamespace) << "a declaration ends with its element";
}

TEST_P(Reader, AKnownUriTakesTheIdOfALaterTable) {
  constexpr namespace_row kOther[] = {{2000, "m", "urn:main"}, {}};
  const auto reader = open("<a xmlns='urn:main' xmlns:z='urn:z' z:b=''/>");
  reader->add_namespace_mapping(kOther);
  ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->namespace_id(true), 2000);
  ASSERT_EQ(reader->get_attribute_event(), TOKEN_NAME);
  EXPECT_EQ(reader->namespace_id(false), 2001);
}

struct broken {
  const char* document;
  elmx_error code;
  const char* message;
};

TEST_P(Reader, BrokenMarkupIsFatal) {
  constexpr broken kCases[] = {
      {"<a x>", ELMX_NOT_WELL_FORMED, "Schema is not Well Formed (expected '=', got '>"},
      {"<a x 1='1'>", ELMX_NOT_WELL_FORMED, "Schema is not Well Formed (expected '=', got '1"},
      {"<a ='1'>", ELMX_NOT_WELL_FORMED, "Schema is not Well Formed (expected '=', got '="},
      {"<a ?>", ELMX_NOT_WELL_FORMED, "Schema is not Well Formed (expected '=', got '?"},
      {"<a x=1>", ELMX_NOT_WELL_FORMED, "Schema is not Well Formed (expected '\"' or ''', got 1"},
      {"<a", ELMX_UNEXPECTED_END, "Unexpected end of file"},
      {"<a x", ELMX_UNEXPECTED_END, "Unexpected end of file"},
      {"<a x=", ELMX_UNEXPECTED_END, "Unexpected end of file"},
      {"<a x='", ELMX_UNEXPECTED_END, "Unexpected end of file"},
      {"<a x=''", ELMX_UNEXPECTED_END, "Unexpected end of file"},
      {"<", ELMX_UNEXPECTED_END, "Premature end of file encountered"},
      {"<!", ELMX_UNEXPECTED_END, "Premature end of file encountered"},
      {"<!-- x", ELMX_UNEXPECTED_END, "Premature end of file encountered"},
      {"<?x", ELMX_UNEXPECTED_END, "Premature end of file encountered"},
      {"<?xml ", ELMX_UNEXPECTED_END, "Premature end of file encountered"},
      {"<!DOCTYPE x", ELMX_UNEXPECTED_END, "Premature end of file encountered"},
      {"<!DOCTYPE x [", ELMX_UNEXPECTED_END, "Premature end of file encountered"},
      {"<!DOCTYPE x [<!ENTITY e 'x", ELMX_UNEXPECTED_END, "Premature end of file encountered"},
      {"</>", ELMX_NOT_WELL_FORMED, "XML not Well-Formed"},
      {"</a x>", ELMX_NOT_WELL_FORMED, "XML not Well-Formed"},
  };
  for (const broken& tested : kCases) {
    const auto reader = open(tested.document);
    EXPECT_EQ(reader->get_element_event(), TOKEN_FAILURE) << tested.document;
    EXPECT_EQ(reader->errors().last_code(), tested.code) << tested.document;
    EXPECT_EQ(reader->errors().last_text(), tested.message) << tested.document;
    EXPECT_EQ(reader->get_element_event(), TOKEN_FAILURE) << "nothing is read after a fatal problem";
    EXPECT_EQ(reader->report_end(ELMX_UNEXPECTED_END, "a"), tested.code) << "the first cause is what counts";
  }
}

TEST_P(Reader, ASlashMustEndItsTag) {
  for (const std::string between : {"", " ", "\r\n"}) {
    const auto good = open("<r><a /" + between + "></r>");
    enter(*good);
    EXPECT_EQ(good->get_element_event(), TOKEN_NAME);
    EXPECT_EQ(good->get_attribute_event(), TOKEN_ELEMENT_END);
    EXPECT_EQ(good->get_element_event(), TOKEN_ELEMENT_END);
  }
  const auto reader = open("<r><a /x></r>");
  enter(*reader);
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->get_attribute_event(), TOKEN_FAILURE);
  EXPECT_EQ(reader->errors().last_code(), ELMX_BAD_END_TAG);
  EXPECT_EQ(reader->errors().last_text(), "Illegal character(s) after / at end of tag - x");
}

TEST_P(Reader, AskingForAttributesOutsideATagIsNotWellFormed) {
  const auto reader = open("<r></r>");
  enter(*reader);
  EXPECT_EQ(reader->get_attribute_event(), TOKEN_FAILURE);
  EXPECT_EQ(reader->errors().last_text(), "XML not well-formed");
  EXPECT_EQ(reader->errors().last_code(), ELMX_NOT_WELL_FORMED);
}

TEST_P(Reader, TheEndInsideADocumentIsPremature) {
  const auto reader = open("<a><b></b>");
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  EXPECT_EQ(reader->get_element_event(), TOKEN_END_OF_INPUT);
  EXPECT_EQ(reader->errors().last_text(), "Premature end of file encountered");
  EXPECT_EQ(reader->errors().last_code(), ELMX_UNEXPECTED_END);
}

TEST_P(Reader, EndTagsAreComparedWithTheirStart) {
  const auto reader = open("<a><b></c></a></z>");
  reader->get_element_event();
  reader->get_element_event();
  EXPECT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  EXPECT_FALSE(reader->end_matches_start());
  EXPECT_EQ(reader->name(), "c");
  EXPECT_EQ(reader->open_element_name(), "b");
  EXPECT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  EXPECT_TRUE(reader->end_matches_start());
  EXPECT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
  EXPECT_FALSE(reader->end_matches_start()) << "nothing is open";
}

TEST_P(Reader, SkippingPassesOverAllInside) {
  const auto reader = open("<r><s a='1'>t<b/><c>x &amp; <![CDATA[<]]></c><!-- --></s><n/></r>");
  enter(*reader);
  reader->get_element_event();
  EXPECT_TRUE(reader->skip_element());
  EXPECT_EQ(reader->current_token(), TOKEN_ELEMENT_END);
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->name(), "n");
  EXPECT_TRUE(reader->skip_element());
  EXPECT_EQ(reader->get_element_event(), TOKEN_ELEMENT_END);
}

TEST_P(Reader, SkippedElementsMustEndAsTheyStarted) {
  for (const bool capture : {false, true}) {
    const auto reader = open("<r><s><b></c></s></r>");
    enter(*reader);
    reader->get_element_event();
    any_item item;
    EXPECT_FALSE(capture ? reader->capture_element(item, white_space::keep) : reader->skip_element());
    EXPECT_EQ(reader->errors().last_text(), "Element start tag (b) and end tag (c) do not match");
    EXPECT_EQ(reader->errors().last_code(), ELMX_NOT_WELL_FORMED);
    EXPECT_FALSE(reader->skip_element());
  }
}

std::string capture(c_xml_reader& reader, any_item& item) {
  reader.get_element_event();
  reader.get_element_event();
  return reader.capture_element(item, white_space::keep) ? item.text : "failed";
}

TEST_P(Reader, CapturedElementsComeBackByteForByte) {
  const std::string inner =
      "<x:e xmlns:x=\"urn:x\" a='1 \"&amp;\"' b=\"&#65;&lt;\"> t &amp; &#x41;<y/>\n<x:z xmlns='urn:z' q=\"\">"
      "<![CDATA[<&]]></x:z>\xC3\xA4 </x:e>";
  const auto reader = open("<r>" + inner + "<n/></r>");
  any_item item;
  EXPECT_EQ(capture(*reader, item), inner);
  EXPECT_EQ(item.name, "x:e");
  EXPECT_EQ(item.namespace_uri, "urn:x");
  ASSERT_EQ(item.attributes.size(), 2U);
  EXPECT_EQ(item.attributes[0], std::make_pair(std::string("a"), std::string("1 \"&\"")));
  EXPECT_EQ(item.attributes[1], std::make_pair(std::string("b"), std::string("A<")));
  EXPECT_EQ(reader->current_token(), TOKEN_ELEMENT_END);
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->name(), "n");
}

TEST_P(Reader, CapturingDropsCommentsAndFoldsEmptyTags) {
  any_item item;
  EXPECT_EQ(capture(*open("<r><e  a = '1' ><!-- c --><f /></e ></r>"), item), "<e a='1'><f/></e>");
  EXPECT_EQ(capture(*open("<r><e/></r>"), item), "<e/>");
}

TEST_P(Reader, CapturingFoldsInTheNamespacesOfElementsAround) {
  any_item item;
  const std::string around = "<r xmlns='urn:d' xmlns:p='urn:p' xmlns:q='urn:q' xmlns:u='urn:u' xmlns:m='urn:\"m'>";
  EXPECT_EQ(capture(*open(around + "<p:e q:a='1'><p:f/></p:e></r>"), item),
            "<p:e xmlns:p=\"urn:p\" xmlns:q=\"urn:q\" q:a='1'><p:f/></p:e>");
  EXPECT_EQ(capture(*open(around + "<p:e xmlns:p='urn:own'><f/></p:e></r>"), item),
            "<p:e xmlns:p='urn:own' xmlns=\"urn:d\"><f/></p:e>");
  EXPECT_EQ(
      capture(*open(around + "<e Requires='p q' t='u:x http://y'/></r>"), item),
      "<e xmlns=\"urn:d\" xmlns:p=\"urn:p\" xmlns:q=\"urn:q\" xmlns:u=\"urn:u\" Requires='p q' t='u:x http://y'/>");
  EXPECT_EQ(capture(*open(around + "<m:e/></r>"), item), "<m:e xmlns:m='urn:\"m'/>");
}

TEST_P(Reader, CapturingExpandsWhatOnlyThisDocumentDefines) {
  any_item item;
  const std::string type = "<!DOCTYPE r [<!ENTITY e 'x&amp;y<b/>'>]>";
  EXPECT_EQ(capture(*open(type + "<r><c>&e;</c></r>"), item), "<c>x&amp;y<b/></c>");
  for (const std::string bad : {"&f;", "&lt", "& ", "&#x;", "&#xD800;"}) {
    EXPECT_EQ(capture(*open("<r><c>" + bad + "</c></r>"), item), "failed") << bad;
  }
}

TEST_P(Reader, ElementDepthIsBounded) {
  std::string deep;
  for (std::size_t i = 0; i < kMaxElementDepth; ++i) deep += "<a>";
  const auto reader = open(deep + "<a>");
  for (std::size_t i = 0; i < kMaxElementDepth; ++i) ASSERT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->get_element_event(), TOKEN_FAILURE);
  EXPECT_EQ(reader->errors().last_code(), ELMX_XML_BADLY_FORMED);
}

TEST_P(Reader, NamespacesInScopeAreBounded) {
  std::string document = "<r><a";
  for (std::size_t i = 0; i <= kMaxNamespacesInScope; ++i) {
    document += " xmlns:p" + std::to_string(i) + "='u'";
  }
  const auto reader = open(document + "/></r>");
  EXPECT_EQ(reader->get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader->get_element_event(), TOKEN_FAILURE);
  EXPECT_EQ(reader->errors().last_code(), ELMX_XML_BADLY_FORMED);
}

TEST_P(Reader, TextOfAnUnknownEntityFails) {
  const auto reader = open("<r>&foo;</r>");
  enter(*reader);
  std::string_view text;
  EXPECT_FALSE(reader->get_simple_type_value(text, white_space::keep));
  EXPECT_EQ(text, "&foo;");
}

TEST(ErrorMessage, NamesItemProgramAndLine) {
  c_error_record record;
  EXPECT_EQ(record.program_file, "(not set)");
  EXPECT_EQ(record.message(), "Error: No Error\n");
  record = {ELMX_LENGTH_TOO_LONG, "@name", "source/ooxml/sml-workbook", 17, 4};
  EXPECT_EQ(record.message(),
            "Error: Length too long\nItem: @name\nProgram file: source/ooxml/sml-workbook\nProgram line: 17\n"
            "XML line: 4\n");
  record.xml_line = -1;
  EXPECT_EQ(record.message(),
            "Error: Length too long\nItem: @name\nProgram file: source/ooxml/sml-workbook\nProgram line: 17\n");
}

TEST(ErrorTexts, EveryCodeHasOne) {
  EXPECT_EQ(error_text_count(), 56);
  for (int code = 0; code <= 46; ++code) EXPECT_STRNE(get_error_text(code), "") << code;
  EXPECT_STREQ(get_error_text(1000), "User defined error 1");
  EXPECT_STREQ(get_error_text(1008), "User defined error 9");
  EXPECT_STREQ(get_error_text(47), "");
  EXPECT_STREQ(get_error_text(1009), "");
  EXPECT_STREQ(get_error_text(-1), "");
  EXPECT_STREQ(get_error_text(16), "Element not found");
  EXPECT_STREQ(get_error_text(15), "Mis-match between specified char encoding and read bytes");
}

}  // namespace
}  // namespace rubrica::lmx
