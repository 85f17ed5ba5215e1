#include <memory>

#include <gtest/gtest.h>

#include "tests/lmx/sample_module.h"

namespace rubrica::lmx {
namespace {

using namespace sample;

const class_descriptor& kLeafType = c_CT_Leaf().descriptor();

c_CT_Leaf& leaf_of(const owned& child) {
  return *child.as<c_CT_Leaf>();
}

TEST(ObjectArena, ObjectsOutliveIt) {
  std::vector<owned> children;
  {
    object_arena arena;
    // More than one slab holds.
    for (std::uint32_t i = 0; i < 1000; ++i) {
      leaf_of(children.emplace_back(make_owned(kLeafType, arena))).f.id = i;
      leaf_of(children.back()).f.name = std::string(40, 'x');
    }
  }
  for (std::uint32_t i = 0; i < 1000; ++i) {
    EXPECT_EQ(leaf_of(children[i]).f.id, i);
    EXPECT_EQ(leaf_of(children[i]).f.name.size(), 40U);
  }
}

TEST(ObjectArena, ObjectsGoInAnyOrder) {
  std::vector<owned> children;
  {
    object_arena arena;
    for (int i = 0; i < 300; ++i) children.push_back(make_owned(kLeafType, arena));
  }
  for (std::size_t step : {7U, 3U, 2U}) {
    for (std::size_t i = 0; i < children.size(); i += step) children[i].reset();
  }
  leaf_of(children[1]).f.name = "still there";
  EXPECT_EQ(leaf_of(children[1]).f.name, "still there");
}

TEST(ObjectArena, ADroppedObjectsRoomIsUsedForTheNext) {
  object_arena arena;
  const owned kept = make_owned(kLeafType, arena);
  owned child = make_owned(kLeafType, arena);
  const object* const room = child.get();
  for (int i = 0; i < 10'000; ++i) {
    child.reset();
    child = make_owned(kLeafType, arena);
    ASSERT_EQ(child.get(), room);
  }
}

TEST(ObjectArena, ChildrenMoveCopyAndSwapLikeThoseOfTheHeap) {
  object_arena arena;
  owned child = make_owned(kLeafType, arena);
  leaf_of(child).f.name = "first";
  owned copied = child;
  ASSERT_NE(copied.get(), child.get());
  EXPECT_EQ(leaf_of(copied).f.name, "first");
  leaf_of(copied).f.name = "second";
  child.swap(copied);
  EXPECT_EQ(leaf_of(child).f.name, "second");
  owned moved = std::move(copied);
  EXPECT_EQ(leaf_of(moved).f.name, "first");
  EXPECT_FALSE(copied);  // NOLINT(bugprone-use-after-move): emptied by the move
  child = moved;
  EXPECT_EQ(leaf_of(child).f.name, "first");
  EXPECT_EQ(&moved.need<c_CT_Leaf>(), moved.get());
  moved.reset();
  EXPECT_FALSE(moved);
  EXPECT_TRUE(moved.need<c_CT_Leaf>().f.name.empty());
}

class c_Large final : public object {
 public:
  object* clone() const override { return new c_Large(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return this; }
  char text[object_arena::kLargestObject] = {};
};

constexpr class_descriptor kLargeType{.name = "Large", .construct = &construct<c_Large>, .size = sizeof(c_Large)};

const class_descriptor& c_Large::descriptor() const {
  return kLargeType;
}

TEST(ObjectArena, ALargeObjectStandsElsewhere) {
  object_arena arena;
  const owned before = make_owned(kLeafType, arena);
  const owned large = make_owned(kLargeType, arena);
  const owned behind = make_owned(kLeafType, arena);
  EXPECT_LT(static_cast<const char*>(static_cast<const void*>(behind.get())) -
                static_cast<const char*>(static_cast<const void*>(before.get())),
            static_cast<std::ptrdiff_t>(sizeof(c_CT_Leaf)) + 8);
}

TEST(Descriptors, CreateObjectsForDelete) {
  const std::unique_ptr<object> leaf(kLeafType.create());
  EXPECT_EQ(static_cast<const c_CT_Leaf&>(*leaf).f.state, "visible");
}

}  // namespace
}  // namespace rubrica::lmx
