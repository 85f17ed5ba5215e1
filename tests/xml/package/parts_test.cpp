// Part names, content types, relationships and opaque parts.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"
#include "xml/content_types.h"
#include "xml/package_links.h"
#include "xml/package_names.h"
#include "xml/part_map.h"
#include "xml/relationships.h"

namespace rubrica {
namespace {

std::string saved(XFile& part) {
  std::string text;
  part.save(text);
  return text;
}

TEST(PartNames, AreNormalisedToOneLeadingSlashAndForwardSlashes) {
  EXPECT_EQ(normalisedPartName("xl/workbook.xml"), "/xl/workbook.xml");
  EXPECT_EQ(normalisedPartName("/xl/workbook.xml"), "/xl/workbook.xml");
  EXPECT_EQ(normalisedPartName("xl\\worksheets\\sheet1.xml"), "/xl/worksheets/sheet1.xml");
  EXPECT_EQ(normalisedPartName("//etc/passwd"), "/etc/passwd");
  EXPECT_EQ(normalisedPartName(""), "/");
}

TEST(PartNames, RelationshipsStandInADirectoryBesideThePart) {
  EXPECT_EQ(makeRelsPath("/xl/workbook.xml"), "/xl/_rels/workbook.xml.rels");
  EXPECT_EQ(makeRelsPath("/workbook.xml"), "/_rels/workbook.xml.rels");
  EXPECT_EQ(makeRelsPath("/"), "/_rels/.rels");
  EXPECT_EQ(relsOwner("/xl/_rels/workbook.xml.rels"), "/xl/workbook.xml");
  EXPECT_EQ(relsOwner("/_rels/.rels"), "");
  EXPECT_EQ(relsOwner("/xl/workbook.xml"), "");
}

TEST(PartNames, AbsoluteAndRelativeTargetsReachTheSameKey) {
  EXPECT_EQ(resolveTarget("/xl", "worksheets/sheet1.xml"), "/xl/worksheets/sheet1.xml");
  EXPECT_EQ(resolveTarget("/xl", "/xl/worksheets/sheet1.xml"), "/xl/worksheets/sheet1.xml");
  EXPECT_EQ(resolveTarget("", "/sheet1.xml"), "/sheet1.xml");
  EXPECT_EQ(resolveTarget("/xl", "../x"), "/xl/../x");
  EXPECT_EQ(resolveTarget("/xl", "/xlsheet.xml"), "/xl//xlsheet.xml");
}

TEST(PartNames, LinksBetweenPartsFollowDotSegments) {
  EXPECT_EQ(targetKey("/xl/worksheets", "../drawings/drawing1.xml"), "/xl/drawings/drawing1.xml");
  EXPECT_EQ(targetKey("/xl", "/docProps/app.xml"), "/docProps/app.xml");
  EXPECT_EQ(targetKey("/xl", "../../../x"), "/x");
  EXPECT_EQ(targetKey("", "./x"), "/x");
}

TEST(PartMaps, CompareNamesWithoutRegardToCaseAndOrderThemSo) {
  PartMap parts;
  parts.add("/xl/workbook.xml", std::make_unique<BinaryFile>("a", 1));
  parts.add("/_rels/.rels", std::make_unique<BinaryFile>("b", 1));
  parts.add("/[Content_Types].xml", std::make_unique<BinaryFile>("c", 1));
  parts.add("/docProps/app.xml", std::make_unique<BinaryFile>("d", 1));
  std::vector<std::string> names;
  for (const auto& [name, entry] : parts) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"/[Content_Types].xml", "/_rels/.rels", "/docProps/app.xml",
                                             "/xl/workbook.xml"}));
  EXPECT_NE(parts.find("/XL/WorkBook.XML"), nullptr);
}

TEST(PartMaps, TheLaterOfTwoNamesThatDifferInCaseStands) {
  PartMap parts;
  parts.add("/xl/A.bin", std::make_unique<BinaryFile>("first", 5));
  parts.add("/xl/a.bin", std::make_unique<BinaryFile>("second", 6));
  ASSERT_EQ(std::distance(parts.begin(), parts.end()), 1);
  EXPECT_EQ(parts.begin()->first, "/xl/a.bin");
  EXPECT_EQ(saved(*parts.find("/xl/A.bin")), "second");
}

TEST(PartMaps, FreeNamesCountUpFromTheirStart) {
  PartMap parts;
  parts.add("/xl/media/image1.png", std::make_unique<BinaryFile>("", 0));
  parts.add("/xl/media/Image2.PNG", std::make_unique<BinaryFile>("", 0));
  EXPECT_EQ(parts.freeName("/xl/media/image", 1, ".png"), "/xl/media/image3.png");
  EXPECT_EQ(parts.freeName("/xl/media/image", 1, ".jpg"), "/xl/media/image1.jpg");
}

