// The parts of a package by name. Names are UTF-8 with a leading "/" and forward slashes, compared without regard to
// the case of ASCII letters; walking the map gives them in that order, which is the order in the archive too. The map
// owns its parts, all but the book, which is a part of its own package.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "xml/part.h"

namespace rubrica {

// Order by the bytes of the names with 'A' to 'Z' taken as 'a' to 'z'.
struct PartNameLess {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const;
};
bool samePartName(std::string_view a, std::string_view b);

// A ZIP entry's name as a key: "\" becomes "/", and a "/" stands in front.
std::string normalisedPartName(std::string_view entryName);
// The directory of a part, without the last "/": "/xl" of "/xl/workbook.xml", empty for a part in the root.
std::string partDirectory(std::string_view partName);
// Where the relationships of a part stand: "/xl/_rels/workbook.xml.rels" of "/xl/workbook.xml".
std::string makeRelsPath(std::string_view partName);
// The key that a relationship's target means in a package whose main part stands in `baseDirectory`. "../" is not
// resolved: callers take it off where they know what it stands for.
std::string resolveTarget(std::string_view baseDirectory, std::string_view target);

class PartMap {
 public:
  struct Entry {
    XFile* part = nullptr;
    std::unique_ptr<XFile> owned;  // null for the part that somebody else owns
  };
  using Parts = std::map<std::string, Entry, PartNameLess>;

  // The part takes the place of one of the same name.
  template <class Part>
  Part& add(std::string_view name, std::unique_ptr<Part> part) {
    Part& added = *part;
    put(name, Entry{&added, std::move(part)});
    return added;
  }
  void addBorrowed(std::string_view name, XFile& part) { put(name, Entry{&part, nullptr}); }

  XFile* find(std::string_view name) const;
  // Null as well when the part is of another class.
  template <class Part>
  Part* findAs(std::string_view name) const {
    return dynamic_cast<Part*>(find(name));
  }
  bool contains(std::string_view name) const { return _parts.find(name) != _parts.end(); }
  // The name of a part of the map, empty for another.
  std::string nameOf(const XFile& part) const;
  void remove(std::string_view name);
  void clear() { _parts.clear(); }
  bool empty() const { return _parts.empty(); }
  Parts::const_iterator begin() const { return _parts.begin(); }
  Parts::const_iterator end() const { return _parts.end(); }
  // The first "prefix" N "suffix" with N from `first` up that no part has.
  std::string freeName(std::string_view prefix, unsigned first, std::string_view suffix) const;

 private:
  void put(std::string_view name, Entry entry);

  Parts _parts;
};

}  // namespace rubrica
