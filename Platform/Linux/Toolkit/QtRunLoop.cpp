#include "Platform/Linux/Toolkit/QtRunLoop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

#include "Platform/Linux/Toolkit/MutexQueue.h"

namespace platform::linux::toolkit {

namespace {

std::chrono::milliseconds interval(double seconds) {
  constexpr double longest = std::numeric_limits<int>::max();
  const double milliseconds = std::ceil(seconds * 1000);
  if (!(milliseconds > 0)) return std::chrono::milliseconds{0};
  return std::chrono::milliseconds{std::llround(std::min(milliseconds, longest))};
}

class TimerHandle : public DelayedTask, public Timer {
 public:
  explicit TimerHandle(QTimer* timer) : timer_(timer) {}
  void cancel() override { end(); }
  void invalidate() override { end(); }

 private:
  // May be called from inside the timer's own job, so the timer is deleted later, and the job as soon as it has
  // returned.
  void end() {
    QTimer* timer = std::exchange(timer_, nullptr);
    if (!timer) return;
    timer->stop();
    timer->disconnect();
    timer->deleteLater();
  }

  QPointer<QTimer> timer_;
};

QTimer* makeTimer(QObject& owner, double seconds) {
  auto* timer = new QTimer(&owner);
  timer->setTimerType(Qt::PreciseTimer);
  timer->setInterval(interval(seconds));
  return timer;
}

}  // namespace

void QtRunLoop::Inbox::put(Job job) {
  {
    const std::scoped_lock lock(mutex_);
    if (isClosed_) return;
    jobs_.push_back(std::move(job));
  }
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void QtRunLoop::Inbox::close() {
  // Destroyed outside the lock: destroying a job may destroy an object that posts another.
  std::deque<Job> dropped;
  const std::scoped_lock lock(mutex_);
  isClosed_ = true;
  dropped.swap(jobs_);
}

void QtRunLoop::Inbox::customEvent(QEvent* /*event*/) {
  Job job;
  {
    const std::scoped_lock lock(mutex_);
    if (jobs_.empty()) return;
    job = std::move(jobs_.front());
    jobs_.pop_front();
  }
  job();
}

void QtRunLoop::post(Job job) { inbox_.put(std::move(job)); }

std::shared_ptr<DelayedTask> QtRunLoop::after(double seconds, Job job) {
  QTimer* timer = makeTimer(inbox_, seconds);
  timer->setSingleShot(true);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, job = std::move(job)] {
    timer->deleteLater();
    job();
  });
  timer->start();
  return std::make_shared<TimerHandle>(timer);
}

std::shared_ptr<Timer> QtRunLoop::every(double seconds, Job job) {
  QTimer* timer = makeTimer(inbox_, seconds);
  QObject::connect(timer, &QTimer::timeout, timer, std::move(job));
  timer->start();
  return std::make_shared<TimerHandle>(timer);
}

std::shared_ptr<SerialQueue> QtRunLoop::makeSerialQueue(const std::string& /*label*/, QualityOfService /*quality*/) {
  return std::make_shared<MutexQueue>();
}

}  // namespace platform::linux::toolkit
