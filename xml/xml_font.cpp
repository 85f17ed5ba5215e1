#include "xml/xml_font.h"

#include <utility>

#include "xml/foreign_style.h"
#include "xml/style_words.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

constexpr int kDefaultPoints = 11;
constexpr int kMaxPoints = 409;  // what a spreadsheet takes

// The child that `find` gets from one of the font's choices; null where no choice has it.
template <class Font, class Find>
auto findChild(Font& font, Find find) -> decltype(find(font.get_choice(0))) {
  for (std::size_t i = 0; i < font.size_choice(); ++i) {
    if (auto* child = find(font.get_choice(i))) return child;
  }
  return nullptr;
}

// The same child, or what `make` gets from a new choice at the end.
template <class Font, class Find, class Make>
auto& needChild(Font& font, Find find, Make make) {
  if (auto* child = findChild(font, find)) return *child;
  std::decay_t<decltype(font.append_choice())> added;
  make(added);
  return make(font.append_choice() = std::move(added));
}

constexpr auto kSize = [](auto& choice) { return choice.find_sz(); };
constexpr auto kItalic = [](auto& choice) { return choice.find_i(); };
constexpr auto kStrike = [](auto& choice) { return choice.find_strike(); };
constexpr auto kColor = [](auto& choice) { return choice.find_color(); };
constexpr auto kBold = [](auto& choice) { return choice.find_b(); };
constexpr auto kScript = [](auto& choice) { return choice.find_vertAlign(); };
constexpr auto kUnderline = [](auto& choice) { return choice.find_u(); };
constexpr auto kName = [](auto& choice) { return choice.find_name(); };

template <class Font, class Find>
bool isOn(const Font& font, Find find) {
  const auto* child = findChild(font, find);
  return child != nullptr && child->get_val();
}

}  // namespace

template <class Tag>
int XMLFontImplT<Tag>::size() const {
  const auto* child = findChild(std::as_const(*_element), kSize);
  if (child == nullptr) return kDefaultPoints;
  const double points = child->get_val();
  // Also false for what is no number.
  return points > 0 && points <= kMaxPoints ? static_cast<int>(points) : points > kMaxPoints ? kMaxPoints : 0;
}

template <class Tag>
void XMLFontImplT<Tag>::setSize(int points) {
  attempt(_styles->lastMessage(), [&] {
    needChild(
        *_element, kSize, [](auto& choice) -> auto& { return choice.get_sz(); })
        .set_val(points);
  });
}

template <class Tag>
bool XMLFontImplT<Tag>::italic() const {
  return isOn(*_element, kItalic);
}

template <class Tag>
void XMLFontImplT<Tag>::setItalic(bool italic) {
  attempt(_styles->lastMessage(), [&] {
    needChild(
        *_element, kItalic, [](auto& choice) -> auto& { return choice.get_i(); })
        .set_val(italic);
  });
}

template <class Tag>
bool XMLFontImplT<Tag>::strikeOut() const {
  return isOn(*_element, kStrike);
}

template <class Tag>
void XMLFontImplT<Tag>::setStrikeOut(bool strikeOut) {
  attempt(_styles->lastMessage(), [&] {
    needChild(
        *_element, kStrike, [](auto& choice) -> auto& { return choice.get_strike(); })
        .set_val(strikeOut);
  });
}

template <class Tag>
Color XMLFontImplT<Tag>::color() const {
  const auto* child = findChild(std::as_const(*_element), kColor);
  if (child == nullptr) return color::automatic;
  return guarded(_styles->lastMessage(), Color{color::notSet}, [&] { return _styles->readColor(*child); });
}

template <class Tag>
void XMLFontImplT<Tag>::setColor(Color color) {
  attempt(_styles->lastMessage(), [&] {
    if (color == color::notSet) return;
    const bool isAutomatic = !_styles->rgbMode() && color == color::automatic;
    if (!isAutomatic) {
      _styles->writeColor(needChild(
                              *_element, kColor, [](auto& choice) -> auto& { return choice.get_color(); }),
                          color);
      return;
    }
    for (std::size_t i = 0; i < _element->size_choice(); ++i) {
      if (!_element->get_choice(i).isset_color()) continue;
      _element->erase_choice(i);
      return;
    }
  });
}

template <class Tag>
bool XMLFontImplT<Tag>::bold() const {
  return isOn(*_element, kBold);
}

template <class Tag>
void XMLFontImplT<Tag>::setBold(bool bold) {
  attempt(_styles->lastMessage(), [&] {
    needChild(
        *_element, kBold, [](auto& choice) -> auto& { return choice.get_b(); })
        .set_val(bold);
  });
}

