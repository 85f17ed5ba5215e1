#include "lmx/fast_lane.h"

#include <algorithm>
#include <array>
#include <bit>

#include "lmx/text.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// Sixteen bytes looked at in one step, with one bit a byte for each answer. Names and values are mostly shorter than
// that, and of so many lengths that a loop over their bytes would be mispredicted at nearly every end.
#if defined(__SSE2__)
class byte_block {
 public:
  static constexpr std::ptrdiff_t kSize = 16;

  explicit byte_block(const char* p) : _bytes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))) {}

  unsigned equal(char wanted) const { return bits(is(wanted)); }
  unsigned spaces() const { return bits(_mm_or_si128(is(' '), _mm_or_si128(is('\t'), is('\n')))); }
  unsigned text_stops() const { return bits(_mm_or_si128(beyond_ascii_or_cr(), _mm_or_si128(is('<'), is('&')))); }
  unsigned value_stops() const { return bits(_mm_or_si128(beyond_ascii_or_cr(), _mm_or_si128(is('"'), is('\'')))); }
  unsigned name_stops() const {
    const __m128i lower = _mm_or_si128(_bytes, _mm_set1_epi8(0x20));
    const __m128i letters = between(lower, 'a', 'z');
    const __m128i digits_or_colon = between(_bytes, '0', ':');
    const __m128i dash_or_point = between(_bytes, '-', '.');
    const __m128i names = _mm_or_si128(_mm_or_si128(letters, digits_or_colon), _mm_or_si128(dash_or_point, is('_')));
    return ~bits(names) & 0xFFFFU;
  }

 private:
  static unsigned bits(__m128i answers) { return static_cast<unsigned>(_mm_movemask_epi8(answers)); }
  // Compared with their signs: bytes beyond ASCII are below all others.
  static __m128i between(__m128i bytes, char low, char high) {
    return _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8(static_cast<char>(low - 1))),
                         _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(high + 1))));
  }
  __m128i is(char wanted) const { return _mm_cmpeq_epi8(_bytes, _mm_set1_epi8(wanted)); }
  __m128i beyond_ascii_or_cr() const { return _mm_or_si128(_bytes, is('\r')); }  // of the bytes the sign bit counts

  __m128i _bytes;
};

unsigned bits_before(unsigned stops) {
  return (stops & -stops) - 1;
}

const char* pass_name_block(const char* p, const char* end) {
  if (end - p < byte_block::kSize) return p;
  const unsigned stops = byte_block(p).name_stops();
  return stops == 0 ? p + byte_block::kSize : p + std::countr_zero(stops);
}

const char* pass_value_block(const char* p, const char* end, unsigned& seen) {
  if (end - p < byte_block::kSize) return p;
  const byte_block block(p);
  const unsigned stops = block.value_stops();
  const unsigned passed = bits_before(stops);  // all bits when nothing stops
  if ((block.spaces() & passed) != 0) seen |= kSpace;
  if ((block.equal('&') & passed) != 0) seen |= kReference;
  return stops == 0 ? p + byte_block::kSize : p + std::countr_zero(stops);
}

const char* pass_text_blocks(const char* p, const char* end, unsigned& seen) {
  for (; end - p >= byte_block::kSize; p += byte_block::kSize) {
    const byte_block block(p);
    const unsigned stops = block.text_stops();
    if ((block.spaces() & bits_before(stops)) != 0) seen |= kSpace;
    if (stops != 0) return p + std::countr_zero(stops);
  }
  return p;
}
#else
const char* pass_name_block(const char* p, const char*) {
  return p;
}
const char* pass_value_block(const char* p, const char*, unsigned&) {
  return p;
}
const char* pass_text_blocks(const char* p, const char*, unsigned&) {
  return p;
}
#endif

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

// Behind a name, or null when something rare stands in it or it reaches the end.
const char* fast_lane::scan_name(const char* p) const {
  p = pass_name_block(p, _end);
  while (p != _end) {
    if (has_class(p, kName)) {
      ++p;
    } else if (byte_at(p) < 128) {
      return p;
    } else {
      p = pass_beyond_ascii(p, _end);
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
  for (p = pass_value_block(p, _end, seen);; ++p) {
    if (p == _end) return nullptr;
    const unsigned flags = kClasses[byte_at(p)];
    seen |= flags;
    if ((flags & kStopsValue) == 0) continue;
    if (*p == quote) break;
    if (*p == '"' || *p == '\'') continue;
    if (*p == '\r') return nullptr;
    p = pass_beyond_ascii(p, _end);
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
  const char* p = pass_text_blocks(_position, _end, seen);
  for (;; ++p) {
    if (p == _end) return false;
    const unsigned flags = kClasses[byte_at(p)];
    seen |= flags;
    if ((flags & kStopsText) == 0 || *p == '&') continue;
    if (*p == '<') break;
    if (*p == '\r') return false;
    p = pass_beyond_ascii(p, _end);
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
