#include "xml/style_words.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace rubrica::style_words {
namespace {

// By the number of the value.
constexpr std::string_view kAlignH[] = {"general", "left",    "center",           "right",
                                        "fill",    "justify", "centerContinuous", "distributed"};
constexpr std::string_view kAlignV[] = {"top", "center", "bottom", "justify", "distributed"};
constexpr std::string_view kBorders[] = {
    "none",         "thin",    "medium",        "dashed",     "dotted",           "thick",       "double", "hair",
    "mediumDashed", "dashDot", "mediumDashDot", "dashDotDot", "mediumDashDotDot", "slantDashDot"};
constexpr std::string_view kFills[] = {"none",           "solid",           "mediumGray",    "darkGray",  "lightGray",
                                       "darkHorizontal", "darkVertical",    "darkDown",      "darkUp",    "darkGrid",
                                       "darkTrellis",    "lightHorizontal", "lightVertical", "lightDown", "lightUp",
                                       "lightGrid",      "lightTrellis",    "gray125",       "gray0625"};
constexpr std::string_view kScripts[] = {"baseline", "superscript", "subscript"};

struct UnderlineWord {
  Underline value;
  std::string_view word;
};
constexpr UnderlineWord kUnderlines[] = {{Underline::none, "none"},
                                         {Underline::single, "single"},
                                         {Underline::doubleLine, "double"},
                                         {Underline::singleAccounting, "singleAccounting"},
                                         {Underline::doubleAccounting, "doubleAccounting"}};

template <class Value, std::size_t N>
std::string_view wordAt(const std::string_view (&words)[N], Value value) {
  const auto index = static_cast<std::size_t>(static_cast<int>(value));
  return index < N ? words[index] : std::string_view();
}

template <class Value, std::size_t N>
Value valueOf(const std::string_view (&words)[N], std::string_view word) {
  const auto found = std::find(std::begin(words), std::end(words), word);
  return static_cast<Value>(found == std::end(words) ? 0 : found - std::begin(words));
}

}  // namespace

std::string_view wordOf(AlignH align) {
  return wordAt(kAlignH, align);
}
std::string_view wordOf(AlignV align) {
  return wordAt(kAlignV, align);
}
std::string_view wordOf(FillPattern pattern) {
  return wordAt(kFills, pattern);
}
std::string_view wordOf(BorderStyle style) {
  const std::string_view word = wordAt(kBorders, style);
  return word.empty() ? kBorders[0] : word;
}

AlignH alignHOf(std::string_view word) {
  return valueOf<AlignH>(kAlignH, word);
}
AlignV alignVOf(std::string_view word) {
  return valueOf<AlignV>(kAlignV, word);
}
FillPattern fillPatternOf(std::string_view word) {
  return valueOf<FillPattern>(kFills, word);
}
BorderStyle borderStyleOf(std::string_view word) {
  return valueOf<BorderStyle>(kBorders, word);
}

std::string_view wordOf(Underline underline) {
  const auto found = std::find_if(std::begin(kUnderlines), std::end(kUnderlines),
                                  [underline](const UnderlineWord& row) { return row.value == underline; });
  return found == std::end(kUnderlines) ? kUnderlines[0].word : found->word;
}
std::string_view wordOf(Script script) {
  const std::string_view word = wordAt(kScripts, script);
  return word.empty() ? kScripts[0] : word;
}

Underline underlineOf(std::string_view word) {
  const auto found = std::find_if(std::begin(kUnderlines), std::end(kUnderlines),
                                  [word](const UnderlineWord& row) { return row.word == word; });
  return found == std::end(kUnderlines) ? Underline::none : found->value;
}
Script scriptOf(std::string_view word) {
  return valueOf<Script>(kScripts, word);
}

}  // namespace rubrica::style_words
