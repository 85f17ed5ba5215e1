#include "xml/auto_filter.h"

#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/table.h"
#include "tests/xml/trees/xml_text.h"
#include "xml/filter_moves.h"

namespace rubrica::test {
namespace {

// Filters of a sheet and of a table, in both flavours.
template <class Owner>
struct Filtered {
  Owner owner;
  LastMessage last;
  XMLAutoFilterT<Owner> filter{owner, last};
  std::string message() const { return last.message(); }
};

template <class Owner>
class AutoFilters : public testing::Test {
 protected:
  Filtered<Owner> sheet;
};

using Owners = testing::Types<sheet::c_worksheet, strict::c_worksheet, table::c_table, strict::c_table>;
TYPED_TEST_SUITE(AutoFilters, Owners);

TYPED_TEST(AutoFilters, WithoutARefHaveNoColumns) {
  auto& [owner, last, filter] = this->sheet;
  EXPECT_FALSE(filter.getRef(nullptr, nullptr, nullptr, nullptr));
  EXPECT_STREQ(last.message(), "ref is not found");
  EXPECT_EQ(filter.column(0), nullptr);
  EXPECT_STREQ(last.message(), "ref is not found");
  EXPECT_FALSE(owner.isset_autoFilter()) << "asking makes nothing";
}

TYPED_TEST(AutoFilters, GiveTheRangeThatWasSet) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(2, 9, 1, 3);
  EXPECT_STREQ(last.message(), "ok");
  EXPECT_EQ(owner.get_autoFilter().get_ref(), "B3:D10");
  int r1 = -1, r2 = -1, c1 = -1, c2 = -1;
  EXPECT_TRUE(filter.getRef(&r1, &r2, &c1, &c2));
  EXPECT_EQ(std::tie(r1, r2, c1, c2), std::make_tuple(2, 9, 1, 3));
}

TYPED_TEST(AutoFilters, OfOneCellBeginAndEndThere) {
  auto& [owner, last, filter] = this->sheet;
  owner.get_autoFilter().set_ref("B3");
  int r1 = -1, r2 = -1, c1 = -1, c2 = -1;
  EXPECT_TRUE(filter.getRef(&r1, &r2, &c1, &c2));
  EXPECT_EQ(std::tie(r1, r2, c1, c2), std::make_tuple(2, 2, 1, 1));
}

TYPED_TEST(AutoFilters, WithARefOfAnotherFormSaySo) {
  auto& [owner, last, filter] = this->sheet;
  for (const char* ref : {"", "A:B", "B3:", "nonsense", "A1:B2 C3"}) {
    owner.get_autoFilter().set_ref(ref);
    EXPECT_FALSE(filter.getRef(nullptr, nullptr, nullptr, nullptr)) << ref;
    EXPECT_STREQ(last.message(), "ref has unrecognized format");
  }
}

TYPED_TEST(AutoFilters, PlacesOutsideTheSheetAreNoRange) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 1048576, 0, 0);
  EXPECT_STREQ(last.message(), "row must be in range 0-1048575");
  EXPECT_FALSE(owner.isset_autoFilter());
}

TYPED_TEST(AutoFilters, MakeEachColumnOnce) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 2);
  auto* column = filter.column(0);
  ASSERT_NE(column, nullptr);
  EXPECT_EQ(filter.column(0), column);
  EXPECT_EQ(owner.get_autoFilter().size_filterColumn(), 1U);
  EXPECT_EQ(column->index(), 0);
  EXPECT_NE(filter.column(2), nullptr);
  EXPECT_EQ(filter.column(3), nullptr);
  EXPECT_STREQ(last.message(), "index is out of range");
  EXPECT_EQ(filter.column(-1), nullptr);
  EXPECT_STREQ(last.message(), "index is out of range");
  EXPECT_EQ(filter.columnSize(), 2);
  EXPECT_STREQ(last.message(), "ok");
}

TYPED_TEST(AutoFilters, CountTheColumnsThatWereAskedFor) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 4);
  for (const std::uint32_t colId : {4U, 0U, 2U}) owner.get_autoFilter().append_filterColumn().set_colId(colId);
  EXPECT_EQ(filter.columnSize(), 0);
  EXPECT_EQ(filter.columnByIndex(0), nullptr);
  EXPECT_STREQ(last.message(), "index is out of range");
  auto* last_column = filter.column(4);
  auto* first_column = filter.column(0);
  EXPECT_EQ(owner.get_autoFilter().size_filterColumn(), 3U);
  EXPECT_EQ(filter.columnSize(), 2);
  EXPECT_EQ(filter.columnByIndex(0), first_column);
  EXPECT_EQ(filter.columnByIndex(1), last_column);
  EXPECT_EQ(filter.columnByIndex(2), nullptr);
  EXPECT_EQ(filter.columnByIndex(-1), nullptr);
}

