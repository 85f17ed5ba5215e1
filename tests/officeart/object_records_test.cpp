// Obj and TextObject: every form comes back byte for byte, and what is cut short is refused.
#include "officeart/object_records.h"

#include "tests/officeart/art_fixture.h"

namespace rubrica::officeart::test {
namespace {

Bytes cmo(unsigned objectType, unsigned id) {
  return joined({fields(u16(21), u16(18), u16(objectType), u16(id), u16(0x6011)), filled(12, 0x33)});
}
Bytes part(unsigned ft, std::size_t size) {
  return joined({fields(u16(ft), u16(static_cast<unsigned>(size))), filled(size, 0x44)});
}
const Bytes kEnd = fields(u16(0), u16(0));

template <class Object>
std::vector<KeptRecord> rewritten(std::uint16_t recordId, const Bytes& body, const std::vector<Bytes>& continues = {}) {
  RecordRun run{recordId, body, {continues.begin(), continues.end()}};
  Object object;
  object.read(run);
  Keeper keeper;
  object.clone()->write(keeper);
  return keeper.kept;
}
void expectSame(const Bytes& body) {
  EXPECT_EQ(rewritten<Obj>(kObj, body), (std::vector<KeptRecord>{{kObj, body}}));
}
std::string refusalOfObj(const Bytes& body) {
  return refusal([&] { rewritten<Obj>(kObj, body); });
}

TEST(Objects, OfEveryTypeComeBackByteForByte) {
  expectSame(joined({cmo(0, 1), part(6, 2), kEnd}));
  expectSame(joined({cmo(5, 2), kEnd}));
  expectSame(joined({cmo(8, 3), part(7, 2), part(8, 2), part(4, 6), part(9, 30), kEnd}));
  expectSame(joined({cmo(8, 3), part(7, 2), kEnd}));
  expectSame(joined({cmo(11, 4), part(10, 12), part(4, 4), part(20, 10), part(18, 8), kEnd}));
  expectSame(joined({cmo(12, 5), part(10, 12), part(11, 6), part(20, 6), part(18, 8), part(17, 4), kEnd}));
  expectSame(joined({cmo(13, 6), part(16, 8), kEnd}));
  expectSame(joined({cmo(16, 7), part(12, 20), part(14, 6), kEnd}));
  expectSame(joined({cmo(18, 8), part(12, 20), fields(u16(19), u16(0x1FEE), u16(0)), filled(40, 1)}));
  expectSame(joined({cmo(20, 9), part(12, 20), fields(u16(19), u16(0))}));
  expectSame(joined({cmo(19, 10), part(15, 6), kEnd}));
  expectSame(joined({cmo(25, 11), part(13, 22), kEnd}));
  expectSame(joined({cmo(25, 11), kEnd}));
  expectSame(joined({cmo(8, 12), kEnd, filled(9, 7)}));
}

TEST(Objects, ThatEndEarlyStayShort) {
  expectSame(cmo(25, 1));
  expectSame(cmo(8, 1));
  expectSame(joined({cmo(11, 1), part(10, 12)}));
  expectSame(joined({cmo(30, 1), filled(3, 1)}));
  expectSame(joined({cmo(30, 1), part(99, 4), filled(30, 5)}));
}

TEST(Objects, CutWithinASubrecordAreRefusedWithItsMessage) {
  EXPECT_EQ(refusalOfObj({}), "error in record Obj");
  EXPECT_EQ(refusalOfObj(filled(21, 0)), "error in record Obj");
  struct Case {
    unsigned objectType, ft;
    const char* message;
  };
  for (const Case& test : {Case{8, 4, "error in record FtMacro"}, Case{8, 9, "error in record FtPictFmla"},
                           Case{11, 18, "error in record FtCblsData"}, Case{12, 17, "error in record FtRboData"},
                           Case{13, 16, "error in record FtEdoData"}, Case{19, 15, "error in record FtGboData"},
                           Case{11, 20, "error in record ObjLinkFmla"}, Case{16, 14, "error in record ObjLinkFmla"},
                           Case{25, 13, "error in record Obj"}, Case{8, 7, "error in record Obj"}}) {
    Bytes bytes = joined({cmo(test.objectType, 1), part(test.ft, 8)});
    bytes.pop_back();
    EXPECT_EQ(refusalOfObj(bytes), test.message);
  }
  EXPECT_EQ(refusalOfObj(joined({cmo(18, 1), fields(u16(19), u16(8), u16(100))})), "error in record FtLbsData");
}

TEST(Objects, OfANewCommentHaveTheNoteStructure) {
  Keeper keeper;
  Obj::ofNote(7)->write(keeper);
  const Bytes expected = joined({fields(u16(21), u16(18), u16(25), u16(7), u16(0x4011)), filled(12, 0),
                                 fields(u16(13), u16(22), u16(21500), u16(47652), u16(50954), u16(17214), u16(19379),
                                        u16(57508), u16(57547), u16(39084), u16(0), u32(16)),
                                 kEnd});
  EXPECT_EQ(keeper.kept, (std::vector<KeptRecord>{{kObj, expected}}));
}

Bytes textHead(unsigned cch, unsigned runs, const Bytes& formula = fields(u16(0))) {
  return joined({fields(u16(530), u16(0)), filled(6, 9), fields(u16(cch), u16(runs), u16(0)), formula});
}
Bytes narrow(std::string_view text) {
  Bytes bytes = filled(1, 0);
  for (const char c : text) bytes.push_back(static_cast<std::byte>(c));
  return bytes;
}

TEST(TextObjects, ComeBackWithTheirTextAndRuns) {
  const std::vector<Bytes> parts = {narrow("Hel"), joined({filled(1, 1), fields(u16('l'), u16(0x416))}), filled(16, 2)};
  const Bytes head = textHead(5, 16);
  TextObject object;
  object.read({kTextObject, head, {parts.begin(), parts.end()}});
  EXPECT_EQ(object.text(), u"Hell\u0416");
  EXPECT_EQ(rewritten<TextObject>(kTextObject, head, parts),
            (std::vector<KeptRecord>{
                {kTextObject, head}, {kContinue, parts[0]}, {kContinue, parts[1]}, {kContinue, parts[2]}}));
  const Bytes withFormula = textHead(0, 0, fields(u16(3), u16(1), std::uint8_t{2}));
  EXPECT_EQ(rewritten<TextObject>(kTextObject, withFormula).front().body, withFormula);
}

TEST(TextObjects, TakeOnlyTheContinuesThatAreTheirs) {
  const std::vector<Bytes> parts = {narrow("Hello"), filled(8, 2), filled(8, 2), filled(8, 3)};
  const std::vector<ByteView> views(parts.begin(), parts.end());
  EXPECT_EQ(TextObject::continuesOf(textHead(5, 16), views), 3u);
  EXPECT_EQ(TextObject::continuesOf(textHead(5, 0), views), 1u);
  EXPECT_EQ(TextObject::continuesOf(textHead(0, 16), views), 0u);
}

TEST(TextObjects, CutShortAreRefused) {
  const auto refused = [](const Bytes& head, const std::vector<Bytes>& parts) {
    return refusal([&] { rewritten<TextObject>(kTextObject, head, parts); });
  };
  const char message[] = "error in record TextObject";
  EXPECT_EQ(refused(filled(17, 0), {}), message);
  EXPECT_EQ(refused(textHead(0, 0, fields(u16(3), u16(0))), {}), message);
  EXPECT_EQ(refused(textHead(3, 16), {narrow("ab"), filled(16, 0)}), "nothing was refused") << "a flag and characters";
  EXPECT_EQ(refused(textHead(65535, 16), {narrow("ab")}), message);
  EXPECT_EQ(refusal([] { TextObject::continuesOf(textHead(65535, 16), {}); }), message);
}

TEST(TextObjects, OfANewCommentHaveOneRunAndAClosingOne) {
  Keeper keeper;
  TextObject::ofNote(u"Hi", 5)->write(keeper);
  ASSERT_EQ(keeper.kept.size(), 3u);
  EXPECT_EQ(keeper.kept[0].body,
            joined({fields(u16(530), u16(0)), filled(6, 0), fields(u16(2), u16(16), u16(0), u16(0))}));
  EXPECT_EQ(keeper.kept[1].body, joined({filled(1, 1), fields(u16('H'), u16('i'))}));
  EXPECT_EQ(keeper.kept[2].body, fields(u16(0), u16(5), u16(0), u16(0), u16(2), u16(0), u16(0), u16(0)));
  Keeper empty;
  TextObject::ofNote(u"", 5)->write(empty);
  EXPECT_EQ(empty.kept.size(), 1u) << "no text, nothing behind";
}

TEST(TextObjects, LongTextsGoOnInRecordsOfAtMost8223Bytes) {
  for (const std::size_t size : {4110, 4111, 4112, 8223, 65535}) {
    const std::u16string text(size, u'\u00E9');
    const auto object = TextObject::ofNote(text, 5);
    Keeper keeper;
    object->write(keeper);
    std::vector<ByteView> parts;
    for (std::size_t i = 1; i < keeper.kept.size(); ++i) {
      EXPECT_LE(keeper.kept[i].body.size(), 8223u);
      parts.emplace_back(keeper.kept[i].body);
    }
    EXPECT_EQ(parts.size(), (size + 4110) / 4111 + 1) << size;
    EXPECT_EQ(TextObject::continuesOf(keeper.kept[0].body, parts), parts.size());
    TextObject again;
    again.read({kTextObject, keeper.kept[0].body, parts});
    EXPECT_EQ(again.text(), text);
  }
  EXPECT_EQ(refusal([] { TextObject::ofNote(std::u16string(65536, u'x'), 5); }), "string is too long");
}

}  // namespace
}  // namespace rubrica::officeart::test
