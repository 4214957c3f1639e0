#include "Tests/Linux/Cover/OverlayWindowFixture.h"

namespace platform::linux::cover {
namespace {

TEST_F(OverlayWindowOnX, ShowsItsBackgroundExactlyInItsFrame) {
  show({.background = blue, .picture = {}, .label = {}, .border = {}});
  EXPECT_EQ(client_.screenshot(place).count(bluePixel), std::size_t{400} * 300);
  EXPECT_EQ(client_.screenshot().count(bluePixel), std::size_t{400} * 300);
  window_->setFrame({0, 0, 100, 50});
  settle();
  EXPECT_EQ(client_.screenshot().count(bluePixel), std::size_t{100} * 50);
  window_->orderOut();
  settle();
  EXPECT_EQ(client_.screenshot().count(bluePixel), 0U);
  window_->orderFront(std::nullopt);
  settle();
  EXPECT_EQ(client_.screenshot().count(bluePixel), std::size_t{100} * 50);
}

TEST_F(OverlayWindowOnX, TellsManagersWhatTheyNeedToKnow) {
  show(mirrorAppearance());
  EXPECT_EQ(client_.text(window_->id(), "WM_CLASS"), std::string("quillfade\0Quillfade\0", 20));
  EXPECT_EQ(client_.text(window_->id(), "_NET_WM_NAME"), "Quillfade");
  EXPECT_EQ(client_.numbers(window_->id(), "_NET_WM_BYPASS_COMPOSITOR"), std::vector<std::uint32_t>{2});
  EXPECT_EQ(client_.numbers(window_->id(), "_COMPTON_SHADOW"), std::vector<std::uint32_t>{0});
  EXPECT_EQ(client_.numbers(window_->id(), "_NET_WM_PID"),
            std::vector<std::uint32_t>{static_cast<std::uint32_t>(getpid())});
}

TEST_F(OverlayWindowOnX, AClickReachesTheWindowBeneath) {
  const xcb_window_t beneath = client_.createWindow({.frame = {150, 50, 500, 400}});
  client_.selectInput(beneath, XCB_EVENT_MASK_BUTTON_PRESS);
  client_.sync();
  show(mirrorAppearance());
  support::Input input(server_.display());
  input.click(400, 250);
  EXPECT_TRUE(client_.waitForEvent(XCB_BUTTON_PRESS, std::chrono::seconds(5)));
}

TEST_F(OverlayWindowOnX, NeverTakesTheFocusFromAManagedWindow) {
  const support::WindowManager manager(server_.display());
  show(mirrorAppearance());
  EXPECT_TRUE(client_.isViewable(window_->id()));
  EXPECT_EQ(client_.frame(window_->id()), place) << "nobody moved it";
  EXPECT_EQ(std::ranges::count(client_.children(client_.root()), window_->id()), 1) << "or put it into a frame";
}

TEST_F(OverlayWindowOnX, GoesDirectlyBelowALockerWhenItComesToTheFront) {
  const xcb_window_t ordinary = client_.createWindow({});
  const xcb_window_t locker = client_.createWindow({.frame = {0, 0, 1280, 800}, .color = green});
  client_.sync();
  window_ = std::make_unique<OverlayWindow>(*connection_, place, mirrorAppearance());
  window_->orderFront(locker);
  settle();
  EXPECT_EQ(client_.children(client_.root()), (std::vector{ordinary, window_->id(), locker}));
  EXPECT_EQ(client_.screenshot().count(bluePixel), 0U);
  // A locker that has gone is no error.
  client_.destroy(locker);
  client_.sync();
  window_->orderFront(locker);
  settle();
  EXPECT_EQ(client_.children(client_.root()).back(), window_->id());
}

TEST_F(OverlayWindowOnX, ABorderIsBlendedInsideTheEdgesOnce) {
  OverlayAppearance appearance = mirrorAppearance();
  appearance.border = {.width = 2, .color = halfWhite};
  show(appearance);
  const support::Picture shown = picture();
  for (const auto& [x, y] : {std::pair{0, 0}, {1, 1}, {399, 299}, {200, 1}, {398, 150}, {0, 299}}) {
    EXPECT_TRUE(isHalfWhiteOver(shown.at(x, y), bluePixel)) << x << "," << y << " " << std::hex << shown.at(x, y);
  }
  EXPECT_EQ(shown.count(bluePixel, {2, 2, 396, 296}), std::size_t{396} * 296);
}

TEST_F(OverlayWindowOnX, ALabelIsBlendedInTheMiddle) {
  OverlayAppearance appearance = mirrorAppearance();
  appearance.label = label("Waiting for screen capture\u2026");
  show(appearance);
  const support::Picture shown = picture();
  int left = 400, right = 0, top = 300, bottom = 0;
  for (int y = 0; y < 300; ++y) {
    for (int x = 0; x < 400; ++x) {
      if (shown.at(x, y) == bluePixel) continue;
      left = std::min(left, x), right = std::max(right, x), top = std::min(top, y), bottom = std::max(bottom, y);
    }
  }
  ASSERT_LT(left, right) << "nothing is written";
  EXPECT_NEAR((left + right) / 2.0, 199.5, 6);
  EXPECT_NEAR((top + bottom) / 2.0, 149.5, 8);
  int full = 0;
  for (int y = top; y <= bottom; ++y) {
    for (int x = left; x <= right; ++x) full += isHalfWhiteOver(shown.at(x, y), bluePixel) ? 1 : 0;
  }
  EXPECT_GT(full, 50) << "strokes have the label's own alpha";
}

TEST_F(OverlayWindowOnX, AnotherTextReplacesTheFirstAndNoTextUncoversTheBackground) {
  OverlayAppearance appearance = mirrorAppearance();
  appearance.label = label("Waiting");
  show(appearance);
  appearance.label = label("Failed");
  window_->setAppearance(appearance);
  const support::Picture replaced = picture();
  appearance.label.reset();
  window_->setAppearance(appearance);
  EXPECT_EQ(picture().count(bluePixel), std::size_t{400} * 300);
  appearance.label = label("Failed");
  window_->setAppearance(appearance);
  EXPECT_EQ(picture(), replaced);
}

}  // namespace
}  // namespace platform::linux::cover
