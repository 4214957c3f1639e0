// A thread that does something at a steady pace until it is told to stop.
//
// Ownership: the thread ends with the object. Late steps are not made up for.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>
#include <utility>

namespace bench {

using Clock = std::chrono::steady_clock;

class Pace {
 public:
  Pace(double timesASecond, std::function<void()> step)
      : thread_(
            [interval = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1 / timesASecond)),
             step = std::move(step)](const std::stop_token& stop) {
              std::mutex mutex;
              std::condition_variable_any wakeup;
              std::unique_lock lock(mutex);
              auto due = Clock::now();
              while (!stop.stop_requested()) {
                step();
                due = std::max(due + interval, Clock::now());
                wakeup.wait_until(lock, stop, due, [] { return false; });
              }
            }) {}

 private:
  std::jthread thread_;
};

}  // namespace bench
