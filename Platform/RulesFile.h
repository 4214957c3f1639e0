// The user's file of rules: only what it says. What that means is for the application to decide.
//
// Threads: main thread only.
// Failure: a file that cannot be read or is malformed is an error whose sentence says where.
#pragma once

#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Error.h"

namespace platform {

// One value of the file. The file is an object whose members are lists, or objects of named values.
struct RulesFileEntry {
  std::string member;
  std::string name;  // within the member: "1" and so on in a list; empty when the member is neither list nor object
  std::optional<std::string> text;  // absent when the value is not text
  friend bool operator==(const RulesFileEntry&, const RulesFileEntry&) = default;
};

using RulesFileEntries = std::vector<RulesFileEntry>;

class RulesFile {
 public:
  virtual ~RulesFile() = default;
  [[nodiscard]] virtual std::string path() const = 0;
  // Lists keep their order; absent without a file. Called often, so it is cheap while the file does not change.
  virtual std::expected<std::optional<RulesFileEntries>, Error> read() = 0;
};

// Defined by the adapter that is linked in, for callers without a desktop. Never null.
std::unique_ptr<RulesFile> makeRulesFile();

}  // namespace platform
