#include "xml/package_links.h"

#include <algorithm>
#include <map>
#include <set>

namespace rubrica {
namespace {

constexpr std::string_view kRelsDirectory = "_rels";
constexpr std::string_view kRelsExtension = ".rels";

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

std::vector<std::string> partsOnlyUsedBy(const PartMap& parts, const std::vector<std::string>& partNames) {
  std::map<std::string, std::size_t, PartNameLess> users;
  for (const auto& [name, entry] : parts) {
    const bool isPackage = samePartName(name, makeRelsPath("/"));
    const std::string owner = isPackage ? "/" : relsOwner(name);
    if (owner.empty()) continue;
    for (const std::string& target : linkedParts(parts, owner)) ++users[target];
  }
  std::vector<std::string> only;
  std::vector<std::string> toVisit = partNames;
  std::set<std::string, PartNameLess> visited(partNames.begin(), partNames.end());
  while (!toVisit.empty()) {
    const std::string name = std::move(toVisit.back());
    toVisit.pop_back();
    const std::string rels = makeRelsPath(name);
    const std::vector<std::string> linked = linkedParts(parts, name);
    if (parts.contains(rels)) only.push_back(rels);
    for (const std::string& target : linked) {
      if (--users[target] > 0 || !parts.contains(target) || !visited.insert(target).second) continue;
      only.push_back(target);
      toVisit.push_back(target);
    }
  }
  return only;
}

}  // namespace rubrica
