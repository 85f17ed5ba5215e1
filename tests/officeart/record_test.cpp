// The record classes by their header rules, and what becomes of records that lie.
#include "tests/officeart/art_fixture.h"

namespace rubrica::officeart::test {
namespace {

const Bytes kFdg = art(0, 7, type::fdg, fields(u32(3), u32(1026)));
const Bytes kFsp = art(2, 75, type::fsp, fields(u32(1025), u32(0xA00)));

TEST(HeaderRules, AreFollowedByEveryFixedRecord) {
  const auto fdg = readAs<OfficeArtFDG>(kFdg);
  EXPECT_EQ(fdg->recInstance(), 7);
  EXPECT_EQ(fdg->csp, 3u);
  EXPECT_EQ(fdg->spidCur, 1026u);
  EXPECT_EQ(written(*fdg), kFdg);
  const auto fsp = readAs<OfficeArtFSP>(kFsp);
  EXPECT_EQ(fsp->recInstance(), 75);
  EXPECT_EQ(fsp->spid, 1025u);
  EXPECT_EQ(written(*fsp), kFsp);
  for (const Bytes& bytes : {art(1, 0, type::fspgr, filled(16, 3)), art(0, 0, type::childAnchor, filled(16, 4))}) {
    EXPECT_EQ(bytes[2] == std::byte{0x09} ? written(*readAs<OfficeArtFSPGR>(bytes))
                                          : written(*readAs<OfficeArtChildAnchor>(bytes)),
              bytes);
  }
}

TEST(HeaderRules, ADrawingHeadOfTwelveBytesFailsItsCheck) {
  EXPECT_EQ(refusalOf<OfficeArtFDG>(art(0, 1, type::fdg, filled(12, 0))), "error in record OfficeArtFDG");
}

TEST(HeaderRules, CompareOnlyTheFieldsOfTheirMask) {
  EXPECT_EQ(readAs<OfficeArtFDG>(art(0, 4000, type::fdg, filled(8, 1)))->recInstance(), 4000);
  EXPECT_EQ(refusalOf<OfficeArtFDG>(art(1, 0, type::fdg, filled(8, 1))), "error in record OfficeArtFDG");
  EXPECT_EQ(refusalOf<OfficeArtFDG>(art(0, 0, type::fsp, filled(8, 1))), "error in record OfficeArtFDG");
  EXPECT_EQ(refusalOf<OfficeArtFSPGR>(art(1, 1, type::fspgr, filled(16, 0))), "error in record OfficeArtFSPGR");
  EXPECT_EQ(written(*readAs<OfficeArtDgContainer>(art(3, 0, type::dgContainer, {}))), art(3, 0, type::dgContainer, {}));
  EXPECT_EQ(refusalOf<OfficeArtDgContainer>(art(0xF, 1, type::dgContainer, {})),
            "OfficeArtDgContainer: file is corrupt");
  EXPECT_EQ(refusalOf<OfficeArtDggContainer>(art(0xE, 0, type::dggContainer, {})),
            "error in record OfficeArtDggContainer");
  EXPECT_EQ(readAs<OfficeArtBStoreContainer>(art(1, 77, type::bStoreContainer, {}))->recInstance(), 77);
}

TEST(HeaderRules, StandOnceForEachType) {
  for (const HeaderRule& rule : kHeaderRules) EXPECT_EQ(&ruleOf(rule.recType), &rule) << rule.recType;
}

TEST(Containers, KeepTheOrderAndTheUnknown) {
  const Bytes unknown = art(5, 9, 0xF0AA, filled(11, 0xEE)), empty = art(0, 0, 0xF199, {});
  const Bytes bytes = box(type::dgContainer,
                          {unknown, kFdg, empty, box(type::spgrContainer, {box(type::spContainer, {kFsp, unknown})})});
  const auto drawing = readAs<OfficeArtDgContainer>(bytes);
  EXPECT_EQ(written(*drawing), bytes);
  EXPECT_EQ(drawing->children.size(), 4u);
  EXPECT_NE(drawing->find<OfficeArtFDG>(), nullptr);
  EXPECT_EQ(drawing->size() + kHeaderSize, bytes.size());
}

TEST(Containers, ARecordThatExceedsItsContainerIsRefusedWithTheContainersMessage) {
  const Bytes tooLong = art(0, 0, 0xF0AA, filled(4, 0), 5), cut = filled(7, 0);
  for (const Bytes& bad : {tooLong, cut, art(0, 0, 0xF0AA, {}, 0xFFFFFFFF)}) {
    EXPECT_EQ(refusalOf<OfficeArtDggContainer>(box(type::dggContainer, {bad})),
              "error in record OfficeArtDggContainer");
    EXPECT_EQ(refusalOf<OfficeArtDgContainer>(box(type::dgContainer, {bad})), "OfficeArtDgContainer: file is corrupt");
    EXPECT_EQ(refusalOf<OfficeArtBStoreContainer>(box(type::bStoreContainer, {bad})),
              "OfficeArtBStoreContainer: file is corrupt");
    EXPECT_EQ(refusalOf<OfficeArtSpgrContainer>(box(type::spgrContainer, {bad})),
              "error in record OfficeArtSpgrContainer");
    EXPECT_EQ(refusalOf<OfficeArtSolverContainer>(box(type::solverContainer, {bad})),
              "error in record OfficeArtSolverContainer");
  }
}

TEST(Containers, GroupsInGroupsWithoutEndAreRefused) {
  const auto nested = [](int depth) {
    Bytes bytes;
    for (int i = 0; i < depth; ++i) bytes = box(type::spgrContainer, {bytes});
    return bytes;
  };
  const Bytes honest = nested(RecordReader::kMostNested);
  EXPECT_EQ(written(*readAs<OfficeArtSpgrContainer>(honest)), honest);
  EXPECT_EQ(refusalOf<OfficeArtSpgrContainer>(nested(RecordReader::kMostNested + 2)),
            "error in record OfficeArtSpgrContainer");
  // Headers alone, each of which says that the rest is inside it.
  Bytes endless;
  for (std::uint32_t left = 800000; left >= kHeaderSize; left -= kHeaderSize) {
    const Bytes header = art(0xF, 0, type::spgrContainer, {}, static_cast<long>(left - kHeaderSize));
    endless.insert(endless.end(), header.begin(), header.end());
  }
  EXPECT_EQ(refusalOf<OfficeArtSpgrContainer>(endless), "error in record OfficeArtSpgrContainer");
}

TEST(PropertyTables, KeepEntriesAndTheirData) {
  const Bytes bytes = art(
      3, 3, type::fopt, fields(u16(0x4104), u32(2), u16(0xC105), u32(4), u16(0x00BF), u32(0x80008), u16('a'), u16(0)));
  const auto options = readAs<OfficeArtFOPT>(bytes);
  EXPECT_EQ(written(*options), bytes);
  ASSERT_EQ(options->table.entries.size(), 3u);
  EXPECT_TRUE(options->table.entries[0].id.isBlip());
  EXPECT_FALSE(options->table.entries[0].id.isComplex());
  EXPECT_TRUE(options->table.entries[1].id.isComplex());
  EXPECT_EQ(options->table.value(property::pib), 2u);
  EXPECT_EQ(options->table.value(0x105), std::nullopt) << "the value of a complex entry is a length";
  const Bytes tertiary = art(3, 0, type::tertiaryFopt, {}), secondary = art(3, 0, type::secondaryFopt, {});
  EXPECT_EQ(written(*readAs<OfficeArtTertiaryFOPT>(tertiary)), tertiary);
  EXPECT_EQ(written(*readAs<OfficeArtSecondaryFOPT>(secondary)), secondary);
}

TEST(PropertyTables, ThatExceedTheirRecordAreRefused) {
  EXPECT_EQ(refusalOf<OfficeArtFOPT>(art(3, 2, type::fopt, fields(u16(1), u32(2)))), "error in OfficeArtFOPTEOPID");
  EXPECT_EQ(refusalOf<OfficeArtFOPT>(art(3, 4095, type::fopt, {})), "error in OfficeArtFOPTEOPID");
  EXPECT_EQ(refusalOf<OfficeArtFOPT>(art(3, 1, type::fopt, filled(5, 0))), "error in record OfficeArtRGFOPTE (1)");
  EXPECT_EQ(refusalOf<OfficeArtFOPT>(art(3, 1, type::fopt, fields(u16(0x8105), u32(1)))),
            "error in record OfficeArtRGFOPTE (2)");
  EXPECT_EQ(refusalOf<OfficeArtFOPT>(
                art(3, 2, type::fopt, fields(u16(0x8105), u32(0xFFFFFFFF), u16(0x8106), u32(0xFFFFFFFF), u32(0)))),
            "error in record OfficeArtRGFOPTE (2)");
}

TEST(GroupRecords, ReadAndWriteTheSameBytes) {
  const Bytes ids =
      art(0, 0, type::fdggBlock, fields(u32(2050), u32(3), u32(5), u32(2), u32(1), u32(3), u32(2), u32(2)));
  const auto block = readAs<OfficeArtFDGGBlock>(ids);
  ASSERT_EQ(block->clusters.size(), 2u);
  EXPECT_EQ(block->clusters[1].dgid, 2u);
  EXPECT_EQ(block->cdgSaved, 2u);
  EXPECT_EQ(written(*block), ids);
  const Bytes colors = art(0, 2, type::colorMruContainer, filled(8, 1)),
              menu = art(0, 4, type::splitMenuColors, filled(16, 2));
  EXPECT_EQ(written(*readAs<OfficeArtColorMRUContainer>(colors)), colors);
  EXPECT_EQ(written(*readAs<OfficeArtSplitMenuColorContainer>(menu)), menu);
  const Bytes regroup = art(0, 3, type::fritContainer, filled(12, 7));
  EXPECT_EQ(written(*readAs<OfficeArtFRITContainer>(regroup)), regroup);
  const Bytes selected = art(0, 0, type::fdgsl, filled(20, 7));
  EXPECT_EQ(written(*readAs<OfficeArtFDGSL>(selected)), selected);
  const Bytes deleted = art(0, 0, type::fpspl, filled(4, 7));
  EXPECT_EQ(written(*readAs<OfficeArtFPSPL>(deleted)), deleted);
  const Bytes connector = art(1, 0, type::connectorRule, filled(24, 9)), arc = art(0, 0, type::arcRule, filled(8, 9)),
              callout = art(0, 0, type::calloutRule, filled(8, 8));
  const Bytes solver = box(type::solverContainer, {connector, arc, callout}, 3);
  EXPECT_EQ(written(*readAs<OfficeArtSolverContainer>(solver)), solver);
}

TEST(GroupRecords, WithCountsThatTheirBytesDontHoldAreRefused) {
  EXPECT_EQ(refusalOf<OfficeArtFDGGBlock>(art(0, 0, type::fdggBlock, filled(15, 0))),
            "error in record OfficeArtFDGGBlock");
  EXPECT_EQ(
      refusalOf<OfficeArtFDGGBlock>(art(0, 0, type::fdggBlock, fields(u32(1), u32(3), u32(0), u32(0), u32(1), u32(1)))),
      "error in record OfficeArtFDGGBlock");
  EXPECT_EQ(refusalOf<OfficeArtFDGGBlock>(art(0, 0, type::fdggBlock, fields(u32(1), u32(0xFFFFFFFF), u32(0), u32(0)))),
            "error in record OfficeArtFDGGBlock");
  EXPECT_EQ(refusalOf<OfficeArtFRITContainer>(art(0, 3, type::fritContainer, filled(8, 0))),
            "error in record OfficeArtFRITContainer");
  EXPECT_EQ(refusalOf<OfficeArtFDGSL>(art(0, 0, type::fdgsl, filled(11, 0))), "error in record OfficeArtFDGSL");
  EXPECT_EQ(refusalOf<OfficeArtFDGSL>(art(0, 0, type::fdgsl, filled(13, 0))), "error in record OfficeArtFDGSL");
  EXPECT_EQ(refusalOf<OfficeArtFPSPL>(art(0, 0, type::fpspl, filled(5, 0))), "error in record OfficeArtFPSPL");
}

}  // namespace
}  // namespace rubrica::officeart::test
