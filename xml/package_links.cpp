#include "xml/package_links.h"

#include <algorithm>
#include <set>

namespace rubrica {
namespace {

constexpr std::string_view kRelsDirectory = "_rels";
constexpr std::string_view kRelsExtension = ".rels";

using Names = std::set<std::string, PartNameLess>;

bool isExternal(const relationships::c_CT_Relationship& item) {
  return item.isset_TargetMode() && item.get_TargetMode() == "External";
}

}  // namespace

std::string targetKey(std::string_view directory, std::string_view target) {
  std::string key = target.substr(0, 1) == "/" ? std::string() : std::string(directory);
  for (std::size_t begin = 0; begin <= target.size();) {
    const std::size_t end = std::min(target.find('/', begin), target.size());
    const std::string_view segment = target.substr(begin, end - begin);
    if (segment == "..") {
      key.resize(key.rfind('/') == key.npos ? 0 : key.rfind('/'));
    } else if (!segment.empty() && segment != ".") {
      key.append("/").append(segment);
    }
    begin = end + 1;
  }
  return key;
}

std::string relsOwner(std::string_view relsName) {
  const std::string directory = partDirectory(relsName);
  const std::string_view name = relsName.substr(directory.size());
  if (name.size() <= kRelsExtension.size() + 1 || !name.ends_with(kRelsExtension)) return {};
  const std::size_t slash = directory.rfind('/');
  if (slash == directory.npos || !samePartName(std::string_view(directory).substr(slash + 1), kRelsDirectory))
    return {};
  return directory.substr(0, slash).append(name.substr(0, name.size() - kRelsExtension.size()));
}

std::vector<std::string> linkedParts(const PartMap& parts, std::string_view partName) {
  std::vector<std::string> linked;
  const auto* links = parts.findAs<Relationships>(makeRelsPath(partName));
  if (links == nullptr) return linked;
  const std::string directory = partDirectory(partName);
  for (std::size_t i = 0; i < links->size_Relationship(); ++i) {
    const auto& item = links->get_Relationship(i);
    if (!isExternal(item)) linked.push_back(targetKey(directory, item.get_Target()));
  }
  return linked;
}

// What hangs below the parts is what may go; then whatever a part that stays points at stays too, with what hangs below
// it. Counting users would not do: parts that point at each other in a ring have users for ever.
std::vector<std::string> partsOnlyUsedBy(const PartMap& parts, const std::vector<std::string>& partNames) {
  const Names given(partNames.begin(), partNames.end());
  Names mayGo = given;
  std::vector<std::string> toVisit = partNames;
  while (!toVisit.empty()) {
    const std::string name = std::move(toVisit.back());
    toVisit.pop_back();
    for (std::string& target : linkedParts(parts, name)) {
      if (parts.contains(target) && mayGo.insert(target).second) toVisit.push_back(std::move(target));
    }
  }
  for (const auto& [name, entry] : parts) {
    const std::string owner = samePartName(name, makeRelsPath("/")) ? "/" : relsOwner(name);
    if (!owner.empty() && mayGo.count(owner) == 0) toVisit.push_back(owner);
  }
  while (!toVisit.empty()) {
    const std::string name = std::move(toVisit.back());
    toVisit.pop_back();
    for (std::string& target : linkedParts(parts, name)) {
      if (given.count(target) == 0 && mayGo.erase(target) != 0) toVisit.push_back(std::move(target));
    }
  }
  std::vector<std::string> only;
  for (const std::string& name : mayGo) {
    if (parts.contains(makeRelsPath(name))) only.push_back(makeRelsPath(name));
    if (given.count(name) == 0) only.push_back(name);
  }
  return only;
}

}  // namespace rubrica
