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
    const std::string others =
        kind->second.count > 1 ? " and " + std::to_string(kind->second.count - 1) + " more places" : "";
    lines.push_back(kind->second.firstPlace + others + ": " + text);
  }
  return lines;
}

}  // namespace rubrica::tools
