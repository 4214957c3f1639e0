#include <gtest/gtest.h>

#include <array>
#include <set>

#include "Platform/Linux/Toolkit/DesktopScreens.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/Input.h"

using namespace platform;
using namespace platform::linux;
using namespace platform::linux::toolkit;

namespace {

void xrandr(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "xrandr");
  support::runToEnd(std::move(arguments), {{"DISPLAY", qt::display()}});
}

class ScreensTest : public qt::Test {
 protected:
  ~ScreensTest() override {
    if (!split_) return;
    const DesktopScreens screens;
    xrandr({"--delmonitor", "L"});
    xrandr({"--delmonitor", "R"});
    EXPECT_TRUE(qt::runUntil([&] { return screens.all().size() == 1; }));
  }

  // Splits the server's one output into two monitors, left and right.
  void split() { split("480/100x800/150+0+0", "800/100x600/150+480+0"); }
  void split(const std::string& first, const std::string& second) {
    split_ = true;
    xrandr({"--setmonitor", "L", first, "screen"});
    xrandr({"--setmonitor", "R", second, "none"});
  }

 private:
  bool split_ = false;
};

}  // namespace

TEST_F(ScreensTest, TheOneScreenOfTheServerIsThePrimaryOne) {
  const DesktopScreens screens;
  const auto all = screens.all();
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].frame, (Rect{{0, 0}, {1280, 800}}));
  EXPECT_EQ(all[0].backingScaleFactor, 1);
  EXPECT_NE(all[0].displayID.value_or(0), 0U);
  EXPECT_EQ(screens.main(), all[0]);
  EXPECT_EQ(screens.geometries().at(0).pixels, (xcb::PixelRect{0, 0, 1280, 800}));
}

TEST_F(ScreensTest, ThePointerIsMeasuredFromTheBottomLeftCorner) {
  const DesktopScreens screens;
  support::Input(qt::display()).moveTo(100, 200);
  EXPECT_TRUE(qt::runUntil([&] { return screens.mouseLocation() == Point{100.5, 599.5}; }))
      << "the middle of its pixel";
}

// Pairs of monitors: side by side, and one above the other.
class EveryEdge : public ScreensTest, public testing::WithParamInterface<std::pair<std::string, std::string>> {};

TEST_P(EveryEdge, HoldsThePointerOnTheScreenWhoseEdgeItIs) {
  const DesktopScreens screens;
  split(GetParam().first, GetParam().second);
  ASSERT_TRUE(qt::runUntil([&] { return screens.all().size() == 2; }));
  support::Input input(qt::display());
  for (const xcb::ScreenGeometry& screen : screens.geometries()) {
    const xcb::PixelRect& pixels = screen.pixels;
    for (const int x : {pixels.x, pixels.x + pixels.width / 2, pixels.right() - 1}) {
      for (const int y : {pixels.y, pixels.y + pixels.height / 2, pixels.bottom() - 1}) {
        input.moveTo(x, y);
        const Point pointer = screens.mouseLocation();
        for (const xcb::ScreenGeometry& any : screens.geometries())
          EXPECT_EQ(any.points.contains(pointer), any == screen) << x << "," << y;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(OfTwoScreens, EveryEdge,
                         testing::Values(std::pair{"480/100x800/150+0+0", "800/100x600/150+480+0"},
                                         std::pair{"1280/300x300/80+0+0", "800/100x500/100+0+300"}));

TEST_F(ScreensTest, AConfigurationChangeIsReportedOnce) {
  DesktopScreens screens;
  std::vector<std::size_t> counts;
  screens.observeChanges([&] { counts.push_back(screens.all().size()); });
  split();
  ASSERT_TRUE(qt::runUntil([&] { return screens.all().size() == 2; }));
  ASSERT_TRUE(qt::runUntil([&] { return !counts.empty() && counts.back() == 2; }));
  const std::set<std::uint32_t> identifiers{*screens.all()[0].displayID, *screens.all()[1].displayID};
  EXPECT_EQ(identifiers.size(), 2U);
  // Two commands, so two changes at most, however many signals each of them causes.
  EXPECT_LE(counts.size(), 2U);
  const std::size_t before = counts.size();
  qt::runPending();
  EXPECT_EQ(counts.size(), before);
}

TEST_F(ScreensTest, TwoMonitorsLieSideBySideInPointsAsInPixels) {
  const DesktopScreens screens;
  split();
  ASSERT_TRUE(qt::runUntil([&] { return screens.all().size() == 2; }));
  const auto geometries = screens.geometries();
  std::set<std::pair<int, int>> sizes;
  for (const xcb::ScreenGeometry& screen : geometries) sizes.emplace(screen.pixels.width, screen.pixels.height);
  EXPECT_EQ(sizes, (std::set<std::pair<int, int>>{{480, 800}, {800, 600}}));
  EXPECT_EQ(geometries[0].points.origin, Point{});
  for (const xcb::ScreenGeometry& screen : geometries)
    EXPECT_EQ(xcb::toPixels(screen.points, geometries), screen.pixels);
}

TEST(DisplayIdentifiers, EveryNameHasAStableNonZeroNumber) {
  const std::array<std::string, 4> names{"DP-1", "HDMI-1", "", "DP-1"};
  const auto identifiers = displayIdentifiers(names);
  EXPECT_EQ(std::set(identifiers.begin(), identifiers.end()).size(), names.size());
  EXPECT_FALSE(std::set(identifiers.begin(), identifiers.end()).contains(0));
  EXPECT_EQ(displayIdentifiers(std::array<std::string, 1>{"HDMI-1"}).front(), identifiers[1]);
}
