#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "tests/lmx/event_trace.h"

namespace rubrica::lmx {
namespace {

using std::string_literals::operator""s;

struct layers_outcome {
  std::string text;  // of the root element, as it stands
  bool read = false;
  elmx_error code = ELMX_OK;
  std::string message;
  int line = 0;
};

layers_outcome read_root(std::string_view document, white_space mode = white_space::keep) {
  c_xml_reader_memory reader(document.data(), document.size());
  layers_outcome result;
  std::string_view text;
  if (reader.get_element_event() == TOKEN_NAME && reader.get_attribute_event() == TOKEN_START_TAG_END) {
    result.read = reader.get_simple_type_value(text, mode) && reader.get_element_event() == TOKEN_ELEMENT_END;
    result.text = text;
  }
  result.code = reader.errors().last_code();
  result.message = reader.errors().last_text();
  result.line = reader.line();
  return result;
}

std::string utf16(std::u16string_view text, bool big, bool mark) {
  std::string bytes = mark ? (big ? "\xFE\xFF"s : "\xFF\xFE"s) : ""s;
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += big ? high : low;
    bytes += big ? low : high;
  }
  return bytes;
}

TEST(Encoding, Utf8WithAndWithoutAMark) {
  EXPECT_EQ(read_root("<a>\xC3\xA4</a>").text, "\xC3\xA4");
  EXPECT_EQ(read_root("\xEF\xBB\xBF<a>x</a>").text, "x");
  EXPECT_EQ(read_root("\n<a>x</a>").text, "x");
  EXPECT_EQ(read_root("<?xml version='1.0' encoding='utf-8'?><a>x</a>").text, "x");
}

TEST(Encoding, Utf16InBothByteOrdersWithAndWithoutAMark) {
  for (const bool big : {false, true}) {
    for (const bool mark : {false, true}) {
      const std::string document =
          utf16(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>\u00E4\u20AC\U0001F600</a>", big, mark);
      const layers_outcome result = read_root(document);
      EXPECT_TRUE(result.read) << big << mark;
      EXPECT_EQ(result.text, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    }
  }
}

TEST(Encoding, Utf8DeclaredInAUtf16FileIsAMismatch) {
  for (const bool big : {false, true}) {
    for (const std::u16string_view name : {u"UTF-8", u"ISO-8859-1", u"us-ascii"}) {
      const layers_outcome result =
          read_root(utf16(u"<?xml version='1.0' encoding='" + std::u16string(name) + u"'?><a>x</a>", big, true));
      EXPECT_FALSE(result.read);
      EXPECT_EQ(result.code, ELMX_ENCODING_MISMATCH);
      EXPECT_EQ(result.message, "Mis-match between specfied encoding and byte format");
    }
  }
}

TEST(Encoding, Utf16DeclaredInAnEightBitFileIsAMismatch) {
  for (const std::string name : {"UTF-16", "ISO-10646-UCS-2"}) {
    EXPECT_EQ(read_root("<?xml version='1.0' encoding='" + name + "'?><a/>").code, ELMX_ENCODING_MISMATCH);
  }
}

TEST(Encoding, AnUnknownNameIsNotSupported) {
  const layers_outcome result = read_root("<?xml version='1.0' encoding='KOI8-R'?><a>x</a>");
  EXPECT_EQ(result.code, ELMX_ENCODING_NOT_SUPPORTED);
  EXPECT_EQ(result.message, "Unknown character encoding specified");
}

TEST(Encoding, Ucs2TakesUnitsOneByOne) {
  for (const bool big : {false, true}) {
    const layers_outcome pair =
        read_root(utf16(u"<?xml version='1.0' encoding='ISO-10646-UCS-2'?><a>\u00E4\U0001F600</a>", big, false));
    EXPECT_TRUE(pair.read);
    EXPECT_EQ(pair.text, "\xC3\xA4\xED\xA0\xBD\xED\xB8\x80");
  }
}

TEST(Encoding, EightBitNamesAreLatin1WithoutACodePage) {
  for (const std::string name : {"ISO-8859-1", "Windows-1252", "windows-1252", "cp-1252", "US-ASCII"}) {
    const std::string document = "<?xml version='1.0' encoding='" + name + "'?><a>\x92\xE4\x7F|\x85|</a>";
    EXPECT_EQ(read_root(document).text, "\xC2\x92\xC3\xA4\x7F|\n|") << name;
  }
}

TEST(Encoding, BytesThatFitNoEncodingAreRefused) {
  for (const std::string& start : {"x<a/>"s, "\xFF\xFE<x"s, "\xFF\xFE\x00\x3C"s, "\xFF<"s, "\xFE\xFF<\0"s,
                                   "\xFE\xFF\0\xC3"s, "\xEF\xBB<"s, "\xEF<"s, "\0x"s, "\0\0"s, "\x80"s}) {
    const layers_outcome result = read_root(start);
    EXPECT_EQ(result.code, ELMX_ENCODING_NOT_SUPPORTED) << start;
    EXPECT_EQ(result.message, "Unrecognised character encoding");
  }
}

TEST(Encoding, MalformedUtf8IsRefused) {
  for (const std::string& bad : {"\x80"s,
                                 "\xBF"s,
                                 "\xC0\x80"s,
                                 "\xC1\xBF"s,
                                 "\xC2\x41"s,
                                 "\xE0\x9F\x80"s,
                                 "\xE0\x80\x80"s,
                                 "\xE1\x41\x80"s,
                                 "\xE1\x80\x41"s,
                                 "\xED\xA0\x80x"s,
                                 "\xED\xB0\x80"s,
                                 "\xED\xA0\x80\xED\xA0\x80"s,
                                 "\xF0\x8F\x80\x80"s,
                                 "\xF1\x80\x80\x41"s,
                                 "\xF4\x90\x80\x80"s,
                                 "\xF5\x80\x80\x80"s,
                                 "\xF8\x88\x80\x80\x80"s,
                                 "\xFC\x84\x80\x80\x80\x80"s,
                                 "\xFE"s,
                                 "\xFF"s}) {
    const layers_outcome result = read_root("<a>" + bad + "</a>");
    EXPECT_FALSE(result.read);
    EXPECT_EQ(result.code, ELMX_ENCODING_NOT_SUPPORTED);
  }
}

TEST(Encoding, WellFormedUtf8AtItsBoundsIsKept) {
  for (const std::string& good : {"\x7F"s, "\xC2\x80"s, "\xDF\xBF"s, "\xE0\xA0\x80"s, "\xED\x9F\xBF"s, "\xEE\x80\x80"s,
                                  "\xEF\xBF\xBF"s, "\xF0\x90\x80\x80"s, "\xF4\x8F\xBF\xBF"s}) {
    EXPECT_EQ(read_root("<a>" + good + "</a>").text, good);
    EXPECT_EQ(read_root("<a>\r" + good + "</a>").text, "\n" + good) << "by the layers";
  }
}

TEST(Encoding, ACesu8PairBecomesOneCharacter) {
  EXPECT_EQ(read_root("<a>\xED\xA0\xBD\xED\xB8\x80</a>").text, "\xF0\x9F\x98\x80");
}

TEST(Encoding, LoneSurrogatesOfUtf16AreRefused) {
  for (const bool big : {false, true}) {
    for (const char16_t unit : {char16_t{0xD800}, char16_t{0xDBFF}, char16_t{0xDC00}, char16_t{0xDFFF}}) {
      const std::u16string text = u"<a>" + std::u16string(1, unit) + u"</a>";
      EXPECT_EQ(read_root(utf16(text, big, true)).code, ELMX_ENCODING_NOT_SUPPORTED);
    }
  }
}

TEST(Encoding, HalfAUnitAtTheEndIsRefused) {
  EXPECT_EQ(read_root(utf16(u"<a>x", false, true) + "y").code, ELMX_ENCODING_NOT_SUPPORTED);
}

TEST(LineEnds, EveryFormBecomesOneLineFeed) {
  EXPECT_EQ(read_root("<a>1\r\n2\r3\n4\n\r5</a>").text, "1\n2\n3\n4\n\n5");
  EXPECT_EQ(read_root("<a>1\xC2\x85"
                      "2\xE2\x80\xA8"
                      "3</a>")
                .text,
            "1\n2\n3");
  EXPECT_EQ(read_root("<a>1\r\xC2\x85"
                      "2\r\xE2\x80\xA8"
                      "3\r\r\n4</a>")
                .text,
            "1\n2\n3\n\n4");
  EXPECT_EQ(read_root(utf16(u"<a>1\u0085"
                            u"2\u2028"
                            u"3\r\n4</a>",
                            true, true))
                .text,
            "1\n2\n3\n4");
}

TEST(LineEnds, EachCountsOneLine) {
  EXPECT_EQ(read_root("<a>\n</a>").line, 2);
  EXPECT_EQ(read_root("<a>\r</a>").line, 2);
  EXPECT_EQ(read_root("<a>\r\n</a>").line, 2);
  EXPECT_EQ(read_root("<a>\n\r</a>").line, 3);
  EXPECT_EQ(read_root("\r\n\r\n<a>\r\n\r\r\n\n</a>").line, 7);
  EXPECT_EQ(read_root("<a>\xC2\x85\xE2\x80\xA8</a>").line, 3);
}

TEST(WhiteSpace, EachModeOnLiteralText) {
  const std::string document = "<a> \t x\n\r\n y \t</a>";
  EXPECT_EQ(read_root(document, white_space::keep).text, " \t x\n\n y \t");
  EXPECT_EQ(read_root(document, white_space::replace).text, "   x   y  ");
  EXPECT_EQ(read_root(document, white_space::collapse).text, "x y");
  EXPECT_EQ(read_root("<a> \n </a>", white_space::collapse).text, "");
  EXPECT_EQ(read_root("<a> x  y\tz </a>", white_space::collapse).text, "x y z");
  EXPECT_EQ(read_root("<a>x y</a>", white_space::collapse).text, "x y");
  EXPECT_EQ(read_root("<a>x\ty</a>", white_space::replace).text, "x y");
}

TEST(WhiteSpace, CharacterReferencesTakePart) {
  EXPECT_EQ(read_root("<a>&#32;x&#9;&#10;y&#x20;</a>", white_space::collapse).text, "x y");
  EXPECT_EQ(read_root("<a>&#9;x</a>", white_space::replace).text, " x");
  EXPECT_EQ(read_root("<a>&#9;x&#13;</a>", white_space::keep).text, "\tx\r");
}

TEST(Source, AFileReadsAsItsBytesDo) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "lmx_source_\xC3\xA4.xml";
  std::string document = "<?xml version=\"1.0\"?>\r\n<a>";
  for (int i = 0; i < 400; ++i)
    document += "<b n='" + std::to_string(i) + "'>\xC3\xA4 &amp; " + std::to_string(i) + "</b>\n";
  document += "</a>";
  std::ofstream(path, std::ios::binary) << document;
  for (unsigned policy = 0; policy < 6; ++policy) {
    c_xml_reader_file reader(std::u16string_view(path.u16string()));
    ASSERT_TRUE(reader.is_open());
    EXPECT_EQ(trace_document(reader, policy), trace_memory(document, policy, true));
  }
  std::filesystem::remove(path);
}

TEST(Source, AnUnopenedFileGivesNoBytes) {
  c_read_file file(std::u16string_view(u"/no/such/file"));
  EXPECT_FALSE(file.is_open());
  EXPECT_EQ(file.get_byte(), -1);
  EXPECT_EQ(file.get_source_id(), "/no/such/file");
  c_read_file directory(std::u16string_view(u"/tmp"));
  EXPECT_FALSE(directory.is_open());
}

TEST(Source, RewindStartsAgainAndABorrowedFileStaysOpen) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "lmx_rewind.xml";
  std::ofstream(path, std::ios::binary) << std::string(600, 'x') + "y";
  std::filebuf borrowed;
  borrowed.open(path, std::ios::in | std::ios::binary);
  {
    c_read_file file(borrowed, "borrowed");
    int count = 0;
    int last = 0;
    for (int c = file.get_byte(); c >= 0; c = file.get_byte(), ++count) last = c;
    EXPECT_EQ(count, 601);
    EXPECT_EQ(last, 'y');
    file.rewind();
    EXPECT_EQ(file.get_byte(), 'x');
  }
  EXPECT_TRUE(borrowed.is_open());
  std::filesystem::remove(path);

  c_read_memory memory("ab", 2);
  EXPECT_TRUE(memory.is_open());
  EXPECT_EQ(memory.get_byte(), 'a');
  memory.rewind();
  EXPECT_EQ(memory.get_byte(), 'a');
  EXPECT_EQ(memory.get_byte(), 'b');
  EXPECT_EQ(memory.get_byte(), -1);
}

}  // namespace
}  // namespace rubrica::lmx
