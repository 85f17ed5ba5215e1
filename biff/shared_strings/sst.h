// The records of the shared string table: SST with the CONTINUE records behind it, and ExtSST. Called by the book's
// load and save, with the cursor behind the header of the record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "biff/shared_strings/str_map.h"
#include "compound/xls.h"

namespace rubrica {

// Appends the strings of the record to `strings`, over as many CONTINUE records as they take.
void readSst(Xls& xls, std::uint16_t size, StrMap& strings);
void writeSst(Xls& xls, const StrMap& strings);

// Positions of every dsst-th string for a reader that wants to jump. Carried as it was read, never computed: readers
// don't rely on it.
struct ExtSst {
  struct Item {
    std::uint32_t position = 0;  // in the stream
    std::uint16_t offset = 0;    // in the record
    std::uint16_t reserved = 0;
  };
  std::uint16_t dsst = 0;  // strings for each item
  std::vector<Item> items;

  void read(Xls& xls, std::uint16_t size);
  void write(Xls& xls) const;
};

}  // namespace rubrica
