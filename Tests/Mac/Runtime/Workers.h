// Threads that run work handed to them, one piece at a time each. They never end: others use them again.
//
// Threads: any.
#pragma once

#include <functional>

namespace fake {

class Worker;

// A thread that nobody uses.
[[nodiscard]] Worker* takeWorker();
// What was handed to it still runs.
void giveBack(Worker* worker);
void hand(Worker* worker, std::function<void()> work);
// Whether all work that was handed over has run and is gone.
[[nodiscard]] bool workersAreIdle();
// Returns when they are, or when `orElse`, looked at after each piece of work and at `wakeWaiting`, is true.
void waitForWorkers(const std::function<bool()>& orElse);
void wakeWaiting();

}  // namespace fake
