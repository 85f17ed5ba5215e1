#include "biff/column_fit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace rubrica {
namespace {
constexpr int kQuarterTurn = 90, kHalfTurn = 180;  // degrees
}

int foldedRotation(int rotation) {
  if (rotation >= kHalfTurn) rotation -= kQuarterTurn;
  if (rotation > kQuarterTurn) rotation %= kQuarterTurn;
  return rotation;
}

void ColumnFit::add(std::u16string_view text, const platform::FontRequest& font, int rotation) {
  _hasCells = true;
  if (_digit <= 0) return;
  platform::TextExtent widest;
  for (bool more = true; more;) {
    const std::size_t end = text.find(u'\n');
    const platform::TextExtent line = _metrics->measure(font, text.substr(0, end));
    if (line.width >= widest.width) widest = line;
    more = end != text.npos;
    if (more) text.remove_prefix(end + 1);
  }
  double pixels = widest.width;
  if (const int degrees = foldedRotation(rotation); degrees != 0) {
    const double angle = degrees * std::numbers::pi / kHalfTurn;
    pixels = std::cos(angle) * widest.width + std::sin(angle) * widest.height;
  }
  _width = std::max(_width, pixels / _digit);
}

}  // namespace rubrica
