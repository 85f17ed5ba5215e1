// Finds names in a list by their text, whatever its case: a look-up instead of a walk, so that thousands of sheets or
// names don't cost the square of their number. The list's owner enters its names in order and clears the index when
// they change otherwise than at the end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <boost/unordered/unordered_flat_map.hpp>

namespace rubrica {

// Names of sheets and ranges compare without regard to the case of Latin-1, Greek and Cyrillic letters.
bool sameNameIgnoringCase(std::u16string_view a, std::u16string_view b);

class FoldedIndex {
 public:
  // Names entered so far: the position in the list that the next add() is for.
  std::size_t size() const { return _size; }
  // Enters the next name of the list. Of equal names in one scope the first one is found.
  void add(std::u16string_view name, char16_t scope = 0);
  // The same without going on to the next: a second name of the last one entered.
  void addAlias(std::u16string_view name, char16_t scope = 0);
  std::optional<std::size_t> find(std::u16string_view name, char16_t scope = 0) const;
  void clear();

 private:
  boost::unordered_flat_map<std::u16string, std::uint32_t> _positions;  // by the name in capitals and its scope
  std::size_t _size = 0;
};

}  // namespace rubrica
