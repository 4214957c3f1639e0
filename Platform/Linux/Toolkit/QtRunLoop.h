// The run loop port on Qt's event loop.
//
// Timers also fire inside the loops that alerts and pop-up menus run, as all Qt timers do.
#pragma once

#include <QObject>
#include <deque>
#include <mutex>

#include "Platform/RunLoop.h"

namespace platform::linux::toolkit {

// Create it on the main thread, after the application object.
class QtRunLoop : public RunLoop {
 public:
  void post(Job job) override;
  std::shared_ptr<DelayedTask> after(double seconds, Job job) override;
  std::shared_ptr<Timer> every(double seconds, Job job) override;
  // Every timer fires in all loops.
  void addToCommonModes(Timer& /*timer*/) override {}
  // Drops all waiting jobs, and every later one: they may hold objects that use what is destroyed next.
  void close() { inbox_.close(); }

  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label, QualityOfService quality) override;

 private:
  // Where posted jobs wait. The toolkit is only asked to fetch them, one at a time: race checkers cannot follow its own
  // way of handing work from one thread to another.
  class Inbox : public QObject {
   public:
    void put(Job job);
    void close();

   private:
    void customEvent(QEvent* event) override;

    std::mutex mutex_;
    std::deque<Job> jobs_;
    bool isClosed_ = false;
  };

  Inbox inbox_;  // also owns all timers
};

}  // namespace platform::linux::toolkit
