// What the user wrote into the file of rules: only what stands there; what it means is the application's.
//
// Threads: main thread only.
// Failure: a file that cannot be read or is not well formed is an error whose sentence names the place.
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
  std::string name;  // within the member: "1" and so on in a list; empty when it is neither list nor object
  std::optional<std::string> text;  // absent when the value is no text
  friend bool operator==(const RulesFileEntry&, const RulesFileEntry&) = default;
};

using RulesFileEntries = std::vector<RulesFileEntry>;

class RulesFile {
 public:
  virtual ~RulesFile() = default;
  [[nodiscard]] virtual std::string path() const = 0;
  // Lists in their order; absent without a file. Cheap while the file does not change: it is asked often.
  virtual std::expected<std::optional<RulesFileEntries>, Error> read() = 0;
};

// Defined by the adapter that is linked in, for whoever has no desktop. Never null.
std::unique_ptr<RulesFile> makeRulesFile();

}  // namespace platform
