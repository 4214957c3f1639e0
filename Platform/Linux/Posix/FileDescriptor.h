// A file descriptor that closes itself, and whole-buffer reads and writes on one.
//
// Threads: one at a time. Failure: error numbers.
#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <utility>

namespace platform::linux::posix {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor = -1) : descriptor_(descriptor) {}
  ~FileDescriptor() { (void)close(); }
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }

  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  // Safe to call again.
  std::expected<void, int> close();

 private:
  int descriptor_;
};

// Opens a regular file and nothing else: a pipe or a device of that name must not block or swallow data. `mode` applies
// when the flags create the file.
[[nodiscard]] std::expected<FileDescriptor, int> openRegularFile(const std::string& path, int flags,
                                                                 unsigned mode = 0600);
[[nodiscard]] std::expected<void, int> writeAll(int descriptor, std::string_view bytes);
[[nodiscard]] std::expected<std::string, int> readAll(int descriptor);

}  // namespace platform::linux::posix
