// Where the defined names of a book stand in the workbook's list, so that a book of many names isn't searched from the
// front for each. A book owns one; it learns names in their order as they are asked for, and who takes names out of the
// list or changes their scopes has it forget.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace rubrica {

class NameIndex {
 public:
  // How many names of the list it knows.
  std::size_t size() const { return _size; }
  void forget() {
    _positions.clear();
    _size = 0;
  }
  // The next name of the list. Of names that are the same (name_reference.h) within one scope the first counts.
  void add(std::string_view name, int scope);
  std::optional<std::size_t> find(std::string_view name, int scope) const;

 private:
  using Key = std::pair<std::u16string, int>;  // in capitals, with the scope

  std::map<Key, std::size_t> _positions;
  std::size_t _size = 0;
};

}  // namespace rubrica
