#include "engine/column_fit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace rubrica {
namespace {
constexpr int kQuarterTurn = 90, kHalfTurn = 180;  // degrees
constexpr int kDefaultPoints = 10;
}  // namespace

CellLook lookOf(IFormatT<char16_t>& format, const char16_t* customText) {
  CellLook look;
  look.rotation = format.rotation();
  look.numFormat = format.numFormat();
  if (customText != nullptr) look.customText = customText;
  look.font.points = kDefaultPoints;
  if (IFontT<char16_t>* font = format.font(); font != nullptr) {
    look.font.points = font->size();
    look.font.bold = font->bold();
    if (const char16_t* name = font->name(); name != nullptr) look.font.name = name;
  }
  return look;
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
