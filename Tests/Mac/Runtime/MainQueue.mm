#import "Tests/Mac/Runtime/MainQueue.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

#import "Tests/Mac/Runtime/Recorder.h"

namespace fake {
namespace {

using Nanoseconds = std::int64_t;

struct Planned {
  Modes modes;
  Work work;
};

struct Plan {
  std::mutex mutex;
  Nanoseconds now = 0;
  std::uint64_t order = 0;
  std::map<std::pair<Nanoseconds, std::uint64_t>, Planned> main;
  std::deque<std::pair<Worker*, Work>> waiting;  // in turns only
  bool isTracking = false;
  bool isServingQueue = false;
  Work afterTurn;
};
Plan& plan() {
  static Plan& made = *new Plan;  // threads may outlive the exit
  return made;
}

void add(Nanoseconds delay, Modes modes, Work work) {
  Plan& all = plan();
  {
    const std::lock_guard lock(all.mutex);
    all.main.emplace(std::pair{all.now + delay, ++all.order}, Planned{modes, std::move(work)});
  }
  wakeWaiting();
}

Nanoseconds nanoseconds(double seconds) { return static_cast<Nanoseconds>(std::llround(seconds * 1e9)); }

// The lock is held.
auto firstAllowed(Plan& all) {
  auto found = all.main.begin();
  const auto waits = [&all](Modes modes) {
    return (modes == Modes::standard && all.isTracking) || (modes == Modes::mainQueue && all.isServingQueue);
  };
  while (found != all.main.end() && waits(found->second.modes)) ++found;
  return found;
}

bool somethingIsReady() {
  Plan& all = plan();
  const std::lock_guard lock(all.mutex);
  const auto first = firstAllowed(all);
  return first != all.main.end() && first->first.first <= all.now;
}

std::optional<Planned> takeReady() {
  Plan& all = plan();
  const std::lock_guard lock(all.mutex);
  const auto first = firstAllowed(all);
  if (first == all.main.end() || first->first.first > all.now) return std::nullopt;
  return std::move(all.main.extract(first).mapped());
}

void setServingQueue(bool isServing) {
  const std::lock_guard lock(plan().mutex);
  plan().isServingQueue = isServing;
}

bool runOneTurn() {
  auto ready = takeReady();
  if (!ready) return false;
  const bool isOfQueue = ready->modes == Modes::mainQueue;
  @autoreleasepool {
    if (isOfQueue) setServingQueue(true);
    ready->work();
    ready.reset();
    if (isOfQueue) setServingQueue(false);
    if (plan().afterTurn) plan().afterTurn();
  }
  return true;
}

bool giveNextATurn() {
  Plan& all = plan();
  std::unique_lock lock(all.mutex);
  if (all.waiting.empty()) return false;
  auto [worker, work] = std::move(all.waiting.front());
  all.waiting.pop_front();
  lock.unlock();
  hand(worker, std::move(work));
  waitForWorkers([] { return false; });
  return true;
}

Worker* systemWorker() {
  static Worker* const worker = takeWorker();
  return worker;
}

}  // namespace

Schedule schedule() {
  static const Schedule chosen = [] {
    const char* const wish = std::getenv("QUILLFADE_MAC_SCHEDULE");
    return wish != nullptr && std::string_view{wish} == "free" ? Schedule::free : Schedule::inTurns;
  }();
  return chosen;
}

double now() {
  const std::lock_guard lock(plan().mutex);
  return static_cast<double>(plan().now) / 1e9;
}

void postToMain(Work work) { add(0, Modes::mainQueue, std::move(work)); }

void postToWorker(Worker* worker, Work work) {
  if (schedule() == Schedule::free) return hand(worker, std::move(work));
  {
    const std::lock_guard lock(plan().mutex);
    plan().waiting.emplace_back(systemWorker(), std::move(work));
  }
  wakeWaiting();
}

void runLater(double seconds, Modes modes, Work work) { add(nanoseconds(seconds), modes, std::move(work)); }

void onSystemThread(Work work) { postToWorker(systemWorker(), std::move(work)); }

void settle() {
  EXPECT_MAIN_THREAD();
  while (true) {
    while (runOneTurn()) {
    }
    if (giveNextATurn()) continue;
    waitForWorkers(somethingIsReady);
    if (!somethingIsReady()) return;
  }
}

void advance(double seconds) {
  Plan& all = plan();
  const Nanoseconds end = nanoseconds(now() + seconds);
  while (true) {
    settle();
    const std::lock_guard lock(all.mutex);
    const auto next = firstAllowed(all);
    if (next == all.main.end() || next->first.first > end) break;
    all.now = std::max(all.now, next->first.first);
  }
  {
    const std::lock_guard lock(all.mutex);
    all.now = end;
  }
  settle();
}

bool runUntil(const std::function<bool()>& isDone, double seconds) {
  EXPECT_MAIN_THREAD();
  Plan& all = plan();
  const Nanoseconds end = nanoseconds(now() + seconds);
  while (!isDone()) {
    if (runOneTurn() || giveNextATurn()) continue;
    waitForWorkers(somethingIsReady);
    if (somethingIsReady()) continue;
    const std::lock_guard lock(all.mutex);
    const auto next = firstAllowed(all);
    const bool isOver = next == all.main.end() || next->first.first > end;
    all.now = isOver ? end : std::max(all.now, next->first.first);
    if (isOver) return false;
  }
  return true;
}

void setTracking(bool isTracking) {
  const std::lock_guard lock(plan().mutex);
  plan().isTracking = isTracking;
}

void setAfterTurn(Work work) { plan().afterTurn = std::move(work); }

void dropWork() {
  Plan& all = plan();
  while (true) {
    waitForWorkers([] { return false; });
    decltype(all.main) gone;
    decltype(all.waiting) unrun;
    {
      const std::lock_guard lock(all.mutex);
      gone.swap(all.main);
      unrun.swap(all.waiting);
    }
    if (gone.empty() && unrun.empty()) break;
    @autoreleasepool {
      gone.clear();
      unrun.clear();
    }
  }
}

}  // namespace fake
