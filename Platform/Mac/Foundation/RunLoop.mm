#include "Platform/Mac/Foundation/RunLoop.h"

#include <cstdint>
#include <utility>

namespace platform::mac::foundation {
namespace {

class WorkItem final : public DelayedTask {
 public:
  explicit WorkItem(dispatch_block_t block) : block_(block) {}
  void cancel() override { dispatch_block_cancel(block_); }

 private:
  dispatch_block_t block_;
};

class RepeatingTimer final : public Timer {
 public:
  explicit RepeatingTimer(NSTimer* timer) : timer_(timer) {}
  void invalidate() override { [timer_ invalidate]; }
  [[nodiscard]] NSTimer* timer() const { return timer_; }

 private:
  NSTimer* timer_;
};

qos_class_t qosClass(QualityOfService quality) {
  switch (quality) {
    case QualityOfService::userInteractive:
      break;
  }
  return QOS_CLASS_USER_INTERACTIVE;
}

}  // namespace

void dispatchJob(dispatch_queue_t queue, Job job) {
  dispatch_async_f(queue, new Job(std::move(job)), [](void* context) {
    const std::unique_ptr<Job> owned{static_cast<Job*>(context)};
    (*owned)();
  });
}

void RunLoop::post(Job job) { dispatchJob(dispatch_get_main_queue(), std::move(job)); }

void RunLoop::postCommand(Job job) {
  NSTimer* timer = [NSTimer scheduledTimerWithTimeInterval:0
                                                   repeats:NO
                                                     block:^([[maybe_unused]] NSTimer* fired) {
                                                       job();
                                                     }];
  [[NSRunLoop mainRunLoop] addTimer:timer forMode:NSRunLoopCommonModes];
}

std::shared_ptr<DelayedTask> RunLoop::after(double seconds, Job job) {
  const dispatch_block_t block = dispatch_block_create(static_cast<dispatch_block_flags_t>(0), ^{
    job();
  });
  const auto nanoseconds = static_cast<std::int64_t>(seconds * static_cast<double>(NSEC_PER_SEC));
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, nanoseconds), dispatch_get_main_queue(), block);
  return std::make_shared<WorkItem>(block);
}

std::shared_ptr<Timer> RunLoop::every(double seconds, Job job) {
  return std::make_shared<RepeatingTimer>([NSTimer scheduledTimerWithTimeInterval:seconds
                                                                          repeats:YES
                                                                            block:^([[maybe_unused]] NSTimer* timer) {
                                                                              job();
                                                                            }]);
}

void RunLoop::addToCommonModes(Timer& timer) {
  // Every timer of this desktop comes from `every`.
  [[NSRunLoop mainRunLoop] addTimer:static_cast<RepeatingTimer&>(timer).timer() forMode:NSRunLoopCommonModes];
}

std::shared_ptr<platform::SerialQueue> RunLoop::makeSerialQueue(const std::string& label, QualityOfService quality) {
  const dispatch_queue_attr_t attributes =
      dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, qosClass(quality), 0);
  return std::make_shared<SerialQueue>(dispatch_queue_create(label.c_str(), attributes));
}

}  // namespace platform::mac::foundation
