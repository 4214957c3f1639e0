// Overlays that come and go while the cover is on.

#include "Tests/EndToEnd/CoveredDesktop.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;

class OverlaySet : public CoveredDesktop {
 protected:
  // The refresh runs every 1.5 seconds; the rest is for the restart, on a machine busy with other tests.
  static constexpr milliseconds refreshAndRestart{1500 + 1500};
};

TEST_F(OverlaySet, AnOverlayThatOpensLeavesThePicture) {
  auto& quillfade = cover();
  drawInk();
  EXPECT_TRUE(showsNoInk(area, refreshAndRestart));
  EXPECT_TRUE(quillfade.waitForMessage(overlaysChanged));
  EXPECT_GT(ink(client_.screenshot(), wholeScreen), 1000U);
}

TEST_F(OverlaySet, AnOverlayThatClosesRestartsTheCaptureOnce) {
  drawInk();
  auto& quillfade = cover();
  ASSERT_EQ(quillfade.countMessages(overlaysChanged), 0U);
  gromit_.reset();
  ASSERT_TRUE(quillfade.waitForMessage(overlaysChanged));
  EXPECT_TRUE(quillfade.waitForMessage("stream started, excluding 1 window(s)"));
  EXPECT_FALSE(support::waitUntil([&] { return quillfade.countMessages(overlaysChanged) > 1; }, refreshAndRestart));
}

TEST_F(OverlaySet, NewInkInAnOverlayThatIsLeftOutAlreadyNeverShows) {
  drawInk();
  auto& quillfade = cover();
  gromit_->draw({{250, 300, 740, 310}});
  // Whenever painting is turned on or off, the program raises its window, and the cover returns to the top in a moment.
  EXPECT_TRUE(showsNoInk(area, milliseconds(300)));
  EXPECT_FALSE(shows([](const Picture& screen) { return ink(screen, area) > 0; }, milliseconds(500)));
  EXPECT_EQ(quillfade.countMessages(overlaysChanged), 0U);
}

TEST_F(OverlaySet, AnOverlayIsNeverInThePictureNotEvenWhenItOpens) {
  const Picture before = client_.screenshot(area);
  auto& quillfade = cover({.demonstration = false, .settings = settingsWithRegion(area)});
  ASSERT_TRUE(shows([&](const Picture& screen) { return screen.cropped(area) == before; }));
  const auto mirror = client_.findTopLevel("Quillfade");
  ASSERT_TRUE(mirror.has_value());
  for (std::size_t times = 1; times <= 5; ++times) {
    const auto overlay =
        client_.createWindow({.frame = wholeScreen, .color = 0xffff00ff, .depth = 32, .mapped = false});
    client_.setInputShape(overlay, {});
    // Beneath the mirror from the start, so that everything seen in the area is the mirror's picture.
    client_.restack(overlay, XCB_STACK_MODE_BELOW, *mirror);
    client_.map(overlay);
    client_.sync();
    EXPECT_FALSE(shows([&](const Picture& screen) { return screen.cropped(area) != before; }, milliseconds(100)));
    EXPECT_TRUE(quillfade.waitForMessage(overlaysChanged, 2 * times - 1));
    client_.destroy(overlay);
    client_.sync();
    EXPECT_TRUE(quillfade.waitForMessage(overlaysChanged, 2 * times));
  }
  EXPECT_EQ(client_.screenshot(area), before);
}

TEST_F(OverlaySet, AnOverlayThatBlinksIsNeverSeenAndRestartsTheCaptureAFewTimesASecondAtMost) {
  const Picture before = client_.screenshot(area);
  auto& quillfade = cover({.demonstration = false, .settings = settingsWithRegion(area)});
  ASSERT_TRUE(shows([&](const Picture& screen) { return screen.cropped(area) == before; }));
  const auto mirror = client_.findTopLevel("Quillfade");
  ASSERT_TRUE(mirror.has_value());
  const auto overlay = client_.createWindow({.frame = wholeScreen, .color = 0xffff00ff, .depth = 32, .mapped = false});
  client_.setInputShape(overlay, {});
  client_.restack(overlay, XCB_STACK_MODE_BELOW, *mirror);
  const auto begin = std::chrono::steady_clock::now();
  int blinks = 0;
  while (std::chrono::steady_clock::now() - begin < std::chrono::seconds(5)) {
    client_.map(overlay);
    client_.sync();
    ASSERT_FALSE(shows([&](const Picture& screen) { return screen.cropped(area) != before; }, milliseconds(30)));
    client_.unmap(overlay);
    client_.sync();
    ASSERT_FALSE(shows([&](const Picture& screen) { return screen.cropped(area) != before; }, milliseconds(30)));
    ++blinks;
  }
  const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - begin;
  // Two a second for announced changes, and at most one for each run of the refresh.
  const double most = lasted.count() * (2 + 1 / 1.5) + 1;
  ASSERT_GT(2 * blinks, most) << "So few blinks would not even bring them if each brought two.";
  const auto restarts = static_cast<double>(quillfade.countMessages(overlaysChanged));
  RecordProperty("restarts", std::to_string(restarts));
  EXPECT_GT(restarts, 0);
  EXPECT_LE(restarts, most) << blinks << " blinks";
}

