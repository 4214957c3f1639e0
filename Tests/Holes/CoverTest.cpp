// The live cover where nothing can be copied: what lies beneath is seen as it is, since the ink is taken away.

#include "Tests/Holes/HolesDesktop.h"
#include "Tests/Support/ProcessState.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;

// With a compositing manager and without.
class HolesCover : public HolesDesktop, public testing::WithParamInterface<bool> {
 protected:
  HolesCover() {
    if (GetParam()) compositor_.emplace(server_.display());
  }

  std::optional<support::CompositingManager> compositor_;
};

TEST_P(HolesCover, InkInsideIsGoneAndEveryOtherPixelOfTheScreenStays) {
  const Picture clean = client_.screenshot();
  drawInk();
  const Picture inked = client_.screenshot();
  ASSERT_GT(ink(inked, area), 1000U);
  auto& quillfade = cover(inWaylandSession());
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }));
  const Picture covered = client_.screenshot();
  keepPicture(covered, "holes");
  EXPECT_EQ(covered.differences(inked) - covered.differences(inked, area), 0U);
  EXPECT_EQ(quillfade.countMessages("show region=520x340 at 240,240 permission=true"), 1U);
  EXPECT_TRUE(quillfade.waitForMessage("stream started, excluding 2 window(s)"));
}

TEST_P(HolesCover, AllTheInkIsThereAgainWhenTheProgramEnds) {
  drawInk();
  const Picture inked = client_.screenshot();
  const auto own = shape(gromit_->window());
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(showsNoInk(area));
  quillfade.process().terminate();
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen == inked; }));
  EXPECT_TRUE(isGivenBack(gromit_->window(), own));
}

TEST_P(HolesCover, InkThatIsDrawnMeanwhileIsSeenOutsideOnlyAndEverywhereAfterwards) {
  drawInk();
  if (areStrokesLostInInk()) GTEST_SKIP() << "This gromit-mpx fills its whole window with ink.";
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(showsNoInk(area));
  const PixelRect left{100, 380, 130, 40};
  const PixelRect middle{400, 380, 130, 40};
  const std::size_t before = ink(client_.screenshot(), left);
  gromit_->draw({{110, 400, 900, 400}});
  EXPECT_TRUE(shows([&](const Picture& screen) { return ink(screen, left) > before + 500; }));
  EXPECT_TRUE(showsNoInk(area));
  EXPECT_FALSE(shows([](const Picture& screen) { return ink(screen, area) > 0; }, milliseconds(500)));
  quillfade.process().terminate();
  EXPECT_TRUE(shows([&](const Picture& screen) { return ink(screen, middle) > 500; }));
}

TEST_P(HolesCover, ContentThatChangesBeneathShowsAtOnceAndClicksReachIt) {
  const auto window = client_.createWindow({.frame = {400, 300, 150, 100}, .color = 0xff336699});
  client_.selectInput(window, XCB_EVENT_MASK_BUTTON_PRESS);
  drawInk();
  cover(inWaylandSession());
  for (const std::uint32_t color : {0x00ff00U, 0x0000ffU, 0x808080U}) {
    client_.setBackground(window, 0xff000000 | color);
    client_.sync();
    EXPECT_TRUE(shows([&](const Picture& screen) { return screen.count(color, area) == 150 * 100; }));
  }
  input_.click(470, 350);
  EXPECT_TRUE(client_.waitForEvent(XCB_BUTTON_PRESS, support::defaultDeadline));
}

TEST_P(HolesCover, TheOutlineIsALineOfOnePixelAlongTheEdges) {
  const Picture clean = client_.screenshot();
  drawInk();
  cover(inWaylandSession(area, true));
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, inside) == 0; }));
  const auto mirror = client_.findTopLevel("Quillfade");
  ASSERT_TRUE(mirror);
  const auto line = shape(*mirror);
  ASSERT_TRUE(line);
  std::size_t pixels = 0;
  for (const auto& rect : *line) pixels += platform::linux::holes::sizeOf(rect);
  EXPECT_EQ(pixels, 2U * (520 + 338));
  EXPECT_EQ(client_.screenshot().differences(clean, area), 2U * (520 + 338));
}

TEST_P(HolesCover, TwoHundredTimesOffAndOnLeaveTheInkAsItWas) {
  drawInk();
  const Picture inked = client_.screenshot();
  const auto own = shape(gromit_->window());
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(showsNoInk(area));
  for (int times = 0; times < 100; ++times) {
    pressToggle();
    ASSERT_TRUE(shows([&](const Picture& screen) { return ink(screen, area) == ink(inked, area); })) << times;
    pressToggle();
    ASSERT_TRUE(showsNoInk(area)) << times;
  }
  quillfade.process().terminate();
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen == inked; }));
  EXPECT_TRUE(isGivenBack(gromit_->window(), own));
}

TEST_P(HolesCover, AnAreaOverTwoScreensIsFreeOfInkOnBoth) {
  const Picture clean = client_.screenshot();
  splitIntoTwoScreens();
  const auto pane = makePane();
  auto& quillfade = cover(inWaylandSession());
  EXPECT_TRUE(quillfade.waitForMessage(firstFrame, 2));
  EXPECT_TRUE(shows([&](const Picture& screen) {
    return screen.differences(clean, area) == 0 && isFull(screen, {0, 0, 1280, area.y}) &&
           isFull(screen, {area.right(), 0, 1280 - area.right(), 800});
  }));
  quillfade.process().terminate();
  EXPECT_TRUE(shows([&](const Picture& screen) { return isFull(screen, wholeScreen); }));
  EXPECT_TRUE(isGivenBack(pane));
}

TEST_P(HolesCover, APeekShowsTheInkForAsLongAsItLasts) {
  const Picture clean = client_.screenshot();
  makePane();
  cover(inWaylandSession());
  ASSERT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }));
  press("peek");
  EXPECT_TRUE(shows([](const Picture& screen) { return isFull(screen, area); }));
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }));
}

TEST_P(HolesCover, AnUnchangingDesktopNeitherRestartsTheCaptureNorWakesTheProgram) {
  drawInk();
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(quillfade.waitForMessage("stream started, excluding 2 window(s)"));
  ASSERT_TRUE(showsNoInk(area));
  const std::size_t lines = quillfade.messages().size();
  const std::size_t before = support::wakeUps(quillfade.process().id());
  EXPECT_FALSE(support::waitUntil([&] { return quillfade.messages().size() != lines; }, std::chrono::seconds(4)));
  EXPECT_LT(support::wakeUps(quillfade.process().id()) - before, 120U);
}

INSTANTIATE_TEST_SUITE_P(, HolesCover, testing::Bool(),
                         [](const auto& each) { return std::string(each.param ? "Composited" : "Plain"); });

}  // namespace
}  // namespace endtoend
