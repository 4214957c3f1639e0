// The main queue, delayed and repeating work, and serial queues.
//
// Threads: `post` may be called on any thread, everything else only on the main thread. A `RunLoop` runs its jobs on
// the main thread, one at a time, never inside the call that hands them over.
// Lifetime: a job that never gets to run (the loop ended) is destroyed. Handles may be dropped at any time; dropping
// one neither cancels nor fires it.
// Units: seconds.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace platform {

using Job = std::function<void()>;

class DelayedTask {
 public:
  virtual ~DelayedTask() = default;
  // A cancelled task never runs. Harmless after it has run, and when repeated.
  virtual void cancel() = 0;
};

class Timer {
 public:
  virtual ~Timer() = default;
  // Stops the timer at once. Harmless when repeated.
  virtual void invalidate() = 0;
};

enum class QualityOfService { userInteractive };

// Runs jobs one at a time, in the order they were handed over, on a thread of its own choosing that is never the main
// thread. The application only creates a queue and passes it on.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  virtual void perform(const Job& job) = 0;
};

class RunLoop {
 public:
  virtual ~RunLoop() = default;
  // A desktop may hold back everything else that is posted until the job has returned, even while the job waits for the
  // answer to an alert.
  virtual void post(Job job) = 0;
  // The same for a job that may show an alert: what is posted goes on meanwhile.
  virtual void postCommand(Job job) { post(std::move(job)); }
  virtual std::shared_ptr<DelayedTask> after(double seconds, Job job) = 0;
  // Fires for the first time one interval from now. Late firings are not made up for.
  virtual std::shared_ptr<Timer> every(double seconds, Job job) = 0;
  // Keeps the timer firing while a menu or a modal alert runs its own loop.
  virtual void addToCommonModes(Timer& timer) = 0;
  virtual std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label, QualityOfService quality) = 0;
};

}  // namespace platform
