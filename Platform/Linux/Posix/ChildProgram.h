// The program behind a lens as a process: its environment, its signals and its exit.
//
// Signals sent to this process are passed on to the program, except those from a terminal, which reach the program by
// themselves.
// Threads: the main thread. Make `SignalWatch` before any other thread starts, so that every thread inherits the
// blocked signals.
// Failure: sentences.
#pragma once

#include <signal.h>
#include <sys/types.h>

#include <expected>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Error.h"
#include "Platform/Linux/Posix/FileDescriptor.h"

namespace platform::linux::posix {

// Blocks the signals and makes them readable from a descriptor. The destructor restores everything.
class SignalWatch {
 public:
  SignalWatch();
  ~SignalWatch();
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_.get(); }
  struct Signal {
    int number = 0;
    bool isFromTerminal = false;
  };
  [[nodiscard]] std::optional<Signal> next() const;
  // The state before the watch, which a new program gets.
  [[nodiscard]] const sigset_t& maskBefore() const { return before_; }
  [[nodiscard]] bool wasPipeIgnored() const { return pipeBefore_.sa_handler == SIG_IGN; }

 private:
  sigset_t before_{};
  struct sigaction pipeBefore_{};
  FileDescriptor descriptor_;
};

class ChildProgram {
 public:
  using Variables = std::vector<std::pair<std::string, std::string>>;

  // The program gets this process's environment with these variables set, or removed where the value is empty.
  static std::expected<ChildProgram, Error> start(const std::vector<std::string>& words, const Variables& variables,
                                                  const SignalWatch& signals);

  void pass(const SignalWatch::Signal& signal) const;
  // The exit status, or 128 plus the number of the signal that ended the program; absent while it runs.
  [[nodiscard]] std::optional<int> exitStatus() const;

 private:
  explicit ChildProgram(pid_t id) : id_(id) {}

  pid_t id_;
};

}  // namespace platform::linux::posix
