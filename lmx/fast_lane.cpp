#include "lmx/fast_lane.h"

#include <algorithm>
#include <array>

#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

// Classes of bytes, as flags.
enum byte_class : unsigned char {
  kName = 1,        // may go on a name
  kStopsText = 2,   // '<', '&', CR, and every byte of a character beyond ASCII
  kStopsValue = 4,  // quotes, CR, and every byte of a character beyond ASCII
  kSpace = 8,       // blank, tab, LF
  kReference = 16,  // '&'
  kNameStart = 32,  // may begin a name
};

constexpr std::array<unsigned char, 256> make_classes() {
  std::array<unsigned char, 256> classes{};
  for (int c = 0; c < 256; ++c) {
    unsigned flags = 0;
    if (c < 128 && is_name_char(c)) flags |= kName;
    if (c == '<' || c == '&' || c == '\r' || c > 127) flags |= kStopsText;
    if (c == '"' || c == '\'' || c == '\r' || c > 127) flags |= kStopsValue;
    if (c != '\r' && is_space(c)) flags |= kSpace;
    if (c == '&') flags |= kReference;
    if (is_name_start(c)) flags |= kNameStart;
    classes[static_cast<std::size_t>(c)] = static_cast<unsigned char>(flags);
  }
  return classes;
}

constexpr std::array<unsigned char, 256> kClasses = make_classes();

unsigned char byte_at(const char* p) {
  return static_cast<unsigned char>(*p);
}
bool has_class(const char* p, byte_class wanted) {
  return (kClasses[byte_at(p)] & wanted) != 0;
}

}  // namespace

// Counted when someone asks, from where the last count ended: most documents are read without.
int fast_lane::passed_lines() const {
  _lines += static_cast<int>(std::count(_counted, _position, '\n'));
  _counted = _position;
  return _lines;
}

// Behind white space, or null where a CR stands that LF does not follow: that one is a line end of its own.
const char* fast_lane::skip_space(const char* p) const {
  for (; p != _end; ++p) {
    if (has_class(p, kSpace)) continue;
    if (*p != '\r') return p;
    if (_end - p < 2 || p[1] != '\n') return nullptr;
  }
  return p;
}

// Behind one character beyond ASCII, or null when it is malformed or counts as a line end (U+0085, U+2028).
const char* fast_lane::pass_character(const char* p) const {
  const int length = utf8_sequence_length(p, _end);
  if (length < 2) return nullptr;
  if (byte_at(p) == 0xC2 && byte_at(p + 1) == 0x85) return nullptr;
  if (byte_at(p) == 0xE2 && byte_at(p + 1) == 0x80 && byte_at(p + 2) == 0xA8) return nullptr;
  return p + length;
}

// Behind a name, or null when something rare stands in it or it reaches the end.
const char* fast_lane::scan_name(const char* p) const {
  while (p != _end) {
    if (has_class(p, kName)) {
      ++p;
    } else if (byte_at(p) < 128) {
      return p;
    } else {
      p = pass_character(p);
      if (p == nullptr) return nullptr;
    }
  }
  return nullptr;
}

// Behind the closing quote of the value whose opening quote is at `p`, or null.
const char* fast_lane::scan_value(const char* p, raw_attribute& attribute) const {
  const char quote = *p++;
  const char* const begin = p;
  unsigned seen = 0;
  for (;; ++p) {
    if (p == _end) return nullptr;
    const unsigned flags = kClasses[byte_at(p)];
    seen |= flags;
    if ((flags & kStopsValue) == 0) continue;
    if (*p == quote) break;
    if (*p == '"' || *p == '\'') continue;
    if (*p == '\r') return nullptr;
    p = pass_character(p);
    if (p == nullptr) return nullptr;
    --p;
  }
  attribute.value = {begin, static_cast<std::size_t>(p - begin)};
  attribute.quote = quote;
  attribute.has_reference = (seen & kReference) != 0;
  attribute.plain = (seen & (kReference | kSpace)) == 0;
  return p + 1;
}

