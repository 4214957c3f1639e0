#include "Tests/Quillfade/Cover/MirrorTest.h"

namespace quillfade {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double interval = 1.5;

class ExclusionRefresh : public MirrorTest {
 protected:
  [[nodiscard]] std::size_t requestCount() const { return desktop.capture().contentRequests().size(); }

  void tick(int times = 1) {
    for (int count = 0; count < times; ++count) desktop.runLoop().advance(interval);
    desktop.runLoop().settle();
  }
};

TEST_F(ExclusionRefresh, TheWindowListIsReadEveryOneAndAHalfSeconds) {
  showAndStart();
  EXPECT_EQ(requestCount(), 1U);
  desktop.runLoop().advance(1.49);
  EXPECT_EQ(requestCount(), 1U);
  desktop.runLoop().advance(0.01);
  EXPECT_EQ(requestCount(), 2U);
  tick(3);
  EXPECT_EQ(requestCount(), 5U);
}

TEST_F(ExclusionRefresh, EveryRefreshAsksForTheSameContentAsTheStart) {
  showAndStart();
  tick();
  EXPECT_EQ(desktop.capture().contentRequests().front().options, desktop.capture().contentRequests().back().options);
}

TEST_F(ExclusionRefresh, ItContinuesWhileAMenuIsTracked) {
  showAndStart();
  desktop.runLoop().setTracking(true);
  tick(2);
  EXPECT_EQ(requestCount(), 3U);
}

TEST_F(ExclusionRefresh, AnUnchangedSetRestartsNothingAndLogsNothing) {
  openOverlay(7);
  showAndStart();
  const Strings before = logMessages();
  tick(10);
  EXPECT_EQ(logMessages(), before);
  EXPECT_EQ(streams().size(), 1U);
  EXPECT_EQ(mirror->generation(), 1);
}

TEST_F(ExclusionRefresh, AnOverlayThatOpensLeavesThePictureWithinOneInterval) {
  showAndStart();
  openOverlay(7);
  desktop.capture().content.windows.back().frame.size = {720, 900};
  tick();
  ASSERT_EQ(streams().size(), 2U);
  EXPECT_EQ(newestStream()->filter().excludingWindows.size(), 1U);
  EXPECT_THAT(desktop.capture().runningStreams(), ElementsAre(newestStream()));
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
}

TEST_F(ExclusionRefresh, ARuleThatTheUserWritesHoldsWithinOneInterval) {
  openOverlay(7);
  showAndStart();
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
  const auto owner = desktop.capture().content.windows.back().owningApplication->bundleIdentifier;
  desktop.rulesFile().content = platform::RulesFileEntries{{"neverExclude", "1", owner}};
  tick();
  EXPECT_EQ(mirror->currentExclusionKey(), "");
  EXPECT_TRUE(newestStream()->filter().excludingWindows.empty());
}

TEST_F(ExclusionRefresh, AChangeIsLoggedBeforeTheRestart) {
  showAndStart();
  openOverlay(7);
  tick();
  const Strings messages = logMessages();
  const Strings last(messages.end() - 4, messages.end());
  EXPECT_THAT(last,
              ElementsAre(restarting, R"(high-layer candidates: ["org.example.notes/layer500/1440x900"])",
                          R"(excluded: ["org.example.notes/layer500"])", "stream started, excluding 1 window(s)"));
}

TEST_F(ExclusionRefresh, AnOverlayThatClosesRestartsTheCapture) {
  openOverlay(7);
  showAndStart();
  desktop.capture().content.windows.clear();
  tick();
  EXPECT_EQ(countLogged(restarting), 1U);
  EXPECT_EQ(mirror->currentExclusionKey(), "");
}

TEST_F(ExclusionRefresh, AnOverlayUnderANewNumberRestartsTheCapture) {
  openOverlay(7);
  showAndStart();
  desktop.capture().content.windows.front().windowID = 8;
  tick();
  EXPECT_EQ(countLogged(restarting), 1U);
}

TEST_F(ExclusionRefresh, AnOverlayThatMovesOrGrowsOrRisesRestartsNothing) {
  openOverlay(7);
  showAndStart();
  auto& window = desktop.capture().content.windows.front();
  window.frame = {{50, 60}, {1300, 800}};
  window.windowLayer = 900;
  tick();
  EXPECT_EQ(streams().size(), 1U);
}

TEST_F(ExclusionRefresh, TheSameWindowsInAnotherOrderRestartNothing) {
  openOverlay(7);
  openOverlay(3);
  showAndStart();
  std::ranges::reverse(desktop.capture().content.windows);
  tick();
  EXPECT_EQ(streams().size(), 1U);
}

TEST_F(ExclusionRefresh, AnOrdinaryWindowThatOpensRestartsNothing) {
  showAndStart();
  desktop.capture().content.windows.push_back(listedWindow(9, "org.example.text", 0));
  tick();
  EXPECT_EQ(streams().size(), 1U);
}

TEST_F(ExclusionRefresh, TheEmptySetRestartsNothingBeforeAnyStartRecordedAKey) {
  desktop.capture().contentAnswering.failure = "Not yet.";
  showAndStart();
  desktop.capture().contentAnswering.failure = std::nullopt;
  tick();
  EXPECT_EQ(requestCount(), 2U);
  EXPECT_EQ(countLogged(restarting), 0U);
  EXPECT_THAT(streams(), IsEmpty());
}

TEST_F(ExclusionRefresh, AFailingRequestIsLoggedAtEveryTickAndLeavesTheStream) {
  showAndStart();
  const auto stream = mirror->stream();
  desktop.capture().contentAnswering.failure = "Not permitted.";
  tick(3);
  EXPECT_EQ(countLogged("exclusion refresh failed: Not permitted."), 3U);
  EXPECT_EQ(mirror->stream(), stream);
  EXPECT_EQ(visibleStatus(), waitingText);
}

TEST_F(ExclusionRefresh, EveryShownMirrorLogsItsOwnFailures) {
  const auto second = std::make_shared<LiveMirror>(desktop);
  showAndStart();
  second->show(region, false);
  desktop.runLoop().settle();
  desktop.capture().contentAnswering.failure = "Not permitted.";
  tick(2);
  EXPECT_EQ(countLogged("exclusion refresh failed: Not permitted."), 4U);
}

TEST_F(ExclusionRefresh, ARestartThatFailsIsNotRetriedUntilTheSetChangesAgain) {
  showAndStart();
  openOverlay(7);
  desktop.capture().startAnswering.failure = "No frames.";
  tick(4);
  EXPECT_EQ(streams().size(), 2U);
  EXPECT_EQ(countLogged(restarting), 1U);
  EXPECT_EQ(visibleStatus(), failureText);
  desktop.capture().startAnswering.failure = std::nullopt;
  openOverlay(8);
  tick();
  EXPECT_EQ(streams().size(), 3U);
  EXPECT_EQ(countLogged(restarting), 2U);
}

TEST_F(ExclusionRefresh, WithoutAScreenNothingIsAskedFor) {
  showAndStart();
  desktop.arrangeScreens({});
  tick(2);
  EXPECT_EQ(requestCount(), 1U);
}

TEST_F(ExclusionRefresh, TheScreenIsChosenWhenTheContentIsAskedFor) {
  showAndStart();
  desktop.capture().contentAnswering.isHeld = true;
  tick();
  // Large on the old screen, small on the new one.
  openOverlay(7);
  desktop.arrangeScreens({{{{0, 0}, {9000, 9000}}, 1, 2}});
  contentRequest(1)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_EQ(countLogged(restarting), 1U);
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
}

TEST_F(ExclusionRefresh, TicksStopWhenTheMirrorHides) {
  showAndStart();
  mirror->hide();
  tick(3);
  EXPECT_EQ(requestCount(), 1U);
  EXPECT_THAT(desktop.runLoop().liveTimers(), IsEmpty());
}

TEST_F(ExclusionRefresh, TicksAfterTheMirrorIsGoneDoNothing) {
  showAndStart();
  mirror = nullptr;
  tick(3);
  EXPECT_EQ(requestCount(), 1U);
}

TEST_F(ExclusionRefresh, ShowingTwiceLeavesOneTimer) {
  showAndStart();
  showAndStart();
  const auto timers = desktop.runLoop().liveTimers();
  ASSERT_EQ(timers.size(), 1U);
  EXPECT_EQ(timers.front()->interval, std::chrono::milliseconds(1500));
  EXPECT_TRUE(timers.front()->inCommonModes);
}

TEST_F(ExclusionRefresh, ARefreshUnderWayWhenTheMirrorHidesEndsWithoutRestarting) {
  showAndStart();
  desktop.capture().contentAnswering.isHeld = true;
  tick();
  openOverlay(7);
  mirror->hide();
  contentRequest(1)->answer(desktop.capture().content);
  desktop.capture().contentAnswering.isHeld = false;
  desktop.runLoop().settle();
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
  EXPECT_EQ(logMessages().back(), restarting);
  EXPECT_EQ(requestCount(), 3U);
  EXPECT_EQ(streams().size(), 1U);
  EXPECT_THAT(desktop.capture().runningStreams(), IsEmpty());
}

TEST_F(ExclusionRefresh, ARefreshThatHasNotBegunWhenTheMirrorHidesAsksForNothing) {
  showAndStart();
  const auto timer = desktop.runLoop().liveTimers().front();
  timer->job();
  mirror->hide();
  desktop.runLoop().settle();
  EXPECT_EQ(requestCount(), 1U);
}

TEST_F(ExclusionRefresh, TicksDoNotWaitForOneAnother) {
  showAndStart();
  desktop.capture().contentAnswering.isHeld = true;
  tick(3);
  EXPECT_EQ(requestCount(), 4U);
}

TEST_F(ExclusionRefresh, OfSeveralRefreshesTheFirstToSeeTheChangeRestarts) {
  showAndStart();
  desktop.capture().contentAnswering.isHeld = true;
  tick(3);
  openOverlay(7);
  for (const std::size_t index : {2U, 1U, 3U}) contentRequest(index)->answer(desktop.capture().content);
  desktop.capture().contentAnswering.isHeld = false;
  desktop.runLoop().settle();
  EXPECT_EQ(countLogged(restarting), 1U);
  EXPECT_EQ(streams().size(), 2U);
}

TEST_F(ExclusionRefresh, AStaleAnswerMayRestartOnceMoreAndTheNextTickCorrectsIt) {
  showAndStart();
  const platform::ShareableContent before = desktop.capture().content;
  desktop.capture().contentAnswering.isHeld = true;
  tick(2);
  openOverlay(7);
  desktop.capture().contentAnswering.isHeld = false;
  contentRequest(2)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  contentRequest(1)->answer(before);
  desktop.runLoop().settle();
  EXPECT_EQ(countLogged(restarting), 2U);
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
  EXPECT_EQ(desktop.capture().runningStreams().size(), 1U);
}

TEST_F(ExclusionRefresh, TheRestartRecordsTheKeyOfItsOwnContent) {
  showAndStart();
  openOverlay(7);
  desktop.capture().contentAnswering.isHeld = true;
  tick();
  contentRequest(1)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
  openOverlay(8);
  contentRequest(2)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_EQ(mirror->currentExclusionKey(), "7,8");
}

}  // namespace
}  // namespace quillfade
