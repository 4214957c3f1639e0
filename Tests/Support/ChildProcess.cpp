#include "Tests/Support/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <string_view>

namespace support {

namespace {

constexpr int notStarted = 127;

bool belongsToTheDesktop(std::string_view variable) {
  static constexpr std::array names{"DISPLAY",
                                    "WAYLAND_DISPLAY",
                                    "XAUTHORITY",
                                    "DBUS_SESSION_BUS_ADDRESS",
                                    "DBUS_SYSTEM_BUS_ADDRESS",
                                    "SESSION_MANAGER",
                                    "DESKTOP_SESSION",
                                    "HOME",
                                    "LANGUAGE",
                                    "LANG"};
  static constexpr std::array prefixes{"XDG_", "QT_", "GTK_", "GDK_", "LC_", "QUILLFADE_"};
  return std::ranges::find(names, variable) != names.end() ||
         std::ranges::any_of(prefixes, [&](std::string_view prefix) { return variable.starts_with(prefix); });
}

std::vector<std::string> fullEnvironment(const Environment& given) {
  // Without an address, bus libraries start a bus of their own, which outlives the test.
  Environment merged{{"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
                     {"DBUS_SYSTEM_BUS_ADDRESS", "disabled:"},
                     {"LANG", "C.UTF-8"},
                     {"NO_AT_BRIDGE", "1"}};
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    const auto equals = text.find('=');
    if (equals == std::string_view::npos || belongsToTheDesktop(text.substr(0, equals))) continue;
    merged.emplace(text.substr(0, equals), text.substr(equals + 1));
  }
  for (const auto& [name, value] : given) merged[name] = value;
  std::vector<std::string> result;
  for (const auto& [name, value] : merged) result.push_back(name + "=" + value);
  return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

// Runs in the new process, where only async-signal-safe calls are allowed.
[[noreturn]] void becomeProgram(std::span<char*> arguments, std::span<char*> environment, const char* outputPath,
                                std::span<const int> inherited, pid_t parent) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(notStarted);
  const int output = open(outputPath, O_WRONLY | O_CREAT | O_APPEND, 0600);
  const int input = open("/dev/null", O_RDONLY);
  if (output < 0 || input < 0) _exit(notStarted);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  for (const int descriptor : inherited) fcntl(descriptor, F_SETFD, 0);
  execvpe(arguments[0], arguments.data(), environment.data());
  _exit(notStarted);
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> arguments, const Environment& environment,
                           const std::vector<int>& inherited) {
  auto variables = fullEnvironment(environment);
  auto argumentPointers = pointers(arguments);
  auto variablePointers = pointers(variables);
  const std::string outputPath = (directory_.path() / "output").string();
  const pid_t parent = getpid();
  id_ = fork();
  if (id_ < 0) throw std::runtime_error("No process could be made for " + arguments.at(0) + ".");
  if (id_ == 0) becomeProgram(argumentPointers, variablePointers, outputPath.c_str(), inherited, parent);
  setpgid(id_, id_);  // both processes call this; whichever is later fails, harmlessly
}

ChildProcess::~ChildProcess() {
  terminate();
  ::kill(-id_, SIGKILL);  // whatever the program started and left behind
}

bool ChildProcess::isRunning() { return !exitStatus().has_value(); }

std::string ChildProcess::output() const { return readFile(directory_.path() / "output"); }

std::optional<int> ChildProcess::exitStatus() {
  if (exitStatus_) return exitStatus_;
  int status = 0;
  if (waitpid(id_, &status, WNOHANG) == id_) {
    exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return exitStatus_;
}

std::optional<int> ChildProcess::waitForExit(std::chrono::milliseconds deadline) {
  return waitUntil([this] { return !isRunning(); }, deadline) ? exitStatus_ : std::nullopt;
}

void ChildProcess::signal(int number) {
  if (isRunning()) ::kill(id_, number);
}

void ChildProcess::terminate() {
  signal(SIGTERM);
  if (!waitForExit(std::chrono::seconds(2))) kill();
}

void ChildProcess::kill() {
  signal(SIGKILL);
  if (!waitForExit()) throw std::runtime_error("A killed process did not end.");
}

std::string runToEnd(std::vector<std::string> arguments, const Environment& environment) {
  const std::string name = arguments.at(0);
  ChildProcess process(std::move(arguments), environment);
  const auto status = process.waitForExit();
  if (status != 0) throw std::runtime_error(name + " failed: " + process.output());
  return process.output();
}

}  // namespace support
