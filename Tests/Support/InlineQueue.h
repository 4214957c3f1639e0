// A serial queue that performs each job at once, on the thread that hands it over, one at a time.
#pragma once

#include <mutex>

#include "Platform/RunLoop.h"

namespace support {

class InlineQueue final : public platform::SerialQueue {
 public:
  void perform(const platform::Job& job) override {
    const std::lock_guard lock(mutex_);
    job();
  }

 private:
  std::mutex mutex_;
};

}  // namespace support
