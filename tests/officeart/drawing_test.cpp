#include "officeart/drawing.h"

#include <set>

#include "tests/officeart/art_fixture.h"

namespace rubrica::officeart::test {
namespace {

Bytes shape(unsigned id, const Bytes& options, const std::vector<Bytes>& behind) {
  std::vector<Bytes> parts = {
      art(2, 75, type::fsp, fields(u32(id), u32(0xA00))), options,
      art(0, 0, type::clientAnchorSheet,
          joined({fields(u16(0), u16(1), u16(2), u16(3), u16(4)), fields(u16(5), u16(6), u16(7), u16(8))}))};
  parts.insert(parts.end(), behind.begin(), behind.end());
  return box(type::spContainer, parts);
}
const Bytes kClientData = art(0, 0, type::clientData, {}), kTextbox = art(0, 0, type::clientTextbox, {});
const Bytes kPib = art(3, 1, type::fopt, fields(u16(0x4104), u32(3))), kPlain = art(3, 0, type::fopt, {});

Bytes obj(unsigned objectType, unsigned id) {
  return joined({fields(u16(21), u16(18), u16(objectType), u16(id), u16(0)), filled(12, 0), fields(u32(0))});
}
Bytes textHead(unsigned cch) {
  return joined({filled(10, 0), fields(u16(cch), u16(16), u16(0), u16(0))});
}

// As a spreadsheet program writes a picture, a comment, a picture in a group, and a rule behind the shapes.
struct Foreign {
  Bytes patriarch =
      box(type::spContainer, {art(1, 0, type::fspgr, filled(16, 0)), art(2, 0, type::fsp, fields(u32(3072), u32(5)))});
  Bytes picture = shape(3073, kPib, {kClientData});
  Bytes comment = shape(3074, kPlain, {kClientData, kTextbox});
  Bytes groupShape = shape(3075, kPlain, {kClientData});
  Bytes inner = box(type::spContainer, {art(2, 75, type::fsp, fields(u32(3076), u32(0xA02))), kPib, kClientData});
  Bytes group = box(type::spgrContainer, {groupShape, inner});
  Bytes solver =
      box(type::solverContainer,
          {art(1, 0, type::connectorRule, fields(u32(1), u32(3073), u32(3074), u32(3075), u32(0), u32(0)))}, 1);
  Bytes stream = box(type::dgContainer, {art(0, 4, type::fdg, fields(u32(5), u32(3076))),
                                         box(type::spgrContainer, {patriarch, picture, comment, group}), solver});

