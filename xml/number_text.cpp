#include "xml/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "lmx/value.h"

namespace rubrica {
namespace {

constexpr int kSignificantDigits = 17;
// Whole numbers below this have no more digits than that, so that they are written as they are.
constexpr double kLargestPlainInteger = 1e15;

// Numbers between these have a point and no exponent.
constexpr double kLeastPlain = 1e-4, kMostPlain = 1e16;

constexpr unsigned kMantissaBits = std::numeric_limits<double>::digits - 1;
constexpr int kExponentBias = std::numeric_limits<double>::max_exponent - 1;

// What the least of them takes to have 17 digits before the point, and one more for an exponent that is one too low.
constexpr std::size_t kMostPlaces = 21;
constexpr auto kPowersOfFive = [] {
  std::array<std::uint64_t, kMostPlaces + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 5;
  return powers;
}();

constexpr std::uint64_t kTenTo16 = 10'000'000'000'000'000;

// "00", "01" to "99".
constexpr auto kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = static_cast<char>('0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
  }
  return pairs;
}();

// The first 17 digits of `value`, which is positive and normal, when the first of them stands at 10^exponent. The
// product of 53 and at most 49 bits holds them with all that is behind them, so that the rounding is exact, halves to
// even. With an exponent that is one too low there are 18.
std::uint64_t roundedDigits(double value, int exponent) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t mantissa = (bits & ((std::uint64_t{1} << kMantissaBits) - 1)) | std::uint64_t{1} << kMantissaBits;
  const int places = kSignificantDigits - 1 - exponent;
  __extension__ using Wide = unsigned __int128;
  const Wide product = Wide{mantissa} * kPowersOfFive[static_cast<std::size_t>(places)];
  const int shift = static_cast<int>(kMantissaBits) + kExponentBias - static_cast<int>(bits >> kMantissaBits) - places;
  if (shift <= 0) return static_cast<std::uint64_t>(product << -shift);
  const Wide rest = product & ((Wide{1} << shift) - 1);
  const Wide half = Wide{1} << (shift - 1);
  auto digits = static_cast<std::uint64_t>(product >> shift);
  if (rest > half || (rest == half && (digits & 1U) != 0)) ++digits;
  return digits;
}

// Eight digits.
void putEight(char* out, std::uint32_t digits) {
  for (std::size_t i = 8; i > 0; i -= 2) {
    std::memcpy(out + i - 2, kPairs.data() + digits % 100 * 2, 2);
    digits /= 100;
  }
}

// 17 digits, the first of them at 10^exponent, with a point and without the zeros that trail behind it.
char* putDigits(char* out, std::uint64_t digits, int exponent) {
  constexpr std::uint32_t kTenTo8 = 100'000'000;
  std::array<char, kSignificantDigits> text;
  // In two halves, which the processor works on side by side.
  const auto high = static_cast<std::uint32_t>(digits / kTenTo8);
  text[0] = static_cast<char>('0' + high / kTenTo8);
  putEight(text.data() + 1, high % kTenTo8);
  putEight(text.data() + 9, static_cast<std::uint32_t>(digits % kTenTo8));
  std::size_t count = text.size();
  while (text[count - 1] == '0') --count;
  std::size_t whole = 0;  // digits before the point
  if (exponent < 0) {
    constexpr std::string_view kZeros = "0.000";
    out = std::copy_n(kZeros.data(), 1 - exponent, out);
  } else {
    whole = static_cast<std::size_t>(exponent) + 1;
    out = std::copy_n(text.data(), whole, out);
    if (count > whole) *out++ = '.';
  }
  return count > whole ? std::copy(text.data() + whole, text.data() + count, out) : out;
}

// Writes what "%.17g" writes; null for numbers that aren't plain.
char* putPlainNumber(char* out, double value) {
  const double size = std::fabs(value);
  if (!(size >= kLeastPlain && size < kMostPlain)) return nullptr;
  if (value < 0) *out++ = '-';
  const int binary = static_cast<int>(std::bit_cast<std::uint64_t>(size) >> kMantissaBits) - kExponentBias;
  constexpr int kLogNumerator = 1233, kLogShift = 12;  // a little less than the logarithm of 2
  int exponent = (binary * kLogNumerator) >> kLogShift;
  std::uint64_t digits = roundedDigits(size, exponent);
  if (digits >= kTenTo16 * 10) digits = roundedDigits(size, ++exponent);
  if (digits == kTenTo16 * 10) {
    digits = kTenTo16;
    ++exponent;
  }
  return putDigits(out, digits, exponent);
}

}  // namespace

std::string_view numberText(double value, NumberBuffer& buffer) {
  char* end = buffer.data() + buffer.size();
  const bool isSmall = std::fabs(value) < kLargestPlainInteger;
  if (const auto whole = isSmall ? static_cast<std::int64_t>(value) : 0;
      isSmall && static_cast<double>(whole) == value && !(whole == 0 && std::signbit(value))) {
    end = std::to_chars(buffer.data(), end, whole).ptr;
  } else if (char* plain = putPlainNumber(buffer.data(), value)) {
    end = plain;
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
