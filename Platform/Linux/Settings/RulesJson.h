// The user's rules as one JSON object in a file of the user's, which the program never writes.
//
// Threads: main thread only.
#pragma once

#include <sys/stat.h>

#include <string>

#include "Platform/RulesFile.h"

namespace platform::linux::settings {

class RulesJson final : public RulesFile {
 public:
  // The file need not exist.
  explicit RulesJson(std::string path) : path_(std::move(path)) {}

  [[nodiscard]] std::string path() const override { return path_; }
  // Reads the file only if it, or its version, is not the one read last.
  std::expected<std::optional<RulesFileEntries>, Error> read() override;

 private:
  using Content = std::expected<std::optional<RulesFileEntries>, Error>;

  [[nodiscard]] Content readAfresh() const;

  std::string path_;
  std::optional<struct stat> version_;
  Content content_ = std::nullopt;
};

// The entries of a JSON text; the error says where it stops making sense.
[[nodiscard]] std::expected<RulesFileEntries, Error> rulesFromJson(const std::string& json);

// Where this user's rules are.
[[nodiscard]] std::string rulesPath();

}  // namespace platform::linux::settings
