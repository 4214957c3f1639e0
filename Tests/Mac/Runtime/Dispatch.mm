#import "Tests/Mac/Runtime/Dispatch.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

#import "Tests/Mac/Runtime/MainQueue.h"
#import "Tests/Mac/Runtime/Queue.h"
#import "Tests/Mac/Runtime/Recorder.h"
#import "Tests/Mac/Runtime/Runtime.h"

using fake::Work;

dispatch_queue_t dispatch_get_main_queue(void) { return [FakeQueue mainQueue]; }

dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t attributes, qos_class_t quality,
                                                              int priority) {
  if (attributes != DISPATCH_QUEUE_SERIAL || priority != 0) fake::misuse("attributes of a queue that is not serial");
  fake::record("dispatch_queue_attr_make_with_qos_class " + std::to_string(quality));
  return [[FakeQueueAttributes alloc] init];
}

dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes) {
  fake::record(std::string{"dispatch_queue_create "} + label + (attributes != nil ? " with attributes" : ""));
  return [[FakeQueue alloc] initWithLabel:label];
}

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) {
  fake::record("dispatch_async");
  [static_cast<FakeQueue*>(queue) push:[kept = [block copy]] { static_cast<dispatch_block_t>(kept)(); }];
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
  fake::record("dispatch_async_f");
  [static_cast<FakeQueue*>(queue) push:[context, work] { work(context); }];
}

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta) {
  if (when != DISPATCH_TIME_NOW || delta < 0) fake::misuse("a time that does not count from now");
  return static_cast<dispatch_time_t>(delta);  // the clock stands still until the call that uses it
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block) {
  EXPECT_MAIN_THREAD();
  if (queue != dispatch_get_main_queue()) fake::misuse("delayed work on another queue than the main one");
  const double seconds = static_cast<double>(when) / static_cast<double>(NSEC_PER_SEC);
  fake::record("dispatch_after " + std::to_string(seconds));
  fake::runLater(seconds, fake::Modes::mainQueue, [kept = [block copy]] { static_cast<dispatch_block_t>(kept)(); });
}

namespace {

// Of the blocks that can be cancelled: whether each was.
struct Cancellable {
  std::mutex mutex;
  std::map<const void*, std::weak_ptr<std::atomic<bool>>> blocks;
};
Cancellable& cancellable() {
  static Cancellable& made = *new Cancellable;
  return made;
}

}  // namespace

dispatch_block_t dispatch_block_create(dispatch_block_flags_t flags, dispatch_block_t block) {
  if (flags != 0) fake::misuse("a block with flags");
  const auto isCancelled = std::make_shared<std::atomic<bool>>(false);
  dispatch_block_t kept = [block copy];
  dispatch_block_t made = [^{
    if (!*isCancelled) kept();
  } copy];
  const std::lock_guard lock(cancellable().mutex);
  std::erase_if(cancellable().blocks, [](const auto& entry) { return entry.second.expired(); });
  cancellable().blocks[(__bridge const void*)made] = isCancelled;
  return made;
}

void dispatch_block_cancel(dispatch_block_t block) {
  fake::record("dispatch_block_cancel");
  const std::lock_guard lock(cancellable().mutex);
  const auto found = cancellable().blocks.find((__bridge const void*)block);
  const auto isCancelled = found == cancellable().blocks.end() ? nullptr : found->second.lock();
  if (!isCancelled) fake::misuse("dispatch_block_cancel of a block that dispatch_block_create did not make");
  *isCancelled = true;
}
