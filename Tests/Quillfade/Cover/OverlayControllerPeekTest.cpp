#include "Tests/Quillfade/Cover/ControllerTest.h"

namespace quillfade {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Peek = ControllerTest;

TEST_F(Peek, DoesNothingWhileTheCoverIsOff) {
  make().setRegion(region);
  controller->peek();
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), IsEmpty());
  desktop.runLoop().advance(10);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(Peek, HidesTheCoverForFiveSeconds) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    switchedOn(style);
    controller->peek();
    EXPECT_THAT(shownWindows(), IsEmpty());
    EXPECT_TRUE(controller->isEnabled());
    desktop.runLoop().advance(4.999);
    EXPECT_THAT(shownWindows(), IsEmpty());
    desktop.runLoop().advance(0.001);
    EXPECT_THAT(shownFrames(), ElementsAre(region));
    controller->setEnabled(false);
  }
}

TEST_F(Peek, LastsAsLongAsItIsTold) {
  switchedOn(CoverStyle::solid);
  controller->peek(2);
  desktop.runLoop().advance(1.9);
  EXPECT_THAT(shownWindows(), IsEmpty());
  desktop.runLoop().advance(0.1);
  EXPECT_THAT(shownWindows(), SizeIs(1));
}

TEST_F(Peek, DuringAPeekRestartsTheFullTime) {
  switchedOn(CoverStyle::live);
  controller->peek();
  desktop.runLoop().advance(4);
  controller->peek();
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), SizeIs(1));
  desktop.runLoop().advance(4.9);
  EXPECT_THAT(shownWindows(), IsEmpty());
  desktop.runLoop().advance(0.1);
  EXPECT_THAT(shownWindows(), SizeIs(1));
}

TEST_F(Peek, DoesNotBringBackACoverThatWasSwitchedOffMeanwhile) {
  switchedOn(CoverStyle::live);
  controller->peek();
  controller->setEnabled(false);
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), IsEmpty());
  desktop.runLoop().advance(10);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(Peek, IsCancelledBySwitchingOn) {
  switchedOn(CoverStyle::live);
  controller->peek();
  controller->setEnabled(true);
  EXPECT_THAT(shownWindows(), SizeIs(1));
  desktop.runLoop().advance(10);
  EXPECT_THAT(shownWindows(), SizeIs(1));
}

TEST_F(Peek, IsCancelledByARefusalToSwitchOn) {
  switchedOn(CoverStyle::live);
  controller->peek();
  desktop.arrangeScreens({});
  controller->setEnabled(true);
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), IsEmpty());
}

TEST_F(Peek, DoesNothingOnceTheControllerIsGone) {
  switchedOn(CoverStyle::live);
  controller->peek();
  controller = nullptr;
  desktop.runLoop().advance(10);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(Peek, EndsEarlyWhenTheMenuClosesAndThenEachScreenHasTwoMirrors) {
  desktop.arrangeScreens({leftScreen, rightScreen});
  switchedOn(CoverStyle::live, {{1000, 100}, {1000, 500}});
  controller->peek();
  controller->setMenuOpen(true);
  EXPECT_THAT(shownWindows(), IsEmpty());
  controller->setMenuOpen(false);
  EXPECT_THAT(shownWindows(), SizeIs(2));
  desktop.runLoop().advance(5);
  EXPECT_THAT(shownWindows(), SizeIs(4));
  EXPECT_THAT(controller->liveMirrors(), SizeIs(4));
  controller->setEnabled(false);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(Peek, ContinuesWhileTheMenuIsOpen) {
  switchedOn(CoverStyle::solid);
  controller->peek();
  desktop.runLoop().setTracking(true);
  controller->setMenuOpen(true);
  desktop.runLoop().advance(5);
  EXPECT_THAT(shownWindows(), SizeIs(1));
}

}  // namespace
}  // namespace quillfade
