// The quick look of MarkupResolver: by the colons of the text alone, which are few beside its tags.
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "lmx/text.h"
#include "xml/markup_resolver.h"

namespace rubrica {
namespace {

bool isNameChar(char c) {
  return c != ':' && lmx::is_name_char(static_cast<unsigned char>(c));
}

class Survey {
 public:
  explicit Survey(std::string_view text) : _text(text) {}

  template <class IsUnderstood>
  bool isNeeded(const IsUnderstood& isUnderstood) {
    for (std::size_t colon = _text.find(':'); colon != _text.npos; colon = _text.find(':', colon + 1)) look(colon);
    if (_hasForeignDefault) return true;
    for (const std::string_view prefix : _elementPrefixes) {
      const bool isIgnorable = _ignorables.count(prefix) != 0;
      const auto [first, last] = _declared.equal_range(prefix);
      for (auto it = first; it != last; ++it) {
        if (it->second == kCompatibilityUri || (isIgnorable && !isUnderstood(it->second))) return true;
      }
    }
    return false;
  }

 private:
  void look(std::size_t colon) {
    std::size_t begin = colon;
    while (begin > 0 && isNameChar(_text[begin - 1])) --begin;
    if (begin == colon || begin == 0) return;
    const std::string_view name = _text.substr(begin, colon - begin);
    if (_text[begin - 1] == '<') {
      if (name == _lastPrefix) return;
      _lastPrefix = name;
      _elementPrefixes.insert(name);
    } else if (_text[begin - 1] == '"' || _text[begin - 1] == '\'') {
      if (isDefaultDeclaration(begin - 1)) noteDefault(valueAt(begin - 1));
    } else {
      lookAtAttribute(name, colon + 1);
    }
  }

  void lookAtAttribute(std::string_view prefix, std::size_t localBegin) {
    std::size_t p = localBegin;
    while (p < _text.size() && isNameChar(_text[p])) ++p;
    const std::string_view local = _text.substr(localBegin, p - localBegin);
    if (prefix != "xmlns" && local != "Ignorable") return;
    while (p < _text.size() && (lmx::is_space(_text[p]) || _text[p] == '=')) ++p;
    const std::string_view value = valueAt(p);
    if (prefix == "xmlns") {
      _declared.emplace(local, value);
      return;
    }
    for (std::size_t i = 0; i < value.size();) {
      while (i < value.size() && lmx::is_space(value[i])) ++i;
      const std::size_t begin = i;
      while (i < value.size() && !lmx::is_space(value[i])) ++i;
      if (i > begin) _ignorables.insert(value.substr(begin, i - begin));
    }
  }

  // Of a value that the quote at `quote` begins.
  std::string_view valueAt(std::size_t quote) const {
    if (quote >= _text.size() || (_text[quote] != '"' && _text[quote] != '\'')) return {};
    const std::size_t close = _text.find(_text[quote], quote + 1);
    return close == _text.npos ? std::string_view() : _text.substr(quote + 1, close - quote - 1);
  }

  bool isDefaultDeclaration(std::size_t quote) const {
    std::size_t p = quote;
    while (p > 0 && (lmx::is_space(_text[p - 1]) || _text[p - 1] == '=')) --p;
    constexpr std::string_view kName = "xmlns";
    return p > kName.size() && _text.substr(p - kName.size(), kName.size()) == kName &&
           lmx::is_space(_text[p - kName.size() - 1]);
  }

  // The first one is the root's; one that differs from it may make ignorable elements of names without a prefix.
  void noteDefault(std::string_view uri) {
    if (_firstDefault.empty()) _firstDefault = uri;
    if (uri != _firstDefault || uri == kCompatibilityUri) _hasForeignDefault = true;
  }

  std::string_view _text;
  std::string_view _lastPrefix, _firstDefault;
  bool _hasForeignDefault = false;
  std::unordered_set<std::string_view> _elementPrefixes, _ignorables;
  std::unordered_multimap<std::string_view, std::string_view> _declared;
};

}  // namespace

bool MarkupResolver::isNeeded() const {
  return Survey(_text).isNeeded([this](std::string_view uri) { return isUnderstood(uri); });
}

}  // namespace rubrica
