// Failures cross a port as values, never as exceptions.
#pragma once

#include <string>

namespace platform {

// Why an operation failed, in one sentence for a person (UTF-8, in the user's language where the desktop has one).
struct Error {
  std::string localizedDescription;
  friend bool operator==(const Error&, const Error&) = default;
};

}  // namespace platform
