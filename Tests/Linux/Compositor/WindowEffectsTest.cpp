// Windows that a compositing manager shows differently from their pixels: pixels read back from a real X server.
#include "Platform/Linux/Compositor/WindowEffects.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "Platform/Linux/Scene/Redirection.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::compositor {
namespace {

constexpr xcb::PixelRect fullScreen{0, 0, 400, 300};
constexpr std::uint32_t beneath = 0x808080;
constexpr std::uint32_t half = 0x80000000;

class WindowEffectsTest : public ::testing::Test {
 protected:
  WindowEffectsTest() {
    scene::redirectSubwindows(*keeper);
    EXPECT_TRUE(keeper->synchronize(10'000));
    client.createWindow({.frame = fullScreen, .color = beneath});
    client.sync();
  }

  // Does all it takes to count as a compositing manager.
  void claimToComposite() {
    const auto window = manager.createWindow({.mapped = false});
    xcb_set_selection_owner(manager.connection(), window, manager.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    manager.sync();
  }

  // A window manager's frame with a client's window inside: ten pixels of edges, of which four are visible.
  void makeFrame(std::uint8_t depth = 32) {
    frame = manager.createWindow({.frame = {50, 40, 120, 100}, .color = 0xff000000, .depth = depth});
    inner =
        client.createWindow({.frame = {0, 0, 100, 80}, .color = 0xff00aa00, .depth = 32, .overrideRedirect = false});
    client.setNumbers(inner, "_NET_FRAME_EXTENTS", "CARDINAL", {4, 4, 4, 4});
    client.sync();
    xcb_reparent_window(manager.connection(), inner, frame, 10, 10);
    manager.sync();
    client.map(inner);
    client.sync();
  }

  std::uint32_t pixel(int x, int y) {
    composition->update();
    return composition->picture().at(x, y);
  }

  static bool isNear(std::uint32_t a, std::uint32_t b) {
    const auto difference = [&](unsigned shift) {
      return std::abs(static_cast<int>((a >> shift) & 0xffU) - static_cast<int>((b >> shift) & 0xffU));
    };
    return difference(0) <= 2 && difference(8) <= 2 && difference(16) <= 2;
  }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  support::XClient manager{server.display()};
  // Stands in for the process's main connection, which lives as long as the process.
  std::unique_ptr<xcb::Connection> keeper = connectTo(server.display());
  std::optional<Composition> composition;
  xcb_window_t frame = XCB_NONE;
  xcb_window_t inner = XCB_NONE;
};

TEST_F(WindowEffectsTest, InvisibleEdgesOfAFrameAreNotPainted) {
  claimToComposite();
  makeFrame();
  composition.emplace(server.display(), fullScreen);
  EXPECT_EQ(pixel(55, 45), beneath) << "the edge that is there for the pointer only";
  EXPECT_EQ(pixel(55, 90), beneath);
  EXPECT_EQ(pixel(57, 47), 0x000000U) << "the edge that is to be seen";
  EXPECT_EQ(pixel(163, 133), 0x000000U);
  EXPECT_EQ(pixel(164, 90), beneath);
  EXPECT_EQ(pixel(60, 50), 0x00aa00U);
  EXPECT_EQ(composition->picture().count(0x00aa00), std::size_t{100} * 80);
}

TEST_F(WindowEffectsTest, DrawingOnInvisibleEdgesIsNotPainted) {
  claimToComposite();
  makeFrame(24);
  composition.emplace(server.display(), fullScreen);
  composition->needNotTell();
  ASSERT_EQ(pixel(55, 45), beneath);
  manager.fill(frame, {0, 0, 120, 100}, 0xffffff);
  manager.sync();
  EXPECT_EQ(pixel(57, 47), 0xffffffU);
  EXPECT_EQ(pixel(55, 45), beneath);
}

TEST_F(WindowEffectsTest, TheVisiblePartFollowsTheExtentsAndTheWindowInside) {
  claimToComposite();
  makeFrame();
  composition.emplace(server.display(), fullScreen);
  ASSERT_EQ(pixel(55, 45), beneath);
  client.setNumbers(inner, "_NET_FRAME_EXTENTS", "CARDINAL", {10, 10, 10, 10});
  client.sync();
  EXPECT_EQ(pixel(55, 45), 0x000000U);
  client.setNumbers(inner, "_NET_FRAME_EXTENTS", "CARDINAL", {0, 0, 0, 0});
  client.sync();
  EXPECT_EQ(pixel(57, 47), beneath);
  client.setFrame(inner, {10, 10, 60, 50});
  client.sync();
  EXPECT_EQ(pixel(50 + 10 + 59, 40 + 10 + 49), 0x00aa00U);
  EXPECT_EQ(pixel(50 + 10 + 60, 40 + 10 + 49), beneath);
}

TEST_F(WindowEffectsTest, WithoutACompositingManagerFramesArePaintedAsTheyAre) {
  makeFrame();
  composition.emplace(server.display(), fullScreen);
  EXPECT_EQ(pixel(55, 45), 0x000000U);
  claimToComposite();
  EXPECT_EQ(pixel(55, 45), beneath) << "a compositing manager came";
  xcb_set_selection_owner(manager.connection(), XCB_NONE, manager.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
  manager.sync();
  EXPECT_EQ(pixel(55, 45), 0x000000U) << "it went";
}

TEST_F(WindowEffectsTest, OpacityIsHonouredOnTheTopLevelOrOnTheWindowInside) {
  claimToComposite();
  const auto plain = client.createWindow({.frame = {200, 40, 50, 50}, .color = 0xffffff});
  makeFrame();
  composition.emplace(server.display(), fullScreen);
  ASSERT_EQ(pixel(210, 50), 0xffffffU);
  client.setNumbers(plain, "_NET_WM_WINDOW_OPACITY", "CARDINAL", {half});
  client.setNumbers(inner, "_NET_WM_WINDOW_OPACITY", "CARDINAL", {half});
  client.sync();
  EXPECT_TRUE(isNear(pixel(210, 50), 0xc0c0c0)) << std::hex << pixel(210, 50);
  EXPECT_TRUE(isNear(pixel(100, 90), 0x409540)) << std::hex << pixel(100, 90);
  manager.setNumbers(frame, "_NET_WM_WINDOW_OPACITY", "CARDINAL", {0});
  manager.sync();
  EXPECT_EQ(pixel(100, 90), beneath) << "what the frame says goes first";
  xcb_delete_property(client.connection(), plain, client.atom("_NET_WM_WINDOW_OPACITY"));
  client.sync();
  EXPECT_EQ(pixel(210, 50), 0xffffffU);
}

TEST_F(WindowEffectsTest, OpacityOutlivesTheCompositingManagerThatHonouredItFirst) {
  claimToComposite();
  const auto plain = client.createWindow({.frame = {200, 40, 50, 50}, .color = 0xffffff});
  client.setNumbers(plain, "_NET_WM_WINDOW_OPACITY", "CARDINAL", {half});
  client.sync();
  composition.emplace(server.display(), fullScreen);
  const std::uint32_t blended = pixel(210, 50);
  ASSERT_NE(blended, 0xffffffU);
  claimToComposite();
  EXPECT_EQ(pixel(210, 50), blended) << "another one took over";
}

TEST_F(WindowEffectsTest, WhatLiesBeneathATranslucentWindowIsStillFollowed) {
  claimToComposite();
  const auto bottom = client.createWindow({.frame = {0, 0, 400, 300}, .color = 0x000000});
  const auto pane = client.createWindow({.frame = {0, 0, 400, 300}, .color = 0xffffff});
  client.setNumbers(pane, "_NET_WM_WINDOW_OPACITY", "CARDINAL", {half});
  client.sync();
  composition.emplace(server.display(), fullScreen);
  ASSERT_TRUE(isNear(pixel(50, 50), 0x808080));
  client.fill(bottom, {40, 40, 20, 20}, 0xff0000);
  client.sync();
  EXPECT_TRUE(isNear(pixel(50, 50), 0xff8080)) << std::hex << pixel(50, 50);
}

TEST_F(WindowEffectsTest, OpacityLooksAsUnderARealCompositingManager) {
  const support::CompositingManager picom(server.display());
  constexpr std::uint32_t color = 0xff60f0;
  const auto window = client.createWindow({.frame = {100, 50, 100, 100}, .color = color});
  composition.emplace(server.display(), fullScreen);
  std::uint32_t before = color;
  for (const std::uint32_t opacity : {0xccccccccU, 0xbfffffffU, half, 0x4cccccccU}) {
    client.setNumbers(window, "_NET_WM_WINDOW_OPACITY", "CARDINAL", {opacity});
    client.sync();
    EXPECT_TRUE(support::waitUntil([&] {
      const auto shown = client.screenshot(fullScreen).at(150, 100);
      return shown != before && shown != beneath && shown == pixel(150, 100);
    })) << std::hex
        << opacity << ": " << pixel(150, 100) << " instead of " << client.screenshot(fullScreen).at(150, 100);
    before = client.screenshot(fullScreen).at(150, 100);
  }
}

TEST_F(WindowEffectsTest, WindowsThatGoDuringTheQueriesDoNoHarm) {
  claimToComposite();
  composition.emplace(server.display(), fullScreen);
  for (int round = 0; round < 50; ++round) {
    makeFrame();
    composition->update(round % 7);
    client.setNumbers(inner, "_NET_WM_WINDOW_OPACITY", "CARDINAL", {half});
    client.destroy(inner);
    manager.destroy(frame);
    client.sync();
    manager.sync();
  }
  EXPECT_EQ(pixel(100, 90), beneath);
}

}  // namespace
}  // namespace platform::linux::compositor
