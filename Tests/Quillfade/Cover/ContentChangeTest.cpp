// Changes of the window list that the desktop announces: a mirror checks at once, one check at a time.
#include "Quillfade/Cover/ExclusionRules.h"
#include "Tests/Quillfade/Cover/MirrorTest.h"

namespace quillfade {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class ContentChange : public MirrorTest {
 protected:
  [[nodiscard]] std::size_t requestCount() const { return desktop.capture().contentRequests().size(); }

  void announce() {
    desktop.capture().announceChange();
    desktop.runLoop().settle();
  }
};

TEST_F(ContentChange, AnOverlayThatOpensLeavesThePictureAtOnce) {
  showAndStart();
  openOverlay(7);
  announce();
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
  EXPECT_EQ(countLogged(restarting), 1U);
  EXPECT_THAT(desktop.capture().runningStreams(), ElementsAre(newestStream()));
}

TEST_F(ContentChange, AnUnchangedSetRestartsNothingAndLogsNothing) {
  openOverlay(7);
  showAndStart();
  const Strings before = logMessages();
  for (int times = 0; times < 10; ++times) announce();
  EXPECT_EQ(requestCount(), 11U);
  EXPECT_EQ(logMessages(), before);
  EXPECT_EQ(streams().size(), 1U);
}

TEST_F(ContentChange, ChangesDuringACheckAreCheckedTogetherWhenItEnds) {
  showAndStart();
  desktop.capture().contentAnswering.isHeld = true;
  announce();
  for (int times = 0; times < 5; ++times) announce();
  EXPECT_EQ(requestCount(), 2U);
  contentRequest(1)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_EQ(requestCount(), 3U);
  contentRequest(2)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_EQ(requestCount(), 3U);
}

TEST_F(ContentChange, ChangesDuringAStartWaitForItsEnd) {
  desktop.capture().startAnswering.isHeld = true;
  showAndStart();
  openOverlay(7);
  announce();
  EXPECT_EQ(requestCount(), 1U);
  EXPECT_EQ(countLogged(restarting), 0U);
  desktop.capture().startAnswering.isHeld = false;
  newestStream()->startRequest()->answer({});
  desktop.runLoop().settle();
  EXPECT_EQ(countLogged(restarting), 1U);
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
}

TEST_F(ContentChange, ACheckThatFailsIsFollowedByTheNext) {
  showAndStart();
  desktop.capture().contentAnswering.failure = "Not now.";
  announce();
  EXPECT_EQ(countLogged("exclusion refresh failed: Not now."), 1U);
  desktop.capture().contentAnswering.failure = std::nullopt;
  openOverlay(7);
  announce();
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
}

// An overlay that comes and goes as often as the desktop can report.
class BlinkingOverlay : public ContentChange {
 protected:
  static constexpr double period = 0.02;

  void SetUp() override { showAndStart(); }

