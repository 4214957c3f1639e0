#include "Tests/Linux/Compositor/CompositorFixture.h"

namespace platform::linux::compositor {
namespace {

TEST_F(CompositorTest, PaintsWhatTheScreenShows) {
  fillTheScreen();
  Composition composition(server.display(), wholeScreen);
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, PaintsAPartOfTheScreen) {
  fillTheScreen();
  constexpr xcb::PixelRect part{83, 41, 171, 133};
  Composition composition(server.display(), part);
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(part)), 0U);
}

TEST_F(CompositorTest, PaintsTheBackgroundOfTheRootWindowEvenIfItsPropertyIsStale) {
  const xcb_pixmap_t stale = xcb_generate_id(client.connection());
  xcb_create_pixmap(client.connection(), 24, stale, client.root(), 10, 10);
  client.setNumbers(client.root(), "_XROOTPMAP_ID", "PIXMAP", {stale});
  client.sync();
  Composition composition(server.display(), {31, 17, 100, 90});
  composition.update();
  EXPECT_EQ(composition.picture().differences(client.screenshot({31, 17, 100, 90})), 0U);
  EXPECT_EQ(composition.picture().at(0, 0), client.screenshot({31, 17, 1, 1}).at(0, 0));
}

TEST_F(CompositorTest, ANewWallpaperIsPaintedWhenItIsAnnounced) {
  fillTheScreen();
  Composition composition(server.display(), wholeScreen);
  composition.update();
  client.setBackgroundChecks(client.root(), 9, 0x998877, 0x112233);
  client.setNumbers(client.root(), "_XROOTPMAP_ID", "PIXMAP", {0});
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, LeavesNoTraceOfTheWindowThatShowsTheWallpaper) {
  const auto before = client.children(client.root());
  Composition composition(server.display(), wholeScreen);
  composition.update();
  composition.catchUp();
  EXPECT_EQ(client.children(client.root()), before);
  EXPECT_FALSE(composition.update());
}

TEST_F(CompositorTest, AWindowThatIsLeftOutShowsWhatIsBeneath) {
  fillTheScreen();
  const auto overlay = makeChecks({.frame = {40, 40, 300, 200}}, 0xff00ff, 0xffff00);
  const auto beneath = makeChecks({.frame = {0, 0, 1, 1}}, 0, 0);
  client.raise(overlay);
  client.sync();
  Composition composition(server.display(), wholeScreen, {overlay});
  EXPECT_TRUE(composition.update());
  // What is drawn beneath the window meanwhile counts as well.
  client.setFrame(beneath, {80, 80, 100, 100});
  client.setBackground(beneath, 0x0a0b0c);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(screenWithout({overlay})), 0U);
}

TEST_F(CompositorTest, AWindowThatIsLeftOutMayDrawAndGrowWithoutBeingNoticed) {
  fillTheScreen();
  const auto overlay = makeChecks({.frame = {40, 40, 200, 150}}, 0xff00ff, 0xffff00);
  client.sync();
  Composition composition(server.display(), wholeScreen, {overlay});
  EXPECT_TRUE(composition.update());
  client.setBackground(overlay, 0x00ffff);
  client.setFrame(overlay, {20, 10, 300, 280});
  client.sync();
  EXPECT_FALSE(composition.update());
  // Where it uncovers other windows, the server itself draws them again.
  client.setFrame(overlay, {200, 10, 100, 100});
  client.lower(overlay);
  client.raise(overlay);
  client.sync();
  composition.update();
  EXPECT_EQ(composition.picture().differences(screenWithout({overlay})), 0U);
}

TEST_F(CompositorTest, AnotherWindowWithTheIdOfOneThatWasLeftOutIsPainted) {
  const auto overlay = client.createWindow({.frame = {40, 40, 300, 200}});
  client.sync();
  Composition composition(server.display(), wholeScreen, {overlay});
  composition.update();
  client.destroy(overlay);
  const std::array<std::uint32_t, 2> values{0x00aa00, 1};
  xcb_create_window(client.connection(), XCB_COPY_FROM_PARENT, overlay, client.root(), 50, 60, 70, 80, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT,
                    values.data());
  client.map(overlay);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
  EXPECT_EQ(composition.picture().at(60, 70), 0x00aa00U);
}

TEST_F(CompositorTest, WindowsOfOurOwnClientsAreNeverPainted) {
  fillTheScreen();
  support::XClient own(server.display());
  const std::uint32_t base = xcb_get_setup(own.connection())->resource_id_base;
  const auto before = own.createWindow({.frame = {0, 0, 150, 150}, .color = 0xff00ff});
  own.sync();
  Composition composition(server.display(), wholeScreen, {}, {base});
  composition.update();
  const auto after = own.createWindow({.frame = {100, 100, 250, 150}, .color = 0xff00ff});
  own.fill(after, {10, 10, 20, 20}, 0xffffff);
  own.sync();
  EXPECT_FALSE(composition.update());
  own.unmap(before);
  own.unmap(after);
  own.sync();
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, PaintsOnlyWhatWasDrawn) {
  const auto window = client.createWindow({.frame = {100, 50, 200, 200}, .border = 5});
  client.sync();
  Composition composition(server.display(), {10, 20, 390, 280});
  composition.update();
  client.fill(window, {30, 40, 2, 12}, 0xabcdef);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_THAT(composition.painted(), ElementsAre(xcb::PixelRect{100 + 5 + 30 - 10, 50 + 5 + 40 - 20, 2, 12}));
}