TEST(ContentTypeLists, AnOverrideComesBeforeTheDefaultOfTheExtension) {
  ContentTypes types;
  types.addDefault("xml", "application/xml");
  types.addOverride("/xl/workbook.xml", "book");
  EXPECT_EQ(types.contentType("/xl/workbook.xml"), "book");
  EXPECT_EQ(types.contentType("/XL/WORKBOOK.XML"), "book");
  EXPECT_EQ(types.contentType("/xl/other.XML"), "application/xml");
  EXPECT_EQ(types.contentType("/xl/other.bin"), "");
  EXPECT_EQ(types.contentType("/xl/none"), "");
  types.addOverride("/xl/Workbook.xml", "template");
  EXPECT_EQ(types.contentType("/xl/workbook.xml"), "template");
  types.removeOverride("/xl/workbook.XML");
  EXPECT_EQ(types.contentType("/xl/workbook.xml"), "application/xml");
}

TEST(ContentTypeLists, KeepTheirMeaningThroughTheirText) {
  ContentTypes types;
  types.addDefault("rels", "r");
  types.addOverride("/a", "1");
  types.addOverride("/b", "2");
  types.addDefault("rels", "changed");
  const std::string text = saved(types);
  ContentTypes again(text.data(), text.size());
  EXPECT_EQ(again.contentType("/x.rels"), "changed");
  again.removeOverride("/a");
  EXPECT_EQ(again.contentType("/a"), "");
  EXPECT_EQ(again.contentType("/b"), "2");
  EXPECT_EQ(saved(again).find("\"/a\""), std::string::npos);
}

TEST(ContentTypeLists, AnEmptyTextIsAnError) {
  EXPECT_THROW(ContentTypes("", 0), xlerror);
  EXPECT_THROW(ContentTypes(nullptr, 5), xlerror);
  try {
    ContentTypes("", 0);
  } catch (const xlerror& error) {
    EXPECT_STREQ(error.what(), "data is empty");
  }
}

TEST(RelationshipLists, NewIdsStartPastTheHighestNumberThatWasRead) {
  const std::string text =
      R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
      R"(<Relationship Id="rId7" Type="t" Target="a"/><Relationship Id="R3f2" Type="t" Target="b"/>)"
      R"(<Relationship Id="custom" Type="u" Target="c"/></Relationships>)";
  Relationships links(text.data(), text.size());
  EXPECT_EQ(links.findById("rId7"), "a");
  EXPECT_EQ(links.findById("custom"), "c");
  EXPECT_EQ(links.add("d", "t"), "rId8");
  EXPECT_EQ(links.findById("rId8"), "d");
  EXPECT_EQ(links.findByTarget("d"), "rId8");
}

TEST(RelationshipLists, ACursorWalksTheTargetsOfOneType) {
  Relationships links;
  links.add("a", "t");
  links.add("b", "u");
  links.add("c", "t");
  EXPECT_EQ(links.findByType("t"), "a");
  EXPECT_EQ(links.nextByType(), "c");
  EXPECT_EQ(links.nextByType(), "");
  EXPECT_EQ(links.findByType("none"), "");
}

TEST(RelationshipLists, HyperlinksAreExternalUnasked) {
  Relationships links;
  links.add("http://example.org", relationship_type::kHyperlink);
  links.add("file:///a", relationship_type::kImage, true);
  links.add("b", relationship_type::kImage);
  EXPECT_EQ(links.get_Relationship(0).get_TargetMode(), "External");
  EXPECT_EQ(links.get_Relationship(1).get_TargetMode(), "External");
  EXPECT_FALSE(links.get_Relationship(2).isset_TargetMode());
}

TEST(RelationshipLists, RemovalByTargetTakesTheExactTextOnly) {
  Relationships links;
  links.add("/xl/calcChain.xml", "t");
  links.add("calcChain.xml", "t");
  links.removeByTarget("calcChain.xml");
  ASSERT_EQ(links.size_Relationship(), 1U);
  EXPECT_EQ(links.findById("rId1"), "/xl/calcChain.xml");
  EXPECT_EQ(links.findById("rId2"), "");
  links.removeById("rId1");
  EXPECT_EQ(links.size_Relationship(), 0U);
}

