#include "Platform/Linux/Session/LockSigns.h"

#include <gtest/gtest.h>

namespace platform::linux::session {
namespace {

TEST(LockSigns, NothingShownMeansUnlocked) { EXPECT_FALSE(LockSigns{}.isLocked()); }

TEST(LockSigns, EachSignLocksAndAllMustGo) {
  LockSigns signs;
  signs.set("one", true);
  EXPECT_TRUE(signs.isLocked());
  signs.set("two", true);
  signs.set("one", false);
  EXPECT_TRUE(signs.isLocked());
  signs.set("two", false);
  EXPECT_FALSE(signs.isLocked());
}

TEST(LockSigns, ALockersWindowAloneIsOnlyALargeWindow) {
  LockSigns signs;
  signs.set(LockSigns::lockerWindow, true);
  EXPECT_FALSE(signs.isLocked());
  signs.set("one", true);
  EXPECT_TRUE(signs.isLocked());
}

TEST(LockSigns, ARequestLocksAtOnceUntilItIsWithdrawn) {
  LockSigns signs;
  signs.lockRequested();
  EXPECT_TRUE(signs.isLocked());
  signs.unlockRequested();
  EXPECT_FALSE(signs.isLocked());
}

TEST(LockSigns, ARequestThatNothingFollowsIsGivenUp) {
  LockSigns signs;
  signs.lockRequested();
  signs.requestGrewOld();
  EXPECT_FALSE(signs.isLocked());
}

TEST(LockSigns, ARequestThatALockerFollowsLastsAsLongAsTheLocker) {
  for (const std::string_view sign : {std::string_view("one"), LockSigns::lockerWindow}) {
    LockSigns signs;
    signs.lockRequested();
    signs.set(sign, false);
    EXPECT_TRUE(signs.isLocked()) << "A sign that never showed ended the request.";
    signs.set(sign, true);
    signs.requestGrewOld();
    EXPECT_TRUE(signs.isLocked());
    signs.set(sign, false);
    EXPECT_FALSE(signs.isLocked());
  }
}

TEST(LockSigns, WithdrawingARequestDoesNotUnlockWhatOthersLocked) {
  LockSigns signs;
  signs.lockRequested();
  signs.set("one", true);
  signs.unlockRequested();
  EXPECT_TRUE(signs.isLocked());
}

}  // namespace
}  // namespace platform::linux::session
