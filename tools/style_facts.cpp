#include "tools/style_facts.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tools/book_opener.h"

namespace rubrica::tools {
namespace {

// The formats that need no record in a file, by id. The currency forms are those of the United States; 23 to 36 and 50
// on differ by country and have no text of their own.
constexpr std::array<const char16_t*, 50> kBuiltIn = {u"General",
                                                      u"0",
                                                      u"0.00",
                                                      u"#,##0",
                                                      u"#,##0.00",
                                                      u"\"$\"#,##0_);\\(\"$\"#,##0\\)",
                                                      u"\"$\"#,##0_);[Red]\\(\"$\"#,##0\\)",
                                                      u"\"$\"#,##0.00_);\\(\"$\"#,##0.00\\)",
                                                      u"\"$\"#,##0.00_);[Red]\\(\"$\"#,##0.00\\)",
                                                      u"0%",
                                                      u"0.00%",
                                                      u"0.00E+00",
                                                      u"# ?/?",
                                                      u"# ?"
                                                      u"?/?"
                                                      u"?",
                                                      u"m/d/yy",
                                                      u"d-mmm-yy",
                                                      u"d-mmm",
                                                      u"mmm-yy",
                                                      u"h:mm AM/PM",
                                                      u"h:mm:ss AM/PM",
                                                      u"h:mm",
                                                      u"h:mm:ss",
                                                      u"m/d/yy h:mm",
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      nullptr,
                                                      u"#,##0_);\\(#,##0\\)",
                                                      u"#,##0_);[Red]\\(#,##0\\)",
                                                      u"#,##0.00_);\\(#,##0.00\\)",
                                                      u"#,##0.00_);[Red]\\(#,##0.00\\)",
                                                      u"_(* #,##0_);_(* \\(#,##0\\);_(* \"-\"_);_(@_)",
                                                      u"_(\"$\"* #,##0_);_(\"$\"* \\(#,##0\\);_(\"$\"* \"-\"_);_(@_)",
                                                      u"_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"?"
                                                      u"?_);_(@_)",
                                                      u"_(\"$\"* #,##0.00_);_(\"$\"* \\(#,##0.00\\);_(\"$\"* \"-\"?"
                                                      u"?_);_(@_)",
                                                      u"mm:ss",
                                                      u"[h]:mm:ss",
                                                      u"mm:ss.0",
                                                      u"##0.0E+0",
                                                      u"@"};

constexpr Color kFirstPaletteColor = 8, kLastPaletteColor = 63;
// Indexes 0 to 7 of old files name the first eight colours of the palette.
constexpr Color kOldColors = 8;

bool isAutomatic(Color color) {
  return color == color::notSet || color == color::automatic || color == color::defaultForeground ||
         color == color::defaultBackground || color == color::tooltip;
}

std::string colorText(Rgb rgb) {
  if (rgb == kAutomatic) return "automatic";
  char text[16];
  std::snprintf(text, sizeof(text), "#%06X", static_cast<unsigned>(rgb));
  return text;
}

const char* flag(bool set) {
  return set ? "yes" : "no";
}

template <class Enum, std::size_t Count>
std::string word(Enum value, const std::array<const char*, Count>& words) {
  const auto index = static_cast<std::size_t>(value);
  return index < Count ? words[index] : std::to_string(static_cast<int>(value));
}

constexpr std::array kAlignH = {"general", "left", "center", "right", "fill", "justify", "merge", "distributed"};
constexpr std::array kAlignV = {"top", "center", "bottom", "justify", "distributed"};
constexpr std::array kLines = {
    "none",         "thin",    "medium",        "dashed",     "dotted",           "thick",       "double", "hair",
    "mediumDashed", "dashDot", "mediumDashDot", "dashDotDot", "mediumDashDotDot", "slantDashDot"};
constexpr std::array kDiagonals = {"none", "down", "up", "both"};
constexpr std::array kScripts = {"normal", "superscript", "subscript"};

std::string sideText(const Side& side) {
  return word(side.style, kLines) + (side.style == BorderStyle::none ? "" : " " + colorText(side.color));
}

std::string numFormatText(const FormatFacts& facts) {
  if (!facts.numFormatText.empty()) return narrowText(facts.numFormatText);
  const char16_t* text = builtInNumFormat(facts.numFormat);
  return text != nullptr ? narrowText(text) : "built-in " + std::to_string(facts.numFormat);
}

}  // namespace

const char16_t* builtInNumFormat(int id) {
  return id >= 0 && static_cast<std::size_t>(id) < kBuiltIn.size() ? kBuiltIn[static_cast<std::size_t>(id)] : nullptr;
}

std::vector<std::pair<const char*, std::string>> describe(const FormatFacts& facts) {
  const FontFacts& font = facts.font;
  return {{"number format", numFormatText(facts)},
          {"font", narrowText(font.name)},
          {"font size", std::to_string(font.size)},
          {"bold", flag(font.bold)},
          {"italic", flag(font.italic)},
          {"strike-out", flag(font.strikeOut)},
          {"underline", std::to_string(static_cast<int>(font.underline))},
          {"script", word(font.script, kScripts)},
          {"font color", colorText(font.color)},
          {"horizontal alignment", word(facts.alignH, kAlignH)},
          {"vertical alignment", word(facts.alignV, kAlignV)},
          {"wrap", flag(facts.wrap)},
          {"shrink to fit", flag(facts.shrinkToFit)},
          {"rotation", std::to_string(facts.rotation)},
          {"indent", std::to_string(facts.indent)},
          {"left border", sideText(facts.left)},
          {"right border", sideText(facts.right)},
          {"top border", sideText(facts.top)},
          {"bottom border", sideText(facts.bottom)},
          {"diagonal border", word(facts.diagonalWay, kDiagonals) + " " + sideText(facts.diagonal)},
          {"fill pattern", std::to_string(static_cast<int>(facts.pattern))},
          {"fill foreground", colorText(facts.foreground)},
          {"fill background", colorText(facts.background)},
          {"locked", flag(facts.locked)},
          {"formula hidden", flag(facts.hidden)}};
}

const FormatFacts& StyleReader::of(Format* format) {
  if (format == nullptr) return _plain;
  const auto found = _known.find(format);
  return found != _known.end() ? found->second : _known.emplace(format, read(*format)).first->second;
}

Rgb StyleReader::rgb(Color color) {
  if (isAutomatic(color)) return kAutomatic;
  const bool isOldIndex = !_book.rgbMode() && color >= 0 && color < kOldColors;
  int red = -1, green = -1, blue = -1;
  _book.colorUnpack(isOldIndex ? color + kOldColors : color, &red, &green, &blue);
  return red < 0 ? kAutomatic : red << 16 | green << 8 | blue;
}

Side StyleReader::side(BorderStyle style, Color color) {
  return {style, style == BorderStyle::none ? kAutomatic : rgb(color)};
}

FontFacts StyleReader::read(Font& font) {
  const char16_t* name = font.name();
  return {name == nullptr ? u"" : name,
          font.size(),
          font.bold(),
          font.italic(),
          font.strikeOut(),
          font.underline(),
          font.script(),
          rgb(font.color())};
}

FormatFacts StyleReader::read(Format& format) {
  FormatFacts facts;
  if (Font* font = format.font(); font != nullptr) facts.font = read(*font);
  facts.numFormat = format.numFormat();
  if (const char16_t* text = _book.customNumFormat(facts.numFormat); text != nullptr) {
    const std::u16string_view custom = text;
    const auto same = std::find_if(kBuiltIn.begin(), kBuiltIn.end(),
                                   [&](const char16_t* known) { return known != nullptr && custom == known; });
    facts.numFormat = same == kBuiltIn.end() ? 0 : static_cast<int>(same - kBuiltIn.begin());
    if (same == kBuiltIn.end()) facts.numFormatText = custom;
  }
  facts.alignH = format.alignH();
  facts.alignV = format.alignV();
  facts.wrap = format.wrap();
  facts.shrinkToFit = format.shrinkToFit();
  facts.rotation = format.rotation();
  facts.indent = format.indent();
  facts.left = side(format.borderLeft(), format.borderLeftColor());
  facts.right = side(format.borderRight(), format.borderRightColor());
  facts.top = side(format.borderTop(), format.borderTopColor());
  facts.bottom = side(format.borderBottom(), format.borderBottomColor());
  facts.diagonalWay = format.borderDiagonal();
  if (facts.diagonalWay != BorderDiagonal::none) {
    facts.diagonal = side(format.borderDiagonalStyle(), format.borderDiagonalColor());
  }
  facts.pattern = format.fillPattern();
  if (facts.pattern != FillPattern::none) {
    facts.foreground = rgb(format.patternForegroundColor());
    facts.background = rgb(format.patternBackgroundColor());
  }
  facts.locked = format.locked();
  facts.hidden = format.hidden();
  return facts;
}

void StyleWriter::adopt(const FormatFacts& facts, Format* format) {
  _formats[facts] = format;
  if (Font* font = format->font(); font != nullptr) _fonts[facts.font] = font;
}

Format* StyleWriter::formatOf(const FormatFacts& facts) {
  const auto found = _formats.find(facts);
  if (found != _formats.end()) return found->second;
  int numFormat = facts.numFormat;
  if (!facts.numFormatText.empty()) {
    numFormat = _book.addCustomNumFormat(facts.numFormatText.c_str());
    if (numFormat == 0) return nullptr;
  }
  Font* font = fontOf(facts.font);
  Format* format = font == nullptr ? nullptr : _book.addFormat();
  if (format == nullptr) return nullptr;
  format->setFont(font);
  format->setNumFormat(numFormat);
  format->setAlignH(facts.alignH);
  format->setAlignV(facts.alignV);
  format->setWrap(facts.wrap);
  format->setShrinkToFit(facts.shrinkToFit);
  format->setRotation(facts.rotation);
  format->setIndent(facts.indent);
  setBorders(*format, facts);
  if (facts.pattern != FillPattern::none) {
    format->setFillPattern(facts.pattern);
    if (facts.foreground != kAutomatic) format->setPatternForegroundColor(colorOf(facts.foreground));
    if (facts.background != kAutomatic) format->setPatternBackgroundColor(colorOf(facts.background));
  }
  format->setLocked(facts.locked);
  format->setHidden(facts.hidden);
  return _formats[facts] = format;
}

void StyleWriter::setBorders(Format& format, const FormatFacts& facts) {
  if (facts.left.style != BorderStyle::none) {
    format.setBorderLeft(facts.left.style);
    if (facts.left.color != kAutomatic) format.setBorderLeftColor(colorOf(facts.left.color));
  }
  if (facts.right.style != BorderStyle::none) {
    format.setBorderRight(facts.right.style);
    if (facts.right.color != kAutomatic) format.setBorderRightColor(colorOf(facts.right.color));
  }
  if (facts.top.style != BorderStyle::none) {
    format.setBorderTop(facts.top.style);
    if (facts.top.color != kAutomatic) format.setBorderTopColor(colorOf(facts.top.color));
  }
  if (facts.bottom.style != BorderStyle::none) {
    format.setBorderBottom(facts.bottom.style);
    if (facts.bottom.color != kAutomatic) format.setBorderBottomColor(colorOf(facts.bottom.color));
  }
  if (facts.diagonalWay != BorderDiagonal::none) {
    format.setBorderDiagonal(facts.diagonalWay);
    format.setBorderDiagonalStyle(facts.diagonal.style);
    if (facts.diagonal.color != kAutomatic) {
      format.setBorderDiagonalColor(colorOf(facts.diagonal.color));
    } else if (!_book.rgbMode()) {
      format.setBorderDiagonalColor(color::defaultForeground);
    }
  }
}

Font* StyleWriter::fontOf(const FontFacts& facts) {
  const auto found = _fonts.find(facts);
  if (found != _fonts.end()) return found->second;
  Font* font = _book.addFont();
  if (font == nullptr) return nullptr;
  font->setName(facts.name.c_str());
  font->setSize(facts.size);
  font->setBold(facts.bold);
  font->setItalic(facts.italic);
  font->setStrikeOut(facts.strikeOut);
  font->setUnderline(facts.underline);
  font->setScript(facts.script);
  if (facts.color != kAutomatic) font->setColor(colorOf(facts.color));
  return _fonts[facts] = font;
}

Color StyleWriter::colorOf(Rgb rgb) {
  const auto found = _colors.find(rgb);
  if (found != _colors.end()) return found->second;
  Color color = _book.colorPack(rgb >> 16 & 0xFF, rgb >> 8 & 0xFF, rgb & 0xFF);
  // An index is never 0; under rgbMode 0 is black.
  if (color == 0 && !_book.rgbMode()) {
    color = nearestColor(rgb);
    ++_approximated;
  }
  return _colors[rgb] = color;
}

Color StyleWriter::nearestColor(Rgb rgb) {
  Color nearest = color::black;
  long smallest = -1;
  for (Color color = kFirstPaletteColor; color <= kLastPaletteColor; ++color) {
    int red = -1, green = -1, blue = -1;
    _book.colorUnpack(color, &red, &green, &blue);
    if (red < 0) continue;
    const long differences[] = {red - (rgb >> 16 & 0xFF), green - (rgb >> 8 & 0xFF), blue - (rgb & 0xFF)};
    long sum = 0;
    for (const long difference : differences) sum += difference * difference;
    if (smallest < 0 || sum < smallest) {
      smallest = sum;
      nearest = color;
    }
  }
  return nearest;
}

}  // namespace rubrica::tools
