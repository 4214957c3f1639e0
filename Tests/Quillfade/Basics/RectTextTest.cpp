#include "Quillfade/Basics/RectText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace quillfade {
namespace {

using platform::Rect;

TEST(RectText, IsAPairOfPairsInBraces) { EXPECT_EQ(rectText({{0, 25}, {1440, 875}}), "{{0, 25}, {1440, 875}}"); }

TEST(RectText, NumbersAreInShortestForm) {
  EXPECT_EQ(rectText({{-0.5, 0.1}, {100.25, 1e-3}}), "{{-0.5, 0.1}, {100.25, 0.001}}");
}

TEST(RectText, LargeNumbersAreWrittenOut) {
  EXPECT_EQ(rectText({{-100000, 1e6}, {100000, 1e16}}), "{{-100000, 1000000}, {100000, 10000000000000000}}");
}

TEST(RectText, ReadsBackWhatWasWritten) {
  const Rect rects[] = {{{240, 240}, {520, 340}}, {{-1920.5, 1.0 / 3}, {1e17 / 3, 24}}, {{0, 0}, {0, 0}}};
  for (const Rect& rect : rects) EXPECT_EQ(rectFromText(rectText(rect)), rect) << rectText(rect);
}

TEST(RectText, ReadsAnyDecimalNumber) {
  EXPECT_EQ(rectFromText("{{+1.50, -2.}, {3e2, 0.4E1}}"), (Rect{{1.5, -2}, {300, 4}}));
}

TEST(RectText, BlanksBetweenElementsAreAllowed) {
  EXPECT_EQ(rectFromText(" { {1,2},{ 3 , 4 } } "), (Rect{{1, 2}, {3, 4}}));
}

TEST(RectText, FourNumbersAreReadWhateverIsAroundThem) {
  for (const char* text : {"{1, 2, 300, 400}", "1 2 300 400", "{{1, 2}, {300, 400}", "{{1 2} {300 400}}",
                           "x=1 y=2, 300 by 400", "{{1, 2}, {300, 400}}}, {{5, 6}, {7, 8}}", "((1;2);(300;400))"}) {
    EXPECT_EQ(rectFromText(text), (Rect{{1, 2}, {300, 400}})) << text;
  }
}

TEST(RectText, NumbersThatAreMissingAreZero) {
  EXPECT_EQ(rectFromText("{{1, 2}, {3}}"), (Rect{{1, 2}, {3, 0}}));
  EXPECT_EQ(rectFromText("{{1, 2}, {3, x}}"), (Rect{{1, 2}, {3, 0}}));
  EXPECT_EQ(rectFromText("7"), (Rect{{7, 0}, {0, 0}}));
  for (const char* text : {"", "nonsense", "{{}, {}}", "+-.e", "{{nan, nan}, {inf, inf}}"}) {
    EXPECT_EQ(rectFromText(text), Rect{}) << text;
  }
}

TEST(RectText, ANumberBeginsWithItsLastSignAndEndsBeforeAnythingElse) {
  EXPECT_EQ(rectFromText("--1 +-2 3-4"), (Rect{{-1, -2}, {3, -4}}));
  EXPECT_EQ(rectFromText("1.2.3 4e 5e+"), (Rect{{1.2, 0.3}, {4, 5}}));
  EXPECT_EQ(rectFromText(".5 -.5 5. e7"), (Rect{{0.5, -0.5}, {5, 7}}));
}

TEST(RectText, ANumberThatIsTooLargeGivesTheZeroRectangle) {
  for (const char* text : {"{{0, 0}, {1e999, 600}}", "{{-1e999, 0}, {500, 600}}"}) {
    EXPECT_EQ(rectFromText(text), Rect{}) << text;
  }
  EXPECT_EQ(rectFromText("{{0, 1e-999}, {500, 600}}"), (Rect{{0, 0}, {500, 600}}));
}

}  // namespace
}  // namespace quillfade
