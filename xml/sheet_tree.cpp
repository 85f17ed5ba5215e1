// The rows and cells of a worksheet's tree: reading them, putting them in order, finding and making them.
#include <algorithm>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "engine/address.h"
#include "engine/xlerror.h"
#include "lmx/c_xml_reader.h"
#include "xml/book_impl.h"
#include "xml/markup_compatibility.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"
#include "xml/xml_format.h"

namespace rubrica {
namespace {

constexpr char kRowOutOfRange[] = "row must be in range 0-1048575";
constexpr char kColOutOfRange[] = "col must be in range 0-16383";

// Which rows a load keeps, and the numbers of those kept that don't tell theirs.
template <class Row>
struct RowWindow {
  int first = -1;
  int last = -1;
  int next = 0;  // the number of a row that has none
  std::vector<std::uint32_t> numbers;

  static bool keep(void* context, const lmx::object& child) {
    auto& window = *static_cast<RowWindow*>(context);
    const auto& row = static_cast<const Row&>(child);
    if (row.isset_r()) window.next = static_cast<int>(std::min<std::uint32_t>(row.get_r(), kMaxRow + 2)) - 1;
    const int number = window.next++;
    const bool kept = (window.first == -1 || window.first <= number) && (window.last == -1 || number <= window.last);
    if (kept && !row.isset_r()) window.numbers.push_back(static_cast<std::uint32_t>(number) + 1);
    return kept;
  }
};

// Moves the items out of a container of the tree and back in another order.
template <class Item, class Take, class Clear, class Put, class Less>
void reorder(std::size_t count, Take take, Clear clear, Put put, Less less) {
  std::vector<Item> items;
  items.reserve(count);
  for (std::size_t i = 0; i < count; ++i) items.push_back(std::move(take(i)));
  std::stable_sort(items.begin(), items.end(), less);
  clear();
  for (Item& item : items) put(std::move(item));
}

}  // namespace

void UsedRange::widen(int row, int col) {
  if (empty()) {
    *this = {row, row + 1, col, col + 1};
    return;
  }
  firstRow = std::min(firstRow, row);
  lastRow = std::max(lastRow, row + 1);
  firstCol = std::min(firstCol, col);
  lastCol = std::max(lastCol, col + 1);
}

// ---- Reading

template <class Tag>
XMLSheetImplT<Tag>::XMLSheetImplT(XMLBookImplT<Tag>& book) : _book(&book) {
  init();
}

template <class Tag>
XMLSheetImplT<Tag>::XMLSheetImplT(XMLBookImplT<Tag>& book, const char* data, std::size_t size, int firstRow,
                                  int lastRow)
    : _book(&book) {
  if (firstRow < 0 && lastRow < 0) {
    Base::read(data, size);
  } else {
    readWindow(data, size, firstRow, lastRow);
  }
  init();
}

template <class Tag>
XMLSheetImplT<Tag>::XMLSheetImplT(XMLBookImplT<Tag>& book, const std::string& path, int firstRow, int lastRow)
    : _book(&book) {
  if (firstRow < 0 && lastRow < 0) {
    Base::readFile(path);
  } else {
    readWindowOfFile(path, firstRow, lastRow);
  }
  init();
}

template <class Tag>
void XMLSheetImplT<Tag>::readWindow(const char* data, std::size_t size, int firstRow, int lastRow) {
  if (data == nullptr || size == 0) throw xlerror("data is empty");
  const ResolvedMarkup markup(std::string_view(data, size), Root::kRoot);
  this->setDroppedMarkup(markup.dropped());
  Base::bind(markup.text(), [&](Root&, std::string_view text) {
    lmx::c_xml_reader_memory reader(text.data(), text.size());
    return bindWindow(reader, firstRow, lastRow);
  });
}

// A file that can't be bound piece by piece is read whole, as far as that may help.
template <class Tag>
void XMLSheetImplT<Tag>::readWindowOfFile(const std::string& path, int firstRow, int lastRow) {
  if (!hasMarkupToResolve(path)) {
    lmx::c_xml_reader_file reader{std::string_view(path)};
    if (bindWindow(reader, firstRow, lastRow) == lmx::ELMX_OK) return;
  }
  const std::string text = readTemporaryFile(path);
  readWindow(text.data(), text.size(), firstRow, lastRow);
}

template <class Tag>
lmx::elmx_error XMLSheetImplT<Tag>::bindWindow(lmx::c_xml_reader& reader, int firstRow, int lastRow) {
  _isPartial = true;
  RowWindow<Row> window{firstRow < 0 ? -1 : firstRow, lastRow < 0 ? -1 : lastRow, 0, {}};
  reader.set_child_filter({&Row::kDescriptor, &RowWindow<Row>::keep, &window});
  if (const auto code = Root::unmarshal(reader)) return code;
  auto number = window.numbers.begin();
  auto& data = this->get_sheetData();
  for (std::size_t i = 0; i < data.size_row() && number != window.numbers.end(); ++i) {
    if (!data.get_row(i).isset_r()) data.get_row(i).set_r(*number++);
  }
  return lmx::ELMX_OK;
}

template <class Tag>
void XMLSheetImplT<Tag>::init() {
  _used = {};
  _lastRowPosition = 0;
  _lastFormat = nullptr;
  adoptColumnFormats();
  _sharedFormulas.clear();
  const bool hasFormulas = settleRows();
  widenByMarks();
  if (hasFormulas) adoptSharedFormulas();
}

template <class Tag>
void XMLSheetImplT<Tag>::adoptColumnFormats() {
  _colFormats.fill(0);
  for (std::size_t i = 0; i < this->size_cols(); ++i) {
    const auto& cols = this->get_cols(i);
    for (std::size_t k = 0; k < cols.size_col(); ++k) {
      const auto& col = cols.get_col(k);
      if (!col.isset_style() || col.get_min() == 0) continue;
      const std::size_t end = std::min<std::size_t>(col.get_max(), kColumns);
      for (std::size_t at = col.get_min() - 1; at < end; ++at) _colFormats[at] = col.get_style();
    }
  }
}

// A row without a number follows the one before it. Of a row that is repeated the first stands, with the cells of all.
template <class Tag>
bool XMLSheetImplT<Tag>::settleRows() {
  auto& data = this->get_sheetData();
  std::uint32_t last = 0;
  bool inOrder = true;
  for (std::size_t i = 0; i < data.size_row(); ++i) {
    Row& row = data.get_row(i);
    if (!row.isset_r()) row.set_r(last + 1);
    if (row.get_r() == 0 || row.get_r() > kMaxRow + 1) throw xlerror(kRowOutOfRange);
    inOrder = inOrder && row.get_r() > last;
    last = row.get_r();
  }
  if (!inOrder) sortRows(data);
  bool hasFormulas = false;
  for (std::size_t i = 0; i < data.size_row(); ++i) {
    Row& row = data.get_row(i);
    hasFormulas = settleCells(row) || hasFormulas;
    const std::size_t count = row.size_c();
    if (count == 0) continue;
    const int number = static_cast<int>(row.get_r()) - 1;
    _used.widen(number, row.get_c(0).column());
    _used.widen(number, row.get_c(count - 1).column());
  }
  return hasFormulas;
}

template <class Tag>
void XMLSheetImplT<Tag>::sortRows(SheetData& data) {
  reorder<Row>(
      data.size_row(), [&](std::size_t i) -> Row& { return data.get_row(i); }, [&] { data.clear_row(); },
      [&](Row&& row) {
        const std::size_t count = data.size_row();
        if (count == 0 || data.get_row(count - 1).get_r() != row.get_r()) {
          data.append_row() = std::move(row);
          return;
        }
        Row& first = data.get_row(count - 1);
        for (std::size_t i = 0; i < row.size_c(); ++i) first.append_c() = std::move(row.get_c(i));
      },
      [](const Row& left, const Row& right) { return left.get_r() < right.get_r(); });
}

// A cell without a reference follows the one before it. A cell says the row that it stands in, whatever its reference
// said. Of cells in one place the last stands.
template <class Tag>
bool XMLSheetImplT<Tag>::settleCells(Row& row) {
  const std::uint32_t number = row.get_r() - 1;
  int next = 0;
  bool inOrder = true;
  bool hasFormulas = false;
  for (std::size_t i = 0; i < row.size_c(); ++i) {
    Cell& cell = row.get_c(i);
    hasFormulas = hasFormulas || cell.isset_f();
    const int col = cell.isset_r() ? cell.column() : next;
    if (col > kMaxCol) throw xlerror(kColOutOfRange);
    if (!cell.isset_r() || cell.row() != number) cell.set_position(number, static_cast<std::uint16_t>(col));
    inOrder = inOrder && col >= next;
    next = col + 1;
  }
  if (inOrder) return hasFormulas;
  reorder<Cell>(
      row.size_c(), [&](std::size_t i) -> Cell& { return row.get_c(i); }, [&] { row.clear_c(); },
      [&](Cell&& cell) {
        const std::size_t count = row.size_c();
        const bool isRepeated = count > 0 && row.get_c(count - 1).column() == cell.column();
        (isRepeated ? row.get_c(count - 1) : row.append_c()) = std::move(cell);
      },
      [](const Cell& left, const Cell& right) { return left.column() < right.column(); });
  return hasFormulas;
}

// ---- Copies

template <class Tag>
XMLSheetImplT<Tag>::XMLSheetImplT(XMLBookImplT<Tag>& book, const XMLSheetImplT& source) : _book(&book) {
  static_cast<Root&>(*this) = static_cast<const Root&>(source);
  if (&source.book() != &book) adoptContentOf(source);
  init();
}

// What cells, rows and columns say by number is another book's: formats and texts are entered into this one.
template <class Tag>
void XMLSheetImplT<Tag>::adoptContentOf(const XMLSheetImplT& source) {
  boost::unordered_flat_map<std::uint32_t, std::uint32_t> formats{{0, 0}};
  const auto adoptFormat = [&](auto& item, auto get, auto set) {
    Styles<Tag>* theirs = source.book().styles();
    const std::uint32_t index = get(item);
    const auto [known, isNew] = formats.try_emplace(index, 0);
    if (isNew && theirs != nullptr && index < static_cast<std::uint32_t>(theirs->formatCount())) {
      Styles<Tag>& ours = _book->needStyles();
      known->second = *ours.indexOf(ours.addFormat(theirs->format(static_cast<int>(index))));
    }
    set(item, known->second);
  };
  const auto adoptStyle = [&](auto& item) {
    if (!item.isset_s()) return;
    adoptFormat(
        item, [](const auto& from) { return from.get_s(); }, [](auto& to, std::uint32_t index) { to.set_s(index); });
  };
  for (std::size_t i = 0; i < this->size_cols(); ++i) {
    auto& cols = this->get_cols(i);
    for (std::size_t k = 0; k < cols.size_col(); ++k) {
      if (!cols.get_col(k).isset_style()) continue;
      adoptFormat(
          cols.get_col(k), [](const auto& from) { return from.get_style(); },
          [](auto& to, std::uint32_t index) { to.set_style(index); });
    }
  }
  boost::unordered_flat_map<std::size_t, std::uint32_t> texts;
  auto& data = this->get_sheetData();
  for (std::size_t i = 0; i < data.size_row(); ++i) {
    Row& row = data.get_row(i);
    adoptStyle(row);
    for (std::size_t k = 0; k < row.size_c(); ++k) {
      Cell& cell = row.get_c(k);
      adoptStyle(cell);
      const auto index = sharedIndexOf(cell);
      if (!index || source.book().sharedStrings() == nullptr) continue;
      const auto [known, isNew] = texts.try_emplace(*index, 0);
      if (isNew) known->second = source.book().sharedStrings()->addCopyTo(_book->needSharedStrings(), *index);
      cell.set_v(std::to_string(known->second));
    }
  }
}

// ---- Finding and making

template <class Tag>
void XMLSheetImplT<Tag>::checkCell(int row, int col) {
  if (col < 0 || col > kMaxCol) throw xlerror(kColOutOfRange);
  if (row < 0 || row > kMaxRow) throw xlerror(kRowOutOfRange);
}

// The first row at or below the one that is looked for. Most calls want the row of the last one, or the next.
template <class Tag>
std::size_t XMLSheetImplT<Tag>::rowPosition(const SheetData& data, int row) const {
  const auto number = static_cast<std::uint32_t>(row) + 1;
  const std::size_t count = data.size_row();
  std::size_t first = 0;
  std::size_t last = count;
  if (_lastRowPosition < count) {
    const std::uint32_t known = data.get_row(_lastRowPosition).get_r();
    if (known == number) return _lastRowPosition;
    if (known < number) {
      first = _lastRowPosition + 1;
      if (first == count || data.get_row(first).get_r() >= number) return first;
    } else {
      last = _lastRowPosition;
    }
  }
  while (first < last) {
    const std::size_t middle = first + (last - first) / 2;
    if (data.get_row(middle).get_r() < number) {
      first = middle + 1;
    } else {
      last = middle;
    }
  }
  return first;
}

// The first cell at or right of the column that is looked for. Rows are filled from left to right, and most have no
// gaps.
template <class Tag>
std::size_t XMLSheetImplT<Tag>::cellPosition(const Row& row, int col) {
  const std::size_t count = row.size_c();
  const auto wanted = static_cast<std::size_t>(col);
  if (count == 0 || row.get_c(count - 1).column() < col) return count;
  if (wanted < count && row.get_c(wanted).column() == col) return wanted;
  std::size_t first = 0;
  for (std::size_t last = std::min(wanted, count - 1); first < last;) {
    const std::size_t middle = first + (last - first) / 2;
    if (row.get_c(middle).column() < col) {
      first = middle + 1;
    } else {
      last = middle;
    }
  }
  return first;
}

template <class Tag>
auto XMLSheetImplT<Tag>::findRow(int row) -> Row* {
  auto& data = this->get_sheetData();
  const std::size_t at = rowPosition(data, row);
  if (at == data.size_row() || data.get_row(at).get_r() != static_cast<std::uint32_t>(row) + 1) return nullptr;
  _lastRowPosition = at;
  return &data.get_row(at);
}

template <class Tag>
auto XMLSheetImplT<Tag>::findCell(int row, int col) -> Cell* {
  checkCell(row, col);
  Row* found = findRow(row);
  if (found == nullptr) return nullptr;
  const std::size_t at = cellPosition(*found, col);
  return at < found->size_c() && found->get_c(at).column() == col ? &found->get_c(at) : nullptr;
}

template <class Tag>
auto XMLSheetImplT<Tag>::cellAt(int row, int col) -> Cell& {
  Cell* cell = findCell(row, col);
  if (cell == nullptr) throw xlerror("cell is not found");
  return *cell;
}

template <class Tag>
auto XMLSheetImplT<Tag>::needRow(int row) -> Row& {
  if (Row* found = findRow(row)) return *found;
  auto& data = this->get_sheetData();
  const std::size_t at = rowPosition(data, row);
  Row& made = at == data.size_row() ? data.append_row() : data.insert_row(at);
  made.set_r(static_cast<std::uint32_t>(row) + 1);
  _lastRowPosition = at;
  return made;
}

template <class Tag>
auto XMLSheetImplT<Tag>::needCell(int row, int col, FormatPtr format) -> Cell& {
  checkCell(row, col);
  const bool hasFormat = format != nullptr;
  const std::uint32_t index = hasFormat ? indexOfFormat(format) : _colFormats[static_cast<std::size_t>(col)];
  Row& found = needRow(row);
  const std::size_t at = cellPosition(found, col);
  const std::size_t count = found.size_c();
  const bool isNew = at == count || found.get_c(at).column() != col;
  // Rows that follow each other tend to be as long.
  if (count == 0 && _lastRowPosition > 0) found.reserve_c(this->get_sheetData().get_row(_lastRowPosition - 1).size_c());
  Cell& cell = !isNew ? found.get_c(at) : at == count ? found.append_c() : found.insert_c(at);
  if (isNew) {
    cell.set_position(static_cast<std::uint32_t>(row), static_cast<std::uint16_t>(col));
    _used.widen(row, col);
  }
  if (hasFormat || (index != 0 && !cell.isset_s())) cell.set_s(index);
  return cell;
}

template <class Tag>
auto XMLSheetImplT<Tag>::emptyCell(int row, int col, FormatPtr format) -> Cell& {
  Cell& cell = needCell(row, col, format);
  if (cell.isset_f()) handOverSharedFormula(row, col, cell);
  cell.unset_content();
  return cell;
}

template <class Tag>
std::uint32_t XMLSheetImplT<Tag>::indexOfFormat(FormatPtr format) {
  if (format == _lastFormat) return _lastFormatIndex;
  Styles<Tag>* styles = _book->styles();
  const auto index = styles == nullptr ? std::nullopt : styles->indexOf(format);
  if (!index) throw xlerror("specified format not found");
  _lastFormat = format;
  _lastFormatIndex = *index;
  return *index;
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
