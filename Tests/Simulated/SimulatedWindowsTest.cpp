#include "Tests/Quillfade/OnDesktop.h"
#include "Tests/Quillfade/Selection/Pointer.h"

namespace quillfade {
namespace {

using platform::Rect;
using platform::ViewResponder;
using testing::ElementsAre;
using testing::IsEmpty;

class Recorder final : public ViewResponder {
 public:
  void layout() override { ++layouts; }
  void mouseDown(platform::Point point) override { pressedAt = point; }
  int layouts = 0;
  platform::Point pressedAt;
};

class Square : public ViewResponder {
 public:
  void draw(platform::Canvas& canvas) override { canvas.strokeRect({{0, 0}, {10, 10}}, 1, platform::colors::black); }
};

class SimulatedWindows : public OnDesktop {
 protected:
  std::unique_ptr<platform::Window> make(const Rect& frame, platform::WindowLevel level = 0,
                                         bool clickThrough = false) {
    platform::WindowAttributes attributes{.contentRect = frame, .level = level, .ignoresMouseEvents = clickThrough};
    attributes.canBecomeKey = true;
    return desktop.windows().makeWindow(attributes);
  }
  static constexpr Rect square{{10, 20}, {100, 100}};
};

TEST_F(SimulatedWindows, StackByLevelAndThenByTheLastOrderingFront) {
  const auto high = make(square, 5);
  const auto low = make(square);
  const auto other = make(square);
  high->orderFrontRegardless();
  low->orderFrontRegardless();
  other->orderFrontRegardless();
  low->orderFrontRegardless();
  std::vector<int> numbers;
  for (const auto& window : shownWindows()) numbers.push_back(window->number);
  EXPECT_THAT(numbers, ElementsAre(3, 2, 1));
}

TEST_F(SimulatedWindows, LeaveTheScreenWhenTheirHandleIsDropped) {
  auto window = make(square);
  window->makeKeyAndOrderFront();
  window = nullptr;
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_EQ(desktop.windows().keyWindow(), nullptr);
}

TEST_F(SimulatedWindows, LayOutTheirContentWhenItEntersAndWhenItsSizeChanges) {
  const auto recorder = std::make_shared<Recorder>();
  const auto window = make(square);
  window->setContentView(desktop.views().makeView({{0, 0}, square.size}, recorder));
  const int entered = recorder->layouts;
  EXPECT_GE(entered, 1);
  window->setFrame({{50, 60}, square.size}, true);
  EXPECT_EQ(recorder->layouts, entered);
  window->setFrame({{50, 60}, {30, 40}}, true);
  EXPECT_EQ(recorder->layouts, entered + 1);
}

TEST_F(SimulatedWindows, ConvertBetweenViewsWindowsAndTheScreen) {
  const auto window = make(square);
  const auto outer = desktop.views().makeView({});
  const auto inner = desktop.views().makeView({{7, 8}, {20, 20}});
  outer->addSubview(inner);
  EXPECT_FALSE(inner->isInWindow());
  window->setContentView(outer);
  EXPECT_TRUE(inner->isInWindow());
  EXPECT_EQ(inner->convertFromWindow({10, 10}), (platform::Point{3, 2}));
  EXPECT_EQ(inner->convertToWindow({{1, 1}, {2, 2}}), (Rect{{8, 9}, {2, 2}}));
  EXPECT_EQ(inner->convertWindowRectToScreen({{8, 9}, {2, 2}}), (Rect{{18, 29}, {2, 2}}));
}

TEST_F(SimulatedWindows, ResizeSubviewsByTheirMask) {
  const auto window = make(square);
  const auto outer = std::dynamic_pointer_cast<simulated::View>(desktop.views().makeView({{0, 0}, square.size}));
  const auto wide = desktop.views().makeView({{0, 0}, {100, 10}});
  wide->setResizeMask(platform::resizemask::widthSizable);
  outer->addSubview(wide);
  window->setContentView(outer);
  window->setFrame({{0, 0}, {300, 400}}, false);
  EXPECT_EQ(outer->subviews().front()->frame(), (Rect{{0, 0}, {300, 10}}));
}

TEST_F(SimulatedWindows, GiveAClickToTheTopmostWindowThatTakesClicks) {
  const auto beneath = make(square);
  const auto recorder = std::make_shared<Recorder>();
  beneath->setContentView(desktop.views().makeView({}, recorder));
  beneath->orderFrontRegardless();
  const auto above = make(square, 10, true);
  above->orderFrontRegardless();
  click(desktop.windows(), {15, 26});
  EXPECT_EQ(recorder->pressedAt, (platform::Point{5, 6}));
  EXPECT_EQ(desktop.windows().clickTarget({500, 500}), nullptr);
}

TEST_F(SimulatedWindows, DrawNothingForAResponderThatDoesNotSayThatItDraws) {
  const auto silent = std::make_shared<Square>();
  const auto view = desktop.views().makeView({{0, 0}, {100, 100}}, silent);
  EXPECT_THAT(std::dynamic_pointer_cast<simulated::View>(view)->render(), IsEmpty());
}

TEST_F(SimulatedWindows, DistinguishAnimatedChangesFromOthers) {
  const auto layer = std::dynamic_pointer_cast<simulated::DisplayLayer>(desktop.views().makeDisplayLayer());
  desktop.views().withoutImplicitAnimations([&] { layer->setFrame(square); });
  EXPECT_FALSE(layer->didAnimate());
  layer->setFrame(square);
  EXPECT_TRUE(layer->didAnimate());
}

}  // namespace
}  // namespace quillfade
