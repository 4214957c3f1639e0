// On a crash, writes one sentence to standard error and lets the system end the process as usual.
//
// The screen needs no cleanup: when a client's connection ends, the X server removes its windows, redirections and
// grabs.
// Threads: install once, on the main thread, for the life of the process. Failure: a crash is silent; nothing else
// changes.
#pragma once

#include <array>
#include <csignal>

namespace platform::linux::posix {

class CrashSignals {
 public:
  CrashSignals();
  // The handlers and their stack live as long as the object.
  ~CrashSignals();
  CrashSignals(const CrashSignals&) = delete;
  CrashSignals& operator=(const CrashSignals&) = delete;

 private:
  // The handlers need a stack of their own: an overflow of the usual one is a crash, too.
  std::array<char, 32768> stack_{};
};

}  // namespace platform::linux::posix
