// Test support: what operations answer as text for people, and small pictures.
#pragma once

#include <string>
#include <type_traits>

#include "tests/forms/both_forms.h"

namespace rubrica::test {

using B = FormBook&;

template <class... Values>
std::string join(const Values&... values) {
  std::string text;
  const auto add = [&](const auto& value) {
    if (!text.empty()) text += ' ';
    if constexpr (std::is_convertible_v<decltype(value), std::string>) {
      text += value;
    } else if constexpr (std::is_same_v<std::decay_t<decltype(value)>, double>) {
      text += std::to_string(value).substr(0, std::to_string(value).find('.') + 3);
    } else {
      text += std::to_string(static_cast<int>(value));
    }
  };
  (add(values), ...);
  return text;
}

// A result with the message that it left. The arguments of one call have no order; here the result comes first.
template <class Value>
std::string withMessage(B b, const Value& value) {
  return join(value, b.message());
}

struct Range {
  int r1 = -9, r2 = -9, c1 = -9, c2 = -9;
  std::string text() const { return join(r1, r2, c1, c2); }
};

// A PNG of one pixel by its header; readers of the header ask for no more.
inline std::string png(int width, int height) {
  std::string bytes("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);
  for (const int value : {width, height}) {
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  }
  return bytes + std::string("\x08\x02\0\0\0\0\0\0\0", 9);
}

inline int addPng(B b, int width, int height) {
  const std::string bytes = png(width, height);
  return b.book->addPicture2(bytes.data(), bytes.size());
}

}  // namespace rubrica::test
