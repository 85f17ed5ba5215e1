// The width that a column needs for the texts of its cells, in characters of the default font. A sheet makes one for
// each column that it fits and adds its cells.
#pragma once

#include <string_view>

#include "engine/format.h"
#include "platform/text_metrics.h"

namespace rubrica {

class ColumnFit {
 public:
  // The answer of width() when nothing can be measured.
  static constexpr double kNoResult = -1.0;

  ColumnFit(platform::TextMetrics& metrics, int digitWidth) : _metrics(&metrics), _digit(digitWidth) {}

  // A cell's text: its lines at line feeds, the widest of which counts. `rotation` as a format has it.
  void add(std::u16string_view text, const platform::FontRequest& font, int rotation);
  // Whether add() was called.
  bool hasCells() const { return _hasCells; }
  // The width of the widest cell; kNoResult without a digit width.
  double width() const { return _digit > 0 ? _width : kNoResult; }

 private:
  platform::TextMetrics* _metrics;
  int _digit;
  double _width = 0;
  bool _hasCells = false;
};

// What fitting asks of a cell's format. The texts are those of the format's book.
struct CellLook {
  platform::FontRequest font;
  int rotation = 0;
  int numFormat = 0;
  std::u16string_view customText;
};

// `customText`: the text of the format's number format where it has one of its own, or null.
CellLook lookOf(IFormatT<char16_t>& format, const char16_t* customText);

// A format's rotation as an angle of 0 to 90 degrees from the horizontal.
int foldedRotation(int rotation);

}  // namespace rubrica
