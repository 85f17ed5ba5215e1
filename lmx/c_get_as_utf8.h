// The lowest character layer: bytes of a source in any of the encodings become the bytes of UTF-8 text with line feeds
// alone for line ends. Owned by the reader; the layers above derive from it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "lmx/c_error.h"
#include "lmx/c_read.h"

namespace rubrica::lmx {

enum class encoding_state : int {
  undecided = 0,
  eight_bit = 1,  // Latin-1, whatever the declared name: no code page is applied
  utf8 = 2,
  utf16_big = 3,
  utf16_little = 4,
  ucs2_big = 5,
  ucs2_little = 6,
};

// Characters put back, the latest first. Three suffice: no rule looks further ahead.
class push_back_stack {
 public:
  void push(int c) { _chars[_count++] = c; }
  int pop() { return _chars[--_count]; }
  bool empty() const { return _count == 0; }
  std::size_t size() const { return _count; }
  // The i-th character that pop would give.
  int peek(std::size_t i) const { return _chars[_count - 1 - i]; }
  void clear() { _count = 0; }

 private:
  std::array<int, 3> _chars{};
  std::size_t _count = 0;
};

class c_get_as_utf8 {
 public:
  c_get_as_utf8(c_read& source, c_error& errors) : _source(source), _errors(errors) {}

  encoding_state encoding() const { return _state; }
  int line() const { return _line; }
  c_error& errors() { return _errors; }
  const c_error& errors() const { return _errors; }

  // Compares the name in an XML declaration with what the bytes showed, and settles the state.
  void declare_encoding(std::string_view name);

  // Reports a problem at the current line.
  void problem(severity level, elmx_error code, std::string_view text);
  void fatal(elmx_error code, std::string_view text) { problem(severity::fatal, code, text); }

  // Whether a tokeniser over the bytes themselves may go on where this layer stands: UTF-8, nothing held back but
  // characters that still stand directly before the source's position. `back` is their number.
  bool at_plain_position(std::size_t& back, const c_read_memory& memory) const;
  // Takes over a position from such a tokeniser, with the line feeds that it passed.
  void take_position(int passed_lines);
  void drop_push_back() { _push_back.clear(); }

 protected:
  // One byte of UTF-8, or -1 at the end and after a fatal problem.
  int get_raw();
  void unget_raw(int c) { _push_back.push(c); }

 private:
  int next_byte();
  int decode_first();
  int decode();
  int decode_utf8(int lead);
  int decode_unit_pair();
  int next_unit();
  int deliver(std::uint32_t code_point);
  int deliver_bytes(const unsigned char* bytes, int count);
  int unrecognised();

  static constexpr int kNone = -2;

  c_read& _source;
  c_error& _errors;
  encoding_state _state = encoding_state::undecided;
  push_back_stack _push_back;
  int _held_byte = kNone;  // a byte read ahead while the encoding was looked for
  bool _after_cr = false;  // the last raw character was a CR
  char _pending[8] = {};   // the rest of a character's UTF-8 form
  int _pending_position = 0;
  int _pending_count = 0;
  int _line = 1;
};

}  // namespace rubrica::lmx