template <class Tag>
Script XMLFontImplT<Tag>::script() const {
  const auto* child = findChild(std::as_const(*_element), kScript);
  return child == nullptr ? Script::normal : style_words::scriptOf(child->get_val());
}

template <class Tag>
void XMLFontImplT<Tag>::setScript(Script script) {
  attempt(_styles->lastMessage(), [&] {
    std::string word(style_words::wordOf(script));
    needChild(
        *_element, kScript, [](auto& choice) -> auto& { return choice.get_vertAlign(); })
        .set_val(std::move(word));
  });
}

template <class Tag>
Underline XMLFontImplT<Tag>::underline() const {
  const auto* child = findChild(std::as_const(*_element), kUnderline);
  return child == nullptr ? Underline::none : style_words::underlineOf(child->get_val());
}

template <class Tag>
void XMLFontImplT<Tag>::setUnderline(Underline underline) {
  attempt(_styles->lastMessage(), [&] {
    std::string word(style_words::wordOf(underline));
    needChild(
        *_element, kUnderline, [](auto& choice) -> auto& { return choice.get_u(); })
        .set_val(std::move(word));
  });
}

template <class Tag>
const char16_t* XMLFontImplT<Tag>::name() {
  const auto* child = findChild(std::as_const(*_element), kName);
  if (child == nullptr) return nullptr;
  return guarded(_styles->lastMessage(), static_cast<const char16_t*>(nullptr), [&] {
    fromXstring(child->get_val(), _name);
    return _name.c_str();
  });
}

template <class Tag>
bool XMLFontImplT<Tag>::setName(const char16_t* name) {
  return guarded(_styles->lastMessage(), false, [&] {
    assignName(name);
    return true;
  });
}

template <class Tag>
void XMLFontImplT<Tag>::assignName(const char16_t* name) {
  std::string text = toXstring(viewOf(name));
  needChild(
      *_element, kName, [](auto& choice) -> auto& { return choice.get_name(); })
      .set_val(std::move(text));
}

template <class Tag>
bool XMLFontImplT<Tag>::hasSize() const {
  return findChild(std::as_const(*_element), kSize) != nullptr;
}
template <class Tag>
bool XMLFontImplT<Tag>::hasItalic() const {
  return findChild(std::as_const(*_element), kItalic) != nullptr;
}
template <class Tag>
bool XMLFontImplT<Tag>::hasStrikeOut() const {
  return findChild(std::as_const(*_element), kStrike) != nullptr;
}
template <class Tag>
bool XMLFontImplT<Tag>::hasColor() const {
  return findChild(std::as_const(*_element), kColor) != nullptr;
}
template <class Tag>
bool XMLFontImplT<Tag>::hasBold() const {
  return findChild(std::as_const(*_element), kBold) != nullptr;
}
template <class Tag>
bool XMLFontImplT<Tag>::hasScript() const {
  return findChild(std::as_const(*_element), kScript) != nullptr;
}
template <class Tag>
bool XMLFontImplT<Tag>::hasUnderline() const {
  return findChild(std::as_const(*_element), kUnderline) != nullptr;
}
template <class Tag>
bool XMLFontImplT<Tag>::hasName() const {
  return findChild(std::as_const(*_element), kName) != nullptr;
}

template <class Tag>
void XMLFontImplT<Tag>::copyFrom(IFontT<char16_t>& source) {
  using Other = typename Flavour<Tag>::Other;
  if (const auto* same = dynamic_cast<const XMLFontImplT*>(&source)) {
    *_element = Element(same->element());
    return;
  }
  if (const auto* other = dynamic_cast<const XMLFontImplT<Other>*>(&source)) {
    typename Flavour<Other>::StyleSheetRoot carrier;
    carrier.get_fonts().append_font() = other->element();
    *_element = translateStyles<Tag>(carrier).get_fonts().get_font(0);
    return;
  }
  const IndexColorMode colors(*_styles, dynamic_cast<IFontPrivate<char16_t>*>(&source));
  setSize(source.size());
  if (source.bold()) setBold(true);
  if (source.italic()) setItalic(true);
  if (source.strikeOut()) setStrikeOut(true);
  setColor(source.color());
  if (source.underline() != Underline::none) setUnderline(source.underline());
  if (source.script() != Script::normal) setScript(source.script());
  if (const char16_t* name = source.name(); name != nullptr) assignName(name);
}

template class XMLFontImplT<excelNormal_tag>;
template class XMLFontImplT<excelStrict_tag>;

}  // namespace rubrica
