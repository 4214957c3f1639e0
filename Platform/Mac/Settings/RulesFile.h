// There are no user rules on macOS yet: everything is as built in.
//
// Threads: main thread only.
#pragma once

#include "Platform/RulesFile.h"

namespace platform::mac::settings {

class RulesFile final : public platform::RulesFile {
 public:
  [[nodiscard]] std::string path() const override { return {}; }
  std::expected<std::optional<RulesFileEntries>, Error> read() override { return std::nullopt; }
};

}  // namespace platform::mac::settings
