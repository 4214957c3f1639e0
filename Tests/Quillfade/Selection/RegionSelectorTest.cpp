#include "Quillfade/Selection/RegionSelector.h"

#include <functional>

#include "Tests/Quillfade/OnDesktop.h"
#include "Tests/Quillfade/Selection/Pointer.h"

namespace quillfade {
namespace {

using platform::Rect;
using simulated::KeyOutcome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr platform::KeyEvent escape{platform::escapeKeyCode};

class RegionSelectorTest : public OnDesktop {
 protected:
  void SetUp() override {
    desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, 1, 2}, {{{-1920, 100}, {1920, 1080}}, 2, 1}});
  }

  void begin() {
    selector->begin([this](std::optional<Rect> rect) { results.push_back(rect); });
  }

  std::shared_ptr<RegionSelector> selector = std::make_shared<RegionSelector>(desktop);
  std::vector<std::optional<Rect>> results;
};

TEST_F(RegionSelectorTest, AFreshSelectorIsIdle) {
  EXPECT_THAT(selector->windows(), IsEmpty());
  EXPECT_EQ(desktop.windows().monitorCount(), 0U);
  EXPECT_THAT(desktop.record().entries(), IsEmpty());
}

TEST_F(RegionSelectorTest, EveryScreenGetsAWindowInTheScreensOrder) {
  begin();
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{0, 0}, {1440, 900}}, Rect{{-1920, 100}, {1920, 1080}}));
  EXPECT_THAT(selector->windows(), SizeIs(2));
  for (const auto& window : shownWindows()) {
    EXPECT_EQ(window->contentView->frame(), (Rect{{0, 0}, window->frame.size}));
    EXPECT_EQ(window->firstResponder, window->contentView.get());
  }
}

TEST_F(RegionSelectorTest, TheStepsComeInTheirOrder) {
  begin();
  EXPECT_THAT(desktop.record().entries(),
              ElementsAre("application: activate", "window 1: make", "window 1: set content view",
                          "window 1: make key and order front", "window 1: make first responder", "window 2: make",
                          "window 2: set content view", "window 2: make key and order front",
                          "window 2: make first responder", "window 1: make key", "key monitor: add"));
}

TEST_F(RegionSelectorTest, TheWindowUnderThePointerHasTheKeyboard) {
  desktop.screens().setMouseLocation({700, 400});
  begin();
  EXPECT_EQ(desktop.windows().keyWindow(), desktop.windows().made()[0]);
}

TEST_F(RegionSelectorTest, WithThePointerOnTheSecondScreenThatOneHasTheKeyboard) {
  desktop.screens().setMouseLocation({-5, 500});
  begin();
  EXPECT_EQ(desktop.windows().keyWindow(), desktop.windows().made()[1]);
}

TEST_F(RegionSelectorTest, WithThePointerNowhereTheLastWindowKeepsTheKeyboard) {
  desktop.screens().setMouseLocation({9000, 9000});
  begin();
  EXPECT_EQ(desktop.windows().keyWindow(), desktop.windows().made()[1]);
}

TEST_F(RegionSelectorTest, AFinishedDragReportsOnALaterTurnAfterAllWindowsAreGone) {
  std::size_t shownAtTheReport = 99;
  selector->begin([&](std::optional<Rect> rect) {
    shownAtTheReport = shownWindows().size();
    results.push_back(rect);
  });
  drag(desktop.windows(), {100, 100}, {400, 300});
  EXPECT_THAT(results, IsEmpty());
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_THAT(selector->windows(), IsEmpty());
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, ElementsAre(Rect{{100, 100}, {300, 200}}));
  EXPECT_EQ(shownAtTheReport, 0U);
}

TEST_F(RegionSelectorTest, ADragOnTheScreenAtTheLeftReportsNegativeCoordinates) {
  begin();
  drag(desktop.windows(), {-1000, 500}, {-500, 900});
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, ElementsAre(Rect{{-1000, 500}, {500, 400}}));
}

TEST_F(RegionSelectorTest, TheWindowsAreReleased) {
  begin();
  drag(desktop.windows(), {100, 100}, {400, 300});
  desktop.runLoop().runUntilIdle();
  for (const auto& window : desktop.windows().made()) EXPECT_FALSE(window->isAlive);
  EXPECT_EQ(desktop.windows().monitorCount(), 0U);
}

TEST_F(RegionSelectorTest, FinishingRemovesTheMonitorThenOrdersTheWindowsOut) {
  begin();
  desktop.record().clear();
  drag(desktop.windows(), {100, 100}, {400, 300});
  EXPECT_THAT(desktop.record().entries(),
              ElementsAre("key monitor: remove", "window 1: order out", "window 2: order out"));
}

