// Tests that run in both flavours.
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "xml/flavour.h"

namespace rubrica {

using Flavours = ::testing::Types<excelNormal_tag, excelStrict_tag>;

struct FlavourNames {
  template <class Tag>
  static std::string GetName(int) {
    return std::is_same_v<Tag, excelStrict_tag> ? "strict" : "transitional";
  }
};

template <class Tag>
inline constexpr std::string_view kMainUri = std::is_same_v<Tag, excelStrict_tag>
                                                 ? std::string_view("http://purl.oclc.org/ooxml/spreadsheetml/main")
                                                 : "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

// `content` inside the root element of a part.
template <class Tag>
std::string partText(std::string_view root, std::string_view content) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<";
  text.append(root).append(" xmlns=\"").append(kMainUri<Tag>).append("\">");
  text.append(content).append("</").append(root).append(">");
  return text;
}

inline std::u16string wide(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

}  // namespace rubrica
