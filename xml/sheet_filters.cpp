// The filter of an .xlsx sheet and its tables: handing them out, and hiding the rows that the filter holds back.
#include <algorithm>
#include <optional>

#include "platform/text.h"
#include "xml/auto_filter.h"
#include "xml/book_impl.h"
#include "xml/filter_match.h"
#include "xml/filter_operators.h"
#include "xml/name_reference.h"
#include "xml/number_text.h"
#include "xml/sheet_impl.h"
#include "xml/table.h"
#include "xml/table_tree.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

// A day or a part of one in a value list, as the file groups dates.
struct DatePart {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  bool operator==(const DatePart&) const = default;
};

// Only what the grouping counts; the rest is 0.
DatePart groupedBy(std::string_view grouping, DatePart date) {
  constexpr std::string_view kNames[] = {"year", "month", "day", "hour", "minute", "second"};
  int* const parts[] = {&date.year, &date.month, &date.day, &date.hour, &date.minute, &date.second};
  const auto last = std::find(std::begin(kNames), std::end(kNames), grouping) - std::begin(kNames);
  for (std::ptrdiff_t i = last + 1; i < std::ssize(parts); ++i) *parts[i] = 0;
  return date;
}

struct DateGroup {
  DatePart date;
  std::string grouping;
};

// What one column lets through.
struct ColumnRule {
  int col = 0;
  FilterRule rule;
  std::vector<DateGroup> dates;
};

template <class Filters>
std::vector<DateGroup> dateGroups(const Filters& filters) {
  std::vector<DateGroup> groups;
  for (std::size_t i = 0; i < filters.size_dateGroupItem(); ++i) {
    const auto& item = filters.get_dateGroupItem(i);
    const DatePart date{item.get_year(), item.get_month(),  item.get_day(),
                        item.get_hour(), item.get_minute(), item.get_second()};
    const std::string& grouping = item.get_dateTimeGrouping();
    groups.push_back({groupedBy(grouping, date), grouping});
  }
  return groups;
}

template <class Filters>
FilterRule listRule(const Filters& filters) {
  std::vector<std::u16string> values;
  for (std::size_t i = 0; i < filters.size_filter(); ++i)
    values.push_back(fromXstring(filters.get_filter(i).get_val()));
  return FilterRule::list(std::move(values), filters.get_blank());
}

template <class Filters>
FilterRule customRule(const Filters& filters) {
  std::vector<FilterRule::Comparison> comparisons;
  for (std::size_t i = 0; i < filters.size_customFilter(); ++i) {
    const auto& filter = filters.get_customFilter(i);
    comparisons.push_back({operatorOf(filter.get_operator()), fromXstring(filter.get_val())});
  }
  return FilterRule::custom(std::move(comparisons), filters.get_and());
}

// The rule of a column, nothing for a kind that isn't judged by values. `valuesOf` gives the column's values.
template <class Column, class ValuesOf>
std::optional<ColumnRule> ruleOf(const Column& column, int firstCol, ValuesOf&& valuesOf) {
  const int col = firstCol + static_cast<int>(column.get_colId());
  if (const auto* filters = column.find_filters()) return ColumnRule{col, listRule(*filters), dateGroups(*filters)};
  if (const auto* filters = column.find_customFilters()) return ColumnRule{col, customRule(*filters), {}};
  if (const auto* top = column.find_top10()) {
    return ColumnRule{col, FilterRule::top(top->get_val(), top->get_top(), top->get_percent(), valuesOf(col)), {}};
  }
  return std::nullopt;
}

}  // namespace

template <class Tag>
IAutoFilterT<char16_t>* XMLSheetImplT<Tag>::autoFilter() {
  return guarded(_book->lastMessage(), static_cast<IAutoFilterT<char16_t>*>(nullptr), [&] {
    if (!_autoFilter) _autoFilter = std::make_unique<XMLAutoFilterT<Root>>(*this, _book->lastMessage());
    return static_cast<IAutoFilterT<char16_t>*>(_autoFilter.get());
  });
}

template <class Tag>
FilterValue XMLSheetImplT<Tag>::filterValue(int row, int col) {
  const Cell* cell = findCell(row, col);
  if (cell == nullptr) return {};
  if (const auto number = numberIn(*cell)) return FilterValue::of(*number);
  if (readText(*cell)) return FilterValue::of(_text);
  ooxml::packed_cell::value_buffer buffer;
  const std::string_view value = cell->view_v(buffer);
  if (cell->type() == ooxml::cell_type::boolean) return FilterValue::of(value == "1" ? u"TRUE" : u"FALSE");
  return FilterValue::of(platform::utf16FromUtf8Lossy(value));
}

template <class Tag>
std::optional<double> XMLSheetImplT<Tag>::numberIn(const Cell& cell) {
  const bool isNumber = cell.type() == ooxml::cell_type::none || cell.type() == ooxml::cell_type::number;
  if (!isNumber || !cell.isset_v()) return std::nullopt;
  ooxml::packed_cell::value_buffer buffer;
  return parseNumber(cell.view_v(buffer));
}

