// A directory of a test's own.
//
// Ownership: removed with all its content when the object goes. Failure to make it throws.
#pragma once

#include <filesystem>
#include <string>

namespace support {

class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// The whole content; empty when the file is not there.
[[nodiscard]] std::string readFile(const std::filesystem::path& path);
// Makes the directories above it, too.
void writeFile(const std::filesystem::path& path, const std::string& content);

}  // namespace support
