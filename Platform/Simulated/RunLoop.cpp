#include "Platform/Simulated/RunLoop.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::simulated {

namespace {

constexpr int mostJobsAtOnce = 100'000;

std::chrono::nanoseconds nanoseconds(double seconds) { return std::chrono::nanoseconds(std::llround(seconds * 1e9)); }

class DelayedTask final : public platform::DelayedTask {
 public:
  DelayedTask(Record& record, std::shared_ptr<ScheduledWork> work) : record_(record), work_(std::move(work)) {}
  void cancel() override {
    record_.call("run loop: cancel");
    work_->isLive = false;
  }

 private:
  Record& record_;
  std::shared_ptr<ScheduledWork> work_;
};

class Timer final : public platform::Timer {
 public:
  Timer(Record& record, std::shared_ptr<ScheduledWork> work) : record_(record), work_(std::move(work)) {}
  void invalidate() override {
    record_.call("timer: invalidate");
    work_->isLive = false;
  }
  [[nodiscard]] ScheduledWork& work() const { return *work_; }

 private:
  Record& record_;
  std::shared_ptr<ScheduledWork> work_;
};

}  // namespace

void RunLoop::put(Posted posted) {
  if (!posted.job) misuse("RunLoop::post was given no job");
  const std::lock_guard lock(mutex_);
  posted_.push_back(std::move(posted));
}

void RunLoop::postCommand(Job job) {
  record_.expectMainThread("RunLoop::postCommand");
  put({std::move(job), true});
}

std::shared_ptr<ScheduledWork> RunLoop::schedule(double seconds, Job job) {
  if (!std::isfinite(seconds) || seconds < 0) misuse("work was scheduled after a time that is negative or not finite");
  if (!job) misuse("work was scheduled without a job");
  auto work = std::make_shared<ScheduledWork>();
  work->due = elapsed() + nanoseconds(seconds);
  work->job = std::move(job);
  work_.push_back(work);
  return work;
}

std::shared_ptr<platform::DelayedTask> RunLoop::after(double seconds, Job job) {
  record_.call("run loop: after " + std::to_string(seconds));
  return std::make_shared<DelayedTask>(record_, schedule(seconds, std::move(job)));
}

std::shared_ptr<platform::Timer> RunLoop::every(double seconds, Job job) {
  record_.call("timer: every " + std::to_string(seconds));
  if (!(seconds > 0)) misuse("RunLoop::every was given an interval that is not positive");
  const auto work = schedule(seconds, std::move(job));
  work->interval = nanoseconds(seconds);
  work->inCommonModes = false;
  return std::make_shared<Timer>(record_, work);
}

void RunLoop::addToCommonModes(platform::Timer& timer) {
  record_.call("timer: add to common modes");
  auto* const own = dynamic_cast<Timer*>(&timer);
  if (own == nullptr) misuse("RunLoop::addToCommonModes was given another loop's timer");
  if (!own->work().isLive) misuse("RunLoop::addToCommonModes was given an invalidated timer");
  own->work().inCommonModes = true;
}

std::shared_ptr<platform::SerialQueue> RunLoop::makeSerialQueue(const std::string& label, QualityOfService quality) {
  record_.call("run loop: make serial queue " + label);
  auto queue = std::make_shared<SerialQueue>(record_, label, quality);
  queues_.push_back(queue);
  return queue;
}

bool RunLoop::runOne() {
  record_.expectMainThread("RunLoop::runOne");
  Posted next;
  {
    const std::lock_guard lock(mutex_);
    if (posted_.empty()) return false;
    next = std::move(posted_.front());
    posted_.pop_front();
  }
  const bool wasHeldUp = std::exchange(isHeldUp_, !next.isCommand);
  next.job();
  isHeldUp_ = wasHeldUp;
  return true;
}

void RunLoop::runUntilIdle() {
  for (int count = 0; runOne(); ++count) {
    if (count == mostJobsAtOnce) misuse("posted jobs post one another without end");
  }
}

std::shared_ptr<ScheduledWork> RunLoop::nextDue(std::chrono::nanoseconds limit) const {
  std::shared_ptr<ScheduledWork> next;
  for (const auto& work : work_) {
    const bool mayRun = work->isLive && work->due <= limit && (work->inCommonModes || !isTracking_);
    // Strictly earlier: among equals the one created first goes first.
    if (mayRun && (!next || work->due < next->due)) next = work;
  }
  return next;
}

void RunLoop::fire(ScheduledWork& work) {
  // Work held back while a menu was tracked is late; time never goes back for it.
  elapsed_ = std::max(elapsed(), work.due);
  const Job job = work.job;
  if (work.interval.count() > 0) {
    work.due = elapsed() + work.interval;
  } else {
    work.isLive = false;
  }
  job();
}

void RunLoop::advance(double seconds) {
  record_.expectMainThread("RunLoop::advance");
  const auto target = elapsed() + nanoseconds(seconds);
  runUntilIdle();
  while (const auto work = nextDue(target)) {
    fire(*work);
    runUntilIdle();
    std::erase_if(work_, [](const auto& each) { return !each->isLive; });
  }
  elapsed_ = target;
}

bool RunLoop::runSerialQueues() {
  bool ran = false;
  for (const auto& queue : liveQueues()) ran = queue->runPending() || ran;
  return ran;
}

void RunLoop::settle() {
  do {
    runUntilIdle();
  } while (runSerialQueues());
}

std::vector<std::shared_ptr<ScheduledWork>> RunLoop::liveTimers() const {
  std::vector<std::shared_ptr<ScheduledWork>> timers;
  for (const auto& work : work_) {
    if (work->isLive && work->interval.count() > 0) timers.push_back(work);
  }
  return timers;
}

std::vector<std::shared_ptr<ScheduledWork>> RunLoop::liveDelayedTasks() const {
  std::vector<std::shared_ptr<ScheduledWork>> tasks;
  for (const auto& work : work_) {
    if (work->isLive && work->interval.count() == 0) tasks.push_back(work);
  }
  return tasks;
}

std::vector<std::shared_ptr<SerialQueue>> RunLoop::liveQueues() const {
  std::vector<std::shared_ptr<SerialQueue>> queues;
  for (const auto& each : queues_) {
    if (auto queue = each.lock()) queues.push_back(std::move(queue));
  }
  return queues;
}

void RunLoop::drop() {
  for (const auto& queue : liveQueues()) queue->drop();
  // Swapped out first: whatever a destroyed job lets go of may hand over more.
  std::vector<std::shared_ptr<ScheduledWork>> work;
  work.swap(work_);
  for (const auto& each : work) {
    each->isLive = false;
    each->job = nullptr;
  }
  std::deque<Posted> posted;
  do {
    posted.clear();
    const std::lock_guard lock(mutex_);
    posted.swap(posted_);
  } while (!posted.empty());
}

}  // namespace platform::simulated
