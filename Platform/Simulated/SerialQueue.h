// A serial queue that runs only when it is told to.
//
// Threads: `perform` on any thread; `runPending` on the main thread. Jobs run on a thread of their own, one at a time,
// while the main thread waits for them.
#pragma once

#include <deque>
#include <mutex>
#include <string>

#include "Platform/RunLoop.h"
#include "Platform/Simulated/Record.h"

namespace platform::simulated {

class SerialQueue final : public platform::SerialQueue {
 public:
  SerialQueue(Record& record, std::string label, QualityOfService quality);

  void perform(const Job& job) override;

  // True if there was anything to run.
  bool runPending();
  void drop();
  [[nodiscard]] const std::string& label() const { return label_; }
  [[nodiscard]] QualityOfService quality() const { return quality_; }

 private:
  Record& record_;
  const std::string label_;
  const QualityOfService quality_;
  std::mutex mutex_;
  std::deque<Job> jobs_;
};

}  // namespace platform::simulated
