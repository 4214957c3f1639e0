// Plain files, with only the operations that a log needs.
//
// Threads: any. Paths are absolute. Every failure is a value that the caller may ignore.
#pragma once

#include <expected>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/Error.h"

namespace platform {

// An existing file opened for writing. Destroying an open handle closes it.
class FileHandle {
 public:
  virtual ~FileHandle() = default;
  virtual std::expected<void, Error> seekToEndOfFile() = 0;
  virtual std::expected<void, Error> write(std::string_view bytes) = 0;
  virtual std::expected<void, Error> close() = 0;
};

class Files {
 public:
  virtual ~Files() = default;
  [[nodiscard]] virtual bool fileExists(const std::string& path) const = 0;
  // Never creates and never truncates.
  virtual std::expected<std::unique_ptr<FileHandle>, Error> openForWriting(const std::string& path) = 0;
  // Makes these bytes the whole content of the file and creates the file if needed; never creates a directory.
  virtual std::expected<void, Error> write(const std::string& path, std::string_view bytes) = 0;
};

}  // namespace platform
