#include "lmx/c_get_as_utf8.h"

#include <cstring>

#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

constexpr std::uint32_t kNextLine = 0x85;         // the C1 control that EBCDIC systems end lines with
constexpr std::uint32_t kLineSeparator = 0x2028;  // Unicode's line separator

constexpr bool starts_document(int c) {
  return is_space(c) || c == '<';
}

bool same_ignoring_case(std::string_view left, std::string_view right) {
  if (left.size() != right.size()) return false;
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (lower(left[i]) != lower(right[i])) return false;
  }
  return true;
}

// Bytes of a UTF-8 sequence by its first byte. Lengths 5 and 6 are only ever refused.
constexpr int sequence_length(int lead) {
  return lead < 192 ? 1 : lead < 224 ? 2 : lead < 240 ? 3 : lead < 248 ? 4 : lead < 252 ? 5 : 6;
}

}  // namespace

void c_get_as_utf8::problem(severity level, elmx_error code, std::string_view text) {
  _errors.add(level, code, _source.get_source_id(), _line, text);
}

int c_get_as_utf8::unrecognised() {
  fatal(ELMX_ENCODING_NOT_SUPPORTED, "Unrecognised character encoding");
  return -1;
}

int c_get_as_utf8::next_byte() {
  if (_held_byte == kNone) return _source.get_byte();
  const int byte = _held_byte;
  _held_byte = kNone;
  return byte;
}

int c_get_as_utf8::get_raw() {
  if (_errors.fatal_count() > 0) return -1;
  if (!_push_back.empty()) return _push_back.pop();
  if (_pending_position < _pending_count) return static_cast<unsigned char>(_pending[_pending_position++]);
  int c = _state == encoding_state::undecided ? decode_first() : decode();
  if (c == '\n' && _after_cr) {
    _after_cr = false;
    c = decode();
    if (c == '\n') {
      ++_line;
      return c;
    }
  }
  _after_cr = c == '\r';
  if (_after_cr) c = '\n';
  if (c == '\n') ++_line;
  return c;
}

// The first bytes tell the encoding: a byte order mark, or white space or '<' with or without a zero byte beside it.
int c_get_as_utf8::decode_first() {
  const int first = next_byte();
  if (first < 0) return -1;
  const int second = next_byte();
  const auto ascii = [](int c) { return c >= 1 && c <= 127; };
  if (first == 0xFF && second == 0xFE) {
    const int low = next_byte();
    if (!ascii(low) || next_byte() != 0) return unrecognised();
    _state = encoding_state::utf16_little;
    return low;
  }
  if (first == 0xFE && second == 0xFF) {
    if (next_byte() != 0) return unrecognised();
    const int low = next_byte();
    if (!ascii(low)) return unrecognised();
    _state = encoding_state::utf16_big;
    return low;
  }
  if (first == 0xEF && second == 0xBB) {
    if (next_byte() != 0xBF) return unrecognised();
    _state = encoding_state::utf8;
    return decode();
  }
  if (starts_document(first)) {
    if (second == 0) {
      _state = encoding_state::utf16_little;
    } else {
      _state = encoding_state::utf8;
      _held_byte = second;
    }
    return first;
  }
  if (first == 0 && starts_document(second)) {
    _state = encoding_state::utf16_big;
    return second;
  }
  return unrecognised();
}

int c_get_as_utf8::decode() {
  if (_state == encoding_state::utf8 || _state == encoding_state::eight_bit) {
    const int byte = next_byte();
    if (byte < 127) return byte;
    if (_state == encoding_state::eight_bit) return deliver(static_cast<std::uint32_t>(byte));
    return byte == 127 ? byte : decode_utf8(byte);
  }
  return decode_unit_pair();
}

