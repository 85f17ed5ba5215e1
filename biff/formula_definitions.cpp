#include "biff/formula_definitions.h"

#include <algorithm>

#include "biff/cell_store.h"
#include "biff/record_pool.h"
#include "biff/records/record_ids.h"

namespace rubrica {
namespace {

std::uint32_t placeKey(std::uint16_t row, std::uint16_t col) {
  return std::uint32_t{row} << 16 | col;
}

// Where the tokens' size stands in the body; the tokens follow it.
constexpr std::size_t kSharedSizeOffset = 8, kArraySizeOffset = 12;

FormulaDefinition withRange(const FormulaDefinition& definition, const FormulaRange& range, RecordPool& pool) {
  std::vector<std::byte> bytes(definition.bytes.begin(), definition.bytes.end());
  const std::uint16_t rows[] = {static_cast<std::uint16_t>(range.rowFirst), static_cast<std::uint16_t>(range.rowLast)};
  const std::uint8_t cols[] = {static_cast<std::uint8_t>(range.colFirst), static_cast<std::uint8_t>(range.colLast)};
  std::memcpy(bytes.data(), rows, sizeof(rows));
  std::memcpy(bytes.data() + sizeof(rows), cols, sizeof(cols));
  return {definition.recordId, pool.copyBytes(bytes)};
}

// The users of one definition, met in row order.
struct Users {
  std::uint16_t firstRow = 0, firstCol = 0;
  FormulaRange bounds;
  std::vector<CellWord> cells;
};

// Whether the definition's range is still that of its users. The cells of an array are all of its range; a shared
// formula may have a range with other cells in it.
bool fits(const FormulaDefinition& definition, const Users& used) {
  const auto range = definitionRange(definition);
  const FormulaRange& bounds = used.bounds;
  if (!range || bounds.rowFirst < range->rowFirst || bounds.rowLast > range->rowLast ||
      bounds.colFirst < range->colFirst || bounds.colLast > range->colLast) {
    return false;
  }
  const int cells = (range->rowLast - range->rowFirst + 1) * (range->colLast - range->colFirst + 1);
  return definition.recordId != id::kArray || static_cast<std::size_t>(cells) == used.cells.size();
}

void pointTo(FormulaCell& cell, std::uint16_t row, std::uint16_t col, RecordPool& pool) {
  const auto anchor = formulaAnchor(cell);
  if (anchor && anchor->row == row && anchor->col == col) return;
  std::vector<std::byte> bytes(cell.expression.begin(), cell.expression.end());
  std::memcpy(bytes.data() + 1, &row, sizeof(row));
  std::memcpy(bytes.data() + 3, &col, sizeof(col));
  cell.expression = pool.copyBytes(bytes);
}

}  // namespace

void FormulaDefinitions::add(const FormulaCell& holder, const FormulaDefinition& definition) {
  const auto anchor = formulaAnchor(holder);
  const std::uint32_t key = anchor ? placeKey(anchor->row, anchor->col) : placeKey(holder.row, holder.col);
  _definitions.insert_or_assign(key, definition);
}

const FormulaDefinition* FormulaDefinitions::of(const FormulaCell& cell) const {
  const auto anchor = formulaAnchor(cell);
  if (!anchor) return nullptr;
  const auto found = _definitions.find(placeKey(anchor->row, anchor->col));
  return found == _definitions.end() ? nullptr : &found->second;
}

const FormulaDefinition* FormulaDefinitions::Placement::behind(const FormulaCell& cell) const {
  const auto found = _byCell.find(placeKey(cell.row, cell.col));
  return found == _byCell.end() ? nullptr : &found->second;
}

FormulaDefinitions::Placement FormulaDefinitions::settle(CellStore& cells, RecordPool& pool) {
  Placement placement;
  if (_definitions.empty()) return placement;
  boost::unordered_flat_map<std::uint32_t, Users> users;
  for (int row = cells.index().nextRow(0); row < kBiffRows; row = cells.index().nextRow(row + 1)) {
    cells.index().forEachInRow(row, [&](int col, std::uint32_t bits) {
      const CellWord word{bits};
      if (word.kind() != CellKind::formula) return;
      const FormulaCell& cell = cells.formula(word);
      const auto anchor = formulaAnchor(cell);
      if (!anchor || !_definitions.contains(placeKey(anchor->row, anchor->col))) return;
      auto [entry, isNew] = users.try_emplace(placeKey(anchor->row, anchor->col));
      Users& found = entry->second;
      if (isNew) {
        found.firstRow = cell.row;
        found.firstCol = cell.col;
        found.bounds = {row, row, col, col};
      }
      found.bounds.rowLast = row;
      found.bounds.colFirst = std::min(found.bounds.colFirst, col);
      found.bounds.colLast = std::max(found.bounds.colLast, col);
      found.cells.push_back(word);
    });
  }
  boost::unordered_flat_map<std::uint32_t, FormulaDefinition> settled;
  for (auto& [key, used] : users) {
    FormulaDefinition definition = _definitions.at(key);
    const bool isMoved = key != placeKey(used.firstRow, used.firstCol);
    if (isMoved || !fits(definition, used)) definition = withRange(definition, used.bounds, pool);
    for (const CellWord word : used.cells) pointTo(cells.formula(word), used.firstRow, used.firstCol, pool);
    settled.insert_or_assign(placeKey(used.firstRow, used.firstCol), definition);
  }
  _definitions = settled;
  placement._byCell = std::move(settled);
  return placement;
}

std::optional<DefinitionTokens> definitionTokens(const FormulaDefinition& definition) {
  const bool shared = definition.recordId == id::kShrFmla;
  if (!shared && definition.recordId != id::kArray) return std::nullopt;
  const std::size_t sizeOffset = shared ? kSharedSizeOffset : kArraySizeOffset;
  const auto bytes = octets(definition.bytes);
  std::uint16_t size = 0;
  if (bytes.size() < sizeOffset + sizeof(size)) return std::nullopt;
  std::memcpy(&size, bytes.data() + sizeOffset, sizeof(size));
  const auto rest = bytes.subspan(sizeOffset + sizeof(size));
  const std::size_t tokenSize = std::min<std::size_t>(size, rest.size());
  return DefinitionTokens{rest.first(tokenSize), rest.subspan(tokenSize), shared};
}

}  // namespace rubrica
