#include "engine/column_fit.h"

#include <gtest/gtest.h>

#include "tests/engine/fake_metrics.h"

namespace rubrica::test {
namespace {

constexpr double kNear = 1e-9;

TEST(ColumnFit, TheWidestLineOfTheWidestCellCounts) {
  FakeMetrics metrics(7);
  ColumnFit fit(metrics, 7);
  EXPECT_FALSE(fit.hasCells());
  fit.add(u"abc", {}, 0);
  fit.add(u"a\nlonger\nbb", {}, 0);
  EXPECT_TRUE(fit.hasCells());
  EXPECT_EQ(fit.width(), 6);
  fit.add(u"x", {}, 0);
  EXPECT_EQ(fit.width(), 6);
}

TEST(ColumnFit, BoldTextIsMeasuredInBold) {
  FakeMetrics metrics(7);
  ColumnFit fit(metrics, 7);
  fit.add(u"1234567", {u"Arial", 10, true}, 0);
  EXPECT_EQ(fit.width(), 9);
}

TEST(ColumnFit, RotationsFoldToAnAngleOfAQuarterTurn) {
  EXPECT_EQ(foldedRotation(0), 0);
  EXPECT_EQ(foldedRotation(45), 45);
  EXPECT_EQ(foldedRotation(90), 90);
  EXPECT_EQ(foldedRotation(91), 1);
  EXPECT_EQ(foldedRotation(135), 45);
  EXPECT_EQ(foldedRotation(179), 89);
  EXPECT_EQ(foldedRotation(180), 90);
  EXPECT_EQ(foldedRotation(255), 75);
}

TEST(ColumnFit, UprightTextTakesItsHeight) {
  FakeMetrics metrics(10);
  ColumnFit fit(metrics, 10);
  fit.add(u"a long text", {}, 90);
  EXPECT_NEAR(fit.width(), 2, kNear);
  fit.add(u"1234567890", {}, 30);  // cos 30 * 100 + sin 30 * 20
  EXPECT_NEAR(fit.width(), 9.660254037844387, kNear);
}

TEST(ColumnFit, WithoutADigitWidthThereIsNoResult) {
  FakeMetrics metrics(0);
  ColumnFit fit(metrics, 0);
  fit.add(u"abc", {}, 0);
  EXPECT_EQ(fit.width(), ColumnFit::kNoResult);
}

}  // namespace
}  // namespace rubrica::test
