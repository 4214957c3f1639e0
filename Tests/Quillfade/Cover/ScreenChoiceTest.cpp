#include "Quillfade/Cover/ScreenChoice.h"

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

const platform::Screen left{{{0, 0}, {1440, 900}}, 1, 2};
const platform::Screen right{{{1440, 0}, {1920, 1080}}, 2, 1};
const platform::Screen overRight{{{1440, 0}, {1920, 1080}}, 3, 1};

class ScreenChoice : public OnDesktop {
 protected:
  [[nodiscard]] std::optional<platform::Screen> chosenFor(const platform::Rect& rect) {
    return screenByCenter(rect, desktop.screens());
  }
};

TEST_F(ScreenChoice, TheScreenUnderTheCentreIsChosen) {
  desktop.arrangeScreens({left, right});
  EXPECT_EQ(chosenFor({{0, 0}, {100, 100}}), left);
  EXPECT_EQ(chosenFor({{1300, 0}, {1000, 100}}), right);
}

TEST_F(ScreenChoice, TheFirstOfSeveralIsChosen) {
  desktop.arrangeScreens({left, right, overRight});
  EXPECT_EQ(chosenFor({{2000, 500}, {10, 10}}), right);
}

TEST_F(ScreenChoice, AScreenHoldsItsMinimumEdgesAndNotItsMaximumEdges) {
  desktop.arrangeScreens({left, right});
  EXPECT_EQ(chosenFor({{1430, 0}, {20, 20}}), right);
  EXPECT_EQ(chosenFor({{-10, -10}, {20, 20}}), left);
}

TEST_F(ScreenChoice, WithoutAScreenUnderTheCentreItIsTheMainScreen) {
  desktop.arrangeScreens({left, right});
  desktop.screens().setMain(right);
  EXPECT_EQ(chosenFor({{-5000, 0}, {10, 10}}), right);
}

TEST_F(ScreenChoice, WithoutAnyScreenThereIsNone) {
  desktop.arrangeScreens({});
  EXPECT_EQ(chosenFor({{0, 0}, {10, 10}}), std::nullopt);
}

}  // namespace
}  // namespace quillfade
