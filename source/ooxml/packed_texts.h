// Texts that a packed object has no room for itself, in one block: of a cell (packed_cell.h) its value, and its formula
// where that is nothing but a text; of a string item (packed_string.h) its text, as the value. An object owns its block
// and makes another one for other texts.
//
//   offset  0  length of the value in bytes, kNone when there is none
//           4  length of the formula, the same
//           8  the value's bytes, and behind them the formula's
#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string_view>

namespace rubrica::ooxml {

using optional_text = std::optional<std::string_view>;

class packed_texts {
 public:
  static std::unique_ptr<packed_texts> make(optional_text value, optional_text formula);
  std::unique_ptr<packed_texts> clone() const { return make(value(), formula()); }
  // Blocks are longer than the class.
  static void operator delete(void* block) { ::operator delete(block); }

  optional_text value() const { return text(0, _value_size); }
  optional_text formula() const { return text(_value_size == kNone ? 0 : _value_size, _formula_size); }
  void drop_formula() { _formula_size = kNone; }

 private:
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  packed_texts(std::uint32_t value_size, std::uint32_t formula_size)
      : _value_size(value_size), _formula_size(formula_size) {}
  static std::uint32_t size_of(optional_text text);

  char* bytes() { return reinterpret_cast<char*>(this + 1); }
  optional_text text(std::size_t offset, std::uint32_t size) const {
    if (size == kNone) return std::nullopt;
    return std::string_view(reinterpret_cast<const char*>(this + 1) + offset, size);
  }

  std::uint32_t _value_size;
  std::uint32_t _formula_size;
};

}  // namespace rubrica::ooxml
