#include "xml/foreign_style.h"

#include <string_view>
#include <type_traits>
#include <utility>

#include "xml/part.h"

namespace rubrica {
namespace {

constexpr std::string_view kTransitionalUri = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr std::string_view kStrictUri = "http://purl.oclc.org/ooxml/spreadsheetml/main";

// What differs between the flavours in the text of a stylesheet. A '<' begins nothing but a tag.
constexpr std::pair<std::string_view, std::string_view> kWords[] = {{kTransitionalUri, kStrictUri},
                                                                    {"<left", "<start"},
                                                                    {"</left", "</start"},
                                                                    {"<right", "<end"},
                                                                    {"</right", "</end"}};

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

}  // namespace

template <class Tag, class OtherTag>
typename Flavour<Tag>::StyleSheetRoot translateStyles(const typename Flavour<OtherTag>::StyleSheetRoot& source) {
  constexpr bool kToStrict = std::is_same_v<Tag, excelStrict_tag>;
  std::string text;
  if (const auto code = source.marshal(text)) throwBindingError(code);
  for (const auto& [transitional, strict] : kWords) {
    replaceAll(text, kToStrict ? transitional : strict, kToStrict ? strict : transitional);
  }
  typename Flavour<Tag>::StyleSheetRoot translated;
  if (const auto code = translated.unmarshal(text.data(), text.size())) throwBindingError(code);
  return translated;
}

template styles::c_styleSheet translateStyles<excelNormal_tag, excelStrict_tag>(const strict::c_styleSheet&);
template strict::c_styleSheet translateStyles<excelStrict_tag, excelNormal_tag>(const styles::c_styleSheet&);

}  // namespace rubrica
