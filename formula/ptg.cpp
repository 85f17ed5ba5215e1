#include "formula/ptg.h"

namespace rubrica::formula {
namespace {

struct ErrorRow {
  std::uint8_t code;
  std::u16string_view text;
};

constexpr ErrorRow errors[] = {
    {0, u"#NULL!"},  {7, u"#DIV/0!"}, {15, u"#VALUE!"}, {23, kRefErrorText},
    {29, u"#NAME?"}, {36, u"#NUM!"},  {42, u"#N/A"},
};

}  // namespace

CellAddress addressFromWords(std::uint16_t row, std::uint16_t columnWord) {
  return {row, columnWord & kColumnBits, (columnWord & kRowRelative) != 0, (columnWord & kColumnRelative) != 0};
}

std::optional<std::u16string_view> errorText(std::uint8_t code) {
  for (const ErrorRow& row : errors) {
    if (row.code == code) return row.text;
  }
  return std::nullopt;
}

std::optional<std::uint8_t> errorCode(std::u16string_view text) {
  if (text.empty() || text[0] != u'#') return std::nullopt;
  for (const ErrorRow& row : errors) {
    if (row.text == text) return row.code;
  }
  return std::nullopt;
}

std::optional<std::uint8_t> leadingErrorCode(std::span<const std::uint8_t> tokens) {
  if (tokens.size() < 2 || tokens[0] != ptg::Err) return std::nullopt;
  return tokens[1];
}

}  // namespace rubrica::formula
