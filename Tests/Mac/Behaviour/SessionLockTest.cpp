// Nothing of ours is on a screen that is locked or behind a screen saver.
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

class SessionLockTest : public MacTest {
 protected:
  void post(const std::string& name) {
    world.postFromLoginWindow(name);
    fake::settle();
  }
  [[nodiscard]] bool isCovered() const { return !world.windowsOnScreen().empty(); }

  static constexpr const char* locked = "com.apple.screenIsLocked";
  static constexpr const char* unlocked = "com.apple.screenIsUnlocked";
  static constexpr const char* saverStarted = "com.apple.screensaver.didstart";
  static constexpr const char* saverStopped = "com.apple.screensaver.didstop";
};

TEST_F(SessionLockTest, TheCoverGoesAndComesBack) {
  coveredLive([this] {
    for (const auto& [away, back] : {std::pair{locked, unlocked}, {saverStarted, saverStopped}}) {
      post(away);
      EXPECT_FALSE(isCovered());
      EXPECT_TRUE(world.runningStreams().empty());
      EXPECT_EQ(fake::liveTimers(), 0);
      post(back);
      EXPECT_TRUE(isCovered());
      EXPECT_EQ(world.runningStreams().size(), 1U);
    }
  });
}

TEST_F(SessionLockTest, OneSignIsEnough) {
  coveredLive([this] {
    post(saverStarted);
    post(locked);
    post(saverStopped);
    EXPECT_FALSE(isCovered());
    post(unlocked);
    EXPECT_TRUE(isCovered());
  });
}

TEST_F(SessionLockTest, ARepeatedSignChangesNothing) {
  coveredLive([this] {
    post(unlocked);
    post(unlocked);
    EXPECT_EQ(world.runningStreams(), (std::vector{1}));
    post(locked);
    post(locked);
    post(unlocked);
    EXPECT_EQ(world.windowsOnScreen().size(), 1U);
  });
}

TEST_F(SessionLockTest, OtherNotificationsDoNotMatter) {
  coveredLive([this] {
    post("com.apple.screenIsSomethingElse");
    EXPECT_TRUE(isCovered());
    EXPECT_EQ(world.runningStreams(), (std::vector{1}));
  });
}

TEST_F(SessionLockTest, AnUnlockThatWasMissedIsNoticed) {
  launched([this] {
    world.sessionSaysLocked = true;
    post(locked);
    press(keyF);
    EXPECT_FALSE(isCovered());
    world.sessionSaysLocked = false;  // and no word of it
    press(keyF);
    EXPECT_TRUE(isCovered());
  });
}

TEST_F(SessionLockTest, AMissedUnlockEndsTheScreenSaverToo) {
  launched([this] {
    world.sessionSaysLocked = true;
    post(saverStarted);
    post(locked);
    press(keyF);
    world.sessionSaysLocked = false;
    press(keyF);
    EXPECT_TRUE(isCovered());
  });
}

TEST_F(SessionLockTest, ASessionThatSaysNothingDoesNotEndALock) {
  launched([this] {
    post(locked);
    for (const bool hasSession : {true, false}) {
      world.hasSession = hasSession;
      press(keyF);
      EXPECT_FALSE(isCovered());
    }
    post(unlocked);
    press(keyF);
    EXPECT_TRUE(isCovered());
  });
}

TEST_F(SessionLockTest, AStartBehindTheLockScreenIsOneOnALockedScreen) {
  world.sessionSaysLocked = true;
  coveredLive([this] {
    EXPECT_FALSE(isCovered());
    world.sessionSaysLocked = false;
    post(unlocked);
    EXPECT_TRUE(isCovered());
  });
}

TEST_F(SessionLockTest, APermissionIsNotAskedForOnALockedScreen) {
  world.captureAllowed = false;
  launched([this] {
    post(locked);
    press(keyF);
    EXPECT_EQ(world.permissionRequests, 0);
    EXPECT_TRUE(world.alerts.empty());
  });
}

}  // namespace
}  // namespace quillfade
