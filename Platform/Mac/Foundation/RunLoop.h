// The main dispatch queue, timers of the main run loop, and serial dispatch queues.
//
// Threads: as in the port.
// Ownership: the queue or timer alone owns a job handed to it; the job is destroyed on the thread it ran on.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>
#include <string>

#include "Platform/RunLoop.h"

namespace platform::mac::foundation {

// Moves the job to the queue; the calling thread keeps no copy.
void dispatchJob(dispatch_queue_t queue, Job job);

class SerialQueue final : public platform::SerialQueue {
 public:
  explicit SerialQueue(dispatch_queue_t queue) : queue_(queue) {}
  void perform(const Job& job) override { dispatchJob(queue_, job); }
  [[nodiscard]] dispatch_queue_t queue() const { return queue_; }

 private:
  dispatch_queue_t queue_;
};

class RunLoop final : public platform::RunLoop {
 public:
  void post(Job job) override;
  // From a timer: the main queue stands still for as long as one of its own jobs runs.
  void postCommand(Job job) override;
  std::shared_ptr<DelayedTask> after(double seconds, Job job) override;
  std::shared_ptr<Timer> every(double seconds, Job job) override;
  void addToCommonModes(Timer& timer) override;
  std::shared_ptr<platform::SerialQueue> makeSerialQueue(const std::string& label, QualityOfService quality) override;
};

}  // namespace platform::mac::foundation
