// A serial queue without a thread of its own: a job runs at once on the thread that posts it.
//
// The posting threads belong to this adapter and have nothing better to do, so a frame reaches the application without
// a thread switch. Jobs of one queue never overlap; a job must not post to its own queue.
// Threads: any but the main thread, which must never wait for a frame; a call there ends the process.
#pragma once

#include <mutex>

#include "Platform/RunLoop.h"

namespace platform::linux::toolkit {

class MutexQueue : public SerialQueue {
 public:
  void perform(const Job& job) override;

 private:
  std::mutex mutex_;
};

}  // namespace platform::linux::toolkit
