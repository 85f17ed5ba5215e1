#include "source/ooxml/packed_texts.h"

#include <algorithm>
#include <stdexcept>

namespace rubrica::ooxml {

std::uint32_t packed_texts::size_of(optional_text text) {
  if (!text) return kNone;
  if (text->size() >= kNone) throw std::length_error("text is too long");
  return static_cast<std::uint32_t>(text->size());
}

std::unique_ptr<packed_texts> packed_texts::make(optional_text value, optional_text formula) {
  const std::uint32_t value_size = size_of(value), formula_size = size_of(formula);
  const std::string_view first = value.value_or(""), second = formula.value_or("");
  void* const memory = ::operator new(sizeof(packed_texts) + first.size() + second.size());
  std::unique_ptr<packed_texts> made(::new (memory) packed_texts(value_size, formula_size));
  std::copy(second.begin(), second.end(), std::copy(first.begin(), first.end(), made->bytes()));
  return made;
}

}  // namespace rubrica::ooxml
