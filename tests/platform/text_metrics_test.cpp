#include "platform/text_metrics.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

namespace rubrica::platform {
namespace {

// Whether fontconfig offers `family` itself, so that widths known for it can be asked for.
bool isInstalled(const char* family) {
  FcPattern* pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  FcObjectSet* objects = FcObjectSetBuild(FC_FAMILY, nullptr);
  FcFontSet* fonts = FcFontList(nullptr, pattern, objects);
  const bool found = fonts != nullptr && fonts->nfont > 0;
  if (fonts != nullptr) FcFontSetDestroy(fonts);
  FcObjectSetDestroy(objects);
  FcPatternDestroy(pattern);
  return found;
}

TEST(TextMetrics, ArialTenHasDigitsOfSevenPixels) {
  if (!isInstalled("Arial") && !isInstalled("Liberation Sans")) GTEST_SKIP() << "no font with the widths of Arial";
  const auto metrics = createTextMetrics();
  EXPECT_EQ(metrics->digitWidth({u"Arial", 10, false}), 7);
  EXPECT_EQ(metrics->digitWidth({u"Arial", 8, false}), 6);
  EXPECT_EQ(metrics->digitWidth({u"Arial", 20, false}), 15);
}

TEST(TextMetrics, CalibriElevenHasDigitsOfSevenPixels) {
  if (!isInstalled("Carlito")) GTEST_SKIP() << "no font with the widths of Calibri";
  EXPECT_EQ(createTextMetrics()->digitWidth({u"Calibri", 11, false}), 7);
}

TEST(TextMetrics, WidthsAddUpGlyphByGlyph) {
  const auto metrics = createTextMetrics();
  const FontRequest font{u"Arial", 10, false};
  const TextExtent one = metrics->measure(font, u"W");
  if (one.width == 0) GTEST_SKIP() << "no font installed";
  EXPECT_EQ(metrics->measure(font, u"WWW").width, 3 * one.width);
  EXPECT_GT(one.height, 10);
  EXPECT_EQ(metrics->measure(font, u"").width, 0);
  EXPECT_EQ(metrics->measure(font, u"").height, one.height);
  EXPECT_EQ(metrics->measure(font, u"0000000000").width, 10 * metrics->digitWidth(font));
}

TEST(TextMetrics, BoldAndLargerTextIsWider) {
  if (!isInstalled("Arial") && !isInstalled("Liberation Sans")) GTEST_SKIP() << "no font with the widths of Arial";
  const auto metrics = createTextMetrics();
  const auto width = [&](int points, bool bold) { return metrics->measure({u"Arial", points, bold}, u"Summe").width; };
  EXPECT_GT(width(10, true), width(10, false));
  EXPECT_GT(width(20, false), width(10, false));
}

TEST(TextMetrics, UnknownFamiliesAndOddSizesStillGiveADigitWidth) {
  const auto metrics = createTextMetrics();
  EXPECT_GT(metrics->digitWidth({u"No Such Family 1234", 10, false}), 0);
  EXPECT_GT(metrics->digitWidth({u"", 10, false}), 0);
  EXPECT_GT(metrics->digitWidth({std::u16string_view(u"\xD800", 1), 0, false}), 0);
  EXPECT_GT(metrics->digitWidth({u"Arial", -5, false}), 0);
  EXPECT_GT(metrics->digitWidth({u"Arial", 2'000'000'000, false}), 0);
}

TEST(TextMetrics, PairsOfSurrogatesAreOneGlyphAndHalvesAreHarmless) {
  const auto metrics = createTextMetrics();
  const FontRequest font{u"Arial", 10, false};
  const int missing = metrics->measure(font, u"\uE123").width;
  if (missing == 0) GTEST_SKIP() << "no font installed";
  EXPECT_LT(metrics->measure(font, u"\U0001F600").width, 2 * missing + 20);
  EXPECT_GE(metrics->measure(font, std::u16string(1, char16_t{0xD83D})).width, 0);
}

}  // namespace
}  // namespace rubrica::platform
