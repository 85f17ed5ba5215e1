#include <array>
#include <map>
#include <tuple>

#include "platform/text_metrics.h"
#include "platform/win_api.h"

namespace rubrica::platform {

namespace {

constexpr int kPointsPerInch = 72;
constexpr int kDotsPerInch = 96;  // what widths of columns are stated in, whatever the display has
constexpr int kMaxPoints = 1000;  // past any font height a workbook can state (409)

int fontHeight(int points, int dotsPerInch) {
  // A negative height is that of the characters, without the space above them.
  return -::MulDiv(std::clamp(points, 1, kMaxPoints), dotsPerInch, kPointsPerInch);
}

// A font in a device context for as long as it lives.
class Selection {
 public:
  Selection(HDC context, HFONT font) : _context(context), _previous(::SelectObject(context, font)) {}
  ~Selection() {
    if (isDone()) ::SelectObject(_context, _previous);
  }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;
  bool isDone() const { return _previous != nullptr && _previous != HGDI_ERROR; }

 private:
  HDC _context;
  HGDIOBJ _previous;
};

class GdiTextMetrics final : public TextMetrics {
 public:
  GdiTextMetrics() : _context(::CreateDCW(L"DISPLAY", nullptr, nullptr, nullptr)) {}
  ~GdiTextMetrics() override {
    for (const auto& [key, font] : _fonts) {
      if (font != nullptr) ::DeleteObject(font);
    }
    if (_context != nullptr) ::DeleteDC(_context);
  }
  GdiTextMetrics(const GdiTextMetrics&) = delete;
  GdiTextMetrics& operator=(const GdiTextMetrics&) = delete;

  int digitWidth(const FontRequest& request) override {
    const HFONT font = fontOf(request, fontHeight(request.points, kDotsPerInch));
    if (font == nullptr) return kFallbackDigitWidth;
    const Selection selection(_context, font);
    std::array<ABC, 10> digits{};
    if (!selection.isDone() || ::GetCharABCWidthsW(_context, L'0', L'9', digits.data()) == 0) {
      return kFallbackDigitWidth;
    }
    int widest = 0;
    for (const ABC& digit : digits) {
      widest = std::max(widest, digit.abcA + static_cast<int>(digit.abcB) + digit.abcC);
    }
    return widest;
  }

  TextExtent measure(const FontRequest& request, std::u16string_view text) override {
    if (_context == nullptr) return {};
    const HFONT font = fontOf(request, fontHeight(request.points, ::GetDeviceCaps(_context, LOGPIXELSY)));
    if (font == nullptr) return {};
    const Selection selection(_context, font);
    TEXTMETRICW metrics{};
    if (!selection.isDone() || ::GetTextMetricsW(_context, &metrics) == 0) return {};
    const std::wstring wide = wideText(text.substr(0, kLongestLine));
    SIZE extent{};
    if (!wide.empty() && ::GetTextExtentPoint32W(_context, wide.data(), static_cast<int>(wide.size()), &extent) == 0) {
      return {};
    }
    return {static_cast<int>(extent.cx), static_cast<int>(metrics.tmHeight)};
  }

 private:
  using Key = std::tuple<std::u16string, int, bool>;

  // More than a cell can hold (32,767), and within what the call counts in.
  static constexpr std::size_t kLongestLine = 1 << 20;
  // A longer name is no installed font's, and the call would refuse it.
  static constexpr std::size_t kLongestName = LF_FACESIZE - 1;

  // The font of that height, made once; null where there is none. GDI puts the nearest family in a missing one's place.
  HFONT fontOf(const FontRequest& request, int height) {
    if (_context == nullptr) return nullptr;
    Key key(request.name, height, request.bold);
    const auto known = _fonts.find(key);
    if (known != _fonts.end()) return known->second;
    const std::wstring name = wideText(request.name.substr(0, kLongestName));
    const HFONT font = ::CreateFontW(height, 0, 0, 0, request.bold ? FW_BOLD : FW_DONTCARE, FALSE, FALSE, FALSE,
                                     DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                     DEFAULT_PITCH | FF_DONTCARE, name.c_str());
    _fonts.emplace(std::move(key), font);
    return font;
  }

  HDC _context;
  std::map<Key, HFONT> _fonts;
};

}  // namespace

std::unique_ptr<TextMetrics> createTextMetrics() {
  return std::make_unique<GdiTextMetrics>();
}

}  // namespace rubrica::platform
