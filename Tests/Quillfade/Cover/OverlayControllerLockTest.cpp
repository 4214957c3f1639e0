// A cover, and a session that is locked and unlocked.

#include "Tests/Quillfade/Cover/ControllerTest.h"

namespace quillfade {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SessionLocked : public ControllerTest {
 protected:
  // As the delegate passes it on.
  void setLocked(bool locked) {
    desktop.sessionLock().setLocked(locked);
    controller->sessionLockChanged();
    desktop.runLoop().settle();
  }
};

TEST_F(SessionLocked, TheCoverIsAwayUntilTheSessionIsUnlocked) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    switchedOn(style);
    setLocked(true);
    EXPECT_THAT(shownWindows(), IsEmpty());
    EXPECT_TRUE(controller->isEnabled());
    setLocked(false);
    EXPECT_THAT(shownFrames(), ElementsAre(region));
    controller->setEnabled(false);
  }
}

TEST_F(SessionLocked, TheLockIsNotStored) {
  switchedOn(CoverStyle::live);
  const auto written = desktop.settings().writes().size();
  setLocked(true);
  setLocked(false);
  EXPECT_EQ(desktop.settings().writes().size(), written);
  EXPECT_EQ(stateChanges, 0);
}

TEST_F(SessionLocked, ACoverThatIsOffStaysOff) {
  make().setRegion(region);
  setLocked(true);
  setLocked(false);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(SessionLocked, WhatIsSwitchedOnMeanwhileShowsAfterUnlocking) {
  make().setRegion(region);
  setLocked(true);
  controller->setEnabled(true);
  EXPECT_TRUE(controller->isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
  setLocked(false);
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

TEST_F(SessionLocked, WhatIsSwitchedOffMeanwhileStaysOff) {
  switchedOn(CoverStyle::live);
  setLocked(true);
  controller->setEnabled(false);
  setLocked(false);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(SessionLocked, ACoverThatWasOnAtTheLastRunWaitsForUnlocking) {
  store("enabled", true);
  store("region", std::string("{{100, 100}, {800, 600}}"));
  make();
  setLocked(true);
  controller->restore();
  EXPECT_TRUE(controller->isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
  setLocked(false);
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

TEST_F(SessionLocked, NoOtherEventBringsTheCoverBackEarly) {
  switchedOn(CoverStyle::live);
  setLocked(true);
  controller->screensChanged();
  EXPECT_THAT(shownWindows(), IsEmpty());
  controller->setMenuOpen(true);
  controller->setMenuOpen(false);
  EXPECT_THAT(shownWindows(), IsEmpty());
  controller->setRegion({{0, 0}, {300, 300}});
  controller->setStyle(CoverStyle::solid);
  EXPECT_THAT(shownWindows(), IsEmpty());
  controller->peek(1);
  desktop.runLoop().advance(2);
  EXPECT_THAT(shownWindows(), IsEmpty());
  setLocked(false);
  EXPECT_THAT(shownFrames(), ElementsAre(platform::Rect{{0, 0}, {300, 300}}));
}

TEST_F(SessionLocked, APeekThatOutlastsTheLockEndsInItsOwnTime) {
  switchedOn(CoverStyle::live);
  controller->peek(5);
  setLocked(true);
  desktop.runLoop().advance(2);
  setLocked(false);
  EXPECT_THAT(shownWindows(), IsEmpty());
  desktop.runLoop().advance(3);
  EXPECT_THAT(shownWindows(), SizeIs(1));
}

TEST_F(SessionLocked, AnOpenMenuKeepsTheCoverAwayAfterUnlocking) {
  switchedOn(CoverStyle::live);
  controller->setMenuOpen(true);
  setLocked(true);
  setLocked(false);
  EXPECT_THAT(shownWindows(), IsEmpty());
  controller->setMenuOpen(false);
  EXPECT_THAT(shownWindows(), SizeIs(1));
}

TEST_F(SessionLocked, SeveralReasonsToLockOneAfterTheOtherLeaveOneMirror) {
  switchedOn(CoverStyle::live);
  setLocked(true);
  setLocked(true);
  setLocked(false);
  setLocked(false);
  EXPECT_THAT(shownWindows(), SizeIs(1));
}

TEST_F(SessionLocked, ALockedSessionCapturesNothing) {
  switchedOn(CoverStyle::live);
  ASSERT_THAT(desktop.capture().runningStreams(), SizeIs(1));
  setLocked(true);
  EXPECT_THAT(desktop.capture().runningStreams(), IsEmpty());
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), IsEmpty());
}

}  // namespace
}  // namespace quillfade
