#include "Platform/Linux/Posix/AtomicFile.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Posix/SystemError.h"

namespace platform::linux::posix {

namespace {

namespace fs = std::filesystem;

std::expected<void, int> synchronized(int descriptor) {
  if (::fsync(descriptor) != 0) return std::unexpected(errno);
  return {};
}

// Makes a new name in the directory survive a power cut. Some file systems cannot do that; the content is safe anyway.
void synchronizeDirectory(const fs::path& directory) {
  const FileDescriptor descriptor(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) (void)synchronized(descriptor.get());
}

std::expected<void, int> makeDirectories(const fs::path& directory) {
  std::error_code ignored;
  if (directory.empty() || fs::is_directory(directory, ignored)) return {};
  if (auto made = makeDirectories(directory.parent_path()); !made) return made;
  if (::mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) return std::unexpected(errno);
  synchronizeDirectory(directory.parent_path());
  return {};
}

std::expected<void, int> fillTemporary(int descriptor, std::string_view bytes) {
  if (auto written = writeAll(descriptor, bytes); !written) return written;
  return synchronized(descriptor);
}

std::expected<void, int> writeBesideAndRename(const fs::path& target, std::string_view bytes) {
  std::string temporary = (target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string();
  FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));  // makes it with mode 0600
  if (!file.isOpen()) return std::unexpected(errno);
  std::expected<void, int> result = fillTemporary(file.get(), bytes);
  if (auto closed = file.close(); result && !closed) result = closed;
  if (result && std::rename(temporary.c_str(), target.c_str()) != 0) result = std::unexpected(errno);
  if (!result) ::unlink(temporary.c_str());
  return result;
}

}  // namespace

std::string followLinks(const std::string& path) {
  constexpr int mostLinks = 40;  // as many as the kernel follows
  fs::path target = path;
  for (int followed = 0; followed < mostLinks; ++followed) {
    std::error_code error;
    const fs::path next = fs::read_symlink(target, error);
    if (error) return target.string();
    target = next.is_absolute() ? next : target.parent_path() / next;
  }
  return path;
}

std::expected<void, Error> replaceFile(const std::string& path, std::string_view bytes) {
  const fs::path target = followLinks(path);
  if (auto made = makeDirectories(target.parent_path()); !made)
    return std::unexpected(systemError("Could not make the directory", target.parent_path().string(), made.error()));
  if (auto written = writeBesideAndRename(target, bytes); !written)
    return std::unexpected(systemError("Could not write", target.string(), written.error()));
  synchronizeDirectory(target.parent_path());
  return {};
}

}  // namespace platform::linux::posix
