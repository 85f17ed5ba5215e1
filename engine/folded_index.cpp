#include "engine/folded_index.h"

#include <algorithm>

#include "engine/sheet_name.h"

namespace rubrica {
namespace {

std::u16string keyOf(std::u16string_view name, char16_t scope) {
  std::u16string key(name.size() + 1, scope);
  std::transform(name.begin(), name.end(), key.begin(), nameCapital);
  return key;
}

}  // namespace

void FoldedIndex::add(std::u16string_view name, char16_t scope) {
  _positions.try_emplace(keyOf(name, scope), static_cast<std::uint32_t>(_size));
  ++_size;
}

void FoldedIndex::addAlias(std::u16string_view name, char16_t scope) {
  _positions.try_emplace(keyOf(name, scope), static_cast<std::uint32_t>(_size - 1));
}

std::optional<std::size_t> FoldedIndex::find(std::u16string_view name, char16_t scope) const {
  const auto found = _positions.find(keyOf(name, scope));
  return found == _positions.end() ? std::nullopt : std::optional<std::size_t>(found->second);
}

void FoldedIndex::clear() {
  _positions.clear();
  _size = 0;
}

}  // namespace rubrica
