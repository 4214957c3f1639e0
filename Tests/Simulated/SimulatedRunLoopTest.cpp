#include <thread>

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SimulatedRunLoop : public OnDesktop {
 protected:
  void note(const std::string& what) { noted.push_back(what); }

  simulated::RunLoop& loop = desktop.runLoop();
  Strings noted;
};

TEST_F(SimulatedRunLoop, RunsNothingByItself) {
  loop.post([this] { note("posted"); });
  loop.after(0, [this] { note("delayed"); });
  EXPECT_THAT(noted, IsEmpty());
  loop.runUntilIdle();
  EXPECT_THAT(noted, ElementsAre("posted"));
  loop.advance(0);
  EXPECT_THAT(noted, ElementsAre("posted", "delayed"));
}

TEST_F(SimulatedRunLoop, RunsWhatIsDueByTimeThenByCreation) {
  loop.after(2, [this] { note("late"); });
  loop.after(1, [this] { note("first"); });
  loop.after(1, [this] { note("second"); });
  loop.advance(3);
  EXPECT_THAT(noted, ElementsAre("first", "second", "late"));
}

TEST_F(SimulatedRunLoop, RunsPostedJobsBetweenWhatIsDue) {
  loop.after(1, [this] { loop.post([this] { note("posted"); }); });
  loop.after(2, [this] { note("later"); });
  loop.advance(2);
  EXPECT_THAT(noted, ElementsAre("posted", "later"));
}

TEST_F(SimulatedRunLoop, MovesTheClock) {
  const auto start = desktop.clock().now();
  loop.after(1, [&] { EXPECT_EQ(desktop.clock().now() - start, std::chrono::seconds(1)); });
  loop.advance(2.5);
  EXPECT_EQ(desktop.clock().now() - start, std::chrono::milliseconds(2500));
}

TEST_F(SimulatedRunLoop, RepeatsFromOneIntervalOnUntilInvalidated) {
  const auto timer = loop.every(1.5, [this] { note("tick"); });
  loop.advance(1.4);
  EXPECT_THAT(noted, IsEmpty());
  loop.advance(3.2);
  EXPECT_THAT(noted, SizeIs(3));
  timer->invalidate();
  timer->invalidate();
  loop.advance(10);
  EXPECT_THAT(noted, SizeIs(3));
}

TEST_F(SimulatedRunLoop, ATimerOutsideTheCommonModesWaitsWhileAMenuIsTrackedAndIsNotMadeUpFor) {
  const auto timer = loop.every(1, [this] { note("tick"); });
  loop.setTracking(true);
  loop.advance(5.5);
  EXPECT_THAT(noted, IsEmpty());
  loop.setTracking(false);
  loop.advance(0);
  EXPECT_THAT(noted, SizeIs(1));
  loop.setTracking(true);
  loop.addToCommonModes(*timer);
  loop.advance(1);
  EXPECT_THAT(noted, SizeIs(2));
}

TEST_F(SimulatedRunLoop, ACancelledTaskNeverRunsAndADroppedHandleChangesNothing) {
  loop.after(1, [this] { note("cancelled"); })->cancel();
  loop.after(1, [this] { note("dropped"); });
  loop.advance(2);
  EXPECT_THAT(noted, ElementsAre("dropped"));
}

TEST_F(SimulatedRunLoop, ASerialQueueRunsInOrderOffTheMainThreadWhenTold) {
  const auto queue = loop.makeSerialQueue("frames", platform::QualityOfService::userInteractive);
  const auto mainThread = std::this_thread::get_id();
  for (const char* name : {"a", "b"}) {
    queue->perform([this, name, mainThread] {
      EXPECT_NE(std::this_thread::get_id(), mainThread);
      note(name);
    });
  }
  loop.runUntilIdle();
  EXPECT_THAT(noted, IsEmpty());
  loop.settle();
  EXPECT_THAT(noted, ElementsAre("a", "b"));
}

TEST_F(SimulatedRunLoop, WhatNeverRanIsDestroyed) {
  const auto held = std::make_shared<int>();
  loop.post([held] {});
  loop.after(1, [held] {});
  loop.every(1, [held] {});
  const auto queue = loop.makeSerialQueue("frames", platform::QualityOfService::userInteractive);
  queue->perform([held] {});
  EXPECT_EQ(held.use_count(), 5);
  loop.drop();
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace quillfade
