// The compositor against a real X server: what it paints must match, pixel by pixel, what the screen shows without the
// windows that are left out.
#pragma once

#include "Platform/Linux/Compositor/Compositor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <optional>
#include <thread>
#include <vector>

#include "Platform/Linux/Scene/Redirection.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Scene/WindowStorm.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::compositor {

using support::Picture;
using ::testing::ElementsAre;

constexpr xcb::PixelRect wholeScreen{0, 0, 400, 300};

class CompositorTest : public ::testing::Test {
 protected:
  CompositorTest() {
    scene::redirectSubwindows(*keeper);
    EXPECT_TRUE(keeper->synchronize(10'000));
    client.setBackgroundChecks(client.root(), 7, 0x204060, 0x305070);
    client.sync();
  }

  xcb_window_t makeChecks(const support::WindowOptions& options, std::uint32_t first, std::uint32_t second) {
    const xcb_window_t window = client.createWindow(options);
    client.setBackgroundChecks(window, 5, first, second);
    return window;
  }

  // Opaque, bordered, shaped, partly off-screen, and with alpha.
  void fillTheScreen() {
    makeChecks({.frame = {20, 30, 120, 90}}, 0xff0000, 0xff8000);
    makeChecks({.frame = {100, 60, 80, 70}, .border = 4, .borderColor = 0xffffff}, 0x00ff00, 0x008000);
    const auto shaped =
        makeChecks({.frame = {150, 40, 90, 90}, .border = 3, .borderColor = 0xabcdef}, 0x0000ff, 0x8080ff);
    const std::array<xcb_rectangle_t, 3> parts{{{-3, -3, 20, 60}, {30, 30, 40, 40}, {60, 60, 200, 200}}};
    client.setBoundingShape(shaped, parts);
    makeChecks({.frame = {-30, -20, 90, 80}}, 0x111111, 0xeeeeee);
    makeChecks({.frame = {350, 250, 90, 80}, .border = 2, .borderColor = 0x777777}, 0x123456, 0x654321);
    makeChecks({.frame = {60, 100, 200, 120}, .depth = 32}, 0x80402010, 0x40101040);
    makeChecks({.frame = {90, 130, 100, 120}, .depth = 32}, 0xff00ff00, 0x00000000);
    client.createWindow({.frame = {0, 0, 400, 300}, .inputOnly = true});
    client.createWindow({.frame = {10, 10, 300, 200}, .mapped = false});
    client.sync();
  }

  // What the screen shows without these windows.
  Picture screenWithout(const std::vector<xcb_window_t>& windows, const xcb::PixelRect& part = wholeScreen) {
    for (const xcb_window_t window : windows) client.unmap(window);
    client.sync();
    return client.screenshot(part);
  }

  // A compositing manager paints a moment later.
  void expectPictureBecomesTheScreen(Composition& composition, const xcb::PixelRect& part = wholeScreen) {
    EXPECT_TRUE(support::waitUntil([&] {
      composition.update();
      return composition.picture() == client.screenshot(part);
    })) << composition.picture().differences(client.screenshot(part))
        << " pixels differ";
  }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  // Stands in for the process's main connection, which lives as long as the process.
  std::unique_ptr<xcb::Connection> keeper = connectTo(server.display());
};

}  // namespace platform::linux::compositor
