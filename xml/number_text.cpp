#include "xml/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>

#include "lmx/value.h"

namespace rubrica {
namespace {

constexpr int kSignificantDigits = 17;
// Whole numbers below this have no more digits than that, so that they are written as they are.
constexpr double kLargestPlainInteger = 1e15;

}  // namespace

std::string_view numberText(double value, NumberBuffer& buffer) {
  char* end = buffer.data() + buffer.size();
  const bool isSmall = std::fabs(value) < kLargestPlainInteger;
  if (const auto whole = isSmall ? static_cast<std::int64_t>(value) : 0;
      isSmall && static_cast<double>(whole) == value && !(whole == 0 && std::signbit(value))) {
    end = std::to_chars(buffer.data(), end, whole).ptr;
  } else {
    end = std::to_chars(buffer.data(), end, value, std::chars_format::general, kSignificantDigits).ptr;
  }
  return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

std::optional<double> parseNumber(std::string_view text) {
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error == std::errc{} && stop == end) return value;
  if (lmx::parse_double(text, value)) return value;
  return std::nullopt;
}

}  // namespace rubrica
