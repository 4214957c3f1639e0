// The real program, in a home of its own.
//
// Ownership: the program ends with the object; its home, with settings and log, goes too.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Tests/Support/Desktop.h"

namespace support {

struct QuillfadeOptions {
  bool demonstration = true;     // covers 520 x 340 points at (240, 240)
  std::string settings = {};     // the content of settings.json; no file when empty
  std::string rules = {};        // the content of rules.json; no file when empty
  bool hasLogDirectory = true;   // without it the program writes no log
  Environment environment = {};  // further variables
};

class QuillfadeProgram {
 public:
  QuillfadeProgram(const std::string& executable, const std::string& display, const QuillfadeOptions& options = {});

  [[nodiscard]] ChildProcess& process() { return *process_; }
  // Ends the program and starts it again in the same home with the same variables.
  void restart();
  [[nodiscard]] std::filesystem::path settingsPath() const { return home_.configuration() / "quillfade/settings.json"; }
  [[nodiscard]] std::filesystem::path rulesPath() const { return home_.configuration() / "quillfade/rules.json"; }
  [[nodiscard]] std::filesystem::path logPath() const { return home_.path() / "Library/Logs/Quillfade.log"; }

  // The lines of the log, without their timestamps.
  [[nodiscard]] std::vector<std::string> messages() const;
  [[nodiscard]] std::size_t countMessages(const std::string& message) const;
  // Waits until the log has contained the message this many times.
  [[nodiscard]] bool waitForMessage(const std::string& message, std::size_t times = 1);

 private:
  std::vector<std::string> command_;
  PrivateHome home_;
  Environment environment_;
  std::optional<ChildProcess> process_;
};

}  // namespace support
