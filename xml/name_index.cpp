#include "xml/name_index.h"

#include <algorithm>

#include "engine/sheet_name.h"
#include "platform/text.h"

namespace rubrica {
namespace {

std::u16string inCapitals(std::string_view name) {
  std::u16string text = platform::utf16FromUtf8Lossy(name);
  std::transform(text.begin(), text.end(), text.begin(), nameCapital);
  return text;
}

}  // namespace

void NameIndex::add(std::string_view name, int scope) {
  _positions.emplace(Key(inCapitals(name), scope), _size);
  ++_size;
}

std::optional<std::size_t> NameIndex::find(std::string_view name, int scope) const {
  const auto found = _positions.find(Key(inCapitals(name), scope));
  if (found == _positions.end()) return std::nullopt;
  return found->second;
}

}  // namespace rubrica
