#include "biff/shared_strings/str_map.h"

#include "engine/xlerror.h"

namespace rubrica {
namespace {
constexpr std::uint32_t kFnvStart = 0x811C9DC5, kFnvPrime = 16777619;
}

std::uint32_t StrMap::hash(std::u16string_view text) {
  std::uint32_t hash = kFnvStart;
  for (const char16_t unit : text) hash = (hash * kFnvPrime) ^ unit;
  return hash;
}

void StrMap::clear() {
  _entries = {};
  _positions = decltype(_positions)(0, Hash{this}, Equal{this});
  _hashed = 0;
  _cstTotal = 0;
}

std::uint32_t StrMap::add(std::u16string_view text) {
  if (text.empty()) text = u"";
  hashNewEntries();
  const Key key{text, hash(text)};
  if (const auto known = _positions.find(key); known != _positions.end()) {
    ++_cstTotal;
    return *known;
  }
  _entries.push_back(makeEntry(text, key.hash));
  const auto position = static_cast<std::uint32_t>(_entries.size() - 1);
  _positions.insert(position);
  ++_hashed;
  ++_cstTotal;
  return position;
}

void StrMap::set(std::uint32_t index, std::u16string_view text) {
  if (index >= _entries.size()) throw xlerror("StrMap: sst is out of range (1)");
  hashNewEntries();
  const auto entry = makeEntry(text, hash(text));
  if (_entries[index].isPlain()) {
    // Of duplicates only the first is in the set.
    const auto known = _positions.find(index);
    if (known != _positions.end() && *known == index) _positions.erase(known);
  }
  _entries[index] = entry;
  _positions.insert(index);
}

const XLUnicodeRichExtendedString& StrMap::get(std::uint32_t index) const {
  if (index >= _entries.size()) throw xlerror("StrMap: sst is out of range (2)");
  return _entries[index];
}

void StrMap::hashNewEntries() {
  if (_hashed == _entries.size()) return;
  _positions.reserve(_positions.size() + _entries.size() - _hashed);
  for (; _hashed < _entries.size(); ++_hashed) {
    auto& entry = _entries[_hashed];
    if (!entry.isPlain()) continue;
    entry.hash = hash(entry.view());
    _positions.insert(static_cast<std::uint32_t>(_hashed));
  }
}

XLUnicodeRichExtendedString StrMap::makeEntry(std::u16string_view text, std::uint32_t hash) {
  if (text.size() > UINT16_MAX) throw xlerror("string is too long");
  XLUnicodeRichExtendedString entry;
  if (!text.empty()) entry.text = _pool->copyText(text);
  entry.hash = hash;
  entry.cch = static_cast<std::uint16_t>(text.size());
  entry.flags = text_flags::kHighByte;
  return entry;
}

}  // namespace rubrica