TYPED_TEST(AutoFilters, TellEveryKind) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 6);
  auto& bound = owner.get_autoFilter();
  for (std::uint32_t i = 0; i < 7; ++i) bound.append_filterColumn().set_colId(i);
  bound.get_filterColumn(0).get_filters();
  bound.get_filterColumn(1).get_top10();
  bound.get_filterColumn(2).get_customFilters();
  bound.get_filterColumn(3).get_dynamicFilter();
  bound.get_filterColumn(4).get_colorFilter();
  bound.get_filterColumn(5).get_iconFilter();
  bound.get_filterColumn(6).get_extLst();
  for (int i = 0; i < 7; ++i) {
    auto* column = filter.column(i);
    EXPECT_EQ(static_cast<int>(column->filterType()), i);
    EXPECT_STREQ(last.message(), "ok");
    column->clear();
    EXPECT_EQ(column->filterType(), FilterType::notSet);
    EXPECT_STREQ(last.message(), "filter if not found");
  }
}

TYPED_TEST(AutoFilters, ListTheirValues) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 0);
  auto* column = filter.column(0);
  EXPECT_EQ(column->filterSize(), 0);
  EXPECT_STREQ(last.message(), "value filter is not found");
  EXPECT_EQ(column->filter(0), nullptr);
  EXPECT_STREQ(last.message(), "value filter is not found");
  column->addFilter(u"Zürich");
  column->addFilter(u"");
  EXPECT_STREQ(last.message(), "ok");
  EXPECT_EQ(column->filterSize(), 2);
  EXPECT_EQ(std::u16string(column->filter(0)), u"Zürich");
  EXPECT_EQ(std::u16string(column->filter(1)), u"");
  EXPECT_EQ(column->filter(2), nullptr);
  EXPECT_STREQ(last.message(), "index is out of range");
  EXPECT_EQ(column->filter(-1), nullptr);
  owner.get_autoFilter().get_filterColumn(0).get_filters().append_filter();
  EXPECT_EQ(column->filter(2), nullptr) << "a child without a value";
  EXPECT_STREQ(last.message(), "ok");
}

TYPED_TEST(AutoFilters, TopValuesAreFromOneToFiveHundred) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 0);
  auto* column = filter.column(0);
  EXPECT_FALSE(column->getTop10(nullptr, nullptr, nullptr));
  EXPECT_STREQ(last.message(), "top10 filter is not found");
  for (const double value : {0.5, 500.5, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(column->setTop10(value, true, false));
    EXPECT_STREQ(last.message(), "setTop10: value is out of range");
  }
  EXPECT_EQ(column->filterType(), FilterType::notSet);
  for (const double value : {1.0, 500.0}) {
    EXPECT_TRUE(column->setTop10(value, false, true));
    double read = 0;
    bool top = true, percent = false;
    EXPECT_TRUE(column->getTop10(&read, &top, &percent));
    EXPECT_EQ(read, value);
    EXPECT_FALSE(top);
    EXPECT_TRUE(percent);
  }
  const auto& bound = owner.get_autoFilter().get_filterColumn(0).get_top10();
  EXPECT_TRUE(bound.isset_val() && bound.isset_top() && bound.isset_percent());
}

TYPED_TEST(AutoFilters, TopIsMeantWhereTheFileSaysNothing) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 0);
  auto* column = filter.column(0);
  owner.get_autoFilter().get_filterColumn(0).get_top10().set_val(10);
  bool top = false, percent = true;
  EXPECT_TRUE(column->getTop10(nullptr, &top, &percent));
  EXPECT_TRUE(top);
  EXPECT_FALSE(percent);
}

