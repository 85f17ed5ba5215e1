// Test support: bound roots from and to XML text.
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "lmx/elmx_error.h"

namespace rubrica::test {

inline constexpr char kMain[] = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
inline constexpr char kStrictMain[] = "http://purl.oclc.org/ooxml/spreadsheetml/main";

template <class Root>
void fill(Root& root, const std::string& xml) {
  ASSERT_EQ(root.unmarshal(xml.data(), xml.size()), lmx::elmx_error{}) << xml;
}

template <class Root>
std::string textOf(const Root& root) {
  std::string text;
  EXPECT_EQ(root.marshal(text), lmx::elmx_error{});
  return text;
}

inline std::size_t countOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

}  // namespace rubrica::test
