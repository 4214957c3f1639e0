#include "Platform/Simulated/SerialQueue.h"

#include <utility>

namespace platform::simulated {

SerialQueue::SerialQueue(Record& record, std::string label, QualityOfService quality)
    : record_(record), label_(std::move(label)), quality_(quality) {}

void SerialQueue::perform(const Job& job) {
  if (!job) misuse("SerialQueue::perform was given no job");
  const std::lock_guard lock(mutex_);
  jobs_.push_back(job);
}

bool SerialQueue::runPending() {
  record_.expectMainThread("SerialQueue::runPending");
  std::deque<Job> jobs;
  {
    const std::lock_guard lock(mutex_);
    jobs.swap(jobs_);
  }
  if (jobs.empty()) return false;
  runOnAnotherThread([&jobs] {
    for (const Job& job : jobs) job();
    jobs.clear();
  });
  return true;
}

void SerialQueue::drop() {
  std::deque<Job> jobs;
  const std::lock_guard lock(mutex_);
  jobs.swap(jobs_);
}

}  // namespace platform::simulated
