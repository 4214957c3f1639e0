// A window that comes to the screen while wlroots manages the windows of a Wayland session.
#include "Platform/Linux/Cover/OverlayStage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Linux/Holes/SeeThroughVisual.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/WindowList.h"
#include "Tests/Linux/Cover/OverlayWindowFixture.h"
#include "Tests/Support/ManualRunLoop.h"

namespace platform::linux::cover {
namespace {

class OverlayStageOnX : public OverlayWindowOnX {
 protected:
  // A manager of windows that also composites them, and that answers when the test says so.
  void manage(const std::string& name) {
    const xcb_window_t owner = client_.createWindow({.mapped = false});
    client_.setText(owner, "_NET_WM_NAME", "UTF8_STRING", name);
    xcb_set_selection_owner(client_.connection(), owner, client_.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    client_.selectInput(client_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
    client_.sync();
  }

  // Grants the next request of a window to be moved, as managers do.
  void answer() {
    while (const xcb::Event event = xcb::Event(xcb_wait_for_event(client_.connection()))) {
      if (xcb::eventType(*event) != XCB_CONFIGURE_REQUEST) continue;
      const auto& request = xcb::eventAs<xcb_configure_request_event_t>(*event);
      client_.move(request.window, request.x, request.y);
      client_.sync();
      return;
    }
    FAIL() << "the connection is gone";
  }

  void makeWindow() {
    window_ =
        std::make_unique<OverlayWindow>(*connection_, place, mirrorAppearance(), holes::seeThroughVisual(*connection_));
    ASSERT_TRUE(window_->canBeSeenThrough());
    stage_.add(*window_);
  }

  void show() {
    stage_.orderFront(*window_);
    handleEvents();
  }

  void handleEvents() {
    ASSERT_TRUE(connection_->synchronize(5000));
    while (const xcb::Event event = connection_->nextEvent()) stage_.handle(*event);
    ASSERT_TRUE(connection_->synchronize(5000));
  }

  std::size_t seen() { return client_.screenshot(place).count(bluePixel); }

  ~OverlayStageOnX() override {
    if (window_) stage_.remove(*window_);
  }

  static constexpr std::size_t whole = std::size_t{400} * 300;
  scene::Scene scene_{*connection_};
  scene::WindowList windowList_{*connection_, scene_, {connection_->resourceBase()}};
  support::ManualRunLoop runLoop_;
  OverlayStage stage_{*connection_, scene_, windowList_, runLoop_};
};

TEST_F(OverlayStageOnX, NothingIsPaintedBeforeWlrootsKnowsTheWindow) {
  manage("wlroots wm");
  makeWindow();
  show();
  EXPECT_TRUE(client_.isViewable(window_->id()));
  EXPECT_EQ(seen(), 0U);
  EXPECT_TRUE(stage_.awaitsWindows());
  window_->setAppearance({.background = green, .picture = inside, .label = {}, .border = {}});
  handleEvents();
  EXPECT_EQ(client_.screenshot(place).count(greenPixel), 0U);
  window_->setAppearance(mirrorAppearance());
  answer();
  handleEvents();
  EXPECT_EQ(seen(), whole);
  EXPECT_FALSE(stage_.awaitsWindows());
  runLoop_.advance();
  EXPECT_EQ(seen(), whole);
}

TEST_F(OverlayStageOnX, AManagerThatDoesNotAnswerDelaysItForAMoment) {
  manage("wlroots wm");
  makeWindow();
  show();
  EXPECT_EQ(seen(), 0U);
  runLoop_.advance();
  handleEvents();
  EXPECT_EQ(seen(), whole);
}

TEST_F(OverlayStageOnX, OtherManagersDoNotDelayIt) {
  manage("Another manager");
  makeWindow();
  show();
  EXPECT_EQ(seen(), whole);
}

TEST_F(OverlayStageOnX, AnAnswerForAnEarlierShowingIsNotEnough) {
  manage("wlroots wm");
  makeWindow();
  show();
  window_->orderOut();
  show();
  answer();
  handleEvents();
  EXPECT_EQ(seen(), 0U);
  answer();
  handleEvents();
  EXPECT_EQ(seen(), whole);
}

TEST_F(OverlayStageOnX, WhatIsSeenThroughHasOnlyItsOutline) {
  manage("wlroots wm");
  makeWindow();
  window_->setAppearance({.background = blue, .picture = inside, .label = {}, .border = {{.width = 2, .color = blue}}});
  show();
  ASSERT_TRUE(window_->showThrough());
  handleEvents();
  EXPECT_EQ(seen(), 0U);
  answer();
  handleEvents();
  EXPECT_EQ(seen(), whole - std::size_t{396} * 296);
}

TEST_F(OverlayStageOnX, AWindowThatGoesMeanwhileIsForgotten) {
  manage("wlroots wm");
  makeWindow();
  show();
  stage_.remove(*window_);
  window_ = nullptr;
  answer();
  handleEvents();
  runLoop_.advance();
  handleEvents();
  EXPECT_EQ(seen(), 0U);
}

TEST_F(OverlayStageOnX, InAWaylandSessionItIsANotificationTooWhichGetsNoKeys) {
  makeWindow();
  handleEvents();
  EXPECT_EQ(client_.numbers(window_->id(), "_NET_WM_WINDOW_TYPE"),
            (std::vector<std::uint32_t>{client_.atom("_NET_WM_WINDOW_TYPE_DOCK"),
                                        client_.atom("_NET_WM_WINDOW_TYPE_NOTIFICATION")}));
}

}  // namespace
}  // namespace platform::linux::cover
