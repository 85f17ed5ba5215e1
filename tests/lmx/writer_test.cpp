#include <limits>
#include <locale>
#include <sstream>

#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "lmx/c_xml_writer.h"

namespace rubrica::lmx {
namespace {

constexpr namespace_row kTable[] = {{1000, "r", "urn:r"}, {1001, "", "urn:main"}, {}};
constexpr namespace_row kOther[] = {{1000, "", "urn:other"}, {}};

// Writes one element "a" with what `fill` adds, without a declaration.
template <class Fill>
std::string element(Fill fill, const writer_layout& strings = {}) {
  std::string text;
  c_xml_writer writer(text, c_xml_writer::kNoDeclaration, strings);
  c_xml_writer::frame frame(writer);
  writer.start_element("a");
  fill(writer);
  writer.end_element("a");
  return text;
}

template <class Fill>
void child(c_xml_writer& writer, const char* name, Fill fill) {
  c_xml_writer::frame frame(writer);
  writer.start_element(name);
  fill(writer);
  writer.end_element(name);
}

std::string attribute(std::string_view value) {
  const std::string text = element([&](c_xml_writer& writer) { writer.write_attribute("x", value); });
  return text.substr(6, text.size() - 9);
}

TEST(Writer, DeclarationByFlags) {
  const auto declaration = [](unsigned flags) {
    std::string text;
    c_xml_writer writer(text, flags);
    return text;
  };
  EXPECT_EQ(declaration(0), "");
  EXPECT_EQ(declaration(1), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_EQ(declaration(2), "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>");
}

TEST(Writer, EndsOfElements) {
  EXPECT_EQ(element([](c_xml_writer&) {}), "<a/>");
  EXPECT_EQ(element([](c_xml_writer& w) { w.write_attribute("x", 1); }), "<a x=\"1\"/>");
  EXPECT_EQ(element([](c_xml_writer& w) { w.write_element_body(""); }), "<a></a>");
  EXPECT_EQ(element([](c_xml_writer& w) { w.write_element_body("t"); }), "<a>t</a>");
  EXPECT_EQ(element([](c_xml_writer& w) { child(w, "b", [](c_xml_writer&) {}); }), "<a><b/></a>");
}

TEST(Writer, NamesOfAnyLengthAreWhole) {
  for (std::size_t length = 1; length < 140; ++length) {
    const std::string name(length, 'n');
    EXPECT_EQ(element([&](c_xml_writer& w) {
                w.write_attribute(name.c_str(), 1);
                child(w, name.c_str(), [](c_xml_writer& inner) { inner.write_element_body("t"); });
              }),
              "<a " + name + "=\"1\"><" + name + ">t</" + name + "></a>");
  }
}

TEST(Writer, EscapesByItsTable) {
  EXPECT_EQ(attribute("\"'&<"), "&quot;&apos;&amp;&lt;");
  EXPECT_EQ(attribute("]]>"), "]]&gt;");
  EXPECT_EQ(attribute("x]>"), "x]&gt;") << "one bracket is enough from index 2 on";
  EXPECT_EQ(attribute(">"), ">");
  EXPECT_EQ(attribute("]>"), "]>");
  EXPECT_EQ(attribute("x>>"), "x>>");
  EXPECT_EQ(attribute("\x01\t\n\r\x7F"), "\x01\t\n\r\x7F");
  EXPECT_EQ(attribute("\xC3\xA4\xFF"), "\xC3\xA4\xFF") << "narrow text goes out byte by byte";
  EXPECT_EQ(element([](c_xml_writer& w) { w.write_element_body("a\"b'c&d<e]]>"); }),
            "<a>a&quot;b&apos;c&amp;d&lt;e]]&gt;</a>");
}

TEST(Writer, WideTextBecomesUtf8) {
  const auto wide = [](std::u16string_view text) {
    return element([&](c_xml_writer& w) { w.write_attribute("x", text); });
  };
  EXPECT_EQ(wide(u"\"'&<]]>>\u00E4\u20AC\U0001F600"),
            "<a x=\"&quot;&apos;&amp;&lt;]]&gt;>\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"/>");
  EXPECT_EQ(wide(u"]>"), "<a x=\"]>\"/>");
  EXPECT_EQ(wide(std::u16string{u'x', 0xD83D}), "<a x=\"x\"/>");
  EXPECT_EQ(wide(std::u16string{u'x', 0xD83D, u'y'}), "<a x=\"x\"/>") << "the rest is dropped";
  EXPECT_EQ(wide(std::u16string{u'x', 0xDE00, u'y'}), "<a x=\"x\xED\xB8\x80y\"/>");
  EXPECT_EQ(element([](c_xml_writer& w) { w.write_element_body(u"\u00E4"); }), "<a>\xC3\xA4</a>");
}

TEST(Writer, AControlCharacterIsSeenBack) {
  const std::string text = element([](c_xml_writer& w) { w.write_element_body("\x01"); });
  c_xml_reader_memory reader(text.data(), text.size());
  reader.get_element_event();
  reader.get_attribute_event();
  std::string_view value;
  EXPECT_TRUE(reader.get_simple_type_value(value, white_space::keep));
  EXPECT_EQ(value, "\x01");
}

TEST(Writer, NumbersAndBooleans) {
  const std::string text = element([](c_xml_writer& w) {
    w.write_attribute("a", true);
    w.write_attribute("b", false);
    w.write_attribute("c", std::numeric_limits<std::int64_t>::min());
    w.write_attribute("d", std::numeric_limits<std::uint64_t>::max());
    w.write_attribute("e", -0.0);
    w.write_attribute("f", 1E+100);
    w.write_attribute("g", static_cast<signed char>(-5));
    w.write_attribute("h", static_cast<unsigned char>(200));
  });
  EXPECT_EQ(text,
            "<a a=\"true\" b=\"false\" c=\"-9223372036854775808\" d=\"18446744073709551615\" e=\"-0.0\" f=\"1e+100\" "
            "g=\"-5\" h=\"200\"/>");
  EXPECT_EQ(element([](c_xml_writer& w) { w.write_element_body(2.5); }), "<a>2.5</a>");
  EXPECT_EQ(element([](c_xml_writer& w) { w.write_element_body(7); }), "<a>7</a>");
}

TEST(Writer, MembersThatAreNotSetAreNotWritten) {
  const simple_type number{.kind = value_kind::uint32};
  const std::uint32_t value = 3;
  const std::vector<std::uint32_t> list{1, 2, 3};
  EXPECT_EQ(element([&](c_xml_writer& w) {
              w.write_attribute("x", number, &value, false);
              w.write_list_attribute("y", number, &list, false);
            }),
            "<a/>");
  EXPECT_EQ(element([&](c_xml_writer& w) {
              w.write_attribute("x", number, &value, true);
              w.write_list_attribute("y", number, &list, true);
            }),
            "<a x=\"3\" y=\"1 2 3\"/>");
}

TEST(Writer, SimpleElementsOneAnItem) {
  const simple_type number{.kind = value_kind::uint32};
  const std::vector<std::uint32_t> list{1, 2};
  EXPECT_EQ(element([&](c_xml_writer& w) { w.write_simple_elements("n", number, &list); }), "<a><n>1</n><n>2</n></a>");
  const std::vector<std::string> texts{"", "x"};
  EXPECT_EQ(element([&](c_xml_writer& w) { w.write_simple_elements("n", {}, &texts, kTable); }),
            "<a><n xmlns:r=\"urn:r\" xmlns=\"urn:main\"></n><n>x</n></a>");
}

TEST(Writer, TheFirstTableOfNamespacesStands) {
  EXPECT_EQ(element([](c_xml_writer& w) {
              w.set_namespaces(kTable);
              w.set_namespaces(kOther);
              w.write_namespaces(false);
              w.write_attribute("x", 1);
              child(w, "b", [](c_xml_writer& inner) {
                inner.set_namespaces(kOther);
                inner.write_namespaces(true);
              });
            }),
            "<a xmlns:r=\"urn:r\" xmlns=\"urn:main\" x=\"1\"><b/></a>");
}

TEST(Writer, ExtraNamespacesAndSchemaLocations) {
  EXPECT_EQ(element([](c_xml_writer& w) {
              w.add_namespace("p", "urn:p");
              w.write_namespaces(true);
            }),
            "<a xmlns:p=\"urn:p\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"/>");
  EXPECT_EQ(
      element([](c_xml_writer& w) {
        w.add_schema_location("urn:a", "a.xsd");
        w.add_schema_location("urn:b", "b.xsd");
        w.write_namespaces(false);
      }),
      "<a xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:schemaLocation=\"urn:a a.xsd urn:b b.xsd\"/>");
  EXPECT_EQ(element([](c_xml_writer& w) {
              w.add_schema_location("", "a.xsd");
              w.write_namespaces(false);
            }),
            "<a xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:noNamespaceSchemaLocation=\"a.xsd\"/>");
}

TEST(Writer, LaysOutWhenAsked) {
  const auto fill = [](c_xml_writer& w) {
    w.write_attribute("x", 1);
    w.write_attribute("y", 2);
    child(w, "b", [](c_xml_writer& inner) { inner.write_element_body("t"); });
    child(w, "c", [](c_xml_writer& inner) { child(inner, "d", [](c_xml_writer&) {}); });
    w.write_any_text({"", "e", "<e>raw</e>", {}});
  };
  EXPECT_EQ(element(fill, {" ", "\n", "", ""}),
            "<a x=\"1\" y=\"2\">\n <b>t</b>\n <c>\n  <d/>\n </c>\n <e>raw</e>\n</a>\n");
  EXPECT_EQ(element(
                [](c_xml_writer& w) {
                  w.write_attribute("x", 1);
                  w.write_attribute("y", 2);
                },
                {" ", "\n", nullptr, nullptr}),
            "<a x=\"1\"\n  y=\"2\"/>\n");
  EXPECT_EQ(element(
                [](c_xml_writer& w) {
                  w.write_attribute("x", 1);
                  w.write_attribute("y", 2);
                },
                {nullptr, nullptr, "\t", nullptr}),
            "<a x=\"1\"\ty=\"2\"/>");
}

TEST(Writer, CapturedTextGoesOutAsItStands) {
  EXPECT_EQ(element([](c_xml_writer& w) {
              w.write_any_text({"", "e", "<e a='&quot;'><!-- --></e>", {}});
            }),
            "<a><e a='&quot;'><!-- --></e></a>");
}

struct comma : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Writer, AStreamGetsTheClassicLocaleAndEverythingAtTheEnd) {
  std::ostringstream stream;
  stream.imbue(std::locale(std::locale::classic(), new comma));
  c_xml_writer writer(stream);
  EXPECT_EQ(stream.str(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_EQ(stream.getloc(), std::locale::classic());
  c_xml_writer::frame frame(writer);
  writer.start_element("a");
  for (int i = 0; i < 20000; ++i) {
    child(writer, "b", [&](c_xml_writer& w) { w.write_attribute("x", 1234567 + i); });
  }
  EXPECT_GT(stream.str().size(), 100000U) << "long documents are not held back";
  EXPECT_EQ(writer.depth(), 1);
  writer.end_element("a");
  EXPECT_EQ(stream.str().substr(stream.str().size() - 20), "<b x=\"1254566\"/></a>") << "no grouping";
}

TEST(Writer, ErrorsHaveNoXmlLine) {
  std::string text;
  c_xml_writer writer(text);
  writer.set_program_line(5);
  EXPECT_EQ(writer.report_error(ELMX_OCCURS_ON_MARSHAL, "b"), ELMX_OCCURS_ON_MARSHAL);
  EXPECT_EQ(writer.get_error_message(),
            "Error: min/max occurs error on marshaling\nItem: b\nProgram file: (not set)\nProgram line: 5\n");
}

}  // namespace
}  // namespace rubrica::lmx