TYPED_TEST(AutoFilters, CompareWithOneOrTwoValues) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 0);
  auto* column = filter.column(0);
  FilterOperator op1{}, op2{};
  const char16_t *value1 = u"x", *value2 = u"x";
  bool both = true;
  EXPECT_FALSE(column->getCustomFilter(&op1, &value1, &op2, &value2, &both));
  EXPECT_STREQ(last.message(), "custom filter is not found");
  EXPECT_EQ(value1, nullptr);
  EXPECT_FALSE(both);
  EXPECT_TRUE(column->setCustomFilter(FilterOperator::greaterThan, u"5", FilterOperator::notEqual, u"a*", true));
  EXPECT_TRUE(column->getCustomFilter(&op1, &value1, &op2, &value2, &both));
  EXPECT_EQ(op1, FilterOperator::greaterThan);
  EXPECT_EQ(std::u16string(value1), u"5");
  EXPECT_EQ(op2, FilterOperator::notEqual);
  EXPECT_EQ(std::u16string(value2), u"a*");
  EXPECT_TRUE(both);
  EXPECT_TRUE(column->getCustomFilter(nullptr, nullptr, nullptr, nullptr, nullptr));
  EXPECT_TRUE(column->setCustomFilter(FilterOperator::lessThanOrEqual, u"7", FilterOperator::equal, nullptr, false));
  EXPECT_TRUE(column->getCustomFilter(&op1, &value1, &op2, &value2, &both));
  EXPECT_EQ(op1, FilterOperator::lessThanOrEqual);
  EXPECT_EQ(value2, nullptr);
  EXPECT_FALSE(both);
  EXPECT_EQ(owner.get_autoFilter().get_filterColumn(0).get_customFilters().size_customFilter(), 1U)
      << "the element holds no more than two";
  EXPECT_FALSE(column->setCustomFilter(FilterOperator::equal, nullptr, FilterOperator::equal, nullptr, false));
}

TYPED_TEST(AutoFilters, OperatorsAreNumberedAsTheFormatListsThem) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 0);
  auto* column = filter.column(0);
  const char* const tokens[] = {"equal",    "lessThan",           "lessThanOrEqual",
                                "notEqual", "greaterThanOrEqual", "greaterThan"};
  for (int op = 0; op < 6; ++op) {
    column->setCustomFilter(static_cast<FilterOperator>(op), u"1", FilterOperator::equal, nullptr, false);
    const auto& bound = owner.get_autoFilter().get_filterColumn(0).get_customFilters().get_customFilter(0);
    EXPECT_EQ(bound.get_operator(), tokens[op]);
  }
}

TYPED_TEST(AutoFilters, TakeOneKindAtATime) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 0);
  auto* column = filter.column(0);
  column->addFilter(u"a");
  EXPECT_FALSE(column->setTop10(5, true, false));
  EXPECT_STREQ(last.message(), "top10 filter is not found");
  EXPECT_FALSE(column->setCustomFilter(FilterOperator::equal, u"1", FilterOperator::equal, nullptr, false));
  EXPECT_STREQ(last.message(), "custom filter is not found");
  column->clear();
  EXPECT_TRUE(column->setTop10(5, true, false));
  column->addFilter(u"b");
  EXPECT_STREQ(last.message(), "value filter is not found");
  EXPECT_EQ(column->filterType(), FilterType::top10);
}

TYPED_TEST(AutoFilters, SortBelowTheirHeader) {
  auto& [owner, last, filter] = this->sheet;
  EXPECT_FALSE(filter.setSort(0, false));
  EXPECT_STREQ(last.message(), "AutoFilter ref is not specified");
  filter.setRef(2, 9, 1, 3);
  int r1 = -7, r2 = -7, c1 = -7, c2 = -7;
  EXPECT_FALSE(filter.getSortRange(&r1, &r2, &c1, &c2));
  EXPECT_EQ(r1, -7);
  EXPECT_FALSE(filter.getSort(&r1, nullptr));
  EXPECT_FALSE(filter.setSort(3, false));
  EXPECT_STREQ(last.message(), "columnIndex is out of range");
  EXPECT_FALSE(filter.setSort(-1, false));
  EXPECT_TRUE(filter.setSort(0, false));
  EXPECT_TRUE(filter.setSort(2, true));
  const auto& state = owner.get_autoFilter().get_sortState();
  EXPECT_EQ(state.get_ref(), "B4:D10");
  ASSERT_EQ(state.size_sortCondition(), 1U) << "the earlier condition is gone";
  EXPECT_EQ(state.get_sortCondition(0).get_ref(), "D4:D10");
  EXPECT_TRUE(filter.getSortRange(&r1, &r2, &c1, &c2));
  EXPECT_EQ(std::tie(r1, r2, c1, c2), std::make_tuple(3, 9, 1, 3));
  int column = -1;
  bool descending = false;
  EXPECT_TRUE(filter.getSort(&column, &descending));
  EXPECT_EQ(column, 2);
  EXPECT_TRUE(descending);
  EXPECT_TRUE(filter.setSort(1, false));
  EXPECT_FALSE(owner.get_autoFilter().get_sortState().get_sortCondition(0).isset_descending());
}

TYPED_TEST(AutoFilters, OfAHeaderAloneSortTheRowThatFollows) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 0, 0, 1);
  EXPECT_TRUE(filter.setSort(0, false));
  EXPECT_EQ(owner.get_autoFilter().get_sortState().get_ref(), "A2:B2");
}

