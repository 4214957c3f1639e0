#include "Tests/Support/QuillfadeProgram.h"

#include <algorithm>
#include <sstream>

namespace support {

QuillfadeProgram::QuillfadeProgram(const std::string& executable, const std::string& display,
                                   const QuillfadeOptions& options)
    : command_{executable}, environment_(home_.environment(display)) {
  if (options.hasLogDirectory) std::filesystem::create_directories(logPath().parent_path());
  if (!options.settings.empty()) writeFile(settingsPath(), options.settings);
  if (!options.rules.empty()) writeFile(rulesPath(), options.rules);
  if (options.demonstration) environment_["QUILLFADE_DEMO"] = "1";
  for (const auto& [name, value] : options.environment) environment_[name] = value;
  process_.emplace(command_, environment_);
}

void QuillfadeProgram::restart() {
  process_->terminate();
  process_.emplace(command_, environment_);
}

std::vector<std::string> QuillfadeProgram::messages() const {
  std::istringstream log(readFile(logPath()));
  std::vector<std::string> result;
  for (std::string line; std::getline(log, line);) {
    const auto end = line.find("] ");
    result.push_back(end == std::string::npos ? line : line.substr(end + 2));
  }
  return result;
}

std::size_t QuillfadeProgram::countMessages(const std::string& message) const {
  return static_cast<std::size_t>(std::ranges::count(messages(), message));
}

bool QuillfadeProgram::waitForMessage(const std::string& message, std::size_t times) {
  return waitUntil([&] { return countMessages(message) >= times || !process_->isRunning(); }) &&
         countMessages(message) >= times;
}

}  // namespace support
