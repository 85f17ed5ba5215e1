#include "engine/column_widths.h"

#include <algorithm>
#include <cmath>

namespace rubrica {
namespace {

constexpr int kGridPixels = 3;
constexpr double kMostPixels = 1e6;  // far past the widest column; keeps the arithmetic within an int

int rounded(double pixels) {
  return static_cast<int>(std::floor(std::clamp(pixels, -kMostPixels, kMostPixels) + 0.5));
}

double hundredths(double chars) {
  return std::floor(chars * 100 + 0.5) / 100;
}

}  // namespace

int ColumnWidths::margin() const {
  return _digit < 13 ? 8 : (_digit - 13) / 16 * 8 + 16;
}

int ColumnWidths::pixelsOfChars(double chars) const {
  if (std::isnan(chars)) return 0;
  const int padding = margin() - kGridPixels;
  return chars > 1 ? rounded(_digit * chars + padding) : rounded((padding + _digit) * chars);
}

double ColumnWidths::charsOfPixels(int pixels) const {
  if (_digit <= 0) return 0;
  const int padding = margin() - kGridPixels;
  const int ofOneChar = _digit + padding;
  if (pixels >= ofOneChar) return hundredths(double(pixels - padding) / _digit);
  return hundredths(double(pixels) / ofOneChar);
}

std::uint16_t ColumnWidths::storedOfChars(double chars) const {
  if (_digit <= 0) return 0;
  const std::int64_t scaled = std::int64_t{pixelsOfChars(chars)} * 256 / _digit;
  return static_cast<std::uint16_t>(scaled);
}

int ColumnWidths::pixelsOfStored(std::uint16_t stored) const {
  return rounded(double(stored) * _digit / 256);
}

double ColumnWidths::digitsOfChars(double chars) const {
  if (_digit <= 0) return 0;
  const std::int64_t stored = std::int64_t{pixelsOfChars(chars)} * 256 / _digit;
  return static_cast<double>(stored) / 256;
}

// The format's own rounding. It cuts off a little past the half, so that a width whose last digits were lost in a file
// stays the same number of pixels.
int ColumnWidths::pixelsOfDigits(double digits) const {
  if (_digit <= 0 || std::isnan(digits)) return 0;
  const int almostHalf = 128 / _digit;
  const double units = digits * 256 + almostHalf;
  return static_cast<int>(std::floor(std::clamp(units * _digit / 256, -kMostPixels, kMostPixels)));
}

int ColumnWidths::pixelsOfBase(int chars) const {
  constexpr int kStep = 8;
  return (pixelsOfChars(chars) + kStep - 1) / kStep * kStep;
}

}  // namespace rubrica
