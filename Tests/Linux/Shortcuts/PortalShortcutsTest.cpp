// Hot keys that the desktop's portal gives.

#include "Tests/Linux/Shortcuts/SessionHotKeysFixture.h"

namespace platform::linux::shortcuts {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using testing::StartsWith;

class PortalHotKeys : public SessionHotKeysFixture {
 protected:
  void startPortal(qt::Portal::User user = qt::Portal::User::agrees, bool hasShortcuts = true) {
    portal_.emplace(qt::busAddress(), user, hasShortcuts);
  }
  [[nodiscard]] bool isAsked(std::size_t times) {
    return qt::runUntil([&] { return portal_->requests("BindShortcuts").size() == times; });
  }

  std::optional<qt::Portal> portal_;
};

TEST_F(PortalHotKeys, TheProgramSaysWhoItIsAndBindsAllItsKeysInOneSession) {
  startPortal();
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  std::vector<std::string> asked;
  for (const auto& request : portal_->requests()) asked.push_back(request.method + ' ' + request.signature);
  EXPECT_THAT(asked, ElementsAre("Register sa{sv}", "CreateSession a{sv}", "BindShortcuts oa(sa{sv})sa{sv}"));
  EXPECT_THAT(portal_->texts("Register"), ElementsAre("org.quillfade.Quillfade"));
  EXPECT_THAT(portal_->texts("BindShortcuts"), ElementsAre("toggle=CTRL+ALT+LOGO+d (Hide Annotations)\n"
                                                           "peek=CTRL+ALT+LOGO+p (Peek for 5 Seconds)\n"));
  EXPECT_EQ(keys_->standing(references_[0]).detail, "Press CTRL+ALT+LOGO+d");
}

TEST_F(PortalHotKeys, APressReachesTheHandlerUnlessItIsOfAnotherSession) {
  startPortal();
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  portal_->pressElsewhere("toggle");
  portal_->press("peek");
  EXPECT_TRUE(hasPressed({2}));
}

TEST_F(PortalHotKeys, UntilTheUserHasAnsweredTheyAreAwaited) {
  startPortal(qt::Portal::User::waits);
  registerKeys();
  ASSERT_TRUE(isAsked(1));
  EXPECT_TRUE(allAre(Kind::awaited));
  EXPECT_FALSE(keys_->isHeld(references_[0]));
  portal_->answer();
  EXPECT_TRUE(allAre(Kind::held));
}

TEST_F(PortalHotKeys, AUserWhoDeclinesIsNotAskedAgain) {
  startPortal(qt::Portal::User::declines);
  registerKeys();
  EXPECT_TRUE(allAre(Kind::declined));
  EXPECT_FALSE(
      qt::runUntil([&] { return portal_->requests("BindShortcuts").size() > 1; }, std::chrono::milliseconds(1500)));
}

TEST_F(PortalHotKeys, KeysThatAreGivenCountEvenIfTheResponseSaysThatTheRequestFailed) {
  startPortal(qt::Portal::User::agreesQuietly);
  registerKeys();
  EXPECT_TRUE(allAre(Kind::held));
}

TEST_F(PortalHotKeys, AUserMayAgreeToSomeOfThem) {
  startPortal(qt::Portal::User::agreesToOne);
  registerKeys();
  EXPECT_TRUE(qt::runUntil([&] { return keys_->isHeld(references_[0]); }));
  EXPECT_EQ(keys_->standing(references_[1]), HotKeyStanding{Kind::declined});
}

TEST_F(PortalHotKeys, WithoutATriggerTheyHaveNoKeys) {
  startPortal(qt::Portal::User::choosesNoKeys);
  registerKeys();
  EXPECT_TRUE(allAre(Kind::unassigned));
}

TEST_F(PortalHotKeys, ASessionThatTheDesktopClosesHasNoKeysAnyMore) {
  startPortal();
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  portal_->closeSession();
  EXPECT_TRUE(allAre(Kind::declined));
}

TEST_F(PortalHotKeys, TheSessionIsClosedAtTheEnd) {
  startPortal();
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  keys_.reset();
  EXPECT_TRUE(qt::runUntil([&] { return portal_->requests("Close").size() == 1; }));
  EXPECT_THAT(portal_->texts("Close").front(), StartsWith("/org/freedesktop/portal/desktop/session/"));
}

TEST_F(PortalHotKeys, APortalThatIsStartedAgainIsAskedAgain) {
  startPortal();
  registerKeys();
  ASSERT_TRUE(allAre(Kind::held));
  portal_->leave();
  portal_->comeBack();
  ASSERT_TRUE(isAsked(2));
  ASSERT_TRUE(allAre(Kind::held));
  EXPECT_THAT(portal_->requests("Register"), SizeIs(2));
  portal_->press("toggle");
  EXPECT_TRUE(hasPressed({1}));
}

TEST_F(PortalHotKeys, WithoutAPortalOfShortcutsThereAreNone) {
  startPortal(qt::Portal::User::agrees, false);
  registerKeys();
  EXPECT_TRUE(allAre(Kind::unavailable));
}

TEST_F(PortalHotKeys, WithoutAnyPortalThereAreNoneUntilOneComes) {
  registerKeys();
  EXPECT_TRUE(allAre(Kind::unavailable));
  startPortal();
  EXPECT_TRUE(allAre(Kind::held));
}

// A daemon of that name, started by a program of KDE on another desktop, cannot see the keyboard there.
TEST_F(PortalHotKeys, ThePortalIsAskedWhereKWinIsNotTheCompositor) {
  const qt::KWinKeys daemon(qt::busAddress(), false);
  startPortal();
  registerKeys();
  EXPECT_TRUE(allAre(Kind::held));
  EXPECT_THAT(daemon.requests(), SizeIs(0));
}

TEST_F(PortalHotKeys, AKeyThatNoKeyboardHasGivesNoReferenceNorDoesTheSameCombinationTwice) {
  registerKeys();
  EXPECT_EQ(keys_->registerHotKey(0x34, controlOptionCommand, {1, 7}), std::nullopt);
  EXPECT_EQ(keys_->registerHotKey(2, controlOptionCommand, {1, 8}), std::nullopt);
}

}  // namespace
}  // namespace platform::linux::shortcuts
