// Styles, dates, colours and fonts of an OOXML book.
#include <limits>

#include "engine/date_serial.h"
#include "engine/standard_palette.h"
#include "xml/book_impl.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"
#include "xml/xml_font.h"
#include "xml/xml_format.h"

namespace rubrica {
namespace {

constexpr char kNoFormats[] = "formats are not found";
constexpr char kNoFonts[] = "fonts is empty";

struct Rgb {
  int red, green, blue;
};

Rgb rgbOf(std::uint32_t value) {
  constexpr std::uint32_t kByte = 0xFF;
  return {static_cast<int>(value >> 16U & kByte), static_cast<int>(value >> 8U & kByte),
          static_cast<int>(value & kByte)};
}

// The palette of an OOXML book is the standard one: the entry nearest to a colour stands for it.
int nearestPaletteIndex(const Rgb& wanted) {
  int nearest = 0;
  int distance = std::numeric_limits<int>::max();
  for (std::size_t i = 0; i < kStandardPalette.size(); ++i) {
    const Rgb entry = rgbOf(kStandardPalette[i]);
    const int red = entry.red - wanted.red, green = entry.green - wanted.green, blue = entry.blue - wanted.blue;
    const int square = red * red + green * green + blue * blue;
    if (square >= distance) continue;
    distance = square;
    nearest = static_cast<int>(i);
  }
  return nearest + kFirstPaletteIndex;
}

}  // namespace

template <class Tag>
IFormatT<char16_t>* XMLBookImplT<Tag>::addFormat(IFormatT<char16_t>* initFormat) {
  return guarded(_last, static_cast<IFormatT<char16_t>*>(nullptr),
                 [&]() -> IFormatT<char16_t>* { return needStyles().addFormat(initFormat); });
}

template <class Tag>
IFontT<char16_t>* XMLBookImplT<Tag>::addFont(IFontT<char16_t>* initFont) {
  return guarded(_last, static_cast<IFontT<char16_t>*>(nullptr),
                 [&]() -> IFontT<char16_t>* { return needStyles().addFont(initFont); });
}

template <class Tag>
int XMLBookImplT<Tag>::addCustomNumFormat(Text customNumFormat) {
  return guarded(_last, 0,
                 [&] { return needStyles().addCustomNumFormat(customNumFormat == nullptr ? u"" : customNumFormat); });
}

template <class Tag>
const char16_t* XMLBookImplT<Tag>::customNumFormat(int fmt) {
  return guarded(_last, Text{}, [&] {
    if (_styles == nullptr) throw xlerror("custom number format not found");
    return _styles->customNumFormat(fmt);
  });
}

template <class Tag>
IFormatT<char16_t>* XMLBookImplT<Tag>::format(int index) {
  return guarded(_last, static_cast<IFormatT<char16_t>*>(nullptr), [&]() -> IFormatT<char16_t>* {
    if (_styles == nullptr) throw xlerror(kNoFormats);
    return _styles->format(index);
  });
}

template <class Tag>
int XMLBookImplT<Tag>::formatSize() {
  _last.setOk();
  return _styles == nullptr ? 0 : _styles->formatCount();
}

template <class Tag>
IFontT<char16_t>* XMLBookImplT<Tag>::font(int index) {
  return guarded(_last, static_cast<IFontT<char16_t>*>(nullptr), [&]() -> IFontT<char16_t>* {
    if (_styles == nullptr) throw xlerror(kNoFonts);
    return _styles->font(index);
  });
}

template <class Tag>
int XMLBookImplT<Tag>::fontSize() {
  _last.setOk();
  return _styles == nullptr ? 0 : _styles->fontCount();
}

template <class Tag>
double XMLBookImplT<Tag>::datePack(int year, int month, int day, int hour, int min, int sec, int msec) {
  return guarded(_last, 0.0, [&] { return rubrica::datePack(isDate1904(), year, month, day, hour, min, sec, msec); });
}

template <class Tag>
bool XMLBookImplT<Tag>::dateUnpack(double value, int* year, int* month, int* day, int* hour, int* min, int* sec,
                                   int* msec) {
  if (!rubrica::dateUnpack(isDate1904(), value, year, month, day, hour, min, sec, msec)) return false;
  _last.setOk();
  return true;
}

// Under RGB mode a colour is its three bytes; otherwise it is an index of the palette.
template <class Tag>
Color XMLBookImplT<Tag>::colorPack(int red, int green, int blue) {
  return guarded(_last, Color{0}, [&] {
    constexpr int kByte = 0xFF;
    const Rgb rgb{red & kByte, green & kByte, blue & kByte};
    return static_cast<Color>(rgbMode() ? rgb.red << 16 | rgb.green << 8 | rgb.blue : nearestPaletteIndex(rgb));
  });
}

template <class Tag>
void XMLBookImplT<Tag>::colorUnpack(Color color, int* red, int* green, int* blue) {
  guarded(_last, [&] {
    auto value = static_cast<std::uint32_t>(color);
    if (!rgbMode()) value = kStandardPalette.at(static_cast<std::size_t>(value) - kFirstPaletteIndex);
    const Rgb rgb = rgbOf(value);
    if (red != nullptr) *red = rgb.red;
    if (green != nullptr) *green = rgb.green;
    if (blue != nullptr) *blue = rgb.blue;
  });
}

template <class Tag>
bool XMLBookImplT<Tag>::rgbMode() {
  return _styles != nullptr && _styles->rgbMode();
}

template <class Tag>
void XMLBookImplT<Tag>::setRgbMode(bool rgbMode) {
  guarded(_last, [&] { needStyles().setRgbMode(rgbMode); });
}

template <class Tag>
bool XMLBookImplT<Tag>::setLocale(const char* locale) {
  return guarded(_last, false, [&] {
    _text.setLocale(locale);
    return true;
  });
}

template <class Tag>
const char16_t* XMLBookImplT<Tag>::defaultFont(int* size) {
  return guarded(_last, Text{}, [&] {
    if (_styles == nullptr) throw xlerror(kNoFonts);
    return _styles->defaultFont(size);
  });
}

template <class Tag>
void XMLBookImplT<Tag>::setDefaultFont(Text name, int size) {
  guarded(_last, [&] {
    if (_styles == nullptr) throw xlerror(kNoFonts);
    _styles->setDefaultFont(name, size);
    rememberDefaultFont();
  });
}

// The font is noted now and measured when a width is asked for: most books are read without one.
template <class Tag>
void XMLBookImplT<Tag>::rememberDefaultFont() {
  _measuredFont.clear();
  _digitWidth = 0;
  if (_styles == nullptr || _styles->fontCount() == 0) {
    _digitWidth = platform::kFallbackDigitWidth;
    return;
  }
  const Text name = _styles->defaultFont(&_measuredPoints);
  if (name != nullptr) _measuredFont = name;
}

template <class Tag>
platform::TextMetrics& XMLBookImplT<Tag>::textMetrics() {
  if (_metrics == nullptr) _metrics = platform::createTextMetrics();
  return *_metrics;
}

template <class Tag>
void XMLBookImplT<Tag>::setTextMetrics(std::unique_ptr<platform::TextMetrics> metrics) {
  _metrics = std::move(metrics);
  rememberDefaultFont();
}

template <class Tag>
int XMLBookImplT<Tag>::digitWidth() {
  if (_digitWidth == 0) _digitWidth = textMetrics().digitWidth({_measuredFont, _measuredPoints, false});
  return _digitWidth;
}

template class XMLBookImplT<excelNormal_tag>;
template class XMLBookImplT<excelStrict_tag>;

}  // namespace rubrica