// Behind an attribute whose name begins at `p`, or null.
const char* fast_lane::scan_attribute(const char* p, raw_attribute& attribute) const {
  const char* const begin = p;
  if (!has_class(p, kNameStart)) return nullptr;
  p = scan_name(p);
  if (p == nullptr) return nullptr;
  attribute.name = {begin, static_cast<std::size_t>(p - begin)};
  if (*p != '=') {
    p = skip_space(p);
    if (p == nullptr || p == _end || *p != '=') return nullptr;
  }
  ++p;
  if (p != _end && *p != '"') p = skip_space(p);
  if (p == nullptr || p == _end || (*p != '"' && *p != '\'')) return nullptr;
  return scan_value(p, attribute);
}

int fast_lane::next_event(std::string_view& name, std::vector<raw_attribute>& attributes,
                          std::vector<raw_attribute>& declarations, int& tag_end) {
  const char* p = skip_space(_position);
  if (p == nullptr || _end - p < 2) return kRare;
  if (*p == '<') {
    ++p;
    if (*p == '/') return read_end_tag(p + 1, name);
    if (!has_class(p, kNameStart)) return kRare;
    return read_start_tag(p, name, attributes, declarations, tag_end);
  }
  if (byte_at(p) > 127) return kRare;
  _position = p;
  return TOKEN_TEXT;
}

int fast_lane::read_end_tag(const char* p, std::string_view& name) {
  if (p == _end || !has_class(p, kNameStart)) return kRare;
  const char* name_end = scan_name(p);
  if (name_end == nullptr) return kRare;
  const char* close = skip_space(name_end);
  if (close == nullptr || close == _end || *close != '>') return kRare;
  name = {p, static_cast<std::size_t>(name_end - p)};
  _position = close + 1;
  return TOKEN_ELEMENT_END;
}

int fast_lane::read_start_tag(const char* p, std::string_view& name, std::vector<raw_attribute>& attributes,
                              std::vector<raw_attribute>& declarations, int& tag_end) {
  attributes.clear();
  declarations.clear();
  const char* const begin = p;
  p = scan_name(p);
  if (p == nullptr) return kRare;
  const std::string_view tag_name{begin, static_cast<std::size_t>(p - begin)};
  for (;;) {
    if (*p == ' ' && _end - p > 1) ++p;
    if (has_class(p, kSpace) || *p == '\r') p = skip_space(p);
    if (p == nullptr || p == _end) return kRare;
    if (*p == '>' || *p == '/') break;
    raw_attribute attribute;
    p = scan_attribute(p, attribute);
    if (p == nullptr || p == _end) return kRare;
    (is_namespace_declaration(attribute.name) ? declarations : attributes).push_back(attribute);
  }
  tag_end = *p == '>' ? TOKEN_START_TAG_END : TOKEN_ELEMENT_END;
  if (*p == '/' && (++p == _end || *p != '>')) return kRare;
  name = tag_name;
  _position = p + 1;
  return TOKEN_NAME;
}

bool fast_lane::next_text(std::string_view& text, bool& has_reference, bool& plain) {
  unsigned seen = 0;
  const char* p = _position;
  for (;; ++p) {
    if (p == _end) return false;
    const unsigned flags = kClasses[byte_at(p)];
    seen |= flags;
    if ((flags & kStopsText) == 0 || *p == '&') continue;
    if (*p == '<') break;
    if (*p == '\r') return false;
    p = pass_character(p);
    if (p == nullptr) return false;
    --p;
  }
  has_reference = (seen & kReference) != 0;
  plain = (seen & (kReference | kSpace)) == 0;
  // The layers look at the character behind '<': only a plain one leaves line and position as they are.
  if (_end - p < 2 || (p[1] != '/' && (byte_at(p + 1) > 127 || !has_class(p + 1, kNameStart)))) return false;
  text = {_position, static_cast<std::size_t>(p - _position)};
  _position = p;
  return true;
}

}  // namespace rubrica::lmx
