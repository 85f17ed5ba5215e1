#include "tools/losses.h"

namespace rubrica::tools {

void Losses::addAt(const std::string& place, const std::string& kind) {
  const auto [found, isNew] = _kinds.try_emplace(kind);
  if (isNew) {
    found->second.firstPlace = place;
    _order.push_back(kind);
  }
  ++found->second.count;
}

std::vector<std::string> Losses::lines() const {
  std::vector<std::string> lines;
  for (const std::string& text : _order) {
    const auto kind = _kinds.find(text);
    if (kind == _kinds.end()) {
      lines.push_back(text);
      continue;
    }
    std::string line = kind->second.firstPlace;
    if (kind->second.count > 1) {
      line.append(" and ").append(std::to_string(kind->second.count - 1)).append(" more places");
    }
    lines.push_back(line.append(": ").append(text));
  }
  return lines;
}

}  // namespace rubrica::tools
