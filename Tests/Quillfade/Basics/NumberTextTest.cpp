#include "Quillfade/Basics/NumberText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

namespace quillfade {
namespace {

TEST(NumberText, WholeNumbersHaveNoPoint) {
  EXPECT_EQ(numberText(0), "0");
  EXPECT_EQ(numberText(1440), "1440");
  EXPECT_EQ(numberText(-2000), "-2000");
}

TEST(NumberText, FractionsAreAsShortAsTheyCanBe) {
  EXPECT_EQ(numberText(0.1), "0.1");
  EXPECT_EQ(numberText(-899.25), "-899.25");
}

TEST(NumberText, OnlyVeryLargeAndVerySmallNumbersHaveAnExponent) {
  EXPECT_EQ(numberText(100000), "100000");
  EXPECT_EQ(numberText(-12345678.5), "-12345678.5");
  EXPECT_EQ(numberText(1e16), "10000000000000000");
  EXPECT_EQ(numberText(1e17), "1e+17");
  EXPECT_EQ(numberText(0.0001), "0.0001");
  EXPECT_EQ(numberText(0.00001), "1e-05");
}

TEST(NumberText, EveryNumberReadsBackAsItself) {
  for (const double value : {1.0 / 3, 1e300, 5e-324, 123456789.123456789, std::numeric_limits<double>::max()}) {
    EXPECT_EQ(std::strtod(numberText(value).c_str(), nullptr), value);
  }
}

}  // namespace
}  // namespace quillfade