  void blink(int times) {
    for (int time = 0; time < times; ++time) {
      openOverlay(7);
      announce();
      pass(period / 2);
      desktop.capture().content.windows.clear();
      announce();
      pass(period / 2);
    }
  }
  void pass(double seconds) {
    desktop.runLoop().advance(seconds);
    desktop.runLoop().settle();
  }
};

TEST_F(BlinkingOverlay, RestartsTheCaptureAtMostTwiceASecondBesidesTheTimer) {
  blink(500);  // ten seconds
  EXPECT_LE(countLogged(restarting), 2U * 10 + 10 * 2 / 3 + 1);
  EXPECT_GE(countLogged(restarting), 10U);
}

TEST_F(BlinkingOverlay, IsNeverAdmittedToThePicture) {
  blink(100);
  for (const auto& stream : streams()) {
    EXPECT_THAT(stream->filter().holdingBack->admitted, testing::Not(testing::Contains(7U)));
    for (const auto& admitted : stream->admissions()) EXPECT_THAT(admitted, testing::Not(testing::Contains(7U)));
  }
}

TEST_F(BlinkingOverlay, IsOnTheListWithinHalfASecondOnceItStays) {
  blink(20);
  openOverlay(7);
  announce();
  pass(0.5);
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
  EXPECT_EQ(newestStream()->filter().excludingWindows.size(), 1U);
}

TEST_F(BlinkingOverlay, IsOffTheListWithinHalfASecondOnceItIsGone) {
  blink(20);
  pass(0.5);
  EXPECT_EQ(mirror->currentExclusionKey(), "");
  const std::size_t restarts = countLogged(restarting);
  pass(5);
  EXPECT_EQ(countLogged(restarting), restarts);
}

TEST_F(BlinkingOverlay, DoesNotDelayOrdinaryWindows) {
  blink(1);
  desktop.capture().content.windows = {listedWindow(3, "org.example.editor", 0)};
  announce();
  EXPECT_THAT(newestStream()->admissions().back(), testing::Contains(3U));
}

TEST_F(BlinkingOverlay, DoesNotDelayAVisibleWindowThatBecomesAnOverlay) {
  desktop.capture().content.windows = {listedWindow(3, "org.example.notes", 0)};
  announce();
  openOverlay(7);
  announce();
  ASSERT_EQ(mirror->currentExclusionKey(), "7");
  desktop.capture().content.windows.front().windowLayer = 500;
  announce();
  EXPECT_EQ(mirror->currentExclusionKey(), "3,7");
  EXPECT_EQ(newestStream()->filter().excludingWindows.size(), 2U);
}

TEST_F(BlinkingOverlay, ThatIsOrdinaryInBetweenRestartsTheCaptureAtMostFourTimesASecond) {
  desktop.capture().content.windows = {listedWindow(3, "org.example.notes", 0)};
  announce();
  for (int time = 0; time < 1'000; ++time) {  // ten seconds
    desktop.capture().content.windows.front().windowLayer = time % 2 == 0 ? 500 : 0;
    announce();
    if (time % 2 == 0) {
      ASSERT_EQ(mirror->currentExclusionKey(), "3") << "At no time is it an overlay and seen.";
    }
    pass(period / 2);
  }
  EXPECT_LE(countLogged(restarting), 4U * 10 + 10 * 2 / 3 + 1);
}

TEST_F(BlinkingOverlay, DoesNotKeepTheTimerFromRestarting) {
  pass(1.3);
  openOverlay(7);
  announce();
  ASSERT_EQ(countLogged(restarting), 1U);
  openOverlay(8);
  announce();
  EXPECT_EQ(countLogged(restarting), 1U);
  pass(0.2);
  EXPECT_EQ(countLogged(restarting), 2U);
  EXPECT_EQ(mirror->currentExclusionKey(), "7,8");
}

TEST_F(BlinkingOverlay, IsForgottenWhenTheMirrorHides) {
  blink(1);
  mirror->hide();
  desktop.runLoop().settle();
  const std::size_t requests = requestCount();
  pass(5);
  EXPECT_EQ(requestCount(), requests);
  EXPECT_TRUE(desktop.runLoop().liveDelayedTasks().empty());
}

TEST_F(ContentChange, TheTimerContinuesWhateverIsAnnounced) {
  showAndStart();
  announce();
  desktop.runLoop().advance(1.5);
  desktop.runLoop().settle();
  EXPECT_EQ(requestCount(), 3U);
  // A check that never ends does not delay the timer.
  desktop.capture().contentAnswering.isHeld = true;
  announce();
  desktop.runLoop().advance(3.0);
  desktop.runLoop().settle();
  EXPECT_EQ(requestCount(), 6U);
}

TEST_F(ContentChange, AHiddenMirrorDoesNotObserve) {
  showAndStart();
  EXPECT_EQ(desktop.capture().observerCount(), 1U);
  mirror->hide();
  EXPECT_EQ(desktop.capture().observerCount(), 0U);
  announce();
  EXPECT_EQ(requestCount(), 1U);
  showAndStart();
  showAndStart();
  EXPECT_EQ(desktop.capture().observerCount(), 1U);
}

TEST_F(ContentChange, AChangeAnnouncedBeforeTheMirrorHidAsksForNothingAfterwards) {
  showAndStart();
  desktop.capture().announceChange();
  mirror->hide();
  desktop.runLoop().settle();
  EXPECT_EQ(requestCount(), 1U);
}

TEST_F(ContentChange, AStreamHoldsBackUnjudgedWindowsThatTheRulesCouldExclude) {
  desktop.capture().content.windows = {listedWindow(3, "org.example.editor", 0),
                                       listedWindow(4, "org.example.menu", 101)};
  openOverlay(7);
  showAndStart();
  const auto& holdingBack = newestStream()->filter().holdingBack;
  ASSERT_TRUE(holdingBack.has_value());
  const platform::Rect screen = desktop.screens().all().front().frame;
  EXPECT_DOUBLE_EQ(holdingBack->fromArea, 0.3 * screen.width() * screen.height());
  EXPECT_THAT(holdingBack->admitted, UnorderedElementsAre(3U, 4U));
}

TEST_F(ContentChange, WindowsOfAnySizeAreHeldBackIfAUsersRuleLeavesSomeOut) {
  const platform::Screen screen{.frame = {{0, 0}, {1000, 1000}}};
  EXPECT_DOUBLE_EQ(holdingBack(screen, {}, {{.pattern = "*.menu", .excludes = false}}).fromArea, 300'000);
  EXPECT_DOUBLE_EQ(holdingBack(screen, {}, {{.pattern = "*.notes", .excludes = true}}).fromArea, 0);
}

TEST_F(ContentChange, WindowsThatTheRulesKeepAreAdmittedAsSoonAsTheyAreJudged) {
  showAndStart();
  EXPECT_THAT(newestStream()->admissions(), IsEmpty());
  const auto stream = newestStream();
  desktop.capture().content.windows.push_back(listedWindow(3, "org.example.editor", 0));
  openOverlay(7);
  announce();
  ASSERT_FALSE(stream->admissions().empty());
  EXPECT_THAT(stream->admissions().back(), ElementsAre(3U));
}

TEST_F(ContentChange, AWindowThatCameDuringTheStartIsAdmittedToTheNewStream) {
  desktop.capture().startAnswering.isHeld = true;
  showAndStart();
  desktop.capture().content.windows.push_back(listedWindow(3, "org.example.editor", 0));
  announce();
  desktop.capture().startAnswering.isHeld = false;
  newestStream()->startRequest()->answer({});
  desktop.runLoop().settle();
  ASSERT_FALSE(newestStream()->admissions().empty());
  EXPECT_THAT(newestStream()->admissions().back(), ElementsAre(3U));
}

}  // namespace
}  // namespace quillfade
