// Starts the program anew in the same process, as if it had just been called with the same words.
//
// Nothing is cleaned up: for a process that has lost what it stood on. Whatever started it still has the same process.
// Threads: main thread; the others end with the old program. Lifetime: make it first thing, once.
// Failure: `begin` returns when the program cannot be started, or when it has been too often, too soon.
#pragma once

#include <chrono>
#include <span>
#include <string>
#include <vector>

namespace platform::linux::posix {

class NewStart {
 public:
  explicit NewStart(std::span<char* const> arguments);

  // How often this process has been started anew; 0 the first time. Starts that were long ago do not count.
  [[nodiscard]] unsigned count() const { return count_; }
  void begin();

 private:
  std::vector<std::string> arguments_;
  unsigned count_ = 0;
  std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
};

}  // namespace platform::linux::posix
