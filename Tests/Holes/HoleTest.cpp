// What a hole is: sets of pixels, the shape of a window with a hole, and the hole as it is written on the window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Linux/Holes/Hole.h"

namespace platform::linux::holes {
namespace {

using ::testing::IsEmpty;

std::int64_t pixels(const PixelSet& set) {
  std::int64_t count = 0;
  for (const xcb::PixelRect& rect : set) count += std::int64_t{rect.width} * rect.height;
  return count;
}

bool holds(const PixelSet& set, std::int32_t x, std::int32_t y) { return !common(set, {x, y, 1, 1}).empty(); }

TEST(PixelSet, WithoutAHoleInTheMiddleFourSidesAreLeft) {
  const PixelSet left = without({{0, 0, 100, 80}}, PixelSet{{10, 20, 30, 40}});
  EXPECT_EQ(pixels(left), 100 * 80 - 30 * 40);
  EXPECT_TRUE(holds(left, 9, 20));
  EXPECT_FALSE(holds(left, 10, 20));
  EXPECT_FALSE(holds(left, 39, 59));
  EXPECT_TRUE(holds(left, 40, 59));
}

TEST(PixelSet, HolesThatOverlapAreTakenOutOnce) {
  const PixelSet left = without({{0, 0, 100, 100}}, PixelSet{{0, 0, 50, 50}, {25, 25, 50, 50}});
  EXPECT_EQ(pixels(left), 10000 - 2500 - 2500 + 625);
}

TEST(PixelSet, AHoleLargerThanTheSetLeavesNothing) {
  EXPECT_THAT(without({{0, 0, 10, 10}, {20, 0, 5, 5}}, PixelSet{{-100, -100, 1000, 1000}}), IsEmpty());
}

TEST(PixelSet, AHoleElsewhereLeavesTheRectanglesAsTheyAre) {
  const PixelSet set{{0, 0, 10, 10}, {20, 0, 5, 5}};
  EXPECT_EQ(without(set, PixelSet{{100, 100, 10, 10}}), set);
}

TEST(PixelSet, TheSamePixelsCutDifferentlyAreTheSame) {
  const PixelSet columns{{0, 0, 5, 10}, {5, 0, 5, 10}};
  const PixelSet rows{{0, 0, 10, 5}, {0, 5, 10, 5}};
  EXPECT_TRUE(holdSame(columns, rows));
  EXPECT_FALSE(holdSame(columns, PixelSet{{0, 0, 10, 9}}));
  EXPECT_FALSE(holdSame(PixelSet{{0, 0, 10, 9}}, columns));
  EXPECT_TRUE(holdSame(PixelSet{}, PixelSet{}));
}

TEST(Hole, AWindowWithoutAShapeMissesTheAreasAndNothingElseHoweverFarItGrows) {
  const PixelSet shape = pierced({.own = std::nullopt, .areas = {{10, 10, 20, 20}, {20, 20, 20, 20}}});
  EXPECT_FALSE(holds(shape, 25, 25));
  EXPECT_FALSE(holds(shape, 10, 10));
  EXPECT_TRUE(holds(shape, 40, 40));
  EXPECT_TRUE(holds(shape, -3, -3));
  EXPECT_TRUE(holds(shape, 30000, 30000));
}

TEST(Hole, AShapedWindowKeepsTheRestOfItsShape) {
  const PixelSet shape = pierced({.own = PixelSet{{0, 0, 30, 30}, {50, 50, 10, 10}}, .areas = {{20, 20, 100, 35}}});
  EXPECT_EQ(pixels(shape), 900 - 100 + 100 - 50);
}

TEST(Hole, WhatTheWindowWasGivenIsNotTakenForTheOwnersShape) {
  const Hole hole{.own = PixelSet{{0, 0, 30, 30}}, .areas = {{5, 5, 10, 10}}};
  EXPECT_TRUE(stands(hole, pierced(hole)));
  EXPECT_EQ(ownShape(pierced(hole), hole), hole.own);
  const Hole unshaped{.own = std::nullopt, .areas = {{5, 5, 10, 10}}};
  EXPECT_EQ(ownShape(pierced(unshaped), unshaped), std::nullopt);
}

TEST(Hole, WhateverElseItsShapeIsTheOwnerGaveIt) {
  const Hole hole{.own = PixelSet{{0, 0, 30, 30}}, .areas = {{5, 5, 10, 10}}};
  const BoundingShape stroke = PixelSet{{7, 7, 3, 3}};
  EXPECT_FALSE(stands(hole, stroke));
  EXPECT_EQ(ownShape(stroke, hole), stroke);
  EXPECT_EQ(ownShape(std::nullopt, hole), std::nullopt);
  EXPECT_EQ(ownShape(stroke, std::nullopt), stroke);
}

TEST(Hole, WhatIsWrittenIsReadAgain) {
  for (const Hole& hole : {Hole{.own = std::nullopt, .areas = {{-5, -700, 1920, 1080}}},
                           Hole{.own = PixelSet{}, .areas = {{1, 2, 3, 4}, {5, 6, 7, 8}}},
                           Hole{.own = PixelSet{{-3, -3, 65535, 9}, {-32768, 32767, 1, 1}}, .areas = {}}}) {
    const auto read = readHole(written(hole, 4711));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->hole, hole);
    EXPECT_EQ(read->token, 4711U);
  }
}

TEST(Hole, WhatIsNoHoleIsNotRead) {
  const Hole hole{.own = PixelSet{{0, 0, 30, 30}}, .areas = {{5, 5, 10, 10}}};
  auto values = written(hole, 1);
  values.pop_back();
  EXPECT_FALSE(readHole(values));
  EXPECT_FALSE(readHole({}));
  auto huge = written(hole, 1);
  huge[2] = 0x80000000;
  EXPECT_FALSE(readHole(huge));
  auto other = written(hole, 1);
  other[0] = 99;
  EXPECT_FALSE(readHole(other));
}

}  // namespace
}  // namespace platform::linux::holes