TEST_F(OverlaySet, AnOverlayThatTakesThePointerToDrawStaysLeftOutUntilItIsUnmapped) {
  const auto hasInk = [](const Picture& screen) { return screen.count(0xff00ff, inside) > 0; };
  auto& quillfade = cover();
  const auto overlay = client_.createWindow({.frame = wholeScreen, .color = 0xffff00ff, .depth = 32, .mapped = false});
  client_.setInputShape(overlay, {});
  client_.map(overlay);
  client_.sync();
  ASSERT_TRUE(quillfade.waitForMessage(overlaysChanged));
  ASSERT_TRUE(shows([&](const Picture& screen) { return !hasInk(screen) && screen.count(0xff00ff) > 100'000; }));
  const xcb_rectangle_t everything{0, 0, 1280, 800};
  client_.setInputShape(overlay, {&everything, 1});
  client_.sync();
  EXPECT_FALSE(shows(hasInk, refreshAndRestart));
  EXPECT_EQ(quillfade.countMessages(overlaysChanged), 1U);
  // Whatever comes then is a different window, and may be a locker.
  client_.unmap(overlay);
  client_.sync();
  ASSERT_TRUE(quillfade.waitForMessage(overlaysChanged, 2));
  client_.map(overlay);
  client_.sync();
  EXPECT_TRUE(shows(hasInk));
}

TEST_F(OverlaySet, AnOverlayIsLeftOutLongBeforeTheNextRefresh) {
  auto& quillfade = cover();
  const auto begin = std::chrono::steady_clock::now();
  for (std::size_t times = 1; times <= 10; ++times) {
    const auto overlay =
        client_.createWindow({.frame = wholeScreen, .color = 0xffff00ff, .depth = 32, .mapped = false});
    client_.setInputShape(overlay, {});
    client_.map(overlay);
    client_.sync();
    EXPECT_TRUE(quillfade.waitForMessage(overlaysChanged, 2 * times - 1));
    client_.destroy(overlay);
    client_.sync();
    EXPECT_TRUE(quillfade.waitForMessage(overlaysChanged, 2 * times));
  }
  // The refresh alone would take half a minute for twenty changes.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, milliseconds(15'000));
}

TEST_F(OverlaySet, ALargeOrdinaryWindowThatOpensBeneathIsShownAtOnce) {
  cover();
  client_.createWindow({.frame = wholeScreen, .color = 0xff336699, .overrideRedirect = false});
  client_.sync();
  EXPECT_TRUE(
      shows([](const Picture& screen) { return screen.count(0x336699, inside) > 100'000; }, milliseconds(1000)));
}

TEST_F(OverlaySet, OrdinaryWindowsThatOpenMoveAndCloseDoNotRestartTheCapture) {
  auto& quillfade = cover();
  const auto window =
      client_.createWindow({.frame = {300, 300, 600, 400}, .color = 0xff336699, .overrideRedirect = false});
  for (int step = 0; step < 50; ++step) client_.move(window, 300 - step, 300 - step);
  client_.sync();
  EXPECT_FALSE(support::waitUntil([&] { return quillfade.countMessages(overlaysChanged) > 0; }, refreshAndRestart));
  client_.destroy(window);
  client_.sync();
  EXPECT_FALSE(support::waitUntil([&] { return quillfade.countMessages(overlaysChanged) > 0; }, refreshAndRestart));
}

}  // namespace
}  // namespace endtoend
