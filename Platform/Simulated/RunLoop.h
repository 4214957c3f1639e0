// A main queue and a time that only its owner moves. Nothing runs by itself.
//
// Threads: `post` and `elapsed` on any thread, everything else on the main thread.
// Units: seconds, kept as whole nanoseconds so that many short steps add up exactly.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "Platform/RunLoop.h"
#include "Platform/Simulated/Record.h"
#include "Platform/Simulated/SerialQueue.h"

namespace platform::simulated {

// One piece of delayed or repeating work. Shared by its handle and the loop, so that dropping the handle changes
// nothing.
struct ScheduledWork {
  std::chrono::nanoseconds due{};
  std::chrono::nanoseconds interval{};  // zero: runs once
  Job job;
  bool isLive = true;
  bool inCommonModes = true;  // also runs while a menu is tracked
};

class RunLoop final : public platform::RunLoop {
 public:
  explicit RunLoop(Record& record) : record_(record) {}

  void post(Job job) override { put({std::move(job), false}); }
  void postCommand(Job job) override;
  std::shared_ptr<platform::DelayedTask> after(double seconds, Job job) override;
  std::shared_ptr<platform::Timer> every(double seconds, Job job) override;
  void addToCommonModes(platform::Timer& timer) override;
  std::shared_ptr<platform::SerialQueue> makeSerialQueue(const std::string& label, QualityOfService quality) override;

  // Runs posted jobs, and the jobs they post, until none is left.
  void runUntilIdle();
  // Runs one posted job; false when there is none.
  bool runOne();
  // Moves time forward and runs what comes due, by time and then by creation, with posted jobs in between.
  void advance(double seconds);
  // Runs what waits on the serial queues; true if there was anything.
  bool runSerialQueues();
  // Runs serial queues and posted jobs until none of them has anything left.
  void settle();
  // Whether a job runs that holds back whatever is posted until it returns; no alert may be shown then.
  [[nodiscard]] bool isHeldUp() const { return isHeldUp_; }
  // While a menu is tracked, timers outside the common modes wait.
  void setTracking(bool isTracking) { isTracking_ = isTracking; }

  [[nodiscard]] std::chrono::nanoseconds elapsed() const { return elapsed_; }
  [[nodiscard]] std::vector<std::shared_ptr<ScheduledWork>> liveTimers() const;
  [[nodiscard]] std::vector<std::shared_ptr<ScheduledWork>> liveDelayedTasks() const;
  [[nodiscard]] std::vector<std::shared_ptr<SerialQueue>> liveQueues() const;
  // Destroys everything that has not run.
  void drop();

 private:
  struct Posted {
    Job job;
    bool isCommand = false;
  };

  void put(Posted posted);
  std::shared_ptr<ScheduledWork> schedule(double seconds, Job job);
  [[nodiscard]] std::shared_ptr<ScheduledWork> nextDue(std::chrono::nanoseconds limit) const;
  void fire(ScheduledWork& work);

  Record& record_;
  std::mutex mutex_;
  std::deque<Posted> posted_;
  std::vector<std::shared_ptr<ScheduledWork>> work_;
  std::vector<std::weak_ptr<SerialQueue>> queues_;
  std::atomic<std::chrono::nanoseconds> elapsed_{};
  bool isTracking_ = false;
  bool isHeldUp_ = false;
};

}  // namespace platform::simulated
