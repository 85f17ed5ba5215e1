// What a conversion could not carry over: one line of text each, those of one kind gathered so that a thousand cells
// with the same trouble make one line.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace rubrica::tools {

class Losses {
 public:
  // A loss by itself.
  void add(const std::string& text) { _order.push_back(text); }
  // One of a kind at a place: "Sheet1!B7" and "the formula is kept as its value (formula is too long)".
  void addAt(const std::string& place, const std::string& kind);

  bool empty() const { return _order.empty(); }
  std::vector<std::string> lines() const;

 private:
  struct Kind {
    std::string firstPlace;
    long count = 0;
  };
  std::vector<std::string> _order;  // texts, and kinds in the order of their first place
  std::map<std::string, Kind> _kinds;
};

}  // namespace rubrica::tools
