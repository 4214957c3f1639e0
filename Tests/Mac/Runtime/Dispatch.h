// The main queue, which only the test drives, with a clock that only the test moves; serial queues with real threads;
// and the threads on which the system answers.
//
// Threads: `onSystemThread` any, everything else main thread only.
// Units: seconds; kept as whole nanoseconds.
#pragma once

#include <functional>
#include <string>

namespace fake {

using Work = std::function<void()>;

enum class Schedule {
  inTurns,  // one thread at a time, in the order of handing over: every run is the same
  free,     // whatever the processors make of it
};

// In turns, unless the environment's QUILLFADE_MAC_SCHEDULE is "free".
[[nodiscard]] Schedule schedule();

// Since the program started.
[[nodiscard]] double now();

// Runs on the main thread, when it is time and the loop is in one of the work's modes.
enum class Modes {
  standard,
  common,
  mainQueue,  // the common ones, but never while other work of the main queue is under way
};
void runLater(double seconds, Modes modes, Work work);

// Runs on some thread of the system's.
void onSystemThread(Work work);

// Runs everything that is ready, on all threads, until nothing is left.
void settle();
// Moves the clock, and runs what is due in the order of its time.
void advance(double seconds);
// Runs what is ready or due within these seconds until it is done, which is looked at after each turn; whether it is.
bool runUntil(const std::function<bool()>& isDone, double seconds);
// While a menu or an alert has a loop of its own, only the common modes run.
void setTracking(bool isTracking);
// Called after each turn of the main queue.
void setAfterTurn(Work work);

// Destroys what has not run, and waits until nothing is under way.
void dropWork();
// Every queue that was made and is still there, by its label.
[[nodiscard]] int liveQueues();
// The label of the serial queue that the calling thread works for; empty on every other.
[[nodiscard]] std::string currentQueue();

}  // namespace fake
