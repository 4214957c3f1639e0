// Files through Foundation.
//
// Threads: any.
// Failure: what Foundation throws from a file handle comes back as a value, too.
#pragma once

#include "Platform/Files.h"

namespace platform::mac::foundation {

class Files final : public platform::Files {
 public:
  [[nodiscard]] bool fileExists(const std::string& path) const override;
  std::expected<std::unique_ptr<FileHandle>, Error> openForWriting(const std::string& path) override;
  std::expected<void, Error> write(const std::string& path, std::string_view bytes) override;
};

}  // namespace platform::mac::foundation
