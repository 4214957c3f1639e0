#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <atomic>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Linux/Toolkit/DesktopProcess.h"
#include "Platform/Linux/Toolkit/QtRunLoop.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"

using namespace platform;
using namespace platform::linux;
using namespace platform::linux::toolkit;
using platform::linux::toolkit::QtRunLoop;

namespace {

class RunLoopTest : public qt::Test {
 protected:
  platform::linux::toolkit::DesktopApplication& application = qt::application();
  QtRunLoop runLoop;
};

class Delegate : public ApplicationDelegate {
 public:
  explicit Delegate(std::function<void()> launched) : launched_(std::move(launched)) {}
  void applicationDidFinishLaunching() override { launched_(); }

 private:
  std::function<void()> launched_;
};

}  // namespace

TEST_F(RunLoopTest, PostedJobsRunInOrderAndNeverInsideTheCall) {
  std::string order;
  runLoop.post([&] {
    order += "a";
    runLoop.post([&] { order += "c"; });
    order += "b";
  });
  EXPECT_EQ(order, "");
  EXPECT_TRUE(qt::runUntil([&] { return order == "abc"; }));
}

TEST_F(RunLoopTest, JobsPostedOnOtherThreadsRunOnTheMainThread) {
  constexpr int jobs = 500;
  int count = 0;
  bool allOnMain = true;
  const auto mainThread = std::this_thread::get_id();
  std::vector<std::jthread> threads;
  for (int t = 0; t < 2; ++t)
    threads.emplace_back([&] {
      for (int i = 0; i < jobs; ++i)
        runLoop.post([&] {
          ++count;
          allOnMain = allOnMain && std::this_thread::get_id() == mainThread;
        });
    });
  EXPECT_TRUE(qt::runUntil([&] { return count == 2 * jobs; }));
  EXPECT_TRUE(allOnMain);
}

TEST_F(RunLoopTest, AClosedLoopDropsWaitingAndLaterJobs) {
  const auto held = std::make_shared<int>();
  bool hasRun = false;
  runLoop.post([&, held] { hasRun = true; });
  runLoop.close();
  EXPECT_EQ(held.use_count(), 1);
  runLoop.post([&, held] { hasRun = true; });
  EXPECT_EQ(held.use_count(), 1);
  qt::runPending();
  EXPECT_FALSE(hasRun);
}

TEST_F(RunLoopTest, ADelayedJobRunsOnceAndNotTooEarly) {
  QElapsedTimer clock;
  clock.start();
  qint64 elapsed = -1;
  int runs = 0;
  runLoop.after(0.05, [&] {
    elapsed = clock.elapsed();
    ++runs;
  });  // dropping the handle changes nothing
  bool later = false;
  runLoop.after(0.15, [&] { later = true; });
  EXPECT_TRUE(qt::runUntil([&] { return later; }));
  EXPECT_EQ(runs, 1);
  EXPECT_GE(elapsed, 50);
}

TEST_F(RunLoopTest, ACancelledJobNeverRunsAndIsDestroyedAtOnce) {
  const auto captured = std::make_shared<int>(0);
  const auto task = runLoop.after(0.01, [captured] { ++*captured; });
  EXPECT_EQ(captured.use_count(), 2);
  task->cancel();
  task->cancel();
  EXPECT_EQ(captured.use_count(), 1);
  bool later = false;
  runLoop.after(0.05, [&] { later = true; });
  EXPECT_TRUE(qt::runUntil([&] { return later; }));
  EXPECT_EQ(*captured, 0);
}

TEST_F(RunLoopTest, CancellingFromInsideTheJobOrAfterItIsHarmless) {
  std::shared_ptr<DelayedTask> task;
  bool ran = false;
  task = runLoop.after(0.001, [&] {
    task->cancel();
    ran = true;
  });
  EXPECT_TRUE(qt::runUntil([&] { return ran; }));
  qt::runPending();
  task->cancel();
}

TEST_F(RunLoopTest, ATimerRepeatsUntilItIsInvalidatedEvenFromItsOwnJob) {
  int firings = 0;
  std::shared_ptr<Timer> timer;
  timer = runLoop.every(0.005, [&] {
    if (++firings == 4) timer->invalidate();
  });
  runLoop.addToCommonModes(*timer);
  EXPECT_TRUE(qt::runUntil([&] { return firings == 4; }));
  bool later = false;
  runLoop.after(0.05, [&] { later = true; });
  EXPECT_TRUE(qt::runUntil([&] { return later; }));
  EXPECT_EQ(firings, 4);
}

TEST_F(RunLoopTest, JobsThatNeverRanAreStillDestroyed) {
  const auto captured = std::make_shared<int>(0);
  {
    QtRunLoop shortLived;
    shortLived.post([captured] { ++*captured; });
    shortLived.after(0, [captured] { ++*captured; });
    shortLived.every(0.001, [captured] { ++*captured; });
  }
  EXPECT_EQ(captured.use_count(), 1);
  qt::runPending();
  EXPECT_EQ(*captured, 0);
}

TEST_F(RunLoopTest, JobsOfASerialQueueNeverOverlapAndRunOnTheThreadThatPostsThem) {
  const auto queue = runLoop.makeSerialQueue("org.quillfade.Quillfade.mirror", QualityOfService::userInteractive);
  int unprotected = 0;
  std::atomic<bool> elsewhere = false;
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t)
      threads.emplace_back([&] {
        const auto self = std::this_thread::get_id();
        for (int i = 0; i < 2000; ++i)
          queue->perform([&] {
            ++unprotected;
            if (std::this_thread::get_id() != self) elsewhere = true;
          });
      });
  }
  EXPECT_EQ(unprotected, 8000);
  EXPECT_FALSE(elsewhere);
}

TEST_F(RunLoopTest, TheApplicationTellsItsDelegateOnceFromInsideTheLoopAndEndsWhenTerminated) {
  int launches = 0;
  const auto delegate = std::make_shared<Delegate>([&] {
    ++launches;
    runLoop.post([&] { application.terminate(); });
  });
  application.setDelegate(delegate);
  EXPECT_EQ(launches, 0);
  application.run();
  EXPECT_EQ(launches, 1);
}

TEST_F(RunLoopTest, ATerminationSignalEndsTheLoop) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    bool launched = false;
    const auto delegate = std::make_shared<Delegate>([&] {
      launched = true;
      ::raise(signal);
    });
    application.setDelegate(delegate);
    application.run();
    EXPECT_TRUE(launched);
  }
}

TEST(Process, KnowsItsIdentifierItsEnvironmentAndItsHome) {
  const platform::linux::toolkit::DesktopProcess process;
  EXPECT_EQ(process.bundleIdentifier(), "org.quillfade.Quillfade");
  EXPECT_EQ(process.environmentVariable("QUILLFADE_NO_SUCH_VARIABLE"), std::nullopt);
  EXPECT_TRUE(process.environmentVariable("PATH").has_value());
  EXPECT_TRUE(process.homeDirectory().starts_with('/'));
}
