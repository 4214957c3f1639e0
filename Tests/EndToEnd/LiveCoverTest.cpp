// The live cover: what lies beneath is seen, exactly and as it is now, without the overlays.

#include "Tests/EndToEnd/CoveredDesktop.h"
#include "Tests/Support/ProcessState.h"

namespace endtoend {
namespace {

using LiveCover = CoveredDesktop;

TEST_F(LiveCover, InkInsideIsGoneAndEveryOtherPixelOfTheScreenStays) {
  const Picture clean = client_.screenshot();
  drawInk();
  const Picture inked = client_.screenshot();
  ASSERT_GT(ink(inked, area), 1000U);

  cover({.demonstration = false, .settings = settingsWithRegion(area)});
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }));
  Picture covered = client_.screenshot();
  EXPECT_EQ(covered.differences(inked) - covered.differences(inked, area), 0U);
}

TEST_F(LiveCover, ContentThatChangesBeneathShowsAtOnce) {
  const auto window = client_.createWindow(
      {.frame = {400, 300, 150, 100}, .color = 0xff336699, .border = 3, .borderColor = 0xff993300});
  const std::size_t contentPixels = std::size_t{150} * 100;
  const std::size_t borderPixels = std::size_t{156} * 106 - contentPixels;
  drawInk();
  cover();
  for (const std::uint32_t color : {0x00ff00U, 0x0000ffU, 0x808080U}) {
    client_.setBackground(window, 0xff000000 | color);
    client_.sync();
    EXPECT_TRUE(shows([&](const Picture& screen) {
      return screen.count(color, area) == contentPixels && screen.count(0x993300, area) == borderPixels;
    }));
  }
}

TEST_F(LiveCover, AWindowThatMovesBeneathIsShownWhereItIs) {
  const Picture without = client_.screenshot();
  const auto window = client_.createWindow({.frame = {300, 260, 80, 60}, .color = 0xff336699});
  cover();
  for (int step = 1; step <= 20; ++step) client_.move(window, 300 + 15 * step, 260 + 10 * step);
  client_.sync();
  EXPECT_TRUE(shows([&](const Picture& screen) {
    return screen.count(0x336699, {600, 460, 80, 60}) == 80 * 60 && screen.count(0x336699) == 80 * 60;
  }));
  client_.destroy(window);
  client_.sync();
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(without, inside) == 0; }));
}

TEST_F(LiveCover, AWindowClosedWhileItIsCapturedLeavesWhatLayBeneathIt) {
  const Picture without = client_.screenshot();
  cover();
  for (int round = 0; round < 20; ++round) {
    const auto window = client_.createWindow({.frame = {280 + round * 5, 250, 200, 200}, .color = 0xff336699});
    client_.fill(window, {10, 10, 50, 50}, 0xff00ffff);
    client_.destroy(window);
  }
  client_.sync();
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(without, inside) == 0; }));
  EXPECT_TRUE(quillfade().process().isRunning());
}

TEST_F(LiveCover, ARegionOverTwoScreensIsCoveredOnBoth) {
  splitIntoTwoScreens();
  const Picture clean = client_.screenshot();
  drawInk();
  auto& quillfade = cover({.demonstration = false, .settings = settingsWithRegion(area)});
  EXPECT_TRUE(quillfade.waitForMessage(firstFrame, 2));
  EXPECT_EQ(quillfade.countMessages("show region=400x340 at 240,240 permission=true"), 1U);
  EXPECT_EQ(quillfade.countMessages("show region=120x340 at 640,240 permission=true"), 1U);
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }));
  EXPECT_GT(ink(client_.screenshot(), wholeScreen), 1000U);
}

TEST_F(LiveCover, AChangeOfTheScreensRebuildsTheCoverOnWhatIsThere) {
  const Picture clean = client_.screenshot();
  drawInk();
  auto& quillfade = cover({.demonstration = false, .settings = settingsWithRegion(area)});
  splitIntoTwoScreens();
  EXPECT_TRUE(quillfade.waitForMessage("show region=120x340 at 640,240 permission=true"));
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }));

  support::runToEnd({"xrandr", "--display", server_.display(), "--delmonitor", "R"});
  support::runToEnd({"xrandr", "--display", server_.display(), "--delmonitor", "L"});
  EXPECT_TRUE(quillfade.waitForMessage("show region=520x340 at 240,240 permission=true", 2));
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }));
  EXPECT_EQ(quillfade.messages().back(), firstFrame);
}

TEST_F(LiveCover, TheOutlineIsALineOfOnePixelAlongTheEdges) {
  const Picture clean = client_.screenshot();
  cover({.demonstration = false, .settings = settingsWithRegion(area, true)});
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, inside) == 0; }));
  const Picture covered = client_.screenshot();
  EXPECT_EQ(covered.differences(clean), 2U * (520 + 338));
  EXPECT_EQ(covered.differences(clean, area), 2U * (520 + 338));
}

TEST_F(LiveCover, AClickReachesTheWindowBeneath) {
  client_.selectInput(board_, XCB_EVENT_MASK_BUTTON_PRESS);
  cover();
  support::Input(server_.display()).click(500, 400);
  EXPECT_TRUE(client_.waitForEvent(XCB_BUTTON_PRESS, support::defaultDeadline));
}

TEST_F(LiveCover, AnUnchangingDesktopNeitherRestartsTheCaptureNorWakesTheProgramForEveryFrame) {
  cover();
  ASSERT_TRUE(quillfade().waitForMessage("stream started, excluding 1 window(s)"));
  const std::size_t lines = quillfade().messages().size();
  const auto changed = [&] { return quillfade().messages().size() != lines; };
  const std::size_t before = support::wakeUps(quillfade().process().id());
  EXPECT_FALSE(support::waitUntil(changed, std::chrono::seconds(4)));
  // One for each frame at thirty a second. In fact frames would take more than 300, and reading the window list takes
  // about 50.
  const std::size_t woken = support::wakeUps(quillfade().process().id()) - before;
  EXPECT_LT(woken, 120U);
  EXPECT_GT(woken, 0U) << "The window list was not read.";
}

TEST_F(LiveCover, AnUnannouncedBackgroundShowsAfterAMoment) {
  cover({.demonstration = false, .settings = settingsWithRegion(wholeScreen)});
  support::runToEnd({"xsetroot", "-display", server_.display(), "-solid", "#123456"});
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.at(10, 10) == 0x123456; }, std::chrono::seconds(4)));
}

TEST_F(LiveCover, AMenuThatOpensOverTheCoverIsSeenInIt) {
  cover();
  const auto menu = client_.createWindow({.frame = {500, 300, 120, 200}, .color = 0xff445566, .mapped = false});
  client_.setAtoms(menu, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_POPUP_MENU"});
  client_.map(menu);
  client_.sync();
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(0x445566) == 120 * 200; }));
}

}  // namespace
}  // namespace endtoend
