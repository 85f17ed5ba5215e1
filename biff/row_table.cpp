#include "biff/row_table.h"

#include "engine/make_room.h"

namespace rubrica {

RowRecord* RowTable::find(int row) {
  const auto found = _positions.find(static_cast<std::uint16_t>(row));
  return found == _positions.end() ? nullptr : &_rows[found->second];
}

RowRecord& RowTable::at(int row) {
  if (RowRecord* found = find(row)) return *found;
  RowRecord made;
  made.rw = static_cast<std::uint16_t>(row);
  append(made);
  return _rows.back();
}

void RowTable::append(const RowRecord& row) {
  makeRoom(_rows);
  _positions.try_emplace(row.rw, static_cast<std::uint32_t>(_rows.size()));
  _rows.push_back(row);
}

void RowTable::clear() {
  _rows.clear();
  _positions.clear();
}

void RowTable::reindex() {
  _positions.clear();
  for (std::uint32_t i = 0; i < _rows.size(); ++i) _positions.try_emplace(_rows[i].rw, i);
}

}  // namespace rubrica
