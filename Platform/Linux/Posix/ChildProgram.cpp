#include "Platform/Linux/Posix/ChildProgram.h"

#include <spawn.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
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

// Starts the program with the signals as they were before the watch.
class SpawnAttributes {
 public:
  explicit SpawnAttributes(const SignalWatch& signals) {
    sigset_t defaults;
    sigemptyset(&defaults);
    if (!signals.wasPipeIgnored()) sigaddset(&defaults, SIGPIPE);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    ::posix_spawnattr_setsigmask(&attributes_, &signals.maskBefore());
    ::posix_spawnattr_setsigdefault(&attributes_, &defaults);
  }
  ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

}  // namespace

SignalWatch::SignalWatch() {
  const sigset_t watched = watchedSignals();
  ::pthread_sigmask(SIG_BLOCK, &watched, &before_);
  descriptor_ = FileDescriptor(::signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
  // The program may go away while something is being sent to it.
  struct sigaction ignore{};
  ignore.sa_handler = SIG_IGN;
  ::sigaction(SIGPIPE, &ignore, &pipeBefore_);
}

SignalWatch::~SignalWatch() {
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
  const SpawnAttributes attributes(signals);
  pid_t id = 0;
  const int failure = ::posix_spawnp(&id, argumentPointers[0], nullptr, attributes.get(), argumentPointers.data(),
                                     environmentPointers.data());
  if (failure != 0) return std::unexpected(systemError("Cannot start", words.front(), failure));
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
