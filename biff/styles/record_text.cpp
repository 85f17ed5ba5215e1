#include "biff/styles/record_text.h"

namespace rubrica {

std::optional<std::uint16_t> readRecordText(Xls& xls, BookState& state, std::uint16_t left, XLUnicodeString& text) {
  const TextForm form = state.textForm();
  std::uint16_t remaining = left;
  text.byteLength = form.noFlags;
  text.read(xls, state.pool, remaining, form);
  text.byteLength = false;
  if (!form.noFlags && text.cch > 0 && text.size() > left) return std::nullopt;
  return remaining;
}

}  // namespace rubrica
