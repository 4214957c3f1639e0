// A program that a test runs.
//
// The program leads its own process group; destroying the object ends the whole group. The program also ends when the
// thread that started it does, so a test that is killed leaves nothing behind.
// Threads: one at a time.
// Failure: a program that cannot be started throws.
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
  // Looks the program up in PATH. It gets the given variables and this process's environment, without anything that
  // names the developer's own desktop, session or configuration. `inherited` descriptors stay open in it.
  explicit ChildProcess(std::vector<std::string> arguments, const Environment& environment = {},
                        const std::vector<int>& inherited = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] pid_t id() const { return id_; }
  [[nodiscard]] bool isRunning();
  // Standard output and standard error so far, in the order written.
  [[nodiscard]] std::string output() const;

  // The exit status once the program has ended, or 128 + the signal that ended it; absent while it runs.
  [[nodiscard]] std::optional<int> exitStatus();
  [[nodiscard]] std::optional<int> waitForExit(std::chrono::milliseconds deadline = defaultDeadline);

  void signal(int number);
  // Asks the program to end, and kills it after two seconds.
  void terminate();
  // Kills the program at once.
  void kill();

 private:
  TemporaryDirectory directory_;
  pid_t id_ = -1;
  std::optional<int> exitStatus_;
};

// Runs a program to its end and returns its output; throws when it does not end in time or fails.
std::string runToEnd(std::vector<std::string> arguments, const Environment& environment = {});

}  // namespace support
