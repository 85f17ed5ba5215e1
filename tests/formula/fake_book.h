// A book for formula tests: sheets and defined names by position, and helpers to write expectations in few characters.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/xlerror.h"
#include "formula/book_access.h"
#include "formula/compile.h"
#include "formula/print.h"
#include "formula/sheet_text.h"

namespace rubrica::formula {

class FakeBook : public BookAccess {
 public:
  struct SheetSpan {
    std::size_t first;
    std::size_t last;
  };

  std::vector<std::u16string> sheets = {u"Sheet1", u"Sheet2", u"My Sheet", u"O'Brien", u"a!b"};
  std::vector<std::u16string> names = {u"Rate", u"My_Name", u"TAX_F2", u"Größe"};
  std::vector<SheetSpan> externSheets;

  std::optional<std::uint16_t> externSheetIndex(std::u16string_view sheetName) override {
    const auto sheet = position(sheets, sheetName);
    if (!sheet) return std::nullopt;
    for (std::size_t i = 0; i < externSheets.size(); ++i) {
      if (externSheets[i].first == *sheet && externSheets[i].last == *sheet) return static_cast<std::uint16_t>(i);
    }
    externSheets.push_back({*sheet, *sheet});
    return static_cast<std::uint16_t>(externSheets.size() - 1);
  }

  std::optional<std::uint32_t> findName(std::u16string_view name, int sheetIndex, int scope) override {
    lastSheetIndex = sheetIndex;
    lastScope = scope;
    const auto index = position(names, name);
    return index ? std::optional(static_cast<std::uint32_t>(*index)) : std::nullopt;
  }

  std::optional<std::u16string> nameText(std::uint32_t index) const override {
    return index < names.size() ? std::optional(names[index]) : std::nullopt;
  }

  std::u16string sheetPart(std::uint16_t index) const override {
    if (index >= externSheets.size()) return u"#REF!";
    const SheetSpan span = externSheets[index];
    if (span.first >= sheets.size() || span.last >= sheets.size()) return u"#REF!";
    return sheetPartText(sheets[span.first], sheets[span.last]);
  }

  int lastSheetIndex = -1;
  int lastScope = -1;

 private:
  static std::optional<std::size_t> position(const std::vector<std::u16string>& texts, std::u16string_view text) {
    const auto found = std::find(texts.begin(), texts.end(), text);
    if (found == texts.end()) return std::nullopt;
    return static_cast<std::size_t>(found - texts.begin());
  }
};

using Bytes = std::vector<std::uint8_t>;

// "1E 01 00", upper case.
inline std::string hex(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X", byte);
    if (!text.empty()) text += ' ';
    text += digits;
  }
  return text;
}

// What was thrown, or "nothing thrown".
template <typename Operation>
std::string messageOf(Operation operation) {
  try {
    operation();
  } catch (const xlerror& error) {
    return error.what();
  }
  return "nothing thrown";
}

inline Bytes compiled(std::u16string_view text) {
  FakeBook book;
  return compileFormula(text, book, 0, 0);
}

inline std::string compiledHex(std::u16string_view text) {
  return hex(compiled(text));
}

inline std::string compileMessage(std::u16string_view text) {
  return messageOf([&] { compiled(text); });
}

inline std::u16string printed(const Bytes& tokens, const FakeBook& book = {}) {
  return printFormula(tokens, book, false, 0, 0);
}

inline std::string printMessage(const Bytes& tokens) {
  return messageOf([&] { printed(tokens); });
}

// The text after compiling and printing with one book.
inline std::u16string roundTrip(std::u16string_view text) {
  FakeBook book;
  return printed(compileFormula(text, book, 0, 0), book);
}

}  // namespace rubrica::formula
