// The window list under real window managers.

#include "Tests/Linux/Scene/WindowListFixture.h"

namespace platform::linux::scene {
namespace {

class WindowListWithManager : public WindowListOnX, public testing::WithParamInterface<support::WindowManager::Kind> {
 protected:
  support::WindowManager manager_{server_.display(), GetParam()};
};

std::string managerName(const testing::TestParamInfo<support::WindowManager::Kind>& parameter) {
  return parameter.param == support::WindowManager::Kind::openbox ? "Openbox" : "Xfwm4";
}

INSTANTIATE_TEST_SUITE_P(Managers, WindowListWithManager,
                         testing::Values(support::WindowManager::Kind::openbox, support::WindowManager::Kind::xfwm4),
                         managerName);

TEST_P(WindowListWithManager, TheFrameIsListedWithTheIdentityOfTheWindowInside) {
  const xcb_window_t before = createManaged("Before", {100, 100, 300, 200});
  show(before);
  ASSERT_TRUE(support::waitUntil([&] { return client_.findTopLevel("Before") == std::nullopt; }));
  observe();
  const xcb_window_t after = createManaged("After", {500, 100, 300, 200});
  show(after);
  EXPECT_TRUE(reachesLayer("Before", layers::ordinary));
  EXPECT_TRUE(reachesLayer("After", layers::ordinary));
  EXPECT_NE(entryOf("Before")->windowID, before);
  EXPECT_GT(entryOf("After")->frame.height(), 200) << "with its title bar";

  client_.unmap(after);
  client_.sync();
  EXPECT_TRUE(support::waitUntil([&] { return !entryOf("After"); }));
  show(after);
  EXPECT_TRUE(reachesLayer("After", layers::ordinary));
}

TEST_P(WindowListWithManager, KeepingAWindowAboveMovesItToTheFloatingLayerAndBack) {
  observe();
  const xcb_window_t window = createManaged("Zoom", {100, 100, 300, 200});
  show(window);
  ASSERT_TRUE(reachesLayer("us.zoom.xos", layers::ordinary));
  client_.sendToRoot(window, "_NET_WM_STATE", {1, client_.atom("_NET_WM_STATE_ABOVE"), 0, 1, 0});
  client_.sync();
  EXPECT_TRUE(reachesLayer("us.zoom.xos", layers::floating));
  client_.sendToRoot(window, "_NET_WM_STATE", {0, client_.atom("_NET_WM_STATE_ABOVE"), 0, 1, 0});
  client_.sync();
  EXPECT_TRUE(reachesLayer("us.zoom.xos", layers::ordinary));
}

TEST_P(WindowListWithManager, FullScreenWindowsAreOrdinaryWhateverTheirVisual) {
  observe();
  for (const int depth : {0, 32}) {
    const std::string name = "Film" + std::to_string(depth);
    const xcb_window_t window = createManaged(name, {100, 100, 300, 200}, depth);
    show(window);
    ASSERT_TRUE(reachesLayer(name, layers::ordinary));
    client_.sendToRoot(window, "_NET_WM_STATE", {1, client_.atom("_NET_WM_STATE_FULLSCREEN"), 0, 1, 0});
    client_.sync();
    EXPECT_TRUE(support::waitUntil([&] {
      const auto film = entryOf(name);
      return film && film->frame.size == Size{1280, 800};
    }));
    EXPECT_TRUE(reachesLayer(name, layers::ordinary));
  }
}

TEST_P(WindowListWithManager, AnUndecoratedTransparentPaneFloatsAndIsAnOverlayOnceKeptAbove) {
  observe();
  const xcb_window_t pane = createManaged("zoom", wholeScreen, 32);
  removeDecorations(pane);
  show(pane);
  EXPECT_TRUE(reachesLayer("us.zoom.xos", layers::floating));
  client_.sendToRoot(pane, "_NET_WM_STATE", {1, client_.atom("_NET_WM_STATE_ABOVE"), 0, 1, 0});
  client_.sync();
  EXPECT_TRUE(reachesLayer("us.zoom.xos", layers::overlay));
}

TEST_P(WindowListWithManager, GromitMpxIsAnOverlayWithAndWithoutACompositingManager) {
  observe();
  support::GromitMpx gromit(server_.display());
  gromit.draw({{100, 100, 700, 500}, {700, 100, 100, 500}});
  EXPECT_TRUE(support::waitUntil([&] {
    const auto window = entry(gromit.window());
    return window && window->windowLayer == layers::overlay;
  }));
  EXPECT_EQ(ownerOf(entry(gromit.window())), "Gromit-mpx");
  ASSERT_TRUE(support::waitUntil([&] {
    pump();
    return scene_->find(gromit.window())->isShaped;
  })) << "just its strokes";
  EXPECT_EQ(entry(gromit.window())->windowLayer, layers::overlay);
  EXPECT_EQ(entry(gromit.window())->frame.width(), 1280) << "the window, not its strokes";

  support::CompositingManager compositor(server_.display());
  ASSERT_TRUE(support::waitUntil([&] {
    pump();
    return !scene_->find(gromit.window())->isShaped;
  })) << "all of it";
  gromit.draw({{200, 200, 300, 600}});
  EXPECT_EQ(entry(gromit.window())->windowLayer, layers::overlay);
  compositor.stop();
  gromit.draw({{300, 200, 400, 600}});
  EXPECT_EQ(entry(gromit.window())->windowLayer, layers::overlay);
}

}  // namespace
}  // namespace platform::linux::scene
