#include "xml/number_text.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace rubrica {
namespace {

std::string written(double value) {
  NumberBuffer buffer;
  return std::string(numberText(value, buffer));
}

std::string printed(double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.17g", value);
  return buffer;
}

TEST(NumberText, IsThatOfTheCLibrary) {
  using Limits = std::numeric_limits<double>;
  for (const double value : {0.0,
                             -0.0,
                             0.1,
                             0.5,
                             1.0,
                             -1.0,
                             1.1,
                             100.0,
                             1e15,
                             999999999999999.0,
                             1e16,
                             1e17,
                             1e21,
                             1e22,
                             1e23,
                             1e-4,
                             1e-5,
                             9.5e-5,
                             0.0001234,
                             5e-324,
                             Limits::max(),
                             Limits::min(),
                             Limits::epsilon(),
                             9007199254740993.0,
                             2.5,
                             0.3,
                             123456.789,
                             1e300,
                             1e-300,
                             99999999999999999.0,
                             0.99999999999999989,
                             1.7976931348623157e308,
                             Limits::infinity(),
                             -Limits::infinity()}) {
    EXPECT_EQ(written(value), printed(value));
  }
}

TEST(NumberText, IsThatOfTheCLibraryForRandomNumbers) {
  std::mt19937_64 random(20261121);
  std::uniform_real_distribution<double> plain(0, 1e6);
  for (int i = 0; i < 100000; ++i) {
    double value = 0;
    const std::uint64_t bits = random();
    std::memcpy(&value, &bits, sizeof value);
    if (std::isfinite(value)) {
      ASSERT_EQ(written(value), printed(value));
    }
    value = plain(random);
    ASSERT_EQ(written(value), printed(value));
    value = static_cast<double>(i) * 1.1 + 0.5;
    ASSERT_EQ(written(value), printed(value));
    value = static_cast<double>(bits >> (i % 50)) / 1000;
    ASSERT_EQ(written(value), printed(value));
    ASSERT_EQ(parseNumber(written(value)), value);
  }
}

TEST(NumberText, PowersOfTenAndTheirNeighbours) {
  for (int exponent = -6; exponent <= 18; ++exponent) {
    const double power = std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
    double below = power, above = power;
    for (int step = 0; step < 40; ++step) {
      for (const double value : {below, above, -above, above * 1.5, below * 0.3}) {
        ASSERT_EQ(written(value), printed(value));
      }
      below = std::nextafter(below, 0.0);
      above = std::nextafter(above, 1e300);
    }
  }
}

TEST(NumberText, HalvesBetweenTwoTextsAreRoundedToEven) {
  for (int exponent = 50; exponent < 70; ++exponent) {
    for (int step = 1; step < 200; step += 2) {
      const double value = std::ldexp(1.0, exponent) + step * std::ldexp(1.0, exponent - 52);
      ASSERT_EQ(written(value), printed(value));
      ASSERT_EQ(written(value / 1024), printed(value / 1024));
      ASSERT_EQ(written(std::ldexp(value, -90)), printed(std::ldexp(value, -90)));
    }
  }
}

TEST(NumberText, OnlyWholeTextsAreNumbers) {
  EXPECT_EQ(parseNumber("1.5"), 1.5);
  EXPECT_EQ(parseNumber("-1e3"), -1000);
  EXPECT_EQ(parseNumber("+2"), 2);
  EXPECT_EQ(parseNumber("1E-400"), 0);
  EXPECT_TRUE(std::isinf(*parseNumber("-1e999")));
  EXPECT_TRUE(std::isinf(*parseNumber("INF")));
  for (const char* text : {"", " ", "1 ", " 1", "1,5", "0x10", "1e", "--1", "abc", "1.2.3", "#N/A"}) {
    EXPECT_EQ(parseNumber(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace rubrica
