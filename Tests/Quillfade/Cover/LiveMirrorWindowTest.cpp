#include "Tests/Quillfade/Cover/MirrorTest.h"

namespace quillfade {
namespace {

using platform::Rect;
using testing::ElementsAre;
using testing::IsEmpty;

using LiveMirrorWindow = MirrorTest;

TEST_F(LiveMirrorWindow, AFreshMirrorShowsNothing) {
  EXPECT_FALSE(mirror->isShowing());
  EXPECT_EQ(mirror->generation(), 0);
  EXPECT_EQ(mirror->currentExclusionKey(), "");
  EXPECT_EQ(mirror->stream(), nullptr);
  EXPECT_EQ(mirror->mirrorView(), nullptr);
  EXPECT_THAT(desktop.windows().made(), IsEmpty());
  EXPECT_THAT(desktop.runLoop().liveTimers(), IsEmpty());
  EXPECT_THAT(logMessages(), IsEmpty());
}

TEST_F(LiveMirrorWindow, FramesComeOnASerialQueueOfItsOwn) {
  const auto queues = desktop.runLoop().liveQueues();
  ASSERT_EQ(queues.size(), 1U);
  EXPECT_EQ(queues.front()->label(), "org.quillfade.Quillfade.mirror");
  EXPECT_EQ(queues.front()->quality(), platform::QualityOfService::userInteractive);
}

TEST_F(LiveMirrorWindow, TheWindowCoversExactlyTheRegion) {
  show();
  EXPECT_THAT(shownFrames(), ElementsAre(region));
  EXPECT_EQ(view().bounds(), (Rect{{0, 0}, region.size}));
  EXPECT_TRUE(mirror->isShowing());
}

TEST_F(LiveMirrorWindow, TheWindowLiesAboveAllOthersAndCannotBeCaptured) {
  show();
  const auto& attributes = window()->attributes;
  EXPECT_EQ(attributes.level, desktop.windows().shieldingLevel());
  EXPECT_EQ(attributes.collectionBehavior, 0x151U);
  EXPECT_EQ(attributes.sharing, platform::WindowSharing::none);
}

TEST_F(LiveMirrorWindow, TheWindowIsPlain) {
  show();
  const auto& attributes = window()->attributes;
  EXPECT_EQ(attributes.contentRect, Rect{});
  EXPECT_EQ(attributes.style, platform::WindowStyle::borderless);
  EXPECT_EQ(attributes.backing, platform::BackingStore::buffered);
  EXPECT_FALSE(attributes.isDeferred);
  EXPECT_FALSE(attributes.hasShadow);
  EXPECT_TRUE(attributes.isOpaque);
  EXPECT_EQ(attributes.backgroundColor, platform::colors::black);
  EXPECT_FALSE(attributes.isReleasedWhenClosed);
  EXPECT_FALSE(attributes.isMovable);
  EXPECT_EQ(attributes.animationBehavior, platform::AnimationBehavior::none);
  EXPECT_FALSE(attributes.canBecomeKey);
}

TEST_F(LiveMirrorWindow, ClicksReachTheWindowBeneath) {
  const auto beneath = desktop.windows().makeWindow({.contentRect = region});
  beneath->orderFrontRegardless();
  show();
  ASSERT_EQ(shownWindows().size(), 2U);
  EXPECT_EQ(shownWindows().back(), window());
  EXPECT_EQ(desktop.windows().clickTarget(region.center()), shownWindows().front());
}

TEST_F(LiveMirrorWindow, TheWindowComesToTheFrontWithoutTheKeyboardOrTheApplication) {
  show();
  EXPECT_THAT(desktop.record().startingWith("window 1"),
              ElementsAre("window 1: make", "window 1: set content view", "window 1: set frame and display",
                          "window 1: order front"));
  EXPECT_EQ(desktop.windows().keyWindow(), nullptr);
  EXPECT_EQ(desktop.sharedApplication()->activationCount(), 0);
}

TEST_F(LiveMirrorWindow, TheOutlineIsThereWhenAskedFor) {
  show(true);
  EXPECT_EQ(view().subviews().size(), 2U);
  EXPECT_EQ(view().subviews().back()->frame(), view().bounds());
}

TEST_F(LiveMirrorWindow, WithoutAnOutlineThereIsNoBorder) {
  show(false);
  EXPECT_EQ(view().subviews().size(), 1U);
  EXPECT_EQ(displayLayer().frame(), view().bounds());
}

TEST_F(LiveMirrorWindow, ShowingIncrementsTheGenerationOnce) {
  show();
  EXPECT_EQ(mirror->generation(), 1);
}

TEST_F(LiveMirrorWindow, ShowingReturnsBeforeTheCaptureStarts) {
  show();
  EXPECT_THAT(desktop.capture().contentRequests(), IsEmpty());
  EXPECT_EQ(visibleStatus(), waitingText);
}

TEST_F(LiveMirrorWindow, ShowingLogsTheRegionAndThePermission) {
  mirror->show({{0, 0}, {1512, 982}}, false);
  EXPECT_THAT(logMessages(), ElementsAre("show region=1512x982 at 0,0 permission=true"));
}

TEST_F(LiveMirrorWindow, TheLogDropsFractionsTowardZero) {
  desktop.screenCaptureAccess().isGranted = false;
  mirror->show({{-10.7, 3.2}, {100.9, 50.5}}, false);
  EXPECT_THAT(logMessages(), ElementsAre("show region=100x50 at -10,3 permission=false"));
  EXPECT_EQ(desktop.screenCaptureAccess().requestCount(), 0);
}

TEST_F(LiveMirrorWindow, HidingTakesEverythingAway) {
  showAndStart();
  mirror->hide();
  EXPECT_FALSE(mirror->isShowing());
  EXPECT_EQ(mirror->stream(), nullptr);
  EXPECT_EQ(mirror->mirrorView(), nullptr);
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_FALSE(window()->isAlive);
  EXPECT_THAT(desktop.runLoop().liveTimers(), IsEmpty());
  EXPECT_EQ(logMessages().back(), "hide");
}

TEST_F(LiveMirrorWindow, HidingIncrementsTheGeneration) {
  show();
  mirror->hide();
  EXPECT_EQ(mirror->generation(), 2);
}

TEST_F(LiveMirrorWindow, HidingDoesNotWaitForTheStreamToStop) {
  showAndStart();
  desktop.capture().stopAnswering.isHeld = true;
  mirror->hide();
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_TRUE(newestStream()->isRunning());
  desktop.runLoop().settle();
  EXPECT_EQ(newestStream()->phase(), simulated::StreamPhase::stopping);
  newestStream()->stopRequest()->answer({});
  desktop.runLoop().settle();
  EXPECT_EQ(newestStream()->phase(), simulated::StreamPhase::stopped);
  EXPECT_FALSE(newestStream()->isHeld());
}

TEST_F(LiveMirrorWindow, AFailureToStopIsIgnored) {
  showAndStart();
  desktop.capture().stopAnswering.failure = "It would not stop.";
  mirror->hide();
  const Strings before = logMessages();
  desktop.runLoop().settle();
  EXPECT_EQ(logMessages(), before);
  EXPECT_FALSE(newestStream()->isHeld());
}

TEST_F(LiveMirrorWindow, AMirrorThatNeverGotAStreamStillHides) {
  show();
  mirror->hide();
  desktop.runLoop().settle();
  EXPECT_THAT(desktop.capture().streams(), IsEmpty());
  EXPECT_THAT(desktop.runLoop().liveTimers(), IsEmpty());
  EXPECT_EQ(logMessages().back(), "hide");
}

TEST_F(LiveMirrorWindow, HidingAMirrorThatWasNeverShownLogsAndIncrements) {
  mirror->hide();
  EXPECT_EQ(mirror->generation(), 1);
  EXPECT_THAT(logMessages(), ElementsAre("hide"));
}

TEST_F(LiveMirrorWindow, ShownAgainItKeepsItsWindowAndReplacesItsView) {
  showAndStart();
  const auto firstView = window()->contentView;
  const Rect elsewhere{{0, 0}, {400, 400}};
  mirror->show(elsewhere, true);
  desktop.runLoop().settle();
  EXPECT_EQ(desktop.windows().made().size(), 1U);
  EXPECT_NE(window()->contentView, firstView);
  EXPECT_THAT(shownFrames(), ElementsAre(elsewhere));
  EXPECT_EQ(mirror->generation(), 2);
  EXPECT_THAT(desktop.capture().runningStreams(), ElementsAre(newestStream()));
  EXPECT_EQ(streams().size(), 2U);
}

TEST_F(LiveMirrorWindow, AScreenChangeRestartsTheCaptureAndLeavesTheWindow) {
  showAndStart();
  desktop.record().clear();
  mirror->screensChanged();
  EXPECT_EQ(mirror->generation(), 2);
  desktop.runLoop().settle();
  EXPECT_EQ(streams().size(), 2U);
  EXPECT_THAT(desktop.record().startingWith("window"), IsEmpty());
  EXPECT_EQ(desktop.runLoop().liveTimers().size(), 1U);
}

TEST_F(LiveMirrorWindow, AScreenChangeDoesNothingToAHiddenMirror) {
  mirror->screensChanged();
  EXPECT_EQ(mirror->generation(), 0);
  show();
  mirror->hide();
  mirror->screensChanged();
  EXPECT_EQ(mirror->generation(), 2);
  desktop.runLoop().settle();
  // Only the start from `show` asked for anything.
  EXPECT_EQ(desktop.capture().contentRequests().size(), 1U);
  EXPECT_THAT(streams(), IsEmpty());
}

TEST_F(LiveMirrorWindow, ACaptureThatNeverStartsLeavesTheWaitingText) {
  desktop.capture().contentAnswering.isHeld = true;
  showAndStart();
  desktop.runLoop().advance(60);
  EXPECT_EQ(visibleStatus(), waitingText);
  EXPECT_EQ(shownWindows().size(), 1U);
}

using LiveMirrorWindowDeathTest = LiveMirrorWindow;

TEST_F(LiveMirrorWindowDeathTest, ARegionThatDoesNotFitWholeNumbersEndsTheProcess) {
  // Tries each number of the log line in turn.
  for (const Rect& rect : {Rect{{0, 0}, {1e300, 50}}, Rect{{0, 0}, {50, 1e300}}, Rect{{-1e300, 0}, {50, 50}},
                           Rect{{0, -1e300}, {50, 50}}}) {
    EXPECT_DEATH(mirror->show(rect, false), "fatal error: a size or position");
  }
}

}  // namespace
}  // namespace quillfade
