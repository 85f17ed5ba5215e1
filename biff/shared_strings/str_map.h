// StrMap: the shared strings of an .xls book. Equal texts that are added share one entry; the entries of a file keep
// their positions, duplicates included. Owned by the book; texts lie in the book's pool. Nothing is ever removed.
//
// The hash of a loaded table is built on the first add or set, so that loading doesn't hash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include <boost/unordered/unordered_flat_set.hpp>

#include "biff/record_pool.h"
#include "biff/shared_strings/rich_string.h"

namespace rubrica {

class StrMap {
 public:
  explicit StrMap(RecordPool& pool) : _pool(&pool), _positions(0, Hash{this}, Equal{this}) {}
  StrMap(const StrMap&) = delete;
  StrMap& operator=(const StrMap&) = delete;

  // Empties the table. Goes with a clear of the pool.
  void clear();

  // The index of the plain entry of this text, made if there is none, with one more reference counted. Throws xlerror
  // "string is too long" above 65535 characters.
  std::uint32_t add(std::u16string_view text);
  // Replaces the text of an entry, and its runs and phonetic data by none. Throws xlerror "StrMap: sst is out of range
  // (1)" past the end. The reference count stays.
  void set(std::uint32_t index, std::u16string_view text);
  // Throws xlerror "StrMap: sst is out of range (2)" past the end.
  const XLUnicodeRichExtendedString& get(std::uint32_t index) const;
  // The zero-terminated text of get(index); never null.
  const char16_t* text(std::uint32_t index) const { return get(index).text; }

  std::uint32_t cstTotal() const { return _cstTotal; }
  std::uint32_t cstUnique() const { return static_cast<std::uint32_t>(_entries.size()); }
  const std::vector<XLUnicodeRichExtendedString>& entries() const { return _entries; }

  // For the reader of a file: the count of references, and entries that are appended whether they are there or not.
  void setTotal(std::uint32_t cstTotal) { _cstTotal = cstTotal; }
  void append(const XLUnicodeRichExtendedString& entry) { _entries.push_back(entry); }
  RecordPool& pool() { return *_pool; }

  // FNV-1 over the 16-bit units.
  static std::uint32_t hash(std::u16string_view text);

 private:
  // A text that is looked up, with its hash.
  struct Key {
    std::u16string_view text;
    std::uint32_t hash;
  };
  struct Hash {
    using is_transparent = void;
    const StrMap* map;
    std::size_t operator()(std::uint32_t position) const { return map->_entries[position].hash; }
    std::size_t operator()(const Key& key) const { return key.hash; }
  };
  struct Equal {
    using is_transparent = void;
    const StrMap* map;
    bool operator()(std::uint32_t a, std::uint32_t b) const {
      return a == b || (*this)(Key{map->_entries[a].view(), map->_entries[a].hash}, b);
    }
    bool operator()(const Key& key, std::uint32_t position) const {
      const auto& entry = map->_entries[position];
      return entry.hash == key.hash && entry.cch == key.text.size() &&
             std::memcmp(entry.text, key.text.data(), key.text.size() * sizeof(char16_t)) == 0;
    }
    bool operator()(std::uint32_t position, const Key& key) const { return (*this)(key, position); }
  };

  void hashNewEntries();
  XLUnicodeRichExtendedString makeEntry(std::u16string_view text, std::uint32_t hash);

  RecordPool* _pool;
  std::vector<XLUnicodeRichExtendedString> _entries;
  // Positions of the plain entries, the first of each text. An entry with runs or phonetic data equals no plain text
  // that is looked up, so it isn't here.
  boost::unordered_flat_set<std::uint32_t, Hash, Equal> _positions;
  std::size_t _hashed = 0;  // entries from here on are not hashed yet
  std::uint32_t _cstTotal = 0;
};

}  // namespace rubrica
