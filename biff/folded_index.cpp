#include "biff/folded_index.h"

#include <algorithm>

namespace rubrica {
namespace {

// The capital of a letter; the Greek and Cyrillic rows too, which sheet names of real books hold.
char16_t capital(char16_t c) {
  const bool latin = (c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
  if (latin || (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) || (c >= 0x430 && c <= 0x44F))
    return static_cast<char16_t>(c - 0x20);
  if (c >= 0x450 && c <= 0x45F) return static_cast<char16_t>(c - 0x50);
  return c;
}

std::u16string keyOf(std::u16string_view name, char16_t scope) {
  std::u16string key(name.size() + 1, scope);
  std::transform(name.begin(), name.end(), key.begin(), capital);
  return key;
}

}  // namespace

bool sameNameIgnoringCase(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return capital(x) == capital(y); });
}

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
