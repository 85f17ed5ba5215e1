// The custom number formats of an .xls book (Format records), found by text and by id in constant time. Owned by
// StyleTables. Nothing is ever removed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "biff/book_state.h"
#include "biff/unicode_string.h"
#include "engine/enums.h"

namespace rubrica {

class NumFormats {
 public:
  // The id of the first entry of this text; without one a new entry under the smallest free id of 164 to 392. When none
  // is free the new entry has id 0, which is the answer then.
  struct Added {
    int id;
    bool isNew;
  };
  Added add(std::u16string_view text, RecordPool& pool);
  // The text of the first entry of this id; null where there is no entry or it has no text.
  const char16_t* text(int id) const;
  bool contains(int id) const;
  std::size_t size() const { return _entries.size(); }

  void clear();
  void read(Xls& xls, std::uint16_t size, BookState& state);
  void write(Xls& xls) const;

 private:
  struct Entry {
    std::uint16_t id = 0;
    bool hasText = false;
    XLUnicodeString text;
  };
  void append(const Entry& entry);

  std::vector<Entry> _entries;
  boost::unordered_flat_map<std::u16string_view, std::uint32_t> _byText;  // first entry of each text
  boost::unordered_flat_map<std::uint16_t, std::uint32_t> _byId;          // first entry of each id
  int _nextFree = numformat::firstCustom;                                 // ids below are taken
};

}  // namespace rubrica
