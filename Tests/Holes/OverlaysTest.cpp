// Ink programs that come, go and change while the cover is on.

#include <xcb/composite.h>

#include "Tests/Holes/HolesDesktop.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;

class HolesOverlays : public HolesDesktop {
 protected:
  support::CompositingManager compositor_{server_.display()};
  const Picture clean_ = client_.screenshot();

  [[nodiscard]] bool showsClean() {
    return shows([&](const Picture& screen) { return screen.differences(clean_, area) == 0; });
  }
};

TEST_F(HolesOverlays, AnInkProgramThatStartsMeanwhileIsNeverSeenInTheArea) {
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(showsClean());
  for (std::size_t times = 1; times <= 5; ++times) {
    const auto pane = client_.createWindow({.frame = wholeScreen, .color = 0xffff00ff, .depth = 32, .mapped = false});
    client_.setInputShape(pane, {});
    client_.sync();
    // Every program has something to do between making its window and showing it.
    ASSERT_TRUE(support::waitUntil([&] { return shape(pane).has_value(); }));
    client_.map(pane);
    client_.sync();
    EXPECT_FALSE(shows([](const Picture& screen) { return ink(screen, area) > 0; }, milliseconds(100)));
    EXPECT_TRUE(shows([](const Picture& screen) { return isFull(screen, {0, 600, 1280, 200}); }));
    EXPECT_TRUE(quillfade.waitForMessage(overlaysChanged, 2 * times - 1));
    client_.destroy(pane);
    client_.sync();
    EXPECT_TRUE(quillfade.waitForMessage(overlaysChanged, 2 * times));
  }
  EXPECT_TRUE(showsClean());
}

TEST_F(HolesOverlays, InkThatIsKilledAndStartedAgainIsTakenAwayAgain) {
  drawInk();
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(showsNoInk(area));
  gromit_.reset();
  ASSERT_TRUE(quillfade.waitForMessage(overlaysChanged));
  drawInk();
  EXPECT_TRUE(showsNoInk(area));
  EXPECT_GT(ink(client_.screenshot(), wholeScreen), 1000U);
}

TEST_F(HolesOverlays, InkThatIsHiddenAndShownStaysOutOfTheArea) {
  const auto pane = makePane();
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(showsClean());
  for (std::size_t times = 1; times <= 3; ++times) {
    client_.unmap(pane);
    client_.sync();
    ASSERT_TRUE(quillfade.waitForMessage(overlaysChanged, 2 * times - 1));
    client_.map(pane);
    client_.sync();
    EXPECT_FALSE(shows([](const Picture& screen) { return ink(screen, area) > 0; }, milliseconds(100)));
    ASSERT_TRUE(quillfade.waitForMessage(overlaysChanged, 2 * times));
  }
  quillfade.process().terminate();
  EXPECT_TRUE(shows([](const Picture& screen) { return isFull(screen, wholeScreen); }));
  EXPECT_TRUE(isGivenBack(pane));
}

TEST_F(HolesOverlays, AnOrdinaryWindowIsNeverTouched) {
  cover(inWaylandSession());
  ASSERT_TRUE(showsClean());
  const auto window = client_.createWindow({.frame = wholeScreen, .color = 0xff336699, .overrideRedirect = false});
  client_.sync();
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(0x336699) == std::size_t{1280} * 800; }));
  EXPECT_FALSE(shape(window));
}

TEST_F(HolesOverlays, ALockerIsWholeAndAboveEverything) {
  cover(inWaylandSession());
  ASSERT_TRUE(showsClean());
  const auto locker = client_.createWindow({.frame = wholeScreen, .color = 0xff336699, .depth = 32, .mapped = false});
  client_.setClass(locker, "xsecurelock", "xsecurelock");
  client_.map(locker);
  client_.sync();
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(0x336699) == std::size_t{1280} * 800; }));
  EXPECT_TRUE(isGivenBack(locker));
}

// A compositor may look at the window's pixels only, and not at its shape.
TEST_F(HolesOverlays, NoTextIsLeftWhereTheDesktopIsSeen) {
  cover(inWaylandSession());
  const auto mirror = client_.findTopLevel("Quillfade");
  ASSERT_TRUE(mirror);
  const xcb_pixmap_t pixels = xcb_generate_id(client_.connection());
  xcb_composite_name_window_pixmap(client_.connection(), *mirror, pixels);
  const PixelRect whole{0, 0, area.width, area.height};
  EXPECT_TRUE(support::waitUntil(
      [&] { return client_.contents(pixels, whole).count(0) == platform::linux::holes::sizeOf(whole); }));
}

}  // namespace
}  // namespace endtoend
