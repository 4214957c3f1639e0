// Finds the entries of applications, and the place for launchers.
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <filesystem>

#include "Platform/Lens.h"
#include "Platform/Linux/Lens/LauncherEntry.h"
#include "Platform/Linux/Posix/AtomicFile.h"
#include "Platform/Linux/Posix/DesktopEntry.h"
#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Posix/SystemError.h"
#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform {

namespace {

using namespace linux;

std::string userDataDirectory() {
  const auto directory = posix::environmentVariable("XDG_DATA_HOME");
  return directory && directory->starts_with('/') ? *directory : posix::homeDirectory() + "/.local/share";
}

// The user's own first, then the system's.
std::vector<std::string> applicationDirectories() {
  std::vector<std::string> directories{userDataDirectory()};
  const auto listed = posix::environmentVariable("XDG_DATA_DIRS");
  std::string_view rest = listed && !listed->empty() ? std::string_view(*listed) : "/usr/local/share:/usr/share";
  while (!rest.empty()) {
    const auto end = rest.find(':');
    if (rest.starts_with('/')) directories.emplace_back(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  for (std::string& directory : directories) directory += "/applications/";
  return directories;
}

std::expected<std::string, int> readFile(const std::string& path) {
  const auto file = posix::openRegularFile(path, O_RDONLY);
  if (!file) return std::unexpected(file.error());
  return posix::readAll(file->get());
}

std::expected<std::string, Error> readEntry(const std::string& application) {
  if (application.contains('/')) {
    if (auto text = readFile(application)) return *text;
  } else {
    for (const std::string& directory : applicationDirectories()) {
      if (auto text = readFile(directory + application)) return *text;
    }
  }
  return std::unexpected(Error{"There is no application entry \"" + application + "\"."});
}

std::string launcherPath(const std::string& application) {
  return userDataDirectory() + "/applications/quillfade-share-" +
         std::filesystem::path(application).filename().string();
}

std::string ownProgram() {
  std::array<char, PATH_MAX> path{};
  const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
  return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : "quillfade";
}

}  // namespace

std::expected<std::string, Error> installLensEntry(const std::string& application,
                                                   const std::vector<std::string>& words) {
  const auto text = readEntry(application);
  if (!text) return std::unexpected(text.error());
  std::string launcher = posix::desktopExec(ownProgram());
  for (const std::string& word : words) launcher += " " + word;
  const auto entry = lens::launcherEntry(*text, launcher);
  if (!entry) return std::unexpected(Error{"\"" + application + "\" does not say how to start its application."});
  std::string path = launcherPath(application);
  if (const auto written = posix::replaceFile(path, *entry); !written) return std::unexpected(written.error());
  return path;
}

std::expected<std::string, Error> removeLensEntry(const std::string& application) {
  std::string path = launcherPath(application);
  const auto text = readFile(path);
  if (!text || !lens::isLauncherEntry(*text)) {
    return std::unexpected(Error{"There is no launcher for \"" + application + "\"."});
  }
  if (::unlink(path.c_str()) != 0) return std::unexpected(posix::systemError("Cannot remove", path, errno));
  return path;
}

}  // namespace platform