TYPED_TEST(AutoFilters, ColumnsOutliveTheirElement) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(0, 9, 0, 1);
  auto* column = filter.column(1);
  column->addFilter(u"kept");
  filter.detachColumns();
  owner.unset_autoFilter();
  EXPECT_EQ(std::u16string(column->filter(0)), u"kept");
  column->addFilter(u"more");
  EXPECT_EQ(column->filterSize(), 2);
  EXPECT_EQ(filter.columnSize(), 0);
  EXPECT_FALSE(owner.isset_autoFilter());
}

TYPED_TEST(AutoFilters, AreTheSameAfterASaveAndALoad) {
  auto& [owner, last, filter] = this->sheet;
  if constexpr (requires { owner.get_sheetData(); }) owner.get_sheetData();
  if constexpr (requires { owner.get_tableColumns(); }) {
    owner.set_id(1);
    owner.set_displayName("T");
    owner.set_ref("A1:C9");
    owner.get_tableColumns().append_tableColumn().set_id(1);
    owner.get_tableColumns().get_tableColumn(0).set_name("a");
  }
  filter.setRef(0, 8, 0, 2);
  filter.column(0)->addFilter(u"a&b");
  filter.column(1)->setTop10(3.5, true, true);
  filter.column(2)->setCustomFilter(FilterOperator::lessThan, u"<x>", FilterOperator::equal, u"", false);
  filter.setSort(1, true);
  const std::string saved = textOf(owner);
  TypeParam loaded;
  fill(loaded, saved);
  LastMessage message;
  XMLAutoFilterT<TypeParam> again(loaded, message);
  EXPECT_EQ(again.columnSize(), 0);
  EXPECT_EQ(std::u16string(again.column(0)->filter(0)), u"a&b");
  double value = 0;
  EXPECT_TRUE(again.column(1)->getTop10(&value, nullptr, nullptr));
  EXPECT_EQ(value, 3.5);
  const char16_t *value1 = nullptr, *value2 = nullptr;
  EXPECT_TRUE(again.column(2)->getCustomFilter(nullptr, &value1, nullptr, &value2, nullptr));
  EXPECT_EQ(std::u16string(value1), u"<x>");
  EXPECT_EQ(std::u16string(value2), u"");
  EXPECT_EQ(textOf(loaded), saved);
}

TYPED_TEST(AutoFilters, FollowInsertedAndRemovedLines) {
  auto& [owner, last, filter] = this->sheet;
  filter.setRef(2, 9, 1, 4);
  filter.column(0)->addFilter(u"first");
  auto* removed = filter.column(1);
  removed->addFilter(u"gone");
  filter.column(3)->addFilter(u"last");
  filter.setSort(3, false);
  auto& bound = owner.get_autoFilter();
  const auto apply = [&](LineMove::Axis axis, LineMove::Kind kind, int first, int to) {
    const bool left =
        moveFilter(bound, {kXlsxGrid, axis, kind, first, to}, [&](auto& column) { filter.detachColumn(column); });
    filter.refileColumns();
    return left;
  };
  EXPECT_TRUE(apply(LineMove::Axis::rows, LineMove::Kind::insert, 0, 0));
  EXPECT_EQ(bound.get_ref(), "B4:E11");
  EXPECT_EQ(bound.get_sortState().get_sortCondition(0).get_ref(), "E5:E11");
  EXPECT_TRUE(apply(LineMove::Axis::columns, LineMove::Kind::insert, 2, 2));
  EXPECT_EQ(bound.get_ref(), "B4:F11");
  EXPECT_EQ(bound.get_filterColumn(1).get_colId(), 2U);
  EXPECT_EQ(filter.column(4)->index(), 4);
  EXPECT_TRUE(apply(LineMove::Axis::columns, LineMove::Kind::remove, 3, 3));
  EXPECT_EQ(bound.get_ref(), "B4:E11");
  EXPECT_EQ(bound.size_filterColumn(), 2U);
  EXPECT_EQ(std::u16string(removed->filter(0)), u"gone") << "held by the caller still";
  EXPECT_EQ(filter.columnSize(), 2);
  EXPECT_TRUE(apply(LineMove::Axis::columns, LineMove::Kind::remove, 0, 1));
  EXPECT_EQ(bound.get_ref(), "A4:C11");
  ASSERT_EQ(bound.size_filterColumn(), 1U);
  EXPECT_EQ(bound.get_filterColumn(0).get_colId(), 2U);
  EXPECT_FALSE(apply(LineMove::Axis::rows, LineMove::Kind::remove, 3, 3)) << "there is no filter without its header";
}

}  // namespace
}  // namespace rubrica::test
