#include "xml/shared_strings.h"

#include <functional>

#include "engine/xlerror.h"
#include "lmx/text.h"
#include "xml/rich_text.h"
#include "xml/xstring.h"

namespace rubrica {

template <class Tag>
std::string_view SharedStrings<Tag>::plainText(std::size_t position) const {
  return storedText(this->get_si(position));
}

template <class Tag>
std::uint32_t SharedStrings<Tag>::add(std::u16string_view text) {
  if (text.size() > kMaxCellText) throw xlerror("string is too long");
  indexNewItems();
  toXstring(text, _stored);
  const Key key{_stored, std::hash<std::string_view>{}(_stored)};
  if (const auto known = _index.find(key); known != _index.end()) return *known;
  return append(key.text, key.hash);
}

template <class Tag>
std::uint32_t SharedStrings<Tag>::append(std::string_view text, std::size_t hash) {
  if (count() >= UINT32_MAX) throw xlerror("string is too long");
  const auto position = static_cast<std::uint32_t>(count());
  setStoredText(this->append_si(), text);
  _hashes.push_back(hash);
  _index.insert(position);
  return position;
}

template <class Tag>
void SharedStrings<Tag>::indexNewItems() {
  if (_hashes.size() == count()) return;
  _hashes.reserve(count());
  _index.reserve(count());
  for (std::size_t i = _hashes.size(); i < count(); ++i) {
    _hashes.push_back(0);
    if (!isPlain(i)) continue;
    const auto position = static_cast<std::uint32_t>(i);
    _hashes.back() = std::hash<std::string_view>{}(plainText(i));
    // Of equal texts of a file the last one is found.
    if (const auto [known, isNew] = _index.insert(position); !isNew) {
      _index.erase(known);
      _index.insert(position);
    }
  }
}

template <class Tag>
void SharedStrings<Tag>::get(std::size_t index, std::u16string& text) const {
  if (index >= count()) throw xlerror("index is out of range or no value");
  readRichText(this->get_si(index), text);
}

template <class Tag>
std::uint32_t SharedStrings<Tag>::addCopyTo(SharedStrings& target, std::size_t index) const {
  if (index >= count()) throw xlerror("index is out of range or no value");
  target.indexNewItems();
  if (isPlain(index)) {
    const std::string_view text = plainText(index);
    const Key key{text, std::hash<std::string_view>{}(text)};
    if (const auto known = target._index.find(key); known != target._index.end()) return *known;
    return target.append(text, key.hash);
  }
  const auto position = static_cast<std::uint32_t>(target.count());
  auto copy = this->get_si(index);  // the target may be this very table
  target.append_si() = std::move(copy);
  target._hashes.push_back(0);
  return position;
}

template <class Tag>
void SharedStrings<Tag>::bringUpToDate() {
  this->set_uniqueCount(static_cast<std::uint32_t>(count()));
}

template class SharedStrings<excelNormal_tag>;
template class SharedStrings<excelStrict_tag>;

}  // namespace rubrica