  std::vector<KeptRecord> records() const {
    const auto end = [&](const Bytes& part) {
      return std::search(stream.begin(), stream.end(), part.begin(), part.end()) +
             static_cast<std::ptrdiff_t>(part.size());
    };
    const auto afterPicture = end(picture), afterText = end(comment), afterData = afterText - 8,
               afterGroup = end(groupShape), afterInner = end(inner);
    const auto piece = [&](auto from, auto to) { return KeptRecord{kMsoDrawing, {from, to}}; };
    return {piece(stream.begin(), afterPicture),
            {kObj, obj(8, 1)},
            piece(afterPicture, afterData),
            {kObj, obj(25, 9)},
            piece(afterData, afterText),
            {kTextObject, textHead(2)},
            {kContinue, fields(std::uint8_t{0}, 'H', 'i')},
            {kContinue, filled(16, 1)},
            piece(afterText, afterGroup),
            {kObj, obj(0, 3)},
            piece(afterGroup, afterInner),
            {kObj, obj(8, 4)},
            piece(afterInner, stream.end())};
  }
};

Drawing drawingOf(const std::vector<KeptRecord>& records) {
  Drawing drawing;
  drawing.read(views(records));
  return drawing;
}

TEST(Drawings, OfOtherProgramsComeBackRecordForRecord) {
  const auto records = Foreign().records();
  const Drawing drawing = drawingOf(records);
  EXPECT_EQ(recordsOf(drawing), records);
  EXPECT_EQ(recordsOf(Drawing(drawing)), records) << "a copy";
  EXPECT_EQ(drawing.id(), 4);
  EXPECT_EQ(drawing.shapeCount(), 5);
}

TEST(Drawings, TellTheirPicturesAndComments) {
  const Drawing drawing = drawingOf(Foreign().records());
  ASSERT_EQ(drawing.pictureCount(), 2u);
  const CellAnchor anchor{0, 1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(drawing.picture(0).id, 2);
  EXPECT_EQ(drawing.picture(0).anchor, anchor);
  EXPECT_EQ(drawing.picture(1).anchor, anchor) << "that of its group";
  ASSERT_NE(drawing.commentText(9), nullptr);
  EXPECT_EQ(*drawing.commentText(9), u"Hi");
  EXPECT_EQ(drawing.commentText(1), nullptr);
}

TEST(Drawings, KeepWhatWasThereWhenAPictureAndACommentAreAdded) {
  const Foreign foreign;
  Drawing drawing = drawingOf(foreign.records());
  drawing.addPicture(4096, {3, 9, 0, 9, 0, 9, 1, 9, 1}, 6);
  EXPECT_EQ(drawing.addComment(4097, {}, u"New", 5), 11) << "past every object's id";
  const auto records = recordsOf(drawing);
  const auto before = foreign.records();
  for (std::size_t i = 1; i + 1 < before.size(); ++i) EXPECT_EQ(records[i], before[i]) << i;
  const Drawing again = drawingOf(records);
  EXPECT_EQ(recordsOf(again), records);
  ASSERT_EQ(again.pictureCount(), 3u);
  EXPECT_EQ(again.picture(2).id, 6);
  EXPECT_EQ(again.picture(2).anchor, (CellAnchor{3, 9, 0, 9, 0, 9, 1, 9, 1}));
  EXPECT_EQ(*again.commentText(11), u"New");
  EXPECT_EQ(*again.commentText(9), u"Hi");
  EXPECT_EQ(again.shapeCount(), 7);
  EXPECT_EQ(records.back().body, foreign.solver) << "rules stay behind the shapes";
}

TEST(Drawings, OfASheetBeginWithThePatriarch) {
  Drawing drawing;
  EXPECT_FALSE(drawing.hasShapes());
  EXPECT_TRUE(recordsOf(drawing).empty());
  drawing.begin(1, 1024);
  drawing.addPicture(1025, {0, 1, 2, 3, 4, 5, 6, 7, 8}, 0);
  const auto records = recordsOf(drawing);
  ASSERT_EQ(records.size(), 2u);
  const Bytes patriarch =
      box(type::spContainer, {art(1, 0, type::fspgr, filled(16, 0)), art(2, 0, type::fsp, fields(u32(1024), u32(5)))});
  const Bytes picture =
      box(type::spContainer,
          {art(2, 75, type::fsp, fields(u32(1025), u32(0xA00))),
           art(3, 2, type::fopt, fields(u16(0x7F), u32(0x00800080), u16(0x4104), u32(1))),
           art(3, 0, type::secondaryFopt, {}), art(3, 0, type::tertiaryFopt, {}),
           art(0, 0, type::clientAnchorSheet,
               joined({fields(u16(0), u16(1), u16(2), u16(3), u16(4)), fields(u16(5), u16(6), u16(7), u16(8))})),
           kClientData});
  EXPECT_EQ(records[0].body, box(type::dgContainer, {art(0, 1, type::fdg, fields(u32(2), u32(1025))),
                                                     box(type::spgrContainer, {patriarch, picture})}));
  EXPECT_EQ(records[1].body, joined({fields(u16(21), u16(18), u16(8), u16(1), u16(0x6011)), filled(12, 0),
                                     fields(u16(7), u16(2), u16(0xFFFF), u16(8), u16(2), u16(1), u32(0))}));
}

// The example of docs/formats/drawings.md.
TEST(Drawings, OfTheFormatNotesAreTheseBytes) {
  const char example[] =
      "0F0002F0A6000000 100008F008000000 0200000001040000 0F0003F08E000000 0F0004F028000000 010009F010000000"
      "00000000000000000000000000000000 02000AF008000000 0004000005000000 0F0004F056000000 B2040AF008000000"
      "01040000000A0000 23000BF00C000000 7F0080008000 044101000000 030021F100000000 030022F100000000"
      "000010F012000000 000001000200030004000500060007000800 000011F000000000";
  Drawing drawing;
  drawing.begin(1, 1024);
  drawing.addPicture(1025, {0, 1, 2, 3, 4, 5, 6, 7, 8}, 0);
  const auto records = recordsOf(drawing);
  std::string hex;
  for (const std::byte b : records.front().body) {
    for (const unsigned digit : {std::to_integer<unsigned>(b) >> 4, std::to_integer<unsigned>(b) & 15}) {
      hex += "0123456789ABCDEF"[digit];
    }
  }
  std::string expected = example;
  std::erase(expected, ' ');
  EXPECT_EQ(hex, expected);
}

TEST(Drawings, EveryShapeHasAPieceOfItsOwnWithItsObjectBehindIt) {
  Drawing drawing;
  drawing.begin(1, 1024);
  drawing.addPicture(1025, {}, 0);
  drawing.addComment(1026, {}, u"A", 5);
  drawing.addComment(1027, {}, u"", 5);
  std::vector<std::uint16_t> ids;
  for (const KeptRecord& record : recordsOf(drawing)) ids.push_back(record.recordId);
  EXPECT_EQ(ids, (std::vector<std::uint16_t>{kMsoDrawing, kObj, kMsoDrawing, kObj, kMsoDrawing, kTextObject, kContinue,
                                             kContinue, kMsoDrawing, kObj, kMsoDrawing, kTextObject}));
}

TEST(Drawings, LoseARemovedPictureWithItsObject) {
  Drawing drawing = drawingOf(Foreign().records());
  drawing.removePicture(0);
  EXPECT_EQ(drawing.pictureCount(), 1u);
  drawing.removePicture(0);
  EXPECT_EQ(drawing.pictureCount(), 0u);
  for (const KeptRecord& record : recordsOf(drawing)) EXPECT_NE(record.body, obj(8, 1));
  const Drawing again = drawingOf(recordsOf(drawing));
  EXPECT_EQ(again.pictureCount(), 0u);
  EXPECT_EQ(again.shapeCount(), 3);
  EXPECT_EQ(*again.commentText(9), u"Hi");
}

TEST(Drawings, RenumberShapesWhereverTheyAreNamed) {
  Drawing drawing = drawingOf(Foreign().records());
  Drawing::ShapeIds renewed;
  for (const std::uint32_t id : {3072u, 3073u, 3074u, 3075u, 3076u}) renewed[id] = id + 10000;
  drawing.renumber(9, renewed);
  EXPECT_EQ(drawing.id(), 9);
  std::set<std::uint32_t> ids;
  drawing.forEachShapeId([&](std::uint32_t id) { ids.insert(id); });
  EXPECT_EQ(ids, (std::set<std::uint32_t>{13072, 13073, 13074, 13075, 13076}));
  EXPECT_EQ(
      recordsOf(drawing).back().body,
      box(type::solverContainer,
          {art(1, 0, type::connectorRule, fields(u32(1), u32(13073), u32(13074), u32(13075), u32(0), u32(0)))}, 1));
}

TEST(Drawings, ObjectsStayInTheirOrderWhereverAProgramPutThem) {
  // All shapes in one record, all objects behind it; and objects without any drawing.
  const Foreign foreign;
  std::vector<KeptRecord> records = {{kMsoDrawing, foreign.stream}};
  for (const KeptRecord& record : foreign.records()) {
    if (record.recordId != kMsoDrawing) records.push_back(record);
  }
  const auto objectsOf = [](const std::vector<KeptRecord>& all) {
    std::vector<KeptRecord> objects;
    for (const KeptRecord& record : all) {
      if (record.recordId != kMsoDrawing) objects.push_back(record);
    }
    return objects;
  };
  const Drawing drawing = drawingOf(records);
  EXPECT_EQ(objectsOf(recordsOf(drawing)), objectsOf(records));
  EXPECT_EQ(*drawing.commentText(9), u"Hi");
  EXPECT_EQ(recordsOf(drawingOf(objectsOf(records))), objectsOf(records));
}

TEST(Drawings, GoOnInTheContinuesBehindAnObject) {
  const Foreign foreign;
  std::vector<KeptRecord> records = foreign.records();
  for (std::size_t i = 1; i < records.size(); ++i) {
    if (records[i].recordId == kMsoDrawing) records[i].recordId = kContinue;
  }
  EXPECT_EQ(recordsOf(drawingOf(records)), foreign.records());
}

TEST(Drawings, ThatLieAreRefused) {
  const auto refused = [](const std::vector<KeptRecord>& records) { return refusal([&] { drawingOf(records); }); };
  const Bytes stream = Foreign().stream;
  EXPECT_EQ(refused({{kMsoDrawing, filled(7, 0)}}), "MsoDrawing size is incorrect");
  EXPECT_EQ(refused({{kMsoDrawing, joined({stream, filled(1, 0)})}}), "MsoDrawing size is incorrect");
  EXPECT_EQ(refused({{kMsoDrawing, box(type::dggContainer, {})}}), "MsoDrawing size is incorrect");
  EXPECT_EQ(refused({{kMsoDrawing, art(0xF, 0, type::dgContainer, {}, 8)}}), "OfficeArtDgContainer: file is corrupt");
  for (std::size_t size = 1; size < stream.size(); ++size) {
    const Bytes cut(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_NE(refused({{kMsoDrawing, cut}}), "nothing was refused") << size;
  }
  EXPECT_EQ(refused({{kObj, filled(4, 0)}}), "error in record Obj");
  EXPECT_EQ(refused({{kTextObject, textHead(9)}}), "error in record TextObject");
}

TEST(Drawings, AnchorsMoveAsTheyAreTold) {
  Drawing drawing = drawingOf(Foreign().records());
  int anchors = 0, comments = 0;
  const bool changed = drawing.moveAnchors([&](CellAnchor& anchor, bool isComment) {
    ++anchors;
    comments += isComment ? 1 : 0;
    if (isComment) anchor.colL = 77;
    return isComment;
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(anchors, 3);
  EXPECT_EQ(comments, 1);
  EXPECT_FALSE(drawing.moveAnchors([](CellAnchor&, bool) { return false; }));
}

TEST(Objects, TheirIdsGoOnInTheGapsWhereTheLastIsTaken) {
  std::vector<KeptRecord> records = {{kObj, obj(5, 0xFFFF)}, {kObj, obj(5, 2)}};
  Drawing drawing = drawingOf(records);
  drawing.begin(1, 1024);
  EXPECT_EQ(drawing.addComment(1025, {}, u"a", 5), 1);
  EXPECT_EQ(drawing.addComment(1026, {}, u"b", 5), 3);
}

}  // namespace
}  // namespace rubrica::officeart::test
