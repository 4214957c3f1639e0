// A program that a test runs.
//
// The program is the leader of a process group of its own; ending the object ends the whole group. It also ends when
// the thread that started it does, so a test that is killed leaves nothing behind. Threads: one at a time. Failure: a
// program that cannot be started throws.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/Wait.h"

namespace support {

using Environment = std::map<std::string, std::string>;

class ChildProcess {
 public:
  // The program is looked up in PATH. It gets this process's environment without anything that names the developer's
  // own desktop, session or configuration, and with the given variables. `inherited` descriptors stay open in it.
  explicit ChildProcess(std::vector<std::string> arguments, const Environment& environment = {},
                        const std::vector<int>& inherited = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] pid_t id() const { return id_; }
  [[nodiscard]] bool isRunning();
  // Standard output and standard error so far, in the order written.
  [[nodiscard]] std::string output() const;

  // The exit status once the program has ended, 128 + the signal when one ended it; absent while it still runs.
  [[nodiscard]] std::optional<int> exitStatus();
  [[nodiscard]] std::optional<int> waitForExit(std::chrono::milliseconds deadline = defaultDeadline);

  void signal(int number);
  // Asks to end, and after two seconds ends by force.
  void terminate();
  // Ends by force, at once.
  void kill();

 private:
  TemporaryDirectory directory_;
  pid_t id_ = -1;
  std::optional<int> exitStatus_;
};

// Runs a program to its end; throws when it does not end in time or fails. Returns its output.
std::string runToEnd(std::vector<std::string> arguments, const Environment& environment = {});

}  // namespace support
