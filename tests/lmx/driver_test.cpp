#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "lmx/limits.h"
#include "tests/lmx/sample_module.h"

namespace rubrica::lmx {
namespace {

using namespace sample;

const std::string kOpen = "<root xmlns='urn:main' xmlns:r='urn:r'>";

template <class T>
c_error_record read(T& object, const root_descriptor& root, const std::string& document) {
  c_error_record record;
  const elmx_error code = unmarshal_root(object, root, document.data(), document.size(), &record);
  EXPECT_EQ(record.code, code);
  return record;
}

c_error_record read_root(c_CT_Root& object, const std::string& content) {
  return read(object, kRoot, kOpen + content + "</root>");
}

void expect_failure(const std::string& content, elmx_error code, const std::string& item) {
  c_CT_Root object;
  const c_error_record record = read_root(object, content);
  EXPECT_EQ(record.code, code) << content;
  EXPECT_EQ(record.item_name, item) << content;
}

c_error_record read_leaf(c_CT_Leaf& leaf, const std::string& attributes) {
  return read(leaf, kLeafRoot, "<leaf xmlns='urn:main' xmlns:r='urn:r' " + attributes + "/>");
}

void expect_leaf_failure(const std::string& attributes, elmx_error code, const std::string& item) {
  c_CT_Leaf leaf;
  const c_error_record record = read_leaf(leaf, attributes);
  EXPECT_EQ(record.code, code) << attributes;
  EXPECT_EQ(record.item_name, item) << attributes;
}

TEST(Attributes, AreReadIntoTheirMembers) {
  c_CT_Leaf leaf;
  EXPECT_EQ(read_leaf(leaf, "spans=' 1:2  3:4 ' r:id='rId1' id=' 7 ' name=' a  &lt; ' state='hidden' version='1'").code,
            0);
  EXPECT_EQ(leaf.f.name, " a  < ");
  EXPECT_EQ(leaf.f.id, 7U);
  EXPECT_EQ(leaf.f.state, "hidden");
  EXPECT_EQ(leaf.f.r_id, "rId1");
  EXPECT_EQ(leaf.f.spans, (std::vector<std::string>{"1:2", "3:4"}));
  EXPECT_EQ(leaf.f.present[0], 0x3FU);
}

TEST(Attributes, AbsentOnesKeepTheirDefaultAndAreNotPresent) {
  c_CT_Leaf leaf;
  EXPECT_EQ(read_leaf(leaf, "name='a' id='1'").code, 0);
  EXPECT_EQ(leaf.f.state, "visible");
  EXPECT_EQ(leaf.f.present[0], 3U);
}

TEST(Attributes, TwiceIsAnError) {
  expect_leaf_failure("name='a' name='b' id='1'", ELMX_ATTRIBUTE_ALREADY_READ, "@name");
  expect_leaf_failure("name='a' id='1' r:id='' r:id=''", ELMX_ATTRIBUTE_ALREADY_READ, "@r:id");
  expect_leaf_failure("name='a' id='1' version='1' id='2'", ELMX_ATTRIBUTE_ALREADY_READ, "@id");
}

TEST(Attributes, AreReadInAnyOrder) {
  c_CT_Leaf leaf;
  EXPECT_EQ(read_leaf(leaf, "version='1' state='hidden' r:id='rId2' id='8' foreign='x' name='b'").code, 0);
  EXPECT_EQ(leaf.f.name, "b");
  EXPECT_EQ(leaf.f.id, 8U);
  EXPECT_EQ(leaf.f.r_id, "rId2");
  EXPECT_EQ(leaf.f.present[0], 0x2FU);
}

TEST(Attributes, RequiredOnesThatMissNameTheClass) {
  expect_leaf_failure("name='a'", ELMX_REQUIRED_ATTRIBUTES_MISSING, "CT_Leaf");
  expect_leaf_failure("r:name='a' id='1'", ELMX_REQUIRED_ATTRIBUTES_MISSING, "CT_Leaf");
}

TEST(Attributes, BadValuesNameTheAttribute) {
  expect_leaf_failure("name='a' id='x'", ELMX_INVALID_VALUE_FORMAT, "@id");
  expect_leaf_failure("name='a' id='4294967296'", ELMX_VALUE_GREATER_THAN_MAX, "@id");
  expect_leaf_failure("name='a' id='-1'", ELMX_VALUE_LESS_THAN_MIN, "@id");
  expect_leaf_failure("name='a' id='1' state='Visible'", ELMX_VALUE_NOT_IN_ENUMERATION, "@state");
  expect_leaf_failure("name='a' id='1' version='2'", ELMX_FIXED_VALUE_MISMATCH, "@version");
  expect_leaf_failure("name='&foo;' id='1'", ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, "@name");
}

TEST(Attributes, ReportsTellWhere) {
  c_CT_Leaf leaf;
  const c_error_record record = read_leaf(leaf, "\n\nid='1' name='a' name='b'");
  EXPECT_EQ(record.message(),
            "Error: Attribute has already been read\nItem: @name\nProgram file: source/ooxml/sample\nProgram line: 11\n"
            "XML line: 3\n");
}

TEST(Attributes, UnknownOnesAreDroppedUnlessTheClassKeepsThem) {
  c_CT_Root object;
  EXPECT_EQ(read(object, kRoot,
                 "<root xmlns='urn:main' foo='1' xmlns:q='urn:q' q:on='x' on='0'><title/><a name='' id='0' "
                 "q:z='&amp;'/></root>")
                .code,
            0);
  EXPECT_FALSE(object.f.on);
  EXPECT_EQ(object.f.a.as<c_CT_Leaf>()->f.any.attributes,
            (std::vector<std::pair<std::string, std::string>>{{"q:z", "&"}}));
  expect_leaf_failure("name='' id='1' q='&foo;'", ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, "@q");
}

TEST(Attributes, SchemaInstanceOnesHaveNoEffect) {
  c_CT_Root object;
  EXPECT_EQ(read(object, kRoot,
                 "<root xmlns='urn:main' xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:type='x' i:nil='true' "
                 "i:schemaLocation='a b' i:noNamespaceSchemaLocation='c'><title i:nil='true'/><b/><c/></root>")
                .code,
            0);
}

TEST(Body, EveryKindOfParticleIsRead) {
  c_CT_Root object;
  const c_error_record record = read_root(
      object,
      "<head name='h' id='1'/><title> t </title><count>1</count><count> 2 </count><item name='i' id='2'/>"
      "<item name='j' id='3'></item><b>B</b><c>C</c><x>1</x><y name='y' id='4'/><x>2</x><f si='3'>A1+1</f><n> 2.5 </n>"
      "<extLst><e/><p:e xmlns:p='urn:p'>x</p:e></extLst>");
  EXPECT_EQ(record.code, 0) << record.message();
  EXPECT_EQ(object.f.head.as<c_CT_Leaf>()->f.name, "h");
  EXPECT_EQ(object.f.title, " t ");
  EXPECT_EQ(object.f.counts, (std::vector<std::int32_t>{1, 2}));
  ASSERT_EQ(object.f.items.size(), 2U);
  EXPECT_EQ(object.f.items[1].as<c_CT_Leaf>()->f.id, 3U);
  EXPECT_FALSE(object.f.a);
  EXPECT_EQ(object.f.b + object.f.c, "BC");
  ASSERT_EQ(object.f.steps.size(), 3U);
  EXPECT_EQ(object.f.steps[0].as<c_Step>()->f.x, 1);
  EXPECT_EQ(object.f.steps[1].as<c_Step>()->f.y.as<c_CT_Leaf>()->f.id, 4U);
  EXPECT_EQ(object.f.formula.as<c_CT_Formula>()->f.text, "A1+1");
  EXPECT_EQ(object.f.formula.as<c_CT_Formula>()->f.si, 3U);
  EXPECT_EQ(object.f.number.as<c_CT_Number>()->f.value, 2.5);
  const auto& any = object.f.extensions.as<c_CT_ExtensionList>()->f.group.as<c_EG_Extensions>()->f.any;
  ASSERT_EQ(any.size(), 2U);
  EXPECT_EQ(any[0].text, "<e xmlns=\"urn:main\"/>");
  EXPECT_EQ(any[1].text, "<p:e xmlns:p='urn:p'>x</p:e>");
}

TEST(Body, MandatoryElements) {
  expect_failure("", ELMX_MANDATORY_ELEMENT_MISSING, "title");
  expect_failure("<b/><c/>", ELMX_MANDATORY_ELEMENT_MISSING, "title");
  expect_failure("<title/><b/>", ELMX_MANDATORY_ELEMENT_MISSING, "c");
  expect_failure("<foreign/><title/><a name='' id='1'/>", ELMX_MANDATORY_ELEMENT_MISSING, "title");
  expect_failure("text<title/><a name='' id='1'/>", ELMX_MANDATORY_ELEMENT_MISSING, "title");
  c_CT_Root object;
  EXPECT_EQ(read(object, kRoot, "<root xmlns='urn:main'/>").code, ELMX_MANDATORY_ELEMENT_MISSING);
}

TEST(Body, ChoicesTakeOneBranch) {
  expect_failure("<title/>", ELMX_BAD_CHOICE, "root");
  expect_failure("<title/><c/>", ELMX_BAD_CHOICE, "root");
  expect_failure("<title/><foreign/>", ELMX_BAD_CHOICE, "root");
}

TEST(Body, MaxOccursIsALimit) {
  expect_failure("<title/><count>1</count><count>1</count><count>1</count><count>1</count>", ELMX_MAX_OCCURS_EXCEEDED,
                 "count");
  const std::string item = "<item name='' id='1'/>";
  expect_failure("<title/>" + item + item + item + item + item, ELMX_MAX_OCCURS_EXCEEDED, "item");
  expect_failure("<title/><b/><c/><x>1</x><x>1</x><x>1</x><x>1</x><x>1</x><x>1</x>", ELMX_MAX_OCCURS_EXCEEDED,
                 "CT_Root");
}

TEST(Body, ForeignElementsBehindTheLastMemberArePassedOver) {
  c_CT_Root object;
  EXPECT_EQ(read_root(object, "<title/><b/><c/><n>1</n><foreign a='1'>x<title/></foreign>text<z/>").code, 0);
  c_CT_Root repeated;
  EXPECT_EQ(read_root(repeated, "<title/><b/><c/><n>1</n><title>again</title><head/>").code, 0)
      << "known elements out of their order too";
  EXPECT_EQ(repeated.f.title, "");
  EXPECT_FALSE(repeated.f.head);
}

TEST(Body, AForeignElementBeforeAMemberStopsReading) {
  expect_failure("<title/><b/><c/><foreign/><n>1</n>", ELMX_BAD_END_OF_ELEMENT, "root");
  expect_failure("<title/><b/><c/><x>1</x><foreign/><x>1</x>", ELMX_BAD_END_OF_ELEMENT, "root");
  expect_failure("<title/><b/><c/>text<f/>", ELMX_BAD_END_OF_ELEMENT, "root");
}

TEST(Body, EndTagsMustMatch) {
  c_CT_Root object;
  EXPECT_EQ(read(object, kRoot, kOpen + "<title/><b/><c/></toor>").code, ELMX_BAD_END_OF_ELEMENT);
  expect_failure("<title></titel><b/><c/>", ELMX_BAD_END_OF_ELEMENT, "title");
  expect_failure("<title/><a name='' id='1'></b>", ELMX_BAD_END_OF_ELEMENT, "a");
  expect_failure("<title/><a name='' id='1'></aa>", ELMX_BAD_END_OF_ELEMENT, "a");
  expect_failure("<title></titl><b/><c/>", ELMX_BAD_END_OF_ELEMENT, "title");
  expect_failure("<title></title/><b/><c/>", ELMX_NOT_WELL_FORMED, "title");
  EXPECT_EQ(read_root(object, "<title></title\n><b> </b ><c/>").code, ELMX_OK);
  expect_failure("<title/><b/><c/><f></g>", ELMX_BAD_END_OF_ELEMENT, "f");
  expect_failure("<title/><b/><c/><foreign></other>", ELMX_NOT_WELL_FORMED, "root");
}

TEST(Body, SimpleElementsHoldNoElements) {
  expect_failure("<title>x<y/></title><b/><c/>", ELMX_BAD_END_OF_ELEMENT, "title");
  expect_failure("<title/><b/><c/><f>x<y/></f>", ELMX_BAD_END_OF_ELEMENT, "f");
}

TEST(Body, BadValuesNameTheElement) {
  expect_failure("<title/><count>x</count>", ELMX_INVALID_VALUE_FORMAT, "count");
  expect_failure("<title/><count/>", ELMX_INVALID_VALUE_FORMAT, "count");
  expect_failure("<title>&foo;</title>", ELMX_UNABLE_TO_READ_ELEMENT_VALUE, "title");
  expect_failure("<title/><b/><c/><f>&foo;</f>", ELMX_UNABLE_TO_READ_ELEMENT_VALUE, "f");
  expect_failure("<title/><b/><c/><n>x</n>", ELMX_INVALID_VALUE_FORMAT, "n");
  expect_failure("<title/><b/><c/><n/>", ELMX_INVALID_VALUE_FORMAT, "n");
  expect_failure("<title/><b/><c/><extLst><e>&foo;</e></extLst>", ELMX_UNABLE_TO_READ_ELEMENT_VALUE, "extLst");
}

TEST(Body, AnEmptyTagHasNoTextButAnEmptyElementHas) {
  c_CT_Formula formula;
  EXPECT_EQ(read(formula, kFormulaRoot, "<f xmlns='urn:main'/>").code, 0);
  EXPECT_EQ(formula.f.present[0], 0U);
  EXPECT_EQ(read(formula, kFormulaRoot, "<f xmlns='urn:main'></f>").code, 0);
  EXPECT_EQ(formula.f.present[0], 1U);
}

TEST(Body, MixedContentPassesOverText) {
  c_CT_Mixed mixed;
  EXPECT_EQ(read(mixed, kMixedRoot, "<mixed xmlns='urn:main'>a<w>1</w>b<w>2</w>c</mixed>").code, 0);
  EXPECT_EQ(mixed.f.words, (std::vector<std::string>{"1", "2"}));
  c_CT_Mixed few;
  EXPECT_EQ(read(few, kMixedRoot, "<mixed xmlns='urn:main'><w/></mixed>").code, ELMX_MANDATORY_ELEMENT_MISSING);
  c_CT_Mixed foreign;
  const c_error_record record = read(foreign, kMixedRoot, "<mixed xmlns='urn:main'><w/><w/><z/></mixed>");
  EXPECT_EQ(record.code, ELMX_UNKNOWN_ELEMENT_IN_COMPLEX_CONTENT);
  EXPECT_EQ(record.item_name, "z");
}

TEST(Roots, MustHaveTheirNamespaceAndName) {
  c_CT_Root object;
  for (const std::string document : {"<root/>", "<root xmlns='urn:r'/>", "<toor xmlns='urn:main'/>",
                                     "<p:root xmlns='urn:main'/>", "x</root>", "</root>"}) {
    const std::string padded = " " + document;
    EXPECT_EQ(read(object, kRoot, padded).code, ELMX_ELEMENT_NOT_FOUND) << document;
  }
  EXPECT_EQ(read(object, kRoot, "<p:root xmlns:p='urn:main'><p:title/><p:b/><p:c/></p:root>").code, 0);
}

TEST(Roots, EmptyAndBrokenDocuments) {
  c_CT_Root object;
  EXPECT_EQ(read(object, kRoot, "").code, ELMX_UNEXPECTED_END);
  EXPECT_EQ(read(object, kRoot, "x").code, ELMX_ENCODING_NOT_SUPPORTED);
  EXPECT_EQ(read(object, kRoot, "<?xml version='1.0' encoding='UTF-16'?><root/>").code, ELMX_ENCODING_MISMATCH);
  EXPECT_EQ(read(object, kRoot, "<root x=1").code, ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(unmarshal_root(object, kRoot, nullptr, 0), ELMX_UNEXPECTED_END);
}

TEST(Roots, EveryTruncationEndsInAMessage) {
  const std::string document =
      kOpen +
      "<title>x</title><count>1</count><item name='a' id='1'/><b>&amp;</b><c>C</c><x>1</x><f si='1'>A</f>"
      "<extLst><e a='1'>t<!-- --><g/></e></extLst></root>";
  for (std::size_t length = 0; length < document.size(); ++length) {
    c_CT_Root object;
    const c_error_record record = read(object, kRoot, document.substr(0, length));
    EXPECT_NE(record.code, 0) << length;
    EXPECT_STRNE(get_error_text(record.code), "");
  }
  c_CT_Root object;
  EXPECT_EQ(read(object, kRoot, document).code, 0);
}

TEST(Roots, DepthBeyondTheBoundIsAMessage) {
  std::string document = kOpen + "<title/><b/><c/>";
  for (std::size_t i = 0; i < 2 * kMaxElementDepth; ++i) document += "<z>";
  c_CT_Root object;
  EXPECT_EQ(read(object, kRoot, document).code, ELMX_XML_BADLY_FORMED);
}

TEST(Roots, ReadFromAFile) {
  const std::string path = (std::filesystem::temp_directory_path() / "lmx_root.xml").string();
  std::ofstream(path, std::ios::binary) << kOpen << "<title>x</title><b/><c/></root>";
  c_CT_Root object;
  c_error_record record;
  EXPECT_EQ(unmarshal_root_file(object, kRoot, path.c_str(), &record), 0);
  EXPECT_EQ(object.f.title, "x");
  std::filesystem::remove(path);
  EXPECT_EQ(unmarshal_root_file(object, kRoot, path.c_str(), &record), ELMX_UNABLE_TO_OPEN_FILE);
  EXPECT_EQ(record.item_name, path);
  EXPECT_EQ(record.program_file, "source/ooxml/sample");
}

class forgiving_reader : public c_xml_reader {
 public:
  explicit forgiving_reader(c_read_memory& memory) : c_xml_reader(memory, &memory) {}
  elmx_error handle_error(elmx_error code, std::string_view item, const char*, int) override {
    seen.emplace_back(code, item);
    return ELMX_OK;
  }
  std::vector<std::pair<int, std::string>> seen;
};

TEST(Handlers, MayGoOnInSpiteOfErrors) {
  const std::string document = kOpen +
                               "<head name='a' name='b' state='x' "
                               "version='3'/><title>t<z/></title><count>x</count><count>2</count><count>3</count>"
                               "<count>4</count><zz/></toor>";
  c_read_memory memory(document.data(), document.size());
  forgiving_reader reader(memory);
  c_CT_Root object;
  EXPECT_EQ(unmarshal_root(object, kRoot, reader), 0);
  const std::vector<std::pair<int, std::string>> wanted{{3, "@name"},    {38, "@state"}, {43, "@version"},
                                                        {25, "CT_Leaf"}, {10, "title"},  {35, "count"},
                                                        {26, "count"},   {7, "root"},    {10, "root"}};
  EXPECT_EQ(reader.seen, wanted);
  EXPECT_EQ(object.f.head.as<c_CT_Leaf>()->f.name, "a");
}

TEST(Handlers, CannotGoOnBeyondTheEnd) {
  for (const std::string& document :
       {kOpen, kOpen + "<title>", kOpen + "<title>&foo;", kOpen + "<title x", std::string(), std::string("<z/>")}) {
    c_read_memory memory(document.data(), document.size());
    forgiving_reader reader(memory);
    c_CT_Root object;
    EXPECT_NE(unmarshal_root(object, kRoot, reader), 0) << document;
  }
}

class renaming_reader : public c_xml_reader {
 public:
  explicit renaming_reader(c_read_memory& memory) : c_xml_reader(memory, &memory) {}
  elmx_error handle_error_code(elmx_error) override { return ELMX_USER_FIRST; }
};

TEST(Handlers, MayAnswerWithCodesOfTheirOwn) {
  const std::string document = "<z/>";
  c_read_memory memory(document.data(), document.size());
  renaming_reader reader(memory);
  c_CT_Root object;
  EXPECT_EQ(unmarshal_root(object, kRoot, reader), ELMX_USER_FIRST);
}

TEST(Hooks, TakeTheDriversPlace) {
  c_CT_Packed packed;
  EXPECT_EQ(read(packed, kPackedRoot, "<packed xmlns='urn:main' x='1'>text</packed>").code, 0);
  EXPECT_EQ(packed.text, "text");
  std::string text;
  EXPECT_EQ(marshal_root(packed, kPackedRoot, text), 0);
  EXPECT_EQ(text,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><packed xmlns:r=\"urn:r\" xmlns=\"urn:main\">text</packed>");
  c_CT_Packed other(packed);
  EXPECT_TRUE(equal(packed, other));
  other.text = "";
  EXPECT_FALSE(equal(packed, other));
  std::string item;
  EXPECT_EQ(check(other, item), ELMX_TYPE_NOT_SET);
  EXPECT_EQ(check(packed, item), ELMX_OK);
}

}  // namespace
}  // namespace rubrica::lmx
