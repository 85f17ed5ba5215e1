// What a recording book remembers: every engine operation as text, such as `setMerge(0, 1, 2, 3)`, and the answers that
// a test wants given. One CallLog an object; all of a book write into the same list.
#pragma once

#include <cctype>
#include <cstddef>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/text.h"

namespace rubrica::host::testing {

class CallLog {
 public:
  using Lines = std::shared_ptr<std::vector<std::string>>;

  explicit CallLog(Lines lines) : _lines(std::move(lines)) {}

  // Answers by operation name; what has none answers 0, false or null. `outs` fills int out arguments in order.
  std::map<std::string, double> numbers;
  std::map<std::string, std::u16string> texts;
  std::map<std::string, std::vector<int>> outs;

  // Records the operation. A setter with one argument makes its getter give that value from then on.
  template <class R, class... A>
  R answer(const std::string& name, const A&... arguments) {
    std::vector<std::string> shown;
    _nextOut = 0;
    (shown.push_back(show(name, arguments)), ...);
    std::string line = name + "(";
    for (std::size_t i = 0; i < shown.size(); ++i) line += (i != 0 ? ", " : "") + shown[i];
    _lines->push_back(line + ")");
    if constexpr (sizeof...(A) == 1) {
      if (name.rfind("set", 0) == 0) (keep(name.substr(3), arguments), ...);
    }
    if constexpr (std::is_same_v<R, const char16_t*>) {
      const auto found = texts.find(name);
      return found != texts.end() ? found->second.c_str() : nullptr;
    } else if constexpr (std::is_pointer_v<R>) {
      return nullptr;
    } else if constexpr (!std::is_void_v<R>) {
      return fromNumber<R>(numbers[name]);
    }
  }

 private:
  template <class R>
  static R fromNumber(double number) {
    if constexpr (std::is_enum_v<R>) {
      return static_cast<R>(static_cast<int>(number));
    } else if constexpr (std::is_same_v<R, bool>) {
      return number != 0.0;
    } else {
      return static_cast<R>(number);
    }
  }

  template <class T>
  std::string show(const std::string& name, const T& value) {
    std::ostringstream text;
    if constexpr (std::is_same_v<T, const char16_t*>) {
      if (value == nullptr) return "null";
      text << '"' << utf8FromUtf16(value) << '"';
    } else if constexpr (std::is_same_v<T, int*>) {
      const auto found = outs.find(name);
      if (value != nullptr && found != outs.end() && _nextOut < found->second.size()) {
        *value = found->second[_nextOut++];
      }
      text << (value != nullptr ? "out" : "null");
    } else if constexpr (std::is_pointer_v<T>) {
      text << (value != nullptr ? "set" : "null");
    } else if constexpr (std::is_enum_v<T>) {
      text << static_cast<int>(value);
    } else if constexpr (std::is_same_v<T, bool>) {
      text << (value ? "true" : "false");
    } else {
      text << value;
    }
    return text.str();
  }

  template <class T>
  void keep(std::string name, const T& value) {
    name[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(name[0])));
    if constexpr (std::is_same_v<T, const char16_t*>) {
      texts[name] = value;
    } else if constexpr (!std::is_pointer_v<T>) {
      numbers[name] = static_cast<double>(value);
    }
  }

  Lines _lines;
  std::size_t _nextOut = 0;
};

}  // namespace rubrica::host::testing
