// Column widths in their units: characters of the default font, pixels, the 1/256 digit widths of ColInfo and
// StandardWidth records, and the digit widths of `col` elements. All arithmetic rests on the pixel width of the default
// font's widest digit; both file forms use it.
#pragma once

#include <cstdint>

namespace rubrica {

class ColumnWidths {
 public:
  explicit ColumnWidths(int digitWidth) : _digit(digitWidth) {}

  int pixelsOfChars(double chars) const;
  double charsOfPixels(int pixels) const;
  std::uint16_t storedOfChars(double chars) const;
  int pixelsOfStored(std::uint16_t stored) const;
  // The width of a `col` element, padding included, in whole 1/256 digit widths.
  double digitsOfChars(double chars) const;
  int pixelsOfDigits(double digits) const;
  // The pixels of a column of which a sheet says nothing but how many characters it holds (`baseColWidth`): with
  // padding and grid line, rounded up to a multiple of eight.
  int pixelsOfBase(int chars) const;

 private:
  // Pixels of a column beyond its text, three of which belong to the grid.
  int margin() const;

  int _digit;
};

}  // namespace rubrica
