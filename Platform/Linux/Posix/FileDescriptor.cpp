#include "Platform/Linux/Posix/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace platform::linux::posix {

std::expected<void, int> FileDescriptor::close() {
  const int descriptor = std::exchange(descriptor_, -1);
  if (descriptor >= 0 && ::close(descriptor) != 0) return std::unexpected(errno);
  return {};
}

std::expected<FileDescriptor, int> openRegularFile(const std::string& path, int flags, unsigned mode) {
  // Truncate only once it is known what was opened.
  const int opening = (flags & ~O_TRUNC) | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  FileDescriptor file(::open(path.c_str(), opening, static_cast<mode_t>(mode)));
  if (!file.isOpen()) return std::unexpected(errno);
  struct stat status{};
  if (::fstat(file.get(), &status) != 0) return std::unexpected(errno);
  if (S_ISDIR(status.st_mode)) return std::unexpected(EISDIR);
  if (!S_ISREG(status.st_mode)) return std::unexpected(EINVAL);
  if ((flags & O_TRUNC) && ::ftruncate(file.get(), 0) != 0) return std::unexpected(errno);
  return file;
}

std::expected<void, int> writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::unexpected(errno);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return {};
}

std::expected<std::string, int> readAll(int descriptor) {
  std::string bytes;
  std::array<char, 4096> part{};
  for (;;) {
    const ssize_t count = ::read(descriptor, part.data(), part.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::unexpected(errno);
    if (count == 0) return bytes;
    bytes.append(part.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace platform::linux::posix
