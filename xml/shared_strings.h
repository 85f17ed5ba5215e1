// SharedStrings: the part "/xl/sharedStrings.xml", the texts that cells hold by position. Items are never removed, and
// those of a file keep their positions, duplicates and rich text included. Owned by the book's part map.
//
// The index that makes add cheap is built on the first add, so that loading doesn't hash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <boost/unordered/unordered_flat_set.hpp>

#include "source/ooxml/sharedStringTable.h"
#include "source/ooxml/strict.h"
#include "xml/flavour.h"
#include "xml/part.h"

namespace rubrica {

template <class Tag>
class SharedStrings final : public XmlFile<typename Flavour<Tag>::SstRoot> {
 public:
  using Base = XmlFile<typename Flavour<Tag>::SstRoot>;

  SharedStrings() : _index(0, Hash{this}, Equal{this}) {}
  SharedStrings(const char* data, std::size_t size) : Base(data, size), _index(0, Hash{this}, Equal{this}) {}
  explicit SharedStrings(const std::string& path) : Base(path), _index(0, Hash{this}, Equal{this}) {}
  SharedStrings(const SharedStrings&) = delete;
  SharedStrings& operator=(const SharedStrings&) = delete;

  // The position of the plain item of this text (the last one of equal items of a file), appended if there is none.
  // Throws xlerror "string is too long" above 32767 characters.
  std::uint32_t add(std::u16string_view text);
  // The text of an item without its formatting. Throws xlerror "index is out of range or no value" past the end.
  void get(std::size_t index, std::u16string& text) const;
  // The position of the same item, runs and all, in another table.
  std::uint32_t addCopyTo(SharedStrings& target, std::size_t index) const;
  std::size_t count() const { return this->size_si(); }

  // How many cells of the book refer to this table, for the part's count attribute.
  void setReferenceCount(std::uint32_t count) { this->set_count(count); }

 private:
  void bringUpToDate() override;
  // A text that is looked up, with its hash.
  struct Key {
    std::string_view text;
    std::size_t hash;
  };
  struct Hash {
    using is_transparent = void;
    using is_avalanching = void;
    const SharedStrings* strings;
    std::size_t operator()(std::uint32_t position) const { return strings->_hashes[position]; }
    std::size_t operator()(const Key& key) const { return key.hash; }
  };
  struct Equal {
    using is_transparent = void;
    const SharedStrings* strings;
    bool operator()(std::uint32_t a, std::uint32_t b) const { return a == b || (*this)(strings->keyOf(a), b); }
    bool operator()(const Key& key, std::uint32_t position) const {
      return strings->_hashes[position] == key.hash && strings->plainText(position) == key.text;
    }
    bool operator()(std::uint32_t position, const Key& key) const { return (*this)(key, position); }
  };

  Key keyOf(std::uint32_t position) const { return {plainText(position), _hashes[position]}; }
  bool isPlain(std::size_t position) const { return this->get_si(position).size_r() == 0; }
  std::string_view plainText(std::size_t position) const;
  void indexNewItems();
  std::uint32_t append(std::string_view text, std::size_t hash);

  std::vector<std::size_t> _hashes;                              // of the items, as far as they are indexed
  boost::unordered_flat_set<std::uint32_t, Hash, Equal> _index;  // positions of the plain items
  std::string _stored;                                           // of the last add
};

extern template class SharedStrings<excelNormal_tag>;
extern template class SharedStrings<excelStrict_tag>;

}  // namespace rubrica
