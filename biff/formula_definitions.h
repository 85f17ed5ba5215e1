// The shared formulas, array formulas and data tables of one sheet. Their cells hold a PtgExp or PtgTbl token with the
// place of the cell where the definition hangs in the file; that place is the definition's name here, also after its
// cell was overwritten or moved. A save hangs each definition on the first cell that still uses it. Owned by the sheet.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "biff/formula_cell.h"

namespace rubrica {

class CellStore;
class RecordPool;

class FormulaDefinitions {
 public:
  void clear() { _definitions.clear(); }
  bool empty() const { return _definitions.empty(); }
  // Registers the definition that follows `holder` in a file, under the place that its cells name.
  void add(const FormulaCell& holder, const FormulaDefinition& definition);
  // The definition that a cell uses; null when it uses none.
  const FormulaDefinition* of(const FormulaCell& cell) const;
  template <class Visit>
  void forEach(Visit&& visit) {
    for (auto& [place, definition] : _definitions) visit(definition);
  }

  // What a save writes behind formula cells.
  class Placement {
   public:
    const FormulaDefinition* behind(const FormulaCell& cell) const;

   private:
    friend class FormulaDefinitions;
    boost::unordered_flat_map<std::uint32_t, FormulaDefinition> _byCell;
  };
  // Finds the first user of each definition in row order, points all users to it, and fits the range to the users where
  // it no longer is theirs. Definitions without users are left out.
  Placement settle(CellStore& cells, RecordPool& pool);

 private:
  boost::unordered_flat_map<std::uint32_t, FormulaDefinition> _definitions;
};

// The tokens of a shared or array formula's definition, the data of array constants behind them, and whether references
// are offsets from the cell.
struct DefinitionTokens {
  std::span<const std::uint8_t> tokens;
  std::span<const std::uint8_t> constants;
  bool relative = false;
};
std::optional<DefinitionTokens> definitionTokens(const FormulaDefinition& definition);

// The same bytes as the formula engine wants them.
inline std::span<const std::uint8_t> octets(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}
inline std::span<const std::byte> rawBytes(std::span<const std::uint8_t> bytes) {
  return std::as_bytes(bytes);
}

}  // namespace rubrica
