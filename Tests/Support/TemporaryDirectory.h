// A test's own directory.
//
// Ownership: removed with all its content when the object goes.
// Failure: throws when it cannot be made.
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

// The whole content; empty when there is no such file.
[[nodiscard]] std::string readFile(const std::filesystem::path& path);
// Also makes the directories above it.
void writeFile(const std::filesystem::path& path, const std::string& content);

}  // namespace support
