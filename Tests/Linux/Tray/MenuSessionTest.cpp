#include "Platform/Linux/Tray/MenuSession.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "Platform/Simulated/RunLoop.h"

using namespace platform;
using namespace platform::linux;
using namespace platform::linux::tray;
using platform::linux::tray::HostMenus;
using platform::linux::tray::MenuSession;

namespace {

// A screen whose menus close when the test says so.
class ManualHostMenus : public HostMenus {
 public:
  void whenClosed(std::function<void()> callback) override { closed = std::move(callback); }
  [[nodiscard]] bool isSeen() const override { return seen; }
  std::function<void()> closed;
  bool seen = false;
};

class MenuSessionTest : public ::testing::Test {
 protected:
  using Closing = MenuSession::Closing;
  // To the end of an opening that nobody reports the end of.
  void passLimit() { runLoop.advance(MenuSession::longestUnreportedOpening); }
  void passMoment() { runLoop.advance(MenuSession::longestWaitForChoice); }

  simulated::Record record;
  simulated::RunLoop runLoop{record};
  ManualHostMenus hostMenus;
  std::string calls;
  bool isShownHere = false;
  std::optional<MenuSession> session{std::in_place,
                                     runLoop,
                                     hostMenus,
                                     [this] { return isShownHere; },
                                     [this] { calls += "open "; },
                                     [this] { calls += "close "; }};
};

}  // namespace

TEST_F(MenuSessionTest, AnOpeningHasOneEndHoweverOftenItIsReported) {
  session->open(Closing::perhapsUnreported);
  EXPECT_EQ(calls, "open ");
  session->close();
  session->close();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, WhatALoadingHostAnnouncesIsNoOpening) {
  session->hostLoads();
  EXPECT_FALSE(session->open(Closing::perhapsUnreported));
  EXPECT_FALSE(session->open(Closing::perhapsUnreported));
  EXPECT_EQ(calls, "");
}

TEST_F(MenuSessionTest, AnOpeningHereCountsWhateverTheHostDoes) {
  session->hostLoads();
  session->open(Closing::reported);
  EXPECT_EQ(calls, "open ");
}

TEST_F(MenuSessionTest, AfterAWhileWhatAHostAnnouncesCounts) {
  session->hostLoads();
  runLoop.advance(1);
  session->hostLoads();
  runLoop.advance(MenuSession::longestLoading - 1);
  EXPECT_FALSE(session->open(Closing::perhapsUnreported));
  runLoop.advance(1);
  EXPECT_TRUE(session->open(Closing::perhapsUnreported));
  EXPECT_EQ(calls, "open ");
}

TEST_F(MenuSessionTest, AClosingWithoutAnOpeningIsIgnored) {
  session->close();
  EXPECT_EQ(calls, "");
}

TEST_F(MenuSessionTest, ASecondOpeningEndsTheFirst) {
  session->open(Closing::perhapsUnreported);
  session->open(Closing::perhapsUnreported);
  EXPECT_EQ(calls, "open close open ");
  session->close();
  EXPECT_EQ(calls, "open close open close ");
}

TEST_F(MenuSessionTest, AnOpeningWhoseEndIsNeverReportedEndsAfterTheLimit) {
  session->open(Closing::perhapsUnreported);
  runLoop.advance(MenuSession::longestUnreportedOpening - 0.001);
  EXPECT_EQ(calls, "open ");
  runLoop.advance(0.001);
  EXPECT_EQ(calls, "open close ");
  session->close();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AHostsMenuThatIsStillSeenStaysOpenBeyondTheLimitUntilItLeavesTheScreen) {
  session->open(Closing::perhapsUnreported);
  hostMenus.seen = true;
  passLimit();
  EXPECT_EQ(calls, "open ");
  ASSERT_TRUE(hostMenus.closed);
  std::exchange(hostMenus.closed, nullptr)();
  passMoment();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AMenuThatAnOlderTrayOpensHereStaysOpenBeyondTheLimitUntilItHides) {
  session->open(Closing::perhapsUnreported);
  isShownHere = true;
  passLimit();
  EXPECT_EQ(calls, "open ");
  session->closeUnlessChosen();
  passMoment();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, TheLimitOfOneOpeningDoesNotEndTheNext) {
  session->open(Closing::perhapsUnreported);
  runLoop.advance(1);
  session->close();
  session->open(Closing::perhapsUnreported);
  runLoop.advance(MenuSession::longestUnreportedOpening - 1);
  EXPECT_EQ(calls, "open close open ");
  EXPECT_TRUE(session->isOpen());
}

TEST_F(MenuSessionTest, AnOpeningEndsWhenTheHostsMenuLeavesTheScreen) {
  session->open(Closing::perhapsUnreported);
  ASSERT_TRUE(hostMenus.closed);
  std::exchange(hostMenus.closed, nullptr)();
  passMoment();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AMenuThatLeavesTheScreenWaitsAMomentForTheChoiceAndEndsWithIt) {
  session->open(Closing::reported);
  session->closeUnlessChosen();
  session->closeUnlessChosen();
  runLoop.advance(MenuSession::longestWaitForChoice - 0.001);
  EXPECT_EQ(calls, "open ");
  session->close();
  EXPECT_EQ(calls, "open close ");
  passMoment();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AMenuThatLeavesTheScreenWithoutAChoiceEndsAfterAMoment) {
  session->open(Closing::reported);
  session->closeUnlessChosen();
  passMoment();
  EXPECT_EQ(calls, "open close ");
  session->closeUnlessChosen();
  EXPECT_TRUE(runLoop.liveDelayedTasks().empty());
}

TEST_F(MenuSessionTest, AnOpeningDuringThatMomentIsANewOne) {
  session->open(Closing::reported);
  session->closeUnlessChosen();
  session->open(Closing::reported);
  passMoment();
  EXPECT_EQ(calls, "open close open ");
}

TEST_F(MenuSessionTest, AfterItsEndAnOpeningNoLongerWatchesTheScreen) {
  session->open(Closing::perhapsUnreported);
  session->close();
  EXPECT_FALSE(hostMenus.closed);
}

TEST_F(MenuSessionTest, AMenuOfOurOwnMayStayOpenForAsLongAsTheUserLikes) {
  session->open(Closing::reported);
  EXPECT_TRUE(runLoop.liveDelayedTasks().empty());
  EXPECT_FALSE(hostMenus.closed);
  session->close();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AnOpeningEndsWithTheMenuItself) {
  session->open(Closing::perhapsUnreported);
  session.reset();
  EXPECT_EQ(calls, "open close ");
  passLimit();
  EXPECT_EQ(calls, "open close ");
}
