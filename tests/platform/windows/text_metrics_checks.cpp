#include <cstdio>
#include <string>

#include "expect.h"
#include "platform/text_metrics.h"

namespace rubrica::platform {

namespace {

constexpr std::u16string_view kAbsent = u"No Such Family 12345";

void checkDigits(TextMetrics& metrics) {
  const int width = metrics.digitWidth({u"Arial", 10, false});
  std::printf("digit widths: Arial 10 %d, Arial 20 %d, Arial 10 bold %d, absent family %d\n", width,
              metrics.digitWidth({u"Arial", 20, false}), metrics.digitWidth({u"Arial", 10, true}),
              metrics.digitWidth({kAbsent, 10, false}));
  EXPECT(width > 0 && width < 20);
  EXPECT(metrics.digitWidth({u"Arial", 20, false}) > width);
  EXPECT(metrics.digitWidth({u"Arial", 10, false}) == width);
  EXPECT(metrics.digitWidth({kAbsent, 10, false}) > 0);
  EXPECT(metrics.digitWidth({std::u16string(1000, u'x'), 10, false}) > 0);
  EXPECT(metrics.digitWidth({u"", 10, false}) > 0);
  EXPECT(metrics.digitWidth({u"Arial", -5, false}) >= 0);
}

void checkExtents(TextMetrics& metrics) {
  const FontRequest arial{u"Arial", 10, false};
  const TextExtent one = metrics.measure(arial, u"W");
  const TextExtent two = metrics.measure(arial, u"WW");
  const TextExtent many = metrics.measure(arial, std::u16string(1000, u'W'));
  std::printf("extents in Arial 10: W %dx%d, WW %dx%d, 1000 W %dx%d\n", one.width, one.height, two.width, two.height,
              many.width, many.height);
  EXPECT(one.width > 0 && one.height > 0);
  EXPECT(two.width > one.width && two.height == one.height);
  EXPECT(many.width > 400 * two.width);
  EXPECT(metrics.measure(arial, u"i").width < one.width);
  EXPECT(metrics.measure(arial, u"").width == 0);
  EXPECT(metrics.measure({u"Arial", 20, false}, u"W").height > one.height);
  EXPECT(metrics.measure({kAbsent, 10, false}, u"W").width > 0);
}

}  // namespace

void checkTextMetrics() {
  const std::unique_ptr<TextMetrics> metrics = createTextMetrics();
  checkDigits(*metrics);
  checkExtents(*metrics);
}

}  // namespace rubrica::platform
