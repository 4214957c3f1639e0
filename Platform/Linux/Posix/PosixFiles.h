// Plain files through the system's own calls. Only regular files: a pipe or a device under a file's name is refused, so
// that nothing ever blocks.
#pragma once

#include "Platform/Files.h"

namespace platform::linux::posix {

class PosixFiles : public Files {
 public:
  [[nodiscard]] bool fileExists(const std::string& path) const override;
  std::expected<std::unique_ptr<FileHandle>, Error> openForWriting(const std::string& path) override;
  // A file that this creates is the user's alone (0600).
  std::expected<void, Error> write(const std::string& path, std::string_view bytes) override;
};

}  // namespace platform::linux::posix
