#include "Tests/Support/ProcessState.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace support {

namespace {

namespace fs = std::filesystem;

fs::path directoryOf(pid_t process) { return fs::path("/proc") / std::to_string(process); }

// The number after the label in a status file.
std::size_t statusNumber(const fs::path& path, const std::string& label) {
  std::ifstream status(path);
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(label)) return std::stoul(line.substr(label.size()));
  return 0;
}

// The sum of the number over all threads.
template <typename Number>
auto overThreads(pid_t process, Number number) {
  decltype(number(fs::path())) sum{};
  std::error_code gone;
  for (const auto& thread : fs::directory_iterator(directoryOf(process) / "task", gone)) sum += number(thread.path());
  return sum;
}

}  // namespace

double processorSeconds(pid_t process) {
  return overThreads(process, [](const fs::path& thread) {
    std::ifstream file(thread / "schedstat");
    double nanoseconds = 0;
    file >> nanoseconds;
    return nanoseconds / 1e9;
  });
}

std::size_t wakeUps(pid_t process) {
  return overThreads(
      process, [](const fs::path& thread) { return statusNumber(thread / "status", "voluntary_ctxt_switches:"); });
}

std::size_t residentBytes(pid_t process) { return statusNumber(directoryOf(process) / "status", "VmRSS:") * 1024; }

}  // namespace support
