// The Row records of a sheet in the order they came or were made, with a look-up by row number. Owned by the sheet.
#pragma once

#include <cstdint>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "biff/records/sheet_records.h"

namespace rubrica {

class RowTable {
 public:
  const std::vector<RowRecord>& rows() const { return _rows; }
  std::vector<RowRecord>& rows() { return _rows; }
  // The first entry of the row; null when it has none.
  RowRecord* find(int row);
  // The same, made with the defaults where there is none.
  RowRecord& at(int row);
  // Adds what a file brings, also a second entry of a row.
  void append(const RowRecord& row);
  void clear();
  // To be called after rows() was changed otherwise than field by field.
  void reindex();

 private:
  std::vector<RowRecord> _rows;
  boost::unordered_flat_map<std::uint16_t, std::uint32_t> _positions;
};

}  // namespace rubrica
