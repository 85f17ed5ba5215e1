// What programs are known to write otherwise than the schemas say, and what is made of it.
#include "tests/support/temporary_directory.h"
#include "tests/xml/flavours.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/comments.h"
#include "xml/package_names.h"
#include "xml/styles.h"
#include "xml/table.h"

namespace rubrica::package_test {
namespace {

template <class Tag>
class PartRepair : public ::testing::Test {
 protected:
  std::string stylesAfter(const std::string& content) {
    LastMessage last;
    const std::string text = partText<Tag>("styleSheet", content);
    Styles<Tag> styles(last, text.data(), text.size());
    std::string saved;
    styles.save(saved);
    return saved;
  }
  static constexpr bool kIsStrict = std::is_same_v<Tag, excelStrict_tag>;
};
TYPED_TEST_SUITE(PartRepair, Flavours, FlavourNames);

TYPED_TEST(PartRepair, AColourOfSixDigitsIsOpaque) {
  const std::string saved = this->stylesAfter(
      "<fonts><font><color rgb=\"A7CDF0\"/></font><font><color rgb = '00539b'/></font><font><color rgb=\"80112233\"/>"
      "</font></fonts>");
  EXPECT_NE(saved.find("rgb=\"FFA7CDF0\""), std::string::npos) << saved;
  EXPECT_NE(saved.find("rgb=\"FF00539B\""), std::string::npos) << saved;
  EXPECT_NE(saved.find("rgb=\"80112233\""), std::string::npos) << saved;
}

TYPED_TEST(PartRepair, OtherColoursOfAWrongLengthStayErrors) {
  for (const char* wrong : {"12345", "1234567", "1234GH", "12", ""}) {
    EXPECT_THROW(this->stylesAfter("<fonts><font><color rgb=\"" + std::string(wrong) + "\"/></font></fonts>"), xlerror)
        << wrong;
  }
}

TYPED_TEST(PartRepair, SidesOfABorderGetTheNamesOfTheFlavour) {
  const std::string left = this->kIsStrict ? "start" : "left", right = this->kIsStrict ? "end" : "right";
  const std::string otherLeft = this->kIsStrict ? "left" : "start", otherRight = this->kIsStrict ? "right" : "end";
  const auto borders = [](const std::string& first, const std::string& second) {
    return "<borders><border><" + first + " style=\"thin\"></" + first + "><" + second +
           " style=\"thick\"/><top/></border></borders>";
  };
  const std::string saved = this->stylesAfter(borders(otherLeft, otherRight));
  EXPECT_EQ(saved, this->stylesAfter(borders(left, right)));
  EXPECT_NE(saved.find("<" + left + " style=\"thin\""), std::string::npos) << saved;
}

TYPED_TEST(PartRepair, ExtensionsAreLeftAlone) {
  const std::string inner = "<x:border xmlns:x=\"urn:x\" rgb=\"112233\"><x:left/><x:start/></x:border>";
  const std::string saved = this->stylesAfter(
      "<fonts><font><color rgb=\"112233\"/></font></fonts><extLst><ext uri=\"{1}\">" + inner + "</ext></extLst>");
  EXPECT_NE(saved.find("rgb=\"FF112233\""), std::string::npos) << saved;
  EXPECT_NE(saved.find(inner), std::string::npos) << saved;
}

TYPED_TEST(PartRepair, HoldsForSheetsFromMemoryFromAFileAndForWindowsOfThem) {
  const test::TemporaryDirectory directory;
  auto entries = workbookEntries<TypeParam>();
  TestEntry& sheet = entry(entries, "xl/worksheets/sheet1.xml");
  sheet.content = replaced(sheet.content, "<sheetData>", "<sheetPr><tabColor rgb=\"112233\"/></sheetPr><sheetData>");
  test::writeText(directory.file("book.xlsx"), zipOf(entries));
  const std::u16string path = directory.file("book.xlsx").u16string();
  const std::u16string scratch = directory.file("scratch").u16string();
  XMLBookImplT<TypeParam> book;
  const auto expectLoaded = [&](bool isLoaded) {
    ASSERT_TRUE(isLoaded) << book.errorMessage();
    EXPECT_EQ(book.getSheet(0)->readNum(0, 0), 1);
    EXPECT_NE(entryOf(saveRaw(book), "xl/worksheets/sheet1.xml").find("rgb=\"FF112233\""), std::string::npos);
  };
  expectLoaded(book.load(path.c_str(), nullptr));
  expectLoaded(book.load(path.c_str(), scratch.c_str()));
  expectLoaded(book.loadPartially(path.c_str(), 0, 0, 0, nullptr));
  expectLoaded(book.loadPartially(path.c_str(), 0, 0, 0, scratch.c_str()));
}

TYPED_TEST(PartRepair, CommentsOfEitherNamespaceAreReadAndSavedUnderTheTransitionalOne) {
  for (const std::string& uri : {flavourText<excelNormal_tag>().main, flavourText<excelStrict_tag>().main}) {
    auto entries = workbookEntries<TypeParam>();
    addPart(entries, "xl/comments1.xml",
            "<comments xmlns=\"" + uri +
                "\"><authors><author/></authors><commentList><comment ref=\"A1\" authorId=\"0\">" +
                "<text><t>note</t></text></comment></commentList></comments>",
            content_type::kComments);
    addLink(entries, "xl/worksheets/sheet1.xml", "rId1", flavourText<TypeParam>().relationships + "/comments",
            "../comments1.xml");
    XMLBookImplT<TypeParam> book;
    ASSERT_TRUE(loadRaw(book, zipOf(entries))) << book.errorMessage();
    EXPECT_EQ(std::u16string(book.getSheet(0)->readComment(0, 0)), u"note");
    EXPECT_NE(entryOf(saveRaw(book), "xl/comments1.xml").find(flavourText<excelNormal_tag>().main), std::string::npos);
  }
}

TEST(PartRepairs, OldDrawingsOfAStrictSheetGoWithoutWhatStandsBehindThem) {
  auto entries = workbookEntries<excelStrict_tag>();
  TestEntry& sheet = entry(entries, "xl/worksheets/sheet1.xml");
  sheet.content = replaced(sheet.content, "</sheetData>",
                           "</sheetData><legacyDrawing id=\"rId1\"/><legacyDrawingHF id=\"a\"></legacyDrawingHF>"
                           "<extLst><ext uri=\"{1}\"><legacyDrawing/></ext></extLst>");
  const BookPtr book = newBook();
  ASSERT_TRUE(loadRaw(*book, zipOf(entries))) << book->errorMessage();
  const std::string saved = entryOf(saveRaw(*book), "xl/worksheets/sheet1.xml");
  EXPECT_EQ(saved.find("legacyDrawingHF"), std::string::npos) << saved;
  EXPECT_NE(saved.find("<ext uri=\"{1}\">"), std::string::npos) << saved;
}

TEST(PartRepairs, NamespacesBeforeTheFirstEditionAreThoseOfIt) {
  auto entries = workbookEntries<excelNormal_tag>();
  const std::string uri = flavourText<excelNormal_tag>().main;
  for (const char* early : {"http://schemas.openxmlformats.org/spreadsheetml/2006/5/main",
                            "http://schemas.openxmlformats.org/spreadsheetml/2006/7/main"}) {
    auto old = entries;
    for (const char* name : {"xl/workbook.xml", "xl/worksheets/sheet1.xml"}) {
      entry(old, name).content = replaced(entry(old, name).content, uri, early);
    }
    const BookPtr book = newBook();
    ASSERT_TRUE(loadRaw(*book, zipOf(old))) << book->errorMessage();
    EXPECT_EQ(book->getSheet(0)->readNum(0, 0), 1);
    EXPECT_NE(entryOf(saveRaw(*book), "xl/workbook.xml").find("\"" + uri + "\""), std::string::npos);
  }
}

TEST(PartRepairs, ATextOfNoKnownDeviationIsLeftToItsError) {
  const auto repaired = [](const std::string& text, lmx::elmx_error code) {
    return repairedPart(text, styles::c_styleSheet::kRoot, code);
  };
  const std::string fine = partText<excelNormal_tag>("styleSheet", "<fonts/>");
  EXPECT_FALSE(repaired(fine, lmx::ELMX_LENGTH_TOO_SHORT));
  const std::string wrong = partText<excelNormal_tag>("styleSheet", "<a rgb=\"112233\"/>");
  EXPECT_TRUE(repaired(wrong, lmx::ELMX_LENGTH_TOO_SHORT));
  EXPECT_FALSE(repaired(wrong, lmx::ELMX_BAD_CHOICE));
}

TEST(PartRepairs, EveryTruncationEnds) {
  const std::string text =
      "<?xml version=\"1.0\"?><!-- c --><styleSheet xmlns='u'><border><start a=\"1\"/><![CDATA[x]]>"
      "</border><c rgb=\"112233\"/><extLst><ext/></extLst></styleSheet>";
  for (std::size_t size = 0; size <= text.size(); ++size) {
    const std::string part = text.substr(0, size);
    const auto repaired = repairedPart(part, styles::c_styleSheet::kRoot, lmx::ELMX_BAD_END_OF_ELEMENT);
    if (repaired) {
      EXPECT_LT(repaired->size(), part.size() + 8) << part;
    }
  }
}

}  // namespace
}  // namespace rubrica::package_test
