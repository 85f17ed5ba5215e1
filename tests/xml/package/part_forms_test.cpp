// The same part in other clothes: any prefix for a namespace in every kind of part, and UTF-16, also where markup
// compatibility or a repair has to look into the text.
#include <cctype>

#include "platform/text.h"
#include "tests/support/temporary_directory.h"
#include "tests/xml/flavours.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_names.h"

namespace rubrica::package_test {
namespace {

template <class Tag>
class PartForms : public ::testing::Test {
 protected:
  static constexpr bool kIsStrict = std::is_same_v<Tag, excelStrict_tag>;

  bool load(const std::vector<TestEntry>& from, int sheetIndex = -1, int firstRow = -1, int lastRow = -1) {
    return loadRaw(book, zipOf(from), sheetIndex, firstRow, lastRow);
  }
  std::string message() { return book.errorMessage(); }
  double numberAt(int sheet) { return book.getSheet(sheet)->readNum(0, 0); }
  std::string worksheet(const std::string& content) { return partText<Tag>("worksheet", content); }
  std::string savedEntry(std::string_view name) { return entryOf(saveRaw(book), name); }
  std::string link(std::string_view kind) { return flavourText<Tag>().relationships + "/" + std::string(kind); }

  // A sheet with a text, a date format, a comment, a table and a picture.
  void addEveryKindOfPart() {
    const std::string sheetName = "xl/worksheets/sheet1.xml";
    entry(entries, sheetName).content = "<worksheet xmlns=\"" + flavourText<Tag>().main + "\" xmlns:r=\"" +
                                        flavourText<Tag>().relationships +
                                        "\"><sheetData><row r=\"1\"><c r=\"A1\" s=\"0\" t=\"s\"><v>0</v></c></row>"
                                        "</sheetData><drawing r:id=\"rId1\"/><tableParts count=\"1\">"
                                        "<tablePart r:id=\"rId2\"/></tableParts></worksheet>";
    addPart(entries, "xl/sharedStrings.xml", partText<Tag>("sst", "<si><t>text</t></si>"),
            content_type::kSharedStrings);
    addPart(entries, "xl/styles.xml",
            partText<Tag>("styleSheet", "<cellXfs count=\"1\"><xf numFmtId=\"14\"/></cellXfs>"), content_type::kStyles);
    addLink(entries, "xl/workbook.xml", "rId101", link("sharedStrings"), "sharedStrings.xml");
    addLink(entries, "xl/workbook.xml", "rId102", link("styles"), "styles.xml");
    addPart(entries, "xl/drawings/drawing1.xml", drawing(), content_type::kDrawing);
    addPart(entries, "xl/media/image1.png", "\x89PNG\r\n", "image/png");
    std::string table = partText<Tag>("table",
                                      "<tableColumns count=\"2\"><tableColumn id=\"1\" name=\"a\"/>"
                                      "<tableColumn id=\"2\" name=\"b\"/></tableColumns>");
    table = replaced(table, "<table ", "<table id=\"1\" name=\"Sales\" displayName=\"Sales\" ref=\"B30:C34\" ");
    addPart(entries, "xl/tables/table1.xml", table, content_type::kTable);
    // Comments have no strict form.
    addPart(entries, "xl/comments1.xml",
            partText<excelNormal_tag>("comments",
                                      "<authors><author>me</author></authors><commentList><comment ref=\"A1\" "
                                      "authorId=\"0\"><text><t>said</t></text></comment></commentList>"),
            content_type::kComments);
    addLink(entries, sheetName, "rId1", link("drawing"), "../drawings/drawing1.xml");
    addLink(entries, sheetName, "rId2", link("table"), "../tables/table1.xml");
    addLink(entries, sheetName, "rId3", link("comments"), "../comments1.xml");
    addLink(entries, "xl/drawings/drawing1.xml", "rId1", link("image"), "../media/image1.png");
  }

