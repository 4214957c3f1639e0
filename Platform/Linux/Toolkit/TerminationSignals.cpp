#include "Platform/Linux/Toolkit/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <utility>

namespace platform::linux::toolkit {

namespace {

// A signal handler gets nothing but a number, so what it needs must have a fixed place.
std::atomic<int> pipeOfHandler{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void handle(int /*signal*/) {
  const int savedError = errno;
  const char byte = 0;
  // A full pipe already says all there is to say.
  (void)!::write(pipeOfHandler.load(), &byte, 1);
  errno = savedError;
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> received) {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;  // the signals then end the process as usual
  readEnd_ = posix::FileDescriptor(ends[0]);
  writeEnd_ = posix::FileDescriptor(ends[1]);
  notifier_.emplace(readEnd_.get(), QSocketNotifier::Read);
  QObject::connect(&*notifier_, &QSocketNotifier::activated, &*notifier_,
                   [this, received = std::move(received)](QSocketDescriptor) {
                     std::array<char, 16> bytes{};
                     while (::read(readEnd_.get(), bytes.data(), bytes.size()) > 0) continue;
                     received();
                   });
  pipeOfHandler = writeEnd_.get();
  struct sigaction action{};
  action.sa_handler = handle;
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < signals_.size(); ++i) ::sigaction(signals_[i], &action, &previous_[i]);
}

TerminationSignals::~TerminationSignals() {
  if (!notifier_) return;
  for (std::size_t i = 0; i < signals_.size(); ++i) ::sigaction(signals_[i], &previous_[i], nullptr);
  pipeOfHandler = -1;
}

}  // namespace platform::linux::toolkit
