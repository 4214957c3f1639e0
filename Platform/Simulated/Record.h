// What happened on the simulated desktop, and who may do it.
//
// Threads: `call` and `expectMainThread` end the process unless the thread is the one that made the record; the rest
// may be used on any thread.
// Failure: breaking a port's contract is a bug in the caller, so it ends the process and says why.
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Geometry.h"

namespace platform::simulated {

// Ends the process: the caller broke a port's contract.
[[noreturn]] void misuse(const std::string& what);

void expectFinite(const Rect& rect, const std::string& operation);

// Runs `work` to its end on a thread that is not the caller's.
void runOnAnotherThread(const std::function<void()>& work);

// Every call that changed something, in one ordered list of short texts such as "window 1: order front".
class Record {
 public:
  void expectMainThread(const std::string& operation) const;
  // Appends an entry for a call that belongs to the main thread.
  void call(const std::string& entry);
  // Appends an entry for a call that any thread may make.
  void note(const std::string& entry);

  [[nodiscard]] std::vector<std::string> entries() const;
  [[nodiscard]] std::vector<std::string> startingWith(const std::string& prefix) const;
  // The position of the first such entry.
  [[nodiscard]] std::optional<std::size_t> indexOf(const std::string& entry) const;
  void clear();

 private:
  std::thread::id mainThread_ = std::this_thread::get_id();
  mutable std::mutex mutex_;
  std::vector<std::string> entries_;
};

}  // namespace platform::simulated
