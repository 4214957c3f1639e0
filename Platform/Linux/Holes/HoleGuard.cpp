#include "Platform/Linux/Holes/HoleGuard.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "Platform/Linux/Holes/HoleCutter.h"

namespace platform::linux::holes {

namespace {

constexpr unsigned longestWork = 10;  // seconds

// Of the process that is guarded, nothing may be kept: its connection to the display would not end with it.
void keepOnly(int descriptor) {
  const int nothing = ::open("/dev/null", O_RDWR);
  for (int standard = 0; standard <= 2; ++standard) ::dup2(nothing, standard);
  constexpr int place = 3;
  ::dup2(descriptor, place);
  ::close_range(place + 1, ~0U, 0);
}

// What asks the guarded process to end is none of its guard's business, and a crash of the guard nobody's.
void setSignals() {
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) std::signal(number, SIG_IGN);
  for (const int number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL}) std::signal(number, SIG_DFL);
}

[[noreturn]] void stand(int lifeline, std::uint32_t token) {
  setSignals();
  ::prctl(PR_SET_NAME, "quillfade-guard");
  keepOnly(lifeline);
  (void)::chdir("/");
  char byte = 0;
  while (::read(3, &byte, 1) < 0 && errno == EINTR) continue;
  // A display that does not answer is nobody's to be looked at.
  ::alarm(longestWork);
  if (auto connection = xcb::Connection::open("")) closeLeftHoles(**connection, token);
  ::_exit(EXIT_SUCCESS);
}

}  // namespace

HoleGuard::HoleGuard(std::uint32_t token) {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
  const posix::FileDescriptor readEnd(ends[0]);
  lifeline_ = posix::FileDescriptor(ends[1]);
  const pid_t between = ::fork();
  if (between == 0) {
    // A session of its own, and no parent that would have to wait for it.
    ::setsid();
    const pid_t guard = ::fork();
    if (guard == 0) stand(readEnd.get(), token);
    ::_exit(EXIT_SUCCESS);
  }
  if (between > 0) ::waitpid(between, nullptr, 0);
}

}  // namespace platform::linux::holes
