#include "xml/part_map.h"

#include <algorithm>

namespace rubrica {
namespace {

unsigned char folded(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

}  // namespace

bool PartNameLess::operator()(std::string_view a, std::string_view b) const {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char left, char right) { return folded(left) < folded(right); });
}

// From the end, since names of many parts and sheets begin alike and end in a number.
bool samePartName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.rbegin(), a.rend(), b.rbegin(),
                                            [](char left, char right) { return folded(left) == folded(right); });
}

std::string normalisedPartName(std::string_view entryName) {
  std::string name(entryName);
  std::replace(name.begin(), name.end(), '\\', '/');
  // An archive that names its entries absolutely, or worse, has no say in where they stand.
  const std::size_t start = std::min(name.find_first_not_of('/'), name.size());
  return name.replace(0, start, "/");
}

std::string partDirectory(std::string_view partName) {
  const std::size_t slash = partName.rfind('/');
  return std::string(partName.substr(0, slash == partName.npos ? 0 : slash));
}

std::string makeRelsPath(std::string_view partName) {
  const std::size_t slash = partName.rfind('/');
  const std::size_t nameStart = slash == partName.npos ? 0 : slash + 1;
  std::string path(partName.substr(0, nameStart));
  if (path.empty()) path = "/";
  return path.append("_rels/").append(partName.substr(nameStart)).append(".rels");
}

std::string resolveTarget(std::string_view baseDirectory, std::string_view target) {
  std::string base(baseDirectory);
  base.push_back('/');
  if (target.substr(0, base.size()) == base) return std::string(target);
  return base.append(target);
}

XFile* PartMap::find(std::string_view name) const {
  const auto found = _parts.find(name);
  return found == _parts.end() ? nullptr : found->second.part;
}

std::string PartMap::nameOf(const XFile& part) const {
  const auto found =
      std::find_if(_parts.begin(), _parts.end(), [&](const auto& entry) { return entry.second.part == &part; });
  return found == _parts.end() ? std::string() : found->first;
}

void PartMap::remove(std::string_view name) {
  const auto found = _parts.find(name);
  if (found != _parts.end()) _parts.erase(found);
}

std::string PartMap::freeName(std::string_view prefix, unsigned first, std::string_view suffix) const {
  for (unsigned number = first;; ++number) {
    std::string name(prefix);
    name.append(std::to_string(number)).append(suffix);
    if (!contains(name)) return name;
  }
}

// The spelling of the later name stands.
void PartMap::put(std::string_view name, Entry entry) {
  remove(name);
  _parts.emplace(std::string(name), std::move(entry));
}

}  // namespace rubrica
