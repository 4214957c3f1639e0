// Hot keys that KWin gives.

#include "Tests/Linux/Shortcuts/SessionHotKeysFixture.h"

namespace platform::linux::shortcuts {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class KWinHotKeys : public SessionHotKeysFixture {
 protected:
  qt::KWinKeys kwin_{qt::busAddress()};
};

TEST_F(KWinHotKeys, EachIsRegisteredUnderItsNameAndThenGetsItsKeys) {
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  EXPECT_THAT(kwin_.texts("doRegister"), ElementsAre("org.quillfade.Quillfade, toggle, Quillfade, Hide Annotations",
                                                     "org.quillfade.Quillfade, peek, Quillfade, Peek for 5 Seconds"));
  // Meta, Control, Alt and the letter; as default, and in force.
  EXPECT_THAT(kwin_.texts("setShortcutKeys"),
              ElementsAre("toggle 1c000044 0 0 0 flags 8", "toggle 1c000044 0 0 0 flags 6",
                          "peek 1c000050 0 0 0 flags 8", "peek 1c000050 0 0 0 flags 6"));
  EXPECT_EQ(kwin_.requests("doRegister").front().signature, "as");
  EXPECT_EQ(kwin_.requests("setShortcutKeys").front().signature, "asa(ai)u");
  EXPECT_EQ(keys_->standing(references_[0]).detail, "");
}

TEST_F(KWinHotKeys, APressReachesTheHandlerWithItsId) {
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  kwin_.press("peek");
  EXPECT_TRUE(hasPressed({2}));
  kwin_.press("toggle");
  EXPECT_TRUE(hasPressed({2, 1}));
  kwin_.press("something-else");
  kwin_.press("toggle");
  EXPECT_TRUE(hasPressed({2, 1, 1}));
}

TEST_F(KWinHotKeys, KeysThatAnotherProgramHasAreTaken) {
  kwin_.refuse("peek");
  registerKeys();
  EXPECT_TRUE(qt::runUntil([&] { return keys_->standing(references_[1]).kind == Kind::taken; }));
  EXPECT_TRUE(qt::runUntil([&] { return keys_->isHeld(references_[0]); }));
  EXPECT_FALSE(keys_->isHeld(references_[1]));
}

TEST_F(KWinHotKeys, KeysThatTheUserChoosesInTheSettingsAreTold) {
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  kwin_.change("toggle", 0x1000003b);  // Meta+;
  EXPECT_TRUE(qt::runUntil([&] { return keys_->standing(references_[0]) == HotKeyStanding{Kind::held, "Meta+;"}; }))
      << keys_->standing(references_[0]).detail;
  kwin_.change("toggle", 0);
  EXPECT_TRUE(qt::runUntil([&] { return keys_->standing(references_[0]) == HotKeyStanding{Kind::unassigned}; }));
  kwin_.change("toggle", 0x1c000044);
  EXPECT_TRUE(qt::runUntil([&] { return keys_->standing(references_[0]) == HotKeyStanding{Kind::held}; }));
}

TEST_F(KWinHotKeys, AllAreGivenBackAtTheEnd) {
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  keys_->unregisterHotKey(references_[0]);
  keys_->unregisterHotKey(references_[1]);
  EXPECT_THAT(kwin_.texts("unregister"),
              UnorderedElementsAre("org.quillfade.Quillfade toggle", "org.quillfade.Quillfade peek"));
  EXPECT_EQ(kwin_.requests("unregister").front().signature, "ss");
  keys_.reset();
  EXPECT_EQ(kwin_.requests("unregister").size(), 2U);
}

TEST_F(KWinHotKeys, OneOfThemGivenBackLeavesTheOther) {
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  keys_->unregisterHotKey(references_[0]);
  EXPECT_FALSE(keys_->isHeld(references_[0]));
  EXPECT_TRUE(qt::runUntil([&] { return keys_->isHeld(references_[1]); }));
  kwin_.press("toggle");
  kwin_.press("peek");
  EXPECT_TRUE(hasPressed({2}));
}

TEST_F(KWinHotKeys, AKWinThatGoesAndComesBackIsAskedAgain) {
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  kwin_.leave();
  ASSERT_TRUE(allAre(Kind::unavailable));
  kwin_.comeBack();
  ASSERT_TRUE(allAre(Kind::held));
  kwin_.press("toggle");
  EXPECT_TRUE(hasPressed({1}));
}

}  // namespace
}  // namespace platform::linux::shortcuts
