// Overlays that come and go while the cover is on.

#include "Tests/EndToEnd/CoveredDesktop.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;

class OverlaySet : public CoveredDesktop {
 protected:
  // The refresh looks every 1.5 seconds; the rest is for the restart, on a machine that is busy with other tests.
  static constexpr milliseconds refreshAndRestart{1500 + 1500};
};

TEST_F(OverlaySet, AnOverlayThatOpensLeavesThePictureAfterTheNextRefresh) {
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
  EXPECT_EQ(ink(client_.screenshot(), area), 0U);
  EXPECT_FALSE(shows([](const Picture& screen) { return ink(screen, area) > 0; }, milliseconds(500)));
  EXPECT_EQ(quillfade.countMessages(overlaysChanged), 0U);
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