template <class Tag>
void XMLSheetImplT<Tag>::applyFilter() {
  guarded(_book->lastMessage(), [&] {
    const auto* filter = std::as_const(*this).find_autoFilter();
    if (filter == nullptr || !filter->isset_ref()) throw xlerror("ref is not found");
    const auto range = parseRange(filter->get_ref());
    if (!range) throw xlerror("ref has unrecognized format");
    const auto valuesOf = [&](int col) {
      std::vector<FilterValue> values;
      for (int row = range->rowFirst + 1; row <= range->rowLast; ++row) values.push_back(filterValue(row, col));
      return values;
    };
    std::vector<ColumnRule> rules;
    for (std::size_t i = 0; i < filter->size_filterColumn(); ++i) {
      if (filter->get_filterColumn(i).get_colId() > static_cast<std::uint32_t>(range->colLast - range->colFirst))
        continue;
      if (auto rule = ruleOf(filter->get_filterColumn(i), range->colFirst, valuesOf)) rules.push_back(std::move(*rule));
    }
    const auto passes = [&](int row, const ColumnRule& rule) {
      const FilterValue value = filterValue(row, rule.col);
      if (rule.rule.lets(value)) return true;
      if (rule.dates.empty() || value.kind != FilterValue::Kind::number) return false;
      DatePart date;
      if (!_book->dateUnpack(value.number, &date.year, &date.month, &date.day, &date.hour, &date.minute, &date.second,
                             nullptr)) {
        return false;
      }
      return std::any_of(rule.dates.begin(), rule.dates.end(),
                         [&](const DateGroup& group) { return groupedBy(group.grouping, date) == group.date; });
    };
    for (int row = range->rowFirst + 1; row <= range->rowLast; ++row) {
      const bool shown =
          std::all_of(rules.begin(), rules.end(), [&](const ColumnRule& rule) { return passes(row, rule); });
      if (!shown) {
        needRow(row).set_hidden(true);
      } else if (Row* entry = findRow(row)) {
        entry->unset_hidden();
      }
    }
    if (!rules.empty()) this->get_sheetPr().set_filterMode(true);
    DefinedName& name = needName(kFilterDatabase, _book->positionOf(*this));
    name.set_value(referenceText(ownName(), *range));
    name.set_hidden(true);
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::removeFilter() {
  guarded(_book->lastMessage(), [&] {
    const auto* filter = std::as_const(*this).find_autoFilter();
    const auto range = filter == nullptr ? std::nullopt : parseRange(filter->get_ref());
    auto& data = this->get_sheetData();
    for (std::size_t i = range ? rowPosition(data, range->rowFirst) : data.size_row(); i < data.size_row(); ++i) {
      if (static_cast<int>(data.get_row(i).get_r()) - 1 > range->rowLast) break;
      data.get_row(i).unset_hidden();
    }
    if (_autoFilter) _autoFilter->detachColumns();
    this->unset_autoFilter();
    if (auto* properties = this->find_sheetPr()) properties->unset_filterMode();
    removeName(kFilterDatabase, _book->positionOf(*this));
  });
}

template <class Tag>
int XMLSheetImplT<Tag>::tableSize() {
  return guarded(_book->lastMessage(), 0, [&] {
    const auto* parts = this->find_tableParts();
    return parts == nullptr ? 0 : static_cast<int>(parts->size_tablePart());
  });
}

template <class Tag>
typename XMLSheetImplT<Tag>::Text XMLSheetImplT<Tag>::table(int index, int* rowFirst, int* rowLast, int* colFirst,
                                                            int* colLast, int* headerRowCount, int* totalsRowCount) {
  return guarded(_book->lastMessage(), Text{}, [&]() -> Text {
    const auto* parts = std::as_const(*this).find_tableParts();
    if (parts == nullptr || index < 0 || static_cast<std::size_t>(index) >= parts->size_tablePart()) {
      throw xlerror("index is out of range");
    }
    if (_book->relationshipsOf(_book->partNameOf(*this)) == nullptr) throw xlerror("sheet relationships is not found");
    const std::string name = linkedPart(parts->get_tablePart(static_cast<std::size_t>(index)).get_r_id());
    const auto* table = _book->parts().template findAs<Table<Tag>>(name);
    if (table == nullptr) throw xlerror("table is not found");
    const TableInfo info = tableInfo(static_cast<const typename Flavour<Tag>::TableRoot&>(*table));
    giveRange(info.range, rowFirst, rowLast, colFirst, colLast);
    if (headerRowCount != nullptr) *headerRowCount = info.headerRowCount;
    if (totalsRowCount != nullptr) *totalsRowCount = info.totalsRowCount;
    fromXstring(info.name, _text);
    return _text.c_str();
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
