// Test support: made-up text metrics.
#pragma once

#include "platform/text_metrics.h"

namespace rubrica::test {

// Every character is as wide as a digit, two pixels more in bold; a line is 20 pixels high.
class FakeMetrics final : public platform::TextMetrics {
 public:
  explicit FakeMetrics(int digit = 7) : _digit(digit) {}
  int digitWidth(const platform::FontRequest&) override { return _digit; }
  platform::TextExtent measure(const platform::FontRequest& font, std::u16string_view text) override {
    lastFont = font;
    return {static_cast<int>(text.size()) * (_digit + (font.bold ? 2 : 0)), 20};
  }
  platform::FontRequest lastFont;

 private:
  int _digit;
};

}  // namespace rubrica::test