TEST_F(RegionSelectorTest, EscapeEndsTheSelectionWithNothingOnce) {
  begin();
  const auto view = shownWindows().front()->contentView;
  EXPECT_EQ(desktop.windows().pressKey(escape), KeyOutcome::swallowedByMonitor);
  // The view gets the key as well.
  view->responder()->keyDown(escape);
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, ElementsAre(std::nullopt));
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(RegionSelectorTest, EveryWayToCancelEndsItOnEveryScreen) {
  const std::function<void()> ways[] = {
      [this] { desktop.windows().pressKey(escape); },
      [this] { shownWindows().back()->contentView->responder()->cancelOperation(); },
      [this] { shownWindows().back()->contentView->responder()->keyDown(escape); },
      [this] { click(desktop.windows(), {100, 100}); },
      [this] { drag(desktop.windows(), {100, 100}, {110, 500}); },
  };
  for (const auto& way : ways) {
    results.clear();
    begin();
    way();
    desktop.runLoop().runUntilIdle();
    EXPECT_THAT(results, ElementsAre(std::nullopt));
    EXPECT_THAT(shownWindows(), IsEmpty());
    EXPECT_EQ(desktop.windows().monitorCount(), 0U);
  }
}

TEST_F(RegionSelectorTest, OtherKeysReachTheViewsUnchanged) {
  begin();
  EXPECT_EQ(desktop.windows().pressKey({36}), KeyOutcome::notTaken);
  EXPECT_THAT(shownWindows(), SizeIs(2));
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, IsEmpty());
}

TEST_F(RegionSelectorTest, BeginningTwiceLeavesOneSelectionForTheFirstCaller) {
  begin();
  bool secondCalled = false;
  selector->begin([&](std::optional<Rect>) { secondCalled = true; });
  EXPECT_THAT(shownWindows(), SizeIs(2));
  EXPECT_EQ(desktop.windows().monitorCount(), 1U);
  EXPECT_EQ(desktop.sharedApplication()->activationCount(), 1);
  drag(desktop.windows(), {100, 100}, {400, 300});
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, SizeIs(1));
  EXPECT_FALSE(secondCalled);
}

TEST_F(RegionSelectorTest, AReportAfterTheEndIsIgnored) {
  begin();
  const auto other = shownWindows().back()->contentView->responder();
  drag(desktop.windows(), {100, 100}, {400, 300});
  other->cancelOperation();
  other->mouseUp({0, 0});
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, ElementsAre(Rect{{100, 100}, {300, 200}}));
}

TEST_F(RegionSelectorTest, ANewSelectionMayBeginFromWithinTheReport) {
  selector->begin([this](std::optional<Rect>) { begin(); });
  desktop.windows().pressKey(escape);
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(shownWindows(), SizeIs(2));
  desktop.windows().pressKey(escape);
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(RegionSelectorTest, ANewSelectionMayBeginRightAfterTheEnd) {
  begin();
  desktop.windows().pressKey(escape);
  begin();
  EXPECT_THAT(shownWindows(), SizeIs(2));
  drag(desktop.windows(), {100, 100}, {400, 300});
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, ElementsAre(std::nullopt, Rect{{100, 100}, {300, 200}}));
}

TEST_F(RegionSelectorTest, WithoutScreensEscapeStillEndsTheSelection) {
  desktop.arrangeScreens({});
  begin();
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_EQ(desktop.windows().monitorCount(), 1U);
  EXPECT_EQ(desktop.windows().pressKey(escape), KeyOutcome::swallowedByMonitor);
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(RegionSelectorTest, WithoutScreensASecondBeginReplacesTheCallbackAndAddsAMonitor) {
  desktop.arrangeScreens({});
  bool firstCalled = false;
  selector->begin([&](std::optional<Rect>) { firstCalled = true; });
  begin();
  EXPECT_EQ(desktop.windows().monitorCount(), 2U);
  desktop.windows().pressKey(escape);
  desktop.runLoop().runUntilIdle();
  EXPECT_FALSE(firstCalled);
  EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(RegionSelectorTest, AMonitorThatOutlivesTheSelectorStillSwallowsEscape) {
  begin();
  selector = nullptr;
  EXPECT_EQ(desktop.windows().pressKey(escape), KeyOutcome::swallowedByMonitor);
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(results, IsEmpty());
}

TEST_F(RegionSelectorTest, DestroyingTheSelectorRemovesNoMonitor) {
  begin();
  selector = nullptr;
  EXPECT_EQ(desktop.windows().monitorCount(), 1U);
}

using RegionSelectorDeathTest = RegionSelectorTest;

TEST_F(RegionSelectorDeathTest, WithoutAnApplicationBeginningEndsTheProcess) {
  desktop.disconnect();
  EXPECT_DEATH(begin(), "fatal error");
}

TEST_F(RegionSelectorTest, CancellingWorksLikeEscape) {
  begin();
  selector->cancel();
  desktop.runLoop().settle();
  EXPECT_THAT(results, ElementsAre(std::nullopt));
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_EQ(desktop.windows().monitorCount(), 0U);
}

TEST_F(RegionSelectorTest, CancellingWithoutASelectionDoesNothing) {
  selector->cancel();
  desktop.runLoop().settle();
  EXPECT_THAT(results, IsEmpty());
}

}  // namespace
}  // namespace quillfade
