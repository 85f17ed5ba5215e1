// Packages that lie, break off, go in rings or ask for too much: each ends in a book or in a message.
#include <algorithm>

#include "tests/xml/flavours.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_limits.h"
#include "xml/package_names.h"

namespace rubrica::package_test {
namespace {

template <class Tag>
class HostilePackage : public ::testing::Test {
 protected:
  std::string failureOf(const std::string& archive) {
    XMLBookImplT<Tag> book;
    if (!loadRaw(book, archive)) return book.errorMessage();
    if (saveRaw(book).empty()) ADD_FAILURE() << "loaded but not saved: " << book.errorMessage();
    return "ok";
  }
  std::string failureOf() { return failureOf(zipOf(entries)); }

  std::vector<TestEntry> entries = workbookEntries<Tag>(2);
};
TYPED_TEST_SUITE(HostilePackage, Flavours, FlavourNames);

TYPED_TEST(HostilePackage, EveryTruncationOfTheArchiveIsRefused) {
  const std::string archive = zipOf(this->entries);
  for (std::size_t size = 0; size < archive.size(); ++size) {
    ASSERT_NE(this->failureOf(archive.substr(0, size)), "ok") << size;
  }
}

TYPED_TEST(HostilePackage, EveryTruncationOfAPartIsRefused) {
  for (const char* name : {"[Content_Types].xml", "xl/workbook.xml", "xl/_rels/workbook.xml.rels",
                           "xl/worksheets/sheet1.xml", "_rels/.rels"}) {
    const std::string whole = entry(this->entries, name).content;
    for (std::size_t size = 0; size < whole.size(); size += 3) {
      auto cut = this->entries;
      entry(cut, name).content = whole.substr(0, size);
      ASSERT_NE(this->failureOf(zipOf(cut)), "ok") << name << " at " << size;
    }
  }
}

TYPED_TEST(HostilePackage, EveryChangedByteOfAPartEndsInABookOrAMessage) {
  std::size_t refused = 0;
  for (const char* name :
       {"[Content_Types].xml", "xl/workbook.xml", "xl/_rels/workbook.xml.rels", "xl/worksheets/sheet1.xml"}) {
    const std::string whole = entry(this->entries, name).content;
    for (std::size_t i = 0; i < whole.size(); i += 2) {
      for (const char with : {'\0', '<', '"', '&', '9', '\xFF'}) {
        auto changed = this->entries;
        entry(changed, name).content[i] = with;
        if (this->failureOf(zipOf(changed)) != "ok") ++refused;
      }
    }
  }
  EXPECT_GT(refused, 500U);
}

TYPED_TEST(HostilePackage, WrongContentTypesAreRefused) {
  const auto retyped = [&](std::string_view type) {
    auto changed = this->entries;
    TestEntry& types = entry(changed, "[Content_Types].xml");
    types.content = replaced(types.content, content_type::kWorksheet, type);
    return this->failureOf(zipOf(changed));
  };
  for (const std::string_view type : {content_type::kStyles, content_type::kSharedStrings, content_type::kRelationships,
                                      content_type::kDrawing, content_type::kTable, content_type::kComments}) {
    EXPECT_EQ(retyped(type), "Element not found") << type;
  }
  EXPECT_EQ(retyped("text/plain"), "ok");
  EXPECT_EQ(retyped(""), "ok");
}

TYPED_TEST(HostilePackage, AWorkbookWithoutSheetsIsABookOfNone) {
  TestEntry& main = entry(this->entries, "xl/workbook.xml");
  const std::size_t begin = main.content.find("<sheets>"), end = main.content.find("</sheets>");
  main.content.erase(begin, end + 9 - begin);
  EXPECT_NE(this->failureOf(), "ok") << "the schema wants the list";
  main.content.insert(begin, "<sheets/>");
  XMLBookImplT<TypeParam> book;
  if (loadRaw(book, zipOf(this->entries))) {
    EXPECT_EQ(book.sheetCount(), 0);
    EXPECT_NE(book.addSheet(u"New", nullptr), nullptr);
  }
}

TYPED_TEST(HostilePackage, DanglingRelationshipsLeaveSheetsOut) {
  TestEntry& links = entry(this->entries, "xl/_rels/workbook.xml.rels");
  links.content = replaced(links.content, "worksheets/sheet1.xml", "worksheets/none.xml");
  XMLBookImplT<TypeParam> book;
  ASSERT_TRUE(loadRaw(book, zipOf(this->entries))) << book.errorMessage();
  EXPECT_EQ(book.getSheet(0), nullptr);
  EXPECT_STREQ(book.errorMessage(), "sheet not found");
  EXPECT_NE(book.getSheet(1), nullptr);
  EXPECT_NE(saveRaw(book), "");
}

TYPED_TEST(HostilePackage, RelationshipsToTheWorkbookItselfOrInRingsEnd) {
  TestEntry& links = entry(this->entries, "xl/_rels/workbook.xml.rels");
  links.content = replaced(links.content, "worksheets/sheet1.xml", "workbook.xml");
  addLink(this->entries, "xl/worksheets/sheet2.xml", "rId1", "urn:ring", "../workbook.xml");
  addLink(this->entries, "xl/workbook.xml", "rId7", "urn:ring", "/xl/_rels/workbook.xml.rels");
  XMLBookImplT<TypeParam> book;
  ASSERT_TRUE(loadRaw(book, zipOf(this->entries))) << book.errorMessage();
  EXPECT_EQ(book.getSheet(0), nullptr);
  EXPECT_TRUE(book.delSheet(0)) << book.errorMessage();
  EXPECT_NE(book.addSheet(u"Copy", book.getSheet(0)), nullptr) << book.errorMessage();
  EXPECT_TRUE(book.delSheet(0)) << book.errorMessage();
  XMLBookImplT<TypeParam> again;
  EXPECT_TRUE(loadRaw(again, saveRaw(book))) << again.errorMessage();
}

TYPED_TEST(HostilePackage, RelationshipIdsThatStandTwiceMeanTheFirst) {
  TestEntry& links = entry(this->entries, "xl/_rels/workbook.xml.rels");
  links.content = replaced(links.content, "Id=\"rId2\"", "Id=\"rId1\"");
  XMLBookImplT<TypeParam> book;
  if (loadRaw(book, zipOf(this->entries))) {
    EXPECT_EQ(book.getSheet(0)->readNum(0, 0), 1);
    EXPECT_EQ(book.getSheet(1), nullptr);
  } else {
    EXPECT_STRNE(book.errorMessage(), "ok");
  }
}

TYPED_TEST(HostilePackage, NamesThatLeaveThePackageAreNotTaken) {
  this->entries.push_back({"../../outside.xml", "<a/>"});
  this->entries.push_back({"xl/../../../outside.xml", "<a/>"});
  XMLBookImplT<TypeParam> book;
  ASSERT_TRUE(loadRaw(book, zipOf(this->entries))) << book.errorMessage();
  for (const std::string& name : namesOf(saveRaw(book))) EXPECT_EQ(name.find("outside"), std::string::npos);
}

TYPED_TEST(HostilePackage, ElementsNestedTooDeepAreRefused) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<a>";
  TestEntry& sheet = entry(this->entries, "xl/worksheets/sheet1.xml");
  sheet.content = partText<TypeParam>("worksheet", "<sheetData/>" + deep);
  EXPECT_NE(this->failureOf(), "ok");
  sheet.content = partText<TypeParam>("worksheet", "<sheetData/><extLst><ext uri=\"\">" + deep);
  EXPECT_NE(this->failureOf(), "ok");
}

TYPED_TEST(HostilePackage, EntitiesThatGrowWithoutBoundAreRefused) {
  std::string laughs = "<!DOCTYPE worksheet [<!ENTITY a0 \"laugh\">";
  for (int i = 1; i < 30; ++i) {
    const std::string before = "&a" + std::to_string(i - 1) + ";";
    laughs += "<!ENTITY a" + std::to_string(i) + " \"" + before + before + before + before + "\">";
  }
  laughs += "<!ENTITY file SYSTEM \"file:///etc/passwd\">]>";
  const auto withText = [&](const std::string& text) {
    return laughs + "<worksheet xmlns=\"" + flavourText<TypeParam>().main +
           "\"><sheetData><row r=\"1\"><c r=\"A1\" t=\"inlineStr\"><is><t>" + text +
           "</t></is></c></row></sheetData></worksheet>";
  };
  TestEntry& sheet = entry(this->entries, "xl/worksheets/sheet1.xml");
  sheet.content = withText("&a29;");
  EXPECT_NE(this->failureOf(), "ok");
  sheet.content = withText("&file;");
  XMLBookImplT<TypeParam> book;
  if (loadRaw(book, zipOf(this->entries))) {
    EXPECT_EQ(saveRaw(book).find("root:"), std::string::npos);
    EXPECT_EQ(entryOf(saveRaw(book), "xl/worksheets/sheet1.xml").find("root:"), std::string::npos);
  }
}

TYPED_TEST(HostilePackage, ABombInAPartIsRefusedBeforeItsMemoryIsTaken) {
  addPart(this->entries, "xl/media/zeros.bin", std::string(std::size_t{100} << 20U, '\0'), "application/octet-stream");
  EXPECT_EQ(this->failureOf(), "zip archive expands to more than its size allows");
}

TYPED_TEST(HostilePackage, SizesThatCantBeTrueAreRefused) {
  TestEntry& sheet = entry(this->entries, "xl/worksheets/sheet1.xml");
  sheet.size = 0xFFFFFFF0;
  EXPECT_EQ(this->failureOf(), "zip entry /xl/worksheets/sheet1.xml is damaged: its size can't be true");
  sheet.size = static_cast<std::uint32_t>(sheet.content.size()) + 1;
  EXPECT_EQ(this->failureOf(), "zip entry /xl/worksheets/sheet1.xml is damaged");
}

TYPED_TEST(HostilePackage, WhatIsEncryptedIsSaidToBe) {
  EXPECT_EQ(this->failureOf("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(504, '\0')),
            "not a zip archive but a compound file: an .xls or an encrypted workbook");
  entry(this->entries, "xl/worksheets/sheet2.xml").flags = 0x801;
  EXPECT_EQ(this->failureOf(), "zip entry /xl/worksheets/sheet2.xml is encrypted");
}

TYPED_TEST(HostilePackage, AsManyEntriesAsAreAllowedAreReadAndOneMoreIsNot) {
  const std::uint64_t most = PackageLimits{}.entries;
  while (this->entries.size() < most) {
    this->entries.push_back({.name = "e" + std::to_string(this->entries.size()), .isDeflated = false});
  }
  EXPECT_EQ(this->failureOf(), "ok");
  this->entries.push_back({.name = "more", .isDeflated = false});
  EXPECT_EQ(this->failureOf(), "zip archive has too many entries");
}

}  // namespace
}  // namespace rubrica::package_test
