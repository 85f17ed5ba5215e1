// Column widths in their three units: characters of the default font, pixels, and the 1/256 digit widths of ColInfo and
// StandardWidth records. All arithmetic rests on the pixel width of the default font's widest digit.
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

 private:
  // Pixels of a column beyond its text, three of which belong to the grid.
  int margin() const;

  int _digit;
};

}  // namespace rubrica
