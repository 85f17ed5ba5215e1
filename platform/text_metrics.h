// How wide text is in a named font, in pixels at 96 dots an inch: what column widths rest on. GDI answers on Windows,
// FreeType over the fonts that fontconfig knows elsewhere.
#pragma once

#include <memory>
#include <string_view>

namespace rubrica::platform {

// Digit width where no font can be had, in pixels.
inline constexpr int kFallbackDigitWidth = 7;

struct FontRequest {
  std::u16string_view name;  // family, such as "Arial"; a metric-compatible family stands in where it is missing
  int points = 10;           // size in points
  bool bold = false;
};

struct TextExtent {
  int width = 0;   // pixels
  int height = 0;  // pixels, ascent plus descent of the font
};

class TextMetrics {
 public:
  virtual ~TextMetrics() = default;
  // The advance of the widest of the digits 0 to 9 in whole pixels; kFallbackDigitWidth when no font can be had.
  virtual int digitWidth(const FontRequest& font) = 0;
  // The extent of one line of text; zero when no font can be had.
  virtual TextExtent measure(const FontRequest& font, std::u16string_view text) = 0;
};

// The platform's own metrics. Each call makes an independent object; one object belongs to one thread at a time.
std::unique_ptr<TextMetrics> createTextMetrics();

}  // namespace rubrica::platform
