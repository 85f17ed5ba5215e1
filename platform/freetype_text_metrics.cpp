#include <ft2build.h>

#include <fontconfig/fontconfig.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <tuple>

#include "platform/text.h"
#include "platform/text_metrics.h"

namespace rubrica::platform {

namespace {

constexpr FT_UInt kDotsPerInch = 96;
constexpr int kMaxPoints = 1000;                       // past any font height a workbook can state (409)
constexpr FT_Int32 kGlyphFlags = FT_LOAD_TARGET_MONO;  // hints advances to whole pixels, as GDI does

// Stands in for Calibri, whose own hints set digits and letters narrower than their outlines are: at 11 points a digit
// of 7.6 pixels takes 7. Carlito's hints don't, so its widths are cut and not rounded.
constexpr std::string_view kCalibriStandIn = "Carlito";

// FreeType states lengths in 64ths of a pixel.
int wholePixels(FT_Pos length) {
  return static_cast<int>((length + 32) >> 6);
}

struct FontFile {
  std::string path;
  int index = 0;
};

template <typename T, void (*Destroy)(T*)>
struct Destroyer {
  void operator()(T* object) const { Destroy(object); }
};
using Pattern = std::unique_ptr<FcPattern, Destroyer<FcPattern, FcPatternDestroy>>;

// The installed font that fontconfig deems nearest; its rules know the metric-compatible families.
bool findFont(const FontRequest& font, FontFile& found) {
  const Pattern wanted(FcPatternCreate());
  if (!wanted) return false;
  const std::string family = utf8FromUtf16Lossy(font.name);
  FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddInteger(wanted.get(), FC_WEIGHT, font.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  const Pattern match(FcFontMatch(nullptr, wanted.get(), &result));
  FcChar8* path = nullptr;
  if (!match || FcPatternGetString(match.get(), FC_FILE, 0, &path) != FcResultMatch) return false;
  found.path = reinterpret_cast<const char*>(path);
  if (FcPatternGetInteger(match.get(), FC_INDEX, 0, &found.index) != FcResultMatch) found.index = 0;
  return true;
}

class FreeTypeTextMetrics final : public TextMetrics {
 public:
  FreeTypeTextMetrics() {
    if (FT_Init_FreeType(&_library) != 0) _library = nullptr;
  }
  ~FreeTypeTextMetrics() override {
    for (const auto& [key, face] : _faces) {
      if (face != nullptr) FT_Done_Face(face);
    }
    if (_library != nullptr) FT_Done_FreeType(_library);
  }
  FreeTypeTextMetrics(const FreeTypeTextMetrics&) = delete;
  FreeTypeTextMetrics& operator=(const FreeTypeTextMetrics&) = delete;

  int digitWidth(const FontRequest& font) override {
    const FT_Face face = faceOf(font);
    if (face == nullptr) return kFallbackDigitWidth;
    int widest = 0;
    for (char32_t digit = U'0'; digit <= U'9'; ++digit) widest = std::max(widest, advance(face, digit));
    return widest > 0 ? widest : kFallbackDigitWidth;
  }

  TextExtent measure(const FontRequest& font, std::u16string_view text) override {
    const FT_Face face = faceOf(font);
    if (face == nullptr) return {};
    TextExtent extent;
    for (std::size_t i = 0; i < text.size(); ++i) {
      char32_t point = text[i];
      const bool pair = point >= 0xD800 && point < 0xDC00 && i + 1 < text.size();
      if (pair) point = 0x10000 + ((point - 0xD800) << 10) + ((text[++i] - 0xDC00U) & 0x3FF);
      extent.width += advance(face, point);
    }
    const FT_Size_Metrics& size = face->size->metrics;
    extent.height = wholePixels(size.ascender - size.descender);
    return extent;
  }

 private:
  using Key = std::tuple<std::u16string, int, bool>;

  static int advance(FT_Face face, char32_t point) {
    if (FT_Load_Char(face, point, kGlyphFlags) != 0) return 0;
    const bool isCut = face->family_name != nullptr && face->family_name == kCalibriStandIn;
    if (!isCut) return wholePixels(face->glyph->advance.x);
    return static_cast<int>(face->glyph->linearHoriAdvance >> 16);  // unhinted, in 65536ths of a pixel
  }

  // The sized font, opened once; null where there is none.
  FT_Face faceOf(const FontRequest& font) {
    const int points = std::clamp(font.points, 1, kMaxPoints);
    Key key(font.name, points, font.bold);
    const auto known = _faces.find(key);
    if (known != _faces.end()) return known->second;
    FontFile file;
    FT_Face face = nullptr;
    if (_library != nullptr && findFont(font, file) &&
        FT_New_Face(_library, file.path.c_str(), file.index, &face) == 0) {
      if (FT_Set_Char_Size(face, 0, points * 64, kDotsPerInch, kDotsPerInch) != 0) {
        FT_Done_Face(face);
        face = nullptr;
      }
    } else {
      face = nullptr;
    }
    _faces.emplace(std::move(key), face);
    return face;
  }

  FT_Library _library = nullptr;
  std::map<Key, FT_Face> _faces;
};

}  // namespace

std::unique_ptr<TextMetrics> createTextMetrics() {
  return std::make_unique<FreeTypeTextMetrics>();
}

}  // namespace rubrica::platform
