#include "Platform/Linux/Tray/PopUpMenus.h"

#include <gtest/gtest.h>

#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::tray {
namespace {

class PopUpMenusOnX : public testing::Test {
 protected:
  PopUpMenusOnX() { scene_.addListener(list_); }

  void pump() {
    connection_->flush();
    while (const xcb::Event event = connection_->nextEvent()) {
      scene_.handle(*event);
      list_.handle(*event);
    }
    scene_.collectReplies();
    menus_.settle();
  }
  [[nodiscard]] bool sees(xcb_window_t window, bool viewable) {
    client_.sync();
    return support::waitUntil([&] {
      pump();
      const scene::SceneWindow* found = scene_.find(window);
      return found != nullptr && found->isDescribed && found->isViewable == viewable;
    });
  }
  xcb_window_t createTyped(const char* type) {
    const xcb_window_t window = client_.createWindow({.frame = {10, 10, 100, 200}, .mapped = false});
    client_.setAtoms(window, "_NET_WM_WINDOW_TYPE", {type});
    return window;
  }
  void mapAndUnmap(xcb_window_t window) {
    client_.map(window);
    ASSERT_TRUE(sees(window, true));
    client_.unmap(window);
    ASSERT_TRUE(sees(window, false));
  }

  support::XServer server_;
  support::XClient client_{server_.display()};
  std::unique_ptr<xcb::Connection> connection_ = connectTo(server_.display());
  scene::Scene scene_{*connection_};
  scene::WindowList list_{*connection_, scene_, {connection_->resourceBase()}};
  PopUpMenus menus_{scene_, list_};
  int closings_ = 0;
};

TEST_F(PopUpMenusOnX, AMenuThatLeavesTheScreenIsReportedClosedOnce) {
  const xcb_window_t menu = createTyped("_NET_WM_WINDOW_TYPE_POPUP_MENU");
  menus_.whenClosed([this] { ++closings_; });
  pump();
  EXPECT_EQ(closings_, 0) << "The window comes after the announcement.";
  mapAndUnmap(menu);
  EXPECT_EQ(closings_, 1);
  mapAndUnmap(menu);
  EXPECT_EQ(closings_, 1);
}

TEST_F(PopUpMenusOnX, AMenuStaysOpenWhileItsSubmenuCloses) {
  const xcb_window_t menu = createTyped("_NET_WM_WINDOW_TYPE_POPUP_MENU");
  menus_.whenClosed([this] { ++closings_; });
  EXPECT_FALSE(menus_.isSeen());
  client_.map(menu);
  ASSERT_TRUE(sees(menu, true));
  mapAndUnmap(createTyped("_NET_WM_WINDOW_TYPE_DROPDOWN_MENU"));
  EXPECT_EQ(closings_, 0);
  EXPECT_TRUE(menus_.isSeen());
  client_.unmap(menu);
  ASSERT_TRUE(sees(menu, false));
  EXPECT_EQ(closings_, 1);
  EXPECT_FALSE(menus_.isSeen());
}

TEST_F(PopUpMenusOnX, AVanishingTooltipIsNoMenu) {
  menus_.whenClosed([this] { ++closings_; });
  mapAndUnmap(createTyped("_NET_WM_WINDOW_TYPE_TOOLTIP"));
  EXPECT_EQ(closings_, 0);
}

TEST_F(PopUpMenusOnX, ACallerThatNoLongerWaitsIsNotCalled) {
  menus_.whenClosed([this] { ++closings_; });
  menus_.whenClosed({});
  mapAndUnmap(createTyped("_NET_WM_WINDOW_TYPE_POPUP_MENU"));
  EXPECT_EQ(closings_, 0);
}

}  // namespace
}  // namespace platform::linux::tray
