#include "Quillfade/RectText.h"

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

TEST(RectText, ReadsBackWhatWasWritten) {
  const Rect rects[] = {{{240, 240}, {520, 340}}, {{-1920.5, 1.0 / 3}, {1e17 / 3, 24}}, {{0, 0}, {0, 0}}};
  for (const Rect& rect : rects) EXPECT_EQ(rectFromText(rectText(rect)), rect) << rectText(rect);
}

TEST(RectText, ReadsAnyDecimalNumber) {
  EXPECT_EQ(rectFromText("{{+1.50, -2.}, {3e2, 0.4E1}}"), (Rect{{1.5, -2}, {300, 4}}));
}

TEST(RectText, BlanksBetweenElementsAreFree) {
  EXPECT_EQ(rectFromText(" { {1,2},{ 3 , 4 } } "), (Rect{{1, 2}, {3, 4}}));
}

TEST(RectText, TextThatIsNoRectangleReadsAsZero) {
  for (const char* text : {"", "nonsense", "{{1, 2}, {3}}", "{{1, 2}, {3, 4}", "{1, 2, 3, 4}", "{{1 2}, {3, 4}}",
                           "{{1, 2}, {3, x}}", "{{1, 2}, {--3, 4}}", "{{1, 2}, {1.2.3, 4}}"}) {
    EXPECT_EQ(rectFromText(text), Rect{}) << text;
  }
}

TEST(RectText, NoBeginningOfARectangleIsOne) {
  const std::string whole = "{{1, 2}, {3, 4}}";
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(rectFromText(whole.substr(0, length)), Rect{}) << length;
  }
  EXPECT_EQ(rectFromText(whole + "}"), Rect{});
}

TEST(RectText, NumbersThatAreNotFiniteReadAsZero) {
  for (const char* text : {"{{0, 0}, {nan, 600}}", "{{0, 0}, {inf, 600}}", "{{0, 0}, {1e999, 600}}"}) {
    EXPECT_EQ(rectFromText(text), Rect{}) << text;
  }
}

}  // namespace
}  // namespace quillfade
