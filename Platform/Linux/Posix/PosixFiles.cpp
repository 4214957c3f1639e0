#include "Platform/Linux/Posix/PosixFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Posix/SystemError.h"

namespace platform::linux::posix {

namespace {

constexpr std::string_view failure = "Could not write";

std::expected<void, Error> explained(std::expected<void, int> result, const std::string& path) {
  if (!result) return std::unexpected(systemError(failure, path, result.error()));
  return {};
}

class PosixFileHandle : public FileHandle {
 public:
  PosixFileHandle(FileDescriptor file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}

  std::expected<void, Error> seekToEndOfFile() override {
    // From now on every write goes to the current end, so lines from two threads never overwrite each other.
    const int flags = ::fcntl(file_.get(), F_GETFL);
    if (flags < 0 || ::fcntl(file_.get(), F_SETFL, flags | O_APPEND) < 0 || ::lseek(file_.get(), 0, SEEK_END) < 0) {
      return std::unexpected(systemError(failure, path_, errno));
    }
    return {};
  }
  std::expected<void, Error> write(std::string_view bytes) override {
    return explained(writeAll(file_.get(), bytes), path_);
  }
  std::expected<void, Error> close() override { return explained(file_.close(), path_); }

 private:
  FileDescriptor file_;
  std::string path_;
};

}  // namespace

bool PosixFiles::fileExists(const std::string& path) const { return ::access(path.c_str(), F_OK) == 0; }

std::expected<std::unique_ptr<FileHandle>, Error> PosixFiles::openForWriting(const std::string& path) {
  auto file = openRegularFile(path, O_WRONLY);
  if (!file) return std::unexpected(systemError("Could not open", path, file.error()));
  return std::make_unique<PosixFileHandle>(*std::move(file), path);
}

std::expected<void, Error> PosixFiles::write(const std::string& path, std::string_view bytes) {
  auto file = openRegularFile(path, O_WRONLY | O_CREAT | O_TRUNC);
  if (!file) return std::unexpected(systemError("Could not open", path, file.error()));
  if (auto written = writeAll(file->get(), bytes); !written) return explained(written, path);
  return explained(file->close(), path);
}

}  // namespace platform::linux::posix