TEST_F(CompositorTest, DrawingInAnUncoveredWindowTakesThreeRequests) {
  const auto window = client.createWindow({.frame = {100, 50, 200, 200}, .border = 5});
  client.createWindow({.frame = {320, 50, 50, 50}});
  client.sync();
  Composition composition(server.display(), {10, 20, 390, 280});
  composition.needNotTell();
  const auto requestsOfUpdate = [&] {
    const std::uint32_t before = xcb_no_operation(composition.connection().get()).sequence;
    composition.update();
    return xcb_no_operation(composition.connection().get()).sequence - before;
  };
  while (composition.update()) {
  }
  const std::uint32_t whenNothingChanged = requestsOfUpdate();
  client.fill(window, {30, 40, 2, 12}, 0xabcdef);
  client.sync();
  EXPECT_EQ(requestsOfUpdate() - whenNothingChanged, 3U);
  EXPECT_EQ(composition.picture().differences(client.screenshot({10, 20, 390, 280})), 0U);
}

TEST_F(CompositorTest, WhatIsDrawnBeneathAnotherWindowDoesNotShowThere) {
  const auto window = client.createWindow({.frame = {100, 50, 200, 200}, .border = 5});
  client.createWindow({.frame = {150, 100, 200, 50}, .color = 0x223344});
  client.sync();
  Composition composition(server.display(), wholeScreen);
  composition.needNotTell();
  while (composition.update()) {
  }
  client.fill(window, {0, 0, 200, 200}, 0xabcdef);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, NothingIsPaintedWhileNothingChanges) {
  fillTheScreen();
  Composition composition(server.display(), wholeScreen);
  EXPECT_TRUE(composition.update());
  EXPECT_FALSE(composition.update());
}

TEST_F(CompositorTest, DrawingOutsideTheSourceIsNoChange) {
  const auto window = client.createWindow({.frame = {100, 100, 200, 100}});
  client.createWindow({.frame = {300, 0, 50, 50}});
  client.sync();
  Composition composition(server.display(), {0, 0, 150, 300});
  composition.update();
  client.fill(window, {50, 0, 100, 100}, 0xff0000);
  client.sync();
  EXPECT_FALSE(composition.update());
  client.fill(window, {49, 0, 100, 100}, 0x00ff00);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_THAT(composition.painted(), ElementsAre(xcb::PixelRect{149, 100, 1, 100}));
  EXPECT_EQ(composition.picture().differences(client.screenshot({0, 0, 150, 300})), 0U);
}

TEST_F(CompositorTest, DrawingBeneathAnOpaqueWindowIsNoChangeButIsNotForgotten) {
  const auto hidden = client.createWindow({.frame = {100, 100, 50, 50}});
  const auto cover = client.createWindow({.frame = {90, 90, 100, 100}, .color = 0x333333});
  client.sync();
  Composition composition(server.display(), wholeScreen);
  composition.update();
  client.fill(hidden, {0, 0, 50, 50}, 0xff0000);
  client.sync();
  EXPECT_FALSE(composition.update());
  client.move(cover, 120, 90);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
  client.fill(hidden, {0, 0, 50, 50}, 0x00ff00);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, AfterEachOfManyRandomChangesTheScreenIsReproduced) {
  Composition composition(server.display(), wholeScreen);
  Composition other(server.display(), wholeScreen);
  other.needNotTell();
  scene::WindowStorm storm(client, 4711);
  for (int change = 0; change < 700; ++change) {
    storm.change();
    client.sync();
    composition.update();
    other.update();
    const Picture screen = client.screenshot(wholeScreen);
    ASSERT_EQ(composition.picture().differences(screen), 0U) << "after change " << change;
    ASSERT_EQ(other.picture().differences(screen), 0U) << "after change " << change;
  }
}

TEST_F(CompositorTest, PaintingTheDamageGivesTheSameAsPaintingEverything) {
  const support::CompositingManager manager(server.display());
  const auto overlay = client.createWindow({.frame = {50, 50, 200, 150}, .color = 0xff00ff});
  client.sync();
  constexpr xcb::PixelRect part{20, 30, 300, 200};
  Composition composition(server.display(), part, {overlay});
  composition.needNotTell();
  scene::WindowStorm storm(client, 815);
  for (int change = 0; change < 600; ++change) {
    storm.change();
    client.sync();
    composition.update();
    if (change % 6 != 0) continue;
    Composition anew(server.display(), part, {overlay});
    anew.update();
    ASSERT_EQ(composition.picture().differences(anew.picture()), 0U) << "after change " << change;
  }
}

TEST_F(CompositorTest, ChangesDuringPaintingAreCaughtUpWith) {
  for (unsigned round = 0; round < 6; ++round) {
    Composition composition(server.display(), wholeScreen);
    if (round % 2 == 0) composition.needNotTell();
    std::atomic<bool> isEnough = false;
    std::thread other([&] {
      scene::WindowStorm storm(client, 99 + round);
      while (!isEnough) {
        storm.change();
        xcb_flush(client.connection());
      }
      client.sync();
    });
    for (int frame = 0; frame < 60; ++frame) composition.update(500);
    isEnough = true;
    other.join();
    composition.update();
    ASSERT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U) << "round " << round;
  }
}

}  // namespace
}  // namespace platform::linux::compositor
