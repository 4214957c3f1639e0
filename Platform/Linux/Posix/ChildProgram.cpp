#include "Platform/Linux/Posix/ChildProgram.h"

#include <fcntl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ranges>
#include <string_view>

#include "Platform/Linux/Posix/SystemError.h"

namespace platform::linux::posix {

namespace {

constexpr std::array passedOn{SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2};

sigset_t watchedSignals() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGCHLD);
  for (const int number : passedOn) sigaddset(&set, number);
  return set;
}

std::vector<std::string> environmentWith(const ChildProgram::Variables& variables) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    const std::string_view name = text.substr(0, text.find('='));
    const auto names = variables | std::views::keys;
    if (std::ranges::find(names, name) == names.end()) result.emplace_back(text);
  }
  for (const auto& [name, value] : variables) {
    if (!value.empty()) result.push_back(name + "=" + value);
  }
  return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace

SignalWatch::SignalWatch() {
  const sigset_t watched = watchedSignals();
  ::pthread_sigmask(SIG_BLOCK, &watched, &before_);
  descriptor_ = FileDescriptor(::signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
  // A program may go away while it is sent something.
  struct sigaction ignore{};
  ignore.sa_handler = SIG_IGN;
  ::sigaction(SIGPIPE, &ignore, &pipeBefore_);
}

SignalWatch::~SignalWatch() { restore(); }

void SignalWatch::restore() const {
  ::sigaction(SIGPIPE, &pipeBefore_, nullptr);
  ::sigprocmask(SIG_SETMASK, &before_, nullptr);
}

std::optional<SignalWatch::Signal> SignalWatch::next() const {
  signalfd_siginfo info{};
  if (::read(descriptor_.get(), &info, sizeof info) != sizeof info) return std::nullopt;
  return Signal{static_cast<int>(info.ssi_signo), info.ssi_code == SI_KERNEL};
}

std::expected<ChildProgram, Error> ChildProgram::start(const std::vector<std::string>& words,
                                                       const Variables& variables, const SignalWatch& signals) {
  auto arguments = words;
  auto environment = environmentWith(variables);
  const auto argumentPointers = pointers(arguments);
  const auto environmentPointers = pointers(environment);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(systemError("Cannot start", words.front(), errno));
  const FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);
  const pid_t id = ::fork();
  if (id == 0) {
    signals.restore();
    ::execvpe(argumentPointers[0], argumentPointers.data(), environmentPointers.data());
    const int reason = errno;
    (void)!::write(writing.get(), &reason, sizeof reason);
    ::_exit(127);
  }
  (void)writing.close();
  if (id < 0) return std::unexpected(systemError("Cannot start", words.front(), errno));
  int reason = 0;
  // Nothing comes, and the pipe closes, when the process has become the program.
  if (::read(reading.get(), &reason, sizeof reason) == sizeof reason) {
    ::waitpid(id, nullptr, 0);
    return std::unexpected(systemError("Cannot start", words.front(), reason));
  }
  return ChildProgram(id);
}

void ChildProgram::pass(const SignalWatch::Signal& signal) const {
  if (!signal.isFromTerminal) ::kill(id_, signal.number);
}

std::optional<int> ChildProgram::exitStatus() const {
  int status = 0;
  if (::waitpid(id_, &status, WNOHANG) != id_) return std::nullopt;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace platform::linux::posix
