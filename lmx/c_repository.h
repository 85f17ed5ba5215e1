// A table from name to value, as entities and namespaces are kept. A name entered again takes the later value.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace rubrica::lmx {

template <class T>
class c_repository {
 public:
  void enter(std::string_view name, T value) {
    const auto found = _values.find(name);
    if (found != _values.end()) {
      found->second = std::move(value);
    } else {
      _values.emplace(name, std::move(value));
    }
  }
  // Null when the name is not known. The pointer is good until the name is entered again.
  const T* find(std::string_view name) const {
    const auto found = _values.find(name);
    return found == _values.end() ? nullptr : &found->second;
  }
  std::size_t size() const { return _values.size(); }
  auto begin() const { return _values.begin(); }
  auto end() const { return _values.end(); }

 private:
  std::map<std::string, T, std::less<>> _values;
};

}  // namespace rubrica::lmx
