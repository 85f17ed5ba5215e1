#include "xml/table_tree.h"

#include "engine/xlerror.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/table.h"
#include "tests/xml/trees/xml_text.h"

namespace rubrica::test {
namespace {

template <class Root>
class Tables : public testing::Test {
 protected:
  Root root;
  void SetUp() override {
    const bool isStrict = std::is_same_v<Root, strict::c_table>;
    fill(root,
         std::string("<table xmlns=\"") + (isStrict ? kStrictMain : kMain) +
             "\" id=\"1\" name=\"Sales\" displayName=\"Shown\" ref=\"B3:D9\" totalsRowCount=\"1\">"
             "<autoFilter ref=\"B3:D8\"><filterColumn colId=\"2\"><top10 val=\"5\"/></filterColumn></autoFilter>"
             "<tableColumns count=\"3\"><tableColumn id=\"1\" name=\"a\"/><tableColumn id=\"4\" name=\"Column4\"/>"
             "<tableColumn id=\"3\" name=\"c\"/></tableColumns></table>");
  }
  TableMove apply(LineMove::Axis axis, LineMove::Kind kind, int first, int last) {
    return moveTable(root, {kXlsxGrid, axis, kind, first, last});
  }
  std::string names() {
    std::string text;
    for (std::size_t i = 0; i < root.get_tableColumns().size_tableColumn(); ++i) {
      text += root.get_tableColumns().get_tableColumn(i).get_name() + ' ';
    }
    return text;
  }
};
using TableRoots = testing::Types<table::c_table, strict::c_table>;
TYPED_TEST_SUITE(Tables, TableRoots);

constexpr auto kRows = LineMove::Axis::rows, kCols = LineMove::Axis::columns;
constexpr auto kInsert = LineMove::Kind::insert, kRemove = LineMove::Kind::remove;

TYPED_TEST(Tables, TellWhereTheyStand) {
  const TableInfo info = tableInfo(this->root);
  EXPECT_EQ(info.name, "Sales");
  EXPECT_EQ(info.range, (SheetRange{2, 8, 1, 3}));
  EXPECT_EQ(info.headerRowCount, 1);
  EXPECT_EQ(info.totalsRowCount, 1);
  this->root.unset_name();
  EXPECT_EQ(tableInfo(this->root).name, "Shown");
  this->root.set_ref("B3");
  EXPECT_EQ(tableInfo(this->root).range, (SheetRange{2, 2, 1, 1}));
  this->root.set_ref("here");
  EXPECT_THROW(tableInfo(this->root), xlerror);
}

TYPED_TEST(Tables, GrowAndShrinkWithTheirRows) {
  EXPECT_TRUE(this->apply(kRows, kInsert, 4, 5).newHeaders.empty());
  EXPECT_EQ(this->root.get_ref(), "B3:D11");
  EXPECT_EQ(this->root.get_autoFilter().get_ref(), "B3:D10");
  this->apply(kRows, kRemove, 0, 0);
  EXPECT_EQ(this->root.get_ref(), "B2:D10");
  EXPECT_EQ(this->names(), "a Column4 c ");
}

TYPED_TEST(Tables, NameTheColumnsThatComeIn) {
  const TableMove moved = this->apply(kCols, kInsert, 2, 3);
  EXPECT_EQ(this->root.get_ref(), "B3:F9");
  EXPECT_EQ(this->names(), "a Column5 Column6 Column4 c ") << "no name twice";
  ASSERT_EQ(moved.newHeaders.size(), 2U);
  EXPECT_EQ(moved.newHeaders[0].row, 2);
  EXPECT_EQ(moved.newHeaders[0].col, 2);
  EXPECT_EQ(moved.newHeaders[1].name, "Column6");
  EXPECT_EQ(this->root.get_tableColumns().get_count(), 5U);
  EXPECT_EQ(this->root.get_autoFilter().get_filterColumn(0).get_colId(), 4U);
}

TYPED_TEST(Tables, MoveAsAWholeWithoutNewColumns) {
  EXPECT_TRUE(this->apply(kCols, kInsert, 1, 1).newHeaders.empty());
  EXPECT_EQ(this->root.get_ref(), "C3:E9");
  EXPECT_EQ(this->names(), "a Column4 c ");
  this->apply(kCols, kInsert, 5, 5);
  EXPECT_EQ(this->root.get_ref(), "C3:E9");
}

TYPED_TEST(Tables, LoseTheColumnsThatGo) {
  this->apply(kCols, kRemove, 0, 1);
  EXPECT_EQ(this->root.get_ref(), "A3:B9");
  EXPECT_EQ(this->names(), "Column4 c ");
  EXPECT_EQ(this->root.get_tableColumns().get_count(), 2U);
  EXPECT_FALSE(this->apply(kCols, kRemove, 0, 5).isLeft);
}

TYPED_TEST(Tables, WithoutTheirHeaderRowHaveNoFilter) {
  this->apply(kRows, kRemove, 2, 2);
  EXPECT_EQ(this->root.get_ref(), "B3:D8");
  EXPECT_EQ(this->root.get_headerRowCount(), 0U);
  EXPECT_FALSE(this->root.isset_autoFilter());
  this->apply(kRows, kRemove, 7, 7);
  EXPECT_EQ(this->root.get_totalsRowCount(), 0U);
  EXPECT_EQ(this->root.get_ref(), "B3:D7");
}

}  // namespace
}  // namespace rubrica::test
