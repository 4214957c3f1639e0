// Plain files through system calls. Only regular files: a pipe or a device under the file's name is refused, so nothing
// ever blocks.
#pragma once

#include "Platform/Files.h"

namespace platform::linux::posix {

class PosixFiles : public Files {
 public:
  [[nodiscard]] bool fileExists(const std::string& path) const override;
  std::expected<std::unique_ptr<FileHandle>, Error> openForWriting(const std::string& path) override;
  // A new file is readable by the user alone (0600).
  std::expected<void, Error> write(const std::string& path, std::string_view bytes) override;
};

}  // namespace platform::linux::posix
