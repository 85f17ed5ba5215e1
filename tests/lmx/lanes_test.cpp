// The fast lane and the character layers give the same events, values, lines and errors.
#include <gtest/gtest.h>

#include "tests/lmx/event_trace.h"

namespace rubrica::lmx {
namespace {

constexpr unsigned kPolicies = 16;

void expect_equal_lanes(std::string_view document) {
  for (unsigned policy = 0; policy < kPolicies; ++policy) {
    const std::string layers = trace_memory(document, policy, false);
    const std::string fast = trace_memory(document, policy, true);
    ASSERT_EQ(fast, layers) << "policy " << policy << " of\n" << document;
  }
}

const std::string& rich_document() {
  static const std::string document =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!DOCTYPE r [<!ENTITY e 'x<y/>&amp;'>]>\r\n"
      "<r xmlns='urn:d' xmlns:p=\"urn:p\">\n\n<row r='1' spans=' 1  2 '><c r=\"A1\" t='s'><v>17</v></c><c><v> 4&#46;5 "
      "</v>"
      "</c>\r\n</row><p:a q:b='&lt;&foo;' c='\xC3\xA4\xE2\x82\xAC'/><t xml:space='preserve'> \xC2\x85 x \r y </t>"
      "<u>&e;</u><![CDATA[ a]]b]]>tail &#x41; <!-- c --->\n<?p i?><v w='1\r\n2' "
      "/>\n<\xC3\xA4>\xF0\x9F\x98\x80</\xC3\xA4>"
      "<w a = '1' b='2'c='3'/ ></r>\n<!-- end -->";
  return document;
}

TEST(Lanes, AgreeOnARichDocument) {
  expect_equal_lanes(rich_document());
  const std::string trace = trace_memory(rich_document(), 2, true);
  EXPECT_NE(trace.find("start w:"), std::string::npos) << "the document is read to its end\n" << trace;
}

TEST(Lanes, AgreeOnEveryTruncation) {
  const std::string& document = rich_document();
  for (std::size_t length = 0; length <= document.size(); ++length) {
    const std::string cut = document.substr(0, length);
    for (unsigned policy = 0; policy < 4; ++policy) {
      ASSERT_EQ(trace_memory(cut, policy, true), trace_memory(cut, policy, false)) << length;
    }
  }
}

TEST(Lanes, AgreeOnEveryByteReplaced) {
  const std::string& document = rich_document();
  for (std::size_t at = 0; at < document.size(); ++at) {
    for (const char c : {'<', '>', '&', '/', '\'', ' ', '\r', '\n', '\0', 'x', '\x85', '\xED', '!', '?', ']', ';'}) {
      std::string changed = document;
      changed[at] = c;
      ASSERT_EQ(trace_memory(changed, 3, true), trace_memory(changed, 3, false)) << at << " " << int(c);
    }
  }
}

// The lane looks at sixteen bytes in a step: whatever stops it may stand at any place of such a step.
TEST(Lanes, AgreeWhereverSomethingStandsInALongRun) {
  for (const std::string found :
       {"<", ">", "&", "&amp;", "&#66;", "&x;", "'", "\"", " ", "\t", "\n", "\r",       "\r\n",     "=",
        "/", "-", ".", ":",     "_",     ",",   "@", "[",  "`", "{",  ";",  "\xC3\xA4", "\xC2\x85", "\x80"}) {
    for (std::size_t before = 0; before <= 34; ++before) {
      const std::string run = std::string(before, 'x') + found + std::string(before % 3 == 0 ? 20 : 0, 'y');
      for (const std::string& document : {"<a>" + run + "</a>", "<a b=\"" + run + "\" c='1'/>", "<a b='" + run + "'/>",
                                          "<a" + run + "/>", "<a " + run + "='1'></a>", "<a></a" + run + ">"}) {
        for (const unsigned policy : {1U, 2U}) {
          ASSERT_EQ(trace_memory(document, policy, true), trace_memory(document, policy, false)) << document;
        }
      }
    }
  }
}

TEST(Lanes, AgreeWhereRareThingsStandBesideTags) {
  for (const std::string rare : {"\r",
                                 "\r\n",
                                 "\n\r",
                                 "\xC2\x85",
                                 "\xE2\x80\xA8",
                                 "\xED\xA0\xBD\xED\xB8\x80",
                                 "\xED\xA0",
                                 "\xC2",
                                 "&amp;",
                                 "&#10;",
                                 "&x;",
                                 "<!---->",
                                 "<?p?>",
                                 "<![CDATA[]]>",
                                 "\x7F",
                                 "\x01",
                                 "\xF4\x8F\xBF\xBF",
                                 "]]>",
                                 ">",
                                 "=",
                                 "'"}) {
    for (const std::string frame :
         {"<r>|</r>", "<r><a>|</a></r>", "<r>x|<a/>|y</r>", "<r|></r|>", "<r a|='1'/>", "<r a='|'/>", "<r a=\"|\"|/>",
          "<r><|a/></r>", "<r><a|b/></r>", "<r>\n|\n<a/>\n|\n</r>", "<r/|>", "<r> | </r>", "<r>|"}) {
      std::string document;
      for (const char c : frame) {
        if (c == '|') {
          document += rare;
        } else {
          document += c;
        }
      }
      expect_equal_lanes(document);
    }
  }
}

TEST(Lanes, AgreeOnOtherEncodings) {
  expect_equal_lanes("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4<b>\x85</b></a>");
  std::string wide = "\xFF\xFE";
  for (const char c : std::string_view("<a><b c='1'>x</b></a>")) wide += {c, '\0'};
  expect_equal_lanes(wide);
  expect_equal_lanes("\xEF\xBB\xBF<a><b>x</b></a>");
}

}  // namespace
}  // namespace rubrica::lmx
