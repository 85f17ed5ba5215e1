// What a sheet with everything on it is saved as is valid by the published schemas: each part goes through xmllint.
// Skipped where the schemas or xmllint are missing.
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "tests/support/temporary_directory.h"
#include "tests/xml/sheet/sheet_fixture.h"
#include "xml/comments.h"
#include "xml/package_names.h"
#include "xml/table.h"

namespace rubrica::test {
namespace {

namespace fs = std::filesystem;

fs::path schemas() {
  return fs::path(RUBRICA_SOURCE_DIR) / "../shared/schemas";
}

// The first-edition schemas lack the attribute that everyone writes on text with blanks at its ends.
std::string withoutSpaceAttribute(std::string text) {
  constexpr std::string_view kAttribute = " xml:space=\"preserve\"";
  for (auto at = text.find(kAttribute); at != std::string::npos; at = text.find(kAttribute, at)) {
    text.erase(at, kAttribute.size());
  }
  return text;
}

template <class Tag>
class XmlValidity : public XmlSheets<Tag> {
 protected:
  static constexpr bool kIsStrict = std::is_same_v<Tag, excelStrict_tag>;

  void SetUp() override {
    if (!fs::is_directory(schemas())) GTEST_SKIP() << "no schemas at " << schemas();
    if (std::system("xmllint --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint is not on this machine";
  }

  // The published drawing schema of the transitional flavour cannot be compiled by xmllint, which honours one import of
  // a namespace only; the helper file folds its imports into one. Empty for parts that have no schema.
  static std::string schemaOf(const std::string& name) {
    const auto isUnder = [&](std::string_view prefix) { return name.rfind(prefix, 0) == 0; };
    if (name.ends_with(".rels")) return "opc/opc-relationships.xsd";
    if (name == "/[Content_Types].xml") return "opc/opc-contentTypes.xsd";
    // Comments of a strict book are bound by the transitional class and saved in its namespace.
    if (isUnder("/xl/comments")) return "transitional-1st-edition/sml-comments.xsd";
    if (!name.ends_with(".xml")) return {};
    if (isUnder("/xl/drawings/"))
      return kIsStrict ? "strict/dml-spreadsheetDrawing.xsd" : "aids-libxml2/dml-spreadsheetDrawing.xsd";
    if (kIsStrict) return "strict/sml.xsd";
    const std::string folder = "transitional-1st-edition/sml-";
    if (name == "/xl/workbook.xml") return folder + "workbook.xsd";
    if (isUnder("/xl/worksheets/")) return folder + "sheet.xsd";
    if (isUnder("/xl/styles")) return folder + "styles.xsd";
    if (isUnder("/xl/sharedStrings")) return folder + "sharedStringTable.xsd";
    if (isUnder("/xl/tables/")) return folder + "table.xsd";
    return {};
  }

  void expectEveryPartIsValid(std::size_t atLeast) {
    const void* data = nullptr;
    std::size_t size = 0, checked = 0;
    ASSERT_TRUE(this->book->saveRaw(&data, &size)) << this->message();
    const TemporaryDirectory directory;
    const fs::path document = directory.file("part.xml"), report = directory.file("report.txt");
    for (const auto& [name, entry] : this->book->parts()) {
      const std::string schema = schemaOf(name);
      if (schema.empty()) continue;
      writeText(document, withoutSpaceAttribute(this->part(name)));
      const std::string command = "xmllint --nonet --noout --schema '" + (schemas() / schema).string() + "' '" +
                                  document.string() + "' >'" + report.string() + "' 2>&1";
      EXPECT_EQ(std::system(command.c_str()), 0) << name << '\n'
                                                 << readText(report).substr(0, 2000) << this->part(name);
      ++checked;
    }
    EXPECT_GE(checked, atLeast);
  }

  void addTable() {
    const std::string xml = partText<Tag>("table", "");
    const std::string text =
        xml.substr(0, xml.find('>', xml.find("<table"))) +
        " id=\"1\" name=\"Sales\" displayName=\"Sales\" ref=\"B30:C34\"><autoFilter ref=\"B30:C34\"/>"
        "<tableColumns count=\"2\"><tableColumn id=\"1\" name=\"a\"/>"
        "<tableColumn id=\"2\" name=\"b\"/></tableColumns></table>";
    this->book->parts().add("/xl/tables/table1.xml", std::make_unique<Table<Tag>>(text.data(), text.size()));
    this->book->needContentTypes().addOverride("/xl/tables/table1.xml", content_type::kTable);
    const std::string id =
        this->book->needRelationshipsOf("/xl/worksheets/sheet1.xml")
            .add("../tables/table1.xml", "http://schemas.openxmlformats.org/officeDocument/2006/relationships/table");
    this->sheet->get_tableParts().append_tablePart().set_r_id(id);
  }

  void addComments() {
    const std::string xml =
        std::string("<comments xmlns=\"") + kMain +
        "\"><authors><author>me &amp; you</author></authors><commentList><comment ref=\"B2\" authorId=\"0\"><text><r>"
        "<rPr><b/><sz val=\"9\"/></rPr><t>bold</t></r><r><t xml:space=\"preserve\"> and not</t></r></text></comment>"
        "<comment ref=\"C18\" authorId=\"0\"><text><t>plain</t></text></comment></commentList></comments>";
    this->book->parts().add("/xl/comments1.xml", std::make_unique<Comments>(xml.data(), xml.size()));
    this->book->needContentTypes().addOverride("/xl/comments1.xml", content_type::kComments);
    this->book->needRelationshipsOf("/xl/worksheets/sheet1.xml").add("../comments1.xml", relationship_type::kComments);
  }

  void putEverythingOn() {
    auto* s = this->sheet;
    auto* format = this->book->addFormat(nullptr);
    format->setNumFormat(numformat::percent);
    for (int row = 0; row < 20; ++row) {
      s->writeNum(row, 0, row, nullptr);
      s->writeStr(row, 1, u" text & more ", format, 0);
      s->writeFormulaStr(row, 2, u"A1&\"<x>\"", u"0<x>", nullptr);
      s->writeBool(row, 3, true, nullptr, ErrorType::noError);
    }
    s->writeStr(29, 1, u"a", nullptr, 0);
    s->writeStr(29, 2, u"b", nullptr, 0);
    addTable();
    addComments();
    s->setCol(1, 3, 20, format, false);
    s->setColHidden(5, true);
    s->setRow(3, 30, format, true);
    s->groupRows(5, 7, true);
    s->groupCols(8, 9, true);
    s->setGroupSummaryBelow(false);
    s->setGroupSummaryRight(false);
    s->setMerge(20, 21, 0, 3);
    s->setHorzPageBreak(10, true);
    s->setVertPageBreak(4, true);
    s->split(2, 1);
    s->setZoom(150);
    s->setRightToLeft(true);
    s->setDisplayGridlines(false);
    s->setTopLeftView(1, 1);
    s->setTabRgbColor(1, 2, 3);
    s->setPrintGridlines(true);
    s->setPrintRowCol(true);
    s->setHCenter(true);
    s->setVCenter(true);
    s->setPrintZoom(80);
    s->setPrintFit(1, 2);
    s->setLandscape(true);
    s->setPaper(9);
    s->setHeader(u"&L&D&C\"quoted\"", 0.4);
    s->setFooter(u"&P of &N", 0.4);
    s->setMarginLeft(1.25);
    s->setPrintArea(0, 20, 0, 5);
    s->setPrintRepeatRows(0, 1);
    s->setPrintRepeatCols(0, 0);
    s->setNamedRange(u"spot", 1, 2, 3, 4, -1, true);
    s->addHyperlink(u"https://example.org/a?b=1&c#d", 0, 0, 0, 0);
    s->addHyperlink(u"One!B2", 1, 1, 0, 0);
    s->addIgnoredError(0, 0, 5, 5, 255);
    s->addDataValidation(ValidationType::list, ValidationOperator::between, 0, 5, 1, 1, u"a,b", nullptr, true, false,
                         true, true, u"title", u"prompt", u"title", u"error", ValidationErrorStyle::information);
    s->addDataValidationDouble(ValidationType::decimal, ValidationOperator::notBetween, 0, 5, 0, 0, 1.5, 1e30, false,
                               true, false, false, nullptr, nullptr, nullptr, nullptr, ValidationErrorStyle::stop);
    s->setProtect(true, nullptr, 5);
    auto* filter = s->autoFilter();
    filter->setRef(0, 19, 0, 3);
    filter->column(0)->setTop10(50, true, true);
    filter->column(1)->addFilter(u" text & more ");
    filter->column(2)->setCustomFilter(FilterOperator::equal, u"*x*", FilterOperator::notEqual, u"", true);
    filter->setSort(1, true);
    s->applyFilter();
    std::string png("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x20\0\0\0\x10\x08\x02\0\0\0\0\0\0\0", 33);
    const int id = this->book->addPicture2(png.data(), png.size());
    for (const auto position : {PicturePosition::moveAndSize, PicturePosition::onlyMove, PicturePosition::absolute}) {
      s->setPicture(10, 4, id, 1.5, 3, 3, position);
    }
    const int link = this->book->addPictureAsLink(u"/nowhere/picture.png", false);
    if (link >= 0) s->setPicture2(12, 4, link, 40, 30, 0, 0, PicturePosition::moveAndSize);
    this->book->addSheet(u"It's two", nullptr)->setHidden(SheetState::veryHidden);
  }
};
TYPED_TEST_SUITE(XmlValidity, Flavours, FlavourNames);

TYPED_TEST(XmlValidity, EveryPartOfASheetWithEverythingOnIt) {
  this->putEverythingOn();
  this->expectEveryPartIsValid(11);
}

TYPED_TEST(XmlValidity, EveryPartAfterLinesCameAndWent) {
  this->putEverythingOn();
  auto* s = this->sheet;
  for (const auto& [first, last] : {std::pair(1, 2), std::pair(6, 6), std::pair(25, 31)}) {
    ASSERT_TRUE(s->insertRow(first, last, true)) << this->message();
    ASSERT_TRUE(s->insertCol(first, last, true)) << this->message();
  }
  this->expectEveryPartIsValid(11);
  for (const auto& [first, last] : {std::pair(0, 3), std::pair(4, 9)}) {
    ASSERT_TRUE(s->removeRow(first, last, true)) << this->message();
    ASSERT_TRUE(s->removeCol(first, last, true)) << this->message();
  }
  this->expectEveryPartIsValid(10);
  ASSERT_TRUE(s->removeRow(0, 1048575, true)) << this->message();
  this->expectEveryPartIsValid(10);
}

TYPED_TEST(XmlValidity, EveryPartAfterAllWasTakenBack) {
  this->putEverythingOn();
  auto* s = this->sheet;
  s->removeFilter();
  s->removeDataValidations();
  while (s->hyperlinkSize() > 0) ASSERT_TRUE(s->delHyperlink(0));
  while (s->mergeSize() > 0) ASSERT_TRUE(s->delMergeByIndex(0));
  s->setHorzPageBreak(10, false);
  s->setVertPageBreak(4, false);
  s->clearPrintArea();
  s->clearPrintRepeats();
  s->delNamedRange(u"spot", -1);
  s->setProtect(false, nullptr, -1);
  s->clear(0, 1048575, 0, 16383);
  this->expectEveryPartIsValid(11);
  this->reload();
  this->expectEveryPartIsValid(11);
}

}  // namespace
}  // namespace rubrica::test
