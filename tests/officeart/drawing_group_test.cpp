#include "officeart/drawing_group.h"

#include <set>

#include "tests/officeart/art_fixture.h"

namespace rubrica::officeart::test {
namespace {

// A group of another program: ids out of order, an entry without a picture, and a record of its own.
Bytes foreignGroup() {
  const Bytes ids = art(0, 0, type::fdggBlock,
                        fields(u32(4000), u32(4), u32(9), u32(2), u32(2), u32(1024), u32(1), u32(5), u32(2), u32(1)));
  const Bytes blip = art(0, 0x6E0, type::blipPng, joined({filled(17, 1), png(40)}));
  const Bytes store =
      box(type::bStoreContainer,
          {art(2, 0, type::fbse, filled(36, 0)), art(2, 6, type::fbse, joined({filled(36, 0), blip}))}, 2);
  return box(type::dggContainer, {ids, store, art(3, 0, type::fopt, {}), art(7, 7, 0xF1AA, filled(33, 7))});
}

std::vector<KeptRecord> divided(const Bytes& bytes, std::initializer_list<std::size_t> sizes) {
  std::vector<KeptRecord> records;
  auto at = bytes.begin();
  for (const std::size_t size : sizes) {
    records.push_back({records.empty() ? kMsoDrawingGroup : kContinue, {at, at + static_cast<std::ptrdiff_t>(size)}});
    at += static_cast<std::ptrdiff_t>(size);
  }
  records.push_back({kMsoDrawingGroup, {at, bytes.end()}});
  return records;
}
Bytes bodies(const std::vector<KeptRecord>& records) {
  std::vector<Bytes> parts;
  for (const KeptRecord& record : records) parts.push_back(record.body);
  return joined(parts);
}

TEST(DrawingGroups, AreWrittenBackInTheRecordsThatTheyCameIn) {
  const auto records = divided(foreignGroup(), {3, 50, 0, 60});
  EXPECT_EQ(recordsOf(groupOf(records)), records);
  EXPECT_TRUE(recordsOf(DrawingGroup()).empty());
  EXPECT_TRUE(recordsOf(groupOf({})).empty());
}

TEST(DrawingGroups, KeepWhatTheyHoldWhenAPictureIsAdded) {
  DrawingGroup group = groupOf(divided(foreignGroup(), {10}));
  EXPECT_EQ(group.pictureCount(), 1u);
  EXPECT_EQ(group.pictureOf(0), nullptr);
  EXPECT_EQ(group.pictureOf(1), group.pictureAt(0));
  const int id = group.addPicture(png(100));
  EXPECT_EQ(id, 2) << "its position in the store";
  EXPECT_EQ(group.pictureCount(), 2u);
  const Bytes before = foreignGroup(), after = bodies(recordsOf(group));
  EXPECT_EQ(after.size(), before.size() + OfficeArtFBSE::of(png(100))->size() + 8);
  DrawingGroup again = groupOf(recordsOf(group));
  EXPECT_EQ(again.pictureCount(), 2u);
  const ByteView file = again.pictureOf(2)->file();
  EXPECT_EQ(Bytes(file.begin(), file.end()), png(100));
  EXPECT_NE(std::search(after.begin(), after.end(), before.end() - 41, before.end()), after.end())
      << "the unknown record";
}

TEST(DrawingGroups, TheSamePictureTwiceIsTwoEntries) {
  DrawingGroup group;
  EXPECT_EQ(group.addPicture(png(64)), 0);
  EXPECT_EQ(group.addPicture(png(64)), 1);
  EXPECT_EQ(group.pictureCount(), 2u);
  EXPECT_EQ(groupOf(recordsOf(group)).pictureCount(), 2u);
}

TEST(DrawingGroups, CountTheUsesOfAPicture) {
  DrawingGroup group;
  group.addPicture(png(64));
  group.addUses(0, 1);
  group.addUses(0, 1);
  group.addUses(5, 1);
  group.addUses(-1, 1);
  const auto uses = [&] {
    const Bytes bytes = bodies(recordsOf(group));
    RecordReader reader(Slice::copyOf(bytes));
    RecordHeader header;
    takeHeader(reader, header);
    OfficeArtDggContainer root;
    root.read(header, reader);
    return root.find<OfficeArtBStoreContainer>()->find<OfficeArtFBSE>()->cRef;
  };
  EXPECT_EQ(uses(), 2u);
  group.addUses(0, -3);
  EXPECT_EQ(uses(), 0u);
}

TEST(DrawingGroups, ABlipOfTenThousandBytesTakesAtMostTwoContinues) {
  DrawingGroup group;
  group.addPicture(png(10000));
  const auto records = recordsOf(group);
  ASSERT_LE(records.size(), 3u);
  EXPECT_EQ(records[0].recordId, kMsoDrawingGroup);
  EXPECT_EQ(records[0].body.size(), 8224u);
  for (std::size_t i = 1; i < records.size(); ++i) EXPECT_EQ(records[i].recordId, kContinue);
}

TEST(DrawingGroups, PicturesOfAnySizeComeBack) {
  for (const std::size_t size : {5, 17, 8223, 8224, 8225, 20'000'000}) {
    DrawingGroup group;
    group.addPicture(png(size));
    const auto records = recordsOf(group);
    for (const KeptRecord& record : records) ASSERT_LE(record.body.size(), kMostRecordBytes);
    DrawingGroup again = groupOf(records);
    ASSERT_EQ(again.pictureCount(), 1u);
    const ByteView file = again.pictureAt(0)->file();
    EXPECT_TRUE(Bytes(file.begin(), file.end()) == png(size)) << size;
  }
}

TEST(DrawingGroups, ThatLieAreRefused) {
  const auto refused = [](const Bytes& bytes) { return refusal([&] { groupOf({{kMsoDrawingGroup, bytes}}); }); };
  EXPECT_EQ(refused({}), "error in record MsoDrawingGroup");
  EXPECT_EQ(refused(filled(7, 0)), "error in record MsoDrawingGroup");
  EXPECT_EQ(refused(box(type::dgContainer, {})), "error in record MsoDrawingGroup");
  EXPECT_EQ(refused(joined({foreignGroup(), filled(1, 0)})), "error in record MsoDrawingGroup");
  EXPECT_EQ(refused(art(0xF, 0, type::dggContainer, filled(20, 0), 21)), "error in record OfficeArtDggContainer");
  Bytes cut = foreignGroup();
  for (std::size_t size = 0; size < cut.size(); ++size) {
    EXPECT_NE(refused({cut.begin(), cut.begin() + static_cast<std::ptrdiff_t>(size)}), "nothing was refused") << size;
  }
}

TEST(ShapeIds, OfANewBookBeginAt1024WithEachDrawing) {
  DrawingGroup group;
  EXPECT_EQ(group.newDrawing(), 1);
  EXPECT_EQ(group.newShape(1), 1024u);
  EXPECT_EQ(group.newShape(1), 1025u);
  EXPECT_EQ(group.newDrawing(), 2);
  EXPECT_EQ(group.newShape(2), 2048u);
  EXPECT_EQ(group.newShape(1), 1026u);
}

TEST(ShapeIds, NeverMeetAgainHoweverManyThereAre) {
  DrawingGroup group;
  group.newDrawing();
  group.newDrawing();
  std::set<std::uint32_t> ids;
  for (int i = 0; i < 5000; ++i) EXPECT_TRUE(ids.insert(group.newShape(i % 3 == 0 ? 1u : 2u)).second);
}

TEST(ShapeIds, StayClearOfThoseThatAFileHasEvenWhereItsTableLies) {
  DrawingGroup group = groupOf({{kMsoDrawingGroup, foreignGroup()}});
  for (const std::uint32_t id : {1024u, 2047u, 2048u, 2500u, 3072u, 3090u, 9000u}) group.claim(id < 3000 ? 2 : 7, id);
  group.claim(1, 0);
  group.claim(1, 0xFFFFFFFF);
  EXPECT_EQ(group.newDrawing(), 8);
  std::set<std::uint32_t> ids = {1024, 2047, 2048, 2500, 3072, 3090, 9000};
  for (int i = 0; i < 3000; ++i) {
    for (const std::uint32_t drawing : {1u, 2u, 7u, 8u}) EXPECT_TRUE(ids.insert(group.newShape(drawing)).second);
  }
}

TEST(ShapeIds, RunOutOfDrawingsWithAMessage) {
  DrawingGroup group;
  group.claim(0xFFD, 1024);
  EXPECT_EQ(group.newDrawing(), 0xFFE);
  EXPECT_EQ(refusal([&] { group.newDrawing(); }), "too many drawings");
}

}  // namespace
}  // namespace rubrica::officeart::test
