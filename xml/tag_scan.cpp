#include "xml/tag_scan.h"

#include "lmx/text.h"

namespace rubrica {

const char* ScannedTag::findAttribute(std::string_view attribute, std::size_t& size) const {
  for (std::size_t p = 0; p < attributes.size();) {
    while (p < attributes.size() && lmx::is_space(attributes[p])) ++p;
    const std::size_t nameBegin = p;
    while (p < attributes.size() && attributes[p] != '=' && !lmx::is_space(attributes[p])) ++p;
    const std::string_view found = attributes.substr(nameBegin, p - nameBegin);
    while (p < attributes.size() && attributes[p] != '"' && attributes[p] != '\'') ++p;
    if (p == attributes.size()) return nullptr;
    const std::size_t close = attributes.find(attributes[p], p + 1);
    if (close == attributes.npos) return nullptr;
    if (found == attribute) {
      size = close - p - 1;
      return attributes.data() + p + 1;
    }
    p = close + 1;
  }
  return nullptr;
}

std::string_view ScannedTag::attribute(std::string_view wanted) const {
  std::size_t size = 0;
  const char* value = findAttribute(wanted, size);
  return value == nullptr ? std::string_view() : std::string_view(value, size);
}

// Past what begins with "<!" or "<?"; false where it doesn't end.
bool TagScan::passOther(std::size_t begin) {
  const std::string_view rest = _text.substr(begin);
  const std::string_view end = rest.starts_with("<!--")        ? "-->"
                               : rest.starts_with("<![CDATA[") ? "]]>"
                               : rest.starts_with("<?")        ? "?>"
                                                               : ">";
  const std::size_t found = _text.find(end, begin);
  if (found == _text.npos) return false;
  _position = found + end.size();
  return true;
}

std::size_t endOfTag(std::string_view text, std::size_t position) {
  char quote = 0;
  for (std::size_t p = position; p < text.size(); ++p) {
    const char c = text[p];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return p + 1;
    }
  }
  return text.npos;
}

bool TagScan::next(ScannedTag& tag) {
  while (true) {
    const std::size_t begin = _text.find('<', _position);
    if (begin == _text.npos || begin + 1 >= _text.size()) return false;
    const char first = _text[begin + 1];
    if (first == '!' || first == '?') {
      if (!passOther(begin)) return false;
      continue;
    }
    const bool isEnd = first == '/';
    const std::size_t nameBegin = begin + (isEnd ? 2 : 1);
    std::size_t p = nameBegin;
    while (p < _text.size() && lmx::is_name_char(static_cast<unsigned char>(_text[p]))) ++p;
    const std::size_t end = endOfTag(_text, p);
    if (end == _text.npos) return false;
    const bool isEmpty = !isEnd && _text[end - 2] == '/' && end - 2 >= p;
    tag.kind = isEnd ? ScannedTag::Kind::end : isEmpty ? ScannedTag::Kind::empty : ScannedTag::Kind::start;
    tag.begin = begin;
    tag.end = end;
    tag.name = _text.substr(nameBegin, p - nameBegin);
    tag.attributes = _text.substr(p, end - (isEmpty ? 2 : 1) - p);
    _position = end;
    return true;
  }
}

}  // namespace rubrica
