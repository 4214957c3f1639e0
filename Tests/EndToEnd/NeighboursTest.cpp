// The cover beside real window managers and a real compositing manager.

#include "Tests/EndToEnd/CoveredDesktop.h"

namespace endtoend {
namespace {

using support::WindowManager;

// Two ordinary windows and a real annotation program; only the ink may be missing from the cover.
class Neighbours : public CoveredDesktop {
 protected:
  void openWindows() {
    for (const PixelRect& frame : {PixelRect{200, 180, 400, 300}, PixelRect{500, 320, 380, 260}}) {
      const auto window =
          client_.createWindow({.frame = frame, .color = 0xff2d6a4f, .overrideRedirect = false, .mapped = false});
      client_.setClass(window, "editor", "Editor");
      client_.map(window);
      client_.sync();
      ASSERT_TRUE(support::waitUntil([&] { return client_.isViewable(window); }));
    }
    settle();
  }
  // A window manager draws its frames, and a compositing manager the screen, in their own time.
  void settle() {
    std::optional<Picture> last;
    int same = 0;
    ASSERT_TRUE(shows([&](const Picture& screen) {
      same = last && *last == screen ? same + 1 : 0;
      last = screen;
      return same == 8;
    }));
  }
  [[nodiscard]] bool coverShowsTheDesktopWithoutInk(const Picture& clean) {
    return shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }) &&
           ink(client_.screenshot(), wholeScreen) > 1000;
  }
  const support::QuillfadeOptions options_{.demonstration = false, .settings = settingsWithRegion(area)};
};

class UnderAWindowManager : public Neighbours, public testing::WithParamInterface<WindowManager::Kind> {};

TEST_P(UnderAWindowManager, TheCoverShowsFramedWindowsExactly) {
  const WindowManager manager(server_.display(), GetParam());
  openWindows();
  const Picture clean = client_.screenshot();
  drawInk();
  cover(options_);
  EXPECT_TRUE(coverShowsTheDesktopWithoutInk(clean));
}

TEST_P(UnderAWindowManager, ARaisedWindowStaysBeneathTheCover) {
  const WindowManager manager(server_.display(), GetParam());
  openWindows();
  drawInk();
  cover(options_);
  const auto window =
      client_.createWindow({.frame = {300, 300, 400, 200}, .color = 0xff7b2cbf, .overrideRedirect = false});
  client_.raise(window);
  client_.sync();
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(0x7b2cbf, area) == 400 * 200; }));
  gromit_->draw({{320, 320, 640, 460}});
  EXPECT_TRUE(showsNoInk(area));
}

INSTANTIATE_TEST_SUITE_P(Each, UnderAWindowManager,
                         testing::Values(WindowManager::Kind::openbox, WindowManager::Kind::xfwm4),
                         [](const auto& kind) {
                           return kind.param == WindowManager::Kind::openbox ? "Openbox" : "Xfwm4";
                         });

TEST_F(Neighbours, ACompositingManagerThatRanBeforeChangesNothing) {
  const WindowManager manager(server_.display());
  const support::CompositingManager compositor(server_.display());
  openWindows();
  const Picture clean = client_.screenshot();
  drawInk();
  cover(options_);
  EXPECT_TRUE(coverShowsTheDesktopWithoutInk(clean));
}

TEST_F(Neighbours, ACompositingManagerMayComeAndGoWhileTheCoverIsOn) {
  const WindowManager manager(server_.display());
  openWindows();
  const Picture clean = client_.screenshot();
  drawInk();
  cover(options_);
  ASSERT_TRUE(coverShowsTheDesktopWithoutInk(clean));

  support::CompositingManager compositor(server_.display());
  settle();
  EXPECT_TRUE(showsNoInk(area));
  gromit_->draw({{300, 300, 700, 500}});
  settle();
  EXPECT_EQ(ink(client_.screenshot(), area), 0U);

  compositor.stop();
  settle();
  EXPECT_TRUE(coverShowsTheDesktopWithoutInk(clean));
  EXPECT_TRUE(quillfade().process().isRunning());
}

}  // namespace
}  // namespace endtoend