  static std::string drawing() {
    const std::string base =
        kIsStrict ? "http://purl.oclc.org/ooxml/drawingml/" : "http://schemas.openxmlformats.org/drawingml/2006/";
    const auto corner = [](const std::string& name, const char* place) {
      return "<" + name + "><col>" + place + "</col><colOff>0</colOff><row>" + place + "</row><rowOff>0</rowOff></" +
             name + ">";
    };
    return "<wsDr xmlns=\"" + base + "spreadsheetDrawing\" xmlns:z=\"" + base + "main\" xmlns:rel=\"" +
           flavourText<Tag>().relationships + "\"><twoCellAnchor>" + corner("from", "1") + corner("to", "3") +
           "<pic><nvPicPr><cNvPr id=\"2\" name=\"p\"/><cNvPicPr/></nvPicPr><blipFill><z:blip rel:embed=\"rId1\"/>"
           "<z:stretch><z:fillRect/></z:stretch></blipFill><spPr/></pic><clientData/></twoCellAnchor></wsDr>";
  }

  void expectEveryKindOfPart() {
    ISheetT<char16_t>* sheet = book.getSheet(0);
    ASSERT_NE(sheet, nullptr) << message();
    EXPECT_EQ(std::u16string(sheet->readStr(0, 0)), u"text");
    ASSERT_NE(sheet->cellFormat(0, 0), nullptr) << message();
    EXPECT_EQ(sheet->cellFormat(0, 0)->numFormat(), 14);
    const char16_t* comment = sheet->readComment(0, 0);
    ASSERT_NE(comment, nullptr) << message();
    EXPECT_EQ(std::u16string(comment), u"said");
    int firstRow = -1, lastRow = -1, firstCol = -1, lastCol = -1, headers = -1, totals = -1;
    const char16_t* table = sheet->table(0, &firstRow, &lastRow, &firstCol, &lastCol, &headers, &totals);
    ASSERT_NE(table, nullptr) << message();
    EXPECT_EQ(std::u16string(table), u"Sales");
    EXPECT_EQ(firstRow, 29);
    EXPECT_EQ(sheet->pictureSize(), 1);
    EXPECT_EQ(sheet->getPicture(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0)
        << message();
  }

  XMLBookImplT<Tag> book;
  std::vector<TestEntry> entries = workbookEntries<Tag>(3);
};
TYPED_TEST_SUITE(PartForms, Flavours, FlavourNames);

// Each element and declaration of the default namespace with a prefix instead.
std::string prefixed(std::string_view text) {
  constexpr std::string_view kPrefix = "qz:";
  std::string changed;
  for (std::size_t i = 0; i < text.size(); ++i) {
    changed += text[i];
    const bool isDefault = text.substr(i).starts_with(" xmlns=");
    if (isDefault) {
      changed += "xmlns:qz";
      i += std::string_view("xmlns").size();
    }
    if (text[i] != '<' || i + 1 == text.size()) continue;
    if (text[i + 1] == '/') changed += text[++i];
    const std::string_view name = text.substr(i + 1, text.find_first_of(" />", i + 1) - i - 1);
    const bool isName = !name.empty() && std::isalpha(static_cast<unsigned char>(name.front())) != 0;
    if (isName && name.find(':') == name.npos) changed += kPrefix;
  }
  return changed;
}

TYPED_TEST(PartForms, EveryKindOfPartMayUseAnyPrefix) {
  this->addEveryKindOfPart();
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  this->expectEveryKindOfPart();
  for (TestEntry& part : this->entries) {
    if (!part.name.ends_with(".xml") && !part.name.ends_with(".rels")) continue;
    part.content = prefixed(part.content);
    EXPECT_NE(part.content.find("<qz:"), std::string::npos) << part.name;
    EXPECT_EQ(part.content.find("xmlns="), std::string::npos) << part.name;
  }
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  this->expectEveryKindOfPart();
  const std::string saved = saveRaw(this->book);
  ASSERT_TRUE(loadRaw(this->book, saved)) << this->message();
  this->expectEveryKindOfPart();
}

// A text in UTF-16 with its mark and a declaration of it in place of its own, in either byte order.
std::string inUtf16(const std::string& part, bool isBigEndian) {
  const std::string text = part.starts_with("<?") ? part.substr(part.find("?>") + 2) : part;
  const std::u16string units =
      u"\xFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + platform::utf16FromUtf8Lossy(text);
  std::string bytes;
  for (const char16_t unit : units) {
    const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
    bytes += isBigEndian ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

TYPED_TEST(PartForms, EveryKindOfPartMayBeUtf16) {
  this->addEveryKindOfPart();
  for (TestEntry& part : this->entries) {
    if (!part.name.ends_with(".xml") && !part.name.ends_with(".rels")) continue;
    part.content = inUtf16(part.content, part.name.size() % 2 == 0);
  }
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  this->expectEveryKindOfPart();
}

TYPED_TEST(PartForms, PartsInUtf16AreReadWithTheirMarkupCompatibilityAndRepairs) {
  const std::string mc = "xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\"";
  const std::string sheet = this->worksheet(
      "<sheetData><row r=\"1\"><c r=\"A1\"><v>41</v></c></row></sheetData><mc:AlternateContent " + mc +
      "><mc:Choice Requires=\"new\" xmlns:new=\"urn:Ж\"><new:thing/></mc:Choice><mc:Fallback><mergeCells>"
      "<mergeCell ref=\"A1:B2\"/></mergeCells></mc:Fallback></mc:AlternateContent>");
  const std::string repaired = this->worksheet("<sheetPr><tabColor rgb=\"102030\"/></sheetPr><sheetData/>");
  const std::string main = entry(this->entries, "xl/workbook.xml").content;
  const test::TemporaryDirectory directory;
  const std::u16string path = directory.file("book.xlsx").u16string(), scratch = directory.file("part").u16string();
  for (const bool isBigEndian : {false, true}) {
    entry(this->entries, "xl/worksheets/sheet1.xml").content = inUtf16(sheet, isBigEndian);
    entry(this->entries, "xl/worksheets/sheet2.xml").content = inUtf16(repaired, isBigEndian);
    entry(this->entries, "xl/workbook.xml").content = inUtf16(main, isBigEndian);
    ASSERT_TRUE(this->load(this->entries)) << this->message();
    EXPECT_EQ(this->numberAt(0), 41);
    EXPECT_EQ(this->book.getSheet(0)->mergeSize(), 1);
    EXPECT_EQ(this->book.droppedMarkupOfParts(), 1U);
    EXPECT_NE(this->savedEntry("xl/worksheets/sheet2.xml").find("rgb=\"FF102030\""), std::string::npos);
    ASSERT_TRUE(this->load(this->entries, 0, 0, 5)) << this->message();
    EXPECT_EQ(this->book.getSheet(0)->mergeSize(), 1);
    test::writeText(directory.file("book.xlsx"), zipOf(this->entries));
    ASSERT_TRUE(this->book.load(path.c_str(), scratch.c_str())) << this->message();
    EXPECT_EQ(this->book.getSheet(0)->mergeSize(), 1);
    EXPECT_NE(this->savedEntry("xl/worksheets/sheet2.xml").find("rgb=\"FF102030\""), std::string::npos);
  }
}

TYPED_TEST(PartForms, AnEncodingThatIsNotTheStatedOneStaysAnErrorBesideMarkupCompatibility) {
  const std::string sheet = this->worksheet(
      "<sheetData/><mc:AlternateContent xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\"/>");
  std::string content = inUtf16(sheet, false);
  const std::size_t sixteen = content.find(std::string("1\0006\0", 4));
  ASSERT_NE(sixteen, content.npos);
  content.replace(sixteen, 4, std::string("8\0", 2));
  entry(this->entries, "xl/worksheets/sheet1.xml").content = content;
  EXPECT_FALSE(this->load(this->entries));
  EXPECT_EQ(this->message(), "Mis-match between specified char encoding and read bytes");
  content = inUtf16(this->worksheet("<sheetData/><!-- \xEF\xBF\xBF -->"), false);
  const std::size_t last = content.rfind(std::string("\xFF\xFF", 2));
  content.replace(last, 2, std::string("\x00\xD8", 2));
  entry(this->entries, "xl/worksheets/sheet1.xml").content = content;
  EXPECT_FALSE(this->load(this->entries)) << "half a surrogate pair";
}

}  // namespace
}  // namespace rubrica::package_test