TEST(PartsOfOneOwner, AreThoseThatNothingElsePointsAt) {
  PartMap parts;
  const auto link = [&](std::string_view owner, std::initializer_list<std::string_view> targets) {
    auto links = std::make_unique<Relationships>();
    for (const std::string_view target : targets) links->add(target, "t");
    parts.add(makeRelsPath(owner), std::move(links));
    parts.add(owner, std::make_unique<BinaryFile>("", 0));
  };
  link("/xl/worksheets/sheet1.xml", {"../drawings/d1.xml", "../shared.bin"});
  link("/xl/worksheets/sheet2.xml", {"../shared.bin"});
  link("/xl/drawings/d1.xml", {"../charts/c1.xml", "/xl/worksheets/sheet1.xml"});
  parts.add("/xl/charts/c1.xml", std::make_unique<BinaryFile>("", 0));
  parts.add("/xl/shared.bin", std::make_unique<BinaryFile>("", 0));
  auto only = partsOnlyUsedBy(parts, {"/xl/worksheets/sheet1.xml"});
  std::sort(only.begin(), only.end());
  EXPECT_EQ(only, (std::vector<std::string>{"/xl/charts/c1.xml", "/xl/drawings/_rels/d1.xml.rels",
                                            "/xl/drawings/d1.xml", "/xl/worksheets/_rels/sheet1.xml.rels"}));
}

TEST(PartsOfOneOwner, GoTogetherEvenInRings) {
  PartMap parts;
  const auto link = [&](std::string_view owner, std::initializer_list<std::string_view> targets) {
    auto links = std::make_unique<Relationships>();
    for (const std::string_view target : targets) links->add(target, "t");
    parts.add(makeRelsPath(owner), std::move(links));
    parts.add(owner, std::make_unique<BinaryFile>("", 0));
  };
  link("/a", {"b", "kept"});
  link("/b", {"c", "b", "a"});
  link("/c", {"b", "below"});
  link("/other", {"kept", "none", "other"});
  link("/kept", {"below"});
  parts.add("/below", std::make_unique<BinaryFile>("", 0));
  EXPECT_EQ(partsOnlyUsedBy(parts, {"/a"}),
            (std::vector<std::string>{"/_rels/a.rels", "/_rels/b.rels", "/b", "/_rels/c.rels", "/c"}));
  EXPECT_EQ(partsOnlyUsedBy(parts, {"/none"}), std::vector<std::string>());
}

TEST(OpaqueParts, KnowThePictureThatTheyAre) {
  const auto typeOf = [](std::string_view bytes) { return BinaryFile(bytes.data(), bytes.size()).pictureType(); };
  EXPECT_EQ(typeOf("\x89PNG\r"), "png");
  EXPECT_EQ(typeOf("\xFF\xD8\xFF\xE0x"), "jpg");
  EXPECT_EQ(typeOf("\xD7\xCD\xC6\x9Ax"), "wmf");
  EXPECT_EQ(typeOf(std::string_view("\x01\0\0\0x", 5)), "emf");
  EXPECT_EQ(typeOf("GIF89"), "gif");
  EXPECT_EQ(typeOf("BM123"), "bmp");
  for (const char first : {'\x0C', '\x28', '\x40', '\x6C', '\x7C'}) {
    EXPECT_EQ(typeOf(std::string(1, first) + "\0\0\0x"), "") << "four bytes and a NUL that ends the literal";
    EXPECT_EQ(typeOf(std::string(1, first) + std::string(4, '\0')), "bmp");
  }
  EXPECT_EQ(typeOf("\x89PNG"), "");
  EXPECT_EQ(typeOf("text of no kind"), "");
}

TEST(OpaqueParts, GoToMemoryOrToAFileUnchanged) {
  const test::TemporaryDirectory directory;
  const std::string path = directory.file("part.bin").string();
  const std::string bytes("a\0b\r\n", 5);
  BinaryFile part(bytes.data(), bytes.size());
  EXPECT_EQ(saved(part), bytes);
  std::string target = path;
  part.save(target);
  BinaryFile again(path);
  EXPECT_EQ(saved(again), bytes);
  try {
    BinaryFile missing(directory.file("none").string());
    FAIL();
  } catch (const xlerror& error) {
    EXPECT_STREQ(error.what(), "can't open temporary file for reading");
  }
}

TEST(BoundParts, ReadFromAFileWhatTheyReadFromMemory) {
  const test::TemporaryDirectory directory;
  const std::string path = directory.file("part.xml").string();
  Relationships links;
  links.add("a", "t");
  std::string target = path;
  links.save(target);
  Relationships again(path);
  EXPECT_EQ(again.findById("rId1"), "a");
  std::ofstream(path, std::ios::trunc).close();
  EXPECT_THROW(Relationships{path}, xlerror);
}

}  // namespace
}  // namespace rubrica
