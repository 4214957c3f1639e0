#import "Tests/Mac/Runtime/Queue.h"

#include <atomic>
#include <mutex>
#include <utility>

#import "Tests/Mac/Runtime/MainQueue.h"
#import "Tests/Mac/Runtime/Runtime.h"

namespace {

std::atomic<int> queues;
thread_local std::string currentLabel;

}  // namespace

int fake::liveQueues() { return queues; }
std::string fake::currentQueue() { return currentLabel; }

@implementation FakeQueueAttributes
@end

@implementation FakeQueue {
  BOOL _isMain;
  std::string _label;
  std::mutex _mutex;
  fake::Worker* _worker;  // from the first piece of work on
}

+ (FakeQueue*)mainQueue {
  static FakeQueue* const queue = [] {
    FakeQueue* made = [[FakeQueue alloc] init];
    made->_isMain = YES;
    return made;
  }();
  return queue;
}

- (instancetype)initWithLabel:(const char*)label {
  self = [super init];
  if (self) {
    _label = label;
    ++queues;
  }
  return self;
}

- (void)dealloc {
  --queues;
  if (_worker != nullptr) fake::giveBack(_worker);
}

- (void)push:(fake::Work)work {
  if (_isMain) return fake::postToMain(std::move(work));
  {
    const std::lock_guard lock(_mutex);
    if (_worker == nullptr) _worker = fake::takeWorker();
  }
  fake::postToWorker(_worker, [queue = self, work = std::move(work)]() mutable {
    currentLabel = queue->_label;
    work();
    work = nullptr;
    currentLabel.clear();
  });
}

@end
