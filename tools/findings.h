// Things found in a file, each with its number, in the order in which they were met. Used by what lists the content
// that the interfaces say nothing of.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace rubrica::tools {

class Findings {
 public:
  void count(const std::string& one, const std::string& many, long number = 1) {
    if (number == 0) return;
    const auto [found, isNew] = _numbers.try_emplace(one, Entry{many, 0});
    if (isNew) _order.push_back(one);
    found->second.number += number;
  }
  std::vector<std::string> lines() const {
    std::vector<std::string> lines;
    for (const std::string& one : _order) {
      const Entry& entry = _numbers.at(one);
      lines.push_back(std::to_string(entry.number) + " " + (entry.number == 1 ? one : entry.many));
    }
    return lines;
  }

 private:
  struct Entry {
    std::string many;
    long number;
  };
  std::vector<std::string> _order;
  std::map<std::string, Entry> _numbers;
};

}  // namespace rubrica::tools
