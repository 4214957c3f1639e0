// A screen whose size changes while a program behind the lens captures it.

#include <gtest/gtest.h>

#include "Tests/Lens/OpenLens.h"
#include "Tests/Support/Reply.h"
#include "Tests/Support/XServer.h"

namespace lens {
namespace {

using support::PixelRect;
using support::XClient;

constexpr PixelRect large{0, 0, 1280, 800};
constexpr PixelRect small{0, 0, 800, 600};

class ScreenSize : public testing::Test {
 protected:
  ScreenSize() {
    const xcb_window_t board = client_.createWindow({.frame = large});
    client_.setBackgroundChecks(board, 20, 0x20507a, 0xe8e0d0);
    client_.createWindow({.frame = {700, 500, 300, 200}, .color = 0xffaa3311, .border = 4});
    client_.sync();
    xrandr({"--newmode", "small", "50", "800", "840", "968", "1056", "600", "601", "605", "628"});
    xrandr({"--addmode", "screen", "small"});
  }

  void xrandr(std::vector<std::string> words) {
    words.insert(words.begin(), {"xrandr", "--display", server_.display()});
    support::runToEnd(words);
  }
  void setMode(const std::string& name) { xrandr({"--output", "screen", "--mode", name}); }

  static bool canRead(XClient& client, const PixelRect& part) {
    return support::waitForReply(client.connection(), xcb_get_image_reply,
                                 xcb_get_image(client.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, client.root(), 0, 0,
                                               static_cast<std::uint16_t>(part.width),
                                               static_cast<std::uint16_t>(part.height), ~0U)) != nullptr;
  }

  support::XServer server_;
  XClient client_{server_.display()};
};

TEST_F(ScreenSize, CapturesHaveTheScreensCurrentSizeAndContent) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  EXPECT_EQ(program->screenshot(large), client_.screenshot(large));
  setMode("small");
  EXPECT_EQ(program->screenshot(small), client_.screenshot(small));
  EXPECT_FALSE(canRead(client_, large));
  EXPECT_FALSE(canRead(*program, large));
  client_.createWindow({.frame = {100, 100, 300, 200}, .color = 0xff00ff00});
  client_.sync();
  EXPECT_EQ(program->screenshot(small), client_.screenshot(small));
  setMode("1280x800");
  EXPECT_EQ(program->screenshot(large), client_.screenshot(large));
  EXPECT_EQ(program->screenshot(large).count(0x00ff00), std::size_t{300} * 200);
}

TEST_F(ScreenSize, AProgramThatKeepsCapturingGoesOn) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  for (int round = 0; round < 5; ++round) {
    for (const bool isSmall : {true, false}) {
      setMode(isSmall ? "small" : "1280x800");
      const PixelRect& screen = isSmall ? small : large;
      ASSERT_EQ(program->screenshot(screen).differences(client_.screenshot(screen)), 0U) << round;
    }
  }
}

}  // namespace
}  // namespace lens
