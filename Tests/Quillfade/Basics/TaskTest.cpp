#include "Quillfade/Basics/Task.h"

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Callback = std::function<void(int)>;

class TaskTest : public OnDesktop {
 protected:
  // Records each of its steps; waits for `operation` in between.
  static Task twoSteps(platform::RunLoop& loop, std::function<void(Callback)> operation, Strings& steps,
                       std::shared_ptr<int> held) {
    steps.push_back("begun");
    const int result = co_await onMainQueue<int>(loop, std::move(operation));
    steps.push_back("resumed with " + std::to_string(result + *held));
  }

  Strings steps;
  Callback pending;
  std::shared_ptr<int> held = std::make_shared<int>(0);
};

TEST_F(TaskTest, BeginsAtOnceAndWaits) {
  twoSteps(desktop.runLoop(), [this](Callback callback) { pending = std::move(callback); }, steps, held);
  EXPECT_THAT(steps, ElementsAre("begun"));
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(steps, ElementsAre("begun"));
  pending = nullptr;
}

TEST_F(TaskTest, IsResumedOnTheMainQueueAndNeverInsideTheCallback) {
  twoSteps(desktop.runLoop(), [this](Callback callback) { pending = std::move(callback); }, steps, held);
  pending(7);
  EXPECT_THAT(steps, ElementsAre("begun"));
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(steps, ElementsAre("begun", "resumed with 7"));
}

TEST_F(TaskTest, ACallbackInsideTheOperationResumesLaterToo) {
  twoSteps(desktop.runLoop(), [](const Callback& callback) { callback(1); }, steps, held);
  EXPECT_THAT(steps, ElementsAre("begun"));
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(steps, ElementsAre("begun", "resumed with 1"));
}

TEST_F(TaskTest, ACallbackOnAnotherThreadResumesOnTheMainThread) {
  twoSteps(desktop.runLoop(), [this](Callback callback) { pending = std::move(callback); }, steps, held);
  simulated::runOnAnotherThread([this] { pending(3); });
  EXPECT_THAT(steps, ElementsAre("begun"));
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(steps, ElementsAre("begun", "resumed with 3"));
}

TEST_F(TaskTest, WhatItHoldsIsReleasedAfterItsLastStep) {
  twoSteps(desktop.runLoop(), [](const Callback& callback) { callback(1); }, steps, held);
  EXPECT_EQ(held.use_count(), 2);
  desktop.runLoop().runUntilIdle();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(TaskTest, WhatItHoldsIsReleasedWhenNobodyCanResumeIt) {
  twoSteps(desktop.runLoop(), [this](Callback callback) { pending = std::move(callback); }, steps, held);
  EXPECT_EQ(held.use_count(), 2);
  pending = nullptr;
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_THAT(steps, ElementsAre("begun"));
}

TEST_F(TaskTest, AResumptionThatTheLoopNeverRanIsDestroyed) {
  twoSteps(desktop.runLoop(), [](const Callback& callback) { callback(1); }, steps, held);
  desktop.runLoop().drop();
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_THAT(steps, ElementsAre("begun"));
}

Task waitATurn(platform::RunLoop& loop, Strings& steps) {
  co_await nextTurn(loop);
  steps.push_back("next turn");
}

TEST_F(TaskTest, TheNextTurnComesAfterWhatWasPostedBefore) {
  desktop.runLoop().post([this] { steps.push_back("posted before"); });
  waitATurn(desktop.runLoop(), steps);
  desktop.runLoop().post([this] { steps.push_back("posted after"); });
  EXPECT_THAT(steps, IsEmpty());
  desktop.runLoop().runUntilIdle();
  EXPECT_THAT(steps, ElementsAre("posted before", "next turn", "posted after"));
}

}  // namespace
}  // namespace quillfade
