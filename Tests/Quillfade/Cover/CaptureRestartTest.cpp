#include "Tests/Quillfade/Cover/MirrorTest.h"

namespace quillfade {
namespace {

using simulated::StreamPhase;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// Starts that overtake each other, and streams that replace each other.
using CaptureRestart = MirrorTest;

TEST_F(CaptureRestart, AStartThatIsOvertakenBeforeItsContentCameEndsSilently) {
  desktop.capture().contentAnswering.isHeld = true;
  show();
  mirror->screensChanged();
  desktop.runLoop().settle();
  contentRequest(0)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_THAT(streams(), IsEmpty());
  contentRequest(1)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_EQ(streams().size(), 1U);
  EXPECT_NE(mirror->stream(), nullptr);
}

TEST_F(CaptureRestart, ContentThatComesInTheWrongOrderStartsOnlyTheLatest) {
  desktop.capture().contentAnswering.isHeld = true;
  show();
  mirror->screensChanged();
  desktop.runLoop().settle();
  contentRequest(1)->answer(desktop.capture().content);
  contentRequest(0)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_EQ(streams().size(), 1U);
  EXPECT_THAT(desktop.capture().runningStreams(), ElementsAre(streams().front()));
}

TEST_F(CaptureRestart, AStartThatIsOvertakenWhileItsCaptureBeginsStopsItsOwnStream) {
  desktop.capture().startAnswering.isHeld = true;
  showAndStart();
  mirror->screensChanged();
  desktop.runLoop().settle();
  ASSERT_EQ(streams().size(), 2U);
  streams()[0]->startRequest()->answer({});
  desktop.runLoop().settle();
  EXPECT_EQ(streams()[0]->phase(), StreamPhase::stopped);
  EXPECT_EQ(mirror->stream(), nullptr);
  EXPECT_THAT(logMessages(), Not(Contains("stream started, excluding 0 window(s)")));
  streams()[1]->startRequest()->answer({});
  desktop.runLoop().settle();
  EXPECT_THAT(desktop.capture().runningStreams(), ElementsAre(streams()[1]));
  EXPECT_EQ(countLogged("stream started, excluding 0 window(s)"), 1U);
}

TEST_F(CaptureRestart, AnOvertakenStartThatFinishesLastStopsItsOwnStream) {
  desktop.capture().startAnswering.isHeld = true;
  showAndStart();
  mirror->screensChanged();
  desktop.runLoop().settle();
  streams()[1]->startRequest()->answer({});
  desktop.runLoop().settle();
  const auto installed = mirror->stream();
  streams()[0]->startRequest()->answer({});
  desktop.runLoop().settle();
  EXPECT_EQ(mirror->stream(), installed);
  EXPECT_THAT(desktop.capture().runningStreams(), ElementsAre(streams()[1]));
}

TEST_F(CaptureRestart, HidingBeforeTheContentCameEndsTheStart) {
  desktop.capture().contentAnswering.isHeld = true;
  showAndStart();
  mirror->hide();
  contentRequest(0)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_THAT(streams(), IsEmpty());
  EXPECT_EQ(logMessages().back(), "hide");
}

TEST_F(CaptureRestart, HidingWhileTheCaptureBeginsStopsTheNewStream) {
  desktop.capture().startAnswering.isHeld = true;
  showAndStart();
  mirror->hide();
  newestStream()->startRequest()->answer({});
  desktop.runLoop().settle();
  EXPECT_EQ(newestStream()->phase(), StreamPhase::stopped);
  EXPECT_EQ(mirror->stream(), nullptr);
  EXPECT_EQ(logMessages().back(), "hide");
}

TEST_F(CaptureRestart, AStaleStreamThatDoesNotStopIsIgnored) {
  desktop.capture().startAnswering.isHeld = true;
  desktop.capture().stopAnswering.failure = "It would not stop.";
  showAndStart();
  mirror->hide();
  newestStream()->startRequest()->answer({});
  desktop.runLoop().settle();
  EXPECT_EQ(logMessages().back(), "hide");
  EXPECT_FALSE(newestStream()->isHeld());
}

TEST_F(CaptureRestart, AStaleStartThatFailsStillLogsAndStillShowsIt) {
  desktop.capture().contentAnswering.isHeld = true;
  show();
  mirror->screensChanged();
  desktop.runLoop().settle();
  contentRequest(0)->fail("Too late.");
  desktop.runLoop().settle();
  EXPECT_EQ(logMessages().back(), "stream start failed: Too late.");
  EXPECT_EQ(visibleStatus(), failureText);
}

TEST_F(CaptureRestart, AFailureAfterHidingIsOnlyLogged) {
  desktop.capture().contentAnswering.isHeld = true;
  showAndStart();
  mirror->hide();
  contentRequest(0)->fail("Too late.");
  desktop.runLoop().settle();
  EXPECT_EQ(logMessages().back(), "stream start failed: Too late.");
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(CaptureRestart, TheOldStreamStopsOnlyAfterTheNewOneRuns) {
  showAndStart();
  desktop.record().clear();
  mirror->screensChanged();
  desktop.runLoop().settle();
  EXPECT_THAT(desktop.record().startingWith("stream"),
              ElementsAre("stream 2: make", "stream 2: add output", "stream 2: start", "stream 2: started",
                          "stream 1: stop", "stream 1: stopped", "stream 1: release"));
}

TEST_F(CaptureRestart, TheNewStreamIsInPlaceWhileTheOldOneStops) {
  showAndStart();
  const auto old = mirror->stream();
  desktop.capture().stopAnswering.isHeld = true;
  mirror->screensChanged();
  desktop.runLoop().settle();
  EXPECT_NE(mirror->stream(), old);
  EXPECT_EQ(countLogged("stream started, excluding 0 window(s)"), 1U);
  streams()[0]->stopRequest()->answer({});
  desktop.runLoop().settle();
  EXPECT_EQ(countLogged("stream started, excluding 0 window(s)"), 2U);
}

TEST_F(CaptureRestart, AReplacedStreamThatDoesNotStopIsIgnored) {
  showAndStart();
  desktop.capture().stopAnswering.failure = "It would not stop.";
  mirror->screensChanged();
  desktop.runLoop().settle();
  EXPECT_EQ(logMessages().back(), "stream started, excluding 0 window(s)");
  EXPECT_EQ(countLogged("stream started, excluding 0 window(s)"), 2U);
}

TEST_F(CaptureRestart, ARestartThatFailsKeepsTheOlderStreamWhoseNextFrameHidesTheFailure) {
  showAndStart();
  const auto older = mirror->stream();
  desktop.capture().startAnswering.failure = "No frames.";
  mirror->screensChanged();
  desktop.runLoop().settle();
  EXPECT_EQ(visibleStatus(), failureText);
  EXPECT_EQ(mirror->stream(), older);
  deliver(simulated::completeFrame(), streams()[0]);
  EXPECT_EQ(visibleStatus(), "");
}

TEST_F(CaptureRestart, EveryStartUsesAFreshConfiguration) {
  showAndStart();
  desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, 1, 1}});
  mirror->screensChanged();
  desktop.runLoop().settle();
  EXPECT_EQ(streams()[0]->configuration().width, 1600);
  EXPECT_EQ(streams()[1]->configuration().width, 800);
}

}  // namespace
}  // namespace quillfade
