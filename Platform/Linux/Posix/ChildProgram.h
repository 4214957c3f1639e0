// The program behind a lens, as a process: its environment, its signals, its end.
//
// Signals that ask this process for something are passed on to the program; those that a terminal sends, it has got by
// itself.
// Threads: the main thread; `SignalWatch` is made before any other thread, which then inherits what it blocks.
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

// Receives signals as something to be read. Puts everything back when it goes.
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
  // As they were before the watch, and as a new program is to have them.
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

  // The environment is this process's with these variables in it, or, where a value is empty, without them.
  static std::expected<ChildProgram, Error> start(const std::vector<std::string>& words, const Variables& variables,
                                                  const SignalWatch& signals);

  void pass(const SignalWatch::Signal& signal) const;
  // Its exit status, or 128 and the number of the signal that ended it; absent while it runs.
  [[nodiscard]] std::optional<int> exitStatus() const;

 private:
  explicit ChildProgram(pid_t id) : id_(id) {}

  pid_t id_;
};

}  // namespace platform::linux::posix
