// A run loop that does what it is given when the test says so.
//
// Threads: one. Failure: what no test has needed so far throws.
#pragma once

#include <deque>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Platform/RunLoop.h"

namespace support {

class ManualRunLoop final : public platform::RunLoop {
 public:
  void post(platform::Job job) override { posted_.push_back(std::move(job)); }
  std::shared_ptr<platform::DelayedTask> after(double /*seconds*/, platform::Job job) override {
    delayed_.push_back(std::make_shared<Task>(std::move(job)));
    return delayed_.back();
  }
  std::shared_ptr<platform::Timer> every(double /*seconds*/, platform::Job /*job*/) override {
    throw std::logic_error("Nobody repeats.");
  }
  void addToCommonModes(platform::Timer& /*timer*/) override {}
  std::shared_ptr<platform::SerialQueue> makeSerialQueue(const std::string& /*label*/,
                                                         platform::QualityOfService /*quality*/) override {
    throw std::logic_error("Nobody needs a queue.");
  }

  void run() {
    while (!posted_.empty()) {
      const platform::Job job = std::move(posted_.front());
      posted_.pop_front();
      job();
    }
  }
  // What was delayed is due.
  void advance() {
    for (const auto& task : std::exchange(delayed_, {})) task->run();
    run();
  }

 private:
  class Task final : public platform::DelayedTask {
   public:
    explicit Task(platform::Job job) : job_(std::move(job)) {}
    void cancel() override { isCancelled_ = true; }
    void run() const {
      if (!isCancelled_) job_();
    }

   private:
    platform::Job job_;
    bool isCancelled_ = false;
  };

  std::deque<platform::Job> posted_;
  std::vector<std::shared_ptr<Task>> delayed_;
};

}  // namespace support
