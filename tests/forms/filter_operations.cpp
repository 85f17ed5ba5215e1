// The operations of filters, which .xls books have not.
#include "tests/forms/operation_text.h"
#include "tests/forms/operations.h"

namespace rubrica::test {
namespace {

using Filter = IAutoFilterT<char16_t>;

// On a filter over A1:C9.
Operation ofFilter(std::string names, std::string about, std::function<void(Filter&)> set,
                   std::function<std::string(Filter&)> read, std::string xlsx) {
  return {std::move(names),
          std::move(about),
          [set](B b) {
            Filter* filter = b.sheet->autoFilter();
            if (filter == nullptr) return;
            filter->setRef(0, 8, 0, 2);
            set(*filter);
          },
          [read](B b) {
            Filter* filter = b.sheet->autoFilter();
            return filter == nullptr ? std::string("no filter") : read(*filter);
          },
          "no filter",
          std::move(xlsx)};
}

std::string typeOf(Filter& filter, int column) {
  return join(filter.column(column)->filterType());
}

}  // namespace

std::vector<Operation> filterOperations() {
  return {
      ofFilter(
          "getRef setRef", "the range of a filter", [](Filter&) {},
          [](Filter& filter) {
            Range range;
            const bool has = filter.getRef(&range.r1, &range.r2, &range.c1, &range.c2);
            return join(has, range.text());
          },
          "1 0 8 0 2"),
      ofFilter(
          "column columnSize columnByIndex index", "columns of a filter", [](Filter& filter) { filter.column(2); },
          [](Filter& filter) {
            const bool isRefused = filter.column(3) == nullptr;
            const int index = filter.column(2)->index();
            return join(isRefused, index, filter.columnSize(), filter.columnByIndex(0)->index(),
                        filter.columnByIndex(1) == nullptr);
          },
          "1 2 1 2 1"),
      ofFilter(
          "filterType filterSize filter addFilter", "filters by values",
          [](Filter& filter) {
            filter.column(1)->addFilter(u"tea");
            filter.column(1)->addFilter(u"Käse & Brot");
          },
          [](Filter& filter) {
            auto* column = filter.column(1);
            return join(typeOf(filter, 1), column->filterSize(), shown(column->filter(1)), shown(column->filter(2)));
          },
          "0 2 Käse & Brot <none>"),
      ofFilter(
          "getTop10 setTop10", "filters by the first or last entries",
          [](Filter& filter) { filter.column(0)->setTop10(5, false, true); },
          [](Filter& filter) {
            double value = 0;
            bool top = true, percent = false;
            filter.column(0)->getTop10(&value, &top, &percent);
            return join(typeOf(filter, 0), value, top, percent);
          },
          "1 5.00 0 1"),
      ofFilter(
          "getCustomFilter setCustomFilter", "filters by comparisons",
          [](Filter& filter) {
            filter.column(0)->setCustomFilter(FilterOperator::greaterThan, u"1", FilterOperator::lessThan, u"9", true);
          },
          [](Filter& filter) {
            FilterOperator first{}, second{};
            const char16_t *low = nullptr, *high = nullptr;
            bool isAnd = false;
            filter.column(0)->getCustomFilter(&first, &low, &second, &high, &isAnd);
            return join(typeOf(filter, 0), first, shown(low), second, shown(high), isAnd);
          },
          "2 5 1 1 9 1"),
      ofFilter(
          "clear", "a cleared column of a filter",
          [](Filter& filter) {
            filter.column(0)->setTop10(5);
            filter.column(0)->clear();
          },
          [](Filter& filter) { return typeOf(filter, 0); }, "7"),
      ofFilter(
          "getSortRange getSort setSort", "the sort of a filter", [](Filter& filter) { filter.setSort(1, true); },
          [](Filter& filter) {
            Range range;
            int column = -1;
            bool descending = false;
            const bool isSorted = filter.getSortRange(&range.r1, &range.r2, &range.c1, &range.c2);
            filter.getSort(&column, &descending);
            return join(isSorted, range.text(), column, descending);
          },
          "1 1 8 0 2 1 1"),
  };
}

}  // namespace rubrica::test
