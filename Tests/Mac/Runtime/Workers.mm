#import "Tests/Mac/Runtime/Workers.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace fake {

class Worker {
 public:
  std::condition_variable wanted;
  std::deque<std::function<void()>> work;
};

namespace {

struct Crew {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<Worker*> unused;
  int piecesUnderWay = 0;
};
Crew& crew() {
  static Crew& made = *new Crew;  // its threads outlive the exit
  return made;
}

[[noreturn]] void serve(Worker* worker) {
  Crew& all = crew();
  std::unique_lock lock(all.mutex);
  while (true) {
    worker->wanted.wait(lock, [&] { return !worker->work.empty(); });
    auto piece = std::move(worker->work.front());
    worker->work.pop_front();
    lock.unlock();
    @autoreleasepool {
      piece();
      piece = nullptr;
    }
    lock.lock();
    --all.piecesUnderWay;
    all.changed.notify_all();
  }
}

}  // namespace

Worker* takeWorker() {
  Crew& all = crew();
  const std::lock_guard lock(all.mutex);
  if (!all.unused.empty()) {
    Worker* const worker = all.unused.back();
    all.unused.pop_back();
    return worker;
  }
  auto* const worker = new Worker;
  std::thread(serve, worker).detach();
  return worker;
}

void giveBack(Worker* worker) {
  const std::lock_guard lock(crew().mutex);
  crew().unused.push_back(worker);
}

void hand(Worker* worker, std::function<void()> work) {
  const std::lock_guard lock(crew().mutex);
  ++crew().piecesUnderWay;
  worker->work.push_back(std::move(work));
  worker->wanted.notify_one();
}

bool workersAreIdle() {
  const std::lock_guard lock(crew().mutex);
  return crew().piecesUnderWay == 0;
}

void waitForWorkers(const std::function<bool()>& orElse) {
  std::unique_lock lock(crew().mutex);
  crew().changed.wait(lock, [&] { return crew().piecesUnderWay == 0 || orElse(); });
}

void wakeWaiting() {
  // Locked, so that nobody misses it between looking and waiting.
  const std::lock_guard lock(crew().mutex);
  crew().changed.notify_all();
}

}  // namespace fake
