// SIGTERM, SIGINT and SIGHUP as ordinary events of the main loop.
//
// The handler only writes a byte to a pipe; everything else happens in the event loop. Child processes are not
// affected: unlike a blocked signal, a handler is not inherited.
// Threads: main thread only. One object at a time; destroying it restores the previous handlers.
#pragma once

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <functional>
#include <optional>

#include "Platform/Linux/Posix/FileDescriptor.h"

namespace platform::linux::toolkit {

class TerminationSignals {
 public:
  // Needs the application object. `received` is called from the event loop.
  explicit TerminationSignals(std::function<void()> received);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  static constexpr std::array signals_{SIGTERM, SIGINT, SIGHUP};

  posix::FileDescriptor readEnd_;
  posix::FileDescriptor writeEnd_;
  std::array<struct sigaction, signals_.size()> previous_{};
  std::optional<QSocketNotifier> notifier_;
};

}  // namespace platform::linux::toolkit
