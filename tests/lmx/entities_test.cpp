#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "lmx/limits.h"

namespace rubrica::lmx {
namespace {

struct value_outcome {
  bool read = false;
  std::string text;
  elmx_error code = ELMX_OK;
  std::string message;
};

value_outcome finish(c_xml_reader& reader, bool read, std::string_view text) {
  return {read, std::string(text), reader.errors().last_code(), reader.errors().last_text()};
}

value_outcome text_of(const std::string& document) {
  c_xml_reader_memory reader(document.data(), document.size());
  std::string_view text;
  bool read = reader.get_element_event() == TOKEN_NAME && reader.get_attribute_event() == TOKEN_START_TAG_END;
  read = read && reader.get_simple_type_value(text, white_space::keep);
  return finish(reader, read, text);
}

value_outcome attribute_of(const std::string& document) {
  c_xml_reader_memory reader(document.data(), document.size());
  std::string_view text;
  bool read = reader.get_element_event() == TOKEN_NAME && reader.get_attribute_event() == TOKEN_NAME;
  read = read && reader.get_attribute_value(text, white_space::keep);
  return finish(reader, read, text);
}

std::string with_subset(const std::string& subset, const std::string& rest) {
  return "<!DOCTYPE a [" + subset + "]>" + rest;
}

TEST(Entities, TheFiveBuiltInOnes) {
  EXPECT_EQ(text_of("<a>&lt;&gt;&amp;&apos;&quot;</a>").text, "<>&'\"");
  EXPECT_EQ(attribute_of("<a x='&lt;&gt;&amp;&apos;&quot;'/>").text, "<>&'\"");
}

TEST(Entities, BuiltInOnesBesideOthers) {
  EXPECT_EQ(attribute_of("<a x='a &lt; b &#65; &gt;'/>").text, "a < b A >");
  for (const std::string bad : {"&lt;&foo;", "&lt;&", "&lt;&amp", "&quott;", "&quo;", "&;", "&LT;"}) {
    EXPECT_FALSE(attribute_of("<a x='" + bad + "'/>").read) << bad;
  }
  EXPECT_EQ(attribute_of(with_subset("<!ENTITY lt 'x'><!ENTITY e '&lt;'>", "<a x='&lt;&e;'/>")).text, "<<");
}

TEST(Entities, CharacterReferencesInBothForms) {
  EXPECT_EQ(text_of("<a>&#65;&#x42;&#x6a;&#228;&#x1F600;</a>").text, "ABj\xC3\xA4\xF0\x9F\x98\x80");
  EXPECT_EQ(attribute_of("<a x='&#65;&#x42;'/>").text, "AB");
  EXPECT_EQ(text_of("<a>&#133;&#x2028;</a>").text, "\n\n");
}

TEST(Entities, ACharacterReferenceNeedsNoSemicolon) {
  EXPECT_EQ(text_of("<a>&#65 &#x42z</a>").text, "A Bz");
  EXPECT_EQ(text_of("<a>&#65</a>").text, "A");
  EXPECT_EQ(attribute_of("<a x='&#65'/>").text, "A");
}

TEST(Entities, CharacterReferencesEndAt100000) {
  EXPECT_EQ(text_of("<a>&#x100000;</a>").text, "\xF4\x80\x80\x80");
  EXPECT_EQ(text_of("<a>&#1048576;</a>").text, "\xF4\x80\x80\x80");
  for (const std::string bad : {"&#x100001;", "&#x110000;", "&#1048577;", "&#99999999999999999999;", "&#;", "&#x;",
                                "&#g;", "&#xD800;", "&#xDFFF;"}) {
    EXPECT_FALSE(text_of("<a>" + bad + "</a>").read) << bad;
    EXPECT_FALSE(attribute_of("<a x='" + bad + "'/>").read) << bad;
  }
}

TEST(Entities, AnUnknownNameFailsTheReadAndStaysInTheText) {
  const value_outcome text = text_of("<a>x&foo;y</a>");
  EXPECT_FALSE(text.read);
  EXPECT_EQ(text.text, "x&foo;");
  const value_outcome attribute = attribute_of("<a x='&foo;'/>");
  EXPECT_FALSE(attribute.read);
  EXPECT_EQ(attribute.text, "&foo;");
  EXPECT_FALSE(text_of("<a>&amp</a>").read);
  EXPECT_FALSE(text_of("<a>& b</a>").read);
  EXPECT_FALSE(text_of("<a>&;</a>").read);
}

TEST(Entities, ALaterDefinitionWins) {
  EXPECT_EQ(text_of(with_subset("<!ENTITY a \"1\"><!ENTITY a \"2\">", "<a>&a;</a>")).text, "2");
}

TEST(Entities, ExpandInTextAndAttributesAndInsideEachOther) {
  const std::string subset = "<!ENTITY one 'I'><!ENTITY two '&one;&one;'><!ENTITY c '&#65;&#x42;'>";
  EXPECT_EQ(text_of(with_subset(subset, "<a>&two;-&c;</a>")).text, "II-AB");
  EXPECT_EQ(attribute_of(with_subset(subset, "<a x='&two;-&c;'/>")).text, "II-AB");
}

TEST(Entities, MarkupInAnEntityIsMarkupInText) {
  const std::string document = with_subset("<!ENTITY e '<b>x</b>'>", "<a>&e;</a>");
  c_xml_reader_memory reader(document.data(), document.size());
  ASSERT_EQ(reader.get_element_event(), TOKEN_NAME);
  ASSERT_EQ(reader.get_attribute_event(), TOKEN_START_TAG_END);
  ASSERT_EQ(reader.get_element_event(), TOKEN_TEXT);
  std::string_view text;
  ASSERT_TRUE(reader.get_simple_type_value(text, white_space::keep));
  EXPECT_EQ(text, "");
  ASSERT_EQ(reader.get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader.name(), "b");
}

TEST(Entities, ParameterEntitiesInSubsetAndValues) {
  EXPECT_EQ(text_of(with_subset("<!ENTITY % p \"<!ENTITY e 'x'>\"> %p;", "<a>&e;</a>")).text, "x");
  EXPECT_EQ(text_of(with_subset("<!ENTITY % p 'in'><!ENTITY e 'with%p;'>", "<a>&e;</a>")).text, "within");
}

TEST(Entities, AnUnknownParameterEntityIsNotFound) {
  for (const std::string subset : {"%p;", "<!ENTITY e '%p;'>"}) {
    const value_outcome result = text_of(with_subset(subset, "<a/>"));
    EXPECT_EQ(result.code, ELMX_ENTITY_NOT_FOUND);
    EXPECT_EQ(result.message, "Entity '%p' not found");
  }
}

TEST(Entities, RecursionInTextStops) {
  const value_outcome direct = text_of(with_subset("<!ENTITY e 'x&e;'>", "<a>&e;</a>"));
  EXPECT_FALSE(direct.read);
  EXPECT_EQ(direct.code, ELMX_BAD_DTD);
  EXPECT_EQ(direct.message, "Recursive entity definition for: e");
  const value_outcome indirect = text_of(with_subset("<!ENTITY e '&f;'><!ENTITY f '&e;'>", "<a>&e;</a>"));
  EXPECT_EQ(indirect.code, ELMX_BAD_DTD);
  const value_outcome parameter = text_of(with_subset("<!ENTITY % p '&#37;p;'>%p;", "<a/>"));
  EXPECT_EQ(parameter.message, "Recursive entity definition for: p");
}

TEST(Entities, RecursionInAttributesStops) {
  const value_outcome result = attribute_of(with_subset("<!ENTITY e 'x&e;'>", "<a x='&e;'/>"));
  EXPECT_FALSE(result.read);
  EXPECT_EQ(result.code, ELMX_RECURSIVE_ENTITY);
}

std::string chain(std::size_t length) {
  std::string subset = "<!ENTITY e0 'x'>";
  for (std::size_t i = 1; i < length; ++i) {
    subset += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";.'>";
  }
  return subset;
}

TEST(Entities, DepthIsBounded) {
  const std::string last = "&e" + std::to_string(kMaxEntityDepth - 1) + ";";
  EXPECT_TRUE(text_of(with_subset(chain(kMaxEntityDepth), "<a>" + last + "</a>")).read);
  EXPECT_TRUE(attribute_of(with_subset(chain(kMaxEntityDepth), "<a x='" + last + "'/>")).read);
  const std::string deeper = "&e" + std::to_string(kMaxEntityDepth) + ";";
  const value_outcome text = text_of(with_subset(chain(kMaxEntityDepth + 1), "<a>" + deeper + "</a>"));
  EXPECT_EQ(text.code, ELMX_RECURSIVE_ENTITY);
  EXPECT_EQ(attribute_of(with_subset(chain(kMaxEntityDepth + 1), "<a x='" + deeper + "'/>")).code,
            ELMX_RECURSIVE_ENTITY);
}

std::string doubling(char sigil, int count) {
  std::string subset = sigil == '%' ? "<!ENTITY % e0 'xxxxxxxxxxxxxxxx'>" : "<!ENTITY e0 'xxxxxxxxxxxxxxxx'>";
  for (int i = 1; i < count; ++i) {
    const std::string before = sigil + std::string("e") + std::to_string(i - 1) + ";";
    subset +=
        std::string("<!ENTITY ") + (sigil == '%' ? "% " : "") + "e" + std::to_string(i) + " '" + before + before + "'>";
  }
  return subset;
}

TEST(Entities, TotalExpansionIsBounded) {
  const value_outcome text = text_of(with_subset(doubling('&', 30), "<a>&e29;</a>"));
  EXPECT_FALSE(text.read);
  EXPECT_EQ(text.code, ELMX_XML_BADLY_FORMED);
  EXPECT_EQ(attribute_of(with_subset(doubling('&', 30), "<a x='&e29;'/>")).code, ELMX_XML_BADLY_FORMED);
  EXPECT_EQ(text_of(with_subset(doubling('%', 40), "<a/>")).code, ELMX_XML_BADLY_FORMED);
}

}  // namespace
}  // namespace rubrica::lmx
