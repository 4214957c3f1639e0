#include "Tests/Quillfade/Application/CommandsTest.h"

namespace quillfade {
namespace {

using platform::Rect;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using WholeScreen = CommandsTest;

TEST_F(WholeScreen, IsTheUnionOfAllScreens) {
  twoScreens();
  launch();
  delegate->wholeScreen();
  EXPECT_EQ(overlay().region(), (Rect{{0, 0}, {3360, 1080}}));
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(WholeScreen, IncludesGapsAndNegativeCoordinates) {
  desktop.arrangeScreens(
      {{{{0, 0}, {1000, 1000}}, 1, 1}, {{{-2000, -300}, {1000, 500}}, 2, 1}, {{{500, 1500}, {100, 100}}, 3, 1}});
  launch();
  delegate->wholeScreen();
  EXPECT_EQ(overlay().region(), (Rect{{-2000, -300}, {3000, 1900}}));
}

TEST_F(WholeScreen, WithoutScreensChangesNothing) {
  launch();
  overlay().setRegion(region);
  desktop.arrangeScreens({});
  const auto writes = desktop.settings().writes().size();
  delegate->wholeScreen();
  EXPECT_EQ(overlay().region(), region);
  EXPECT_EQ(desktop.settings().writes().size(), writes);
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(WholeScreen, StoresTheRegionBeforeItSwitchesOn) {
  launch();
  delegate->wholeScreen();
  EXPECT_LT(placeOf("settings: region"), placeOf("settings: enabled"));
}

TEST_F(WholeScreen, WhileTheLiveCoverIsOnLeavesTwoMirrorsPerScreen) {
  launchWithCoverOn();
  delegate->wholeScreen();
  EXPECT_THAT(overlay().liveMirrors(), SizeIs(2));
}

using SelectArea = CommandsTest;

TEST_F(SelectArea, StoresTheDraggedAreaAndSwitchesOn) {
  launch();
  delegate->selectArea();
  selectByDragging({200, 300}, {700, 500});
  EXPECT_EQ(overlay().region(), (Rect{{200, 300}, {500, 200}}));
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{200, 300}, {500, 200}}));
}

TEST_F(SelectArea, UncoversTheScreenWhileItRuns) {
  launchWithCoverOn();
  delegate->selectArea();
  EXPECT_FALSE(overlay().isEnabled());
  EXPECT_THAT(shownWindows(), SizeIs(1));
  EXPECT_EQ(shownWindows().front()->attributes.level, platform::screenSaverLevel);
  EXPECT_LT(placeOf("window 1: order out"), placeOf("window 2: make"));
}

TEST_F(SelectArea, CompletedWhileTheCoverWasOnShowsOneCoverOverTheNewArea) {
  launchWithCoverOn();
  delegate->selectArea();
  selectByDragging({200, 300}, {700, 500});
  EXPECT_EQ(overlay().region(), (Rect{{200, 300}, {500, 200}}));
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{200, 300}, {500, 200}}));
}

TEST_F(SelectArea, CancelledWhileTheCoverWasOnBringsItBackWithTheOldRegion) {
  launchWithCoverOn();
  delegate->selectArea();
  cancelSelection();
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

TEST_F(SelectArea, CancelledWhileTheCoverWasOffLeavesItOff) {
  launch();
  overlay().setRegion(region);
  delegate->selectArea();
  cancelSelection();
  EXPECT_FALSE(overlay().isEnabled());
  EXPECT_EQ(overlay().region(), region);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(SelectArea, AnAreaThatIsTooSmallCountsAsCancelled) {
  launchWithCoverOn();
  delegate->selectArea();
  selectByDragging({200, 300}, {210, 310});
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_EQ(overlay().region(), region);
}

TEST_F(SelectArea, ChosenAgainWhileItRunsIsDropped) {
  launchWithCoverOn();
  delegate->selectArea();
  delegate->selectArea();
  EXPECT_FALSE(overlay().isEnabled());
  EXPECT_THAT(delegate->selector().windows(), SizeIs(1));
  cancelSelection();
  // The running selection's completion decides: the cover was on when that selection began.
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_FALSE(selecting());
}

TEST_F(SelectArea, ChosenAgainPassesTheGateAgain) {
  launchWithCoverOn();
  delegate->selectArea();
  const int before = desktop.screenCaptureAccess().preflightCount();
  delegate->selectArea();
  EXPECT_EQ(desktop.screenCaptureAccess().preflightCount(), before + 1);
  cancelSelection();
}

TEST_F(SelectArea, WhileTheSessionIsLockedLeavesTheCoverAndWhatIsStoredAsTheyWere) {
  launchWithCoverOn();
  desktop.sessionLock().setLocked(true);
  const auto writes = desktop.settings().writes().size();
  delegate->selectArea();
  EXPECT_FALSE(selecting());
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_EQ(desktop.settings().writes().size(), writes);
  desktop.sessionLock().setLocked(false);
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

TEST_F(SelectArea, ThatLockingEndsBringsTheCoverBackWhenTheSessionIsUnlocked) {
  launchWithCoverOn();
  delegate->selectArea();
  desktop.sessionLock().setLocked(true);
  desktop.runLoop().settle();
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
  desktop.sessionLock().setLocked(false);
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

TEST_F(SelectArea, EndsSilentlyWhenTheDelegateIsGone) {
  launch();
  delegate->selectArea();
  desktop.windows().pressKey({platform::escapeKeyCode});
  delegate = nullptr;
  desktop.runLoop().settle();
  EXPECT_THAT(shownWindows(), IsEmpty());
}

}  // namespace
}  // namespace quillfade
