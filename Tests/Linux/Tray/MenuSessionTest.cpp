#include "Platform/Linux/Tray/MenuSession.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace platform;
using platform::linux::tray::HostMenus;
using platform::linux::tray::MenuSession;

namespace {

class Delayed : public DelayedTask {
 public:
  Delayed(double delay, Job task) : seconds(delay), job(std::move(task)) {}
  void cancel() override { job = nullptr; }
  double seconds;
  Job job;
};

// Its delayed work runs when the test says so.
class ManualRunLoop : public RunLoop {
 public:
  void post(Job job) override { job(); }
  std::shared_ptr<DelayedTask> after(double seconds, Job job) override {
    delayed.push_back(std::make_shared<Delayed>(seconds, std::move(job)));
    return delayed.back();
  }
  std::shared_ptr<Timer> every(double, Job) override { return nullptr; }
  void addToCommonModes(Timer&) override {}
  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string&, QualityOfService) override { return nullptr; }

  void runDelayed() {
    for (const auto& task : std::exchange(delayed, {}))
      if (const Job job = std::exchange(task->job, nullptr)) job();
  }

  std::vector<std::shared_ptr<Delayed>> delayed;
};

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
  ManualRunLoop runLoop;
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

TEST_F(MenuSessionTest, AClosingWithoutAnOpeningIsNothing) {
  session->close();
  EXPECT_EQ(calls, "");
}

TEST_F(MenuSessionTest, AnOpeningOnTopOfAnotherEndsThatFirst) {
  session->open(Closing::perhapsUnreported);
  session->open(Closing::perhapsUnreported);
  EXPECT_EQ(calls, "open close open ");
  session->close();
  EXPECT_EQ(calls, "open close open close ");
}

TEST_F(MenuSessionTest, AnOpeningWhoseEndIsNeverReportedEndsAfterTheLimit) {
  session->open(Closing::perhapsUnreported);
  ASSERT_EQ(runLoop.delayed.size(), 1U);
  EXPECT_EQ(runLoop.delayed.front()->seconds, MenuSession::longestUnreportedOpening);
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close ");
  session->close();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AHostsMenuThatIsStillSeenStaysOpenBeyondTheLimitUntilItLeavesTheScreen) {
  session->open(Closing::perhapsUnreported);
  hostMenus.seen = true;
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open ");
  ASSERT_TRUE(hostMenus.closed);
  std::exchange(hostMenus.closed, nullptr)();
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AMenuThatAnOlderTrayOpensHereStaysOpenBeyondTheLimitUntilItHides) {
  session->open(Closing::perhapsUnreported);
  isShownHere = true;
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open ");
  session->closeUnlessChosen();
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, TheLimitOfOneOpeningDoesNotEndTheNext) {
  session->open(Closing::perhapsUnreported);
  session->close();
  session->open(Closing::perhapsUnreported);
  runLoop.delayed.pop_back();
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close open ");
  EXPECT_TRUE(session->isOpen());
}

TEST_F(MenuSessionTest, AnOpeningEndsWhenTheHostsMenuLeavesTheScreen) {
  session->open(Closing::perhapsUnreported);
  ASSERT_TRUE(hostMenus.closed);
  std::exchange(hostMenus.closed, nullptr)();
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AMenuThatLeavesTheScreenWaitsAMomentForTheChoiceAndEndsWithIt) {
  session->open(Closing::reported);
  session->closeUnlessChosen();
  session->closeUnlessChosen();
  EXPECT_EQ(calls, "open ");
  ASSERT_EQ(runLoop.delayed.size(), 1U);
  EXPECT_EQ(runLoop.delayed.front()->seconds, MenuSession::longestWaitForChoice);
  session->close();
  EXPECT_EQ(calls, "open close ");
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AMenuThatLeavesTheScreenWithoutAChoiceEndsAfterAMoment) {
  session->open(Closing::reported);
  session->closeUnlessChosen();
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close ");
  session->closeUnlessChosen();
  EXPECT_TRUE(runLoop.delayed.empty());
}

TEST_F(MenuSessionTest, AnOpeningDuringThatMomentIsANewOne) {
  session->open(Closing::reported);
  session->closeUnlessChosen();
  session->open(Closing::reported);
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close open ");
}

TEST_F(MenuSessionTest, AfterItsEndAnOpeningNoLongerWatchesTheScreen) {
  session->open(Closing::perhapsUnreported);
  session->close();
  EXPECT_FALSE(hostMenus.closed);
}

TEST_F(MenuSessionTest, AMenuOfOurOwnMayStayOpenForAsLongAsTheUserLikes) {
  session->open(Closing::reported);
  EXPECT_TRUE(runLoop.delayed.empty());
  EXPECT_FALSE(hostMenus.closed);
  session->close();
  EXPECT_EQ(calls, "open close ");
}

TEST_F(MenuSessionTest, AnOpeningEndsWithTheMenuItself) {
  session->open(Closing::perhapsUnreported);
  session.reset();
  EXPECT_EQ(calls, "open close ");
  runLoop.runDelayed();
  EXPECT_EQ(calls, "open close ");
}
