#include "Quillfade/Basics/Fatal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quillfade {
namespace {

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr double beyond = 9223372036854775808.0;  // one more than the largest that fits

TEST(WholeNumber, DropsTheFractionTowardZero) {
  EXPECT_EQ(wholeNumber(1439.7), 1439);
  EXPECT_EQ(wholeNumber(-10.7), -10);
  EXPECT_EQ(wholeNumber(0.999), 0);
  EXPECT_EQ(wholeNumber(-beyond), std::numeric_limits<std::int64_t>::min());
}

TEST(RoundedNumber, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(roundedNumber(200.5), 201);
  EXPECT_EQ(roundedNumber(100.5), 101);
  EXPECT_EQ(roundedNumber(-0.5), -1);
  EXPECT_EQ(roundedNumber(0.49), 0);
}

TEST(CountUp, AddsOne) {
  std::int64_t counter = largest - 1;
  countUp(counter);
  EXPECT_EQ(counter, largest);
}

TEST(FatalDeathTest, NumbersThatDoNotFitEndTheProcess) {
  EXPECT_DEATH(static_cast<void>(wholeNumber(std::nan(""))), "fatal error");
  EXPECT_DEATH(static_cast<void>(wholeNumber(std::numeric_limits<double>::infinity())), "fatal error");
  EXPECT_DEATH(static_cast<void>(wholeNumber(beyond)), "fatal error");
  EXPECT_DEATH(static_cast<void>(roundedNumber(-1e300)), "fatal error");
}

TEST(FatalDeathTest, ACounterThatOverflowsEndsTheProcess) {
  std::int64_t counter = largest;
  EXPECT_DEATH(countUp(counter), "fatal error");
}

}  // namespace
}  // namespace quillfade
