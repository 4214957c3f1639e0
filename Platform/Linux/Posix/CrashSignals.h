// A crash ends the process with one sentence on standard error, and then as the system would have ended it.
//
// What is on the screen needs no care: the X server takes away the windows, the redirection and the grabs of a client
// whose connection ends. Threads: install once, on the main thread, for the life of the process. Failure: without it a
// crash is silent, no more.
#pragma once

#include <array>
#include <csignal>

namespace platform::linux::posix {

class CrashSignals {
 public:
  CrashSignals();
  // The handlers and their stack stay as long as the object.
  ~CrashSignals();
  CrashSignals(const CrashSignals&) = delete;
  CrashSignals& operator=(const CrashSignals&) = delete;

 private:
  // A stack of its own: an overflow of the other one is a crash, too.
  std::array<char, 32768> stack_{};
};

}  // namespace platform::linux::posix
