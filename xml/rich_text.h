// The text of CT_Rst, which shared strings, inline strings and comments share: either one plain `t` or runs that each
// have their own. The modules differ in whether a `t` is a plain member or an element with `xml:space`; these functions
// know both, and the packed item of the shared strings. Templates over the module's class, without state.
#pragma once

#include <string>
#include <string_view>

#include "lmx/text.h"
#include "xml/xstring.h"

namespace rubrica {

// The plain text, empty where there is none.
template <class Rst>
std::string_view storedText(const Rst& item) {
  if constexpr (requires { item.view_t(); }) {
    if (const auto text = item.view_t()) return *text;
    const auto* full = item.find_full();
    return full == nullptr ? std::string_view() : storedText(*full);
  } else if constexpr (requires { item.find_t(); }) {
    const auto* text = item.find_t();
    return text == nullptr ? std::string_view() : std::string_view(text->get_value());
  } else {
    return item.get_t();
  }
}

// Text whose outer white space readers would drop unless told to keep it.
inline bool needsPreservedSpace(std::string_view text) {
  return !text.empty() && (lmx::is_space(text.front()) || lmx::is_space(text.back()));
}

template <class Rst>
void setStoredText(Rst& item, std::string_view text) {
  if constexpr (requires { item.view_t(); }) {
    if (needsPreservedSpace(text)) {
      setStoredText(item.get_full(), text);
    } else {
      item.set_t(text);
    }
  } else if constexpr (requires { item.find_t(); }) {
    auto& element = item.get_t();
    element.set_value(std::string(text));
    if (needsPreservedSpace(text)) {
      element.set_xml_space("preserve");
    } else {
      element.unset_xml_space();
    }
  } else {
    item.set_t(std::string(text));
  }
}

// All the text of an item: its plain text, or else its runs joined.
template <class Rst>
void readRichText(const Rst& item, std::u16string& text) {
  if (item.isset_t() || item.size_r() == 0) {
    fromXstring(storedText(item), text);
    return;
  }
  std::string joined;
  for (std::size_t i = 0; i < item.size_r(); ++i) joined += storedText(item.get_r(i));
  fromXstring(joined, text);
}

}  // namespace rubrica