int c_get_as_utf8::decode_utf8(int lead) {
  unsigned char bytes[6] = {static_cast<unsigned char>(lead)};
  const int length = sequence_length(lead);
  for (int i = 1; i < length; ++i) {
    const int byte = next_byte();
    if (byte < 0) return unrecognised();
    bytes[i] = static_cast<unsigned char>(byte);
  }
  const auto continues = [](unsigned char byte) { return (byte & 0xC0U) == 0x80U; };
  if (lead == 0xED && bytes[1] >= 0xA0 && bytes[1] <= 0xAF && continues(bytes[2])) {
    // CESU-8: a surrogate pair, each half in three bytes of its own.
    const int second_lead = next_byte();
    const int second = next_byte();
    const int third = next_byte();
    if (second_lead != 0xED || second < 0xB0 || second > 0xBF || third < 0x80 || third > 0xBF) return unrecognised();
    const auto half = [](unsigned a, unsigned b) { return 0xD000U | (a & 0x3FU) << 6U | (b & 0x3FU); };
    return deliver(
        join_surrogates(half(bytes[1], bytes[2]), half(static_cast<unsigned>(second), static_cast<unsigned>(third))));
  }
  const char* text = reinterpret_cast<const char*>(bytes);
  if (utf8_sequence_length(text, text + length) != length) return unrecognised();
  if (std::memcmp(bytes, "\xC2\x85", 2) == 0 || (length == 3 && std::memcmp(bytes, "\xE2\x80\xA8", 3) == 0)) {
    return '\n';
  }
  return deliver_bytes(bytes, length);
}

// Two bytes, or -1 at the end of the source.
int c_get_as_utf8::next_unit() {
  const int first = next_byte();
  if (first < 0) return -1;
  const int second = next_byte();
  if (second < 0) return unrecognised();
  const bool big = _state == encoding_state::utf16_big || _state == encoding_state::ucs2_big;
  return big ? first << 8 | second : second << 8 | first;
}

int c_get_as_utf8::decode_unit_pair() {
  const int unit = next_unit();
  if (unit < 0) return -1;
  auto code_point = static_cast<std::uint32_t>(unit);
  const bool pairs = _state == encoding_state::utf16_big || _state == encoding_state::utf16_little;
  if (pairs && is_low_surrogate(code_point)) return unrecognised();
  if (pairs && is_high_surrogate(code_point)) {
    const int low = next_unit();
    if (low < 0 || !is_low_surrogate(static_cast<std::uint32_t>(low))) return unrecognised();
    code_point = join_surrogates(code_point, static_cast<std::uint32_t>(low));
  }
  return deliver(code_point);
}

int c_get_as_utf8::deliver(std::uint32_t code_point) {
  if (code_point == kNextLine || code_point == kLineSeparator) return '\n';
  char bytes[4];
  const int count = encode_utf8(code_point, bytes);
  return deliver_bytes(reinterpret_cast<const unsigned char*>(bytes), count);
}

int c_get_as_utf8::deliver_bytes(const unsigned char* bytes, int count) {
  std::memcpy(_pending, bytes, static_cast<std::size_t>(count));
  _pending_position = 1;
  _pending_count = count;
  return bytes[0];
}

void c_get_as_utf8::declare_encoding(std::string_view name) {
  const bool wide = _state == encoding_state::utf16_big || _state == encoding_state::utf16_little;
  const bool narrow = _state == encoding_state::utf8;
  bool fits = false;
  if (same_ignoring_case(name, "ISO-10646-UCS-2")) {
    fits = wide;
    if (wide) {
      const bool big = _state == encoding_state::utf16_big;
      _state = big ? encoding_state::ucs2_big : encoding_state::ucs2_little;
    }
  } else if (same_ignoring_case(name, "ISO-8859-1") || same_ignoring_case(name, "Windows-1252") ||
             same_ignoring_case(name, "cp-1252") || same_ignoring_case(name, "US-ASCII")) {
    fits = narrow;
    if (narrow) _state = encoding_state::eight_bit;
  } else if (same_ignoring_case(name, "UTF-8")) {
    fits = narrow;
  } else if (same_ignoring_case(name, "UTF-16")) {
    fits = wide;
  } else {
    fatal(ELMX_ENCODING_NOT_SUPPORTED, "Unknown character encoding specified");
    return;
  }
  if (!fits) fatal(ELMX_ENCODING_MISMATCH, "Mis-match between specfied encoding and byte format");
}

bool c_get_as_utf8::at_plain_position(std::size_t& back, const c_read_memory& memory) const {
  if (_state != encoding_state::utf8 || _held_byte != kNone || _after_cr || _pending_position < _pending_count ||
      _errors.fatal_count() > 0) {
    return false;
  }
  back = _push_back.size();
  if (static_cast<std::size_t>(memory.current() - memory.begin()) < back) return false;
  const char* at = memory.current() - back;
  for (std::size_t i = 0; i < back; ++i) {
    const int c = _push_back.peek(i);
    if (c <= ' ' || c > 126 || c != static_cast<unsigned char>(at[i])) return false;
  }
  return true;
}

void c_get_as_utf8::take_position(int passed_lines) {
  _line += passed_lines;
  _after_cr = false;
}

}  // namespace rubrica::lmx
