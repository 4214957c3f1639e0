#include "Platform/Linux/Posix/UserDirectories.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace platform::linux::posix {

namespace {

std::optional<std::string> absolute(std::optional<std::string> path) {
  if (!path || !path->starts_with('/')) return std::nullopt;
  while (path->size() > 1 && path->ends_with('/')) path->pop_back();
  return path;
}

std::optional<std::string> homeFromUserDatabase() {
  std::array<char, 16384> buffer{};
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !found->pw_dir)
    return std::nullopt;
  return std::string(found->pw_dir);
}

}  // namespace

std::optional<std::string> environmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (!value) return std::nullopt;
  return std::string(value);
}

std::string homeDirectory() {
  if (auto home = absolute(environmentVariable("HOME"))) return *home;
  return absolute(homeFromUserDatabase()).value_or("/");
}

std::string configurationDirectory() {
  if (auto directory = absolute(environmentVariable("XDG_CONFIG_HOME"))) return *directory;
  const std::string home = homeDirectory();
  return home == "/" ? "/.config" : home + "/.config";
}

std::string stateDirectory() {
  if (auto directory = absolute(environmentVariable("XDG_STATE_HOME"))) return *directory;
  const std::string home = homeDirectory();
  return home == "/" ? "/.local/state" : home + "/.local/state";
}

bool isWritableDirectory(const std::string& path) {
  struct stat state{};
  return ::stat(path.c_str(), &state) == 0 && S_ISDIR(state.st_mode) && ::access(path.c_str(), W_OK | X_OK) == 0;
}

}  // namespace platform::linux::posix
