// Cells in the plain form that nearly all have, read out of a text and written into one without an event for each tag:
//
//   <c r="B7" s="3" t="str"><f>A7*2</f><v>14</v></c>
//
// Plain are: attributes `r`, `s` and `t` once each, in any order, with one blank before each; a formula without
// attributes; a value. Texts are printable ASCII without references. All else is left to the cell's reader and writer,
// which give the same for what is plain. Used by the hooks of cells (cell_hooks.h).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "source/ooxml/packed_cell.h"

namespace rubrica::ooxml {

// How many blanks, tabs and line feeds a text begins with.
inline std::size_t blanksBefore(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && (text[count] == ' ' || text[count] == '\t' || text[count] == '\n')) ++count;
  return count;
}

// Whether it is worth trying.
inline bool beginsPlainCell(std::string_view text) {
  return text.size() > 3 && text[0] == '<' && text[1] == 'c' && text[2] == ' ';
}

// A cell as it was found in a text.
struct plain_cell {
  // What a cell consists of.
  enum class part { r, s, t, f, v };

  std::size_t size = 0;  // of the whole cell in the text; 0 when it isn't plain
  part last = part::r;   // in the order of the text
};

// Reads the cell that a text begins with into a fresh one, in which anything may stand when it turns out not to be
// plain.
plain_cell readPlainCell(std::string_view text, packed_cell& cell);

// Text of cells that gathers, so that a string's costs are paid once for many.
class plain_cell_buffer {
 public:
  // False, with nothing done, when the cell isn't plain or long. There must be room: !is_full().
  bool append(const packed_cell& cell);
  bool is_full() const { return _size > kSize - kLongestCell; }
  void move_to(std::string& text) {
    text.append(_text.data(), _size);
    _size = 0;
  }

 private:
  static constexpr std::size_t kSize = 4096;
  static constexpr std::size_t kLongestTexts = 512;  // of formula and value together
  // Reference, style and type, with the markup of all, take less than what is left.
  static constexpr std::size_t kLongestCell = kLongestTexts + 256;
  static constexpr std::size_t kRowRoom = 16;  // bytes: seven digits and what stands behind them

  void set_row(std::uint32_t row);

  std::size_t _size = 0;
  // The row of the last cell, which most often is that of the next one too, as it ends a reference: `1048576"`.
  std::uint32_t _row = ~std::uint32_t{0};
  std::size_t _row_size = 0;
  std::array<char, kRowRoom> _row_text = {};
  std::array<char, kSize> _text;
};

}  // namespace rubrica::ooxml
