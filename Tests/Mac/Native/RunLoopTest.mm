#include "Platform/Mac/Foundation/RunLoop.h"

#include <thread>

#include "Tests/Mac/Native/Native.h"

namespace platform::mac::foundation {
namespace {

using native::comesTrue;
using testing::ElementsAre;

class MacRunLoop : public testing::Test {
 protected:
  RunLoop loop;
  std::vector<int> order;
};

TEST_F(MacRunLoop, PostedJobsRunOnTheMainThreadInTheirOrder) {
  const auto mainThread = std::this_thread::get_id();
  std::thread([&] {
    for (const int number : {1, 2, 3}) {
      loop.post([&, number] {
        EXPECT_EQ(std::this_thread::get_id(), mainThread);
        order.push_back(number);
      });
    }
  }).join();
  EXPECT_TRUE(order.empty()) << "Never inside the call that hands them over.";
  EXPECT_TRUE(comesTrue([&] { return order.size() == 3; }));
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(MacRunLoop, ADelayedTaskComesInTimeUnlessItIsCancelled) {
  const auto start = std::chrono::steady_clock::now();
  const auto cancelled = loop.after(0.05, [&] { order.push_back(1); });
  const auto kept = loop.after(0.1, [&] { order.push_back(2); });
  cancelled->cancel();
  EXPECT_TRUE(comesTrue([&] { return !order.empty(); }));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds{100});
  EXPECT_THAT(order, ElementsAre(2));
}

TEST_F(MacRunLoop, ATimerRepeatsUntilItIsInvalidated) {
  const auto timer = loop.every(0.02, [&] { order.push_back(1); });
  loop.addToCommonModes(*timer);
  EXPECT_TRUE(comesTrue([&] { return order.size() == 3; }));
  timer->invalidate();
  bool isLater = false;
  const auto later = loop.after(0.1, [&] { isLater = true; });
  EXPECT_TRUE(comesTrue([&] { return isLater; }));
  EXPECT_EQ(order.size(), 3U);
}

// What the system does, and why commands are posted in another way.
TEST_F(MacRunLoop, APostedJobThatRunsTheLoopHoldsBackTheOthersAndACommandDoesNot) {
  bool isOver = false;
  const auto runTheLoop = [&] {
    loop.post([&] { order.push_back(2); });
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.2, false);
    order.push_back(1);
    isOver = true;
  };
  loop.post(runTheLoop);
  EXPECT_TRUE(comesTrue([&] { return order.size() == 2; }));
  EXPECT_THAT(order, ElementsAre(1, 2));

  order.clear();
  isOver = false;
  loop.postCommand(runTheLoop);
  EXPECT_TRUE(order.empty());
  EXPECT_TRUE(comesTrue([&] { return isOver; }));
  EXPECT_THAT(order, ElementsAre(2, 1));
}

TEST_F(MacRunLoop, ASerialQueueKeepsTheOrderOnAnotherThread) {
  const auto mainThread = std::this_thread::get_id();
  const auto queue = loop.makeSerialQueue("test", QualityOfService::userInteractive);
  for (const int number : {1, 2, 3}) {
    queue->perform([&, number] {
      EXPECT_NE(std::this_thread::get_id(), mainThread);
      loop.post([&, number] { order.push_back(number); });
    });
  }
  EXPECT_TRUE(comesTrue([&] { return order.size() == 3; }));
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

}  // namespace
}  // namespace platform::mac::foundation
