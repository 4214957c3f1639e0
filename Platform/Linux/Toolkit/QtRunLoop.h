// The run loop port on Qt's event loop.
//
// Timers keep firing inside the loops that alerts and pop-up menus run, as Qt's timers all do.
#pragma once

#include <QObject>
#include <deque>
#include <mutex>

#include "Platform/RunLoop.h"

namespace platform::linux::toolkit {

// Make it on the main thread, after the application object.
class QtRunLoop : public RunLoop {
 public:
  void post(Job job) override;
  std::shared_ptr<DelayedTask> after(double seconds, Job job) override;
  std::shared_ptr<Timer> every(double seconds, Job job) override;
  // Every timer fires in all loops.
  void addToCommonModes(Timer& /*timer*/) override {}
  // Drops the jobs that wait, and every later one: what they hold may need what is about to go.
  void close() { inbox_.close(); }

  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label, QualityOfService quality) override;

 private:
  // Where posted jobs wait. The toolkit is only asked to come for them, one at a time: its own way of handing work from
  // one thread to another cannot be checked for races.
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

  Inbox inbox_;  // also the owner of all timers
};

}  // namespace platform::linux::toolkit
